#include "ORVELBaseData/Buffer/TypedOwnBuffer.h"

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "BufferTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// A buffer of three elements with the bytes "abcdef".
void initWithSixBytes(TypedOwnBuffer& buffer)
{
  buffer.init(3, eDataType::eDT_UInt16);
  setContents(buffer, "abcdef");
}

/// Checks for a buffer like that, apart from another one.
void expectCopyOfSixBytes(const TypedOwnBuffer& copy, const TypedOwnBuffer& source)
{
  ASSERT_TRUE(copy.isInitialized());
  EXPECT_EQ(copy.getSize(), 3U);
  EXPECT_EQ(copy.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(contentsOf(copy), "abcdef");
  EXPECT_NE(copy.getDataPtr(), source.getDataPtr());
}

TEST(TypedOwnBuffer, IsBornNotInitialised)
{
  const TypedOwnBuffer buffer;
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(TypedOwnBuffer, IsAnOwnerInAnyState)
{
  TypedOwnBuffer buffer;
  EXPECT_EQ(buffer.getBufferType(), eBufferType::eBT_Own);
  buffer.init(3, eDataType::eDT_Int32);
  EXPECT_EQ(buffer.getBufferType(), eBufferType::eBT_Own);
}

TEST(TypedOwnBuffer, TakesItsTypeAtRunTime)
{
  TypedOwnBuffer buffer;
  buffer.init(3, eDataType::eDT_Int32);
  EXPECT_EQ(getLatestArraySize(), 12U);
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
  buffer.init(3, eDataType::eDT_Real64);
  EXPECT_EQ(getLatestArraySize(), 24U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Real64);
  setContents(buffer, "twenty-four bytes of it.");
  EXPECT_EQ(contentsOf(buffer), "twenty-four bytes of it.");
}

TEST(TypedOwnBuffer, TurnsIntoAnotherTypeOfTheSameBytes)
{
  TypedOwnBuffer buffer;
  buffer.init(4, eDataType::eDT_Int32);
  setContents(buffer, "sixteen bytes...");
  const void* const block = buffer.getDataPtr();
  buffer.init(2, eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getSize(), 2U);
  EXPECT_EQ(contentsOf(buffer), "sixteen bytes...");
}

TEST(TypedOwnBuffer, RefusesATypeOfNone)
{
  TypedOwnBuffer buffer;
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { buffer.init(3, eDataType::eDT_None); }),
            "Invalid buffer type eDT_None");
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(TypedOwnBuffer, IsNotInitialisedWithoutMemory)
{
  TypedOwnBuffer buffer;
  initWithSixBytes(buffer);
  failArrayAllocationAfter(0);
  const auto failure = failureOf<ORVELBaseDataException>([&] { buffer.init(3, eDataType::eDT_Int32); });
  failNoAllocation();
  EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 12");
  EXPECT_TRUE(isCausedByBadAlloc(failure));
  EXPECT_FALSE(buffer.isInitialized());
}

// The frame

TEST(TypedOwnBuffer, HasItsNameAndVersion)
{
  EXPECT_EQ(TypedOwnBuffer::getTypeName(), "orvel::TypedOwnBuffer");
  EXPECT_EQ(TypedOwnBuffer().getClassName(), "orvel::TypedOwnBuffer");
  EXPECT_EQ(TypedOwnBuffer::getVersion(), 1U);
  static_assert(std::is_base_of_v<BaseOwnBuffer, TypedOwnBuffer>);
}

TEST(TypedOwnBuffer, IsCreatedByItsNameAndByItsOwn)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  TypedOwnBuffer example;
  initWithSixBytes(example);
  const std::unique_ptr<BaseDynamicObject> byName(factory.createNew("orvel::TypedOwnBuffer"));
  const std::unique_ptr<BaseDynamicObject> byItself(example.createNew());
  const std::unique_ptr<TypedOwnBuffer> byClass(TypedOwnBuffer::createNewObject());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*byName).isInitialized());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*byItself).isInitialized());
  EXPECT_FALSE(byClass->isInitialized());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*factory.createShared("orvel::TypedOwnBuffer")).isInitialized());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*example.createShared()).isInitialized());
  EXPECT_FALSE(TypedOwnBuffer::createSharedObject()->isInitialized());
}

TEST(TypedOwnBuffer, IsCopiedDeeplyInEachWay)
{
  TypedOwnBuffer source;
  initWithSixBytes(source);
  EXPECT_TRUE(source.hasCopySupport());
  TypedOwnBuffer copy;
  copy.copy(source);
  const TypedOwnBuffer constructed(source);
  TypedOwnBuffer assigned;
  EXPECT_EQ(&(assigned = source), &assigned);
  const std::unique_ptr<BaseDynamicObject> duplicate(source.duplicate());
  const DynamicObjectPtr shared = source.duplicateShared();
  setContents(source, "ABCDEF");
  expectCopyOfSixBytes(copy, source);
  expectCopyOfSixBytes(constructed, source);
  expectCopyOfSixBytes(assigned, source);
  expectCopyOfSixBytes(dynamic_cast<TypedOwnBuffer&>(*duplicate), source);
  expectCopyOfSixBytes(dynamic_cast<TypedOwnBuffer&>(*shared), source);
}

TEST(TypedOwnBuffer, GivesEmptyCopiesBeforeItIsInitialised)
{
  const TypedOwnBuffer source;
  EXPECT_FALSE(TypedOwnBuffer(source).isInitialized());
  TypedOwnBuffer assigned;
  initWithSixBytes(assigned);
  assigned = source;
  EXPECT_FALSE(assigned.isInitialized());
  const std::unique_ptr<BaseDynamicObject> duplicate(source.duplicate());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*duplicate).isInitialized());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*source.duplicateShared()).isInitialized());
}

TEST(TypedOwnBuffer, IsUnchangedWhenItIsAssignedToItself)
{
  TypedOwnBuffer buffer;
  initWithSixBytes(buffer);
  const void* const block = buffer.getDataPtr();
  const TypedOwnBuffer& itself = buffer;
  buffer = itself;
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(contentsOf(buffer), "abcdef");
}

TEST(TypedOwnBuffer, LeaksNothingWhenItsDuplicateRunsOutOfMemory)
{
  TypedOwnBuffer source;
  initWithSixBytes(source);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const auto failuresOf = [&](auto duplicate)
  {
    std::string failures; // short ones take no memory
    failInTurn(duplicate,
               [&](OutOfMemory thrown)
               {
                 failures += thrown == OutOfMemory::raised ? 'r' : 'p';
                 EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
               });
    return failures;
  };
  // The object is not made, then its block.
  EXPECT_EQ(failuresOf([&] { delete source.duplicate(); }), "pr");
  EXPECT_EQ(failuresOf([&] { source.duplicateShared(); }), "pr");
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(TypedOwnBuffer, AddsNoMemberAndNoVirtualOperation)
{
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::write), 10U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::read), 11U);
  EXPECT_EQ(vtableIndexOf(&TypedOwnBuffer::getBufferType), 12U);
  EXPECT_THROW(vtableIndexOf(&TypedOwnBuffer::init), std::invalid_argument);
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(TypedOwnBuffer()), 14U); // clearDerived is the last
  }
  EXPECT_EQ(sizeof(TypedOwnBuffer), sizeof(BaseOwnBuffer));
}

// Archives

template <class HandWritten>
class TypedOwnBufferArchive : public testing::Test
{
protected:
  static void putStructure(HandWritten& archive)
  {
    archive.boolean("bInit", true);
    archive.integer("size", 3);
    archive.enumeration("dataType", 5, "eDT_UInt16");
  }

  /// Three elements with the bytes "abcdef", and the versions of the two levels.
  static std::string fileOfSixBytes(ipUInt32 baseVersion = 1, ipUInt32 version = 1)
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseOwnBuffer", baseVersion);
    putStructure(archive);
    archive.block("abcdef");
    putVersion(archive, "orvel::TypedOwnBuffer", version);
    return archive.file();
  }
};

using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(TypedOwnBufferArchive, Formats, );

TYPED_TEST(TypedOwnBufferArchive, HoldsItsOwnVersionBehindTheData)
{
  TypedOwnBuffer buffer;
  initWithSixBytes(buffer);
  EXPECT_EQ(fileOf<TypeParam>(
                [&](BaseOArchive& archive)
                {
                  const BoolResult result = buffer.write(archive);
                  EXPECT_TRUE(result);
                  EXPECT_EQ(result.getMessage(), "");
                }),
            this->fileOfSixBytes());
}

TYPED_TEST(TypedOwnBufferArchive, HoldsItsVersionsOnce)
{
  TypedOwnBuffer buffer;
  initWithSixBytes(buffer);
  TypeParam expected;
  putVersion(expected, "orvel::BaseOwnBuffer", 1);
  this->putStructure(expected);
  expected.block("abcdef");
  putVersion(expected, "orvel::TypedOwnBuffer", 1);
  this->putStructure(expected);
  expected.block("abcdef");
  EXPECT_EQ(fileOf<TypeParam>(
                [&](BaseOArchive& archive)
                {
                  buffer.write(archive);
                  buffer.write(archive);
                }),
            expected.file());
}

TYPED_TEST(TypedOwnBufferArchive, HoldsSkeletonAndDataInTwoPasses)
{
  TypedOwnBuffer buffer;
  initWithSixBytes(buffer);
  TypeParam expected;
  putVersion(expected, "orvel::BaseOwnBuffer", 1);
  this->putStructure(expected);
  putVersion(expected, "orvel::TypedOwnBuffer", 1);
  expected.block("abcdef");
  const std::string file = fileOf<TypeParam>(
      [&](BaseOArchive& archive)
      {
        buffer.setSerializationMode(eSklSrzMode::eSSM_Skeleton);
        buffer.write(archive);
        buffer.setSerializationMode(eSklSrzMode::eSSM_Data);
        buffer.write(archive);
      });
  EXPECT_EQ(file, expected.file());

  TypedOwnBuffer other;
  readFile<TypeParam>(file,
                      [&](BaseIArchive& archive)
                      {
                        other.setSerializationMode(eSklSrzMode::eSSM_Skeleton);
                        EXPECT_TRUE(other.read(archive));
                        EXPECT_TRUE(other.isInitialized());
                        EXPECT_EQ(other.getSize(), 3U);
                        EXPECT_EQ(other.getDataType(), eDataType::eDT_UInt16);
                        other.setSerializationMode(eSklSrzMode::eSSM_Data);
                        EXPECT_TRUE(other.read(archive));
                      });
  expectCopyOfSixBytes(other, buffer);
}

TYPED_TEST(TypedOwnBufferArchive, IsReadWhole)
{
  TypedOwnBuffer buffer;
  readFile<TypeParam>(this->fileOfSixBytes(),
                      [&](BaseIArchive& archive)
                      {
                        const BoolResult result = buffer.read(archive);
                        EXPECT_TRUE(result);
                        EXPECT_EQ(result.getMessage(), "");
                      });
  EXPECT_EQ(contentsOf(buffer), "abcdef");
}

TYPED_TEST(TypedOwnBufferArchive, IsReadInFullModeWhereASharedPointerMakesTheBuffer)
{
  const TypedOwnBufferPtr written = TypedOwnBuffer::createSharedObject();
  initWithSixBytes(*written);
  for (const auto mode : {eSklSrzMode::eSSM_Full, eSklSrzMode::eSSM_Skeleton})
  {
    written->setSerializationMode(mode);
    const std::string file =
        fileOf<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("buffer", written); });
    TypedOwnBufferPtr read;
    const auto readPointer = [&](BaseIArchive& archive)
    {
      archive >> SerializationIItem("buffer", read);
    };
    if (mode == eSklSrzMode::eSSM_Full)
    {
      readFile<TypeParam>(file, readPointer);
      expectCopyOfSixBytes(*read, *written);
    }
    else
      // The mode is not filed: the new buffer looks for the data that a skeleton does not have.
      EXPECT_THROW(readStart<TypeParam>(file, readPointer), ORVELSerializationException);
  }
}

TYPED_TEST(TypedOwnBufferArchive, IsReadInVersion0)
{
  TypedOwnBuffer buffer;
  readFile<TypeParam>(this->fileOfSixBytes(0, 0),
                      [&](BaseIArchive& archive) { EXPECT_TRUE(buffer.read(archive)); });
  EXPECT_EQ(contentsOf(buffer), "abcdef");
}

TYPED_TEST(TypedOwnBufferArchive, IsRefusedWhereverItIsCut)
{
  const auto begin = [](TypedOwnBuffer& buffer)
  {
    buffer.init(1, eDataType::eDT_Real64);
    setContents(buffer, "12345678");
  };
  const auto check = [](const TypedOwnBuffer& buffer)
  {
    const bool isAsBefore = buffer.getSize() == 1;
    EXPECT_EQ(buffer.getSize(), isAsBefore ? 1U : 3U);
    EXPECT_EQ(buffer.getDataType(), isAsBefore ? eDataType::eDT_Real64 : eDataType::eDT_UInt16);
    if (isAsBefore)
    {
      EXPECT_EQ(contentsOf(buffer), "12345678");
    }
  };
  expectRefusedWhereverItIsCut<TypedOwnBuffer, TypeParam>(this->fileOfSixBytes(), begin, check);
}

TYPED_TEST(TypedOwnBufferArchive, RefusesANewerVersionOfItsBase)
{
  TypedOwnBuffer buffer;
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&] {
                  readStart<TypeParam>(this->fileOfSixBytes(2, 1),
                                       [&](BaseIArchive& archive) { buffer.read(archive); });
                }),
            "Version 2 of class orvel::BaseOwnBuffer is not supported, the highest supported version is 1");
  EXPECT_FALSE(buffer.isInitialized());
}

TYPED_TEST(TypedOwnBufferArchive, RefusesANewerVersionOfItsOwnBehindTheData)
{
  TypedOwnBuffer buffer;
  const auto failure = failureOf<ORVELSerializationException>(
      [&] {
        readStart<TypeParam>(this->fileOfSixBytes(1, 2),
                             [&](BaseIArchive& archive) { buffer.read(archive); });
      });
  EXPECT_EQ(failure.getMessage(),
            "Version 2 of class orvel::TypedOwnBuffer is not supported, the highest supported version is 1");
  EXPECT_NE(failure.getFunction().find("orvel::TypedOwnBuffer::read("), std::string::npos);
  EXPECT_EQ(contentsOf(buffer), "abcdef"); // the base had come
}

} // namespace
