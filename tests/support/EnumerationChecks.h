#pragma once

/// \file
/// \brief What every named enumeration has to pass, given its table.
///
/// A table is a class with
///  - `using Enumeration = ...`;
///  - `static std::vector<EnumerationRow<Enumeration>> rows()`, numbers and texts as literals;
///  - `reader`, the signature of its `operator>>`, and `source`, the file that defines it, both for
///    EnumerationItemChecks.h.

#include <vector>

#include <gtest/gtest.h>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::test
{

/// \brief One enumerator: itself, its number and its text.
template <class E>
struct EnumerationRow
{
  typename E::domain enumerator;
  ipUInt64 number;
  const char* text;
};

template <class Table>
class Enumeration : public ::testing::Test
{
};

TYPED_TEST_SUITE_P(Enumeration); // its instances get an empty last argument, which keeps clang++ quiet

TYPED_TEST_P(Enumeration, HasTheNumbersAndTextsOfTheTable)
{
  using E = typename TypeParam::Enumeration;
  for (const auto& row : TypeParam::rows())
  {
    EXPECT_EQ(E(row.enumerator).getValue(), row.number);
    EXPECT_STREQ(E(row.enumerator).getText(), row.text);
    EXPECT_EQ(E(row.number).getDomain(), row.enumerator);
    EXPECT_TRUE(E(row.number) == row.enumerator);
  }
}

TYPED_TEST_P(Enumeration, HasNoTextBeyondTheLastEnumerator)
{
  using E = typename TypeParam::Enumeration;
  const ipUInt64 nbEnumerators = TypeParam::rows().size();
  EXPECT_NE(E(nbEnumerators - 1).getText(), nullptr);
  EXPECT_EQ(E(nbEnumerators).getText(), nullptr);
  EXPECT_EQ(E(ipUInt64{0xFFFFFFFF}).getText(), nullptr);
}

TYPED_TEST_P(Enumeration, ClampsByTheLowThirtyTwoBitsToTheFirstEnumerator)
{
  using E = typename TypeParam::Enumeration;
  const auto rows = TypeParam::rows();
  EXPECT_EQ(E(ipUInt64{rows.size()}).getDomain(), rows.front().enumerator);
  EXPECT_EQ(E(ipUInt64{0xFFFFFFFF}).getDomain(), rows.front().enumerator);
  EXPECT_EQ(E(0x500000000 + rows.size() - 1).getDomain(), rows.back().enumerator);
}

TYPED_TEST_P(Enumeration, ComparesTheWholeValue)
{
  using E = typename TypeParam::Enumeration;
  const auto last = TypeParam::rows().back();
  EXPECT_TRUE(E(last.number) == E(last.enumerator));
  EXPECT_TRUE(E(0x100000000 + last.number) != last.enumerator);
  EXPECT_TRUE(E(last.number - 1) != last.enumerator);
}

REGISTER_TYPED_TEST_SUITE_P(Enumeration, HasTheNumbersAndTextsOfTheTable, HasNoTextBeyondTheLastEnumerator,
                            ClampsByTheLowThirtyTwoBitsToTheFirstEnumerator, ComparesTheWholeValue);

} // namespace orvel::test
