#include "ORVELBaseData/DataItem/Leaf/DataItemLeaf.h"

#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "../ValueTesting.h"
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

template <class T>
class DataItemLeafOf : public ::testing::Test
{
protected:
  using LeafType = DataItemLeaf<T>;
  using TraitsType = ValueTypeTraits<T>;

  static std::string className() { return std::string("orvel::DataItemLeaf<") + TraitsType::name + ">"; }

  static LeafType leafOf(const T& value)
  {
    LeafType leaf;
    leaf.setValue(value);
    return leaf;
  }

  /// An archive of the values first() and second(), each in a leaf.
  template <class HandWritten>
  static std::string archiveOfTwo()
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseDataItem", 1);
    putVersion(archive, "orvel::BaseDataItemLeaf", 1);
    putVersion(archive, className(), 1);
    putValue(archive, "_value", TraitsType::first());
    putValue(archive, "_value", TraitsType::second());
    return archive.file();
  }
};

TYPED_TEST_SUITE(DataItemLeafOf, ValueTypes, );

/// What does not depend on the type but through that of the value.
template <class T>
class DataItemLeafOfAny : public DataItemLeafOf<T>
{
};

using SomeTypes = ::testing::Types<ipBool, ipInt64, ipReal32, std::string, boost::filesystem::path>;
TYPED_TEST_SUITE(DataItemLeafOfAny, SomeTypes, );

template <class HandWritten>
std::string fileOfTwo(const BaseDataItemLeaf& first, const BaseDataItemLeaf& second)
{
  return fileOf<HandWritten>(
      [&](BaseOArchive& archive)
      {
        const BoolResult written = first.write(archive);
        EXPECT_TRUE(written);
        EXPECT_EQ(written.getMessage(), "");
        EXPECT_TRUE(second.write(archive));
      });
}

template <class HandWritten>
void readTwo(const std::string& file, BaseDataItemLeaf& first, BaseDataItemLeaf& second)
{
  readFile<HandWritten>(file,
                        [&](BaseIArchive& archive)
                        {
                          const BoolResult read = first.read(archive);
                          EXPECT_TRUE(read);
                          EXPECT_EQ(read.getMessage(), "");
                          EXPECT_TRUE(second.read(archive));
                        });
}

TYPED_TEST(DataItemLeafOfAny, HasNoConstructorFromAValue)
{
  EXPECT_FALSE((std::is_constructible<DataItemLeaf<TypeParam>, TypeParam>::value));
}

TYPED_TEST(DataItemLeafOfAny, KeepsTheValueThatIsSet)
{
  using Traits = ValueTypeTraits<TypeParam>;
  DataItemLeaf<TypeParam> leaf;
  leaf.setValue(Traits::first());
  EXPECT_EQ(leaf.getValue(), Traits::first());
  leaf.setValue(Traits::second());
  EXPECT_EQ(leaf.getValue(), Traits::second());
}

TYPED_TEST(DataItemLeafOfAny, HandsOutItsValueByReference)
{
  using Traits = ValueTypeTraits<TypeParam>;
  DataItemLeaf<TypeParam> leaf = DataItemLeafOf<TypeParam>::leafOf(Traits::first());
  const TypeParam& value = leaf.getValue();
  EXPECT_EQ(&leaf.accessValue(), &value);
  leaf.setValue(Traits::second());
  EXPECT_EQ(value, Traits::second());
}

TYPED_TEST(DataItemLeafOfAny, ShowsAChangeThroughAccessValueEverywhere)
{
  using Fixture = DataItemLeafOf<TypeParam>;
  using Traits = ValueTypeTraits<TypeParam>;
  DataItemLeaf<TypeParam> leaf = Fixture::leafOf(Traits::first());
  leaf.accessValue() = Traits::second();
  EXPECT_EQ(leaf.getValue(), Traits::second());
  EXPECT_TRUE(orvel::equal(leaf, Fixture::leafOf(Traits::second()), 0.0));
  EXPECT_FALSE(orvel::equal(leaf, Fixture::leafOf(Traits::first()), 0.0));
  const auto write = [](const DataItemLeaf<TypeParam>& written)
  {
    return fileOf<HandWrittenBinary>([&](BaseOArchive& archive) { written.write(archive); });
  };
  EXPECT_EQ(write(leaf), write(Fixture::leafOf(Traits::second())));
}

TYPED_TEST(DataItemLeafOfAny, CopiesItsValue)
{
  using Leaf = DataItemLeaf<TypeParam>;
  using Traits = ValueTypeTraits<TypeParam>;
  const Leaf leaf = DataItemLeafOf<TypeParam>::leafOf(Traits::first());
  EXPECT_TRUE(leaf.hasCopySupport());
  Leaf assigned;
  EXPECT_EQ(&(assigned = leaf), &assigned);
  EXPECT_EQ(assigned.getValue(), Traits::first());
  EXPECT_EQ(Leaf(leaf).getValue(), Traits::first());
  const std::unique_ptr<BaseDynamicObject> duplicate(leaf.duplicate());
  EXPECT_EQ(dynamic_cast<Leaf&>(*duplicate).getValue(), Traits::first());
  EXPECT_EQ(dynamic_cast<Leaf&>(*leaf.duplicateShared()).getValue(), Traits::first());
}

TYPED_TEST(DataItemLeafOfAny, KeepsItsValueWhenItIsAssignedToItself)
{
  using Traits = ValueTypeTraits<TypeParam>;
  DataItemLeaf<TypeParam> leaf = DataItemLeafOf<TypeParam>::leafOf(Traits::first());
  const auto& same = leaf;
  leaf = same;
  leaf.copy(leaf);
  EXPECT_EQ(leaf.getValue(), Traits::first());
}

TYPED_TEST(DataItemLeafOf, StoresTheVersionsOnceAndEachValue)
{
  using Fixture = DataItemLeafOf<TypeParam>;
  const auto first = Fixture::leafOf(Fixture::TraitsType::first());
  const auto second = Fixture::leafOf(Fixture::TraitsType::second());
  EXPECT_EQ(fileOfTwo<HandWrittenXml>(first, second), Fixture::template archiveOfTwo<HandWrittenXml>());
  EXPECT_EQ(fileOfTwo<HandWrittenBinary>(first, second), Fixture::template archiveOfTwo<HandWrittenBinary>());
}

TYPED_TEST(DataItemLeafOf, IsReadAsItIsStored)
{
  using Fixture = DataItemLeafOf<TypeParam>;
  const TypeParam first = Fixture::TraitsType::first();
  const TypeParam second = Fixture::TraitsType::second();
  auto leaf = Fixture::leafOf(second);
  auto other = Fixture::leafOf(first);
  readTwo<HandWrittenXml>(Fixture::template archiveOfTwo<HandWrittenXml>(), leaf, other);
  EXPECT_EQ(leaf.getValue(), first);
  EXPECT_EQ(other.getValue(), second);
  readTwo<HandWrittenBinary>(Fixture::template archiveOfTwo<HandWrittenBinary>(), other, leaf);
  EXPECT_EQ(other.getValue(), first);
  EXPECT_EQ(leaf.getValue(), second);
}

// New leaves

TEST(DataItemLeaf, OfAStringIsEmptyAtFirst)
{
  EXPECT_EQ(DataItemLeaf<std::string>().getValue(), "");
}

TEST(DataItemLeaf, OfAPathIsEmptyAtFirst)
{
  EXPECT_EQ(DataItemLeaf<boost::filesystem::path>().getValue(), boost::filesystem::path());
  EXPECT_TRUE(DataItemLeaf<boost::filesystem::path>().getValue().empty());
}

template <class T>
class NewDataItemLeafOf : public ::testing::Test
{
};

using ArithmeticTypes = ::testing::Types<ipBool, ipInt8, ipUInt8, ipInt16, ipUInt16, ipInt32, ipUInt32,
                                         ipInt64, ipUInt64, ipReal32, ipReal64>;
TYPED_TEST_SUITE(NewDataItemLeafOf, ArithmeticTypes, );

/// The bytes of the value, which may be none of its type.
template <class T>
std::string bytesOf(const DataItemLeaf<T>& leaf)
{
  std::string bytes(sizeof(T), '\0');
  std::memcpy(bytes.data(), &leaf.getValue(), sizeof(T));
  return bytes;
}

TYPED_TEST(NewDataItemLeafOf, DoesNotTouchItsValue)
{
  using Leaf = DataItemLeaf<TypeParam>;
  const std::string untouched(sizeof(TypeParam), '\xA5');
  fillBlocksWith(0xA5);
  const std::unique_ptr<Leaf> byItself(static_cast<Leaf*>(Leaf().createNew()));
  const DynamicObjectPtr shared = Leaf().createShared();
  const std::unique_ptr<Leaf> byClass(new Leaf);
  fillNoBlocks();
  EXPECT_EQ(bytesOf(*byItself), untouched);
  EXPECT_EQ(bytesOf(static_cast<const Leaf&>(*shared)), untouched);
  EXPECT_EQ(bytesOf(*byClass), untouched);
}

/// A leaf of another library that replaces only what makes new objects.
class DerivedLeaf : public DataItemLeaf<ipInt32>
{
public:
  BaseDynamicObject* createNew() const override { return new DerivedLeaf; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<DerivedLeaf>(); }
  void copy(const BaseDynamicObject& other) override
  {
    DataItemLeaf<ipInt32>::copy(other);
    ++_nbCopies;
  }
  int getNbCopies() const { return _nbCopies; }

private:
  int _nbCopies = 0;
};

TEST(DataItemLeaf, IsDuplicatedThroughTheVirtualCreateNewAndCopy)
{
  DerivedLeaf leaf;
  leaf.setValue(3);
  const std::unique_ptr<BaseDynamicObject> duplicate(leaf.duplicate());
  const auto* const derived = dynamic_cast<const DerivedLeaf*>(duplicate.get());
  ASSERT_NE(derived, nullptr);
  EXPECT_EQ(derived->getValue(), 3);
  EXPECT_EQ(derived->getNbCopies(), 1);
}

TEST(DataItemLeaf, IsDuplicatedUnderASharedPointerAsItsOwnClass)
{
  DerivedLeaf leaf;
  leaf.setValue(3);
  const DynamicObjectPtr duplicate = leaf.duplicateShared(); // not through the virtual createShared()
  EXPECT_EQ(dynamic_cast<const DerivedLeaf*>(duplicate.get()), nullptr);
  EXPECT_EQ(dynamic_cast<const DataItemLeaf<ipInt32>&>(*duplicate).getValue(), 3);
}

TEST(DataItemLeaf, LeaksNothingWhenADuplicateRunsOutOfMemory)
{
  DataItemLeaf<std::string> leaf;
  leaf.setValue(std::string(1000, 'x'));
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbFailures = failAtEachAllocation([&] { delete leaf.duplicate(); },
                                                      [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
  EXPECT_EQ(nbFailures, 2U); // the leaf, its text
  EXPECT_EQ(
      failAtEachAllocation([&] { leaf.duplicateShared(); }, [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); }),
      2U);
}

// Archives

template <class HandWritten>
class ArchivedDataItemLeaf : public ::testing::Test
{
};

TYPED_TEST_SUITE(ArchivedDataItemLeaf, Formats, );

TYPED_TEST(ArchivedDataItemLeaf, SharesTheVersionsOfItsBasesWithLeavesOfOtherTypes)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseDataItem", 1);
  putVersion(expected, "orvel::BaseDataItemLeaf", 1);
  putVersion(expected, "orvel::DataItemLeaf<ipUInt8>", 1);
  expected.integer("_value", 200);
  putVersion(expected, "orvel::DataItemLeaf<ipInt8>", 1);
  expected.integer("_value", -100);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  DataItemLeaf<ipUInt8> first;
                  first.setValue(200);
                  first.write(archive);
                  DataItemLeaf<ipInt8> second;
                  second.setValue(-100);
                  second.write(archive);
                }),
            expected.file());
}

TYPED_TEST(ArchivedDataItemLeaf, TakesALowerVersionAsItIs)
{
  TypeParam file;
  putVersion(file, "orvel::BaseDataItem", 0);
  putVersion(file, "orvel::BaseDataItemLeaf", 0);
  putVersion(file, "orvel::DataItemLeaf<ipInt32>", 0);
  file.integer("_value", 3);
  readFile<TypeParam>(file.file(),
                      [](BaseIArchive& archive)
                      {
                        DataItemLeaf<ipInt32> leaf;
                        EXPECT_TRUE(leaf.read(archive));
                        EXPECT_EQ(leaf.getValue(), 3);
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::DataItemLeaf<ipInt32>"), 0U);
                      });
}

TYPED_TEST(ArchivedDataItemLeaf, KeepsItsValueWhenTheItemIsOfAnotherType)
{
  TypeParam file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::BaseDataItemLeaf", 1);
  putVersion(file, "orvel::DataItemLeaf<ipInt8>", 1);
  file.integer("_value", 128); // one too many
  DataItemLeaf<ipInt8> leaf;
  leaf.setValue(7);
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { leaf.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(leaf.getValue(), 7);
}

TYPED_TEST(ArchivedDataItemLeaf, StoresStringsAndPathsOfAnyContent)
{
  const std::vector<std::string> contents = {
      "", " ", "a\nb\r\n", "<&\">", std::string("nul\0in", 6), "\xC3\xA9", "\xFF\xFE is no UTF-8", "\x01"};
  for (const std::string& content : contents)
  {
    DataItemLeaf<std::string> text;
    text.setValue(content);
    DataItemLeaf<boost::filesystem::path> path;
    path.setValue(content);
    const std::string file = fileOf<TypeParam>(
        [&](BaseOArchive& archive)
        {
          text.write(archive);
          path.write(archive);
        });
    DataItemLeaf<std::string> textRead;
    DataItemLeaf<boost::filesystem::path> pathRead;
    readFile<TypeParam>(file,
                        [&](BaseIArchive& archive)
                        {
                          textRead.read(archive);
                          pathRead.read(archive);
                        });
    EXPECT_EQ(textRead.getValue(), content);
    EXPECT_EQ(pathRead.getValue().string(), content);
  }
}

} // namespace
