// Samples of plan indexes, for the checks that all classes share.

#include <limits>

#include "../Classes/Samples.h"
#include <ORVELBaseData/PlanIndex/PlanIndex.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

std::vector<Sample> makePlanIndexSamples()
{
  return {makeSample(PlanIndex(3, 5000000000, 70000)), makeSample(PlanIndex(0, 0, 0)),
          makeSample(PlanIndex(std::numeric_limits<ipUInt64>::max(), 1, 0))};
}

// Version 1 had 32-bit numbers.

void writeVersion1(BaseOArchive& archive)
{
  writeVersion(archive, "orvel::PlanIndex", 1);
  writeItem<ipUInt32>(archive, "_zPlanIdx", 3);
  writeItem<ipUInt32>(archive, "_cPlanIdx", 4000000000U);
  writeItem<ipUInt32>(archive, "_tPlanIdx", 70000);
}

std::vector<OldSample> makeOldPlanIndexSamples()
{
  return {{1, writeVersion1, makeSample(PlanIndex(3, 4000000000, 70000))}};
}

const ClassSamples g_planIndex("orvel::PlanIndex", makePlanIndexSamples, makeOldPlanIndexSamples);

} // namespace
