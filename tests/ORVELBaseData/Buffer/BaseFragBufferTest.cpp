#include "ORVELBaseData/Buffer/BaseFragBuffer.h"

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "BufferTesting.h"
#include <support/LayoutChecks.h>

ORVEL_TEST_EXPOSE(Fragments, &orvel::BaseFragBuffer::_fragments)
ORVEL_TEST_EXPOSE(FragmentsSize, &orvel::BaseFragBuffer::_fragmentsSize)

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

/// The least that a derived class supplies.
class PlainFragBuffer : public BaseFragBuffer
{
public:
  BaseDynamicObject* createNew() const override { return new PlainFragBuffer; }
  DynamicObjectPtr createShared() const override { return DynamicObjectPtr(new PlainFragBuffer); }
  eBufferType getBufferType() const override { return eBufferType::eBT_FragHybrid; }

  using BaseFragBuffer::initBase;

  const BufferPtrColl& getList() const { return this->*memberOf(Fragments()); }
};

/// Three lines of four numbers that do not touch each other.
struct Lines
{
  ipInt16 numbers[3][6] = {{0, 1, 2, 3}, {10, 11, 12, 13}, {20, 21, 22, 23}};

  void* operator[](int line) { return numbers[line]; }
  BufferPtrColl list() { return {numbers[0], numbers[1], numbers[2]}; }
};

void expectList(const PlainFragBuffer& buffer, const BufferPtrColl& list)
{
  EXPECT_TRUE(buffer.getBufferPtrColl() == list);
  ASSERT_EQ(buffer.getNbFragments(), list.size());
  for (ipUInt64 i = 0; i < list.size(); ++i)
    EXPECT_EQ(buffer.getDataPtr(i), list[i]) << "fragment " << i;
}

TEST(BaseFragBuffer, AnswersTheListThatItWasInitialisedWith)
{
  Lines lines;
  PlainFragBuffer buffer;
  EXPECT_FALSE(buffer.isInitialized());
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getNbFragments(), 3U);
  EXPECT_EQ(buffer.getFragmentsSize(), 4U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Int16);
  expectList(buffer, {lines[0], lines[1], lines[2]});
  static_assert(std::is_same_v<BufferPtrColl, std::vector<void*>>);
  static_assert(std::is_same_v<decltype(buffer.getBufferPtrColl()), const BufferPtrColl&>);
}

TEST(BaseFragBuffer, CountsTheElementsOfAllFragments)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  EXPECT_EQ(buffer.getSize(), 12U);
  EXPECT_EQ(buffer.getMemorySize(), 24U);
  buffer.initBase(eDataType::eDT_Int16, {lines[0], lines[2]}, 3);
  EXPECT_EQ(buffer.getSize(), 6U);
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 0);
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getNbFragments(), 3U);
}

TEST(BaseFragBuffer, IsInitialisedWithAnEmptyList)
{
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, BufferPtrColl(), 4);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getNbFragments(), 0U);
  EXPECT_EQ(buffer.getFragmentsSize(), 4U);
}

TEST(BaseFragBuffer, GivesThePlaceOfAnElementOfAFragment)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  const PlainFragBuffer& constant = buffer;
  EXPECT_EQ(buffer.getDataPtr(1, 2), &lines.numbers[1][2]);
  EXPECT_EQ(constant.getDataPtr(1, 2), &lines.numbers[1][2]);
  EXPECT_EQ(constant.getDataPtr(2), lines[2]);
  EXPECT_EQ(buffer.getDataPtr(2, 0), lines[2]);
  static_assert(std::is_same_v<decltype(buffer.getDataPtr(0)), void*>);
  static_assert(std::is_same_v<decltype(constant.getDataPtr(0)), const void*>);
  static_assert(std::is_same_v<decltype(buffer.getDataPtr(0, 0)), void*>);
  static_assert(std::is_same_v<decltype(constant.getDataPtr(0, 0)), const void*>);
}

TEST(BaseFragBuffer, DoesNotCompareAnOffsetWithTheFragmentsSize)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  EXPECT_EQ(buffer.getDataPtr(0, 4), &lines.numbers[0][4]);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.getDataPtr(0, 1000000000000)),
            reinterpret_cast<std::uintptr_t>(lines[0]) + 2000000000000);
  // 2^64 - 1 elements wrap around the address space: one element before the start.
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(std::as_const(buffer).getDataPtr(1, g_largest)),
            reinterpret_cast<std::uintptr_t>(lines[1]) - 2);
}

TEST(BaseFragBuffer, ReplacesTheStartOfOneFragment)
{
  Lines lines;
  ipInt16 other[4] = {};
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  buffer.setDataPtr(1, other);
  expectList(buffer, {lines[0], other, lines[2]});
  EXPECT_EQ(buffer.getSize(), 12U);
  buffer.setDataPtr(2, nullptr);
  expectList(buffer, {lines[0], other, nullptr});
}

// Rolls

TEST(BaseFragBuffer, RollsTheFirstFragmentToTheEnd)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  const void* const second = buffer.getDataPtr(1);
  buffer.rollUpFragments();
  EXPECT_EQ(buffer.getDataPtr(0), second);
  expectList(buffer, {lines[1], lines[2], lines[0]});
  buffer.rollUpFragments();
  expectList(buffer, {lines[2], lines[0], lines[1]});
}

TEST(BaseFragBuffer, RollsTheLastFragmentToTheFront)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  buffer.rollDownFragments();
  expectList(buffer, {lines[2], lines[0], lines[1]});
  buffer.rollDownFragments();
  expectList(buffer, {lines[1], lines[2], lines[0]});
}

TEST(BaseFragBuffer, RollsBackWhatItRolled)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  buffer.rollUpFragments();
  buffer.rollDownFragments();
  expectList(buffer, lines.list());
  buffer.rollDownFragments();
  buffer.rollUpFragments();
  expectList(buffer, lines.list());
}

TEST(BaseFragBuffer, MovesNoElementsWhenItRolls)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  buffer.rollUpFragments();
  buffer.rollUpFragments();
  buffer.rollDownFragments();
  for (int line = 0; line < 3; ++line)
    for (int i = 0; i < 4; ++i)
      EXPECT_EQ(lines.numbers[line][i], 10 * line + i);
}

TEST(BaseFragBuffer, HasNothingToRollWithoutASecondFragment)
{
  Lines lines;
  PlainFragBuffer buffer;
  for (const BufferPtrColl& list : {BufferPtrColl(), BufferPtrColl{lines[1]}})
  {
    buffer.initBase(eDataType::eDT_Int16, list, 4);
    buffer.rollUpFragments();
    expectList(buffer, list);
    buffer.rollDownFragments();
    expectList(buffer, list);
  }
}

// States

TEST(BaseFragBuffer, TakesItsOwnListAnew)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  const void* const* const storage = buffer.getBufferPtrColl().data();
  buffer.initBase(eDataType::eDT_UInt8, buffer.getBufferPtrColl(), 8);
  EXPECT_EQ(buffer.getBufferPtrColl().data(), storage);
  expectList(buffer, lines.list());
  EXPECT_EQ(buffer.getFragmentsSize(), 8U);
  EXPECT_EQ(buffer.getSize(), 24U);
}

TEST(BaseFragBuffer, EmptiesItsListAndKeepsTheMemoryOfTheListWhenItIsCleared)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  const std::size_t capacity = buffer.getList().capacity();
  EXPECT_GE(capacity, 3U);
  buffer.clear();
  EXPECT_TRUE(buffer.getList().empty());
  EXPECT_EQ(buffer.getList().capacity(), capacity);
  EXPECT_EQ(buffer.*memberOf(FragmentsSize()), 4U);
}

TEST(BaseFragBuffer, NeitherOwnsNorFreesItsFragments)
{
  Lines lines; // of no allocation: freeing them would end the program
  {
    PlainFragBuffer buffer;
    buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
    buffer.clear();
    buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  }
  EXPECT_EQ(lines.numbers[2][3], 23);
}

// Failures

void expectNoAnswer(PlainFragBuffer& buffer)
{
  const PlainFragBuffer& constant = buffer;
  const char* const source = "ORVELBaseData/Buffer/BaseFragBuffer.cpp";
  const char* const nbFragments = "orvel::ipUInt64 orvel::BaseFragBuffer::getNbFragments() const";
  expectNotInitialised(nbFragments, source, [&] { buffer.getNbFragments(); });
  expectNotInitialised("orvel::ipUInt64 orvel::BaseFragBuffer::getFragmentsSize() const", source,
                       [&] { buffer.getFragmentsSize(); });
  expectNotInitialised("const orvel::BufferPtrColl& orvel::BaseFragBuffer::getBufferPtrColl() const", source,
                       [&] { buffer.getBufferPtrColl(); });
  expectNotInitialised(nbFragments, source, [&] { buffer.getDataPtr(0); });
  expectNotInitialised(nbFragments, source, [&] { constant.getDataPtr(0); });
  expectNotInitialised(nbFragments, source, [&] { buffer.getDataPtr(0, 0); });
  expectNotInitialised(nbFragments, source, [&] { constant.getDataPtr(0, 0); });
  expectNotInitialised(nbFragments, source, [&] { buffer.setDataPtr(0, nullptr); });
  expectNotInitialised(nbFragments, source, [&] { buffer.rollUpFragments(); });
  expectNotInitialised(nbFragments, source, [&] { buffer.rollDownFragments(); });
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(BaseFragBuffer, RefusesToAnswerBeforeItIsInitialisedAndAfterItWasCleared)
{
  Lines lines;
  PlainFragBuffer fresh;
  PlainFragBuffer cleared;
  cleared.initBase(eDataType::eDT_Int16, lines.list(), 4);
  cleared.clear();
  expectNoAnswer(fresh);
  expectNoAnswer(cleared);
}

void expectNoFragment(PlainFragBuffer& buffer, ipUInt64 index, const std::string& message)
{
  const char* const file = "ORVELBaseData/Buffer/BaseFragBuffer.cpp";
  const char* const statement = "requireFragment";
  const std::string accessor = "orvel::BaseFragBuffer::getDataPtr(orvel::ipUInt64)";
  expectRaised<ORVELBaseDataException>([&] { buffer.getDataPtr(index); },
                                       {message, "void* " + accessor, file, "", statement});
  expectRaised<ORVELBaseDataException>([&] { std::as_const(buffer).getDataPtr(index); },
                                       {message, "const void* " + accessor + " const", file, "", statement});
  expectRaised<ORVELBaseDataException>([&] { buffer.getDataPtr(index, 0); },
                                       {message, "void* " + accessor, file, "", statement});
  expectRaised<ORVELBaseDataException>([&] { std::as_const(buffer).getDataPtr(index, 0); },
                                       {message, "const void* " + accessor + " const", file, "", statement});
  expectRaised<ORVELBaseDataException>(
      [&] { buffer.setDataPtr(index, nullptr); },
      {message, "void orvel::BaseFragBuffer::setDataPtr(orvel::ipUInt64, void*)", file, "", statement});
}

TEST(BaseFragBuffer, HasNoFragmentAtOrBehindTheirNumber)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  expectNoFragment(buffer, 3, "Invalid fragment index 3 for buffer with 3 fragments");
  expectNoFragment(buffer, 4, "Invalid fragment index 4 for buffer with 3 fragments");
  expectNoFragment(buffer, g_largest,
                   "Invalid fragment index 18446744073709551615 for buffer with 3 fragments");
  expectList(buffer, lines.list());
  buffer.initBase(eDataType::eDT_Int16, BufferPtrColl(), 4);
  expectNoFragment(buffer, 0, "Invalid fragment index 0 for buffer with 0 fragments");
}

TEST(BaseFragBuffer, HasTheNewListAndFragmentsSizeAlreadyWhenItRefusesATypeOfNone)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  expectTypeOfNoneRefused([&] { buffer.initBase(eDataType::eDT_None, {lines[2], lines[1]}, 9); });
  EXPECT_TRUE(buffer.isInitialized());
  expectList(buffer, {lines[2], lines[1]});
  EXPECT_EQ(buffer.getFragmentsSize(), 9U);
  EXPECT_EQ(buffer.getSize(), 12U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Int16);
}

TEST(BaseFragBuffer, StaysNotInitialisedWhenItRefusesATypeOfNone)
{
  Lines lines;
  PlainFragBuffer buffer;
  expectTypeOfNoneRefused([&] { buffer.initBase(eDataType::eDT_None, lines.list(), 4); });
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_TRUE(buffer.getList() == lines.list());
  EXPECT_EQ(buffer.*memberOf(FragmentsSize()), 4U);
}

TEST(BaseFragBuffer, IsClearedWhenItsListFindsNoMemory)
{
  Lines lines;
  const BufferPtrColl longer(5, lines[0]);
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  expectNoMemory(40,
                 [&]
                 {
                   failAllocationAfter(0);
                   buffer.initBase(eDataType::eDT_Int16, longer, 4);
                 });
  failNoAllocation();
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_TRUE(buffer.getList().empty());
}

// The frame

TEST(BaseFragBuffer, CannotBeCopied)
{
  PlainFragBuffer buffer;
  const PlainFragBuffer other;
  expectCopyRefused(buffer, other, "orvel::BaseFragBuffer", "ORVELBaseData/Buffer/BaseFragBuffer.cpp");
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(BaseFragBuffer, FilesNothingOfItsOwn)
{
  Lines lines;
  PlainFragBuffer buffer;
  buffer.initBase(eDataType::eDT_Int16, lines.list(), 4);
  expectNothingIsStored(buffer, [&] { expectList(buffer, lines.list()); });
}

} // namespace
