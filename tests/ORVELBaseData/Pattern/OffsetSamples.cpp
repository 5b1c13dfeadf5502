// Samples of offsets, for the checks that all classes share.

#include <limits>

#include "../Classes/Samples.h"
#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipInt32 g_lowest = std::numeric_limits<ipInt32>::min();
constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();

const ClassSamples g_offsetXY(
    "orvel::OffsetXY",
    [] {
      return std::vector<Sample>{makeSample(OffsetXY(7, -300)), makeSample(OffsetXY(g_lowest, g_highest))};
    });
const ClassSamples g_offsetXYZ("orvel::OffsetXYZ",
                               []
                               {
                                 return std::vector<Sample>{makeSample(OffsetXYZ(7, -300, 70000)),
                                                            makeSample(OffsetXYZ(g_lowest, g_highest, 0))};
                               });

} // namespace
