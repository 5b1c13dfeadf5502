#include "ORVELBaseData/DataItem/DataItemValueType.h"

#include <gtest/gtest.h>

namespace
{

using orvel::eDataItemValueType;
using orvel::ipUInt64;

struct ValueType
{
  eDataItemValueType::domain enumerator;
  ipUInt64 value;
  const char* text;
};

const ValueType g_valueTypes[] = {{eDataItemValueType::eDIVT_Bool, 0, "eDIVT_Bool"},
                                  {eDataItemValueType::eDIVT_Int8, 1, "eDIVT_Int8"},
                                  {eDataItemValueType::eDIVT_UInt8, 2, "eDIVT_UInt8"},
                                  {eDataItemValueType::eDIVT_Int16, 3, "eDIVT_Int16"},
                                  {eDataItemValueType::eDIVT_UInt16, 4, "eDIVT_UInt16"},
                                  {eDataItemValueType::eDIVT_Int32, 5, "eDIVT_Int32"},
                                  {eDataItemValueType::eDIVT_UInt32, 6, "eDIVT_UInt32"},
                                  {eDataItemValueType::eDIVT_Int64, 7, "eDIVT_Int64"},
                                  {eDataItemValueType::eDIVT_UInt64, 8, "eDIVT_UInt64"},
                                  {eDataItemValueType::eDIVT_Real32, 9, "eDIVT_Real32"},
                                  {eDataItemValueType::eDIVT_Real64, 10, "eDIVT_Real64"},
                                  {eDataItemValueType::eDIVT_String, 11, "eDIVT_String"},
                                  {eDataItemValueType::eDIVT_Path, 12, "eDIVT_Path"},
                                  {eDataItemValueType::eDIVT_Enum, 13, "eDIVT_Enum"}};

TEST(DataItemValueType, HasTheValuesOfTheTable)
{
  for (const ValueType& valueType : g_valueTypes)
    EXPECT_EQ(eDataItemValueType(valueType.enumerator).getValue(), valueType.value);
}

TEST(DataItemValueType, HasTheSpellingsOfItsEnumeratorsAsTexts)
{
  for (const ValueType& valueType : g_valueTypes)
    EXPECT_STREQ(eDataItemValueType(valueType.enumerator).getText(), valueType.text);
}

TEST(DataItemValueType, HasNoTextAboveTheLastType)
{
  EXPECT_EQ(eDataItemValueType(ipUInt64(14)).getText(), nullptr);
  EXPECT_EQ(eDataItemValueType(ipUInt64(0xFFFFFFFF)).getText(), nullptr);
}

TEST(DataItemValueType, ClampsAValueAboveTheLastTypeToBool)
{
  EXPECT_EQ(eDataItemValueType(ipUInt64(13)).getDomain(), eDataItemValueType::eDIVT_Enum);
  EXPECT_EQ(eDataItemValueType(ipUInt64(14)).getDomain(), eDataItemValueType::eDIVT_Bool);
  EXPECT_EQ(eDataItemValueType(ipUInt64(0xFFFFFFFF)).getDomain(), eDataItemValueType::eDIVT_Bool);
  EXPECT_EQ(eDataItemValueType(ipUInt64(0x50000000B)).getDomain(),
            eDataItemValueType::eDIVT_String); // the low 32 bits
}

TEST(DataItemValueType, ComparesTheWholeValue)
{
  EXPECT_TRUE(eDataItemValueType(ipUInt64(12)) == eDataItemValueType::eDIVT_Path);
  EXPECT_TRUE(eDataItemValueType(ipUInt64(0x10000000C)) != eDataItemValueType::eDIVT_Path);
}

} // namespace
