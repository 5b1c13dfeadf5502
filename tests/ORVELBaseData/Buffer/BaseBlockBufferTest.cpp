#include "ORVELBaseData/Buffer/BaseBlockBuffer.h"

#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "BufferTesting.h"

namespace
{

using namespace orvel;
using namespace orvel::test;

/// The least that a derived class supplies.
class PlainBlockBuffer : public BaseBlockBuffer
{
public:
  BaseDynamicObject* createNew() const override { return new PlainBlockBuffer; }
  DynamicObjectPtr createShared() const override { return DynamicObjectPtr(new PlainBlockBuffer); }
  eBufferType getBufferType() const override { return eBufferType::eBT_External; }

  using BaseBlockBuffer::initBase;
};

TEST(BaseBlockBuffer, AnswersTheAddressThatItWasInitialisedWith)
{
  ipInt16 memory[3] = {1, 2, 3};
  PlainBlockBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Int16, memory);
  const PlainBlockBuffer& constant = buffer;
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_EQ(constant.getDataPtr(), memory);
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int16);
  static_assert(std::is_same_v<decltype(buffer.getDataPtr()), void*>);
  static_assert(std::is_same_v<decltype(constant.getDataPtr()), const void*>);
  static_assert(std::is_same_v<decltype(buffer.getDataPtr(0)), void*>);
  static_assert(std::is_same_v<decltype(constant.getDataPtr(0)), const void*>);
}

TEST(BaseBlockBuffer, TakesANullAddress)
{
  PlainBlockBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Int16, nullptr);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(buffer.getDataPtr(0), nullptr);
}

TEST(BaseBlockBuffer, CountsAnIndexInElements)
{
  char memory[16] = {};
  const std::pair<eDataType, int> rows[] = {{eDataType::eDT_Bool, 2},
                                            {eDataType::eDT_Int16, 4}, // the data pointer plus 4 bytes
                                            {eDataType::eDT_Real32, 8},
                                            {eDataType::eDT_UInt64, 16}};
  for (const auto& row : rows)
  {
    PlainBlockBuffer buffer;
    buffer.initBase(2, row.first, memory);
    const PlainBlockBuffer& constant = buffer;
    EXPECT_EQ(buffer.getDataPtr(2), memory + row.second);
    EXPECT_EQ(constant.getDataPtr(2), memory + row.second);
    EXPECT_EQ(buffer.getDataPtr(0), memory);
  }
}

TEST(BaseBlockBuffer, DoesNotCompareAnIndexWithItsSize)
{
  char memory[8] = {};
  PlainBlockBuffer buffer;
  for (const ipUInt64 size : {0U, 1U})
  {
    buffer.initBase(size, eDataType::eDT_Int16, memory);
    EXPECT_EQ(buffer.getDataPtr(2), memory + 4);
    const auto far = reinterpret_cast<std::uintptr_t>(buffer.getDataPtr(1000000000000));
    EXPECT_EQ(far, reinterpret_cast<std::uintptr_t>(memory) + 2000000000000);
    // The largest index times 2 bytes wraps around: one element before the start.
    const auto before =
        reinterpret_cast<std::uintptr_t>(buffer.getDataPtr(std::numeric_limits<ipUInt64>::max()));
    EXPECT_EQ(before, reinterpret_cast<std::uintptr_t>(memory) - 2);
  }
}

TEST(BaseBlockBuffer, GivesItsStartForEveryIndexOfElementsOf0Bytes)
{
  char memory[1] = {};
  PlainBlockBuffer buffer;
  buffer.initBase(5, eDataType(ipUInt64{12}), memory);
  EXPECT_EQ(buffer.getDataPtr(4), memory);
}

TEST(BaseBlockBuffer, TakesNewValuesWhenItIsInitialisedAlready)
{
  char memory[2] = {};
  PlainBlockBuffer buffer;
  buffer.initBase(1, eDataType::eDT_Int8, memory);
  buffer.initBase(0, eDataType::eDT_Real64, memory + 1);
  EXPECT_EQ(buffer.getDataPtr(), memory + 1);
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getBufferBaseSize(), 8U);
}

TEST(BaseBlockBuffer, NeitherOwnsNorFreesItsBlock)
{
  ipInt16 memory[3] = {1, 2, 3}; // of no allocation: freeing it would end the program
  {
    PlainBlockBuffer buffer;
    buffer.initBase(3, eDataType::eDT_Int16, memory);
    buffer.clear();
    buffer.initBase(3, eDataType::eDT_Int16, memory);
  }
  EXPECT_EQ(memory[0], 1);
  EXPECT_EQ(memory[1], 2);
  EXPECT_EQ(memory[2], 3);
}

// Failures

void expectNoAnswer(PlainBlockBuffer& buffer)
{
  const char* const source = "ORVELBaseData/Buffer/BaseBlockBuffer.cpp";
  expectNotInitialised("void* orvel::BaseBlockBuffer::getDataPtr()", source, [&] { buffer.getDataPtr(); });
  expectNotInitialised("const void* orvel::BaseBlockBuffer::getDataPtr() const", source,
                       [&] { std::as_const(buffer).getDataPtr(); });
  // An index is counted in elements first.
  const char* const baseSource = "ORVELBaseData/Buffer/BaseBuffer.cpp";
  const char* const baseSize = "orvel::ipUInt32 orvel::BaseBuffer::getBufferBaseSize() const";
  expectNotInitialised(baseSize, baseSource, [&] { buffer.getDataPtr(0); });
  expectNotInitialised(baseSize, baseSource, [&] { std::as_const(buffer).getDataPtr(0); });
}

TEST(BaseBlockBuffer, RefusesToAnswerBeforeItIsInitialised)
{
  PlainBlockBuffer buffer;
  expectNoAnswer(buffer);
}

TEST(BaseBlockBuffer, RefusesToAnswerAfterItWasCleared)
{
  char memory[1] = {};
  PlainBlockBuffer buffer;
  buffer.initBase(1, eDataType::eDT_Int8, memory);
  buffer.clear();
  expectNoAnswer(buffer);
}

TEST(BaseBlockBuffer, HasTheNewAddressAlreadyWhenItRefusesATypeOfNone)
{
  char memory[8] = {};
  PlainBlockBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Int16, memory);
  expectTypeOfNoneRefused([&] { buffer.initBase(5, eDataType::eDT_None, memory + 1); });
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getDataPtr(), memory + 1);
  EXPECT_EQ(buffer.getDataPtr(1), memory + 3);
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int16);
  EXPECT_EQ(buffer.getMemorySize(), 6U);
}

TEST(BaseBlockBuffer, StaysNotInitialisedWhenItRefusesATypeOfNone)
{
  char memory[1] = {};
  PlainBlockBuffer buffer;
  EXPECT_THROW(buffer.initBase(1, eDataType::eDT_None, memory), ORVELBaseDataException);
  EXPECT_FALSE(buffer.isInitialized());
  expectNoAnswer(buffer);
}

// The frame

TEST(BaseBlockBuffer, CannotBeCopied)
{
  PlainBlockBuffer buffer;
  const PlainBlockBuffer other;
  expectCopyRefused(buffer, other, "orvel::BaseBlockBuffer", "ORVELBaseData/Buffer/BaseBlockBuffer.cpp");
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(BaseBlockBuffer, FilesNothingOfItsOwn)
{
  ipInt16 memory[2] = {1, 2};
  PlainBlockBuffer buffer;
  buffer.initBase(2, eDataType::eDT_Int16, memory);
  expectNothingIsStored(buffer,
                        [&]
                        {
                          EXPECT_EQ(buffer.getDataPtr(), memory);
                          EXPECT_EQ(buffer.getSize(), 2U);
                        });
}

} // namespace
