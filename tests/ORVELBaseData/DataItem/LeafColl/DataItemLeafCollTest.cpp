#include "ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h"

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
std::string classNameOf()
{
  return std::string("orvel::DataItemLeafColl<") + ValueTypeTraits<T>::name + ">";
}

template <class T>
DataItemLeafColl<T> collOf(const std::vector<T>& values)
{
  DataItemLeafColl<T> coll;
  coll.getColl() = values;
  return coll;
}

/// The item "_coll", whose elements follow.
template <class HandWritten>
void openColl(HandWritten& archive, std::size_t size)
{
  archive.openSection("_coll");
  archive.openSection("vector");
  archive.integer("size", static_cast<std::int64_t>(size));
}

template <class HandWritten>
void closeColl(HandWritten& archive)
{
  archive.close();
  archive.close();
}

/// What stands ahead of the first collection of an archive.
template <class T, class HandWritten>
HandWritten startOfFirst()
{
  HandWritten archive;
  putVersion(archive, "orvel::BaseDataItem", 1);
  putVersion(archive, "orvel::BaseDataItemLeafColl", 1);
  putVersion(archive, classNameOf<T>(), 1);
  return archive;
}

template <class T, class HandWritten>
void putColl(HandWritten& archive, const std::vector<T>& values)
{
  openColl(archive, values.size());
  if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool> &&
                std::is_same_v<HandWritten, HandWrittenBinary>)
  {
    std::string bytes(values.size() * sizeof(T), '\0');
    if (!values.empty())
      std::memcpy(bytes.data(), values.data(), bytes.size());
    archive.block(bytes);
  }
  else
    for (std::size_t i = 0; i < values.size(); ++i)
      putValue<HandWritten, T>(archive, "value", values[i]);
  closeColl(archive);
}

template <class T, class HandWritten>
std::string archiveOf(const std::vector<T>& values)
{
  auto archive = startOfFirst<T, HandWritten>();
  putColl<T>(archive, values);
  return archive.file();
}

template <class HandWritten>
std::string fileOfColl(const BaseDataItemLeafColl& coll)
{
  return fileOf<HandWritten>(
      [&](BaseOArchive& archive)
      {
        const BoolResult written = coll.write(archive);
        EXPECT_TRUE(written);
        EXPECT_EQ(written.getMessage(), "");
      });
}

template <class HandWritten>
void readColl(const std::string& file, BaseDataItemLeafColl& coll)
{
  readFile<HandWritten>(file,
                        [&](BaseIArchive& archive)
                        {
                          const BoolResult read = coll.read(archive);
                          EXPECT_TRUE(read);
                          EXPECT_EQ(read.getMessage(), "");
                        });
}

template <class T, class HandWritten>
void expectStored(const std::vector<T>& values)
{
  const std::string file = archiveOf<T, HandWritten>(values);
  EXPECT_EQ(fileOfColl<HandWritten>(collOf<T>(values)), file);
  DataItemLeafColl<T> coll;
  readColl<HandWritten>(file, coll);
  EXPECT_TRUE(coll.getColl() == values);
}

template <class T>
class DataItemLeafCollOf : public ::testing::Test
{
protected:
  const T _first = ValueTypeTraits<T>::first();
  const T _second = ValueTypeTraits<T>::second();
  const std::vector<T> _three = {_first, _second, _first};
};

TYPED_TEST_SUITE(DataItemLeafCollOf, ValueTypes, );

/// What does not depend on the type but through that of the vector.
template <class T>
class DataItemLeafCollOfAny : public DataItemLeafCollOf<T>
{
};

using SomeTypes = ::testing::Types<ipBool, ipInt16, std::string>;
TYPED_TEST_SUITE(DataItemLeafCollOfAny, SomeTypes, );

TYPED_TEST(DataItemLeafCollOfAny, IsEmptyAtFirst)
{
  const DataItemLeafColl<TypeParam> coll;
  EXPECT_TRUE(coll.isEmpty());
  EXPECT_EQ(coll.getSize(), 0U);
  EXPECT_TRUE(coll.getColl().empty());
}

TYPED_TEST(DataItemLeafCollOfAny, AppendsInOrder)
{
  DataItemLeafColl<TypeParam> coll;
  for (const TypeParam& value : {this->_first, this->_second, this->_first})
    coll.push_back(value);
  EXPECT_FALSE(coll.isEmpty());
  EXPECT_EQ(coll.getSize(), 3U);
  EXPECT_EQ(coll.getColl(), this->_three);
}

TYPED_TEST(DataItemLeafCollOfAny, ShowsWhatIsDoneToItsVectorEverywhere)
{
  DataItemLeafColl<TypeParam> coll;
  std::vector<TypeParam>& values = coll.getColl();
  values.insert(values.end(), 2, this->_first);
  values.erase(values.begin());
  values.push_back(this->_second);
  const DataItemLeafColl<TypeParam>& constant = coll;
  EXPECT_EQ(&constant.getColl(), &values);
  EXPECT_EQ(coll.getSize(), 2U);
  EXPECT_TRUE(orvel::equal(coll, collOf<TypeParam>({this->_first, this->_second}), 0.0));
  EXPECT_FALSE(orvel::equal(coll, collOf<TypeParam>({this->_first, this->_first}), 0.0));
  EXPECT_EQ(fileOfColl<HandWrittenBinary>(coll),
            (archiveOf<TypeParam, HandWrittenBinary>({this->_first, this->_second})));
}

TYPED_TEST(DataItemLeafCollOfAny, IsEmptyOnceCleared)
{
  DataItemLeafColl<TypeParam> coll = collOf<TypeParam>(this->_three);
  const std::size_t capacity = coll.getColl().capacity();
  coll.clear();
  EXPECT_TRUE(coll.isEmpty());
  EXPECT_EQ(coll.getSize(), 0U);
  EXPECT_EQ(coll.getColl().capacity(), capacity);
  coll.clear(); // nothing left to do
  EXPECT_TRUE(coll.isEmpty());
}

TYPED_TEST(DataItemLeafCollOfAny, CopiesItsValues)
{
  using Coll = DataItemLeafColl<TypeParam>;
  const Coll coll = collOf<TypeParam>(this->_three);
  EXPECT_TRUE(coll.hasCopySupport());
  Coll assigned = collOf<TypeParam>({this->_second});
  EXPECT_EQ(&(assigned = coll), &assigned);
  EXPECT_EQ(assigned.getColl(), this->_three);
  EXPECT_EQ(Coll(coll).getColl(), this->_three);
  const std::unique_ptr<BaseDynamicObject> duplicate(coll.duplicate());
  EXPECT_EQ(dynamic_cast<Coll&>(*duplicate).getColl(), this->_three);
  EXPECT_EQ(dynamic_cast<Coll&>(*coll.duplicateShared()).getColl(), this->_three);
}

TYPED_TEST(DataItemLeafCollOfAny, SharesNothingWithItsCopy)
{
  const DataItemLeafColl<TypeParam> coll = collOf<TypeParam>(this->_three);
  DataItemLeafColl<TypeParam> copy(coll);
  copy.getColl()[0] = this->_second;
  EXPECT_EQ(coll.getColl(), this->_three);
}

TYPED_TEST(DataItemLeafCollOfAny, KeepsItsValuesWhenItIsAssignedToItself)
{
  DataItemLeafColl<TypeParam> coll = collOf<TypeParam>(this->_three);
  const auto& same = coll;
  coll = same;
  coll.copy(coll);
  EXPECT_EQ(coll.getColl(), this->_three);
}

TYPED_TEST(DataItemLeafCollOf, StoresItsSizeAndItsValuesAndIsReadAsItIsStored)
{
  expectStored<TypeParam, HandWrittenXml>(this->_three);
  expectStored<TypeParam, HandWrittenBinary>(this->_three);
}

TYPED_TEST(DataItemLeafCollOf, StoresItsSizeAloneWhenEmpty)
{
  expectStored<TypeParam, HandWrittenXml>({});
  expectStored<TypeParam, HandWrittenBinary>({}); // with a block of 0 bytes but for bool, strings and paths
}

TYPED_TEST(DataItemLeafCollOfAny, HoldsWhatIsReadOnlyWhateverItHeld)
{
  for (const std::vector<TypeParam>& values : {this->_three, std::vector<TypeParam>()})
  {
    auto coll = collOf<TypeParam>(std::vector<TypeParam>(100, this->_second));
    readColl<HandWrittenXml>(archiveOf<TypeParam, HandWrittenXml>(values), coll);
    EXPECT_EQ(coll.getColl(), values);
    coll.getColl().assign(100, this->_second);
    readColl<HandWrittenBinary>(archiveOf<TypeParam, HandWrittenBinary>(values), coll);
    EXPECT_EQ(coll.getColl(), values);
  }
}

/// Replaces what makes new objects, but not what makes duplicates.
class DerivedColl : public DataItemLeafColl<ipInt32>
{
public:
  BaseDynamicObject* createNew() const override { return new DerivedColl; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<DerivedColl>(); }
};

TEST(DataItemLeafColl, IsDuplicatedAsItsOwnClass)
{
  DerivedColl coll;
  coll.push_back(3);
  const std::unique_ptr<BaseDynamicObject> owned(coll.duplicate());
  const DynamicObjectPtr shared = coll.duplicateShared();
  for (const BaseDynamicObject* const duplicate : {owned.get(), shared.get()})
  {
    EXPECT_EQ(dynamic_cast<const DerivedColl*>(duplicate), nullptr);
    EXPECT_EQ(dynamic_cast<const DataItemLeafColl<ipInt32>&>(*duplicate).getColl(), std::vector<ipInt32>{3});
  }
}

TEST(DataItemLeafColl, OfBoolIsPacked)
{
  EXPECT_TRUE((std::is_same<decltype(DataItemLeafColl<ipBool>().getColl()), std::vector<bool>&>::value));
  DataItemLeafColl<ipBool> coll;
  const ipBool bit = true;
  coll.push_back(bit);
  coll.getColl().flip();
  EXPECT_FALSE(coll.isEmpty());
  EXPECT_EQ(coll.getSize(), 1U); // bits
  EXPECT_EQ(coll.getColl(), std::vector<bool>{false});
}

TEST(DataItemLeafColl, PassesOnThatMemoryRanOut)
{
  DataItemLeafColl<ipInt32> coll;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  failAllocationAfter(0);
  EXPECT_THROW(coll.push_back(1), std::bad_alloc);
  failNoAllocation();
  EXPECT_TRUE(coll.isEmpty());
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_THROW(coll.getColl().resize(coll.getColl().max_size() + 1), std::length_error);
}

TEST(DataItemLeafColl, LeaksNothingWhenACopyRunsOutOfMemory)
{
  const auto coll = collOf<std::string>({std::string(100, 'a'), std::string(100, 'b')});
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const auto check = [&]
  {
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  };
  EXPECT_EQ(failAtEachAllocation([&] { delete coll.duplicate(); }, check), 4U); // object, vector, two texts
  EXPECT_EQ(failAtEachAllocation([&] { coll.duplicateShared(); }, check), 4U);
}

// Archives

template <class HandWritten>
class ArchivedDataItemLeafColl : public ::testing::Test
{
};

TYPED_TEST_SUITE(ArchivedDataItemLeafColl, Formats, );

TYPED_TEST(ArchivedDataItemLeafColl, OfBoolIsStoredAndReadBitForBit)
{
  for (const std::size_t size : {0U, 1U, 63U, 64U, 65U}) // words have 64 bits
    for (const bool last : {false, true})
    {
      std::vector<bool> bits;
      for (std::size_t i = 0; i < size; ++i)
        bits.push_back(i + 1 == size ? last : i % 3 == 0 || i % 7 == 2);
      const std::string file = archiveOf<bool, TypeParam>(bits);
      EXPECT_EQ(fileOfColl<TypeParam>(collOf<bool>(bits)), file) << size;
      auto coll = collOf<bool>(std::vector<bool>(70, true));
      readColl<TypeParam>(file, coll);
      EXPECT_EQ(coll.getColl(), bits) << size;
    }
}

TYPED_TEST(ArchivedDataItemLeafColl, StoresTheVersionsOnceForCollectionsOfAllTypes)
{
  auto expected = startOfFirst<ipInt16, TypeParam>();
  putColl<ipInt16>(expected, {-300, 300});
  putColl<ipInt16>(expected, {});
  putVersion(expected, "orvel::DataItemLeafColl<std::string>", 1);
  putColl<std::string>(expected, {"one"});
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  collOf<ipInt16>({-300, 300}).write(archive);
                  collOf<ipInt16>({}).write(archive);
                  collOf<std::string>({"one"}).write(archive);
                }),
            expected.file());
}

TYPED_TEST(ArchivedDataItemLeafColl, OfBoolDropsItsBitsBeforeItReads)
{
  auto file = startOfFirst<ipBool, TypeParam>();
  openColl(file, 4);
  file.boolean("value", true);
  file.text("value", "no bool");
  file.boolean("value", true);
  file.boolean("value", true);
  closeColl(file);
  auto coll = collOf<ipBool>({true, true, true, true, true});
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(coll.getColl(), (std::vector<bool>{true, false, false, false})); // new bits are false

  auto withoutCount = startOfFirst<ipBool, TypeParam>();
  withoutCount.text("_coll", "no section");
  EXPECT_THROW(readStart<TypeParam>(withoutCount.file(), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
  EXPECT_TRUE(coll.isEmpty());
}

TEST(DataItemLeafColl, IsReadIntoPlaceElementByElement)
{
  auto file = startOfFirst<ipInt32, HandWrittenXml>();
  openColl(file, 3);
  file.integer("value", 1);
  file.text("value", "no number");
  file.integer("value", 3);
  closeColl(file);
  auto coll = collOf<ipInt32>({7, 8, 9, 10});
  EXPECT_THROW(readStart<HandWrittenXml>(file.file(), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(coll.getColl(), (std::vector<ipInt32>{1, 8, 9}));
}

TEST(DataItemLeafColl, InTheFormOfABlockIsNotReadElementByElement)
{
  auto file = startOfFirst<ipUInt8, HandWrittenXml>();
  openColl(file, 2);
  file.block("ab");
  closeColl(file);
  DataItemLeafColl<ipUInt8> coll;
  EXPECT_THROW(readStart<HandWrittenXml>(file.file(), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
}

TEST(DataItemLeafColl, InTheFormOfElementsIsNotReadAsABlock)
{
  auto file = startOfFirst<ipUInt8, HandWrittenBinary>();
  openColl(file, 2);
  file.integer("value", 97);
  file.integer("value", 98);
  closeColl(file);
  DataItemLeafColl<ipUInt8> coll;
  EXPECT_THROW(readStart<HandWrittenBinary>(file.file(), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
}

TYPED_TEST(ArchivedDataItemLeafColl, AllocatesNothingForACountThatTheArchiveCannotHold)
{
  auto file = startOfFirst<ipReal64, TypeParam>();
  openColl(file, 4294967295U); // 32 GiB
  closeColl(file);
  auto coll = collOf<ipReal64>({7.0, 8.0});
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(coll.getColl(), (std::vector<ipReal64>{7.0, 8.0}));
}

} // namespace
