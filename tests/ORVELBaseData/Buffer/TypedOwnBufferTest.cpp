#include "ORVELBaseData/Buffer/TypedOwnBuffer.h"

#include <cstddef>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "BufferSubjects.h"
#include "BufferTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// Checks for six bytes apart from those of another buffer.
void expectCopyOfSixBytes(const TypedOwnBuffer& copy, const TypedOwnBuffer& source)
{
  expectSixBytes<OwnSubject>(copy);
  EXPECT_NE(copy.getDataPtr(), source.getDataPtr());
}

TEST(TypedOwnBuffer, IsAnOwnerInAnyState)
{
  TypedOwnBuffer buffer;
  EXPECT_EQ(buffer.getBufferType(), eBufferType::eBT_Own);
  buffer.init(3, eDataType::eDT_Int32);
  EXPECT_EQ(buffer.getBufferType(), eBufferType::eBT_Own);
}

// The frame

TEST(TypedOwnBuffer, IsCopiedDeeplyInEachWay)
{
  TypedOwnBuffer source;
  ownSixBytes<OwnSubject>(source);
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
  ownSixBytes<OwnSubject>(assigned);
  assigned = source;
  EXPECT_FALSE(assigned.isInitialized());
  const std::unique_ptr<BaseDynamicObject> duplicate(source.duplicate());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*duplicate).isInitialized());
  EXPECT_FALSE(dynamic_cast<TypedOwnBuffer&>(*source.duplicateShared()).isInitialized());
}

TEST(TypedOwnBuffer, LeaksNothingWhenItsDuplicateRunsOutOfMemory)
{
  TypedOwnBuffer source;
  ownSixBytes<OwnSubject>(source);
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

TYPED_TEST_SUITE(TypedOwnBufferArchive, Formats, );

TYPED_TEST(TypedOwnBufferArchive, HoldsItsVersionsOnce)
{
  TypedOwnBuffer buffer;
  ownSixBytes<OwnSubject>(buffer);
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
  ownSixBytes<OwnSubject>(buffer);
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

TYPED_TEST(TypedOwnBufferArchive, IsReadInFullModeWhereASharedPointerMakesTheBuffer)
{
  const TypedOwnBufferPtr written = TypedOwnBuffer::createSharedObject();
  ownSixBytes<OwnSubject>(*written);
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

TYPED_TEST(TypedOwnBufferArchive, RefusesANewerVersionOfItsOwnBehindTheData)
{
  TypedOwnBuffer buffer;
  expectRaised<ORVELSerializationException>(
      [&] {
        readStart<TypeParam>(this->fileOfSixBytes(1, 2),
                             [&](BaseIArchive& archive) { buffer.read(archive); });
      },
      {"Version 2 of class orvel::TypedOwnBuffer is not supported, the highest supported version is 1",
       "virtual orvel::BoolResult orvel::TypedOwnBuffer::read(orvel::BaseIArchive&)",
       "ORVELBaseData/Buffer/TypedOwnBuffer.cpp"});
  EXPECT_EQ(contentsOf(buffer), "abcdef"); // the base had come
}

} // namespace
