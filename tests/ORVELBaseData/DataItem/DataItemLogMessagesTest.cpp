#include "ORVELBaseData/DataItem/DataItemLogMessages.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <support/MessageTableChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct DataItemMessages
{
  using Enumeration = eDataItemMessage;
  static constexpr const char* manager = "ORVELBaseData";
  static constexpr const char* domainKey = "N5orvel16eDataItemMessage6domainE";
  static std::vector<MessageRow<eDataItemMessage>> rows()
  {
    return {{eDataItemMessage::eInvalidDataItemType, "eInvalidDataItemType",
             "Invalid data item type enumerate value %s"},
            {eDataItemMessage::eInvalidDataItemValueType, "eInvalidDataItemValueType",
             "Invalid data item value type enumerate value %s"},
            {eDataItemMessage::eInvalidEnumIntValue, "eInvalidEnumIntValue",
             "Invalid enumerate integer value %d for enumerate %s"},
            {eDataItemMessage::eInvalidEnumStrValue, "eInvalidEnumStrValue",
             "Invalid enumerate string value %s for enumerate %s"},
            {eDataItemMessage::eNodeIndexOutOfBounds, "eNodeIndexOutOfBounds",
             "Node with index %d is out of bounds [0; %d["},
            {eDataItemMessage::eItemAlreadyInMap, "eItemAlreadyInMap",
             "Item with name %s already exists into item map, can't insert it"},
            {eDataItemMessage::eItemNotInMap, "eItemNotInMap",
             "Item with name %s does not exist into item map, can't remove it"},
            {eDataItemMessage::eNodeAlreadyRegistred, "eNodeAlreadyRegistred",
             "Data item node %s is already registred into factory, can't register more than once"},
            {eDataItemMessage::eUnknownItem, "eUnknownItem",
             "Item with name %s does not exists for current item node"},
            {eDataItemMessage::eNodeNotRegistred, "eNodeNotRegistred",
             "Data item node %s is not registred into factory, can't access data item node informations"},
            {eDataItemMessage::eNodeNotRegistredForRemoval, "eNodeNotRegistredForRemoval",
             "Data item node %s is not registred into factory, can't remove from factory"},
            {eDataItemMessage::eNullItemPtr, "eNullItemPtr", "Item shared pointer should not be null"}};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(DataItemLogMessages, MessageTexts, DataItemMessages, );

TEST(DataItemLogMessages, RenderTheTextOfAnEnumerator)
{
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eInvalidDataItemType, "eDIT_Map"),
            "Invalid data item type enumerate value eDIT_Map");
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eInvalidDataItemValueType, "eDIVT_Enum"),
            "Invalid data item value type enumerate value eDIVT_Enum");
}

TEST(DataItemLogMessages, RenderTheValueAndTheNameOfAnEnumeration)
{
  EXPECT_EQ(
      render<DataItemMessages>(eDataItemMessage::eInvalidEnumIntValue, 4294967295U, std::string("eColour")),
      "Invalid enumerate integer value 4294967295 for enumerate eColour");
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eInvalidEnumStrValue, std::string("eC_Rd"),
                                     std::string("eColour")),
            "Invalid enumerate string value eC_Rd for enumerate eColour");
}

TEST(DataItemLogMessages, RenderTheIndexAndTheNumberOfNodes)
{
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eNodeIndexOutOfBounds, 4U, 3U),
            "Node with index 4 is out of bounds [0; 3[");
}

TEST(DataItemLogMessages, RenderTheNameOfAnItem)
{
  const std::string name = "sigma";
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eItemAlreadyInMap, name),
            "Item with name sigma already exists into item map, can't insert it");
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eItemNotInMap, name),
            "Item with name sigma does not exist into item map, can't remove it");
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eUnknownItem, name),
            "Item with name sigma does not exists for current item node");
}

TEST(DataItemLogMessages, RenderTheKeyOfANode)
{
  const std::string key = "Sample";
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eNodeAlreadyRegistred, key),
            "Data item node Sample is already registred into factory, can't register more than once");
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eNodeNotRegistred, key),
            "Data item node Sample is not registred into factory, can't access data item node informations");
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eNodeNotRegistredForRemoval, key),
            "Data item node Sample is not registred into factory, can't remove from factory");
}

TEST(DataItemLogMessages, WithoutPlaceholdersAreTheirOwnText)
{
  EXPECT_EQ(render<DataItemMessages>(eDataItemMessage::eNullItemPtr),
            "Item shared pointer should not be null");
}

} // namespace
