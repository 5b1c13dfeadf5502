#include "ORVELBaseData/Buffer/HybridBuffer.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "BufferTesting.h"
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/LayoutChecks.h>
#include <support/Sanitizers.h>

ORVEL_TEST_EXPOSE(Block, &orvel::HybridBuffer::_block)
ORVEL_TEST_EXPOSE(ClearDerived, &orvel::HybridBuffer::clearDerived)

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();
constexpr ipUInt64 g_impossible = ipUInt64{1} << 60U; // bytes that no machine has

const char* blockOf(const HybridBuffer& buffer)
{
  return (buffer.*memberOf(Block())).get();
}

/// An owner of three numbers.
void own(HybridBuffer& buffer, ipInt16 first, ipInt16 second, ipInt16 third)
{
  buffer.init(3, eDataType::eDT_Int16);
  setContents(buffer, bytesOf<ipInt16>({first, second, third}));
}

void expectNumbers(const HybridBuffer& buffer, ipInt16 first, ipInt16 second, ipInt16 third)
{
  ASSERT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Int16);
  EXPECT_EQ(contentsOf(buffer), bytesOf<ipInt16>({first, second, third}));
}

void expectCleared(const HybridBuffer& buffer)
{
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(blockOf(buffer), nullptr);
}

TEST(HybridBuffer, IsBornNotInitialisedAndWithoutABlock)
{
  const HybridBuffer buffer;
  expectCleared(buffer);
  expectNotInitialised([&] { buffer.getSize(); });
}

// Ownership

TEST(HybridBuffer, OwnsABlockThatFitsToTheByte)
{
  HybridBuffer buffer;
  buffer.init(3, eDataType::eDT_Real64);
  EXPECT_EQ(getLatestArraySize(), 24U);
  EXPECT_TRUE(buffer.isBufferOwn());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getMemorySize(), 24U);
  EXPECT_EQ(buffer.getDataPtr(), blockOf(buffer));
  setContents(buffer, std::string(24, 'x'));
}

TEST(HybridBuffer, OwnsABlockOfNoElements)
{
  HybridBuffer buffer;
  buffer.init(0, eDataType::eDT_Int32);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_NE(buffer.getDataPtr(), nullptr);
  EXPECT_TRUE(buffer.isBufferOwn());
}

TEST(HybridBuffer, IsAViewOnTheCallersMemory)
{
  ipInt16 memory[3] = {1, 2, 3};
  HybridBuffer buffer;
  buffer.init(3, eDataType::eDT_Int16, static_cast<void*>(memory));
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_EQ(blockOf(buffer), nullptr);
  expectNumbers(buffer, 1, 2, 3);
}

TEST(HybridBuffer, TellsAViewFromAnOwner)
{
  ipInt16 memory[3] = {};
  HybridBuffer buffer;
  buffer.init(3, memory);
  EXPECT_FALSE(buffer.isBufferOwn());
  buffer.init(3, eDataType::eDT_Int16);
  EXPECT_TRUE(buffer.isBufferOwn());
  EXPECT_NE(buffer.getDataPtr(), memory);
}

TEST(HybridBuffer, CannotTellWhetherItOwnsBeforeItIsInitialised)
{
  ipInt16 memory[3] = {};
  HybridBuffer buffer;
  const auto ask = [&]
  {
    buffer.isBufferOwn();
  };
  expectRaised("Buffer should be initialized before used",
               "const void* orvel::BaseBlockBuffer::getDataPtr() const",
               "ORVELBaseData/Buffer/BaseBlockBuffer.cpp", "requireInitialized", ask);
  buffer.init(3, memory);
  buffer.clear();
  expectNotInitialised(ask);
  buffer.init(3, eDataType::eDT_Int16);
  buffer.clear();
  expectNotInitialised(ask);
}

template <class T>
void expectTypeTold(const eDataType& dataType, ipUInt32 elementSize)
{
  T memory[2] = {};
  HybridBuffer buffer;
  buffer.init(2, memory);
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_TRUE(buffer.getDataType() == dataType) << dataType.getText();
  EXPECT_EQ(buffer.getBufferBaseSize(), elementSize);
}

TEST(HybridBuffer, TakesTheTypeOfThePointer)
{
  expectTypeTold<ipBool>(eDataType::eDT_Bool, 1);
  expectTypeTold<ipInt8>(eDataType::eDT_Int8, 1);
  expectTypeTold<ipUInt8>(eDataType::eDT_UInt8, 1);
  expectTypeTold<ipInt16>(eDataType::eDT_Int16, 2);
  expectTypeTold<ipUInt16>(eDataType::eDT_UInt16, 2);
  expectTypeTold<ipInt32>(eDataType::eDT_Int32, 4);
  expectTypeTold<ipUInt32>(eDataType::eDT_UInt32, 4);
  expectTypeTold<ipInt64>(eDataType::eDT_Int64, 8);
  expectTypeTold<ipUInt64>(eDataType::eDT_UInt64, 8);
  expectTypeTold<ipReal32>(eDataType::eDT_Real32, 4);
  expectTypeTold<ipReal64>(eDataType::eDT_Real64, 8);
}

TEST(HybridBuffer, FreesItsBlockAtOnceWhenItBecomesAView)
{
  ipInt16 memory[3] = {1, 2, 3};
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  HybridBuffer buffer;
  own(buffer, 4, 5, 6);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1);
  buffer.init(3, memory);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_EQ(blockOf(buffer), nullptr);
  expectNumbers(buffer, 1, 2, 3);
}

TEST(HybridBuffer, FreesNothingOfSomebodyElseWhenItIsCleared)
{
  ipInt16 memory[3] = {1, 2, 3}; // of no allocation: freeing it would end the program
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    HybridBuffer buffer;
    buffer.init(3, memory);
    buffer.clear();
    expectCleared(buffer);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
    buffer.init(3, memory);
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_EQ(memory[0], 1);
  EXPECT_EQ(memory[2], 3);
}

TEST(HybridBuffer, FreesItsBlockWhenItIsClearedAndWhenItDies)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    HybridBuffer buffer;
    own(buffer, 1, 2, 3);
    buffer.clear();
    expectCleared(buffer);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
    own(buffer, 1, 2, 3);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1);
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(HybridBuffer, KeepsTheBlockOfAnOwnerThatFitsToTheByte)
{
  HybridBuffer buffer;
  buffer.init(4, eDataType::eDT_Int32);
  setContents(buffer, "0123456789abcdef");
  const void* const block = buffer.getDataPtr();
  buffer.init(4, eDataType::eDT_Int32);
  EXPECT_EQ(buffer.getDataPtr(), block);
  buffer.init(2, eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getSize(), 2U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Real64);
  EXPECT_EQ(contentsOf(buffer), "0123456789abcdef");
}

TEST(HybridBuffer, TakesAnotherBlockForAnotherSizeInBytes)
{
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  for (const ipUInt64 size : {4U, 2U, 0U, 5U})
  {
    const std::size_t nbArrays = getNbArraysAllocated();
    buffer.init(size, eDataType::eDT_Int16);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
    EXPECT_EQ(getLatestArraySize(), 2 * size);
    EXPECT_TRUE(buffer.isBufferOwn());
  }
}

TEST(HybridBuffer, TakesABlockOfItsOwnInPlaceOfAViewOfTheSameSize)
{
  ipInt16 memory[3] = {1, 2, 3};
  HybridBuffer buffer;
  buffer.init(3, memory);
  buffer.init(3, eDataType::eDT_Int16);
  setContents(buffer, "abcdef");
  EXPECT_EQ(memory[0], 1);
  EXPECT_EQ(memory[2], 3);
}

TEST(HybridBuffer, TakesAViewOnANullPointerForAnOwner)
{
  HybridBuffer buffer;
  buffer.init(3, eDataType::eDT_Int16, nullptr);
  EXPECT_TRUE(buffer.isBufferOwn());
  const std::size_t nbArrays = getNbArraysAllocated();
  buffer.init(3, eDataType::eDT_Int16);
  EXPECT_EQ(buffer.getDataPtr(), nullptr); // the null "block" fits to the byte
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  buffer.init(4, eDataType::eDT_Int16);
  EXPECT_NE(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(getLatestArraySize(), 8U);
}

TEST(HybridBuffer, LosesItsBlockWhenItIsMadeAViewOnIt)
{
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  const auto address = reinterpret_cast<std::uintptr_t>(buffer.getDataPtr());
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  buffer.init(2, eDataType::eDT_Int16, buffer.getDataPtr());
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks - 1); // freed first: nothing is left behind the address
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.getDataPtr()), address);
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_EQ(buffer.getSize(), 2U);
}

// Failures of init

TEST(HybridBuffer, OwnsABlockOf0BytesAfterItRefusedATypeOfNone)
{
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { buffer.init(9, eDataType::eDT_None); }),
            "Invalid buffer type eDT_None");
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Int16);
  EXPECT_EQ(buffer.getDataPtr(), blockOf(buffer));
  EXPECT_TRUE(buffer.isBufferOwn());
  buffer.clear();
  own(buffer, 4, 5, 6);
  expectNumbers(buffer, 4, 5, 6);
}

TEST(HybridBuffer, FreesItsBlockAndHasTheNewAddressWhenItRefusesATypeOfNoneAsAView)
{
  ipInt16 memory[3] = {1, 2, 3};
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  HybridBuffer buffer;
  own(buffer, 4, 5, 6);
  expectTypeOfNoneRefused([&] { buffer.init(9, eDataType::eDT_None, memory); });
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_FALSE(buffer.isBufferOwn());
  expectNumbers(buffer, 1, 2, 3);
}

TEST(HybridBuffer, StaysNotInitialisedWhenItRefusesATypeOfNone)
{
  ipInt16 memory[3] = {};
  HybridBuffer buffer;
  expectTypeOfNoneRefused([&] { buffer.init(3, eDataType::eDT_None); });
  EXPECT_FALSE(buffer.isInitialized());
  expectTypeOfNoneRefused([&] { buffer.init(3, eDataType::eDT_None, memory); });
  expectCleared(buffer);
}

TEST(HybridBuffer, IsClearedWhenThereIsNoMemory)
{
  ipInt16 memory[3] = {1, 2, 3};
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  for (const bool isOwner : {true, false})
  {
    HybridBuffer buffer;
    if (isOwner)
      own(buffer, 4, 5, 6);
    else
      buffer.init(3, memory);
    failArrayAllocationAfter(0);
    expectNoMemory(8, [&] { buffer.init(4, eDataType::eDT_Int16); });
    failNoAllocation();
    expectCleared(buffer);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
    buffer.init(4, eDataType::eDT_Int16);
    EXPECT_TRUE(buffer.isBufferOwn());
  }
  EXPECT_EQ(memory[0], 1);
}

TEST(HybridBuffer, NamesItselfWhenThereIsNoMemory)
{
  HybridBuffer buffer;
  expectRaised("Memory allocation failed with requested size 1152921504606846976",
               "void orvel::HybridBuffer::init(orvel::ipUInt64, const orvel::eDataType&)",
               "ORVELBaseData/Buffer/HybridBuffer.cpp", "ORVEL_HERE",
               [&] { buffer.init(g_impossible, eDataType::eDT_Int8); });
}

TEST(HybridBuffer, HasNoMemoryForSizesBeyond64Bits)
{
  // 8 * 2^61 is 2^64, which would wrap around to a block of 0 bytes.
  const ipUInt64 sizes[] = {ipUInt64{1} << 61U, (ipUInt64{1} << 61U) + 1, g_largest};
  for (const ipUInt64 size : sizes)
  {
    HybridBuffer buffer;
    own(buffer, 1, 2, 3);
    expectNoMemory(g_largest, [&] { buffer.init(size, eDataType::eDT_Real64); });
    expectCleared(buffer);
  }
}

// Copies

TEST(HybridBuffer, TakesADeepCopyAsAnOwner)
{
  ipInt16 memory[3] = {1, 2, 3};
  HybridBuffer owner;
  own(owner, 1, 2, 3);
  HybridBuffer view;
  view.init(3, memory);
  for (HybridBuffer* source : {&owner, &view})
  {
    HybridBuffer target;
    target.init(1, eDataType::eDT_Real32);
    target.copy(*source);
    EXPECT_TRUE(target.isBufferOwn());
    EXPECT_NE(target.getDataPtr(), source->getDataPtr());
    static_cast<ipInt16*>(source->getDataPtr())[0] = 9;
    expectNumbers(target, 1, 2, 3);
  }
}

TEST(HybridBuffer, BecomesAViewOnTheSourceAsAView)
{
  ipInt16 memory[3] = {1, 2, 3};
  ipReal64 old[2] = {5, 6};
  HybridBuffer owner;
  own(owner, 1, 2, 3);
  HybridBuffer view;
  view.init(3, memory);
  for (HybridBuffer* source : {&owner, &view})
  {
    HybridBuffer target;
    target.init(2, old);
    target.copy(*source);
    EXPECT_FALSE(target.isBufferOwn());
    EXPECT_EQ(target.getDataPtr(), source->getDataPtr());
    expectNumbers(target, 1, 2, 3);
  }
  EXPECT_TRUE(owner.isBufferOwn());
  EXPECT_EQ(old[0], 5);
  EXPECT_EQ(old[1], 6);
}

TEST(HybridBuffer, CannotBeCopiedOntoABufferThatIsNotInitialised)
{
  ipInt16 memory[3] = {1, 2, 3};
  HybridBuffer owner;
  own(owner, 1, 2, 3);
  HybridBuffer view;
  view.init(3, memory);
  for (const HybridBuffer* source : {&owner, &view})
  {
    HybridBuffer target;
    expectRaised(
        "Buffer should be initialized before used", "const void* orvel::BaseBlockBuffer::getDataPtr() const",
        "ORVELBaseData/Buffer/BaseBlockBuffer.cpp", "requireInitialized", [&] { target.copy(*source); });
    expectNotInitialised([&] { target = *source; });
    expectCleared(target);
    expectNumbers(*source, 1, 2, 3);
  }
}

TEST(HybridBuffer, CannotBeDuplicatedOnceItIsInitialised)
{
  ipInt16 memory[3] = {};
  HybridBuffer owner;
  own(owner, 1, 2, 3);
  HybridBuffer view;
  view.init(3, memory);
  expectNotInitialised([&] { owner.duplicate(); }); // makes what is made once, such as the logger
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  for (const HybridBuffer* source : {&owner, &view})
  {
    expectNotInitialised([&] { source->duplicate(); });
    expectNotInitialised([&] { source->duplicateShared(); });
    expectNotInitialised([&] { const HybridBuffer copy(*source); });
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(HybridBuffer, IsDuplicatedWhileItIsNotInitialised)
{
  const HybridBuffer buffer;
  EXPECT_TRUE(buffer.hasCopySupport());
  expectCleared(HybridBuffer(buffer));
  const std::unique_ptr<BaseDynamicObject> duplicate(buffer.duplicate());
  expectCleared(dynamic_cast<HybridBuffer&>(*duplicate));
  expectCleared(dynamic_cast<HybridBuffer&>(*buffer.duplicateShared()));
}

TEST(HybridBuffer, IsClearedByACopyOfABufferThatIsNotInitialised)
{
  ipInt16 memory[3] = {1, 2, 3};
  const HybridBuffer source;
  HybridBuffer owner;
  own(owner, 1, 2, 3);
  EXPECT_EQ(&(owner = source), &owner);
  expectCleared(owner);
  HybridBuffer view;
  view.init(3, memory);
  view.copy(source);
  expectCleared(view);
  EXPECT_EQ(memory[2], 3);
  HybridBuffer fresh;
  fresh.copy(source);
  expectCleared(fresh);
}

TEST(HybridBuffer, KeepsItsBlockInACopyThatFitsToTheByte)
{
  HybridBuffer source;
  own(source, 1, 2, 3);
  HybridBuffer target;
  target.init(6, eDataType::eDT_Int8);
  const void* const block = target.getDataPtr();
  const std::size_t nbArrays = getNbArraysAllocated();
  target = source;
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  EXPECT_EQ(target.getDataPtr(), block);
  expectNumbers(target, 1, 2, 3);
}

TEST(HybridBuffer, IsCopiedWithoutElements)
{
  HybridBuffer source;
  source.init(0, eDataType::eDT_Real64, nullptr);
  HybridBuffer target;
  own(target, 1, 2, 3);
  target = source;
  EXPECT_TRUE(target.isBufferOwn());
  EXPECT_EQ(target.getSize(), 0U);
  EXPECT_NE(target.getDataPtr(), nullptr);
  EXPECT_TRUE(target.getDataType() == eDataType::eDT_Real64);
}

TEST(HybridBuffer, StaysAsItIsInACopyOfItself)
{
  ipInt16 memory[3] = {1, 2, 3};
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  const void* const block = buffer.getDataPtr();
  buffer.copy(buffer);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_TRUE(buffer.isBufferOwn());
  expectNumbers(buffer, 1, 2, 3);
  buffer.init(3, memory);
  buffer.copy(buffer);
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_FALSE(buffer.isBufferOwn());
  expectNumbers(buffer, 1, 2, 3);
}

TEST(HybridBuffer, TakesACopyOfAViewOnItsOwnBlock)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    HybridBuffer owner;
    owner.init(6, eDataType::eDT_Int16);
    setContents(owner, bytesOf<ipInt16>({1, 2, 3, 4, 5, 6}));
    HybridBuffer view;
    view.init(3, static_cast<ipInt16*>(owner.getDataPtr()) + 2);
    owner = view; // its block is of another size: the old one must not go before it has been copied
    EXPECT_TRUE(owner.isBufferOwn());
    expectNumbers(owner, 3, 4, 5);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks + 1);
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(HybridBuffer, TakesADeepCopyInPlaceOfANullPointer)
{
  HybridBuffer source;
  own(source, 1, 2, 3);
  for (const ipUInt64 size : {0U, 4U}) // of another size in bytes than the source
  {
    HybridBuffer target;
    target.init(size, eDataType::eDT_Int16, nullptr);
    target = source; // counts as an owner, though it was made a view
    EXPECT_TRUE(target.isBufferOwn());
    EXPECT_NE(target.getDataPtr(), source.getDataPtr());
    expectNumbers(target, 1, 2, 3);
  }
}

TEST(HybridBuffer, KeepsItsNullPointerInACopyOfItself)
{
  HybridBuffer buffer;
  buffer.init(3, eDataType::eDT_Int16, nullptr);
  buffer.copy(buffer);
  EXPECT_EQ(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(buffer.getSize(), 3U);
}

TEST(HybridBuffer, IsClearedWhenThereIsNoMemoryForACopy)
{
  HybridBuffer source;
  own(source, 1, 2, 3);
  HybridBuffer target;
  target.init(1, eDataType::eDT_Int8);
  failArrayAllocationAfter(0);
  expectNoMemory(6, [&] { target = source; });
  failNoAllocation();
  expectCleared(target);
  expectNumbers(source, 1, 2, 3);
}

TEST(HybridBuffer, LeaksNothingInACopyOfAViewOnItsOwnBlockWithoutMemory)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  HybridBuffer owner;
  own(owner, 1, 2, 3);
  HybridBuffer view;
  view.init(1, static_cast<ipInt16*>(owner.getDataPtr()) + 1);
  failArrayAllocationAfter(0);
  expectNoMemory(2, [&] { owner = view; });
  failNoAllocation();
  expectCleared(owner);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(HybridBuffer, HasNoMemoryForACopyOfAViewThatNoMemoryHolds)
{
  ipReal64 memory[1] = {};
  HybridBuffer view;
  view.init(ipUInt64{1} << 61U, memory); // 2^64 bytes, as a number of 64 bits 0
  HybridBuffer target;
  own(target, 1, 2, 3);
  expectNoMemory(g_largest, [&] { target = view; });
  expectCleared(target);
}

// The frame

TEST(HybridBuffer, HasItsNameVersionAndKind)
{
  EXPECT_EQ(HybridBuffer::getTypeName(), "orvel::HybridBuffer");
  EXPECT_EQ(HybridBuffer().getClassName(), "orvel::HybridBuffer");
  EXPECT_EQ(HybridBuffer::getVersion(), 1U);
  EXPECT_TRUE(HybridBuffer().getBufferType() == eBufferType::eBT_Hybrid);
  EXPECT_EQ(HybridBuffer().getBufferType().getValue(), 2U);
  static_assert(std::is_base_of_v<BaseBlockBuffer, HybridBuffer>);
  static_assert(std::is_same_v<HybridBufferPtr, boost::shared_ptr<HybridBuffer>>);
  static_assert(std::is_same_v<HybridBufferConstPtr, boost::shared_ptr<const HybridBuffer>>);
}

TEST(HybridBuffer, IsCreatedByItsNameAndByItsOwn)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  HybridBuffer example;
  own(example, 1, 2, 3);
  const std::unique_ptr<BaseDynamicObject> byName(factory.createNew("orvel::HybridBuffer"));
  const std::unique_ptr<BaseDynamicObject> byItself(example.createNew());
  const std::unique_ptr<HybridBuffer> byClass(HybridBuffer::createNewObject());
  expectCleared(dynamic_cast<HybridBuffer&>(*byName));
  expectCleared(dynamic_cast<HybridBuffer&>(*byItself));
  expectCleared(*byClass);
  expectCleared(dynamic_cast<HybridBuffer&>(*factory.createShared("orvel::HybridBuffer")));
  expectCleared(dynamic_cast<HybridBuffer&>(*example.createShared()));
  expectCleared(*HybridBuffer::createSharedObject());
}

TEST(HybridBuffer, AddsItsBlockAndNoVirtualOperation)
{
  EXPECT_EQ(vtableIndexOf(&HybridBuffer::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&HybridBuffer::write), 10U);
  EXPECT_EQ(vtableIndexOf(&HybridBuffer::read), 11U);
  EXPECT_EQ(vtableIndexOf(&HybridBuffer::getBufferType), 12U);
  EXPECT_EQ(vtableIndexOf(memberOf(ClearDerived())), 13U);
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(HybridBuffer()), 14U);
  }
  EXPECT_EQ(offsetOf(memberOf(Block())), static_cast<std::ptrdiff_t>(sizeof(BaseBlockBuffer)));
  EXPECT_EQ(sizeof(HybridBuffer), 56U);
}

// Archives

constexpr auto g_full = eSklSrzMode::eSSM_Full;
constexpr auto g_skeleton = eSklSrzMode::eSSM_Skeleton;
constexpr auto g_data = eSklSrzMode::eSSM_Data;

template <class HandWritten>
class HybridBufferArchive : public testing::Test
{
protected:
  /// The version record and the structure.
  static HandWritten structureOf(std::int64_t size, std::int64_t typeNumber, const std::string& typeName)
  {
    HandWritten archive;
    putVersion(archive, "orvel::HybridBuffer", 1);
    archive.boolean("bInit", true);
    archive.integer("size", size);
    archive.enumeration("dataType", typeNumber, typeName);
    return archive;
  }

  static HandWritten skeleton() { return structureOf(3, 4, "eDT_Int16"); }

  static HandWritten full(const std::string& bytes)
  {
    HandWritten archive = skeleton();
    archive.block(bytes);
    return archive;
  }

  static HandWritten data(const std::string& bytes)
  {
    HandWritten archive;
    putVersion(archive, "orvel::HybridBuffer", 1);
    archive.block(bytes);
    return archive;
  }

  static HandWritten empty()
  {
    HandWritten archive;
    putVersion(archive, "orvel::HybridBuffer", 1);
    archive.boolean("bInit", false);
    return archive;
  }

  static HandWritten versionOnly()
  {
    HandWritten archive;
    putVersion(archive, "orvel::HybridBuffer", 1);
    return archive;
  }

  const std::string _bytes = bytesOf<ipInt16>({1, -2, 300});
};

using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(HybridBufferArchive, Formats, );

TYPED_TEST(HybridBufferArchive, HoldsAnOwnerAndAViewAlike)
{
  ipInt16 memory[3] = {1, -2, 300};
  HybridBuffer owner;
  own(owner, 1, -2, 300);
  HybridBuffer view;
  view.init(3, memory);
  for (const HybridBuffer* buffer : {&owner, &view})
  {
    EXPECT_EQ(fileOfMode<TypeParam>(*buffer, g_full), this->full(this->_bytes).file());
    EXPECT_EQ(fileOfMode<TypeParam>(*buffer, g_skeleton), this->skeleton().file());
    EXPECT_EQ(fileOfMode<TypeParam>(*buffer, g_data), this->data(this->_bytes).file());
  }
}

TYPED_TEST(HybridBufferArchive, HoldsOfABufferThatIsNotInitialisedThatItIsNot)
{
  const HybridBuffer buffer;
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_full), this->empty().file());
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_skeleton), this->empty().file());
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_data), this->versionOnly().file());
}

TYPED_TEST(HybridBufferArchive, HoldsNoBlockWithoutElements)
{
  HybridBuffer buffer;
  buffer.init(0, eDataType::eDT_Real64);
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_full), this->structureOf(0, 11, "eDT_Real64").file());
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_data), this->versionOnly().file());
  HybridBuffer read;
  own(read, 1, 2, 3);
  readInMode<TypeParam>(read, this->structureOf(0, 11, "eDT_Real64").file(), g_full);
  EXPECT_TRUE(read.isBufferOwn());
  EXPECT_EQ(read.getSize(), 0U);
  EXPECT_TRUE(read.getDataType() == eDataType::eDT_Real64);
}

TYPED_TEST(HybridBufferArchive, HoldsTheVersionOnce)
{
  HybridBuffer buffer;
  own(buffer, 1, -2, 300);
  TypeParam expected = this->full(this->_bytes);
  expected.boolean("bInit", false);
  const auto write = [&](BaseOArchive& archive)
  {
    EXPECT_TRUE(buffer.write(archive));
    EXPECT_TRUE(HybridBuffer().write(archive));
  };
  EXPECT_EQ(fileOf<TypeParam>(write), expected.file());
}

TYPED_TEST(HybridBufferArchive, MakesAnOwnerOfAFreshBuffer)
{
  HybridBuffer buffer;
  readInMode<TypeParam>(buffer, this->full(this->_bytes).file(), g_full);
  EXPECT_TRUE(buffer.isBufferOwn());
  expectNumbers(buffer, 1, -2, 300);
}

TYPED_TEST(HybridBufferArchive, MakesAnOwnerOfAViewOfAnotherSizeOrType)
{
  ipInt16 shorter[2] = {7, 8};
  ipUInt16 unsignedOnes[3] = {7, 8, 9}; // as many bytes
  HybridBuffer buffer;
  buffer.init(2, shorter);
  readInMode<TypeParam>(buffer, this->full(this->_bytes).file(), g_full);
  EXPECT_TRUE(buffer.isBufferOwn());
  expectNumbers(buffer, 1, -2, 300);
  EXPECT_EQ(shorter[0], 7);
  buffer.init(3, unsignedOnes);
  readInMode<TypeParam>(buffer, this->full(this->_bytes).file(), g_full);
  EXPECT_TRUE(buffer.isBufferOwn());
  expectNumbers(buffer, 1, -2, 300);
  EXPECT_EQ(unsignedOnes[0], 7);
}

TYPED_TEST(HybridBufferArchive, FillsTheMemoryOfAViewOfTheSameSizeAndType)
{
  ipInt16 memory[3] = {7, 8, 9};
  HybridBuffer buffer;
  buffer.init(3, memory);
  readInMode<TypeParam>(buffer, this->full(this->_bytes).file(), g_full);
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_EQ(memory[0], 1);
  EXPECT_EQ(memory[1], -2);
  EXPECT_EQ(memory[2], 300);
}

TYPED_TEST(HybridBufferArchive, KeepsTheBlockOfAnOwnerThatFitsToTheByte)
{
  HybridBuffer buffer;
  for (const eDataType dataType : {eDataType::eDT_Int16, eDataType::eDT_UInt16})
  {
    buffer.init(3, dataType);
    const void* const block = buffer.getDataPtr();
    const std::size_t nbArrays = getNbArraysAllocated();
    readInMode<TypeParam>(buffer, this->full(this->_bytes).file(), g_full);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays);
    EXPECT_EQ(buffer.getDataPtr(), block);
    expectNumbers(buffer, 1, -2, 300);
  }
}

TYPED_TEST(HybridBufferArchive, BringsMemoryWithASkeletonThatDataFill)
{
  HybridBuffer buffer;
  readInMode<TypeParam>(buffer, this->skeleton().file(), g_skeleton);
  EXPECT_TRUE(buffer.isBufferOwn());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Int16);
  EXPECT_EQ(getLatestArraySize(), 6U);
  const void* const block = buffer.getDataPtr();
  readInMode<TypeParam>(buffer, this->data(this->_bytes).file(), g_data);
  EXPECT_EQ(buffer.getDataPtr(), block);
  expectNumbers(buffer, 1, -2, 300);
}

TYPED_TEST(HybridBufferArchive, LeavesAViewOfTheSameSizeAndTypeToASkeleton)
{
  ipInt16 memory[3] = {7, 8, 9};
  HybridBuffer buffer;
  buffer.init(3, memory);
  readInMode<TypeParam>(buffer, this->skeleton().file(), g_skeleton);
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_EQ(buffer.getDataPtr(), memory);
  expectNumbers(buffer, 7, 8, 9);
}

TYPED_TEST(HybridBufferArchive, FillsForeignMemoryWithData)
{
  ipInt16 memory[5] = {7, 8, 9, 10, 11};
  HybridBuffer buffer;
  buffer.init(3, memory + 1);
  readInMode<TypeParam>(buffer, this->data(this->_bytes).file(), g_data);
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_EQ(bytesOf<ipInt16>({memory[0], memory[1], memory[2], memory[3], memory[4]}),
            bytesOf<ipInt16>({7, 1, -2, 300, 11}));
}

TYPED_TEST(HybridBufferArchive, TakesDataOfAnyTypeOfTheSameSizeInBytes)
{
  ipUInt8 memory[6] = {};
  HybridBuffer buffer;
  buffer.init(6, memory);
  readInMode<TypeParam>(buffer, this->data("abcdef").file(), g_data);
  EXPECT_EQ(contentsOf(buffer), "abcdef");
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_UInt8);
}

TYPED_TEST(HybridBufferArchive, HasNoDataForABufferThatIsNotInitialised)
{
  HybridBuffer buffer;
  readInMode<TypeParam>(buffer, this->versionOnly().file(), g_data);
  expectCleared(buffer);
}

TYPED_TEST(HybridBufferArchive, ClearsWhatWasNotInitialisedWhenItWasWritten)
{
  ipInt16 memory[3] = {7, 8, 9};
  for (const auto& mode : {g_full, g_skeleton})
  {
    HybridBuffer owner;
    own(owner, 1, 2, 3);
    readInMode<TypeParam>(owner, this->empty().file(), mode);
    expectCleared(owner);
    HybridBuffer view;
    view.init(3, memory);
    readInMode<TypeParam>(view, this->empty().file(), mode);
    expectCleared(view);
    EXPECT_EQ(memory[0], 7);
  }
}

TYPED_TEST(HybridBufferArchive, BringsBackWhatASharedPointerHeld)
{
  const HybridBufferPtr written = HybridBuffer::createSharedObject();
  own(*written, 1, -2, 300);
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("buffer", written); });
  boost::shared_ptr<BaseBuffer> read;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("buffer", read); });
  ASSERT_NE(dynamic_cast<HybridBuffer*>(read.get()), nullptr);
  expectNumbers(dynamic_cast<HybridBuffer&>(*read), 1, -2, 300);
}

// Archives that do not fit

TYPED_TEST(HybridBufferArchive, OfANewerVersionIsRefused)
{
  TypeParam archive;
  putVersion(archive, "orvel::HybridBuffer", 2);
  archive.boolean("bInit", false);
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  const auto failure = failureOfReading<ORVELSerializationException>(buffer, archive, g_full);
  EXPECT_EQ(failure.getMessage(),
            "Version 2 of class orvel::HybridBuffer is not supported, the highest supported version is 1");
  EXPECT_EQ(failure.getFile(), "ORVELBaseData/Buffer/HybridBuffer.cpp");
  expectNumbers(buffer, 1, 2, 3);
}

TYPED_TEST(HybridBufferArchive, OfATypeOfNoneIsRefusedAndChangesNothing)
{
  ipInt16 memory[3] = {7, 8, 9};
  const TypeParam archive = this->structureOf(3, 0, "eDT_None");
  for (const auto& mode : {g_full, g_skeleton})
  {
    HybridBuffer owner;
    own(owner, 1, 2, 3);
    const void* const block = owner.getDataPtr();
    owner.setSerializationMode(mode);
    expectTypeOfNoneRefused(
        [&] { readStart<TypeParam>(archive.file(), [&](BaseIArchive& input) { owner.read(input); }); });
    EXPECT_EQ(owner.getDataPtr(), block);
    expectNumbers(owner, 1, 2, 3);

    HybridBuffer view;
    view.init(3, memory);
    EXPECT_EQ(failureOfReading<ORVELBaseDataException>(view, archive, mode).getMessage(),
              "Invalid buffer type eDT_None");
    EXPECT_EQ(view.getDataPtr(), memory);
    expectNumbers(view, 7, 8, 9);

    HybridBuffer fresh;
    EXPECT_EQ(failureOfReading<ORVELBaseDataException>(fresh, archive, mode).getMessage(),
              "Invalid buffer type eDT_None");
    expectCleared(fresh);
  }
}

TYPED_TEST(HybridBufferArchive, OfAnUnknownTypeIsRefusedAndChangesNothing)
{
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  failureOfReading<ORVELSerializationException>(buffer, this->structureOf(3, 12, "eDT_Int128"), g_full);
  expectNumbers(buffer, 1, 2, 3);
}

TYPED_TEST(HybridBufferArchive, WithoutTheBlockThatItPromisesAllocatesNothing)
{
  const std::int64_t sizes[] = {100000, std::int64_t{1} << 40U, std::int64_t{1} << 60U};
  for (const std::int64_t size : sizes)
  {
    HybridBuffer buffer;
    own(buffer, 1, 2, 3);
    const std::size_t nbArrays = getNbArraysAllocated();
    const std::string message =
        failureOfReading<ORVELSerializationException>(buffer, this->structureOf(size, 4, "eDT_Int16"), g_full)
            .getMessage();
    EXPECT_NE(message.find("can't hold " + std::to_string(size) + " elements"), std::string::npos) << message;
    EXPECT_EQ(getNbArraysAllocated(), nbArrays);
    expectNumbers(buffer, 1, 2, 3);
  }
}

TYPED_TEST(HybridBufferArchive, OfASizeBeyond64BitsFindsNoMemory)
{
  // As numbers of 64 bits these would be 0 and 8 bytes.
  for (const std::int64_t size : {std::int64_t{1} << 61U, (std::int64_t{1} << 61U) + 1})
    for (const auto& mode : {g_full, g_skeleton})
    {
      TypeParam archive = this->structureOf(size, 11, "eDT_Real64");
      archive.block("12345678");
      HybridBuffer buffer;
      own(buffer, 1, 2, 3);
      buffer.setSerializationMode(mode);
      expectNoMemory(
          g_largest,
          [&] { readStart<TypeParam>(archive.file(), [&](BaseIArchive& input) { buffer.read(input); }); });
      expectCleared(buffer);
    }
}

TYPED_TEST(HybridBufferArchive, OfASkeletonThatNoMemoryHoldsFindsNone)
{
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  buffer.setSerializationMode(g_skeleton);
  expectNoMemory(std::int64_t{1} << 60U,
                 [&]
                 {
                   readStart<TypeParam>(this->structureOf(std::int64_t{1} << 59U, 4, "eDT_Int16").file(),
                                        [&](BaseIArchive& input) { buffer.read(input); });
                 });
  expectCleared(buffer);
}

TYPED_TEST(HybridBufferArchive, WithABlockOfAnotherSizeIsRefused)
{
  ipInt16 memory[3] = {7, 8, 9};
  for (const char* const bytes : {"abcd", "abcdefgh"})
  {
    HybridBuffer view;
    view.init(3, memory);
    failureOfReading<ORVELSerializationException>(view, this->data(bytes), g_data);
    expectNumbers(view, 7, 8, 9);
    EXPECT_EQ(view.getDataPtr(), memory);
  }
}

TYPED_TEST(HybridBufferArchive, IsRefusedWhereverItIsCutAndLeavesAViewInItsPlace)
{
  ipInt16 memory[3] = {};
  const auto begin = [&](HybridBuffer& buffer)
  {
    buffer.init(3, memory);
  };
  const auto check = [&](const HybridBuffer& buffer)
  {
    EXPECT_FALSE(buffer.isBufferOwn());
    EXPECT_EQ(buffer.getDataPtr(), memory);
    EXPECT_EQ(buffer.getSize(), 3U);
    EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int16);
  };
  expectRefusedWhereverItIsCut<HybridBuffer, TypeParam>(this->full(this->_bytes).file(), begin, check);
}

TYPED_TEST(HybridBufferArchive, ThatEndsWithinTheStructureChangesNothing)
{
  TypeParam archive;
  putVersion(archive, "orvel::HybridBuffer", 1);
  archive.boolean("bInit", true);
  archive.integer("size", 5);
  HybridBuffer buffer;
  own(buffer, 1, 2, 3);
  failureOfReading<ORVELSerializationException>(buffer, archive, g_full);
  expectNumbers(buffer, 1, 2, 3);
}

TYPED_TEST(HybridBufferArchive, CannotHoldAViewThatNoMemoryHolds)
{
  ipReal64 memory[2] = {7, 8};
  HybridBuffer view;
  view.init((ipUInt64{1} << 61U) + 1, memory); // as a number of 64 bits 8 bytes
  for (const auto& mode : {g_full, g_data})
  {
    view.setSerializationMode(mode);
    expectNoMemory(g_largest,
                   [&] { fileOf<TypeParam>([&](BaseOArchive& archive) { view.write(archive); }); });
  }
  expectNoMemory(g_largest,
                 [&] {
                   readStart<TypeParam>(this->data("12345678").file(),
                                        [&](BaseIArchive& input) { view.read(input); });
                 });
  EXPECT_EQ(memory[0], 7);
  EXPECT_EQ(fileOfMode<TypeParam>(view, g_skeleton),
            this->structureOf((std::int64_t{1} << 61U) + 1, 11, "eDT_Real64").file());
}

TYPED_TEST(HybridBufferArchive, LeavesAClearedBufferWhenThereIsNoMemory)
{
  ipInt16 memory[2] = {7, 8};
  for (const bool isOwner : {true, false})
  {
    HybridBuffer buffer;
    if (isOwner)
      buffer.init(2, eDataType::eDT_Int16);
    else
      buffer.init(2, memory);
    const std::string file = this->full(this->_bytes).file();
    expectNoMemory(6,
                   [&]
                   {
                     readStart<TypeParam>(file,
                                          [&](BaseIArchive& input)
                                          {
                                            failArrayAllocationAfter(0);
                                            buffer.read(input);
                                          });
                   });
    failNoAllocation();
    expectCleared(buffer);
  }
}

TYPED_TEST(HybridBufferArchive, LeaksNothingWhereverThereIsNoMemory)
{
  HybridBuffer source;
  own(source, 1, -2, 300);
  const std::string file = fileOfMode<TypeParam>(source, g_full);
  const auto readAll = [&]
  {
    HybridBuffer buffer;
    buffer.init(1, eDataType::eDT_Int8);
    readFile<TypeParam>(file, [&](BaseIArchive& archive) { buffer.read(archive); });
    EXPECT_EQ(contentsOf(buffer), this->_bytes);
  };
  failInTurn(readAll, [](OutOfMemory) {}); // makes what is made once
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  EXPECT_GT(failInTurn(readAll, [&](OutOfMemory) { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); }), 2U);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

} // namespace
