// Trees of parameters: built, copied, compared, written to memory and read from there, binary and XML; and
// how the cost of each grows with the number of parameters and with the depth of the tree.

#include <cstddef>
#include <cstdint>
#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "BenchmarkSupport.h"
#include "DataItemTiming.h"
#include "ParameterTree.h"
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel::benchmarks
{

std::uint64_t checksumOf(const DataItemMap& tree)
{
  return getChecksum(tree).get();
}

DataItemMapPtr copyOf(const DataItemMap& tree)
{
  return DataItemMapPtr(static_cast<DataItemMap*>(tree.duplicate()));
}

std::uint64_t getExpectedChecksum(const Shape& shape)
{
  static std::map<Shape, std::uint64_t> g_checksums;
  const auto found = g_checksums.find(shape);
  return found != g_checksums.end()
             ? found->second
             : g_checksums.emplace(shape, checksumOf(*getTree<OrvelTree>(shape))).first->second;
}

namespace
{

/// The trees of all sides.
std::vector<void (*)(const Shape&)>& getSamples()
{
  static std::vector<void (*)(const Shape&)> g_samples;
  return g_samples;
}

/// Makes the samples of all sides before the first of them is timed: one that is made later would lie
/// scattered over what the others have left of the heap, and be slower to walk for that.
void makeSamples(const Shape& shape)
{
  getExpectedChecksum(shape);
  for (void (*const makeSample)(const Shape&) : getSamples())
  {
    makeSample(shape);
  }
}

} // namespace

void addSample(void (*makeSample)(const Shape&))
{
  getSamples().push_back(makeSample);
}

void add(const std::string& group, const std::string& side, Timed timed)
{
  addCase(
      "items_" + group, side,
      [timed](benchmark::State& state)
      {
        makeSamples(g_shape);
        timed(state, g_shape);
      },
      benchmark::kMillisecond);
}

namespace
{

template <class OArchive, class IArchive>
struct OrvelItems
{
  using Tree = OrvelTree;

  template <class T>
  static void write(std::ostream& stream, const T& value)
  {
    OArchive archive(stream);
    archive << SerializationOItem("value", value);
    archive.close();
  }

  template <class T>
  static void read(std::istream& stream, T& value)
  {
    IArchive archive(stream);
    archive >> SerializationIItem("value", value);
    archive.close();
  }
};

/// Another tree of the same values. It stays: comparing and walking are given the same two.
const DataItemMap& getOtherTree(const Shape& shape)
{
  static std::map<Shape, DataItemMapPtr> g_trees;
  DataItemMapPtr& tree = g_trees[shape];
  if (!tree)
  {
    tree = makeTree<OrvelTree>(shape.nbParameters, shape.depth);
  }
  return *tree;
}

/// Change the value that a walk comes to last.
void changeLastValue(DataItemMap& tree)
{
  BaseDataItem& item = tree.getItem(*tree.getItemNames().rbegin());
  if (item.getDataItemType() == eDataItemType::eDIT_Map)
  {
    changeLastValue(static_cast<DataItemMap&>(item));
  }
  else
  {
    auto& path = static_cast<DataItemLeaf<ipUInt8>&>(item);
    path.setValue(static_cast<ipUInt8>(path.getValue() ^ 1U));
  }
}

void timeComparing(benchmark::State& state, const Shape& shape)
{
  const DataItemMap& sample = *getTree<OrvelTree>(shape);
  const DataItemMap& other = getOtherTree(shape);
  bool areEqual = true;
  for ([[maybe_unused]] auto _ : state)
  {
    areEqual = orvel::equal(sample, other, 1e-6) && areEqual;
  }
  const DataItemMapPtr changed = copyOf(other);
  changeLastValue(*changed);
  check(state, areEqual && !orvel::equal(sample, *changed, 1e-6), "the comparison is wrong");
}

void timeWalking(benchmark::State& state, const Shape& shape)
{
  const DataItemMap& sample = *getTree<OrvelTree>(shape);
  const DataItemMap& other = getOtherTree(shape);
  bool areEqual = true;
  for ([[maybe_unused]] auto _ : state)
  {
    areEqual = getSum(sample).get() == getSum(other).get() && areEqual;
  }
  check(state, areEqual, "the sums differ");
}

/// Enter a case per shape, each named by the number that differs.
void addSeries(const std::string& series, const std::vector<std::pair<std::size_t, Shape>>& shapes)
{
  using Binary = OrvelItems<BinaryOArchive, BinaryIArchive>;
  using Xml = OrvelItems<XmlOArchive, XmlIArchive>;
  const std::vector<std::pair<std::string, Timed>> costs = {
      {"build", &timeBuilding<OrvelTree>}, {"copy", &timeCopying<OrvelTree>},
      {"equal", &timeComparing},           {"write", &timeWriting<Binary>},
      {"read", &timeReading<Binary>},      {"xml_write", &timeWriting<Xml>},
      {"xml_read", &timeReading<Xml>}};
  for (const auto& [cost, timed] : costs)
  {
    for (const auto& [number, shape] : shapes)
    {
      addCase(
          "items_" + cost + "/" + series, std::to_string(number),
          [timed = timed, shapes, shape = shape](benchmark::State& state)
          {
            for (const auto& other : shapes)
            {
              getExpectedChecksum(other.second); // all samples are there before the first is timed
            }
            timed(state, shape);
          },
          benchmark::kMillisecond);
    }
  }
}

} // namespace

void addDataItemCases()
{
  addSide<OrvelItems<BinaryOArchive, BinaryIArchive>, OrvelItems<XmlOArchive, XmlIArchive>>("orvel");
#ifdef ORVEL_BENCHMARK_BOOST
  addBoostDataItemCases();
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
  addCerealDataItemCases();
#endif
  add("equal", "orvel", &timeComparing);
  add("equal", "walk", &timeWalking);

  std::vector<std::pair<std::size_t, Shape>> sizes;
  for (const std::size_t nbParameters : {1000U, 10000U, 100000U, 1000000U})
  {
    sizes.emplace_back(nbParameters, Shape{nbParameters, g_shape.depth});
  }
  addSeries("parameters", sizes);
  std::vector<std::pair<std::size_t, Shape>> depths;
  for (const std::size_t depth : {1U, 8U, 32U, 100U})
  {
    depths.emplace_back(depth, Shape{g_shape.nbParameters, depth});
  }
  addSeries("depth", depths);
}

} // namespace orvel::benchmarks
