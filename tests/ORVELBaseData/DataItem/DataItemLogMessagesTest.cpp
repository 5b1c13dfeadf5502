#include "ORVELBaseData/DataItem/DataItemLogMessages.h"

#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>

namespace
{

using orvel::eDataItemMessage;
using orvel::ipUInt64;
using orvel::LogMessageFormater;
using orvel::LogMessageManager;

constexpr const char* g_domainKey = "N5orvel16eDataItemMessage6domainE";

struct Message
{
  eDataItemMessage::domain enumerator;
  int id;
  const char* spelling;
  const char* text;
};

const Message g_messages[] = {
    {eDataItemMessage::eInvalidDataItemType, 0, "eInvalidDataItemType",
     "Invalid data item type enumerate value %s"},
    {eDataItemMessage::eInvalidDataItemValueType, 1, "eInvalidDataItemValueType",
     "Invalid data item value type enumerate value %s"},
    {eDataItemMessage::eInvalidEnumIntValue, 2, "eInvalidEnumIntValue",
     "Invalid enumerate integer value %d for enumerate %s"},
    {eDataItemMessage::eInvalidEnumStrValue, 3, "eInvalidEnumStrValue",
     "Invalid enumerate string value %s for enumerate %s"},
    {eDataItemMessage::eNodeIndexOutOfBounds, 4, "eNodeIndexOutOfBounds",
     "Node with index %d is out of bounds [0; %d["},
    {eDataItemMessage::eItemAlreadyInMap, 5, "eItemAlreadyInMap",
     "Item with name %s already exists into item map, can't insert it"},
    {eDataItemMessage::eItemNotInMap, 6, "eItemNotInMap",
     "Item with name %s does not exist into item map, can't remove it"},
    {eDataItemMessage::eNodeAlreadyRegistred, 7, "eNodeAlreadyRegistred",
     "Data item node %s is already registred into factory, can't register more than once"},
    {eDataItemMessage::eUnknownItem, 8, "eUnknownItem",
     "Item with name %s does not exists for current item node"},
    {eDataItemMessage::eNodeNotRegistred, 9, "eNodeNotRegistred",
     "Data item node %s is not registred into factory, can't access data item node informations"},
    {eDataItemMessage::eNodeNotRegistredForRemoval, 10, "eNodeNotRegistredForRemoval",
     "Data item node %s is not registred into factory, can't remove from factory"},
    {eDataItemMessage::eNullItemPtr, 11, "eNullItemPtr", "Item shared pointer should not be null"},
};

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("ORVELBaseData");
}

TEST(DataItemLogMessages, HaveTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(eDataItemMessage::domain).name(), g_domainKey);
}

TEST(DataItemLogMessages, AreRegisteredWhenTheLibraryIsLoaded)
{
  for (const Message& message : g_messages)
    EXPECT_EQ(manager().getMessage(g_domainKey, message.id), message.text);
}

TEST(DataItemLogMessages, EndWithTheLastId)
{
  EXPECT_ANY_THROW(manager().getMessage(g_domainKey, 12));
}

TEST(DataItemLogMessages, HaveFixedIdsAndSpellings)
{
  for (const Message& message : g_messages)
  {
    EXPECT_EQ(eDataItemMessage(message.enumerator).getValue(), static_cast<ipUInt64>(message.id));
    EXPECT_STREQ(eDataItemMessage(message.enumerator).getText(), message.spelling);
  }
  EXPECT_EQ(eDataItemMessage(ipUInt64(12)).getText(), nullptr);
}

TEST(DataItemLogMessages, AddNothingWhenRegisteredAgain)
{
  manager().addMessage(g_domainKey, 6, "changed");
  const bool registered = MessageMapRegistrator<eDataItemMessage>::process();
  const std::string text = manager().getMessage(g_domainKey, 6);
  manager().addMessage(g_domainKey, 6, g_messages[6].text);

  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

template <class... Arguments>
std::string render(eDataItemMessage::domain message, const Arguments&... arguments)
{
  LogMessageFormater formater(manager());
  formater[message];
  static_cast<void>((formater % ... % arguments));
  return formater.string();
}

TEST(DataItemLogMessages, RenderTheTextOfAnEnumerator)
{
  EXPECT_EQ(render(eDataItemMessage::eInvalidDataItemType, "eDIT_Map"),
            "Invalid data item type enumerate value eDIT_Map");
  EXPECT_EQ(render(eDataItemMessage::eInvalidDataItemValueType, "eDIVT_Enum"),
            "Invalid data item value type enumerate value eDIVT_Enum");
}

TEST(DataItemLogMessages, RenderTheValueAndTheNameOfAnEnumeration)
{
  EXPECT_EQ(render(eDataItemMessage::eInvalidEnumIntValue, 4294967295U, std::string("eColour")),
            "Invalid enumerate integer value 4294967295 for enumerate eColour");
  EXPECT_EQ(render(eDataItemMessage::eInvalidEnumStrValue, std::string("eC_Rd"), std::string("eColour")),
            "Invalid enumerate string value eC_Rd for enumerate eColour");
}

TEST(DataItemLogMessages, RenderTheIndexAndTheNumberOfNodes)
{
  EXPECT_EQ(render(eDataItemMessage::eNodeIndexOutOfBounds, 4U, 3U),
            "Node with index 4 is out of bounds [0; 3[");
}

TEST(DataItemLogMessages, RenderTheNameOfAnItem)
{
  const std::string name = "sigma";
  EXPECT_EQ(render(eDataItemMessage::eItemAlreadyInMap, name),
            "Item with name sigma already exists into item map, can't insert it");
  EXPECT_EQ(render(eDataItemMessage::eItemNotInMap, name),
            "Item with name sigma does not exist into item map, can't remove it");
  EXPECT_EQ(render(eDataItemMessage::eUnknownItem, name),
            "Item with name sigma does not exists for current item node");
}

TEST(DataItemLogMessages, RenderTheKeyOfANode)
{
  const std::string key = "Sample";
  EXPECT_EQ(render(eDataItemMessage::eNodeAlreadyRegistred, key),
            "Data item node Sample is already registred into factory, can't register more than once");
  EXPECT_EQ(render(eDataItemMessage::eNodeNotRegistred, key),
            "Data item node Sample is not registred into factory, can't access data item node informations");
  EXPECT_EQ(render(eDataItemMessage::eNodeNotRegistredForRemoval, key),
            "Data item node Sample is not registred into factory, can't remove from factory");
}

TEST(DataItemLogMessages, WithoutPlaceholdersAreTheirOwnText)
{
  EXPECT_EQ(render(eDataItemMessage::eNullItemPtr), "Item shared pointer should not be null");
}

} // namespace
