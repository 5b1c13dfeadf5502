#include "ORVELBaseData/Buffer/BufferType.h"

#include <gtest/gtest.h>

namespace
{

using namespace orvel;

struct Row
{
  eBufferType::domain enumerator;
  ipUInt64 number;
  const char* text;
};

constexpr Row g_rows[] = {
    {eBufferType::eBT_Own, 1, "eBT_Own"},
    {eBufferType::eBT_Hybrid, 2, "eBT_Hybrid"},
    {eBufferType::eBT_External, 3, "eBT_External"},
    {eBufferType::eBT_FragHybrid, 4, "eBT_FragHybrid"},
};

TEST(BufferType, CountsFrom1)
{
  for (const Row& row : g_rows)
  {
    EXPECT_EQ(eBufferType(row.enumerator).getValue(), row.number);
    EXPECT_EQ(eBufferType(row.number).getDomain(), row.enumerator);
    EXPECT_TRUE(eBufferType(row.number) == row.enumerator);
  }
}

TEST(BufferType, HasTheSpellingAsText)
{
  for (const Row& row : g_rows)
    EXPECT_STREQ(eBufferType(row.enumerator).getText(), row.text);
}

TEST(BufferType, HasNoTextOutsideItsTable)
{
  for (const ipUInt64 number : {ipUInt64{0}, ipUInt64{5}, ipUInt64{0xFFFFFFFF}, ipUInt64{0x100000000}})
    EXPECT_EQ(eBufferType(number).getText(), nullptr) << number;
}

TEST(BufferType, GivesTheFirstEnumeratorForAValueThatIsNone)
{
  for (const ipUInt64 number : {ipUInt64{0}, ipUInt64{5}, ipUInt64{0xFFFFFFFF}, ipUInt64{0x100000000}})
    EXPECT_EQ(eBufferType(number).getDomain(), eBufferType::eBT_Own) << number;
}

TEST(BufferType, GoesByTheLowThirtyTwoBits)
{
  const eBufferType type(ipUInt64{0x700000003});
  EXPECT_STREQ(type.getText(), "eBT_External");
  EXPECT_EQ(type.getDomain(), eBufferType::eBT_External);
  EXPECT_EQ(type.getValue(), 0x700000003U);
}

TEST(BufferType, ComparesTheWholeValue)
{
  const eBufferType hybrid = eBufferType::eBT_Hybrid;
  EXPECT_TRUE(hybrid == eBufferType(ipUInt64{2}));
  EXPECT_FALSE(hybrid != eBufferType::eBT_Hybrid);
  EXPECT_TRUE(hybrid != eBufferType(ipUInt64{0x100000002}));
  EXPECT_FALSE(hybrid == eBufferType::eBT_External);
}

} // namespace
