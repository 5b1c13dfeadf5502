#include "ORVELBaseData/Buffer/BaseBuffer.h"

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

ORVEL_TEST_EXPOSE(Size, &orvel::BaseBuffer::_size)
ORVEL_TEST_EXPOSE(DataType, &orvel::BaseBuffer::_dataType)
ORVEL_TEST_EXPOSE(BaseSize, &orvel::BaseBuffer::_baseSize)
ORVEL_TEST_EXPOSE(IsInitialized, &orvel::BaseBuffer::_isInitialized)

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

  static std::size_t placeOfClearDerived() { return vtableIndexOf(&PlainBuffer::clearDerived); }
};

/// Tells what it is when it is to release what it holds.
class WatchedBuffer : public PlainBuffer
{
public:
  std::vector<bool> initializedWhenCleared;

protected:
  void clearDerived() override { initializedWhenCleared.push_back(isInitialized()); }
};

const std::string g_notInitialized = "Buffer should be initialized before used";

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

struct Accessor
{
  const char* function; // of the failure, as g++ spells it
  const char* name;
  std::function<void(const PlainBuffer&)> call;
};

const Accessor g_accessors[] = {
    {"orvel::ipUInt64 orvel::BaseBuffer::getSize() const", "orvel::BaseBuffer::getSize(",
     [](const PlainBuffer& buffer)
     {
       buffer.getSize();
     }},
    {"orvel::ipUInt32 orvel::BaseBuffer::getBufferBaseSize() const", "orvel::BaseBuffer::getBufferBaseSize(",
     [](const PlainBuffer& buffer)
     {
       buffer.getBufferBaseSize();
     }},
    {"const orvel::eDataType& orvel::BaseBuffer::getDataType() const", "orvel::BaseBuffer::getDataType(",
     [](const PlainBuffer& buffer)
     {
       buffer.getDataType();
     }},
    // The size in bytes comes by way of the number of elements.
    {"orvel::ipUInt64 orvel::BaseBuffer::getSize() const", "orvel::BaseBuffer::getSize(",
     [](const PlainBuffer& buffer)
     {
       buffer.getMemorySize();
     }},
};

TEST(BaseBuffer, RefusesToAnswerBeforeItIsInitialised)
{
  const PlainBuffer buffer;
  for (const Accessor& accessor : g_accessors)
  {
    SCOPED_TRACE(accessor.function);
    const LogCapture log(getORVELBaseDataLogger());
    const auto failure = failureOf<ORVELBaseDataException>([&] { accessor.call(buffer); });
    EXPECT_EQ(failure.getMessage(), g_notInitialized);
#if !defined(__clang__)
    EXPECT_EQ(failure.getFunction(), accessor.function);
#else
    EXPECT_NE(failure.getFunction().find(accessor.name), std::string::npos);
#endif
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Buffer/BaseBuffer.cpp");
    EXPECT_NE(sourceLine(failure.getFile(), failure.getLine()).find("requireInitialized"), std::string::npos);
    EXPECT_EQ(failure.getCause(), nullptr);
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords()[0].message, g_notInitialized);
    EXPECT_EQ(log.getRecords()[0].level, log4cplus::ERROR_LOG_LEVEL);
    EXPECT_EQ(log.getRecords()[0].file, failure.getFile());
    EXPECT_EQ(log.getRecords()[0].line, static_cast<int>(failure.getLine()));
    EXPECT_FALSE(buffer.isInitialized());
  }
}

TEST(BaseBuffer, RaisesTheSameWithoutALog)
{
  const LogCapture log(getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { PlainBuffer().getSize(); }), g_notInitialized);
  EXPECT_TRUE(log.getRecords().empty());
}

TEST(BaseBuffer, RefusesElementsOfNoType)
{
  PlainBuffer buffer;
  const LogCapture log(getORVELBaseDataLogger());
  const auto failure = failureOf<ORVELBaseDataException>([&] { buffer.initBase(5, eDataType::eDT_None); });
  EXPECT_EQ(failure.getMessage(), "Invalid buffer type eDT_None");
#if !defined(__clang__)
  EXPECT_EQ(failure.getFunction(),
            "void orvel::BaseBuffer::initBase(orvel::ipUInt64, const orvel::eDataType&)");
#else
  EXPECT_NE(failure.getFunction().find("orvel::BaseBuffer::initBase("), std::string::npos);
#endif
  EXPECT_EQ(failure.getFile(), "ORVELBaseData/Buffer/BaseBuffer.cpp");
  ASSERT_EQ(log.getRecords().size(), 1U);
  EXPECT_EQ(log.getRecords()[0].message, "Invalid buffer type eDT_None");
  EXPECT_EQ(log.getRecords()[0].level, log4cplus::ERROR_LOG_LEVEL);
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
  for (const Accessor& accessor : g_accessors)
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { accessor.call(buffer); }), g_notInitialized);
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

TEST(BaseBuffer, HasItsNameAndNoVersion)
{
  EXPECT_EQ(BaseBuffer::getTypeName(), "orvel::BaseBuffer");
  EXPECT_EQ(PlainBuffer().getClassName(), "orvel::BaseBuffer"); // a derived class without a name of its own
}

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
  EXPECT_FALSE(buffer.hasCopySupport());
  const std::pair<const char*, std::function<void()>> attempts[] = {
      {"orvel::BaseBuffer::copy(",
       [&]
       {
         buffer.copy(other);
       }},
      {"orvel::BaseBuffer::duplicate(",
       [&]
       {
         buffer.duplicate();
       }},
      {"orvel::BaseBuffer::duplicateShared(",
       [&]
       {
         buffer.duplicateShared();
       }},
  };
  for (const auto& attempt : attempts)
  {
    SCOPED_TRACE(attempt.first);
    const LogCapture log(getORVELUtilLogger());
    const auto failure = failureOf<ORVELUtilException>(attempt.second);
    EXPECT_EQ(failure.getMessage(), "Class orvel::BaseBuffer doesn't support copy");
    EXPECT_NE(failure.getFunction().find(attempt.first), std::string::npos);
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Buffer/BaseBuffer.cpp");
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords()[0].message, failure.getMessage());
    EXPECT_EQ(buffer.getSize(), 7U);
  }
}

template <class HandWritten>
void expectNothingIsFiled()
{
  PlainBuffer buffer;
  buffer.initBase(7, eDataType::eDT_Int32);
  for (const auto mode : {eSklSrzMode::eSSM_Full, eSklSrzMode::eSSM_Skeleton, eSklSrzMode::eSSM_Data})
  {
    buffer.setSerializationMode(mode);
    const std::string file =
        fileOf<HandWritten>([&](BaseOArchive& archive) { EXPECT_TRUE(buffer.write(archive)); });
    EXPECT_EQ(file, HandWritten().file());
    readFile<HandWritten>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(buffer.read(archive)); });
    EXPECT_EQ(buffer.getSize(), 7U);
    EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
  }
}

TEST(BaseBuffer, FilesNothingOfItsOwn)
{
  expectNothingIsFiled<HandWrittenXml>();
  expectNothingIsFiled<HandWrittenBinary>();
}

TEST(BaseBuffer, HasItsOperationsAndMembersInTheirOrder)
{
  EXPECT_EQ(vtableIndexOf(&BaseBuffer::read), 11U);
  EXPECT_EQ(vtableIndexOf(&BaseBuffer::getBufferType), 12U);
  EXPECT_EQ(PlainBuffer::placeOfClearDerived(), 13U);
  EXPECT_THROW(vtableIndexOf(&BaseBuffer::clear), std::invalid_argument);
  EXPECT_EQ(offsetOf(memberOf(Size())), static_cast<std::ptrdiff_t>(sizeof(BaseObjectWithSkeleton)));
  EXPECT_EQ(offsetOf(memberOf(DataType())), offsetOf(memberOf(Size())) + 8);
  EXPECT_EQ(offsetOf(memberOf(BaseSize())), offsetOf(memberOf(Size())) + 16);
  EXPECT_EQ(offsetOf(memberOf(IsInitialized())), offsetOf(memberOf(Size())) + 20);
  EXPECT_EQ(sizeof(BaseBuffer), sizeof(BaseObjectWithSkeleton) + 24);
}

} // namespace
