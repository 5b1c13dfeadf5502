#include "ORVELBaseData/Buffer/ExternalBuffer.h"

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "BufferTesting.h"
#include <ORVELSerialization/ItemOperators.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

void expectView(const BaseDynamicObject& object, const void* memory)
{
  const auto& buffer = dynamic_cast<const ExternalBuffer&>(object);
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Int16);
  EXPECT_EQ(buffer.getMemorySize(), 6U);
}

TEST(ExternalBuffer, IsBornNotInitialised)
{
  const ExternalBuffer buffer;
  EXPECT_FALSE(buffer.isInitialized());
  expectNotInitialised([&] { buffer.getDataPtr(); });
}

TEST(ExternalBuffer, IsAViewOnTheCallersMemory)
{
  ipInt16 memory[3] = {1, 2, 3};
  ExternalBuffer buffer;
  buffer.init(3, eDataType::eDT_Int16, static_cast<void*>(memory));
  expectView(buffer, memory);
  EXPECT_EQ(buffer.getDataPtr(1), memory + 1);
  *static_cast<ipInt16*>(buffer.getDataPtr(2)) = 7;
  EXPECT_EQ(memory[2], 7);
  memory[0] = 5;
  EXPECT_EQ(*static_cast<const ipInt16*>(std::as_const(buffer).getDataPtr()), 5);
}

template <class T>
void expectTypeTold(const eDataType& dataType, ipUInt32 elementSize)
{
  T memory[2] = {};
  ExternalBuffer buffer;
  buffer.init(2, memory);
  EXPECT_EQ(buffer.getDataPtr(), memory);
  EXPECT_EQ(buffer.getSize(), 2U);
  EXPECT_TRUE(buffer.getDataType() == dataType) << dataType.getText();
  EXPECT_EQ(buffer.getBufferBaseSize(), elementSize);
}

TEST(ExternalBuffer, TakesTheTypeOfThePointer)
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

TEST(ExternalBuffer, TakesNoElementsAndNoMemory)
{
  ExternalBuffer buffer;
  buffer.init(0, eDataType::eDT_Real32, nullptr);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 0U);
  EXPECT_EQ(buffer.getDataPtr(), nullptr);
  EXPECT_TRUE(buffer.getDataType() == eDataType::eDT_Real32);
}

TEST(ExternalBuffer, TurnsToOtherMemory)
{
  ipReal64 old[1] = {};
  ipInt16 memory[3] = {};
  ExternalBuffer buffer;
  buffer.init(1, old);
  buffer.init(3, memory);
  expectView(buffer, memory);
}

TEST(ExternalBuffer, FreesAndChangesNoMemory)
{
  ipInt16 memory[3] = {1, 2, 3}; // of no allocation: freeing it would end the program
  {
    ExternalBuffer buffer;
    buffer.init(3, memory);
    buffer.clear();
    EXPECT_FALSE(buffer.isInitialized());
    buffer.init(3, memory);
  }
  EXPECT_EQ(memory[0], 1);
  EXPECT_EQ(memory[1], 2);
  EXPECT_EQ(memory[2], 3);
}

TEST(ExternalBuffer, AllocatesNothing)
{
  ipInt16 memory[3] = {};
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  ExternalBuffer buffer;
  buffer.init(3, memory);
  ExternalBuffer copy(buffer);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(ExternalBuffer, HasTheNewAddressWithTheOldSizeWhenItRefusesATypeOfNone)
{
  ipInt16 memory[4] = {};
  ExternalBuffer buffer;
  buffer.init(3, memory);
  expectTypeOfNoneRefused([&] { buffer.init(9, eDataType::eDT_None, memory + 1); });
  expectView(buffer, memory + 1);
}

TEST(ExternalBuffer, StaysNotInitialisedWhenItRefusesATypeOfNone)
{
  ipInt16 memory[1] = {};
  ExternalBuffer buffer;
  expectTypeOfNoneRefused([&] { buffer.init(1, eDataType::eDT_None, memory); });
  EXPECT_FALSE(buffer.isInitialized());
}

// Copies

TEST(ExternalBuffer, IsCopiedToASecondViewOnTheSameMemory)
{
  ipInt16 memory[3] = {1, 2, 3};
  ExternalBuffer buffer;
  buffer.init(3, memory);
  {
    ExternalBuffer copy;
    copy.copy(buffer);
    expectView(copy, memory);
    expectView(ExternalBuffer(buffer), memory);
    const std::unique_ptr<BaseDynamicObject> duplicate(buffer.duplicate());
    expectView(*duplicate, memory);
    expectView(*buffer.duplicateShared(), memory);
  }
  expectView(buffer, memory);
  EXPECT_EQ(memory[2], 3);
}

TEST(ExternalBuffer, IsAssignedWhateverItLookedAt)
{
  ipInt16 memory[3] = {};
  ipReal64 old[5] = {};
  ExternalBuffer buffer;
  buffer.init(3, memory);
  ExternalBuffer target;
  target.init(5, old);
  EXPECT_EQ(&(target = buffer), &target);
  expectView(target, memory);
  const ExternalBuffer& self = target;
  target = self;
  expectView(target, memory);
}

TEST(ExternalBuffer, CannotCopyFromABufferThatIsNotInitialised)
{
  ipInt16 memory[3] = {};
  const ExternalBuffer source;
  ExternalBuffer target;
  target.init(3, memory);
  expectRaised<ORVELBaseDataException>([&] { target.copy(source); },
                                       {"Buffer should be initialized before used",
                                        "orvel::ipUInt64 orvel::BaseBuffer::getSize() const",
                                        "ORVELBaseData/Buffer/BaseBuffer.cpp", "", "requireInitialized"});
  expectNotInitialised([&] { target = source; });
  expectView(target, memory);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  expectNotInitialised([&] { const ExternalBuffer copy(source); });
  expectNotInitialised([&] { source.duplicate(); });
  expectNotInitialised([&] { source.duplicateShared(); });
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

// The frame

TEST(ExternalBuffer, HasItsKindAndPointers)
{
  EXPECT_TRUE(ExternalBuffer().getBufferType() == eBufferType::eBT_External);
  EXPECT_EQ(ExternalBuffer().getBufferType().getValue(), 3U);
  static_assert(std::is_same_v<ExternalBufferPtr, boost::shared_ptr<ExternalBuffer>>);
  static_assert(std::is_same_v<ExternalBufferConstPtr, boost::shared_ptr<const ExternalBuffer>>);
}

template <class Class, class = void>
struct HasVersion : std::false_type
{
};

template <class Class>
struct HasVersion<Class, std::void_t<decltype(Class::getVersion())>> : std::true_type
{
};

TEST(ExternalBuffer, HasNoVersion)
{
  static_assert(!HasVersion<ExternalBuffer>::value);
}

// Archives

const eSklSrzMode g_modes[] = {eSklSrzMode::eSSM_Full, eSklSrzMode::eSSM_Skeleton, eSklSrzMode::eSSM_Data};

template <class HandWritten>
class ExternalBufferArchive : public testing::Test
{
};

TYPED_TEST_SUITE(ExternalBufferArchive, Formats, );

TYPED_TEST(ExternalBufferArchive, HoldsNothingOfIt)
{
  ipInt16 memory[3] = {1, 2, 3};
  ExternalBuffer buffer;
  for (const bool isInitialised : {false, true})
  {
    if (isInitialised)
      buffer.init(3, memory);
    for (const eSklSrzMode& mode : g_modes)
      EXPECT_EQ(fileOfMode<TypeParam>(buffer, mode), TypeParam().file());
  }
}

TYPED_TEST(ExternalBufferArchive, LeavesItAsItWas)
{
  ipInt16 memory[3] = {1, 2, 3};
  ExternalBuffer fresh;
  ExternalBuffer buffer;
  buffer.init(3, memory);
  for (const eSklSrzMode& mode : g_modes)
  {
    readInMode<TypeParam>(fresh, TypeParam().file(), mode);
    EXPECT_FALSE(fresh.isInitialized());
    readInMode<TypeParam>(buffer, TypeParam().file(), mode);
    expectView(buffer, memory);
    EXPECT_EQ(bytesOf<ipInt16>({memory[0], memory[1], memory[2]}), bytesOf<ipInt16>({1, 2, 3}));
  }
}

TYPED_TEST(ExternalBufferArchive, BringsBackAnEmptyOneByItsName)
{
  ipInt16 memory[3] = {1, 2, 3};
  const ExternalBufferPtr written = ExternalBuffer::createSharedObject();
  written->init(3, memory);
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("buffer", written); });
  boost::shared_ptr<BaseBuffer> read;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("buffer", read); });
  ASSERT_NE(dynamic_cast<ExternalBuffer*>(read.get()), nullptr);
  EXPECT_FALSE(read->isInitialized());
}

} // namespace
