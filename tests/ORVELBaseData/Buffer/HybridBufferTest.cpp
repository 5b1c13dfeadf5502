#include "ORVELBaseData/Buffer/HybridBuffer.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "BufferSubjects.h"
#include "BufferTesting.h"
#include <ORVELSerialization/ItemOperators.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

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

// Ownership

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
  expectRaised<ORVELBaseDataException>(ask, {"Buffer should be initialized before used",
                                             "const void* orvel::BaseBlockBuffer::getDataPtr() const",
                                             "ORVELBaseData/Buffer/BaseBlockBuffer.cpp", "",
                                             "requireInitialized"});
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
    expectCleared<HybridSubject>(buffer);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
    buffer.init(3, memory);
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_EQ(memory[0], 1);
  EXPECT_EQ(memory[2], 3);
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
  expectCleared<HybridSubject>(buffer);
}

// Copies

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
    expectRaised<ORVELBaseDataException>(
        [&] { target.copy(*source); },
        {"Buffer should be initialized before used", "const void* orvel::BaseBlockBuffer::getDataPtr() const",
         "ORVELBaseData/Buffer/BaseBlockBuffer.cpp", "", "requireInitialized"});
    expectNotInitialised([&] { target = *source; });
    expectCleared<HybridSubject>(target);
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
  expectCleared<HybridSubject>(HybridBuffer(buffer));
  const std::unique_ptr<BaseDynamicObject> duplicate(buffer.duplicate());
  expectCleared<HybridSubject>(dynamic_cast<HybridBuffer&>(*duplicate));
  expectCleared<HybridSubject>(dynamic_cast<HybridBuffer&>(*buffer.duplicateShared()));
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
  expectCleared<HybridSubject>(owner);
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
  expectCleared<HybridSubject>(target);
}

// The frame

TEST(HybridBuffer, HasItsKindAndPointers)
{
  EXPECT_TRUE(HybridBuffer().getBufferType() == eBufferType::eBT_Hybrid);
  EXPECT_EQ(HybridBuffer().getBufferType().getValue(), 2U);
  static_assert(std::is_same_v<HybridBufferPtr, boost::shared_ptr<HybridBuffer>>);
  static_assert(std::is_same_v<HybridBufferConstPtr, boost::shared_ptr<const HybridBuffer>>);
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

  const std::string _bytes = bytesOf<ipInt16>({1, -2, 300});
};

TYPED_TEST_SUITE(HybridBufferArchive, Formats, );

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

} // namespace
