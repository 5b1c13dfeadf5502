#include "ORVELBaseData/Buffer/BaseOwnBuffer.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "OwnedBlockTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ORVELSerializationLog.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

ORVEL_TEST_EXPOSE(Block, &orvel::BaseOwnBuffer::_block)

namespace
{

using namespace orvel;
using namespace orvel::test;

/// The least that a derived class supplies.
class PlainOwnBuffer : public BaseOwnBuffer
{
public:
  BaseDynamicObject* createNew() const override { return new PlainOwnBuffer; }
  DynamicObjectPtr createShared() const override { return DynamicObjectPtr(new PlainOwnBuffer); }
  eBufferType getBufferType() const override { return eBufferType::eBT_Own; }

  using BaseOwnBuffer::initBase;

  const char* getBlock() const { return (this->*memberOf(Block())).get(); }

  static std::size_t placeOfClearDerived() { return vtableIndexOf(&PlainOwnBuffer::clearDerived); }
};

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

/// A buffer of three elements with the bytes "abcdef".
void initWithSixBytes(PlainOwnBuffer& buffer)
{
  buffer.initBase(3, eDataType::eDT_UInt16);
  setContents(buffer, "abcdef");
}

void expectSixBytes(const PlainOwnBuffer& buffer, const void* block)
{
  ASSERT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(contentsOf(buffer), "abcdef");
}

// Blocks

TEST(BaseOwnBuffer, IsBornWithoutABlock)
{
  const PlainOwnBuffer buffer;
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
}

TEST(BaseOwnBuffer, AllocatesABlockOfItsSizeInBytes)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  PlainOwnBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Int32);
  EXPECT_EQ(getLatestArraySize(), 12U);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1);
  EXPECT_NE(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(buffer.getDataPtr(), buffer.getBlock());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
  setContents(buffer, "all 12 bytes"); // watched by the sanitizers
  EXPECT_EQ(contentsOf(buffer), "all 12 bytes");
}

TEST(BaseOwnBuffer, OwnsABlockOf0BytesWithoutElements)
{
  PlainOwnBuffer buffer;
  buffer.initBase(0, eDataType::eDT_Real64);
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_NE(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(buffer.getSize(), 0U);
}

TEST(BaseOwnBuffer, OwnsABlockOf0BytesForATypeThatIsNoEnumerator)
{
  PlainOwnBuffer buffer;
  buffer.initBase(g_largest, eDataType(ipUInt64{12}));
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_NE(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(buffer.getBufferBaseSize(), 0U);
}

TEST(BaseOwnBuffer, AlignsItsBlockForEveryElementType)
{
  PlainOwnBuffer buffer;
  buffer.initBase(5, eDataType::eDT_Real64);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.getDataPtr()) % alignof(ipReal64), 0U);
}

TEST(BaseOwnBuffer, KeepsABlockThatFitsToTheByte)
{
  PlainOwnBuffer buffer;
  buffer.initBase(4, eDataType::eDT_Int32);
  setContents(buffer, "sixteen bytes...");
  const void* const block = buffer.getDataPtr();
  const std::size_t nbArrays = getNbArraysAllocated();
  buffer.initBase(2, eDataType::eDT_Real64);
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getSize(), 2U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Real64);
  EXPECT_EQ(contentsOf(buffer), "sixteen bytes...");
}

TEST(BaseOwnBuffer, ReplacesABlockOfAnotherSize)
{
  PlainOwnBuffer buffer;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  for (const ipUInt64 size : {6U, 7U, 5U, 0U, 1U})
  {
    const std::size_t nbArrays = getNbArraysAllocated();
    buffer.initBase(size, eDataType::eDT_Int16);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
    EXPECT_EQ(getLatestArraySize(), 2 * size);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1); // the old one is gone
    EXPECT_EQ(buffer.getDataPtr(), buffer.getBlock());
    EXPECT_EQ(buffer.getSize(), size);
  }
}

TEST(BaseOwnBuffer, FreesItsBlockWhenItIsCleared)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  PlainOwnBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Int32);
  buffer.clear();
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  buffer.clear();
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(BaseOwnBuffer, AllocatesAnewAfterItWasCleared)
{
  PlainOwnBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Int32);
  buffer.clear();
  const std::size_t nbArrays = getNbArraysAllocated();
  buffer.initBase(3, eDataType::eDT_Int32); // the very same
  EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
  setContents(buffer, "all 12 bytes");
  EXPECT_EQ(contentsOf(buffer), "all 12 bytes");
}

TEST(BaseOwnBuffer, FreesItsBlockAtItsEnd)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    PlainOwnBuffer buffer;
    buffer.initBase(3, eDataType::eDT_Int32);
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(BaseOwnBuffer, MayBeInitialisedWithItsOwnType)
{
  PlainOwnBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Int32);
  buffer.initBase(5, buffer.getDataType());
  EXPECT_EQ(getLatestArraySize(), 20U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
}

// Resizing

TEST(BaseOwnBuffer, KeepsItsContentsWhenItIsResizedToItsSize)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  const void* const block = buffer.getDataPtr();
  buffer.resize(3);
  expectSixBytes(buffer, block);
}

TEST(BaseOwnBuffer, HasANewBlockWhenItIsResizedToAnotherSize)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  for (const ipUInt64 size : {4U, 2U, 0U})
  {
    const std::size_t nbArrays = getNbArraysAllocated();
    buffer.resize(size);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
    EXPECT_EQ(getLatestArraySize(), 2 * size);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
    EXPECT_EQ(buffer.getSize(), size);
    EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
    EXPECT_EQ(buffer.getDataPtr(), buffer.getBlock());
  }
}

TEST(BaseOwnBuffer, CannotBeResizedBeforeItIsInitialised)
{
  PlainOwnBuffer buffer;
  const LogCapture log(getORVELBaseDataLogger());
  const auto failure = failureOf<ORVELBaseDataException>([&] { buffer.resize(3); });
  EXPECT_EQ(failure.getMessage(), "Buffer should be initialized before used");
  EXPECT_NE(failure.getFunction().find("orvel::BaseBuffer::getDataType("), std::string::npos);
  EXPECT_EQ(log.getRecords().size(), 1U);
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
}

TEST(BaseOwnBuffer, IsNotInitialisedWhenThereIsNoMemoryToResizeIt)
{
  PlainOwnBuffer buffer;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  initWithSixBytes(buffer);
  {
    failArrayAllocationAfter(0);
    const auto failure = failureOf<ORVELBaseDataException>([&] { buffer.resize(5); });
    failNoAllocation();
    EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 10");
    EXPECT_TRUE(isCausedByBadAlloc(failure));
  }
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

// No memory

/// Checks what is left when there is no memory for an initialisation with 3 elements of 4 bytes.
void expectFailedAllocation(PlainOwnBuffer& buffer, std::ptrdiff_t nbBlocks)
{
  {
    const LogCapture log(getORVELBaseDataLogger());
    failArrayAllocationAfter(0);
    const auto failure =
        failureOf<ORVELBaseDataException>([&] { buffer.initBase(3, eDataType::eDT_Real32); });
    failNoAllocation();
    EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 12");
#if !defined(__clang__)
    EXPECT_EQ(failure.getFunction(),
              "void orvel::BaseOwnBuffer::initBase(orvel::ipUInt64, const orvel::eDataType&)");
#else
    EXPECT_NE(failure.getFunction().find("orvel::BaseOwnBuffer::initBase("), std::string::npos);
#endif
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Buffer/BaseOwnBuffer.cpp");
    EXPECT_TRUE(isCausedByBadAlloc(failure));
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords()[0].message, failure.getMessage());
    EXPECT_EQ(log.getRecords()[0].level, log4cplus::ERROR_LOG_LEVEL);
  }
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(BaseOwnBuffer, StaysNotInitialisedWithoutMemory)
{
  PlainOwnBuffer buffer;
  expectFailedAllocation(buffer, getNbBlocksInUse());
}

TEST(BaseOwnBuffer, IsNotInitialisedAnyMoreWithoutMemory)
{
  PlainOwnBuffer buffer;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  initWithSixBytes(buffer);
  expectFailedAllocation(buffer, nbBlocks);
}

TEST(BaseOwnBuffer, CanBeInitialisedAfterItFoundNoMemory)
{
  PlainOwnBuffer buffer;
  failArrayAllocationAfter(0);
  EXPECT_THROW(buffer.initBase(3, eDataType::eDT_UInt16), ORVELBaseDataException);
  failNoAllocation();
  initWithSixBytes(buffer);
  expectSixBytes(buffer, buffer.getBlock());
}

TEST(BaseOwnBuffer, TellsHowMuchMemoryItAskedFor)
{
  const std::pair<ipUInt64, const char*> rows[] = {
      // All of these are more than the machine has; none is beyond 64 bits.
      {ipUInt64{1} << 43U, "Memory allocation failed with requested size 70368744177664"},
      {ipUInt64{1} << 59U, "Memory allocation failed with requested size 4611686018427387904"},
      {(ipUInt64{1} << 60U) - 1, "Memory allocation failed with requested size 9223372036854775800"},
      {ipUInt64{1} << 60U, "Memory allocation failed with requested size 9223372036854775808"},
      {(ipUInt64{1} << 61U) - 1, "Memory allocation failed with requested size 18446744073709551608"},
  };
  for (const auto& row : rows)
  {
    PlainOwnBuffer buffer;
    const auto failure =
        failureOf<ORVELBaseDataException>([&] { buffer.initBase(row.first, eDataType::eDT_Real64); });
    EXPECT_EQ(failure.getMessage(), row.second);
    EXPECT_TRUE(isCausedByBadAlloc(failure)) << row.second;
    EXPECT_FALSE(buffer.isInitialized());
    EXPECT_EQ(buffer.getBlock(), nullptr);
  }
}

TEST(BaseOwnBuffer, TakesASizeBeyond64BitsForOneThatCannotBeHad)
{
  const std::pair<ipUInt64, eDataType> rows[] = {
      {ipUInt64{1} << 61U, eDataType::eDT_Real64},       // 2^64 bytes, 0 if they wrapped around
      {(ipUInt64{1} << 61U) + 1, eDataType::eDT_UInt64}, // 8
      {(ipUInt64{1} << 62U) + 1, eDataType::eDT_Int32},  // 4
      {(ipUInt64{1} << 63U) + 3, eDataType::eDT_UInt16}, // 6
      {g_largest, eDataType::eDT_Real64},                // 2^64 - 8
      {g_largest, eDataType::eDT_Int8},                  // not beyond, but as large as can be
  };
  for (const auto& row : rows)
  {
    PlainOwnBuffer buffer;
    initWithSixBytes(buffer);
    const auto failure = failureOf<ORVELBaseDataException>([&] { buffer.initBase(row.first, row.second); });
    EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 18446744073709551615");
    EXPECT_TRUE(isCausedByBadAlloc(failure));
    EXPECT_FALSE(buffer.isInitialized());
    EXPECT_EQ(buffer.getBlock(), nullptr);
  }
}

// No type

TEST(BaseOwnBuffer, OwnsABlockOf0BytesAfterItRefusedATypeOfNone)
{
  PlainOwnBuffer buffer;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    const auto failure = failureOf<ORVELBaseDataException>([&] { buffer.initBase(5, eDataType::eDT_None); });
    EXPECT_EQ(failure.getMessage(), "Invalid buffer type eDT_None");
    EXPECT_NE(failure.getFunction().find("orvel::BaseBuffer::initBase("), std::string::npos);
  }
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_NE(buffer.getBlock(), nullptr);
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1);
  buffer.clear();
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(BaseOwnBuffer, KeepsItsSizeAndTypeButNotItsBlockWhenItRefusesATypeOfNone)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbArrays = getNbArraysAllocated();
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { buffer.initBase(5, eDataType::eDT_None); }),
            "Invalid buffer type eDT_None");
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(buffer.getBufferBaseSize(), 2U);
  EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_NE(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(buffer.getDataPtr(), buffer.getBlock());
}

TEST(BaseOwnBuffer, GoesByItsSizeInBytesAfterItRefusedATypeOfNone)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  EXPECT_THROW(buffer.initBase(5, eDataType::eDT_None), ORVELBaseDataException);
  const void* const block = buffer.getDataPtr();
  buffer.initBase(6, eDataType::eDT_Int8); // 6 bytes as it says it has: the block of none is kept
  EXPECT_EQ(buffer.getDataPtr(), block);
  buffer.initBase(7, eDataType::eDT_Int8);
  EXPECT_EQ(getLatestArraySize(), 7U);
  setContents(buffer, "7 bytes");
  EXPECT_EQ(contentsOf(buffer), "7 bytes");
}

TEST(BaseOwnBuffer, KeepsABlockOf0BytesWhenItRefusesATypeOfNone)
{
  PlainOwnBuffer buffer;
  buffer.initBase(0, eDataType::eDT_Int32);
  const void* const block = buffer.getDataPtr();
  const std::size_t nbArrays = getNbArraysAllocated();
  EXPECT_THROW(buffer.initBase(5, eDataType::eDT_None), ORVELBaseDataException);
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
}

TEST(BaseOwnBuffer, MissesMemoryBeforeItRefusesATypeOfNone)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  failArrayAllocationAfter(0);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { buffer.initBase(5, eDataType::eDT_None); }),
            "Memory allocation failed with requested size 0");
  failNoAllocation();
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
}

// Copies

TEST(BaseOwnBuffer, IsCopiedDeeply)
{
  PlainOwnBuffer source;
  initWithSixBytes(source);
  PlainOwnBuffer copy;
  copy.copy(source);
  EXPECT_NE(copy.getDataPtr(), source.getDataPtr());
  setContents(source, "ABCDEF");
  expectSixBytes(copy, copy.getBlock());
  setContents(copy, "123456");
  EXPECT_EQ(contentsOf(source), "ABCDEF");
}

TEST(BaseOwnBuffer, TakesSizeAndTypeOfWhatItIsCopiedFrom)
{
  PlainOwnBuffer source;
  initWithSixBytes(source);
  PlainOwnBuffer copy;
  copy.initBase(100, eDataType::eDT_Real64);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  copy.copy(source);
  expectSixBytes(copy, copy.getBlock());
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(BaseOwnBuffer, KeepsABlockThatFitsToWhatItIsCopiedFrom)
{
  PlainOwnBuffer source;
  initWithSixBytes(source);
  PlainOwnBuffer copy;
  copy.initBase(6, eDataType::eDT_Bool);
  const void* const block = copy.getDataPtr();
  const std::size_t nbArrays = getNbArraysAllocated();
  copy.copy(source);
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  expectSixBytes(copy, block);
}

TEST(BaseOwnBuffer, IsCopiedWithASingleByte)
{
  PlainOwnBuffer source;
  source.initBase(1, eDataType::eDT_Bool);
  setContents(source, "a");
  PlainOwnBuffer copy;
  copy.initBase(1, eDataType::eDT_Int8);
  setContents(copy, "x");
  copy.copy(source);
  EXPECT_EQ(contentsOf(copy), "a");
}

TEST(BaseOwnBuffer, IsCopiedWithoutElements)
{
  PlainOwnBuffer source;
  source.initBase(0, eDataType::eDT_Int64);
  PlainOwnBuffer copy;
  initWithSixBytes(copy);
  copy.copy(source);
  EXPECT_TRUE(copy.isInitialized());
  EXPECT_EQ(copy.getSize(), 0U);
  EXPECT_EQ(copy.getDataType(), eDataType::eDT_Int64);
  EXPECT_NE(copy.getDataPtr(), nullptr);
  EXPECT_NE(copy.getDataPtr(), source.getDataPtr());
}

TEST(BaseOwnBuffer, IsClearedByACopyOfOneThatIsNotInitialised)
{
  const PlainOwnBuffer source;
  PlainOwnBuffer copy;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  copy.copy(source);
  EXPECT_FALSE(copy.isInitialized());
  initWithSixBytes(copy);
  copy.copy(source);
  EXPECT_FALSE(copy.isInitialized());
  EXPECT_EQ(copy.getBlock(), nullptr);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(BaseOwnBuffer, IsUnchangedByACopyOfItself)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  const void* const block = buffer.getDataPtr();
  buffer.copy(buffer);
  expectSixBytes(buffer, block);
  buffer.clear();
  buffer.copy(buffer);
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(BaseOwnBuffer, IsNotInitialisedWhenThereIsNoMemoryForACopy)
{
  PlainOwnBuffer source;
  initWithSixBytes(source);
  const void* const block = source.getDataPtr();
  PlainOwnBuffer copy;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  copy.initBase(100, eDataType::eDT_Real64);
  {
    failArrayAllocationAfter(0);
    const auto failure = failureOf<ORVELBaseDataException>([&] { copy.copy(source); });
    failNoAllocation();
    EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 6");
    EXPECT_TRUE(isCausedByBadAlloc(failure));
  }
  EXPECT_FALSE(copy.isInitialized());
  EXPECT_EQ(copy.getBlock(), nullptr);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  expectSixBytes(source, block);
}

// The frame

TEST(BaseOwnBuffer, HasItsNameAndVersion)
{
  EXPECT_EQ(BaseOwnBuffer::getTypeName(), "orvel::BaseOwnBuffer");
  EXPECT_EQ(PlainOwnBuffer().getClassName(), "orvel::BaseOwnBuffer");
  EXPECT_EQ(BaseOwnBuffer::getVersion(), 1U);
  static_assert(std::is_abstract_v<BaseOwnBuffer>);
  static_assert(std::is_base_of_v<BaseBlockBuffer, BaseOwnBuffer>);
}

TEST(BaseOwnBuffer, LeavesDuplicatesToTheConcreteClasses)
{
  PlainOwnBuffer buffer;
  EXPECT_FALSE(buffer.hasCopySupport());
  EXPECT_EQ(messageOf<ORVELUtilException>([&] { buffer.duplicate(); }),
            "Class orvel::BaseBlockBuffer doesn't support copy");
  EXPECT_EQ(messageOf<ORVELUtilException>([&] { buffer.duplicateShared(); }),
            "Class orvel::BaseBlockBuffer doesn't support copy");
}

TEST(BaseOwnBuffer, AddsABlockAndNoVirtualOperation)
{
  EXPECT_EQ(vtableIndexOf(&BaseOwnBuffer::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&BaseOwnBuffer::write), 10U);
  EXPECT_EQ(vtableIndexOf(&BaseOwnBuffer::read), 11U);
  EXPECT_EQ(vtableIndexOf(&BaseOwnBuffer::getBufferType), 12U);
  EXPECT_EQ(PlainOwnBuffer::placeOfClearDerived(), 13U);
  EXPECT_THROW(vtableIndexOf(&BaseOwnBuffer::resize), std::invalid_argument);
  EXPECT_EQ(offsetOf(memberOf(Block())), static_cast<std::ptrdiff_t>(sizeof(BaseBlockBuffer)));
  EXPECT_EQ(sizeof(BaseOwnBuffer), sizeof(BaseBlockBuffer) + 8);
}

// Archives

template <class HandWritten>
class BaseOwnBufferArchive : public testing::Test
{
protected:
  /// An archive that is begun with the version record.
  static HandWritten begin(ipUInt32 version = 1)
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseOwnBuffer", version);
    return archive;
  }

  static void putStructure(HandWritten& archive, std::int64_t size, const eDataType& type)
  {
    archive.boolean("bInit", true);
    archive.integer("size", size);
    archive.enumeration("dataType", static_cast<std::int64_t>(type.getValue()), type.getText());
  }

  static std::string fileOfSixBytes()
  {
    HandWritten archive = begin();
    putStructure(archive, 3, eDataType::eDT_UInt16);
    archive.block("abcdef");
    return archive.file();
  }

  static std::string skeletonOfSixBytes()
  {
    HandWritten archive = begin();
    putStructure(archive, 3, eDataType::eDT_UInt16);
    return archive.file();
  }

  static std::string dataOfSixBytes()
  {
    HandWritten archive = begin();
    archive.block("abcdef");
    return archive.file();
  }

  static std::string fileNotInitialised()
  {
    HandWritten archive = begin();
    archive.boolean("bInit", false);
    return archive.file();
  }

  static std::string write(const PlainOwnBuffer& buffer, const eSklSrzMode& mode)
  {
    buffer.setSerializationMode(mode);
    return fileOf<HandWritten>([&](BaseOArchive& archive) { EXPECT_TRUE(buffer.write(archive)); });
  }

  /// Reads all of a file.
  static void read(PlainOwnBuffer& buffer, const eSklSrzMode& mode, const std::string& file)
  {
    buffer.setSerializationMode(mode);
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            const BoolResult result = buffer.read(archive);
                            EXPECT_TRUE(result);
                            EXPECT_EQ(result.getMessage(), "");
                          });
  }

  /// Reads from a file that may hold more.
  static void tryRead(PlainOwnBuffer& buffer, const eSklSrzMode& mode, const std::string& file)
  {
    buffer.setSerializationMode(mode);
    readStart<HandWritten>(file, [&](BaseIArchive& archive) { buffer.read(archive); });
  }
};

using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(BaseOwnBufferArchive, Formats, );

constexpr eSklSrzMode::domain g_full = eSklSrzMode::eSSM_Full;
constexpr eSklSrzMode::domain g_skeleton = eSklSrzMode::eSSM_Skeleton;
constexpr eSklSrzMode::domain g_data = eSklSrzMode::eSSM_Data;

TYPED_TEST(BaseOwnBufferArchive, HoldsStructureAndBlock)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  EXPECT_EQ(this->write(buffer, g_full), this->fileOfSixBytes());
  expectSixBytes(buffer, buffer.getBlock());
}

TYPED_TEST(BaseOwnBufferArchive, HoldsTheStructureAloneAsASkeleton)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  EXPECT_EQ(this->write(buffer, g_skeleton), this->skeletonOfSixBytes());
}

TYPED_TEST(BaseOwnBufferArchive, HoldsTheBlockAloneAsData)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  EXPECT_EQ(this->write(buffer, g_data), this->dataOfSixBytes());
}

TYPED_TEST(BaseOwnBufferArchive, TakesAnyOtherModeForBoth)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  for (const ipUInt64 mode : {ipUInt64{3}, ipUInt64{0x100000001}, ipUInt64{0x100000002}})
  {
    EXPECT_EQ(this->write(buffer, eSklSrzMode(mode)), this->fileOfSixBytes());
    PlainOwnBuffer other;
    this->read(other, eSklSrzMode(mode), this->fileOfSixBytes());
    expectSixBytes(other, other.getBlock());
  }
}

TYPED_TEST(BaseOwnBufferArchive, HoldsNoMoreThanThatItIsNotInitialised)
{
  const PlainOwnBuffer buffer;
  EXPECT_EQ(this->write(buffer, g_full), this->fileNotInitialised());
  EXPECT_EQ(this->write(buffer, g_skeleton), this->fileNotInitialised());
  EXPECT_EQ(this->write(buffer, g_data), this->begin().file());
}

TYPED_TEST(BaseOwnBufferArchive, HoldsNoBlockWithoutElements)
{
  PlainOwnBuffer buffer;
  buffer.initBase(0, eDataType::eDT_Real32);
  TypeParam expected = this->begin();
  this->putStructure(expected, 0, eDataType::eDT_Real32);
  EXPECT_EQ(this->write(buffer, g_full), expected.file());
  EXPECT_EQ(this->write(buffer, g_data), this->begin().file());
  PlainOwnBuffer other;
  initWithSixBytes(other);
  this->read(other, g_full, expected.file());
  EXPECT_TRUE(other.isInitialized());
  EXPECT_EQ(other.getSize(), 0U);
  EXPECT_EQ(other.getDataType(), eDataType::eDT_Real32);
}

TYPED_TEST(BaseOwnBufferArchive, HoldsTheVersionOnce)
{
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  TypeParam expected = this->begin();
  expected.block("abcdef");
  expected.block("abcdef");
  buffer.setSerializationMode(g_data);
  EXPECT_EQ(fileOf<TypeParam>(
                [&](BaseOArchive& archive)
                {
                  buffer.write(archive);
                  buffer.write(archive);
                }),
            expected.file());
}

TYPED_TEST(BaseOwnBufferArchive, HoldsTheElementsInTheByteOrderOfTheMachine)
{
  const std::vector<ipReal64> values = {1.5, -0.0};
  PlainOwnBuffer buffer;
  buffer.initBase(2, eDataType::eDT_Real64);
  setContents(buffer, bytesOf(values));
  TypeParam expected = this->begin();
  this->putStructure(expected, 2, eDataType::eDT_Real64);
  expected.block(bytesOf(values));
  EXPECT_EQ(this->write(buffer, g_full), expected.file());
}

TYPED_TEST(BaseOwnBufferArchive, CannotHoldATypeThatIsNoEnumerator)
{
  PlainOwnBuffer buffer;
  buffer.initBase(4, eDataType(ipUInt64{12}));
  if (std::is_same_v<TypeParam, HandWrittenXml>)
  {
    // There is no text to file.
    EXPECT_THROW(this->write(buffer, g_full), std::logic_error);
    return;
  }
  // The number is clamped: what comes is no type.
  TypeParam expected = this->begin();
  this->putStructure(expected, 4, eDataType::eDT_None);
  EXPECT_EQ(this->write(buffer, g_full), expected.file());
}

TYPED_TEST(BaseOwnBufferArchive, IsReadIntoAnyBuffer)
{
  PlainOwnBuffer fresh;
  this->read(fresh, g_full, this->fileOfSixBytes());
  expectSixBytes(fresh, fresh.getBlock());
  PlainOwnBuffer larger;
  larger.initBase(100, eDataType::eDT_Real64);
  this->read(larger, g_full, this->fileOfSixBytes());
  expectSixBytes(larger, larger.getBlock());
}

TYPED_TEST(BaseOwnBufferArchive, IsReadIntoABlockThatFits)
{
  PlainOwnBuffer buffer;
  buffer.initBase(6, eDataType::eDT_Int8);
  const void* const block = buffer.getDataPtr();
  const std::size_t nbArrays = getNbArraysAllocated();
  this->read(buffer, g_full, this->fileOfSixBytes());
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  expectSixBytes(buffer, block);
}

TYPED_TEST(BaseOwnBufferArchive, AllocatesForASkeleton)
{
  PlainOwnBuffer buffer;
  this->read(buffer, g_skeleton, this->skeletonOfSixBytes());
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(buffer.getDataPtr(), buffer.getBlock());
  setContents(buffer, "ABCDEF"); // watched by the sanitizers
}

TYPED_TEST(BaseOwnBufferArchive, KeepsABlockThatFitsToASkeleton)
{
  PlainOwnBuffer buffer;
  buffer.initBase(6, eDataType::eDT_Int8);
  setContents(buffer, "ABCDEF");
  const void* const block = buffer.getDataPtr();
  this->read(buffer, g_skeleton, this->skeletonOfSixBytes());
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(contentsOf(buffer), "ABCDEF");
}

TYPED_TEST(BaseOwnBufferArchive, FillsItsBlockWithData)
{
  PlainOwnBuffer buffer;
  this->read(buffer, g_skeleton, this->skeletonOfSixBytes());
  const void* const block = buffer.getDataPtr();
  this->read(buffer, g_data, this->dataOfSixBytes());
  expectSixBytes(buffer, block);
}

TYPED_TEST(BaseOwnBufferArchive, ReadsNoDataBeforeItIsInitialised)
{
  PlainOwnBuffer buffer;
  this->read(buffer, g_data, this->begin().file()); // to its end
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
}

TYPED_TEST(BaseOwnBufferArchive, RefusesDataOfAnotherSize)
{
  PlainOwnBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int8);
  const void* const block = buffer.getDataPtr();
  EXPECT_THROW(this->tryRead(buffer, g_data, this->dataOfSixBytes()), ORVELSerializationException);
  EXPECT_EQ(buffer.getSize(), 7U);
  EXPECT_EQ(buffer.getDataPtr(), block);
}

TYPED_TEST(BaseOwnBufferArchive, ClearsABufferThatIsReadFromOneNotInitialised)
{
  for (const auto mode : {g_full, g_skeleton})
  {
    PlainOwnBuffer buffer;
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    initWithSixBytes(buffer);
    this->read(buffer, mode, this->fileNotInitialised());
    EXPECT_FALSE(buffer.isInitialized());
    EXPECT_EQ(buffer.getBlock(), nullptr);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  }
}

TYPED_TEST(BaseOwnBufferArchive, IsReadInVersion0)
{
  TypeParam archive = this->begin(0);
  this->putStructure(archive, 3, eDataType::eDT_UInt16);
  archive.block("abcdef");
  PlainOwnBuffer buffer;
  this->read(buffer, g_full, archive.file());
  expectSixBytes(buffer, buffer.getBlock());
}

TYPED_TEST(BaseOwnBufferArchive, RefusesANewerVersion)
{
  TypeParam archive = this->begin(2);
  this->putStructure(archive, 1, eDataType::eDT_Int8);
  archive.block("x");
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  const void* const block = buffer.getDataPtr();
  const LogCapture log(getORVELSerializationLogger());
  const auto failure =
      failureOf<ORVELSerializationException>([&] { this->tryRead(buffer, g_full, archive.file()); });
  EXPECT_EQ(failure.getMessage(),
            "Version 2 of class orvel::BaseOwnBuffer is not supported, the highest supported version is 1");
#if !defined(__clang__)
  EXPECT_EQ(failure.getFunction(),
            "virtual orvel::BoolResult orvel::BaseOwnBuffer::read(orvel::BaseIArchive&)");
#else
  EXPECT_NE(failure.getFunction().find("orvel::BaseOwnBuffer::read("), std::string::npos);
#endif
  EXPECT_EQ(log.getRecords().size(), 1U);
  expectSixBytes(buffer, block);
}

// Hostile archives

TYPED_TEST(BaseOwnBufferArchive, DoesNotAllocateWhatTheRestOfTheFileCannotFill)
{
  const std::pair<std::int64_t, eDataType> rows[] = {
      {100000, eDataType::eDT_Int8},
      {std::int64_t{1} << 45U, eDataType::eDT_UInt8},
      {std::int64_t{1} << 60U, eDataType::eDT_Real64},
  };
  for (const auto& row : rows)
  {
    TypeParam archive = this->begin();
    this->putStructure(archive, row.first, row.second);
    archive.block("abcdef");
    PlainOwnBuffer buffer;
    initWithSixBytes(buffer);
    const void* const block = buffer.getDataPtr();
    const std::string message =
        messageOf<ORVELSerializationException>([&] { this->tryRead(buffer, g_full, archive.file()); });
    EXPECT_NE(message.find("the rest of the archive can't hold " + std::to_string(row.first) + " elements"),
              std::string::npos)
        << message;
    expectSixBytes(buffer, block);
  }
}

TYPED_TEST(BaseOwnBufferArchive, RefusesABlockOfAnotherSizeThanItsStructure)
{
  for (const std::int64_t size : {2, 4})
  {
    TypeParam archive = this->begin();
    this->putStructure(archive, size, eDataType::eDT_UInt16);
    archive.block("abcdef");
    PlainOwnBuffer buffer;
    EXPECT_THROW(this->tryRead(buffer, g_full, archive.file()), ORVELSerializationException);
    // The structure has come, the data have not.
    EXPECT_EQ(buffer.getSize(), static_cast<ipUInt64>(size));
    EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
    EXPECT_EQ(buffer.getDataPtr(), buffer.getBlock());
  }
}

TYPED_TEST(BaseOwnBufferArchive, RefusesAStructureWithoutItsBlock)
{
  PlainOwnBuffer buffer;
  EXPECT_THROW(this->tryRead(buffer, g_full, this->skeletonOfSixBytes()), ORVELSerializationException);
}

TYPED_TEST(BaseOwnBufferArchive, TakesASizeBeyond64BitsForOneThatCannotBeHad)
{
  TypeParam archive = this->begin();
  this->putStructure(archive, (std::int64_t{1} << 61U) + 1, eDataType::eDT_Int64); // 8 if it wrapped around
  archive.block("12345678");
  for (const auto mode : {g_full, g_skeleton})
  {
    PlainOwnBuffer buffer;
    initWithSixBytes(buffer);
    const auto failure =
        failureOf<ORVELBaseDataException>([&] { this->tryRead(buffer, mode, archive.file()); });
    EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 18446744073709551615");
    EXPECT_TRUE(isCausedByBadAlloc(failure));
    EXPECT_FALSE(buffer.isInitialized());
    EXPECT_EQ(buffer.getBlock(), nullptr);
  }
}

TYPED_TEST(BaseOwnBufferArchive, MissesTheMemoryThatASkeletonAsksFor)
{
  TypeParam archive = this->begin();
  this->putStructure(archive, std::int64_t{1} << 60U, eDataType::eDT_Int8);
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  const auto failure =
      failureOf<ORVELBaseDataException>([&] { this->tryRead(buffer, g_skeleton, archive.file()); });
  EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 1152921504606846976");
  EXPECT_TRUE(isCausedByBadAlloc(failure));
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(buffer.getBlock(), nullptr);
}

TYPED_TEST(BaseOwnBufferArchive, KeepsAllItHadWhenItIsToldOfATypeOfNone)
{
  TypeParam archive = this->begin();
  this->putStructure(archive, 5, eDataType::eDT_None);
  for (const auto mode : {g_full, g_skeleton})
  {
    PlainOwnBuffer buffer;
    initWithSixBytes(buffer);
    const void* const block = buffer.getDataPtr();
    const auto failure =
        failureOf<ORVELBaseDataException>([&] { this->tryRead(buffer, mode, archive.file()); });
    EXPECT_EQ(failure.getMessage(), "Invalid buffer type eDT_None");
    EXPECT_NE(failure.getFunction().find("orvel::BaseBuffer::initBase("), std::string::npos);
    expectSixBytes(buffer, block);
    PlainOwnBuffer fresh;
    EXPECT_THROW(this->tryRead(fresh, mode, archive.file()), ORVELBaseDataException);
    EXPECT_FALSE(fresh.isInitialized());
    EXPECT_EQ(fresh.getBlock(), nullptr);
  }
}

TYPED_TEST(BaseOwnBufferArchive, KeepsAllItHadWhenItIsToldOfAnUnknownType)
{
  TypeParam archive = this->begin();
  archive.boolean("bInit", true);
  archive.integer("size", 1);
  archive.enumeration("dataType", 12, "eDT_Real128");
  PlainOwnBuffer buffer;
  initWithSixBytes(buffer);
  const void* const block = buffer.getDataPtr();
  EXPECT_THROW(this->tryRead(buffer, g_full, archive.file()), ORVELSerializationException);
  expectSixBytes(buffer, block);
}

// Memory running out while reading

TYPED_TEST(BaseOwnBufferArchive, IsNotInitialisedWhenThereIsNoMemoryForItsBlock)
{
  for (const auto mode : {g_full, g_skeleton})
  {
    PlainOwnBuffer buffer;
    buffer.initBase(100, eDataType::eDT_Real64);
    buffer.setSerializationMode(mode);
    std::istringstream stream(this->fileOfSixBytes());
    typename TypeParam::IArchive archive(stream);
    failArrayAllocationAfter(0);
    const auto failure = failureOf<ORVELBaseDataException>([&] { buffer.read(archive); });
    failNoAllocation();
    EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 6");
    EXPECT_TRUE(isCausedByBadAlloc(failure));
    EXPECT_FALSE(buffer.isInitialized());
    EXPECT_EQ(buffer.getBlock(), nullptr);
  }
}

TYPED_TEST(BaseOwnBufferArchive, LeaksNothingWhereverMemoryRunsOut)
{
  const std::string file = this->fileOfSixBytes();
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  std::size_t nbRaised = 0;
  std::unique_ptr<PlainOwnBuffer> buffer;
  const auto readAnew = [&]
  {
    buffer.reset();
    buffer = std::make_unique<PlainOwnBuffer>();
    this->tryRead(*buffer, g_full, file);
  };
  const std::size_t nbFailures = failInTurn(readAnew,
                                            [&](OutOfMemory thrown)
                                            {
                                              if (thrown == OutOfMemory::raised)
                                              {
                                                ++nbRaised;
                                                EXPECT_FALSE(buffer->isInitialized());
                                                EXPECT_EQ(buffer->getBlock(), nullptr);
                                              }
                                              buffer.reset();
                                            });
  EXPECT_GE(nbFailures, 2U); // the buffer and its block, and what the archive needs
  EXPECT_EQ(nbRaised, 1U);
  expectSixBytes(*buffer, buffer->getBlock());
  buffer.reset();
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

} // namespace
