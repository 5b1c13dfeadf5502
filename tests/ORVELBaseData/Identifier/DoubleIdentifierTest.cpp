#include "ORVELBaseData/Identifier/DoubleIdentifier.h"

#include <memory>

#include <gtest/gtest.h>

#include <support/FailingAllocation.h>
#include <support/LayoutChecks.h>

// What it shares with the other values is tested in BaseIdentifierTest.cpp.

ORVEL_TEST_EXPOSE(HighValue, &orvel::DoubleIdentifier::_highValue)
ORVEL_TEST_EXPOSE(LowValue, &orvel::DoubleIdentifier::_lowValue)

namespace
{

using namespace orvel;
using namespace orvel::test;

void expectValues(const BaseDynamicObject& object, ipUInt32 highValue, ipUInt32 lowValue)
{
  const auto& identifier = dynamic_cast<const DoubleIdentifier&>(object);
  EXPECT_EQ(identifier.getHighValue(), highValue);
  EXPECT_EQ(identifier.getLowValue(), lowValue);
}

TEST(DoubleIdentifier, TakesTheHighValueFirst)
{
  expectValues(DoubleIdentifier(1, 2), 1, 2);
}

TEST(DoubleIdentifier, DoesNotTouchTheValuesOfANewOne)
{
  fillBlocksWith(0xA5);
  const std::unique_ptr<BaseDynamicObject> owned(DoubleIdentifier(1, 2).createNew());
  const DynamicObjectPtr shared = DoubleIdentifier(1, 2).createShared();
  fillNoBlocks();
  expectValues(*owned, 0xA5A5A5A5U, 0xA5A5A5A5U);
  expectValues(*shared, 0xA5A5A5A5U, 0xA5A5A5A5U);
}

TEST(DoubleIdentifier, SetsBothValuesTheHighOneFirst)
{
  DoubleIdentifier identifier;
  identifier.setValue(3, 4294967295U);
  expectValues(identifier, 3, 4294967295U);
}

TEST(DoubleIdentifier, LeavesTheLowValueWhenTheHighOneIsSet)
{
  DoubleIdentifier identifier(1, 2);
  identifier.setHighValue(4294967295U);
  expectValues(identifier, 4294967295U, 2);
}

TEST(DoubleIdentifier, LeavesTheHighValueWhenTheLowOneIsSet)
{
  DoubleIdentifier identifier(1, 2);
  identifier.setLowValue(4294967295U);
  expectValues(identifier, 1, 4294967295U);
}

TEST(DoubleIdentifier, AddsTwoFields)
{
  EXPECT_EQ(offsetOf(memberOf(HighValue())), 8);
  EXPECT_EQ(offsetOf(memberOf(LowValue())), 12);
  EXPECT_EQ(sizeof(DoubleIdentifier), 16U);
}

} // namespace
