#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation2d.h"

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "DiscreteOrientationTables.h"
#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation2d, Enumeration, DiscreteOrientation2dTable, );

// A second way to the same table, by the letters of the axes.
TEST(DiscreteOrientation2d, NumbersTheStepsAlongXWithinY)
{
  const std::string signs = "M0P";
  const auto sign = [&](int step)
  {
    return signs[static_cast<std::size_t>(step + 1)];
  };
  for (int y = -1; y <= 1; ++y)
    for (int x = -1; x <= 1; ++x)
    {
      const int place = 3 * (y + 1) + (x + 1);
      const int nullPlace = 4;
      if (place == nullPlace)
        continue;
      const eDiscreteOrientation2d step(static_cast<ipUInt64>(place > nullPlace ? place - 1 : place));
      const std::string text = std::string("eDO2D_Y") + sign(y) + "X" + sign(x);
      EXPECT_STREQ(step.getText(), text.c_str());
    }
}

TEST(DiscreteOrientation2d, SkipsTheNullStep)
{
  EXPECT_STREQ(eDiscreteOrientation2d(ipUInt64(3)).getText(), "eDO2D_Y0XM");
  EXPECT_STREQ(eDiscreteOrientation2d(ipUInt64(4)).getText(), "eDO2D_Y0XP");
}

} // namespace
