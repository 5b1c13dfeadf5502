#include "ORVELBaseData/Buffer/BaseBuffer.h"

#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "BufferTesting.h"
#include <ORVELBaseData/Buffer/BufferUtils.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// The least that a derived class supplies.
class PlainBuffer : public BaseBuffer
{
public:
  BaseDynamicObject* createNew() const override { return new PlainBuffer; }
  DynamicObjectPtr createShared() const override { return DynamicObjectPtr(new PlainBuffer); }
  eBufferType getBufferType() const override { return eBufferType::eBT_External; }

  using BaseBuffer::initBase;
};

/// Tells what it is when it is to release what it holds.
class WatchedBuffer : public PlainBuffer
{
public:
  std::vector<bool> initializedWhenCleared;

protected:
  void clearDerived() override { initializedWhenCleared.push_back(isInitialized()); }
};

TEST(BaseBuffer, IsBornNotInitialised)
{
  EXPECT_FALSE(PlainBuffer().isInitialized());
}

TEST(BaseBuffer, AnswersWhatItWasInitialisedWith)
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 7U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
  EXPECT_EQ(buffer.getBufferBaseSize(), 4U);
  EXPECT_EQ(buffer.getMemorySize(), 28U);
}

TEST(BaseBuffer, KnowsTheElementSizeOfEachType)
{
  const std::pair<eDataType, ipUInt32> rows[] = {
      {eDataType::eDT_Bool, 1U},   {eDataType::eDT_Int8, 1U},   {eDataType::eDT_UInt8, 1U},
      {eDataType::eDT_Int16, 2U},  {eDataType::eDT_UInt16, 2U}, {eDataType::eDT_Int32, 4U},
      {eDataType::eDT_UInt32, 4U}, {eDataType::eDT_Int64, 8U},  {eDataType::eDT_UInt64, 8U},
      {eDataType::eDT_Real32, 4U}, {eDataType::eDT_Real64, 8U}};
  for (const auto& row : rows)
  {
    PlainBuffer buffer;
    buffer.initBase(1, row.first);
    EXPECT_EQ(buffer.getBufferBaseSize(), row.second) << row.first.getText();
  }
}

TEST(BaseBuffer, HasNoElementSizeForNoneAndOneByteForABool)
{
  EXPECT_EQ(orvel::getBufferBaseSize(eDataType::eDT_None), 0U);
  EXPECT_EQ(orvel::getBufferBaseSize(eDataType::eDT_Bool), 1U);
}

TEST(BaseBuffer, IsInitialisedWithoutElements)
{
  PlainBuffer buffer;
  buffer.initBase(0, eDataType::eDT_UInt16);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(buffer.getMemorySize(), 0U);
}

TEST(BaseBuffer, Takes24BytesForThreeDoubles)
{
  PlainBuffer buffer;
  buffer.initBase(3, eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getMemorySize(), 24U);
}

TEST(BaseBuffer, CountsItsBytesIn64Bits)
{
  PlainBuffer buffer;
  buffer.initBase(ipUInt64{1} << 40U, eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getMemorySize(), ipUInt64{1} << 43U);
  buffer.initBase((ipUInt64{1} << 61U) + 3, eDataType::eDT_Real64); // 2^64 bytes and 24 more
  EXPECT_EQ(buffer.getMemorySize(), 24U);
}

TEST(BaseBuffer, TakesNewValuesWhenItIsInitialisedAlready)
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  buffer.initBase(2, eDataType::eDT_Bool);
  EXPECT_EQ(buffer.getSize(), 2U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Bool);
  EXPECT_EQ(buffer.getBufferBaseSize(), 1U);
}

TEST(BaseBuffer, MayBeInitialisedWithItsOwnType)
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  buffer.initBase(9, buffer.getDataType());
  EXPECT_EQ(buffer.getSize(), 9U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
}

TEST(BaseBuffer, TakesATypeThatIsNoEnumeratorAsElementsOf0Bytes)
{
  for (const ipUInt64 number : {ipUInt64{12}, ipUInt64{0x100000000}, ipUInt64{0x100000006}, ~ipUInt64{0}})
  {
    PlainBuffer buffer;
    buffer.initBase(7, eDataType(number));
    EXPECT_TRUE(buffer.isInitialized());
    EXPECT_EQ(buffer.getDataType().getValue(), number);
    EXPECT_EQ(buffer.getBufferBaseSize(), 0U) << number;
    EXPECT_EQ(buffer.getMemorySize(), 0U);
  }
}

// Failures

void expectNoAnswer(const PlainBuffer& buffer)
{
  const char* const source = "ORVELBaseData/Buffer/BaseBuffer.cpp";
  const char* const size = "orvel::ipUInt64 orvel::BaseBuffer::getSize() const";
  expectNotInitialised(size, source, [&] { buffer.getSize(); });
  expectNotInitialised("orvel::ipUInt32 orvel::BaseBuffer::getBufferBaseSize() const", source,
                       [&] { buffer.getBufferBaseSize(); });
  expectNotInitialised("const orvel::eDataType& orvel::BaseBuffer::getDataType() const", source,
                       [&] { buffer.getDataType(); });
  expectNotInitialised(size, source, [&] { buffer.getMemorySize(); }); // by way of the number of elements
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(BaseBuffer, RefusesToAnswerBeforeItIsInitialised)
{
  expectNoAnswer(PlainBuffer());
}

TEST(BaseBuffer, RaisesTheSameWithoutALog)
{
  const LogCapture log(getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { PlainBuffer().getSize(); }),
            "Buffer should be initialized before used");
  EXPECT_TRUE(log.getRecords().empty());
}

TEST(BaseBuffer, RefusesElementsOfNoType)
{
  PlainBuffer buffer;
  expectTypeOfNoneRefused([&] { buffer.initBase(5, eDataType::eDT_None); });
  EXPECT_FALSE(buffer.isInitialized());
}

TEST(BaseBuffer, KeepsItsValuesWhenItRefusesNewOnes)
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  EXPECT_THROW(buffer.initBase(5, eDataType::eDT_None), ORVELBaseDataException);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 7U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
  EXPECT_EQ(buffer.getBufferBaseSize(), 4U);
}

// Clearing

TEST(BaseBuffer, RefusesToAnswerAfterItWasCleared)
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  buffer.clear();
  EXPECT_FALSE(buffer.isInitialized());
  expectNoAnswer(buffer);
}

TEST(BaseBuffer, IsClearedInAnyState)
{
  PlainBuffer buffer;
  buffer.clear();
  EXPECT_FALSE(buffer.isInitialized());
  buffer.initBase(7, eDataType::eDT_Int32);
  buffer.clear();
  buffer.clear();
  EXPECT_FALSE(buffer.isInitialized());
  buffer.initBase(2, eDataType::eDT_Int8);
  EXPECT_EQ(buffer.getSize(), 2U);
}

TEST(BaseBuffer, IsNotInitialisedWhenItsDerivedPartIsCleared)
{
  WatchedBuffer buffer;
  buffer.clear();
  EXPECT_EQ(buffer.initializedWhenCleared, std::vector<bool>{false});
  buffer.initBase(7, eDataType::eDT_Int32);
  buffer.clear();
  EXPECT_EQ(buffer.initializedWhenCleared, std::vector<bool>({false, false}));
}

// The frame

template <class T, class = void>
constexpr bool g_hasVersion = false;
template <class T>
constexpr bool g_hasVersion<T, std::void_t<decltype(T::getVersion())>> = true;

TEST(BaseBuffer, IsARootThatCannotBeCreated)
{
  static_assert(std::is_abstract_v<BaseBuffer>);
  static_assert(std::is_base_of_v<BaseObjectWithSkeleton, BaseBuffer>);
  static_assert(!g_hasVersion<BaseBuffer>);
  const PlainBuffer buffer;
  EXPECT_EQ(buffer.getSerializationMode(), eSklSrzMode::eSSM_Full);
}

TEST(BaseBuffer, CannotBeCopied)
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  const PlainBuffer other;
  expectCopyRefused(buffer, other, "orvel::BaseBuffer", "ORVELBaseData/Buffer/BaseBuffer.cpp");
  EXPECT_EQ(buffer.getSize(), 7U);
}

TEST(BaseBuffer, FilesNothingOfItsOwn)
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  expectNothingIsStored(buffer,
                        [&]
                        {
                          EXPECT_EQ(buffer.getSize(), 7U);
                          EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
                        });
}

} // namespace
