#include "ORVELSerialization/Private/Objects/NameTable.h"

#include <memory>

#include <gtest/gtest.h>

namespace
{

using orvel::details::NameTable;

TEST(NameTable, NumbersTextsInTheOrderInWhichTheyCome)
{
  NameTable table;
  EXPECT_EQ(table.find("a"), NameTable::none);
  EXPECT_EQ(table.add("a"), 0U);
  EXPECT_EQ(table.add("b"), 1U);
  EXPECT_EQ(table.find("a"), 0U);
  EXPECT_EQ(table.find("b"), 1U);
  EXPECT_EQ(table.find("A"), NameTable::none);
  EXPECT_EQ(table.find(""), NameTable::none);
}

TEST(NameTable, ComparesTheTextAlsoAtAnAddressThatItKnows)
{
  NameTable table;
  table.add("first");
  table.add("second");
  std::string name = "first";
  EXPECT_EQ(table.find(name), 0U);
  name = "second";
  EXPECT_EQ(table.find(name), 1U);
  name = "neither";
  EXPECT_EQ(table.find(name), NameTable::none);
  name = "first";
  EXPECT_EQ(table.find(name), 0U);
}

TEST(NameTable, FindsEachOfManyTextsUnderAnyAddress)
{
  constexpr std::size_t nbNames = 200; // far more than have a place by their address
  NameTable table;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < nbNames; ++i)
    names.push_back("name " + std::to_string(i));
  for (std::size_t i = 0; i < nbNames; ++i)
    EXPECT_EQ(table.add(names[i]), i);
  for (int round = 0; round < 3; ++round)
    for (std::size_t i = 0; i < nbNames; ++i)
    {
      EXPECT_EQ(table.find(names[i]), i);
      EXPECT_EQ(table.find(std::string(names[i])), i);
    }
}

} // namespace
