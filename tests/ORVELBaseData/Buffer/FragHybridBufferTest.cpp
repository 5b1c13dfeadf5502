#include "ORVELBaseData/Buffer/FragHybridBuffer.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "BufferSubjects.h"
#include "BufferTesting.h"
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

/// The bytes of the fragments in their order, with '|' between them.
std::string textOf(const FragHybridBuffer& buffer)
{
  std::string text;
  for (ipUInt64 i = 0; i < buffer.getNbFragments(); ++i)
    text += (i == 0 ? "" : "|") + std::string(static_cast<const char*>(buffer.getDataPtr(i)),
                                              buffer.getFragmentsSize() * buffer.getBufferBaseSize());
  return text;
}

/// An owner of fragments with these letters, all as many.
void own(FragHybridBuffer& buffer, const std::vector<std::string>& letters)
{
  const ipUInt64 size = letters.front().size();
  buffer.init(eDataType::eDT_UInt8, letters.size(), size);
  for (ipUInt64 i = 0; i < letters.size(); ++i)
    std::memcpy(buffer.getDataPtr(i), letters[i].data(), size);
}

/// Three lines of somebody else's that do not touch each other: the first two letters of each are the
/// fragments.
struct Lines
{
  char letters[3][5] = {"abxx", "cdxx", "efxx"};

  void* operator[](int line) { return letters[line]; }
  BufferPtrColl list() { return {letters[0], letters[1], letters[2]}; }
  void lendTo(FragHybridBuffer& buffer) { buffer.init(eDataType::eDT_UInt8, list(), 2); }
  std::string text() const { return std::string(letters[0]) + letters[1] + letters[2]; }
};

/// Checks that the fragments follow each other in the own block, in order.
void expectPlainOrder(const FragHybridBuffer& buffer)
{
  EXPECT_TRUE(buffer.isBufferOwn());
  for (ipUInt64 i = 0; i < buffer.getNbFragments(); ++i)
    EXPECT_EQ(buffer.getDataPtr(i),
              blockOf(buffer) + i * buffer.getFragmentsSize() * buffer.getBufferBaseSize());
}

// Ownership

TEST(FragHybridBuffer, OwnsFragmentsThatFollowEachOther)
{
  FragHybridBuffer buffer;
  buffer.init(eDataType::eDT_Int16, 3, 4);
  EXPECT_EQ(getLatestArraySize(), 24U);
  EXPECT_EQ(buffer.getSize(), 12U);
  EXPECT_EQ(buffer.getNbFragments(), 3U);
  EXPECT_EQ(buffer.getFragmentsSize(), 4U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Int16);
  EXPECT_EQ(buffer.getDataPtr(1), static_cast<char*>(buffer.getDataPtr(0)) + 8);
  EXPECT_EQ(buffer.getDataPtr(2), static_cast<char*>(buffer.getDataPtr(1)) + 8);
  EXPECT_EQ(buffer.getDataPtr(0), blockOf(buffer));
  EXPECT_TRUE(buffer.isBufferOwn());
}

TEST(FragHybridBuffer, OwnsABlockWithoutFragmentsOrElements)
{
  FragHybridBuffer buffer;
  buffer.init(eDataType::eDT_Real64, 0, 4);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_TRUE(buffer.isBufferOwn());
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getNbFragments(), 0U);
  EXPECT_EQ(buffer.getFragmentsSize(), 4U);
  buffer.init(eDataType::eDT_Real64, 3, 0);
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getNbFragments(), 3U);
  expectPlainOrder(buffer);
}

TEST(FragHybridBuffer, TakesTheCallersFragments)
{
  Lines lines;
  FragHybridBuffer buffer;
  lines.lendTo(buffer);
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_TRUE(buffer.getBufferPtrColl() == lines.list());
  EXPECT_EQ(buffer.getFragmentsSize(), 2U);
  EXPECT_EQ(buffer.getSize(), 6U);
  EXPECT_EQ(textOf(buffer), "ab|cd|ef");
}

TEST(FragHybridBuffer, IsInitialisedWithAnEmptyList)
{
  FragHybridBuffer buffer;
  buffer.init(eDataType::eDT_Int32, BufferPtrColl(), 4);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getFragmentsSize(), 4U);
  EXPECT_FALSE(buffer.isBufferOwn());
}

TEST(FragHybridBuffer, TellsWhetherItOwnsInAnyState)
{
  Lines lines;
  FragHybridBuffer buffer;
  EXPECT_FALSE(buffer.isBufferOwn());
  buffer.init(eDataType::eDT_UInt8, 3, 2);
  EXPECT_TRUE(buffer.isBufferOwn());
  buffer.clear();
  EXPECT_FALSE(buffer.isBufferOwn());
  lines.lendTo(buffer);
  EXPECT_FALSE(buffer.isBufferOwn());
  buffer.clear();
  EXPECT_FALSE(buffer.isBufferOwn());
}

TEST(FragHybridBuffer, FreesItsBlockAtOnceWhenItTakesTheCallersFragments)
{
  Lines lines;
  FragHybridBuffer buffer;
  own(buffer, {"uv", "wx", "yz"});
  const BufferPtrColl list = lines.list();
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  buffer.init(eDataType::eDT_UInt8, list, 2);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks - 1);
  EXPECT_EQ(blockOf(buffer), nullptr);
  EXPECT_EQ(textOf(buffer), "ab|cd|ef");
}

TEST(FragHybridBuffer, LosesItsBlockWhenItIsGivenItsOwnFragments)
{
  FragHybridBuffer buffer;
  own(buffer, {"ab", "cd", "ef"});
  const auto second = reinterpret_cast<std::uintptr_t>(buffer.getDataPtr(1));
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  buffer.init(eDataType::eDT_UInt8, buffer.getBufferPtrColl(), 2);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks - 1); // freed first: nothing is left behind the addresses
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_EQ(buffer.getNbFragments(), 3U);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.getDataPtr(1)), second);
}

TEST(FragHybridBuffer, TakesEmptyBracesForANumberOfFragments)
{
  FragHybridBuffer buffer;
  buffer.init(eDataType::eDT_Int32, {}, 4); // not for an empty list
  EXPECT_EQ(buffer.getNbFragments(), 0U);
  EXPECT_TRUE(buffer.isBufferOwn());
}

TEST(FragHybridBuffer, FreesNothingOfSomebodyElse)
{
  Lines lines; // of no allocation: freeing them would end the program
  {
    FragHybridBuffer buffer;
    lines.lendTo(buffer);
    buffer.clear();
    expectCleared<FragSubject>(buffer);
    lines.lendTo(buffer);
  }
  EXPECT_EQ(lines.text(), "abxxcdxxefxx");
}

TEST(FragHybridBuffer, KeepsTheBlockOfAnOwnerThatFitsToTheByte)
{
  FragHybridBuffer buffer;
  own(buffer, {"abcdef", "ghijkl"});
  const char* const block = blockOf(buffer);
  buffer.init(eDataType::eDT_Int16, 3, 2);
  EXPECT_EQ(blockOf(buffer), block);
  expectPlainOrder(buffer);
  EXPECT_EQ(textOf(buffer), "abcd|efgh|ijkl");
  EXPECT_EQ(buffer.getSize(), 6U);
}

TEST(FragHybridBuffer, LaysItsFragmentsOutAnewInTheBlockThatItKeeps)
{
  FragHybridBuffer buffer;
  own(buffer, {"ab", "cd", "ef"});
  buffer.rollUpFragments();
  EXPECT_EQ(textOf(buffer), "cd|ef|ab");
  buffer.init(eDataType::eDT_UInt8, 3, 2);
  EXPECT_EQ(textOf(buffer), "ab|cd|ef");
}

TEST(FragHybridBuffer, TakesABlockOfItsOwnInPlaceOfTheCallersFragments)
{
  Lines lines;
  FragHybridBuffer buffer;
  lines.lendTo(buffer);
  own(buffer, {"uv", "wx", "yz"});
  expectPlainOrder(buffer);
  EXPECT_EQ(lines.text(), "abxxcdxxefxx");
}

TEST(FragHybridBuffer, KeepsItsBlockWhenItRolls)
{
  FragHybridBuffer buffer;
  own(buffer, {"ab", "cd", "ef"});
  const char* const block = blockOf(buffer);
  const void* const second = buffer.getDataPtr(1);
  buffer.rollUpFragments();
  EXPECT_EQ(buffer.getDataPtr(0), second);
  EXPECT_EQ(textOf(buffer), "cd|ef|ab");
  EXPECT_EQ(blockOf(buffer), block);
  EXPECT_EQ(std::string(block, 6), "abcdef");
  buffer.rollDownFragments();
  EXPECT_EQ(textOf(buffer), "ab|cd|ef");
}

// setDataPtr

TEST(FragHybridBuffer, ReplacesTheStartOfAFragmentOfTheCallers)
{
  Lines lines;
  char other[] = "uv";
  FragHybridBuffer buffer;
  lines.lendTo(buffer);
  buffer.setDataPtr(1, other);
  EXPECT_EQ(buffer.getDataPtr(1), other);
  EXPECT_EQ(textOf(buffer), "ab|uv|ef");
  EXPECT_EQ(lines.text(), "abxxcdxxefxx");
}

TEST(FragHybridBuffer, RefusesToReplaceAFragmentOfItsOwn)
{
  char other[] = "uv";
  FragHybridBuffer buffer;
  own(buffer, {"ab", "cd"});
  for (const ipUInt64 fragment : {0U, 2U}) // who owns them is asked before the index is looked at
    expectRaised<ORVELBaseDataException>([&] { buffer.setDataPtr(fragment, other); },
                                         {"Can't set fragment data pointer on own fragment hybrid buffer",
                                          "void orvel::FragHybridBuffer::setDataPtr(orvel::ipUInt64, void*)",
                                          "ORVELBaseData/Buffer/FragHybridBuffer.cpp", "",
                                          "eOwnFragmentDataPtr"});
  EXPECT_EQ(textOf(buffer), "ab|cd");
  expectPlainOrder(buffer);
}

TEST(FragHybridBuffer, HidesTheOperationOfItsBase)
{
  char other[] = "uv";
  FragHybridBuffer buffer;
  own(buffer, {"ab", "cd"});
  BaseFragBuffer& base = buffer;
  base.setDataPtr(0, other); // not virtual: the base does not ask who owns the fragments
  EXPECT_EQ(textOf(buffer), "uv|cd");
  EXPECT_TRUE(buffer.isBufferOwn());
}

TEST(FragHybridBuffer, ReplacesNoFragmentThatItDoesNotHave)
{
  Lines lines;
  FragHybridBuffer buffer;
  expectNotInitialised([&] { buffer.setDataPtr(0, lines[0]); });
  lines.lendTo(buffer);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { buffer.setDataPtr(3, lines[0]); }),
            "Invalid fragment index 3 for buffer with 3 fragments");
  EXPECT_EQ(textOf(buffer), "ab|cd|ef");
}

// Failures of init

TEST(FragHybridBuffer, HasTheNewFragmentsAlreadyWhenItRefusesATypeOfNoneForThem)
{
  Lines lines;
  FragHybridBuffer buffer;
  own(buffer, {"uv", "wx", "yz"});
  expectTypeOfNoneRefused([&] { buffer.init(eDataType::eDT_None, {lines[2], lines[0]}, 2); });
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_EQ(textOf(buffer), "ef|ab");
  EXPECT_EQ(buffer.getSize(), 6U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_UInt8);
}

TEST(FragHybridBuffer, TakesADeepCopyAfterItRefusedATypeOfNone)
{
  FragHybridBuffer source;
  own(source, {"ab", "cd"});
  FragHybridBuffer target;
  expectTypeOfNoneRefused([&] { target.init(eDataType::eDT_None, 3, 2); });
  target = source;
  EXPECT_TRUE(target.isBufferOwn());
  EXPECT_NE(target.getDataPtr(0), source.getDataPtr(0));
  EXPECT_EQ(textOf(target), "ab|cd");
}

TEST(FragHybridBuffer, HasNoMemoryForSizesBeyond64Bits)
{
  struct Sizes
  {
    ipUInt64 nbFragments;
    ipUInt64 fragmentsSize;
  };
  const ipUInt64 one = 1;
  const Sizes rows[] = {
      {one << 32U, one << 29U}, // 2^64 bytes, as a number of 64 bits 0
      {1, one << 61U},          // the same in one fragment
      {one << 61U, 1},          // the same in the most fragments
      {(one << 61U) + 1, 1},    // as a number of 64 bits 8
      {2, (one << 61U) + 1},    // each too large
      {g_largest, g_largest},
  };
  for (const Sizes& row : rows)
  {
    FragHybridBuffer buffer;
    own(buffer, {"ab", "cd"});
    expectNoMemory(g_largest,
                   [&] { buffer.init(eDataType::eDT_Real64, row.nbFragments, row.fragmentsSize); });
    expectCleared<FragSubject>(buffer);
  }
}

TEST(FragHybridBuffer, HasNoMemoryForMoreFragmentsThanAnyListHolds)
{
  struct Row
  {
    ipUInt64 nbFragments;
    const char* size; // of their list
  };
  const Row rows[] = {{ipUInt64{1} << 44U, "140737488355328"},
                      {ipUInt64{1} << 60U, "9223372036854775808"},
                      {ipUInt64{1} << 61U, "18446744073709551615"}};
  for (const Row& row : rows)
  {
    FragHybridBuffer buffer;
    own(buffer, {"ab", "cd"});
    const auto failure =
        failureOf<ORVELBaseDataException>([&] { buffer.init(eDataType::eDT_UInt8, row.nbFragments, 0); });
    EXPECT_EQ(failure.getMessage(), std::string("Memory allocation failed with requested size ") + row.size);
    EXPECT_NE(failure.getCause(), nullptr);
    expectCleared<FragSubject>(buffer);
  }
}

TEST(FragHybridBuffer, IsClearedWhereverThereIsNoMemoryForItsBlockOrItsList)
{
  for (const bool isKept : {false, true}) // whether the block fits to the byte
  {
    FragHybridBuffer buffer;
    const auto init = [&]
    {
      buffer.init(eDataType::eDT_UInt8, isKept ? 4 : 5, 1);
    };
    const auto startAnew = [&]
    {
      buffer.~FragHybridBuffer();
      new (&buffer) FragHybridBuffer;
      own(buffer, {"ab", "cd"});
    };
    startAnew();
    std::size_t nbRaised = 0;
    const std::size_t nbFailures = failInTurn(init,
                                              [&](OutOfMemory thrown)
                                              {
                                                nbRaised += thrown == OutOfMemory::raised ? 1 : 0;
                                                expectCleared<FragSubject>(buffer);
                                                startAnew();
                                              });
    EXPECT_EQ(nbFailures, isKept ? 2U : 3U); // the block, the list made and the list kept
    EXPECT_EQ(nbRaised, nbFailures);
    expectPlainOrder(buffer);
  }
}

TEST(FragHybridBuffer, KeepsTheCauseWhenItsListFindsNoMemory)
{
  for (const std::size_t nbAllowed : {1U, 2U}) // behind the block
  {
    FragHybridBuffer buffer;
    expectNoMemory(24,
                   [&]
                   {
                     failAllocationAfter(nbAllowed);
                     buffer.init(eDataType::eDT_UInt8, 3, 2);
                   });
    failNoAllocation();
    expectCleared<FragSubject>(buffer);
  }
}

TEST(FragHybridBuffer, IsClearedWhenTheListOfTheCallersFragmentsFindsNoMemory)
{
  Lines lines;
  const BufferPtrColl list = lines.list();
  FragHybridBuffer buffer;
  own(buffer, {"uv"});
  expectNoMemory(24,
                 [&]
                 {
                   failAllocationAfter(0);
                   buffer.init(eDataType::eDT_UInt8, list, 2);
                 });
  failNoAllocation();
  expectCleared<FragSubject>(buffer); // its block was freed before
}

// Copies

TEST(FragHybridBuffer, IsDuplicatedToAViewOnItsFragments)
{
  FragHybridBuffer buffer;
  own(buffer, {"ab", "cd", "ef"});
  EXPECT_TRUE(buffer.hasCopySupport());
  const std::unique_ptr<BaseDynamicObject> duplicate(buffer.duplicate());
  const DynamicObjectPtr shared = buffer.duplicateShared();
  const FragHybridBuffer constructed(buffer);
  for (const auto* copy : {dynamic_cast<const FragHybridBuffer*>(duplicate.get()),
                           dynamic_cast<const FragHybridBuffer*>(shared.get()), &constructed})
  {
    ASSERT_NE(copy, nullptr);
    EXPECT_FALSE(copy->isBufferOwn());
    EXPECT_TRUE(copy->getBufferPtrColl() == buffer.getBufferPtrColl());
    EXPECT_TRUE(copy->getDataType() == eDataType::eDT_UInt8);
    EXPECT_EQ(copy->getFragmentsSize(), 2U);
    EXPECT_EQ(copy->getSize(), 6U);
  }
  EXPECT_TRUE(buffer.isBufferOwn());
  static_cast<char*>(buffer.getDataPtr(1))[0] = 'x';
  EXPECT_EQ(textOf(constructed), "ab|xd|ef");
}

TEST(FragHybridBuffer, IsDuplicatedWhileItIsNotInitialised)
{
  const FragHybridBuffer buffer;
  expectCleared<FragSubject>(FragHybridBuffer(buffer));
  const std::unique_ptr<BaseDynamicObject> duplicate(buffer.duplicate());
  expectCleared<FragSubject>(dynamic_cast<FragHybridBuffer&>(*duplicate));
  expectCleared<FragSubject>(dynamic_cast<FragHybridBuffer&>(*buffer.duplicateShared()));
}

TEST(FragHybridBuffer, SharesTheFragmentsOfTheSourceUnlessItOwnsABlock)
{
  Lines lines;
  Lines others;
  FragHybridBuffer owner;
  own(owner, {"ab", "cd", "ef"});
  FragHybridBuffer view;
  lines.lendTo(view);
  for (const FragHybridBuffer* source : {&owner, &view})
    for (const bool isFresh : {true, false})
    {
      FragHybridBuffer target;
      if (!isFresh)
        others.lendTo(target);
      EXPECT_EQ(&(target = *source), &target);
      EXPECT_FALSE(target.isBufferOwn());
      EXPECT_TRUE(target.getBufferPtrColl() == source->getBufferPtrColl());
      EXPECT_EQ(textOf(target), "ab|cd|ef");
    }
}

TEST(FragHybridBuffer, TakesTheFragmentsOfARolledSourceInItsOrder)
{
  FragHybridBuffer source;
  own(source, {"ab", "cd", "ef"});
  source.rollUpFragments();
  FragHybridBuffer target;
  own(target, {"uvwxyz"});
  target.rollUpFragments();
  const char* const block = blockOf(target);
  const std::size_t nbArrays = getNbArraysAllocated();
  target = source;
  EXPECT_EQ(getNbArraysAllocated(), nbArrays);
  EXPECT_EQ(blockOf(target), block); // it fits to the byte
  expectPlainOrder(target);
  EXPECT_EQ(textOf(target), "cd|ef|ab");
}

TEST(FragHybridBuffer, CountsWholeElementsInADeepCopy)
{
  ipInt32 numbers[2][2] = {{1, -2}, {3, 400000}};
  FragHybridBuffer source;
  source.init(eDataType::eDT_Int32, {numbers[1], numbers[0]}, 2);
  FragHybridBuffer target;
  own(target, {"a"});
  target = source;
  EXPECT_EQ(textOf(target), bytesOf<ipInt32>({3, 400000}) + "|" + bytesOf<ipInt32>({1, -2}));
}

TEST(FragHybridBuffer, IsCopiedWithoutFragmentsOrElements)
{
  FragHybridBuffer source;
  FragHybridBuffer target;
  own(target, {"ab"});
  source.init(eDataType::eDT_Int16, BufferPtrColl(), 4);
  target = source;
  EXPECT_TRUE(target.isBufferOwn());
  EXPECT_EQ(target.getNbFragments(), 0U);
  EXPECT_EQ(target.getFragmentsSize(), 4U);
  source.init(eDataType::eDT_Int16, BufferPtrColl(2, nullptr), 0);
  target = source;
  EXPECT_EQ(target.getNbFragments(), 2U);
  EXPECT_EQ(target.getSize(), 0U);
  expectPlainOrder(target);
}

TEST(FragHybridBuffer, GetsItsFragmentsBackIntoOrderInACopyOfItself)
{
  Lines lines;
  FragHybridBuffer owner;
  own(owner, {"ab", "cd", "ef"});
  const char* const block = blockOf(owner);
  owner.rollUpFragments();
  owner.copy(owner);
  EXPECT_EQ(blockOf(owner), block);
  expectPlainOrder(owner);
  EXPECT_EQ(textOf(owner), "ab|cd|ef");
  FragHybridBuffer view;
  lines.lendTo(view);
  view.rollUpFragments();
  view.copy(view);
  EXPECT_FALSE(view.isBufferOwn());
  EXPECT_EQ(textOf(view), "cd|ef|ab");
}

TEST(FragHybridBuffer, TakesACopyOfAViewOnItsOwnBlock)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    FragHybridBuffer owner;
    own(owner, {"ab", "cd", "ef"});
    FragHybridBuffer view;
    view.init(eDataType::eDT_UInt8, {owner.getDataPtr(2), owner.getDataPtr(0)}, 2);
    owner = view; // its block is of another size: the old one must not go before it has been copied
    expectPlainOrder(owner);
    EXPECT_EQ(textOf(owner), "ef|ab");
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(FragHybridBuffer, OverwritesOneFragmentAfterTheOtherInACopyOfAViewOnABlockThatItKeeps)
{
  FragHybridBuffer owner;
  own(owner, {"ab", "cd", "ef"});
  const char* const block = blockOf(owner);
  FragHybridBuffer view;
  view.init(eDataType::eDT_UInt8, {owner.getDataPtr(2), owner.getDataPtr(0), owner.getDataPtr(1)}, 2);
  owner = view;
  EXPECT_EQ(blockOf(owner), block);
  expectPlainOrder(owner);
  EXPECT_EQ(textOf(owner), "ef|ef|ef"); // the second is copied from the first, which was overwritten before
}

TEST(FragHybridBuffer, TakesACopyOfFragmentsThatLieAcrossItsOwn)
{
  FragHybridBuffer owner;
  own(owner, {"abcd", "efgh"});
  FragHybridBuffer view;
  char* const start = static_cast<char*>(owner.getDataPtr(0));
  view.init(eDataType::eDT_UInt8, {start + 1, start + 3}, 4);
  owner = view;
  EXPECT_EQ(textOf(owner), "bcde|eefg"); // the second begins with what the first has become
}

TEST(FragHybridBuffer, LeaksNothingWhereverThereIsNoMemoryForACopy)
{
  FragHybridBuffer source;
  own(source, {"ab", "cd", "ef"});
  for (const bool isOwner : {true, false})
  {
    const auto copy = [&]
    {
      FragHybridBuffer target;
      if (isOwner)
        target.init(eDataType::eDT_UInt8, 1, 1);
      target = source;
      const std::unique_ptr<BaseDynamicObject> duplicate(target.duplicate());
    };
    failInTurn(copy, [](OutOfMemory) {}); // makes what is made once
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    EXPECT_GE(failInTurn(copy, [&](OutOfMemory) { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); }), 3U);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
    EXPECT_EQ(textOf(source), "ab|cd|ef");
  }
}

// The frame

TEST(FragHybridBuffer, HasItsKindAndPointers)
{
  EXPECT_TRUE(FragHybridBuffer().getBufferType() == eBufferType::eBT_FragHybrid);
  EXPECT_EQ(FragHybridBuffer().getBufferType().getValue(), 4U);
  static_assert(std::is_same_v<FragHybridBufferPtr, boost::shared_ptr<FragHybridBuffer>>);
  static_assert(std::is_same_v<FragHybridBufferConstPtr, boost::shared_ptr<const FragHybridBuffer>>);
}

// Archives

constexpr auto g_full = eSklSrzMode::eSSM_Full;
constexpr auto g_skeleton = eSklSrzMode::eSSM_Skeleton;
constexpr auto g_data = eSklSrzMode::eSSM_Data;

template <class HandWritten>
class FragHybridBufferArchive : public testing::Test
{
protected:
  static HandWritten versionOnly()
  {
    HandWritten archive;
    putVersion(archive, "orvel::FragHybridBuffer", 1);
    return archive;
  }

  /// The version record and the structure.
  static HandWritten structureOf(std::int64_t nbFragments, std::int64_t fragmentsSize,
                                 std::int64_t typeNumber = 3, const std::string& typeName = "eDT_UInt8")
  {
    HandWritten archive = versionOnly();
    archive.boolean("bInit", true);
    archive.enumeration("dataType", typeNumber, typeName);
    archive.integer("nbFragments", nbFragments);
    archive.integer("fragmentsSize", fragmentsSize);
    return archive;
  }

  static HandWritten withBlocks(HandWritten archive, const std::vector<std::string>& blocks)
  {
    for (const std::string& block : blocks)
      archive.block(block);
    return archive;
  }

  static HandWritten full() { return withBlocks(structureOf(3, 2), {"ab", "cd", "ef"}); }
  static HandWritten data() { return withBlocks(versionOnly(), {"ab", "cd", "ef"}); }
};

TYPED_TEST_SUITE(FragHybridBufferArchive, Formats, );

TYPED_TEST(FragHybridBufferArchive, HoldsAnOwnerAndAViewAlike)
{
  Lines lines;
  FragHybridBuffer owner;
  own(owner, {"ab", "cd", "ef"});
  FragHybridBuffer view;
  lines.lendTo(view);
  for (const FragHybridBuffer* buffer : {&owner, &view})
  {
    EXPECT_EQ(fileOfMode<TypeParam>(*buffer, g_full), this->full().file());
    EXPECT_EQ(fileOfMode<TypeParam>(*buffer, g_skeleton), this->structureOf(3, 2).file());
    EXPECT_EQ(fileOfMode<TypeParam>(*buffer, g_data), this->data().file());
  }
}

TYPED_TEST(FragHybridBufferArchive, HoldsNoBlockWithoutElementsOrFragments)
{
  FragHybridBuffer buffer;
  buffer.init(eDataType::eDT_UInt8, 3, 0);
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_full), this->structureOf(3, 0).file());
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_data), this->versionOnly().file());
  const std::int64_t sizes[] = {4, std::int64_t{1} << 61U}; // no fragment is too large where there is none
  for (const std::int64_t size : sizes)
  {
    buffer.init(eDataType::eDT_Real64, 0, static_cast<ipUInt64>(size));
    const TypeParam archive = this->structureOf(0, size, 11, "eDT_Real64");
    EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_full), archive.file());
    FragHybridBuffer read;
    readInMode<TypeParam>(read, archive.file(), g_full);
    EXPECT_TRUE(read.isBufferOwn());
    EXPECT_EQ(read.getNbFragments(), 0U);
    EXPECT_EQ(read.getFragmentsSize(), static_cast<ipUInt64>(size));
  }
}

TYPED_TEST(FragHybridBufferArchive, BringsBackFragmentsWithoutElements)
{
  FragHybridBuffer buffer;
  readInMode<TypeParam>(buffer, this->structureOf(3, 0).file(), g_full);
  EXPECT_EQ(buffer.getNbFragments(), 3U);
  EXPECT_EQ(buffer.getFragmentsSize(), 0U);
  expectPlainOrder(buffer);
}

TYPED_TEST(FragHybridBufferArchive, HoldsARolledOwnerInTheRolledOrder)
{
  FragHybridBuffer buffer;
  own(buffer, {"ab", "cd", "ef"});
  buffer.rollUpFragments();
  const TypeParam archive = this->withBlocks(this->structureOf(3, 2), {"cd", "ef", "ab"});
  EXPECT_EQ(fileOfMode<TypeParam>(buffer, g_full), archive.file());
  FragHybridBuffer read;
  readInMode<TypeParam>(read, archive.file(), g_full);
  expectPlainOrder(read);
  EXPECT_EQ(textOf(read), "cd|ef|ab");
  readInMode<TypeParam>(buffer, archive.file(), g_full); // the block fits, its fragments are laid out anew
  expectPlainOrder(buffer);
  EXPECT_EQ(textOf(buffer), "cd|ef|ab");
}

TYPED_TEST(FragHybridBufferArchive, MakesAnOwnerOfAViewOfTheSameSizesAndType)
{
  for (const auto& mode : {g_full, g_skeleton})
  {
    Lines lines;
    std::memcpy(lines[0], "uv", 2);
    FragHybridBuffer buffer;
    lines.lendTo(buffer);
    readInMode<TypeParam>(buffer, (mode == g_full ? this->full() : this->structureOf(3, 2)).file(), mode);
    expectPlainOrder(buffer);
    EXPECT_EQ(lines.text(), "uvxxcdxxefxx");
  }
}

TYPED_TEST(FragHybridBufferArchive, FillsForeignFragmentsWithData)
{
  Lines lines;
  for (int line = 0; line < 3; ++line)
    std::memcpy(lines[line], "....", 4);
  FragHybridBuffer buffer;
  lines.lendTo(buffer);
  readInMode<TypeParam>(buffer, this->data().file(), g_data);
  EXPECT_FALSE(buffer.isBufferOwn());
  EXPECT_EQ(lines.text(), "ab..cd..ef..");
}

TYPED_TEST(FragHybridBufferArchive, FillsRolledFragmentsInTheirOrderWithData)
{
  FragHybridBuffer owner;
  own(owner, {"..", "..", ".."});
  owner.rollUpFragments();
  readInMode<TypeParam>(owner, this->data().file(), g_data);
  EXPECT_EQ(textOf(owner), "ab|cd|ef");
  EXPECT_EQ(std::string(blockOf(owner), 6), "efabcd");

  Lines lines;
  FragHybridBuffer view;
  lines.lendTo(view);
  view.rollDownFragments();
  readInMode<TypeParam>(view, this->data().file(), g_data);
  EXPECT_EQ(textOf(view), "ab|cd|ef");
  EXPECT_EQ(lines.text(), "cdxxefxxabxx");
}

TYPED_TEST(FragHybridBufferArchive, BringsBackWhatASharedPointerHeld)
{
  const FragHybridBufferPtr written = FragHybridBuffer::createSharedObject();
  own(*written, {"ab", "cd", "ef"});
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("buffer", written); });
  boost::shared_ptr<BaseBuffer> read;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("buffer", read); });
  ASSERT_NE(dynamic_cast<FragHybridBuffer*>(read.get()), nullptr);
  EXPECT_EQ(textOf(dynamic_cast<FragHybridBuffer&>(*read)), "ab|cd|ef");
}

// Archives that do not fit

TYPED_TEST(FragHybridBufferArchive, WithoutTheBlocksThatItPromisesAllocatesNothing)
{
  const std::int64_t one = 1;
  const std::int64_t sizes[][2] = {{100000, 2}, {one << 40U, 4}, {one << 62U, 1}, {1, one << 62U}};
  for (const auto& row : sizes)
  {
    FragHybridBuffer buffer;
    own(buffer, {"ab"});
    const std::size_t nbArrays = getNbArraysAllocated();
    const std::string message =
        failureOfReading<ORVELSerializationException>(buffer, this->structureOf(row[0], row[1]), g_full)
            .getMessage();
    EXPECT_NE(message.find("can't hold " + std::to_string(row[0]) + " elements"), std::string::npos)
        << message;
    EXPECT_EQ(getNbArraysAllocated(), nbArrays);
    EXPECT_EQ(buffer.getSize(), 2U);
    EXPECT_EQ(textOf(buffer), "ab");
  }
}

constexpr ipUInt64 g_mostEmptyFragments = 8388608; // in one archive: their lists take 64 MiB

TYPED_TEST(FragHybridBufferArchive, BringsBackManyEmptyFragments)
{
  for (const bool isUntrusted : {false, true})
    for (const ipUInt64 nbFragments : {ipUInt64{4535}, ipUInt64{4536}, g_mostEmptyFragments})
    {
      FragHybridBuffer buffer;
      buffer.init(eDataType::eDT_Int8, BufferPtrColl(nbFragments, nullptr), 0);
      const std::string file = fileOfMode<TypeParam>(buffer, g_full);
      FragHybridBuffer read;
      readFile<TypeParam>(file,
                          [&](BaseIArchive& archive)
                          {
                            archive.setUntrusted(isUntrusted);
                            EXPECT_TRUE(read.read(archive));
                          });
      EXPECT_EQ(read.getNbFragments(), nbFragments);
      EXPECT_EQ(read.getFragmentsSize(), 0U);
      EXPECT_EQ(read.getDataPtr(nbFragments - 1), blockOf(read));
    }
}

TYPED_TEST(FragHybridBufferArchive, BringsBackManyBuffersOfEmptyFragments)
{
  constexpr ipUInt64 nbBuffers = 64;
  FragHybridBuffer buffer;
  buffer.init(eDataType::eDT_Real64, 10000, 0);
  const auto writeAll = [&](BaseOArchive& archive)
  {
    for (ipUInt64 i = 0; i < nbBuffers; ++i)
      EXPECT_TRUE(buffer.write(archive));
  };
  for (const bool isUntrusted : {false, true})
    readFile<TypeParam>(fileOf<TypeParam>(writeAll),
                        [&](BaseIArchive& archive)
                        {
                          archive.setUntrusted(isUntrusted);
                          for (ipUInt64 i = 0; i < nbBuffers; ++i)
                          {
                            FragHybridBuffer read;
                            EXPECT_TRUE(read.read(archive));
                            EXPECT_EQ(read.getNbFragments(), 10000U);
                          }
                        });
}

constexpr const char* g_tooManyEmptyFragments =
    ": more than 67108864 bytes of memory that the archive does not fill";

TYPED_TEST(FragHybridBufferArchive, RefusesOnWritingTheEmptyFragmentsThatItWouldRefuseOnReading)
{
  FragHybridBuffer buffer;
  buffer.init(eDataType::eDT_Int8, BufferPtrColl(g_mostEmptyFragments + 1, nullptr), 0);
  FragHybridBuffer half;
  half.init(eDataType::eDT_Int8, BufferPtrColl(g_mostEmptyFragments / 2, nullptr), 0);
  FragHybridBuffer one;
  one.init(eDataType::eDT_Int8, 1, 0);
  std::ostringstream stream;
  typename TypeParam::OArchive archive(stream);
  const std::string message = messageOf<ORVELSerializationException>([&] { buffer.write(archive); });
  EXPECT_NE(message.find(g_tooManyEmptyFragments), std::string::npos) << message;
  EXPECT_TRUE(archive.isFailed());

  typename TypeParam::OArchive another(stream);
  EXPECT_TRUE(half.write(another));
  EXPECT_TRUE(half.write(another)); // all of them together count
  EXPECT_THROW(one.write(another), ORVELSerializationException);
  EXPECT_TRUE(another.isFailed());
}

TYPED_TEST(FragHybridBufferArchive, OfMoreEmptyFragmentsThanItMayHaveAllocatesNothing)
{
  for (const std::int64_t nbFragments :
       {static_cast<std::int64_t>(g_mostEmptyFragments + 1), std::int64_t{1} << 60U, std::int64_t{1} << 62U})
  {
    FragHybridBuffer buffer;
    own(buffer, {"ab"});
    const TypeParam archive = this->structureOf(nbFragments, 0);
    const std::size_t nbBytes = getAllocatedBytes();
    const std::string message =
        failureOfReading<ORVELSerializationException>(buffer, archive, g_full).getMessage();
    EXPECT_NE(message.find(g_tooManyEmptyFragments), std::string::npos) << message;
    EXPECT_LT(getAllocatedBytes() - nbBytes, 1000000U); // the archive and the failure
    EXPECT_EQ(buffer.getSize(), 2U);
    EXPECT_EQ(textOf(buffer), "ab");
  }
}

TYPED_TEST(FragHybridBufferArchive, CountsEmptyFragmentsOnlyWhereNoBlocksFillThem)
{
  FragHybridBuffer empty;
  empty.init(eDataType::eDT_Int8, 3, 0);
  FragHybridBuffer none;
  none.init(eDataType::eDT_Int8, 0, 3);
  FragHybridBuffer full;
  own(full, {"ab", "cd", "ef"});
  const auto moveAll = [&](auto& archive, const auto move)
  {
    archive.setLimits({archive.getLimits().maxDepth, archive.getLimits().maxWork, 23});
    move(none, g_full);
    move(full, g_full);
    move(empty, g_skeleton);
    move(empty, g_data);
    EXPECT_THROW(move(empty, g_full), ORVELSerializationException); // 24 bytes
    EXPECT_TRUE(archive.isFailed());
  };
  const auto write = [](BaseOArchive& archive, const FragHybridBuffer& buffer, const eSklSrzMode& mode)
  {
    buffer.setSerializationMode(mode);
    buffer.write(archive);
  };
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  moveAll(output,
          [&](const FragHybridBuffer& buffer, const eSklSrzMode& mode) { write(output, buffer, mode); });

  const std::string file = fileOf<TypeParam>(
      [&](BaseOArchive& archive)
      {
        write(archive, none, g_full);
        write(archive, full, g_full);
        write(archive, empty, g_skeleton);
        write(archive, empty, g_data);
        write(archive, empty, g_full);
      });
  readStart<TypeParam>(file,
                       [&](BaseIArchive& archive)
                       {
                         moveAll(archive,
                                 [&](FragHybridBuffer& buffer, const eSklSrzMode& mode)
                                 {
                                   buffer.setSerializationMode(mode);
                                   buffer.read(archive);
                                 });
                       });
}

TYPED_TEST(FragHybridBufferArchive, OfASkeletonOfMoreEmptyFragmentsThanAnyListHoldsFindsNoMemory)
{
  FragHybridBuffer buffer;
  own(buffer, {"ab"});
  const auto failure = failureOfReading<ORVELBaseDataException>(
      buffer, this->structureOf(std::int64_t{1} << 60U, 0), g_skeleton);
  EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 9223372036854775808");
  EXPECT_NE(failure.getCause(), nullptr);
  expectCleared<FragSubject>(buffer);
}

TYPED_TEST(FragHybridBufferArchive, OfASizeBeyond64BitsFindsNoMemory)
{
  const std::int64_t one = 1;
  // As numbers of 64 bits these would be 0, 0, 0 and 8 bytes.
  const std::int64_t sizes[][2] = {
      {one << 32U, one << 29U}, {1, one << 61U}, {one << 61U, 1}, {1, (one << 61U) + 1}};
  for (const auto& row : sizes)
    for (const auto& mode : {g_full, g_skeleton})
    {
      const TypeParam archive =
          this->withBlocks(this->structureOf(row[0], row[1], 11, "eDT_Real64"), {"12345678"});
      FragHybridBuffer buffer;
      own(buffer, {"ab"});
      buffer.setSerializationMode(mode);
      expectNoMemory(
          g_largest,
          [&] { readStart<TypeParam>(archive.file(), [&](BaseIArchive& input) { buffer.read(input); }); });
      expectCleared<FragSubject>(buffer);
    }
}

TYPED_TEST(FragHybridBufferArchive, WithABlockOfAnotherSizeIsRefused)
{
  for (const char* const bytes : {"abc", "a"})
  {
    Lines lines;
    FragHybridBuffer view;
    lines.lendTo(view);
    const TypeParam archive = this->withBlocks(this->versionOnly(), {"uv", bytes, "yz"});
    failureOfReading<ORVELSerializationException>(view, archive, g_data);
    EXPECT_EQ(lines.text(), "uvxxcdxxefxx"); // what came before is there
    EXPECT_TRUE(view.getBufferPtrColl() == lines.list());
  }
}

TYPED_TEST(FragHybridBufferArchive, IsRefusedWhereverItIsCut)
{
  Lines lines;
  const auto begin = [&](FragHybridBuffer& buffer)
  {
    lines.lendTo(buffer);
  };
  const auto check = [](const FragHybridBuffer& buffer)
  {
    EXPECT_EQ(buffer.getSize(), 6U);
    if (buffer.isBufferOwn()) // the structure had come
      expectPlainOrder(buffer);
    else
      EXPECT_EQ(textOf(buffer), "ab|cd|ef");
  };
  expectRefusedWhereverItIsCut<FragHybridBuffer, TypeParam>(this->full().file(), begin, check);
  EXPECT_EQ(lines.text(), "abxxcdxxefxx");
}

} // namespace
