#include "ORVELBaseData/Buffer/BaseOwnBuffer.h"

#include <cstddef>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "BufferSubjects.h"
#include "BufferTesting.h"
#include <ORVELUtil/ORVELUtilException.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// The least that a derived class supplies.
class PlainOwnBuffer : public BaseOwnBuffer
{
public:
  BaseDynamicObject* createNew() const override { return new PlainOwnBuffer; }
  DynamicObjectPtr createShared() const override { return DynamicObjectPtr(new PlainOwnBuffer); }
  eBufferType getBufferType() const override { return eBufferType::eBT_Own; }

  using BaseOwnBuffer::initBase;
};

// Blocks

TEST(BaseOwnBuffer, OwnsABlockOf0BytesForATypeThatIsNoEnumerator)
{
  PlainOwnBuffer buffer;
  buffer.initBase(std::numeric_limits<ipUInt64>::max(), eDataType(ipUInt64{12}));
  EXPECT_EQ(getLatestArraySize(), 0U);
  EXPECT_TRUE(buffer.isInitialized());
  EXPECT_NE(buffer.getDataPtr(), nullptr);
  EXPECT_EQ(buffer.getBufferBaseSize(), 0U);
}

TEST(BaseOwnBuffer, AlignsItsBlockForEveryElementType)
{
  PlainOwnBuffer buffer;
  buffer.initBase(5, eDataType::eDT_Real64);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.getDataPtr()) % alignof(ipReal64), 0U);
}

// Resizing

TEST(BaseOwnBuffer, KeepsItsContentsWhenItIsResizedToItsSize)
{
  TypedOwnBuffer buffer;
  ownSixBytes<OwnSubject>(buffer);
  const void* const block = buffer.getDataPtr();
  buffer.resize(3);
  EXPECT_EQ(buffer.getDataPtr(), block);
  expectSixBytes<OwnSubject>(buffer);
}

TEST(BaseOwnBuffer, HasANewBlockWhenItIsResizedToAnotherSize)
{
  TypedOwnBuffer buffer;
  ownSixBytes<OwnSubject>(buffer);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  for (const ipUInt64 size : {4U, 2U, 0U})
  {
    const std::size_t nbArrays = getNbArraysAllocated();
    buffer.resize(size);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays + 1);
    EXPECT_EQ(getLatestArraySize(), 2 * size);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
    EXPECT_EQ(buffer.getSize(), size);
    EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
    expectOwner<OwnSubject>(buffer);
  }
}

TEST(BaseOwnBuffer, CannotBeResizedBeforeItIsInitialised)
{
  PlainOwnBuffer buffer;
  expectRaised<ORVELBaseDataException>([&] { buffer.resize(3); },
                                       {"Buffer should be initialized before used",
                                        "const orvel::eDataType& orvel::BaseBuffer::getDataType() const",
                                        "ORVELBaseData/Buffer/BaseBuffer.cpp"});
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(blockOf(buffer), nullptr);
}

TEST(BaseOwnBuffer, IsNotInitialisedWhenThereIsNoMemoryToResizeIt)
{
  TypedOwnBuffer buffer;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  ownSixBytes<OwnSubject>(buffer);
  failArrayAllocationAfter(0);
  expectNoMemory(10, [&] { buffer.resize(5); });
  failNoAllocation();
  expectCleared<OwnSubject>(buffer);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

// The frame

TEST(BaseOwnBuffer, LeavesDuplicatesToTheConcreteClasses)
{
  PlainOwnBuffer buffer;
  EXPECT_FALSE(buffer.hasCopySupport());
  EXPECT_EQ(messageOf<ORVELUtilException>([&] { buffer.duplicate(); }),
            "Class orvel::BaseBlockBuffer doesn't support copy");
  EXPECT_EQ(messageOf<ORVELUtilException>([&] { buffer.duplicateShared(); }),
            "Class orvel::BaseBlockBuffer doesn't support copy");
}

} // namespace
