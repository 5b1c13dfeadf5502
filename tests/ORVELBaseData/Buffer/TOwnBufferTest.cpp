#include "ORVELBaseData/Buffer/TOwnBuffer.h"

#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "BufferTesting.h"
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// What is expected of TOwnBuffer<T>.
struct Row
{
  const char* className;
  eDataType::domain dataType;
  std::int64_t number; // of the data type
  const char* dataTypeText;
  ipUInt32 baseSize;
};

template <class T>
const Row g_row = {};
template <>
const Row g_row<ipBool> = {"orvel::TOwnBuffer<orvel::ipBool>", eDataType::eDT_Bool, 1, "eDT_Bool", 1};
template <>
const Row g_row<ipInt8> = {"orvel::TOwnBuffer<orvel::ipInt8>", eDataType::eDT_Int8, 2, "eDT_Int8", 1};
template <>
const Row g_row<ipUInt8> = {"orvel::TOwnBuffer<orvel::ipUInt8>", eDataType::eDT_UInt8, 3, "eDT_UInt8", 1};
template <>
const Row g_row<ipInt16> = {"orvel::TOwnBuffer<orvel::ipInt16>", eDataType::eDT_Int16, 4, "eDT_Int16", 2};
template <>
const Row g_row<ipUInt16> = {"orvel::TOwnBuffer<orvel::ipUInt16>", eDataType::eDT_UInt16, 5, "eDT_UInt16", 2};
template <>
const Row g_row<ipInt32> = {"orvel::TOwnBuffer<orvel::ipInt32>", eDataType::eDT_Int32, 6, "eDT_Int32", 4};
template <>
const Row g_row<ipUInt32> = {"orvel::TOwnBuffer<orvel::ipUInt32>", eDataType::eDT_UInt32, 7, "eDT_UInt32", 4};
template <>
const Row g_row<ipInt64> = {"orvel::TOwnBuffer<orvel::ipInt64>", eDataType::eDT_Int64, 8, "eDT_Int64", 8};
template <>
const Row g_row<ipUInt64> = {"orvel::TOwnBuffer<orvel::ipUInt64>", eDataType::eDT_UInt64, 9, "eDT_UInt64", 8};
template <>
const Row g_row<ipReal32> = {"orvel::TOwnBuffer<orvel::ipReal32>", eDataType::eDT_Real32, 10, "eDT_Real32",
                             4};
template <>
const Row g_row<ipReal64> = {"orvel::TOwnBuffer<orvel::ipReal64>", eDataType::eDT_Real64, 11, "eDT_Real64",
                             8};

template <class T>
class EachTOwnBuffer : public testing::Test
{
protected:
  static std::string sample() { return std::string("\1\0ABCDEFGHIJKLMN", 2 * row.baseSize); }

  /// Two elements of the bytes of sample().
  static void initWithSample(TOwnBuffer<T>& buffer)
  {
    buffer.init(2);
    setContents(buffer, sample());
  }

  static void expectSample(const BaseDynamicObject& object, const BaseOwnBuffer& source)
  {
    const auto& buffer = dynamic_cast<const TOwnBuffer<T>&>(object);
    ASSERT_TRUE(buffer.isInitialized());
    EXPECT_EQ(buffer.getSize(), 2U);
    EXPECT_EQ(buffer.getDataType(), row.dataType);
    EXPECT_EQ(contentsOf(buffer), sample());
    EXPECT_NE(buffer.getDataPtr(), source.getDataPtr());
  }

  static constexpr const Row& row = g_row<T>;
};

using ElementTypes = testing::Types<ipBool, ipInt8, ipUInt8, ipInt16, ipUInt16, ipInt32, ipUInt32, ipInt64,
                                    ipUInt64, ipReal32, ipReal64>;
TYPED_TEST_SUITE(EachTOwnBuffer, ElementTypes, );

TYPED_TEST(EachTOwnBuffer, IsAnOwnerInAnyState)
{
  TOwnBuffer<TypeParam> buffer;
  EXPECT_EQ(buffer.getBufferType(), eBufferType::eBT_Own);
  buffer.init(2);
  EXPECT_EQ(buffer.getBufferType(), eBufferType::eBT_Own);
}

TYPED_TEST(EachTOwnBuffer, IsInitialisedWithElementsOfItsType)
{
  TOwnBuffer<TypeParam> buffer;
  EXPECT_FALSE(buffer.isInitialized());
  buffer.init(5);
  EXPECT_EQ(getLatestArraySize(), 5U * this->row.baseSize);
  EXPECT_EQ(buffer.getSize(), 5U);
  EXPECT_EQ(buffer.getDataType(), this->row.dataType);
  EXPECT_STREQ(buffer.getDataType().getText(), this->row.dataTypeText);
  EXPECT_EQ(buffer.getBufferBaseSize(), this->row.baseSize);
  EXPECT_EQ(buffer.getMemorySize(), 5U * this->row.baseSize);
  EXPECT_EQ(static_cast<char*>(buffer.getDataPtr(3)) - static_cast<char*>(buffer.getDataPtr()),
            3 * static_cast<int>(this->row.baseSize));
  setContents(buffer, std::string(5U * this->row.baseSize, 'x')); // watched by the sanitizers
}

TYPED_TEST(EachTOwnBuffer, KeepsItsBlockForAsManyElements)
{
  TOwnBuffer<TypeParam> buffer;
  this->initWithSample(buffer);
  const void* const block = buffer.getDataPtr();
  buffer.init(2);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(contentsOf(buffer), this->sample());
}

TYPED_TEST(EachTOwnBuffer, KeepsItsTypeWhenItIsResized)
{
  TOwnBuffer<TypeParam> buffer;
  expectNotInitialised([&] { buffer.resize(7); });
  buffer.init(2);
  buffer.resize(7);
  EXPECT_EQ(buffer.getSize(), 7U);
  EXPECT_EQ(buffer.getDataType(), this->row.dataType);
  EXPECT_EQ(getLatestArraySize(), 7U * this->row.baseSize);
}

TYPED_TEST(EachTOwnBuffer, IsNotInitialisedWithoutMemory)
{
  TOwnBuffer<TypeParam> buffer;
  buffer.init(2);
  failArrayAllocationAfter(0);
  expectNoMemory(1000 * this->row.baseSize, [&] { buffer.init(1000); });
  failNoAllocation();
  EXPECT_FALSE(buffer.isInitialized());
}

TYPED_TEST(EachTOwnBuffer, CannotHaveTheLargestSize)
{
  constexpr ipUInt64 largest = std::numeric_limits<ipUInt64>::max();
  TOwnBuffer<TypeParam> buffer;
  buffer.init(2);
  expectNoMemory(largest, [&] { buffer.init(largest); });
  EXPECT_FALSE(buffer.isInitialized());
}

TYPED_TEST(EachTOwnBuffer, IsCopiedDeeplyInEachWay)
{
  TOwnBuffer<TypeParam> source;
  this->initWithSample(source);
  EXPECT_TRUE(source.hasCopySupport());
  TOwnBuffer<TypeParam> copy;
  copy.copy(source);
  const TOwnBuffer<TypeParam> constructed(source);
  TOwnBuffer<TypeParam> assigned;
  EXPECT_EQ(&(assigned = source), &assigned);
  const std::unique_ptr<BaseDynamicObject> duplicate(source.duplicate());
  const DynamicObjectPtr shared = source.duplicateShared();
  setContents(source, std::string(2U * this->row.baseSize, 'x'));
  for (const BaseDynamicObject* object :
       {static_cast<const BaseDynamicObject*>(&copy), static_cast<const BaseDynamicObject*>(&constructed),
        static_cast<const BaseDynamicObject*>(&assigned),
        static_cast<const BaseDynamicObject*>(duplicate.get()),
        static_cast<const BaseDynamicObject*>(shared.get())})
    this->expectSample(*object, source);
}

TYPED_TEST(EachTOwnBuffer, TakesTheTypeOfWhatItIsCopiedFrom)
{
  TypedOwnBuffer source; // of another class, which nothing checks
  for (const auto type : {eDataType::eDT_Int16, eDataType::eDT_Real32})
  {
    source.init(3, type);
    setContents(source, std::string(source.getMemorySize(), 'x'));
    TOwnBuffer<TypeParam> buffer;
    this->initWithSample(buffer);
    buffer.copy(source);
    EXPECT_EQ(buffer.getDataType(), type);
    EXPECT_EQ(buffer.getSize(), 3U);
    EXPECT_EQ(contentsOf(buffer), contentsOf(source));
  }
}

template <class HandWritten, class T>
void expectArchive(const TOwnBuffer<T>& buffer)
{
  HandWritten expected;
  putVersion(expected, "orvel::BaseOwnBuffer", 1);
  expected.boolean("bInit", true);
  expected.integer("size", 2);
  expected.enumeration("dataType", g_row<T>.number, g_row<T>.dataTypeText);
  expected.block(contentsOf(buffer));
  putVersion(expected, g_row<T>.className, 1);
  EXPECT_EQ(fileOfMode<HandWritten>(buffer, eSklSrzMode::eSSM_Full), expected.file());

  TOwnBuffer<T> other;
  readInMode<HandWritten>(other, expected.file(), eSklSrzMode::eSSM_Full);
  EXPECT_EQ(other.getSize(), 2U);
  EXPECT_EQ(other.getDataType(), g_row<T>.dataType);
  EXPECT_EQ(contentsOf(other), contentsOf(buffer));

  HandWritten newer;
  putVersion(newer, "orvel::BaseOwnBuffer", 1);
  newer.boolean("bInit", false);
  putVersion(newer, g_row<T>.className, 2);
  EXPECT_EQ(failureOfReading<ORVELSerializationException>(other, newer, eSklSrzMode::eSSM_Full).getMessage(),
            std::string("Version 2 of class ") + g_row<T>.className +
                " is not supported, the highest supported version is 1");
}

TYPED_TEST(EachTOwnBuffer, IsFiledWithItsOwnVersionBehindTheData)
{
  TOwnBuffer<TypeParam> buffer;
  this->initWithSample(buffer);
  expectArchive<HandWrittenXml>(buffer);
  expectArchive<HandWrittenBinary>(buffer);
}

// Some types

TEST(TOwnBuffer, KeepsItsBlockWhenItTurnsIntoAnotherTypeOfTheSameBytes)
{
  class AnyType : public TOwnBuffer<ipInt32>
  {
  public:
    using BaseOwnBuffer::initBase;
  };
  AnyType buffer;
  buffer.init(10);
  const void* const block = buffer.getDataPtr();
  buffer.initBase(5, eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getSize(), 5U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Real64);
  buffer.init(10);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
}

TEST(TOwnBuffer, StoresABoolInAByte)
{
  TOwnBuffer<ipBool> buffer;
  buffer.init(3);
  EXPECT_EQ(getLatestArraySize(), 3U);
  auto* const elements = static_cast<ipBool*>(buffer.getDataPtr());
  elements[0] = true;
  elements[1] = false;
  elements[2] = true;
  EXPECT_EQ(contentsOf(buffer), std::string("\1\0\1", 3));
  const TOwnBuffer<ipBool> copy(buffer);
  EXPECT_EQ(contentsOf(copy), std::string("\1\0\1", 3));
}

template <class HandWritten>
void expectStoredType()
{
  HandWritten archive;
  putVersion(archive, "orvel::BaseOwnBuffer", 1);
  archive.boolean("bInit", true);
  archive.integer("size", 2);
  archive.enumeration("dataType", 10, "eDT_Real32");
  archive.block("12345678");
  putVersion(archive, "orvel::TOwnBuffer<orvel::ipInt16>", 1);
  TOwnBuffer<ipInt16> buffer;
  readFile<HandWritten>(archive.file(), [&](BaseIArchive& input) { EXPECT_TRUE(buffer.read(input)); });
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Real32);
  EXPECT_EQ(buffer.getBufferBaseSize(), 4U);
  EXPECT_EQ(contentsOf(buffer), "12345678");
  buffer.init(2);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int16);
}

TEST(TOwnBuffer, AnswersWithTheTypeThatAnArchiveBrings)
{
  expectStoredType<HandWrittenXml>();
  expectStoredType<HandWrittenBinary>();
}

template <class HandWritten>
void expectOneBaseVersion()
{
  // The levels are versioned apart: the base's record is common to all classes, each leaf has its own.
  HandWritten expected;
  putVersion(expected, "orvel::BaseOwnBuffer", 1);
  expected.boolean("bInit", false);
  putVersion(expected, "orvel::TOwnBuffer<orvel::ipInt16>", 1);
  expected.boolean("bInit", false);
  putVersion(expected, "orvel::TOwnBuffer<orvel::ipInt8>", 1);
  expected.boolean("bInit", false);
  EXPECT_EQ(fileOf<HandWritten>(
                [](BaseOArchive& archive)
                {
                  TOwnBuffer<ipInt16>().write(archive);
                  TOwnBuffer<ipInt8>().write(archive);
                  TOwnBuffer<ipInt16>().write(archive);
                }),
            expected.file());
}

TEST(TOwnBuffer, SharesTheVersionOfItsBaseWithTheOtherTypes)
{
  expectOneBaseVersion<HandWrittenXml>();
  expectOneBaseVersion<HandWrittenBinary>();
}

} // namespace
