#include "ORVELBaseData/PlanIndex/PlanIndexLogMessages.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <support/MessageTableChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct PlanIndexMessages
{
  using Enumeration = ePlanIndexMessage;
  static constexpr const char* manager = "ORVELBaseData";
  static constexpr const char* domainKey = "N5orvel17ePlanIndexMessage6domainE";
  static std::vector<MessageRow<ePlanIndexMessage>> rows()
  {
    return {{ePlanIndexMessage::ePlanNotFound, "ePlanNotFound",
             "Can't get element for plan index z=%d, c=%d, t=%d, element not found"},
            {ePlanIndexMessage::ePlanAlreadyExists, "ePlanAlreadyExists",
             "Can't insert element for plan index z=%d, c=%d, t=%d, already exists"},
            {ePlanIndexMessage::eInvalidPlanOffset, "eInvalidPlanOffset",
             "Plan offset %d is not valid given plan indexed data with %d plans"},
            {ePlanIndexMessage::eNullPlanPtr, "eNullPlanPtr",
             "Null shared pointer for plan index z=%d, c=%d, t=%d, can't insert it"}};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(PlanIndexLogMessages, MessageTexts, PlanIndexMessages, );

TEST(PlanIndexLogMessages, RenderThePlan)
{
  const ipUInt64 largest = std::numeric_limits<ipUInt64>::max();
  EXPECT_EQ(render<PlanIndexMessages>(ePlanIndexMessage::ePlanNotFound, ipUInt64{1}, ipUInt64{2}, largest),
            "Can't get element for plan index z=1, c=2, t=18446744073709551615, element not found");
  EXPECT_EQ(
      render<PlanIndexMessages>(ePlanIndexMessage::ePlanAlreadyExists, ipUInt64{1}, largest, ipUInt64{0}),
      "Can't insert element for plan index z=1, c=18446744073709551615, t=0, already exists");
  EXPECT_EQ(render<PlanIndexMessages>(ePlanIndexMessage::eNullPlanPtr, largest, ipUInt64{2}, ipUInt64{3}),
            "Null shared pointer for plan index z=18446744073709551615, c=2, t=3, can't insert it");
}

TEST(PlanIndexLogMessages, RenderTheRankAndTheNumberOfPlans)
{
  EXPECT_EQ(
      render<PlanIndexMessages>(ePlanIndexMessage::eInvalidPlanOffset, ipUInt64{5000000000}, ipUInt64{24}),
      "Plan offset 5000000000 is not valid given plan indexed data with 24 plans");
}

} // namespace
