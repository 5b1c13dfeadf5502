// Samples of runs of elements, for the checks that all classes share.

#include <limits>

#include "../Classes/Samples.h"
#include <ORVELBaseData/Range/ElementsRange.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

std::vector<Sample> makeRangeSamples()
{
  return {makeSample(ElementsRange(3, 5000000000)), asNew(makeSample(ElementsRange())),
          makeSample(ElementsRange(std::numeric_limits<ipUInt64>::max(), 1))};
}

// Version 1 had 32-bit numbers.

void writeVersion1(BaseOArchive& archive)
{
  writeVersion(archive, "orvel::ElementsRange", 1);
  writeItem<ipUInt32>(archive, "_startOffset", 3);
  writeItem<ipUInt32>(archive, "_nbElements", 4000000000U);
}

std::vector<OldSample> makeOldRangeSamples()
{
  return {{1, writeVersion1, makeSample(ElementsRange(3, 4000000000))}};
}

const ClassSamples g_range("orvel::ElementsRange", makeRangeSamples, makeOldRangeSamples);

} // namespace
