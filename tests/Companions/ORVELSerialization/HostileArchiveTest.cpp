// Damaged and hostile archives: every cut, every bit, counts beyond all bounds.

#include <new>
#include <random>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "ArchiveTesting.h"
#include "SampleClasses.h"
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

template <class Format>
class HostileArchive : public testing::Test
{
};

TYPED_TEST_SUITE(HostileArchive, Formats, );

/// A graph with shared objects and everything that has an item form.
SerializationObjectPtr makeSample()
{
  const auto root = boost::make_shared<TestNode>();
  root->_value = 77;
  root->_next = boost::make_shared<TestNode>();
  root->_next->_value = -5;
  root->_children = {TestMix::makeFull(), root->_next, nullptr};
  root->_point = TestPoint(1, 2);
  return root;
}

bool isSample(const SerializationObjectPtr& object)
{
  const auto* const root = dynamic_cast<const TestNode*>(object.get());
  if (root == nullptr || root->_value != 77 || !root->_next || root->_next->_value != -5 ||
      root->_children.size() != 3)
    return false;
  const auto* const mix = dynamic_cast<const TestMix*>(root->_children[0].get());
  return mix != nullptr && *mix == *TestMix::makeFull() && root->_children[1] == root->_next &&
         !root->_children[2] && root->_point == TestPoint(1, 2);
}

TYPED_TEST(HostileArchive, IsRefusedWhereverItIsCut)
{
  const std::string file = fileOfObject<TypeParam>(makeSample());
  ASSERT_TRUE(isSample(objectOfFile<TypeParam>(file, true)));
  const int nbBefore = TestNode::g_nbAlive;
  const std::size_t whole =
      std::is_same_v<TypeParam, XmlFormat> ? file.size() - 1 : file.size(); // the last line feed
  for (std::size_t size = 0; size < whole; ++size)
  {
    EXPECT_THROW(objectOfFile<TypeParam>(file.substr(0, size), true), ORVELSerializationException) << size;
    ASSERT_EQ(TestNode::g_nbAlive, nbBefore) << size;
  }
  if (whole != file.size())
  {
    EXPECT_TRUE(isSample(objectOfFile<TypeParam>(file.substr(0, whole), true)));
  }
}

TYPED_TEST(HostileArchive, IsRefusedWhereverItIsCutAlsoOnAStreamThatCanNotSeek)
{
  const std::string file = fileOfObject<TypeParam>(TestMix::makeFull());
  const std::size_t whole = std::is_same_v<TypeParam, XmlFormat> ? file.size() - 1 : file.size();
  for (std::size_t size = 0; size < whole; ++size)
  {
    UnseekableBuffer buffer(file.substr(0, size), 64);
    std::istream stream(&buffer);
    EXPECT_THROW(
        {
          typename TypeParam::IArchive archive(stream);
          SerializationObjectPtr object;
          archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", object));
          archive.close();
        },
        ORVELSerializationException)
        << size;
  }
}

/// Reads the file with each of its bits turned in turn. \return how many of them were accepted
template <class Format, class Accepts>
int turnEveryBit(const std::string& file, Accepts accepts)
{
  int nbAccepted = 0;
  for (std::size_t bit = 0; bit < 8 * file.size(); ++bit)
  {
    std::string turned = file;
    turned[bit / 8] = static_cast<char>(turned[bit / 8] ^ (1 << bit % 8));
    try
    {
      EXPECT_TRUE(accepts(objectOfFile<Format>(turned, true))) << bit;
      ++nbAccepted;
    }
    catch (const ORVELSerializationException&)
    {
    }
  }
  return nbAccepted;
}

TYPED_TEST(HostileArchive, IsRefusedWhicheverBitIsTurned)
{
  const std::string file = fileOfObject<TypeParam>(TestMix::makeFull());
  const auto isMix = [](const SerializationObjectPtr& object)
  {
    return boost::dynamic_pointer_cast<TestMix>(object) != nullptr;
  };
  const int nbAccepted = turnEveryBit<TypeParam>(file, isMix);
  if (std::is_same_v<TypeParam, BinaryFormat>)
  {
    EXPECT_EQ(nbAccepted, 0);
  }
  else
  {
    EXPECT_GT(nbAccepted, 0); // the text format has no hash: a digit may become another one
  }
}

// A reference that becomes one to an object around it makes a cycle. Where its object was handed out, the
// receiver opens it; else nobody could but the archive.
TYPED_TEST(HostileArchive, LeaksNothingWhicheverBitIsTurned)
{
  const std::string file = fileOfObject<TypeParam>(makeSample());
  const int nbBefore = TestNode::g_nbAlive;
  for (std::size_t bit = 0; bit < 8 * file.size(); ++bit)
  {
    std::string turned = file;
    turned[bit / 8] = static_cast<char>(turned[bit / 8] ^ (1 << bit % 8));
    SerializationObjectPtr object;
    try
    {
      readWhole<TypeParam>(turned,
                           [&](BaseIArchive& archive)
                           {
                             archive.setUntrusted(true);
                             archive.readObjectPtr(
                                 SerializationIItem<SerializationObjectPtr>("object", object));
                           });
    }
    catch (const ORVELSerializationException&)
    {
    }
    if (const auto root = boost::dynamic_pointer_cast<TestNode>(object))
    {
      root->_children.clear();
      root->_next.reset();
    }
    object.reset();
    ASSERT_EQ(TestNode::g_nbAlive, nbBefore) << bit;
  }
}

TYPED_TEST(HostileArchive, IsRefusedOrHarmlessWhateverIsChanged)
{
  const std::string file = fileOfObject<TypeParam>(TestMix::makeFull());
  std::mt19937 random(3);
  for (int round = 0; round < 2000; ++round)
  {
    std::string changed = file;
    for (unsigned i = 0; i <= random() % 4; ++i)
    {
      const std::size_t at = random() % changed.size();
      switch (random() % 4)
      {
      case 0:
        changed[at] = static_cast<char>(random());
        break;
      case 1:
        changed.erase(at, random() % 20);
        break;
      case 2:
        changed.insert(at, changed.substr(random() % changed.size(), random() % 20));
        break;
      default:
        changed.replace(at, 1, std::string(1 + random() % 9, "\xFF\x9F\x1B<0"[random() % 5]));
        break;
      }
    }
    if (std::is_same_v<TypeParam, BinaryFormat> && changed.size() > 40)
    {
      // A fitting hash, so that what stands before it is looked at.
      const std::size_t end = changed.rfind(std::string("\x83\x63") + "end");
      if (end != std::string::npos && end >= 18)
        changed = BinaryFormat::wrap(changed.substr(18, end - 18));
    }
    try
    {
      objectOfFile<TypeParam>(changed, true);
    }
    catch (const ORVELSerializationException&)
    {
    }
  }
}

// Memory

TYPED_TEST(HostileArchive, LeaksNothingWhereverMemoryEnds)
{
  const std::string file = fileOfObject<TypeParam>(makeSample());
  const SerializationObjectPtr sample = objectOfFile<TypeParam>(file, true); // makes what is made once
  const int nbNodes = TestNode::g_nbAlive;
  std::ptrdiff_t nbBlocks = 0;
  const auto expectNothingLeft = [&]
  {
    ASSERT_EQ(getNbBlocksInUse(), nbBlocks);
    ASSERT_EQ(TestNode::g_nbAlive, nbNodes);
  };
  const auto write = [&]
  {
    FullBuffer buffer(file.size()); // a string stream would take a lack of memory for an error of its own
    std::ostream stream(&buffer);
    typename TypeParam::OArchive archive(stream);
    archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("object", sample));
    archive.close();
  };
  write();
  nbBlocks = getNbBlocksInUse();
  EXPECT_GT(failAtEachAllocation([&] { objectOfFile<TypeParam>(file, true); }, expectNothingLeft), 20U);
  EXPECT_GT(failAtEachAllocation(write, expectNothingLeft), 5U);
}

TYPED_TEST(HostileArchive, IsFailedWhereverMemoryEnds)
{
  const std::string file = fileOfObject<TypeParam>(makeSample());
  std::size_t nbAllowed = 0;
  for (bool isRead = false; !isRead; ++nbAllowed)
  {
    std::istringstream stream(file);
    typename TypeParam::IArchive archive(stream);
    SerializationObjectPtr object;
    const SerializationIItem<SerializationObjectPtr> item("object", object);
    failAllocationAfter(nbAllowed);
    try
    {
      archive.readObjectPtr(item);
      failNoAllocation();
      isRead = true;
      EXPECT_TRUE(isSample(object));
    }
    catch (const std::bad_alloc&)
    {
      failNoAllocation();
      EXPECT_EQ(object, nullptr);
      EXPECT_TRUE(archive.isFailed());
      EXPECT_THROW(archive.close(), ORVELSerializationException);
    }
  }
  EXPECT_GT(nbAllowed, 20U);
}

// Counts

template <class Format>
std::string fileWithCount(ipUInt32 count, const std::string& behind)
{
  if (std::is_same_v<Format, XmlFormat>)
    return Format::wrap("<section name=\"K\"><section name=\"vector\"><item key=\"size\">" +
                        std::to_string(count) + "</item>" + behind + "</section></section>");
  return Format::wrap("\x9F\x9F" + cborHead(0, count) + behind + "\xFF\xFF");
}

template <class Format, class T>
void expectCountRefused(ipUInt32 count, const std::string& behind, bool canSeek)
{
  const std::string file = fileWithCount<Format>(count, behind);
  std::istringstream seekable(file);
  UnseekableBuffer buffer(file);
  std::istream unseekable(&buffer);
  typename Format::IArchive archive(canSeek ? static_cast<std::istream&>(seekable) : unseekable);
  T values;
  const std::size_t before = getAllocatedBytes();
  const std::string message =
      messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", values); });
  EXPECT_LT(getAllocatedBytes() - before, 300000U);
  EXPECT_TRUE(message.find("the rest of the archive can't hold " + std::to_string(count) + " elements") !=
                  std::string::npos ||
              message.find(": expected ") != std::string::npos)
      << message;
}

TYPED_TEST(HostileArchive, GetsNoMemoryByACount)
{
  for (const bool canSeek : {true, false})
  {
    const std::string some(500, std::is_same_v<TypeParam, XmlFormat> ? ' ' : '\x01');
    expectCountRefused<TypeParam, std::vector<double>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::vector<unsigned char>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::vector<bool>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::vector<std::string>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::vector<TestPointPtr>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::vector<std::vector<int>>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::set<TestPoint>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::map<int, std::string>>(4294967295U, some, canSeek);
    expectCountRefused<TypeParam, std::vector<std::string>>(1000U, some, canSeek);
  }
}

TYPED_TEST(HostileArchive, CountsWhatIsLeftAndNotWhatWasRead)
{
  const std::string text(20000, 'x');
  const bool isXml = std::is_same_v<TypeParam, XmlFormat>;
  const std::string file =
      isXml ? TypeParam::wrap("<item key=\"T\">" + text +
                              "</item><section name=\"K\"><section name=\"vector\"><item key=\"size\">500"
                              "</item></section></section>")
            : TypeParam::wrap(cborHead(3, text.size()) + text + "\x9F\x9F" + cborHead(0, 500) + "\xFF\xFF");
  for (const bool canSeek : {true, false})
  {
    std::istringstream seekable(file);
    UnseekableBuffer buffer(file);
    std::istream unseekable(&buffer);
    typename TypeParam::IArchive archive(canSeek ? static_cast<std::istream&>(seekable) : unseekable);
    std::string copy;
    archive >> SerializationIItem("T", copy);
    EXPECT_EQ(copy.size(), text.size());
    std::vector<std::string> values;
    const std::string message =
        messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", values); });
    EXPECT_NE(message.find(": the rest of the archive can't hold 500 elements"), std::string::npos)
        << message;
    EXPECT_TRUE(values.empty());
  }
}

TEST(HostileBinaryArchive, GetsNoMemoryByALength)
{
  for (const bool canSeek : {true, false})
    for (const ipUInt64 length : {ipUInt64{1000}, ipUInt64{1} << 32U, ipUInt64{1} << 62U, ~ipUInt64{0}})
      for (const unsigned int majorType : {2U, 3U})
      {
        const std::string file = BinaryFormat::wrap(cborHead(majorType, length) + "abc");
        std::istringstream seekable(file);
        UnseekableBuffer buffer(file);
        std::istream unseekable(&buffer);
        BinaryIArchive archive(canSeek ? static_cast<std::istream&>(seekable) : unseekable);
        std::string text = "old";
        const std::size_t before = getAllocatedBytes();
        const std::string message =
            messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", text); });
        EXPECT_LT(getAllocatedBytes() - before, 100000U);
        EXPECT_NE(message.find(": the archive is cut short"), std::string::npos) << message;
        EXPECT_EQ(text, "old");
      }
}

TEST(HostileBinaryArchive, GetsNoMemoryByTheLengthOfAClassName)
{
  const std::string file = BinaryFormat::wrap("\xD8\x1C\x9F" + cborHead(3, ipUInt64{1} << 40U) + "orvel");
  const std::size_t before = getAllocatedBytes();
  EXPECT_NE(
      messageOf<ORVELSerializationException>([&] { objectOfFile<BinaryFormat>(file); }).find("cut short"),
      std::string::npos);
  EXPECT_LT(getAllocatedBytes() - before, 500000U);
}

TEST(HostileArchiveGraph, FreesACycleThatIsCutShort)
{
  // A node whose next is itself, and then nothing: nobody is given it, so nobody can open the cycle.
  const int nbBefore = TestNode::g_nbAlive;
  {
    const auto node = boost::make_shared<TestNode>();
    node->_next = node;
    const std::string file = fileOfObject<XmlFormat>(node);
    node->_next.reset();
    std::string cut = file;
    cut.replace(cut.find("\"size\">0"), 8, "\"size\">x");
    EXPECT_THROW(objectOfFile<XmlFormat>(cut, true), ORVELSerializationException);
  }
  const int nbLeft = TestNode::g_nbAlive - nbBefore;
  EXPECT_EQ(nbLeft, 0);
}

// Read whole, but of a class that does not fit: it is handed to nobody. What was handed out before stays.
TYPED_TEST(HostileArchive, LeaksNothingIfACycleIsOfTheWrongClass)
{
  const int nbBefore = TestNode::g_nbAlive;
  const auto node = boost::make_shared<TestNode>();
  node->_value = 5;
  node->_next = node;
  const auto other = boost::make_shared<TestNode>();
  other->_next = other;
  other->_children = {node};
  const std::string file =
      fileBy<TypeParam>([&](BaseOArchive& archive)
                        { archive << SerializationOItem("A", node) << SerializationOItem("B", other); });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  archive.setUntrusted(true);
  TestNodePtr good;
  archive >> SerializationIItem("A", good);
  TestPointPtr wrong;
  EXPECT_THROW(archive >> SerializationIItem("B", wrong), ORVELSerializationException);
  EXPECT_EQ(wrong, nullptr);
  EXPECT_EQ(TestNode::g_nbAlive, nbBefore + 3);
  EXPECT_EQ(good->_value, 5);
  EXPECT_EQ(good->_next, good);
  for (const TestNodePtr& cycle : {node, other, good})
    cycle->_next.reset();
}

} // namespace
