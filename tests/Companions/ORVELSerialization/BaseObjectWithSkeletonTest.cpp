#include "ORVELSerialization/BaseObjectWithSkeleton.h"

#include <type_traits>

#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include "SampleClasses.h"
#include <support/LayoutChecks.h>

ORVEL_TEST_EXPOSE(SerializationMode, &orvel::BaseObjectWithSkeleton::_serializationMode)

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseObjectWithSkeleton, StartsInFullMode)
{
  EXPECT_EQ(TestWithMode().getSerializationMode(), eSklSrzMode::eSSM_Full);
}

TEST(BaseObjectWithSkeleton, ChangesItsModeAlsoWhenConstant)
{
  const TestWithMode object;
  const eSklSrzMode& mode = object.getSerializationMode();
  object.setSerializationMode(eSklSrzMode::eSSM_Skeleton);
  EXPECT_EQ(mode, eSklSrzMode::eSSM_Skeleton);
  object.setSerializationMode(eSklSrzMode::eSSM_Data);
  EXPECT_EQ(mode, eSklSrzMode::eSSM_Data);
  object.setSerializationMode(eSklSrzMode(ipUInt64{0x1234567890}));
  EXPECT_EQ(mode.getValue(), 0x1234567890U);
}

TEST(BaseObjectWithSkeleton, HoldsTheModeOnlyAndAddsNoVirtualOperation)
{
  EXPECT_EQ(offsetOf(memberOf(SerializationMode())), static_cast<std::ptrdiff_t>(sizeof(void*)));
  EXPECT_EQ(sizeof(BaseObjectWithSkeleton), sizeof(void*) + sizeof(eSklSrzMode));
  struct Derived : BaseObjectWithSkeleton
  {
    virtual void next() = 0;
  };
  EXPECT_EQ(vtableIndexOf(&BaseObjectWithSkeleton::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&BaseObjectWithSkeleton::write), 10U);
  EXPECT_EQ(vtableIndexOf(&BaseObjectWithSkeleton::read), 11U);
  EXPECT_EQ(vtableIndexOf(&Derived::next), 12U);
  static_assert(std::is_base_of_v<BaseSerializationObject, BaseObjectWithSkeleton>);
}

TEST(BaseObjectWithSkeleton, FilesNothingOfItsOwn)
{
  const TestWithMode object;
  object.setSerializationMode(eSklSrzMode::eSSM_Data);
  RecordingOArchive output;
  EXPECT_TRUE(object.BaseObjectWithSkeleton::write(output));
  EXPECT_TRUE(output.calls.empty());
  TestWithMode other;
  RecordingIArchive input;
  EXPECT_TRUE(other.BaseObjectWithSkeleton::read(input));
  EXPECT_TRUE(input.calls.empty());
  EXPECT_EQ(other.getSerializationMode(), eSklSrzMode::eSSM_Full);
}

TEST(BaseObjectWithSkeleton, KeepsItsModeWhenAnotherIsCopied)
{
  const TestWithMode source;
  source.setSerializationMode(eSklSrzMode::eSSM_Data);
  TestWithMode target;
  target.copy(source);
  EXPECT_EQ(target.getSerializationMode(), eSklSrzMode::eSSM_Full);
  EXPECT_EQ(TestWithMode(source).getSerializationMode(), eSklSrzMode::eSSM_Full);
}

TEST(BaseObjectWithSkeleton, HasATypeName)
{
  EXPECT_EQ(BaseObjectWithSkeleton::getTypeName(), "orvel::BaseObjectWithSkeleton");
}

} // namespace
