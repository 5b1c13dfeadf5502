#include "ORVELBaseData/DataItem/DataItemType.h"

#include <gtest/gtest.h>

namespace
{

using orvel::eDataItemType;
using orvel::ipUInt64;

struct Kind
{
  eDataItemType::domain enumerator;
  ipUInt64 value;
  const char* text;
};

const Kind g_kinds[] = {{eDataItemType::eDIT_Leaf, 0, "eDIT_Leaf"},
                        {eDataItemType::eDIT_Node, 1, "eDIT_Node"},
                        {eDataItemType::eDIT_LeafColl, 2, "eDIT_LeafColl"},
                        {eDataItemType::eDIT_NodeColl, 3, "eDIT_NodeColl"},
                        {eDataItemType::eDIT_Map, 4, "eDIT_Map"}};

TEST(DataItemType, HasTheValuesOfTheTable)
{
  for (const Kind& kind : g_kinds)
    EXPECT_EQ(eDataItemType(kind.enumerator).getValue(), kind.value);
}

TEST(DataItemType, HasTheSpellingsOfItsEnumeratorsAsTexts)
{
  for (const Kind& kind : g_kinds)
    EXPECT_STREQ(eDataItemType(kind.enumerator).getText(), kind.text);
}

TEST(DataItemType, HasNoTextAboveTheLastKind)
{
  EXPECT_EQ(eDataItemType(ipUInt64(5)).getText(), nullptr);
  EXPECT_EQ(eDataItemType(ipUInt64(0xFFFFFFFF)).getText(), nullptr);
}

TEST(DataItemType, ClampsAValueAboveTheLastKindToALeaf)
{
  EXPECT_EQ(eDataItemType(ipUInt64(4)).getDomain(), eDataItemType::eDIT_Map);
  EXPECT_EQ(eDataItemType(ipUInt64(5)).getDomain(), eDataItemType::eDIT_Leaf);
  EXPECT_EQ(eDataItemType(ipUInt64(0xFFFFFFFF)).getDomain(), eDataItemType::eDIT_Leaf);
  EXPECT_EQ(eDataItemType(ipUInt64(0x500000002)).getDomain(),
            eDataItemType::eDIT_LeafColl); // the low 32 bits
}

TEST(DataItemType, ComparesTheWholeValue)
{
  EXPECT_TRUE(eDataItemType(ipUInt64(4)) == eDataItemType::eDIT_Map);
  EXPECT_TRUE(eDataItemType(ipUInt64(0x100000004)) != eDataItemType::eDIT_Map);
  EXPECT_FALSE(eDataItemType(eDataItemType::eDIT_Node) == eDataItemType(eDataItemType::eDIT_NodeColl));
}

} // namespace
