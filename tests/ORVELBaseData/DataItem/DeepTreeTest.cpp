#include <cstddef>
#include <cstring>
#include <functional>
#include <pthread.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "TestNodes.h"
#include <ORVELBaseData/DataItem/BaseDataItem.h>
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr int g_limit = 128; // objects within objects, the default of ArchiveLimits

/// What a thread has to make do with. Sanitizers put a lot around every variable.
constexpr std::size_t g_stackSize = (isSanitized || isThreadSanitized ? 4096 : 256) * std::size_t{1024};

/// A stack with a page below it that may not be touched, filled with a mark.
class PaintedStack
{
public:
  PaintedStack()
    : _pageSize(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
  {
    void* const memory = mmap(nullptr, _pageSize + g_stackSize, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (memory == MAP_FAILED)
      throw std::system_error(errno, std::generic_category(), "mmap");
    _memory = static_cast<unsigned char*>(memory);
    mprotect(_memory, _pageSize, PROT_NONE);
    std::memset(getStack(), g_mark, g_stackSize);
  }
  ~PaintedStack() { munmap(_memory, _pageSize + g_stackSize); }
  PaintedStack(const PaintedStack&) = delete;
  PaintedStack& operator=(const PaintedStack&) = delete;

  unsigned char* getStack() { return _memory + _pageSize; }

  /// How many bytes have been used, from the top.
  std::size_t getUsed()
  {
    std::size_t nbUntouched = 0;
    while (nbUntouched < g_stackSize && getStack()[nbUntouched] == g_mark)
      ++nbUntouched;
    return g_stackSize - nbUntouched;
  }

private:
  static constexpr unsigned char g_mark = 0xA5;

  std::size_t _pageSize = 0;
  unsigned char* _memory = nullptr;
};

/// Calls an operation on a thread with a stack of g_stackSize; what it throws is thrown here.
/// \return how much of the stack it has used
std::size_t callOnSmallStack(const std::function<void()>& operation)
{
  struct Call
  {
    const std::function<void()>& operation;
    std::exception_ptr failure;
  } call{operation, nullptr};
  PaintedStack stack;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, stack.getStack(), g_stackSize);
  pthread_t thread{};
  const int result = pthread_create(
      &thread, &attributes,
      [](void* argument) -> void*
      {
        Call& work = *static_cast<Call*>(argument);
        try
        {
          work.operation();
        }
        catch (...)
        {
          work.failure = std::current_exception();
        }
        return nullptr;
      },
      &call);
  pthread_attr_destroy(&attributes);
  if (result != 0)
    throw std::system_error(result, std::generic_category(), "pthread_create");
  pthread_join(thread, nullptr);
  if (call.failure)
    std::rethrow_exception(call.failure);
  return stack.getUsed();
}

// Trees that are a number of objects within objects deep, a leaf or an empty item innermost.

DataItemPtr makeMaps(int depth)
{
  DataItemPtr tree = makeLeaf<ipInt32>(1);
  for (int i = 1; i < depth; ++i)
  {
    const auto map = boost::make_shared<DataItemMap>();
    map->insertItem("inner", tree);
    tree = map;
  }
  return tree;
}

DataItemPtr makeNodes(int depth)
{
  DataItemPtr tree = makeLeaf<ipInt32>(1);
  for (int i = 1; i < depth; ++i)
  {
    const auto node = boost::make_shared<AnyNode>();
    node->setItem("inner", tree);
    tree = node;
  }
  return tree;
}

DataItemPtr makeNodesInPlace(int depth)
{
  auto tree = boost::make_shared<NestNode>();
  for (int i = 1; i < depth; ++i)
  {
    const auto node = boost::make_shared<NestNode>();
    node->setInner(tree);
    tree = node;
  }
  return tree;
}

/// Collections of nodes that hold collections.
DataItemPtr makeNodeColls(int depth)
{
  DataItemPtr tree = boost::make_shared<BaseDataItemNodeColl>();
  DataItemNodePtr latestNode;
  for (int i = 1; i < depth; ++i)
  {
    if (tree->getDataItemType() == eDataItemType::eDIT_NodeColl)
    {
      const auto node = boost::make_shared<AnyNode>();
      node->setItem("nodes", tree);
      latestNode = node;
      tree = node;
    }
    else
    {
      const auto coll = boost::make_shared<BaseDataItemNodeColl>();
      coll->push_back(latestNode);
      tree = coll;
    }
  }
  return tree;
}

struct Shape
{
  const char* name;
  DataItemPtr (*make)(int depth);
};

constexpr Shape g_shapes[] = {{"maps", &makeMaps},
                              {"nodes", &makeNodes},
                              {"nodes in place", &makeNodesInPlace},
                              {"node collections", &makeNodeColls}};

/// How deep a tree is, by a walk with the public interface.
int depthOf(const BaseDataItem& item)
{
  const BaseDataItem* inner = nullptr;
  int depth = 0;
  for (const BaseDataItem* next = &item; next != nullptr; next = inner, ++depth)
  {
    inner = nullptr;
    if (const auto* const map = dynamic_cast<const DataItemMap*>(next))
      inner = &map->getItem("inner");
    else if (const auto* const node = dynamic_cast<const BaseDataItemNode*>(next))
    {
      if (!node->getItemKeys().empty())
        inner = &node->getItem(*node->getItemKeys().begin());
    }
    else if (const auto* const coll = dynamic_cast<const BaseDataItemNodeColl*>(next))
    {
      if (!coll->isEmpty())
        inner = &coll->getNodeBase(0);
    }
  }
  return depth;
}

template <class HandWritten>
class DeepTree : public testing::Test
{
protected:
  static std::string fileOfTree(const DataItemPtr& tree, ipUInt32 maxDepth = g_limit)
  {
    return fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          archive.setLimits({maxDepth, archive.getLimits().maxWork});
          archive << SerializationOItem("tree", tree);
        });
  }

  static DataItemPtr treeOf(const std::string& file)
  {
    DataItemPtr tree;
    readFile<HandWritten>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("tree", tree); });
    return tree;
  }

  /// Adds to the test's report how much of the stack was used.
  static void report(const char* what, const Shape& shape, std::size_t nbUsed)
  {
    std::string key = std::string("stack used to ") + what + " " + shape.name;
    for (char& character : key)
      character = character == ' ' ? '_' : character;
    testing::Test::RecordProperty(key, std::to_string(nbUsed));
  }
};

TYPED_TEST_SUITE(DeepTree, Formats, );

TYPED_TEST(DeepTree, IsAsDeepAsTheTestsMakeIt)
{
  for (const Shape& shape : g_shapes)
  {
    EXPECT_EQ(depthOf(*shape.make(1)), 1) << shape.name;
    EXPECT_EQ(depthOf(*shape.make(5)), 5) << shape.name;
  }
}

TYPED_TEST(DeepTree, OfTheLimitIsBuiltCopiedAndComparedOnASmallStack)
{
  for (const Shape& shape : g_shapes)
  {
    const std::size_t nbUsed = callOnSmallStack(
        [&shape]
        {
          DataItemPtr tree = shape.make(g_limit);
          DataItemPtr copy = boost::static_pointer_cast<BaseDataItem>(tree->duplicateShared());
          EXPECT_EQ(depthOf(*copy), g_limit) << shape.name;
          EXPECT_TRUE(orvel::equal(*tree, *copy, 0)) << shape.name;
          tree.reset();
          copy.reset();
        });
    this->report("copy and compare", shape, nbUsed);
  }
}

TYPED_TEST(DeepTree, OfTheLimitIsWrittenAndDestroyedOnASmallStack)
{
  for (const Shape& shape : g_shapes)
  {
    const std::size_t nbUsed = callOnSmallStack(
        [&shape, this]
        {
          const DataItemPtr tree = shape.make(g_limit);
          EXPECT_FALSE(this->fileOfTree(tree).empty());
        });
    this->report("write", shape, nbUsed);
  }
}

TYPED_TEST(DeepTree, OfTheLimitIsReadAndDestroyedOnASmallStack)
{
  for (const Shape& shape : g_shapes)
  {
    const std::string file = this->fileOfTree(shape.make(g_limit));
    const std::size_t nbUsed =
        callOnSmallStack([&] { EXPECT_EQ(depthOf(*this->treeOf(file)), g_limit) << shape.name; });
    this->report("read", shape, nbUsed);
  }
}

TYPED_TEST(DeepTree, OfTheLimitSurvivesAnArchive)
{
  for (const Shape& shape : g_shapes)
  {
    const DataItemPtr tree = shape.make(g_limit);
    EXPECT_TRUE(orvel::equal(*this->treeOf(this->fileOfTree(tree)), *tree, 0)) << shape.name;
  }
}

TYPED_TEST(DeepTree, BeyondTheLimitIsRefusedOnWritingOnASmallStack)
{
  for (const Shape& shape : g_shapes)
  {
    const std::size_t nbUsed = callOnSmallStack(
        [&shape, this]
        {
          const DataItemPtr tree = shape.make(g_limit + 1);
          const std::string message = messageOf<ORVELSerializationException>([&] { this->fileOfTree(tree); });
          EXPECT_NE(message.find(": more than 128 objects within objects"), std::string::npos)
              << shape.name << ": " << message;
          EXPECT_EQ(depthOf(*tree), g_limit + 1) << shape.name;
        });
    this->report("refuse to write", shape, nbUsed);
  }
}

TYPED_TEST(DeepTree, BeyondTheLimitIsRefusedOnReadingOnASmallStack)
{
  for (const Shape& shape : g_shapes)
  {
    const std::string file = this->fileOfTree(shape.make(g_limit + 1), g_limit + 1);
    const std::size_t nbUsed = callOnSmallStack(
        [&]
        {
          std::istringstream stream(file);
          typename TypeParam::IArchive archive(stream);
          DataItemPtr tree;
          const std::string message =
              messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("tree", tree); });
          EXPECT_NE(message.find(": more than 128 objects within objects"), std::string::npos)
              << shape.name << ": " << message;
          EXPECT_EQ(tree, nullptr) << shape.name;
          EXPECT_TRUE(archive.isFailed());
        });
    this->report("refuse to read", shape, nbUsed);
  }
}

/// Items written one after the other, each a map that refers to the one before.
void writeUpward(BaseOArchive& archive, int depth)
{
  DataItemPtr tree = makeLeaf<ipInt32>(1);
  archive << SerializationOItem("tree", tree);
  for (int i = 1; i < depth; ++i)
  {
    const auto map = boost::make_shared<DataItemMap>();
    map->insertItem("inner", tree);
    tree = map;
    archive << SerializationOItem("tree", tree);
  }
}

/// The last of the items that writeUpward() has written.
DataItemPtr readUpward(BaseIArchive& archive, int depth)
{
  DataItemPtr tree;
  for (int i = 0; i < depth; ++i)
    archive >> SerializationIItem("tree", tree);
  return tree;
}

TYPED_TEST(DeepTree, OfReferencesToTheLimitIsWrittenAndReadOnASmallStack)
{
  callOnSmallStack(
      []
      {
        const std::string file =
            fileOf<TypeParam>([](BaseOArchive& archive) { writeUpward(archive, g_limit); });
        readFile<TypeParam>(file, [](BaseIArchive& archive)
                            { EXPECT_EQ(depthOf(*readUpward(archive, g_limit)), g_limit); });
      });
}

TYPED_TEST(DeepTree, OfReferencesBeyondTheLimitIsRefused)
{
  std::ostringstream written;
  typename TypeParam::OArchive output(written);
  const std::string text = ": more than 128 objects within objects";
  const std::string writing =
      messageOf<ORVELSerializationException>([&] { writeUpward(output, g_limit + 1); });
  EXPECT_NE(writing.find(text), std::string::npos) << writing;

  const std::string file = fileOf<TypeParam>(
      [](BaseOArchive& archive)
      {
        archive.setLimits({g_limit + 1, archive.getLimits().maxWork});
        writeUpward(archive, g_limit + 1);
      });
  std::istringstream stream(file);
  typename TypeParam::IArchive input(stream);
  EXPECT_NO_THROW(readUpward(input, g_limit));
  const std::string reading = messageOf<ORVELSerializationException>([&] { readUpward(input, 1); });
  EXPECT_NE(reading.find(text), std::string::npos) << reading;
}

} // namespace
