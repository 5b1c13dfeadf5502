#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h"

#include <limits>
#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>

namespace
{

using orvel::eStructuringElementMessage;
using orvel::ipUInt64;
using orvel::LogMessageFormater;
using orvel::LogMessageManager;

constexpr const char* g_domainKey = "N5orvel26eStructuringElementMessage6domainE";

struct Message
{
  eStructuringElementMessage::domain enumerator;
  int id;
  const char* spelling;
  const char* text;
};

const Message g_messages[] = {
    {eStructuringElementMessage::eInsertExistingSEElt, 0, "eInsertExistingSEElt",
     "Can't insert element into structuring element, it already exists"},
    {eStructuringElementMessage::eRemoveMissingSEElt, 1, "eRemoveMissingSEElt",
     "Can't remove element from structuring element, it does not exists"},
    {eStructuringElementMessage::eInvalidRadius, 2, "eInvalidRadius",
     "Invalid radius value %f, should not be negative"},
    {eStructuringElementMessage::eSEInfoNotInitialized, 3, "eSEInfoNotInitialized",
     "Structuring element informations have not been initialized"},
    {eStructuringElementMessage::eInvalidSESubType, 4, "eInvalidSESubType",
     "Structuring element sub type do not allows to retrieve this kind of information"},
};

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("ORVELBaseData");
}

TEST(StructuringElementLogMessages, HaveTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(eStructuringElementMessage::domain).name(), g_domainKey);
}

TEST(StructuringElementLogMessages, AreRegisteredWhenTheLibraryIsLoaded)
{
  for (const Message& message : g_messages)
    EXPECT_EQ(manager().getMessage(g_domainKey, message.id), message.text);
}

TEST(StructuringElementLogMessages, EndWithTheLastId)
{
  EXPECT_ANY_THROW(manager().getMessage(g_domainKey, 5));
}

TEST(StructuringElementLogMessages, HaveFixedIdsAndSpellings)
{
  for (const Message& message : g_messages)
  {
    EXPECT_EQ(eStructuringElementMessage(message.enumerator).getValue(), static_cast<ipUInt64>(message.id));
    EXPECT_STREQ(eStructuringElementMessage(message.enumerator).getText(), message.spelling);
  }
  EXPECT_EQ(eStructuringElementMessage(ipUInt64(5)).getText(), nullptr);
}

TEST(StructuringElementLogMessages, AddNothingWhenRegisteredAgain)
{
  manager().addMessage(g_domainKey, 1, "changed");
  const bool registered = MessageMapRegistrator<eStructuringElementMessage>::process();
  const std::string text = manager().getMessage(g_domainKey, 1);
  manager().addMessage(g_domainKey, 1, g_messages[1].text);

  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

TEST(StructuringElementLogMessages, WithoutPlaceholdersAreTheirOwnText)
{
  for (const int id : {0, 1, 3, 4})
  {
    LogMessageFormater formater(manager());
    EXPECT_EQ(formater.setMsgId(g_domainKey, id).string(), g_messages[id].text);
  }
}

std::string textOfRadius(double radius)
{
  LogMessageFormater formater(manager());
  return (formater[eStructuringElementMessage::eInvalidRadius] % radius).string();
}

TEST(StructuringElementLogMessages, RenderTheRadius)
{
  EXPECT_EQ(textOfRadius(-0.001), "Invalid radius value -0.001000, should not be negative");
  EXPECT_EQ(textOfRadius(-20), "Invalid radius value -20.000000, should not be negative");
  EXPECT_EQ(textOfRadius(-std::numeric_limits<double>::infinity()),
            "Invalid radius value -inf, should not be negative");
}

} // namespace
