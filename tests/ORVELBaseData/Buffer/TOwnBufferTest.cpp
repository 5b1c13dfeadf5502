#include "ORVELBaseData/Buffer/TOwnBuffer.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OwnedBlockTesting.h"
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// What a test needs of TOwnBuffer<T> without knowing T.
struct Operations
{
  const std::string& (*getTypeName)();
  ipUInt32 (*getVersion)();
  BaseOwnBuffer* (*createNewObject)();
  boost::shared_ptr<BaseOwnBuffer> (*createSharedObject)();
  BaseOwnBuffer* (*copyConstruct)(const BaseOwnBuffer& other);
  bool (*assign)(BaseOwnBuffer& target, const BaseOwnBuffer& source); // whether it returns the target
  bool (*isOfClass)(const BaseDynamicObject& object);
  void (*init)(BaseOwnBuffer& buffer, ipUInt64 size);
  std::size_t sizeInBytes;
};

template <class T>
Operations operationsOf()
{
  using Buffer = TOwnBuffer<T>;
  return {&Buffer::getTypeName,
          &Buffer::getVersion,
          [] { return static_cast<BaseOwnBuffer*>(Buffer::createNewObject()); },
          [] { return boost::shared_ptr<BaseOwnBuffer>(Buffer::createSharedObject()); },
          [](const BaseOwnBuffer& other)
          { return static_cast<BaseOwnBuffer*>(new Buffer(dynamic_cast<const Buffer&>(other))); },
          [](BaseOwnBuffer& target, const BaseOwnBuffer& source)
          {
            Buffer& typed = dynamic_cast<Buffer&>(target);
            return &(typed = dynamic_cast<const Buffer&>(source)) == &typed;
          },
          [](const BaseDynamicObject& object) { return dynamic_cast<const Buffer*>(&object) != nullptr; },
          [](BaseOwnBuffer& buffer, ipUInt64 size) { dynamic_cast<Buffer&>(buffer).init(size); },
          sizeof(Buffer)};
}

struct Row
{
  const char* name; // of the element type
  const char* className;
  eDataType::domain dataType;
  std::int64_t number; // of the data type
  const char* dataTypeText;
  ipUInt32 baseSize;
  Operations operations;
};

/// The eleven classes.
const Row g_rows[] = {
    {"Bool", "orvel::TOwnBuffer<orvel::ipBool>", eDataType::eDT_Bool, 1, "eDT_Bool", 1,
     operationsOf<ipBool>()},
    {"Int8", "orvel::TOwnBuffer<orvel::ipInt8>", eDataType::eDT_Int8, 2, "eDT_Int8", 1,
     operationsOf<ipInt8>()},
    {"UInt8", "orvel::TOwnBuffer<orvel::ipUInt8>", eDataType::eDT_UInt8, 3, "eDT_UInt8", 1,
     operationsOf<ipUInt8>()},
    {"Int16", "orvel::TOwnBuffer<orvel::ipInt16>", eDataType::eDT_Int16, 4, "eDT_Int16", 2,
     operationsOf<ipInt16>()},
    {"UInt16", "orvel::TOwnBuffer<orvel::ipUInt16>", eDataType::eDT_UInt16, 5, "eDT_UInt16", 2,
     operationsOf<ipUInt16>()},
    {"Int32", "orvel::TOwnBuffer<orvel::ipInt32>", eDataType::eDT_Int32, 6, "eDT_Int32", 4,
     operationsOf<ipInt32>()},
    {"UInt32", "orvel::TOwnBuffer<orvel::ipUInt32>", eDataType::eDT_UInt32, 7, "eDT_UInt32", 4,
     operationsOf<ipUInt32>()},
    {"Int64", "orvel::TOwnBuffer<orvel::ipInt64>", eDataType::eDT_Int64, 8, "eDT_Int64", 8,
     operationsOf<ipInt64>()},
    {"UInt64", "orvel::TOwnBuffer<orvel::ipUInt64>", eDataType::eDT_UInt64, 9, "eDT_UInt64", 8,
     operationsOf<ipUInt64>()},
    {"Real32", "orvel::TOwnBuffer<orvel::ipReal32>", eDataType::eDT_Real32, 10, "eDT_Real32", 4,
     operationsOf<ipReal32>()},
    {"Real64", "orvel::TOwnBuffer<orvel::ipReal64>", eDataType::eDT_Real64, 11, "eDT_Real64", 8,
     operationsOf<ipReal64>()},
};

class EachTOwnBuffer : public testing::TestWithParam<Row>
{
protected:
  /// A new buffer that is not initialised.
  static std::unique_ptr<BaseOwnBuffer> make()
  {
    return std::unique_ptr<BaseOwnBuffer>(GetParam().operations.createNewObject());
  }

  /// A new buffer with two elements of the bytes of sample().
  static std::unique_ptr<BaseOwnBuffer> makeSample()
  {
    auto buffer = make();
    GetParam().operations.init(*buffer, 2);
    setContents(*buffer, sample());
    return buffer;
  }

  static std::string sample() { return std::string("\1\0ABCDEFGHIJKLMN", 2 * GetParam().baseSize); }

  static void expectSample(const BaseDynamicObject& object, const BaseOwnBuffer& source)
  {
    ASSERT_TRUE(GetParam().operations.isOfClass(object));
    const auto& buffer = dynamic_cast<const BaseOwnBuffer&>(object);
    ASSERT_TRUE(buffer.isInitialized());
    EXPECT_EQ(buffer.getSize(), 2U);
    EXPECT_EQ(buffer.getDataType(), GetParam().dataType);
    EXPECT_EQ(contentsOf(buffer), sample());
    EXPECT_NE(buffer.getDataPtr(), source.getDataPtr());
  }
};

INSTANTIATE_TEST_SUITE_P(Types, EachTOwnBuffer, testing::ValuesIn(g_rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(EachTOwnBuffer, HasItsNameAndVersion)
{
  EXPECT_EQ(GetParam().operations.getTypeName(), GetParam().className);
  EXPECT_EQ(make()->getClassName(), GetParam().className);
  EXPECT_EQ(GetParam().operations.getVersion(), 1U);
}

TEST_P(EachTOwnBuffer, IsCreatedByItsNameAndByItsOwn)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  const auto example = makeSample();
  const std::unique_ptr<BaseDynamicObject> byName(factory.createNew(GetParam().className));
  const std::unique_ptr<BaseDynamicObject> byItself(example->createNew());
  const DynamicObjectPtr sharedByName = factory.createShared(GetParam().className);
  const DynamicObjectPtr sharedByItself = example->createShared();
  const DynamicObjectPtr sharedByClass = GetParam().operations.createSharedObject();
  for (const BaseDynamicObject* object :
       {byName.get(), byItself.get(), sharedByName.get(), sharedByItself.get(), sharedByClass.get()})
  {
    ASSERT_TRUE(GetParam().operations.isOfClass(*object));
    EXPECT_FALSE(dynamic_cast<const BaseOwnBuffer&>(*object).isInitialized());
  }
}

TEST_P(EachTOwnBuffer, IsAnOwnerInAnyState)
{
  EXPECT_EQ(make()->getBufferType(), eBufferType::eBT_Own);
  EXPECT_EQ(makeSample()->getBufferType(), eBufferType::eBT_Own);
}

TEST_P(EachTOwnBuffer, IsInitialisedWithElementsOfItsType)
{
  const auto buffer = make();
  GetParam().operations.init(*buffer, 5);
  EXPECT_EQ(getLatestArraySize(), 5U * GetParam().baseSize);
  EXPECT_EQ(buffer->getSize(), 5U);
  EXPECT_EQ(buffer->getDataType(), GetParam().dataType);
  EXPECT_STREQ(buffer->getDataType().getText(), GetParam().dataTypeText);
  EXPECT_EQ(buffer->getBufferBaseSize(), GetParam().baseSize);
  EXPECT_EQ(buffer->getMemorySize(), 5U * GetParam().baseSize);
  EXPECT_EQ(static_cast<char*>(buffer->getDataPtr(3)) - static_cast<char*>(buffer->getDataPtr()),
            3 * static_cast<int>(GetParam().baseSize));
  setContents(*buffer, std::string(5U * GetParam().baseSize, 'x')); // watched by the sanitizers
}

TEST_P(EachTOwnBuffer, KeepsItsBlockForAsManyElements)
{
  const auto buffer = makeSample();
  const void* const block = buffer->getDataPtr();
  GetParam().operations.init(*buffer, 2);
  EXPECT_EQ(buffer->getDataPtr(), block);
  EXPECT_EQ(contentsOf(*buffer), sample());
}

TEST_P(EachTOwnBuffer, KeepsItsTypeWhenItIsResized)
{
  const auto buffer = makeSample();
  buffer->resize(7);
  EXPECT_EQ(buffer->getSize(), 7U);
  EXPECT_EQ(buffer->getDataType(), GetParam().dataType);
  EXPECT_EQ(getLatestArraySize(), 7U * GetParam().baseSize);
}

TEST_P(EachTOwnBuffer, CannotBeResizedBeforeItIsInitialised)
{
  const auto buffer = make();
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { buffer->resize(7); }),
            "Buffer should be initialized before used");
}

TEST_P(EachTOwnBuffer, IsNotInitialisedWithoutMemory)
{
  const auto buffer = makeSample();
  failArrayAllocationAfter(0);
  const auto failure = failureOf<ORVELBaseDataException>([&] { GetParam().operations.init(*buffer, 1000); });
  failNoAllocation();
  EXPECT_EQ(failure.getMessage(),
            "Memory allocation failed with requested size " + std::to_string(1000 * GetParam().baseSize));
  EXPECT_TRUE(isCausedByBadAlloc(failure));
  EXPECT_FALSE(buffer->isInitialized());
}

TEST_P(EachTOwnBuffer, CannotHaveTheLargestSize)
{
  const auto buffer = makeSample();
  const auto failure = failureOf<ORVELBaseDataException>(
      [&] { GetParam().operations.init(*buffer, std::numeric_limits<ipUInt64>::max()); });
  EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 18446744073709551615");
  EXPECT_TRUE(isCausedByBadAlloc(failure));
  EXPECT_FALSE(buffer->isInitialized());
}

TEST_P(EachTOwnBuffer, IsCopiedDeeplyInEachWay)
{
  const auto source = makeSample();
  EXPECT_TRUE(source->hasCopySupport());
  const auto copy = make();
  copy->copy(*source);
  const std::unique_ptr<BaseOwnBuffer> constructed(GetParam().operations.copyConstruct(*source));
  const auto assigned = make();
  EXPECT_TRUE(GetParam().operations.assign(*assigned, *source));
  const std::unique_ptr<BaseDynamicObject> duplicate(source->duplicate());
  const DynamicObjectPtr shared = source->duplicateShared();
  setContents(*source, std::string(2U * GetParam().baseSize, 'x'));
  expectSample(*copy, *source);
  expectSample(*constructed, *source);
  expectSample(*assigned, *source);
  expectSample(*duplicate, *source);
  expectSample(*shared, *source);
}

TEST_P(EachTOwnBuffer, TakesTheTypeOfWhatItIsCopiedFrom)
{
  TypedOwnBuffer source; // of another class, which nothing checks
  for (const auto type : {eDataType::eDT_Int16, eDataType::eDT_Real32})
  {
    source.init(3, type);
    setContents(source, std::string(source.getMemorySize(), 'x'));
    const auto buffer = makeSample();
    buffer->copy(source);
    EXPECT_EQ(buffer->getDataType(), type);
    EXPECT_EQ(buffer->getSize(), 3U);
    EXPECT_EQ(contentsOf(*buffer), contentsOf(source));
  }
}

TEST_P(EachTOwnBuffer, AddsNoMemberAndNoVirtualOperation)
{
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(*make()), 14U); // clearDerived is the last
  }
  EXPECT_EQ(GetParam().operations.sizeInBytes, sizeof(BaseOwnBuffer));
}

template <class HandWritten>
void expectArchive(const Row& row, const BaseOwnBuffer& buffer, const std::string& contents)
{
  HandWritten expected;
  putVersion(expected, "orvel::BaseOwnBuffer", 1);
  expected.boolean("bInit", true);
  expected.integer("size", 2);
  expected.enumeration("dataType", row.number, row.dataTypeText);
  expected.block(contents);
  putVersion(expected, row.className, 1);
  EXPECT_EQ(fileOf<HandWritten>([&](BaseOArchive& archive) { EXPECT_TRUE(buffer.write(archive)); }),
            expected.file());

  const std::unique_ptr<BaseOwnBuffer> other(row.operations.createNewObject());
  readFile<HandWritten>(expected.file(), [&](BaseIArchive& archive) { EXPECT_TRUE(other->read(archive)); });
  EXPECT_EQ(other->getSize(), 2U);
  EXPECT_EQ(other->getDataType(), row.dataType);
  EXPECT_EQ(contentsOf(*other), contents);
}

TEST_P(EachTOwnBuffer, IsFiledWithItsOwnVersionBehindTheData)
{
  expectArchive<HandWrittenXml>(GetParam(), *makeSample(), sample());
  expectArchive<HandWrittenBinary>(GetParam(), *makeSample(), sample());
}

template <class HandWritten>
std::string messageOfNewerVersion(const Row& row)
{
  HandWritten archive;
  putVersion(archive, "orvel::BaseOwnBuffer", 1);
  archive.boolean("bInit", false);
  putVersion(archive, row.className, 2);
  const std::unique_ptr<BaseOwnBuffer> buffer(row.operations.createNewObject());
  return messageOf<ORVELSerializationException>(
      [&] { readStart<HandWritten>(archive.file(), [&](BaseIArchive& input) { buffer->read(input); }); });
}

TEST_P(EachTOwnBuffer, RefusesANewerVersionOfItsOwn)
{
  const std::string expected = std::string("Version 2 of class ") + GetParam().className +
                               " is not supported, the highest supported version is 1";
  EXPECT_EQ(messageOfNewerVersion<HandWrittenXml>(GetParam()), expected);
  EXPECT_EQ(messageOfNewerVersion<HandWrittenBinary>(GetParam()), expected);
}

// Some types

TEST(TOwnBuffer, KeepsItsBlockWhenItTurnsIntoAnotherTypeOfTheSameBytes)
{
  class AnyType : public TOwnBuffer<ipInt32>
  {
  public:
    using BaseOwnBuffer::initBase;
  };
  AnyType buffer;
  buffer.init(10);
  const void* const block = buffer.getDataPtr();
  buffer.initBase(5, eDataType::eDT_Real64);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getSize(), 5U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Real64);
  buffer.init(10);
  EXPECT_EQ(buffer.getDataPtr(), block);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int32);
}

TEST(TOwnBuffer, StoresABoolInAByte)
{
  TOwnBuffer<ipBool> buffer;
  buffer.init(3);
  EXPECT_EQ(getLatestArraySize(), 3U);
  auto* const elements = static_cast<ipBool*>(buffer.getDataPtr());
  elements[0] = true;
  elements[1] = false;
  elements[2] = true;
  EXPECT_EQ(contentsOf(buffer), std::string("\1\0\1", 3));
  const TOwnBuffer<ipBool> copy(buffer);
  EXPECT_EQ(contentsOf(copy), std::string("\1\0\1", 3));
}

template <class HandWritten>
void expectStoredType()
{
  HandWritten archive;
  putVersion(archive, "orvel::BaseOwnBuffer", 1);
  archive.boolean("bInit", true);
  archive.integer("size", 2);
  archive.enumeration("dataType", 10, "eDT_Real32");
  archive.block("12345678");
  putVersion(archive, "orvel::TOwnBuffer<orvel::ipInt16>", 1);
  TOwnBuffer<ipInt16> buffer;
  readFile<HandWritten>(archive.file(), [&](BaseIArchive& input) { EXPECT_TRUE(buffer.read(input)); });
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Real32);
  EXPECT_EQ(buffer.getBufferBaseSize(), 4U);
  EXPECT_EQ(contentsOf(buffer), "12345678");
  buffer.init(2);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_Int16);
}

TEST(TOwnBuffer, AnswersWithTheTypeThatAnArchiveBrings)
{
  expectStoredType<HandWrittenXml>();
  expectStoredType<HandWrittenBinary>();
}

template <class HandWritten>
void expectOneBaseVersion()
{
  // The levels are versioned apart: the base's record is common to all classes, each leaf has its own.
  HandWritten expected;
  putVersion(expected, "orvel::BaseOwnBuffer", 1);
  expected.boolean("bInit", false);
  putVersion(expected, "orvel::TOwnBuffer<orvel::ipInt16>", 1);
  expected.boolean("bInit", false);
  putVersion(expected, "orvel::TOwnBuffer<orvel::ipInt8>", 1);
  expected.boolean("bInit", false);
  EXPECT_EQ(fileOf<HandWritten>(
                [](BaseOArchive& archive)
                {
                  TOwnBuffer<ipInt16>().write(archive);
                  TOwnBuffer<ipInt8>().write(archive);
                  TOwnBuffer<ipInt16>().write(archive);
                }),
            expected.file());
}

TEST(TOwnBuffer, SharesTheVersionOfItsBaseWithTheOtherTypes)
{
  expectOneBaseVersion<HandWrittenXml>();
  expectOneBaseVersion<HandWrittenBinary>();
}

} // namespace
