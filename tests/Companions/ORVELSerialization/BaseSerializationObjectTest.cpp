#include "ORVELSerialization/BaseSerializationObject.h"

#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include "SampleClasses.h"
#include <support/LayoutChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseSerializationObject, HasItsOperationsInTheirOrder)
{
  // 0 and 1 are the destructor.
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&BaseSerializationObject::write), 10U);
  EXPECT_EQ(vtableIndexOf(&BaseSerializationObject::read), 11U);
}

TEST(BaseSerializationObject, HasNoOtherVirtualOperations)
{
  struct Derived : BaseSerializationObject
  {
    virtual void next() = 0;
  };
  EXPECT_EQ(vtableIndexOf(&Derived::next), 12U);
}

TEST(BaseSerializationObject, HoldsNoData)
{
  EXPECT_EQ(sizeof(BaseSerializationObject), sizeof(void*));
}

TEST(BaseSerializationObject, HasATypeName)
{
  EXPECT_EQ(BaseSerializationObject::getTypeName(), "orvel::BaseSerializationObject");
  EXPECT_EQ(&BaseSerializationObject::getTypeName(), &BaseSerializationObject::getTypeName());
}

TEST(BaseSerializationObject, FilesNothingAndSucceeds)
{
  TestPoint point;
  RecordingOArchive output;
  const BoolResult written = point.BaseSerializationObject::write(output);
  EXPECT_TRUE(written);
  EXPECT_EQ(written.getMessage(), "");
  EXPECT_TRUE(output.calls.empty());
  RecordingIArchive input;
  const BoolResult read = point.BaseSerializationObject::read(input);
  EXPECT_TRUE(read);
  EXPECT_EQ(read.getMessage(), "");
  EXPECT_TRUE(input.calls.empty());
}

TEST(BaseSerializationObject, TakesNothingOverByCopy)
{
  TestPoint point(1, 2);
  point.BaseSerializationObject::copy(TestPoint(3, 4));
  EXPECT_TRUE(point == TestPoint(1, 2));
}

} // namespace
