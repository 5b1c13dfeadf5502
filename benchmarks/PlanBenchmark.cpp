// Collections of plans beside a plain map with a tuple as its key: making, finding, walking.

#include <algorithm>
#include <map>
#include <random>
#include <tuple>
#include <vector>

#include <boost/make_shared.hpp>

#include "BenchmarkSupport.h"
#include <ORVELBaseData/PlanIndex/BasePlanIndexedColl.h>
#include <ORVELBaseData/Range/ElementsRange.h>

namespace orvel::benchmarks
{

namespace
{

constexpr ipUInt64 g_sizeZ = 100;
constexpr ipUInt64 g_sizeC = 10;
constexpr ipUInt64 g_sizeT = 100;
constexpr ipUInt64 g_nbPlans = g_sizeZ * g_sizeC * g_sizeT;

/// A collection as another library would derive it.
class RangePlans : public BasePlanIndexedColl
{
public:
  BaseDynamicObject* createNew() const override { return new RangePlans; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<RangePlans>(); }
  const std::string& getElementTypeName() const override { return ElementsRange::getTypeName(); }
  bool hasSkeletonElements() const override { return false; }
};

/// The same without the library: the key in the order of PlanIndex, t first.
using PlainKey = std::tuple<ipUInt64, ipUInt64, ipUInt64>;
using PlainPlans = std::map<PlainKey, SerializationObjectPtr>;

void assign(PlainPlans& plans)
{
  const ElementsRange prototype(1, 2);
  for (ipUInt64 z = 0; z < g_sizeZ; ++z)
    for (ipUInt64 c = 0; c < g_sizeC; ++c)
      for (ipUInt64 t = 0; t < g_sizeT; ++t)
        plans[PlainKey(t, c, z)] = boost::make_shared<ElementsRange>(prototype);
}

const PlainPlans& getPlainPlans()
{
  static const PlainPlans g_plans = []
  {
    PlainPlans plans;
    assign(plans);
    return plans;
  }();
  return g_plans;
}

const BasePlanIndexedColl& getPlans()
{
  static const boost::shared_ptr<RangePlans> g_plans = []
  {
    auto plans = boost::make_shared<RangePlans>();
    plans->assign(ElementsRange(1, 2), g_sizeZ, g_sizeC, g_sizeT);
    return plans;
  }();
  return *g_plans;
}

/// Every plan once, in no order.
std::vector<PlanIndex> makeShuffledIndices()
{
  std::vector<PlanIndex> indices;
  for (const auto& plan : getPlans().getBaseColl())
    indices.push_back(plan.first);
  std::shuffle(indices.begin(), indices.end(), std::mt19937(20240229U));
  return indices;
}

/// Enters a case whose work counts the plans that it comes by.
template <class Work>
void addPlanCase(const char* group, const char* side, Work work)
{
  addCase(
      group, side,
      [work](benchmark::State& state)
      {
        ipUInt64 nbPlans = 0;
        for ([[maybe_unused]] auto _ : state)
        {
          nbPlans = work();
          benchmark::DoNotOptimize(nbPlans);
        }
        check(state, nbPlans == g_nbPlans, "another number of plans");
      },
      benchmark::kMillisecond);
}

} // namespace

void addPlanCases()
{
  addPlanCase("plans_assign", "orvel",
              []
              {
                RangePlans plans;
                plans.assign(ElementsRange(1, 2), g_sizeZ, g_sizeC, g_sizeT);
                return plans.getNbPlans();
              });
  addPlanCase("plans_assign", "tuple_map",
              []
              {
                PlainPlans plans;
                assign(plans);
                return static_cast<ipUInt64>(plans.size());
              });

  addPlanCase("plans_find", "orvel",
              []
              {
                static const std::vector<PlanIndex> g_indices = makeShuffledIndices();
                ipUInt64 nbFound = 0;
                for (const PlanIndex& index : g_indices)
                  nbFound += getPlans().getStorage(index) != nullptr;
                return nbFound;
              });
  addPlanCase("plans_find", "tuple_map",
              []
              {
                static const std::vector<PlanIndex> g_indices = makeShuffledIndices();
                ipUInt64 nbFound = 0;
                for (const PlanIndex& index : g_indices)
                {
                  const SerializationObjectPtr found =
                      getPlainPlans()
                          .find(PlainKey(index.getTPlanIdx(), index.getCPlanIdx(), index.getZPlanIdx()))
                          ->second;
                  nbFound += found != nullptr;
                }
                return nbFound;
              });

  addPlanCase("plans_walk", "orvel",
              []
              {
                ipUInt64 nbPlans = 0;
                for (const auto& plan : getPlans().getBaseColl())
                  nbPlans += plan.second != nullptr;
                return nbPlans;
              });
  addPlanCase("plans_walk", "tuple_map",
              []
              {
                ipUInt64 nbPlans = 0;
                for (const auto& plan : getPlainPlans())
                  nbPlans += plan.second != nullptr;
                return nbPlans;
              });
}

} // namespace orvel::benchmarks
