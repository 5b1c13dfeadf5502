#include "ORVELBaseData/PlanIndex/PlanIndexLogMessages.h"

#include <limits>
#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>

namespace
{

using orvel::ePlanIndexMessage;
using orvel::ipUInt64;
using orvel::LogMessageFormater;
using orvel::LogMessageManager;

constexpr const char* g_domainKey = "N5orvel17ePlanIndexMessage6domainE";

struct Message
{
  ePlanIndexMessage::domain enumerator;
  int id;
  const char* spelling;
  const char* text;
};

const Message g_messages[] = {
    {ePlanIndexMessage::ePlanNotFound, 0, "ePlanNotFound",
     "Can't get element for plan index z=%d, c=%d, t=%d, element not found"},
    {ePlanIndexMessage::ePlanAlreadyExists, 1, "ePlanAlreadyExists",
     "Can't insert element for plan index z=%d, c=%d, t=%d, already exists"},
    {ePlanIndexMessage::eInvalidPlanOffset, 2, "eInvalidPlanOffset",
     "Plan offset %d is not valid given plan indexed data with %d plans"},
    {ePlanIndexMessage::eNullPlanPtr, 3, "eNullPlanPtr",
     "Null shared pointer for plan index z=%d, c=%d, t=%d, can't insert it"},
};

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("ORVELBaseData");
}

TEST(PlanIndexLogMessages, HaveTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(ePlanIndexMessage::domain).name(), g_domainKey);
}

TEST(PlanIndexLogMessages, AreRegisteredWhenTheLibraryIsLoaded)
{
  for (const Message& message : g_messages)
    EXPECT_EQ(manager().getMessage(g_domainKey, message.id), message.text);
}

TEST(PlanIndexLogMessages, EndWithTheLastId)
{
  EXPECT_ANY_THROW(manager().getMessage(g_domainKey, 4));
}

TEST(PlanIndexLogMessages, HaveFixedIdsAndSpellings)
{
  for (const Message& message : g_messages)
  {
    EXPECT_EQ(ePlanIndexMessage(message.enumerator).getValue(), static_cast<ipUInt64>(message.id));
    EXPECT_STREQ(ePlanIndexMessage(message.enumerator).getText(), message.spelling);
  }
  EXPECT_EQ(ePlanIndexMessage(ipUInt64(4)).getText(), nullptr);
}

TEST(PlanIndexLogMessages, AddNothingWhenRegisteredAgain)
{
  manager().addMessage(g_domainKey, 2, "changed");
  const bool registered = MessageMapRegistrator<ePlanIndexMessage>::process();
  const std::string text = manager().getMessage(g_domainKey, 2);
  manager().addMessage(g_domainKey, 2, g_messages[2].text);

  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

template <class... Arguments>
std::string render(ePlanIndexMessage::domain message, const Arguments&... arguments)
{
  LogMessageFormater formater(manager());
  formater[message];
  static_cast<void>((formater % ... % arguments));
  return formater.string();
}

TEST(PlanIndexLogMessages, RenderThePlan)
{
  const ipUInt64 largest = std::numeric_limits<ipUInt64>::max();
  EXPECT_EQ(render(ePlanIndexMessage::ePlanNotFound, ipUInt64{1}, ipUInt64{2}, largest),
            "Can't get element for plan index z=1, c=2, t=18446744073709551615, element not found");
  EXPECT_EQ(render(ePlanIndexMessage::ePlanAlreadyExists, ipUInt64{1}, largest, ipUInt64{0}),
            "Can't insert element for plan index z=1, c=18446744073709551615, t=0, already exists");
  EXPECT_EQ(render(ePlanIndexMessage::eNullPlanPtr, largest, ipUInt64{2}, ipUInt64{3}),
            "Null shared pointer for plan index z=18446744073709551615, c=2, t=3, can't insert it");
}

TEST(PlanIndexLogMessages, RenderTheRankAndTheNumberOfPlans)
{
  EXPECT_EQ(render(ePlanIndexMessage::eInvalidPlanOffset, ipUInt64{5000000000}, ipUInt64{24}),
            "Plan offset 5000000000 is not valid given plan indexed data with 24 plans");
}

} // namespace
