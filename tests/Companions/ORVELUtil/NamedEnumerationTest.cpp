#include "ORVELUtil/NamedEnumeration.h"

#include <type_traits>

#include <gtest/gtest.h>

namespace
{

using orvel::ipUInt32;
using orvel::ipUInt64;

class eColour : public orvel::NamedEnumeration<eColour>
{
public:
  enum domain
  {
    eC_Red,
    eC_Green,
    eC_Blue
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value)
  {
    static const char* const g_texts[] = {"eC_Red", "eC_Green", "eC_Blue"};
    return orvel::findEnumerationText(g_texts, value);
  }
};

constexpr ipUInt64 g_above32Bits = ipUInt64(1) << 32;

TEST(NamedEnumeration, IsItsValueAndNoMore)
{
  EXPECT_EQ(sizeof(eColour), 8U);
  EXPECT_TRUE(std::is_trivially_copyable_v<eColour>);
  EXPECT_FALSE(std::is_polymorphic_v<eColour>);
}

TEST(NamedEnumeration, HoldsTheValueOfAnEnumerator)
{
  EXPECT_EQ(eColour(eColour::eC_Red).getValue(), 0U);
  EXPECT_EQ(eColour(eColour::eC_Blue).getValue(), 2U);
  const eColour converted = eColour::eC_Green;
  EXPECT_EQ(converted.getValue(), 1U);
}

TEST(NamedEnumeration, HoldsAnyNumberOf64Bits)
{
  EXPECT_EQ(eColour(ipUInt64(7)).getValue(), 7U);
  EXPECT_EQ(eColour(~ipUInt64(0)).getValue(), 18446744073709551615U);
}

TEST(NamedEnumeration, IsNotMadeFromANumberByAccident)
{
  EXPECT_FALSE((std::is_convertible_v<ipUInt64, eColour>));
  EXPECT_FALSE((std::is_convertible_v<int, eColour>));
  EXPECT_TRUE((std::is_convertible_v<eColour::domain, eColour>));
}

TEST(NamedEnumeration, IsAFieldThatGetsItsValueLater)
{
  struct Description
  {
    eColour colour;
  };
  Description description;
  description.colour = eColour::eC_Green;
  EXPECT_EQ(description.colour.getValue(), 1U);
}

TEST(NamedEnumeration, GivesTheEnumerator)
{
  EXPECT_TRUE((std::is_same_v<decltype(eColour(eColour::eC_Red).getDomain()), eColour::domain>));
  EXPECT_EQ(eColour(eColour::eC_Red).getDomain(), eColour::eC_Red);
  EXPECT_EQ(eColour(eColour::eC_Green).getDomain(), eColour::eC_Green);
  EXPECT_EQ(eColour(ipUInt64(2)).getDomain(), eColour::eC_Blue);
}

TEST(NamedEnumeration, ClampsWhatIsNoEnumeratorToTheFirst)
{
  EXPECT_EQ(eColour(ipUInt64(3)).getDomain(), eColour::eC_Red);
  EXPECT_EQ(eColour(ipUInt64(0xFFFFFFFF)).getDomain(), eColour::eC_Red);
  EXPECT_EQ(eColour(~ipUInt64(0)).getDomain(), eColour::eC_Red);
}

TEST(NamedEnumeration, TakesTheEnumeratorByTheLow32Bits)
{
  EXPECT_EQ(eColour(g_above32Bits + 2).getDomain(), eColour::eC_Blue);
  EXPECT_EQ(eColour(g_above32Bits + 3).getDomain(), eColour::eC_Red);
}

TEST(NamedEnumeration, GivesTheSpellingOfTheEnumerator)
{
  EXPECT_STREQ(eColour(eColour::eC_Red).getText(), "eC_Red");
  EXPECT_STREQ(eColour(eColour::eC_Green).getText(), "eC_Green");
  EXPECT_STREQ(eColour(eColour::eC_Blue).getText(), "eC_Blue");
}

TEST(NamedEnumeration, HasNoTextForWhatIsNoEnumerator)
{
  EXPECT_EQ(eColour(ipUInt64(3)).getText(), nullptr);
  EXPECT_EQ(eColour(ipUInt64(0xFFFFFFFF)).getText(), nullptr);
  EXPECT_EQ(eColour(g_above32Bits + 3).getText(), nullptr);
}

TEST(NamedEnumeration, TakesTheTextByTheLow32Bits)
{
  EXPECT_STREQ(eColour(g_above32Bits).getText(), "eC_Red");
  EXPECT_STREQ(eColour(ipUInt64(0xFFFFFFFF00000001)).getText(), "eC_Green");
}

TEST(NamedEnumeration, ComparesTheWholeValue)
{
  EXPECT_TRUE(eColour(ipUInt64(1)) == eColour(eColour::eC_Green));
  EXPECT_FALSE(eColour(ipUInt64(1)) != eColour(eColour::eC_Green));
  EXPECT_FALSE(eColour(g_above32Bits + 1) == eColour(eColour::eC_Green));
  EXPECT_TRUE(eColour(g_above32Bits + 1) != eColour(eColour::eC_Green));
  EXPECT_FALSE(eColour(ipUInt64(3)) == eColour(ipUInt64(4))); // though both clamp to the first
}

TEST(NamedEnumeration, ComparesWithAnEnumeratorOnEitherSide)
{
  const eColour green = eColour::eC_Green;
  EXPECT_TRUE(green == eColour::eC_Green);
  EXPECT_TRUE(eColour::eC_Green == green);
  EXPECT_TRUE(green != eColour::eC_Blue);
  EXPECT_TRUE(eColour::eC_Blue != green);
  EXPECT_FALSE(green == eColour::eC_Blue);
  EXPECT_FALSE(eColour(g_above32Bits) == eColour::eC_Red);
  EXPECT_TRUE(eColour(ipUInt64(3)) != eColour::eC_Red); // no clamping in a comparison
}

TEST(NamedEnumeration, IsCopiedAndAssigned)
{
  eColour colour = eColour::eC_Red;
  const eColour far(g_above32Bits + 5);
  colour = far;
  EXPECT_EQ(colour.getValue(), g_above32Bits + 5);
  colour = eColour::eC_Blue;
  EXPECT_EQ(colour.getValue(), 2U);
}

TEST(FindEnumerationText, GivesNullFromTheSizeOn)
{
  static const char* const g_texts[] = {"a", "b"};
  EXPECT_STREQ(orvel::findEnumerationText(g_texts, 1), "b");
  EXPECT_EQ(orvel::findEnumerationText(g_texts, 2), nullptr);
  EXPECT_EQ(orvel::findEnumerationText(g_texts, 0xFFFFFFFF), nullptr);
}

} // namespace
