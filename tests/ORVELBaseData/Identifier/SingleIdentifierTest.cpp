#include "ORVELBaseData/Identifier/SingleIdentifier.h"

#include <memory>

#include <gtest/gtest.h>

#include <support/FailingAllocation.h>

// What it shares with the other values is tested in BaseIdentifierTest.cpp.

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(SingleIdentifier, HoldsOneNumber)
{
  SingleIdentifier identifier(4294967295U);
  EXPECT_EQ(identifier.getValue(), 4294967295U);
  identifier.setValue(0);
  EXPECT_EQ(identifier.getValue(), 0U);
}

TEST(SingleIdentifier, DoesNotTouchTheNumberOfANewOne)
{
  fillBlocksWith(0xA5);
  const std::unique_ptr<BaseDynamicObject> owned(SingleIdentifier(3).createNew());
  const DynamicObjectPtr shared = SingleIdentifier(3).createShared();
  fillNoBlocks();
  EXPECT_EQ(dynamic_cast<const SingleIdentifier&>(*owned).getValue(), 0xA5A5A5A5U);
  EXPECT_EQ(dynamic_cast<const SingleIdentifier&>(*shared).getValue(), 0xA5A5A5A5U);
}

TEST(SingleIdentifier, IsMadeOfANumberWithoutBeingNamed)
{
  const SingleIdentifier identifier = 3U;
  EXPECT_EQ(identifier.getValue(), 3U);
}

} // namespace
