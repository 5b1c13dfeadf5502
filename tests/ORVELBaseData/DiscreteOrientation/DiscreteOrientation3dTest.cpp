#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation3d.h"

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "DiscreteOrientationTables.h"
#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation3d, Enumeration, DiscreteOrientation3dTable, );

// A second way to the same table, by the letters of the axes.
TEST(DiscreteOrientation3d, NumbersTheStepsAlongXWithinYWithinZ)
{
  const std::string signs = "M0P";
  const auto sign = [&](int step)
  {
    return signs[static_cast<std::size_t>(step + 1)];
  };
  for (int z = -1; z <= 1; ++z)
    for (int y = -1; y <= 1; ++y)
      for (int x = -1; x <= 1; ++x)
      {
        const int place = 9 * (z + 1) + 3 * (y + 1) + (x + 1);
        const int nullPlace = 13;
        if (place == nullPlace)
          continue;
        const eDiscreteOrientation3d step(static_cast<ipUInt64>(place > nullPlace ? place - 1 : place));
        const std::string text = std::string("eDO3D_Z") + sign(z) + "Y" + sign(y) + "X" + sign(x);
        EXPECT_STREQ(step.getText(), text.c_str());
      }
}

TEST(DiscreteOrientation3d, SkipsTheNullStep)
{
  EXPECT_STREQ(eDiscreteOrientation3d(ipUInt64(12)).getText(), "eDO3D_Z0Y0XM");
  EXPECT_STREQ(eDiscreteOrientation3d(ipUInt64(13)).getText(), "eDO3D_Z0Y0XP");
}

} // namespace
