// What the buffers do alike that own their memory, or may.

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "BufferSubjects.h"
#include "BufferTesting.h"

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

template <class Subject>
class OwningBuffer : public testing::Test
{
};

using Subjects = testing::Types<OwnSubject, HybridSubject, FragSubject>;
TYPED_TEST_SUITE(OwningBuffer, Subjects, );

// Blocks

TYPED_TEST(OwningBuffer, IsBornNotInitialisedAndWithoutABlock)
{
  const typename TypeParam::Buffer buffer;
  expectCleared<TypeParam>(buffer);
  expectNotInitialised([&] { buffer.getSize(); });
}

TYPED_TEST(OwningBuffer, OwnsABlockThatFitsToTheByte)
{
  typename TypeParam::Buffer buffer;
  TypeParam::own(buffer, 3, eDataType::eDT_Real64);
  EXPECT_EQ(getLatestArraySize(), 24U);
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getMemorySize(), 24U);
  expectOwner<TypeParam>(buffer);
  setBytes<TypeParam>(buffer, "24 bytes, to the last..."); // watched by the sanitizers
  EXPECT_EQ(bytesIn<TypeParam>(buffer), "24 bytes, to the last...");
}

TYPED_TEST(OwningBuffer, OwnsABlockOf0BytesWithoutElements)
{
  typename TypeParam::Buffer buffer;
  TypeParam::own(buffer, 0, eDataType::eDT_Int32);
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
  expectOwner<TypeParam>(buffer);
}

TYPED_TEST(OwningBuffer, KeepsABlockThatFitsToTheByte)
{
  typename TypeParam::Buffer buffer;
  TypeParam::own(buffer, 4, eDataType::eDT_Int32);
  setBytes<TypeParam>(buffer, "0123456789abcdef");
  const char* const block = blockOf(buffer);
  const std::size_t nbArrays = getNbArraysAllocated();
  for (const auto& [size, dataType] :
       {std::pair(4U, eDataType::eDT_Int32), std::pair(2U, eDataType::eDT_Real64)})
  {
    TypeParam::own(buffer, size, dataType);
    EXPECT_EQ(blockOf(buffer), block);
    EXPECT_EQ(buffer.getSize(), size);
    EXPECT_EQ(buffer.getDataType(), dataType);
    EXPECT_EQ(bytesIn<TypeParam>(buffer), "0123456789abcdef");
    expectOwner<TypeParam>(buffer);
  }
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
}

TYPED_TEST(OwningBuffer, TakesAnotherBlockForAnotherSizeInBytes)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  typename TypeParam::Buffer buffer;
  ownSixBytes<TypeParam>(buffer);
  for (const ipUInt64 size : {6U, 7U, 5U, 1U, 0U, 1U})
  {
    const std::size_t nbArrays = getNbArraysAllocated();
    TypeParam::own(buffer, size, eDataType::eDT_Int16);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
    EXPECT_EQ(getLatestArraySize(), 2 * size);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1 + TypeParam::nbListsKept); // the old one is gone
    EXPECT_EQ(buffer.getSize(), size);
    expectOwner<TypeParam>(buffer);
  }
}

TYPED_TEST(OwningBuffer, FreesItsBlockWhenItIsClearedAndWhenItDies)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    typename TypeParam::Buffer buffer;
    for (int i = 0; i < 2; ++i)
    {
      ownSixBytes<TypeParam>(buffer); // anew after it was cleared
      EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1 + TypeParam::nbListsKept);
      buffer.clear();
      expectCleared<TypeParam>(buffer);
      EXPECT_EQ(getNbBlocksInUse(), nbBlocks + TypeParam::nbListsKept);
      buffer.clear();
      expectCleared<TypeParam>(buffer);
    }
    const std::size_t nbArrays = getNbArraysAllocated();
    ownSixBytes<TypeParam>(buffer);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TYPED_TEST(OwningBuffer, MayBeInitialisedWithItsOwnType)
{
  typename TypeParam::Buffer buffer;
  TypeParam::own(buffer, 3, eDataType::eDT_Int32);
  TypeParam::own(buffer, 5, buffer.getDataType());
  EXPECT_EQ(getLatestArraySize(), 20U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
}

TYPED_TEST(OwningBuffer, OwnsABlockOf0BytesForATypeThatIsNoEnumerator)
{
  typename TypeParam::Buffer buffer;
  TypeParam::own(buffer, 5, eDataType(ipUInt64{12}));
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_EQ(buffer.getSize(), 5U);
  EXPECT_EQ(buffer.getBufferBaseSize(), 0U);
  expectOwner<TypeParam>(buffer);
}

TYPED_TEST(OwningBuffer, DoesNotClearItsBlock)
{
  typename TypeParam::Buffer buffer;
  fillBlocksWith('x');
  TypeParam::own(buffer, 3, eDataType::eDT_UInt16);
  fillNoBlocks();
  EXPECT_EQ(bytesIn<TypeParam>(buffer), "xxxxxx");
}

// No memory

TYPED_TEST(OwningBuffer, IsClearedWhenThereIsNoMemory)
{
  typename TypeParam::Buffer fresh;
  const auto check = [](typename TypeParam::Buffer& buffer)
  {
    failArrayAllocationAfter(0);
    expectNoMemory(8, [&] { TypeParam::own(buffer, 4, eDataType::eDT_Int16); });
    failNoAllocation();
    expectCleared<TypeParam>(buffer);
    ownSixBytes<TypeParam>(buffer);
    expectSixBytes<TypeParam>(buffer);
    expectOwner<TypeParam>(buffer);
  };
  check(fresh);
  forOwnerAndView<TypeParam>(check);
}

TYPED_TEST(OwningBuffer, NamesItselfWhenThereIsNoMemory)
{
  typename TypeParam::Buffer buffer;
  expectRaised<ORVELBaseDataException>([&]
                                       { TypeParam::own(buffer, ipUInt64{1} << 60U, eDataType::eDT_Int8); },
                                       {"Memory allocation failed with requested size 1152921504606846976",
                                        TypeParam::initFunction, TypeParam::source, "std::bad_alloc"});
}

TYPED_TEST(OwningBuffer, ReportsHowMuchMemoryItAskedFor)
{
  const std::pair<ipUInt64, ipUInt64> rows[] = {
      // All of these are more than the machine has; none is beyond 64 bits.
      {ipUInt64{1} << 43U, 70368744177664},
      {ipUInt64{1} << 59U, 4611686018427387904},
      {(ipUInt64{1} << 60U) - 1, 9223372036854775800U},
      {ipUInt64{1} << 60U, 9223372036854775808U},
      {(ipUInt64{1} << 61U) - 1, 18446744073709551608U},
  };
  for (const auto& [size, sizeInBytes] : rows)
  {
    typename TypeParam::Buffer buffer;
    expectNoMemory(sizeInBytes,
                   [&, nbElements = size] { TypeParam::own(buffer, nbElements, eDataType::eDT_Real64); });
    expectCleared<TypeParam>(buffer);
  }
}

TYPED_TEST(OwningBuffer, HasNoMemoryForSizesBeyond64Bits)
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
    forOwnerAndView<TypeParam>(
        [&](typename TypeParam::Buffer& buffer)
        {
          expectNoMemory(g_largest, [&] { TypeParam::own(buffer, row.first, row.second); });
          expectCleared<TypeParam>(buffer);
        });
}

// No type

TYPED_TEST(OwningBuffer, RefusesATypeOfNone)
{
  typename TypeParam::Buffer buffer;
  expectTypeOfNoneRefused([&] { TypeParam::own(buffer, 5, eDataType::eDT_None); });
  ownSixBytes<TypeParam>(buffer);
  expectTypeOfNoneRefused([&] { TypeParam::own(buffer, 5, eDataType::eDT_None); });
}

TYPED_TEST(OwningBuffer, StaysNotInitialisedButOwnsABlockWhenItRefusesATypeOfNone)
{
  typename TypeParam::Buffer buffer;
  EXPECT_THROW(TypeParam::own(buffer, 5, eDataType::eDT_None), ORVELBaseDataException);
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_NE(blockOf(buffer), nullptr);
  buffer.clear();
  expectCleared<TypeParam>(buffer);
}

TYPED_TEST(OwningBuffer, KeepsItsSizeAndTypeButNotItsBlockWhenItRefusesATypeOfNone)
{
  typename TypeParam::Buffer buffer;
  ownSixBytes<TypeParam>(buffer);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbArrays = getNbArraysAllocated();
  EXPECT_THROW(TypeParam::own(buffer, 9, eDataType::eDT_None), ORVELBaseDataException);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(buffer.getBufferBaseSize(), 2U);
  EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  for (const void* const fragment : TypeParam::fragmentsOf(buffer))
    EXPECT_EQ(fragment, blockOf(buffer)); // the elements have 0 bytes
  buffer.clear();
  ownSixBytes<TypeParam>(buffer, "ABCDEF");
  expectSixBytes<TypeParam>(buffer, "ABCDEF");
}

TYPED_TEST(OwningBuffer, GoesByItsSizeInBytesAfterItRefusedATypeOfNone)
{
  typename TypeParam::Buffer buffer;
  ownSixBytes<TypeParam>(buffer);
  EXPECT_THROW(TypeParam::own(buffer, 5, eDataType::eDT_None), ORVELBaseDataException);
  const char* const block = blockOf(buffer);
  TypeParam::own(buffer, 6, eDataType::eDT_Int8); // 6 bytes as it says it has: the block of none is kept
  EXPECT_EQ(blockOf(buffer), block);
  TypeParam::own(buffer, 7, eDataType::eDT_Int8);
  EXPECT_EQ(getLatestArraySize(), 7U);
  setBytes<TypeParam>(buffer, "7 bytes");
  EXPECT_EQ(bytesIn<TypeParam>(buffer), "7 bytes");
}

TYPED_TEST(OwningBuffer, KeepsABlockOf0BytesWhenItRefusesATypeOfNone)
{
  typename TypeParam::Buffer buffer;
  TypeParam::own(buffer, 0, eDataType::eDT_Int32);
  const char* const block = blockOf(buffer);
  const std::size_t nbArrays = getNbArraysAllocated();
  EXPECT_THROW(TypeParam::own(buffer, 5, eDataType::eDT_None), ORVELBaseDataException);
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  EXPECT_EQ(blockOf(buffer), block);
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
}

TYPED_TEST(OwningBuffer, MissesMemoryBeforeItRefusesATypeOfNone)
{
  typename TypeParam::Buffer buffer;
  ownSixBytes<TypeParam>(buffer);
  failArrayAllocationAfter(0);
  expectNoMemory(0, [&] { TypeParam::own(buffer, 5, eDataType::eDT_None); });
  failNoAllocation();
  expectCleared<TypeParam>(buffer);
}

// Copies onto an owner

TYPED_TEST(OwningBuffer, TakesADeepCopyAsAnOwner)
{
  forOwnerAndView<TypeParam>(
      [](const typename TypeParam::Buffer& source)
      {
        const std::string bytes = bytesIn<TypeParam>(source);
        typename TypeParam::Buffer target;
        TypeParam::own(target, 100, eDataType::eDT_Real64);
        const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
        target.copy(source);
        EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
        expectOwner<TypeParam>(target);
        expectSixBytes<TypeParam>(target, bytes);
        setBytes<TypeParam>(target, "123456");
        expectSixBytes<TypeParam>(source, bytes);
      });
}

TYPED_TEST(OwningBuffer, KeepsItsBlockInACopyThatFitsToTheByte)
{
  typename TypeParam::Buffer source;
  ownSixBytes<TypeParam>(source);
  typename TypeParam::Buffer target;
  TypeParam::own(target, 6, eDataType::eDT_Bool);
  const char* const block = blockOf(target);
  const std::size_t nbArrays = getNbArraysAllocated();
  target.copy(source);
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  EXPECT_EQ(blockOf(target), block);
  expectOwner<TypeParam>(target);
  expectSixBytes<TypeParam>(target);
}

TYPED_TEST(OwningBuffer, IsCopiedWithASingleByte)
{
  typename TypeParam::Buffer source;
  TypeParam::own(source, 1, eDataType::eDT_Bool);
  setBytes<TypeParam>(source, "a");
  typename TypeParam::Buffer target;
  TypeParam::own(target, 1, eDataType::eDT_Int8);
  setBytes<TypeParam>(target, "x");
  target.copy(source);
  EXPECT_EQ(bytesIn<TypeParam>(target), "a");
}

TYPED_TEST(OwningBuffer, IsCopiedWithoutElements)
{
  typename TypeParam::Buffer source;
  TypeParam::own(source, 0, eDataType::eDT_Int64);
  typename TypeParam::Buffer target;
  ownSixBytes<TypeParam>(target);
  target.copy(source);
  expectOwner<TypeParam>(target);
  EXPECT_NE(blockOf(target), blockOf(source));
  EXPECT_EQ(target.getSize(), 0U);
  EXPECT_EQ(target.getDataType(), eDataType::eDT_Int64);
}

TYPED_TEST(OwningBuffer, IsClearedByACopyOfABufferThatIsNotInitialised)
{
  const typename TypeParam::Buffer source;
  typename TypeParam::Buffer fresh;
  fresh.copy(source);
  expectCleared<TypeParam>(fresh);
  forOwnerAndView<TypeParam>(
      [&](typename TypeParam::Buffer& target)
      {
        target.copy(source);
        expectCleared<TypeParam>(target);
      });
}

TYPED_TEST(OwningBuffer, IsUnchangedByACopyOfItself)
{
  forOwnerAndView<TypeParam>(
      [](typename TypeParam::Buffer& buffer)
      {
        const std::string bytes = bytesIn<TypeParam>(buffer);
        const auto fragments = TypeParam::fragmentsOf(buffer);
        buffer.copy(buffer);
        EXPECT_EQ(TypeParam::fragmentsOf(buffer), fragments);
        expectSixBytes<TypeParam>(buffer, bytes);
        buffer.clear();
        buffer.copy(buffer);
        EXPECT_FALSE(buffer.isInitialized());
      });
}

TYPED_TEST(OwningBuffer, IsClearedWhenThereIsNoMemoryForACopy)
{
  forOwnerAndView<TypeParam>(
      [](const typename TypeParam::Buffer& source)
      {
        const std::string bytes = bytesIn<TypeParam>(source);
        typename TypeParam::Buffer target;
        TypeParam::own(target, 100, eDataType::eDT_Real64);
        failArrayAllocationAfter(0);
        expectNoMemory(6, [&] { target.copy(source); });
        failNoAllocation();
        expectCleared<TypeParam>(target);
        expectSixBytes<TypeParam>(source, bytes);
      });
}

TYPED_TEST(OwningBuffer, LeaksNothingWhereverThereIsNoMemoryForACopy)
{
  typename TypeParam::Buffer source;
  ownSixBytes<TypeParam>(source);
  const auto copy = [&]
  {
    typename TypeParam::Buffer target;
    TypeParam::own(target, 1, eDataType::eDT_Int8);
    target.copy(source);
    expectSixBytes<TypeParam>(target);
  };
  failInTurn(copy, [](OutOfMemory) {}); // makes what is made once
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  EXPECT_GE(failInTurn(copy, [&](OutOfMemory) { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); }),
            2U * TypeParam::nbAllocations);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  expectSixBytes<TypeParam>(source);
}

} // namespace
