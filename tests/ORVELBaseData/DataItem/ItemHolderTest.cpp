// What maps and node collections have in common: they share items, copy them deeply, and bring them back by
// the names of their classes.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include "TestNodes.h"
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/Node/DataItemNodeFactory.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/SampleNode.h>

ORVEL_TEST_EXPOSE(ItemMap, &orvel::DataItemMap::_itemMap)
ORVEL_TEST_EXPOSE(NodeVector, &orvel::BaseDataItemNodeColl::_coll)

namespace
{

using namespace orvel;
using namespace orvel::test;

using Counts = std::vector<ipInt32>;

/// A class, how items get into it and out again, and what its archives hold besides the items.
struct MapSubject
{
  using Holder = DataItemMap;
  static constexpr const char* className = "orvel::DataItemMap";
  static constexpr const char* sourceFile = "ORVELBaseData/DataItem/Map/DataItemMap.cpp";
  static constexpr const char* key = "_itemMap";
  static constexpr const char* form = "map";
  static constexpr const char* itemClassName = "orvel::BaseDataItem";
  static constexpr eDataItemType::domain kind = eDataItemType::eDIT_Map;
  static constexpr bool hasPlaceBeforeRead = false; ///< for the items that are read
  static constexpr const char* misfit = "orvel::SingleIdentifier";
  static constexpr std::size_t nbBlocksOfCopy = 1 + 2 * 3; ///< the copy, each item, its count and its entry

  static std::string nameOf(std::size_t index) { return std::string(1, static_cast<char>('a' + index)); }
  static void add(Holder& holder, const DataItemNodePtr& node)
  {
    holder.insertItem(nameOf(holder.getSize()), node);
  }
  static DataItemConstPtr at(const Holder& holder, std::size_t index)
  {
    return holder.getItemPtr(nameOf(index));
  }
  static std::size_t sizeOfMember() { return sizeof(std::map<std::string, DataItemPtr>); }
  static std::ptrdiff_t offsetOfMember() { return offsetOf(memberOf(ItemMap())); }

  template <class HandWritten>
  static void putKey(HandWritten& archive, std::size_t index)
  {
    archive.text("key", nameOf(index));
  }
  template <class HandWritten>
  static void putMisfit(HandWritten& archive)
  {
    putVersion(archive, "orvel::BaseIdentifier", 1);
    putVersion(archive, "orvel::SingleIdentifier", 1);
    archive.integer("_value", 1);
  }
};

struct NodeCollSubject
{
  using Holder = BaseDataItemNodeColl;
  static constexpr const char* className = "orvel::BaseDataItemNodeColl";
  static constexpr const char* sourceFile = "ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.cpp";
  static constexpr const char* key = "_coll";
  static constexpr const char* form = "vector";
  static constexpr const char* itemClassName = "orvel::BaseDataItemNode";
  static constexpr eDataItemType::domain kind = eDataItemType::eDIT_NodeColl;
  static constexpr bool hasPlaceBeforeRead = true;
  static constexpr const char* misfit = "orvel::DataItemLeaf<ipInt32>"; ///< an item, but no node
  static constexpr std::size_t nbBlocksOfCopy =
      1 + 1 + 2 * 2; ///< the copy, its vector, each node and its count

  static void add(Holder& holder, const DataItemNodePtr& node) { holder.push_back(node); }
  static DataItemConstPtr at(const Holder& holder, std::size_t index) { return holder.getColl().at(index); }
  static std::size_t sizeOfMember() { return sizeof(std::vector<DataItemNodePtr>); }
  static std::ptrdiff_t offsetOfMember() { return offsetOf(memberOf(NodeVector())); }

  template <class HandWritten>
  static void putKey(HandWritten& /*archive*/, std::size_t /*index*/)
  {
  }
  template <class HandWritten>
  static void putMisfit(HandWritten& archive)
  {
    archive.integer("_value", 1); // the sample ahead of it has brought the versions
  }
};

/// A holder of sample nodes that count from 1.
template <class Subject>
typename Subject::Holder makeHolder(ipInt32 size)
{
  typename Subject::Holder holder;
  for (ipInt32 i = 1; i <= size; ++i)
    Subject::add(holder, makeSampleNode(i, "label"));
  return holder;
}

ipInt32 countOf(const BaseDataItem& node)
{
  const auto& count = dynamic_cast<const BaseDataItemNode&>(node).getItem("count");
  return dynamic_cast<const DataItemLeaf<ipInt32>&>(count).getValue();
}

/// What the sample nodes of a holder count; 0 stands for a null pointer.
template <class Subject>
Counts countsOf(const typename Subject::Holder& holder)
{
  Counts counts;
  for (std::size_t i = 0; i < holder.getSize(); ++i)
  {
    const DataItemConstPtr item = Subject::at(holder, i);
    counts.push_back(item ? countOf(*item) : 0);
  }
  return counts;
}

// The class

template <class Subject>
class ItemHolder : public testing::Test
{
};

using Subjects = testing::Types<MapSubject, NodeCollSubject>;
TYPED_TEST_SUITE(ItemHolder, Subjects, );

TYPED_TEST(ItemHolder, HasItsNameItsVersionAndItsKind)
{
  using Holder = typename TypeParam::Holder;
  EXPECT_TRUE((std::is_base_of<BaseDataItem, Holder>::value));
  EXPECT_EQ(Holder::getTypeName(), TypeParam::className);
  EXPECT_EQ(Holder().getClassName(), TypeParam::className);
  EXPECT_EQ(Holder::getVersion(), 1U);
  EXPECT_TRUE(Holder().hasCopySupport());
  EXPECT_EQ(Holder().getDataItemType(), TypeParam::kind);
}

TYPED_TEST(ItemHolder, CountsIn32Bits)
{
  EXPECT_TRUE((std::is_same<decltype(typename TypeParam::Holder().getSize()), ipUInt32>::value));
}

TYPED_TEST(ItemHolder, StaysAsItIsIfThereIsNoMemoryForAnItem)
{
  typename TypeParam::Holder holder;
  const auto node = makeSampleNode(1, "one");
  const std::size_t nbFailures = failAtEachAllocation([&] { TypeParam::add(holder, node); },
                                                      [&]
                                                      {
                                                        EXPECT_TRUE(holder.isEmpty());
                                                        EXPECT_EQ(node.use_count(), 1);
                                                      });
  EXPECT_EQ(nbFailures, 1U);
  EXPECT_EQ(holder.getSize(), 1U);
}

// Copies

TYPED_TEST(ItemHolder, IsCopiedDeeply)
{
  using Holder = typename TypeParam::Holder;
  const std::function<boost::shared_ptr<Holder>(const Holder&)> ways[] = {
      [](const Holder& source)
      {
        auto copy = boost::make_shared<Holder>(makeHolder<TypeParam>(5));
        copy->copy(source);
        return copy;
      },
      [](const Holder& source) { return boost::make_shared<Holder>(source); },
      [](const Holder& source)
      {
        auto copy = boost::make_shared<Holder>(makeHolder<TypeParam>(1));
        EXPECT_EQ(&(*copy = source), copy.get());
        return copy;
      },
      [](const Holder& source)
      { return boost::shared_ptr<Holder>(dynamic_cast<Holder*>(source.duplicate())); },
      [](const Holder& source)
      {
        return boost::dynamic_pointer_cast<Holder>(source.duplicateShared());
      }};
  for (const auto& copyOf : ways)
  {
    // A sample, and a node that holds another holder.
    const auto sample = makeSampleNode(3, "three");
    const auto inner = boost::make_shared<Holder>(makeHolder<TypeParam>(1));
    const auto node = boost::make_shared<AnyNode>();
    node->setItem("inner", inner);
    Holder tree;
    TypeParam::add(tree, sample);
    TypeParam::add(tree, node);

    const boost::shared_ptr<const Holder> copied = copyOf(tree);
    ASSERT_EQ(copied->getSize(), 2U);
    EXPECT_TRUE(orvel::equal(tree, *copied, 0.0));
    const auto& nodeCopied = dynamic_cast<const AnyNode&>(*TypeParam::at(*copied, 1));
    const auto& innerCopied = dynamic_cast<const Holder&>(nodeCopied.getItem("inner"));
    EXPECT_NE(TypeParam::at(*copied, 0), sample);
    EXPECT_NE(TypeParam::at(*copied, 1), node);
    EXPECT_NE(&innerCopied, inner.get());
    EXPECT_NE(TypeParam::at(innerCopied, 0), TypeParam::at(*inner, 0));
    EXPECT_EQ(TypeParam::at(*copied, 0).use_count(), 2); // the copy's and this one
    EXPECT_EQ(TypeParam::at(innerCopied, 0).use_count(), 2);

    // Changes of the source are not seen by the copy.
    sample->accessCount().setValue(4);
    TypeParam::add(*inner, makeSampleNode(5, "five"));
    EXPECT_FALSE(orvel::equal(tree, *copied, 0.0));
    EXPECT_EQ(countOf(*TypeParam::at(*copied, 0)), 3);
    EXPECT_EQ(countsOf<TypeParam>(innerCopied), Counts{1});
  }
}

TYPED_TEST(ItemHolder, ReleasesWhatItHeldWhenItIsCopiedTo)
{
  const auto kept = makeSampleNode(1, "one");
  typename TypeParam::Holder holder;
  TypeParam::add(holder, kept);
  TypeParam::add(holder, makeSampleNode(2, "two"));
  const boost::weak_ptr<const BaseDataItem> other = TypeParam::at(holder, 1);
  holder = makeHolder<TypeParam>(1);
  EXPECT_EQ(countsOf<TypeParam>(holder), Counts{1});
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_TRUE(other.expired());
  holder.copy(typename TypeParam::Holder());
  EXPECT_TRUE(holder.isEmpty());
}

TYPED_TEST(ItemHolder, IsEmptyAfterAnAssignmentToItself)
{
  auto holder = makeHolder<TypeParam>(2);
  const boost::weak_ptr<const BaseDataItem> item = TypeParam::at(holder, 0);
  const auto& same = holder;
  holder = same;
  EXPECT_TRUE(holder.isEmpty());
  EXPECT_TRUE(item.expired());
}

TYPED_TEST(ItemHolder, IsEmptyAfterACopyOfItself)
{
  auto holder = makeHolder<TypeParam>(2);
  holder.copy(holder);
  EXPECT_TRUE(holder.isEmpty());
}

TYPED_TEST(ItemHolder, BecomesACopyOfAHolderThatOnlyItsOwnNodeHolds)
{
  typename TypeParam::Holder holder;
  auto node = boost::make_shared<AnyNode>();
  node->setItem("inner", boost::make_shared<typename TypeParam::Holder>(makeHolder<TypeParam>(2)));
  const BaseDataItem& inner = node->getItem("inner");
  TypeParam::add(holder, node);
  const boost::weak_ptr<AnyNode> watched = node;
  node.reset();
  holder.copy(inner);
  EXPECT_EQ(countsOf<TypeParam>(holder), (Counts{1, 2}));
  EXPECT_TRUE(watched.expired());
}

TYPED_TEST(ItemHolder, MakesTwoItemsOfOneThatItHoldsTwice)
{
  const auto node = makeSampleNode(1, "one");
  typename TypeParam::Holder holder;
  TypeParam::add(holder, node);
  TypeParam::add(holder, node);
  EXPECT_EQ(node.use_count(), 3);
  EXPECT_EQ(TypeParam::at(holder, 0), TypeParam::at(holder, 1));
  const typename TypeParam::Holder copy(holder);
  EXPECT_EQ(countsOf<TypeParam>(copy), (Counts{1, 1}));
  EXPECT_NE(TypeParam::at(copy, 0), TypeParam::at(copy, 1));
  EXPECT_EQ(node.use_count(), 3);
}

TYPED_TEST(ItemHolder, DuplicatesItemsInTheirOwnClass)
{
  typename TypeParam::Holder holder;
  TypeParam::add(holder, makeNode<OtherNode, ipInt32>("a", 1));
  TypeParam::add(holder, makeSampleNode(1, "one"));
  const typename TypeParam::Holder copy(holder);
  EXPECT_EQ(TypeParam::at(copy, 0)->getClassName(), "orvel::OtherNode");
  EXPECT_EQ(TypeParam::at(copy, 1)->getClassName(), "orvel::SampleNode");
}

/// Replaces what makes new objects, but not what makes duplicates.
template <class Holder>
class Derived : public Holder
{
public:
  BaseDynamicObject* createNew() const override { return new Derived; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<Derived>(); }
};

TYPED_TEST(ItemHolder, IsDuplicatedAsItsOwnClass)
{
  using Holder = typename TypeParam::Holder;
  Derived<Holder> holder;
  TypeParam::add(holder, makeSampleNode(3, "three"));
  const std::unique_ptr<BaseDynamicObject> owned(holder.duplicate());
  const DynamicObjectPtr shared = holder.duplicateShared();
  for (const BaseDynamicObject* const duplicate : {owned.get(), shared.get()})
  {
    EXPECT_EQ(dynamic_cast<const Derived<Holder>*>(duplicate), nullptr);
    EXPECT_EQ(countsOf<TypeParam>(dynamic_cast<const Holder&>(*duplicate)), Counts{3});
  }
}

TYPED_TEST(ItemHolder, HoldsWhatWasCopiedBeforeAnItemThatCannotBe)
{
  auto source = makeHolder<TypeParam>(2);
  TypeParam::add(source, boost::make_shared<UnknownNode>()); // its duplicate throws
  TypeParam::add(source, makeSampleNode(4, "four"));
  auto target = makeHolder<TypeParam>(7);
  EXPECT_THROW(target = source, std::runtime_error);
  EXPECT_EQ(countsOf<TypeParam>(target), (Counts{1, 2}));
  EXPECT_EQ(source.getSize(), 4U);
}

TYPED_TEST(ItemHolder, LeaksNothingWhenAnItemCannotBeCopied)
{
  auto source = makeHolder<TypeParam>(2);
  TypeParam::add(source, boost::make_shared<UnknownNode>());
  EXPECT_THROW(source.duplicate(), std::runtime_error); // what is made on the first throw stays
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  EXPECT_THROW(source.duplicate(), std::runtime_error);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_THROW(source.duplicateShared(), std::runtime_error);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_THROW(typename TypeParam::Holder{source}, std::runtime_error);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TYPED_TEST(ItemHolder, LeaksNothingWhenMemoryEndsInACopy)
{
  const auto holder = makeHolder<TypeParam>(2);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbFailures = failAtEachAllocation([&] { delete holder.duplicate(); },
                                                      [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
  EXPECT_EQ(nbFailures, TypeParam::nbBlocksOfCopy);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

// Archives

template <class S, class F>
struct Case
{
  using Subject = S;
  using Format = F;
};

template <class Case>
class ArchivedItemHolder : public testing::Test
{
protected:
  using SubjectType = typename Case::Subject;
  using FormatType = typename Case::Format;
  using Holder = typename SubjectType::Holder;

  /// An archive with a version of the class, to its items.
  void start(std::int64_t size, ipUInt32 version = 1)
  {
    putVersion(_archive, "orvel::BaseDataItem", BaseDataItem::getVersion());
    putVersion(_archive, SubjectType::className, version);
    open(size);
  }

  void open(std::int64_t size)
  {
    _archive.openSection(SubjectType::key);
    _archive.openSection(SubjectType::form);
    _archive.integer("size", size);
  }

  void close()
  {
    _archive.close();
    _archive.close();
  }

  /// An entry, which holds what `put` puts into it.
  void putEntry(const std::function<void()>& put)
  {
    SubjectType::putKey(_archive, _nbEntries++);
    _archive.openSection("value");
    _archive.openSection(std::string("shared_ptr<") + SubjectType::itemClassName + ">");
    put();
    _archive.close();
    _archive.close();
  }

  void putObject(const std::string& className, const std::function<void()>& put)
  {
    putEntry(
        [&]
        {
          _archive.openPointer("pObject", className);
          put();
          _archive.close();
        });
  }

  void putNull()
  {
    putEntry([&] { _archive.nullPointer("pObject"); });
  }

  /// A sample node; the first one brings the versions.
  void putSample(std::int64_t count, const std::string& label)
  {
    const bool isFirst = !_hasSample;
    _hasSample = true;
    putObject("orvel::SampleNode",
              [&]
              {
                if (isFirst)
                {
                  putVersion(_archive, "orvel::BaseDataItemNode", BaseDataItemNode::getVersion());
                  putVersion(_archive, "orvel::SampleNode", SampleNode::getVersion());
                }
                _archive.openObject("count");
                if (isFirst)
                {
                  putVersion(_archive, "orvel::BaseDataItemLeaf", BaseDataItemLeaf::getVersion());
                  putVersion(_archive, "orvel::DataItemLeaf<ipInt32>", DataItemLeaf<ipInt32>::getVersion());
                }
                _archive.integer("_value", count);
                _archive.close();
                _archive.openObject("label");
                if (isFirst)
                  putVersion(_archive, "orvel::DataItemLeaf<std::string>",
                             DataItemLeaf<std::string>::getVersion());
                _archive.text("_value", label);
                _archive.close();
              });
  }

  /// The archive, whose items are complete.
  std::string finish()
  {
    close();
    return _archive.file();
  }

  /// A sample, a stranger, and a sample again.
  std::string fileWithAStrangerOf(const std::string& className, const std::function<void()>& put)
  {
    start(3);
    putSample(1, "one");
    putObject(className, put);
    putSample(3, "three");
    return finish();
  }

  /// Checks what a holder has when the second of three items cannot be read.
  static void expectTheFirstOfThree(const Holder& holder)
  {
    EXPECT_EQ(countsOf<SubjectType>(holder), (SubjectType::hasPlaceBeforeRead ? Counts{1, 0, 0} : Counts{1}));
  }

  static std::string write(const Holder& holder)
  {
    return fileOf<FormatType>(
        [&](BaseOArchive& archive)
        {
          const BoolResult written = holder.write(archive);
          EXPECT_TRUE(written);
          EXPECT_EQ(written.getMessage(), "");
        });
  }

  static void read(const std::string& file, Holder& holder, bool isUntrusted = false)
  {
    readFile<FormatType>(file,
                         [&](BaseIArchive& archive)
                         {
                           archive.setUntrusted(isUntrusted);
                           const BoolResult read = holder.read(archive);
                           EXPECT_TRUE(read);
                           EXPECT_EQ(read.getMessage(), "");
                         });
  }

  /// Checks that a file is refused, and that the archive is marked as failed.
  /// \return the text of the failure
  template <class Exception>
  static std::string refusalOf(const std::string& file, Holder& holder, bool isUntrusted = false)
  {
    std::istringstream stream(file);
    typename FormatType::IArchive archive(stream);
    archive.setUntrusted(isUntrusted);
    std::string message = messageOf<Exception>([&] { holder.read(archive); });
    EXPECT_TRUE(archive.isFailed());
    return message;
  }

  FormatType _archive;

private:
  std::size_t _nbEntries = 0;
  bool _hasSample = false;
};

using Cases = testing::Types<Case<MapSubject, HandWrittenXml>, Case<MapSubject, HandWrittenBinary>,
                             Case<NodeCollSubject, HandWrittenXml>, Case<NodeCollSubject, HandWrittenBinary>>;
TYPED_TEST_SUITE(ArchivedItemHolder, Cases, );

TYPED_TEST(ArchivedItemHolder, OfNoItemsHoldsTheirCount)
{
  this->start(0);
  const std::string file = this->finish();
  EXPECT_EQ(this->write(typename TestFixture::Holder()), file);
  auto holder = makeHolder<typename TypeParam::Subject>(2);
  this->read(file, holder);
  EXPECT_TRUE(holder.isEmpty());
}

TYPED_TEST(ArchivedItemHolder, HoldsTheItemsInOrder)
{
  using Subject = typename TypeParam::Subject;
  this->start(2);
  this->putSample(1, "label");
  this->putSample(2, "label");
  const std::string file = this->finish();
  EXPECT_EQ(this->write(makeHolder<Subject>(2)), file);
  typename TestFixture::Holder holder;
  this->read(file, holder);
  EXPECT_EQ(countsOf<Subject>(holder), (Counts{1, 2}));
}

TYPED_TEST(ArchivedItemHolder, HoldsTheVersionsOnce)
{
  this->start(0);
  this->close();
  this->open(0);
  EXPECT_EQ(fileOf<typename TypeParam::Format>(
                [](BaseOArchive& archive)
                {
                  typename TestFixture::Holder().write(archive);
                  typename TestFixture::Holder().write(archive);
                }),
            this->finish());
}

TYPED_TEST(ArchivedItemHolder, IsReadUnderALowerVersion)
{
  this->start(1, 0);
  this->putSample(7, "seven");
  typename TestFixture::Holder holder;
  this->read(this->finish(), holder);
  EXPECT_EQ(countsOf<typename TypeParam::Subject>(holder), Counts{7});
}

TYPED_TEST(ArchivedItemHolder, BringsItemsOfSeveralClassesInOrder)
{
  using Subject = typename TypeParam::Subject;
  typename TestFixture::Holder holder;
  Subject::add(holder, makeNode<OtherNode, ipReal64>("a", 0.5));
  Subject::add(holder, makeSampleNode(1, "one"));
  Subject::add(holder, makeNode<AnyNode, ipReal64>("a", 0.5));
  Subject::add(holder, makeNode<OtherNode, std::string>("b", "text"));
  for (const bool isUntrusted : {false, true})
  {
    typename TestFixture::Holder copy;
    this->read(this->write(holder), copy, isUntrusted);
    ASSERT_EQ(copy.getSize(), 4U);
    EXPECT_EQ(Subject::at(copy, 0)->getClassName(), "orvel::OtherNode");
    EXPECT_EQ(Subject::at(copy, 1)->getClassName(), "orvel::SampleNode");
    EXPECT_EQ(Subject::at(copy, 2)->getClassName(), "orvel::AnyNode");
    EXPECT_EQ(Subject::at(copy, 3)->getClassName(), "orvel::OtherNode");
    EXPECT_TRUE(orvel::equal(copy, holder, 0));
  }
}

TYPED_TEST(ArchivedItemHolder, NeedsNoEntryInTheCatalogueOfNodes)
{
  using Subject = typename TypeParam::Subject;
  ASSERT_EQ(DataItemNodeFactory::getInstance().getRegistredNodes(), ItemNameColl());
  typename TestFixture::Holder holder;
  this->read(this->write(makeHolder<Subject>(1)), holder);
  EXPECT_EQ(countsOf<Subject>(holder), Counts{1});
}

TYPED_TEST(ArchivedItemHolder, BringsAnItemThatIsHeldTwiceAsOne)
{
  using Subject = typename TypeParam::Subject;
  this->start(2);
  this->putSample(3, "x");
  this->putEntry([&] { this->_archive.reference("pObject", 1); });
  const std::string file = this->finish();
  const auto node = makeSampleNode(3, "x");
  typename TestFixture::Holder holder;
  Subject::add(holder, node);
  Subject::add(holder, node);
  EXPECT_EQ(this->write(holder), file);
  typename TestFixture::Holder copy;
  this->read(file, copy);
  ASSERT_EQ(copy.getSize(), 2U);
  EXPECT_EQ(Subject::at(copy, 0), Subject::at(copy, 1));
}

TYPED_TEST(ArchivedItemHolder, ReleasesItsOldItemsBeforeItReads)
{
  using Subject = typename TypeParam::Subject;
  const auto kept = makeSampleNode(1, "one");
  typename TestFixture::Holder holder;
  Subject::add(holder, kept);
  Subject::add(holder, makeSampleNode(2, "two"));
  const boost::weak_ptr<const BaseDataItem> other = Subject::at(holder, 1);
  this->start(1);
  this->putSample(7, "seven");
  this->read(this->finish(), holder);
  EXPECT_EQ(countsOf<Subject>(holder), Counts{7});
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_EQ(kept->accessCount().getValue(), 1);
  EXPECT_TRUE(other.expired());
}

TYPED_TEST(ArchivedItemHolder, ReleasesItsOldItemsAlsoIfTheFirstCannotBeRead)
{
  const auto node = makeSampleNode(1, "one");
  typename TestFixture::Holder holder;
  TypeParam::Subject::add(holder, node);
  this->start(1);
  this->_archive.text("value", "no section");
  this->template refusalOf<ORVELSerializationException>(this->finish(), holder);
  EXPECT_EQ(node.use_count(), 1);
}

TYPED_TEST(ArchivedItemHolder, ReleasesItsOldItemsAlsoIfTheNewOnesCannotBeCounted)
{
  using Subject = typename TypeParam::Subject;
  using Format = typename TypeParam::Format;
  const std::function<void(Format&)> faults[] = {[](Format& file) { file.text(Subject::key, "no section"); },
                                                 [](Format& file)
                                                 {
                                                   file.openSection(Subject::key);
                                                   file.openSection(Subject::form);
                                                   file.text("size", "many");
                                                   file.close();
                                                   file.close();
                                                 }};
  for (const auto& put : faults)
  {
    Format file;
    putVersion(file, "orvel::BaseDataItem", 1);
    putVersion(file, Subject::className, 1);
    put(file);
    auto holder = makeHolder<Subject>(2);
    this->template refusalOf<ORVELSerializationException>(file.file(), holder);
    EXPECT_TRUE(holder.isEmpty());
  }
}

TYPED_TEST(ArchivedItemHolder, BringsANullThatIsWrittenAgain)
{
  using Subject = typename TypeParam::Subject;
  this->start(2);
  this->putNull();
  this->putSample(4, "four");
  const std::string file = this->finish();
  typename TestFixture::Holder holder;
  this->read(file, holder);
  EXPECT_EQ(countsOf<Subject>(holder), (Counts{0, 4}));
  EXPECT_EQ(this->write(holder), file);
}

TYPED_TEST(ArchivedItemHolder, WithAnUnregisteredClassIsRefusedAndHoldsWhatWasReadBefore)
{
  const std::string file =
      this->fileWithAStrangerOf("orvel::NobodyKnowsThis", [this] { this->_archive.integer("_value", 1); });
  auto holder = makeHolder<typename TypeParam::Subject>(7);
  const std::string message = this->template refusalOf<ORVELSerializationException>(file, holder);
  EXPECT_NE(message.find(": unknown class \"orvel::NobodyKnowsThis\""), std::string::npos) << message;
  this->expectTheFirstOfThree(holder);
}

TYPED_TEST(ArchivedItemHolder, WithAClassThatDoesNotFitIsRefusedWhenNotTrusted)
{
  using Subject = typename TypeParam::Subject;
  const std::string file =
      this->fileWithAStrangerOf(Subject::misfit, [this] { Subject::putMisfit(this->_archive); });
  auto holder = makeHolder<Subject>(7);
  const std::string message = this->template refusalOf<ORVELSerializationException>(file, holder, true);
  EXPECT_NE(message.find(std::string(": an object of class ") + Subject::misfit + " can't stand for class " +
                         Subject::itemClassName),
            std::string::npos)
      << message;
  this->expectTheFirstOfThree(holder);
}

TYPED_TEST(ArchivedItemHolder, PassesTheFailureOfAnItemOnAndHoldsWhatWasReadBefore)
{
  const std::string file =
      this->fileWithAStrangerOf("orvel::BaseDataItemEnumLeaf",
                                [this]
                                {
                                  putVersion(this->_archive, "orvel::BaseDataItemEnumLeaf", 1);
                                  this->_archive.text("enumValue", "eC_Red");
                                });
  auto holder = makeHolder<typename TypeParam::Subject>(7);
  EXPECT_EQ(this->template refusalOf<ORVELBaseDataException>(file, holder),
            "Invalid enumerate string value eC_Red for enumerate ");
  this->expectTheFirstOfThree(holder);
}

TYPED_TEST(ArchivedItemHolder, WithMoreItemsThanItCouldHoldIsRefused)
{
  this->start(4294967295);
  typename TestFixture::Holder holder;
  this->template refusalOf<ORVELSerializationException>(this->finish(), holder);
  EXPECT_TRUE(holder.isEmpty());
}

TYPED_TEST(ArchivedItemHolder, LeaksNothingWhenMemoryEndsInARead)
{
  const std::string file = this->write(makeHolder<typename TypeParam::Subject>(2));
  const auto read = [&]
  {
    typename TestFixture::Holder holder;
    std::istringstream stream(file);
    typename TypeParam::Format::IArchive archive(stream);
    holder.read(archive);
  };
  read(); // what is made once and kept
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  EXPECT_GT(failAtEachAllocation(read, [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); }), 8U);
}

} // namespace
