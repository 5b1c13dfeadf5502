// Samples of data items, for the checks that all classes share.

#include <boost/make_shared.hpp>

#include "../Classes/Samples.h"
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <support/SampleNode.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

// Data items are compared as trees.

/// \param fill is called with a new item
template <class Item, class Fill>
Sample makeItemSample(Fill fill)
{
  return makeSampleBy<Item>(
      [=]
      {
        auto item = boost::make_shared<Item>();
        fill(*item);
        return item;
      },
      [](const Item& left, const Item& right) { return orvel::equal(left, right, 0.0); });
}

template <class T>
std::vector<Sample> makeLeafSamples(const T& first, const T& second)
{
  using Leaf = DataItemLeaf<T>;
  return {makeItemSample<Leaf>([=](Leaf& leaf) { leaf.setValue(first); }),
          makeItemSample<Leaf>([=](Leaf& leaf) { leaf.setValue(second); })};
}

template <class T>
std::vector<Sample> makeLeafCollSamples(const T& first, const T& second)
{
  using Coll = DataItemLeafColl<T>;
  return {makeItemSample<Coll>(
              [=](Coll& coll) {
                coll.getColl() = {first, second, first};
              }),
          asNew(makeItemSample<Coll>([](Coll&) {})),
          makeItemSample<Coll>([=](Coll& coll) { coll.push_back(second); })};
}

/// It knows no enumeration, so it has no text to store.
std::vector<Sample> makeEnumLeafSamples()
{
  using Leaf = BaseDataItemEnumLeaf;
  const auto leafOf = [](ipUInt32 value)
  {
    Sample sample = makeSampleBy<Leaf>(
        [=]
        {
          auto leaf = boost::make_shared<Leaf>();
          leaf->setEnumValue(value);
          return leaf;
        },
        [](const Leaf& left, const Leaf& right) { return left.getEnumValue() == right.getEnumValue(); });
    sample.writeFailure = "Invalid enumerate integer value " + std::to_string(value) + " for enumerate ";
    return sample;
  };
  return {leafOf(5), leafOf(0)};
}

template <class T>
DataItemPtr makeLeaf(const T& value)
{
  auto leaf = boost::make_shared<DataItemLeaf<T>>();
  leaf->setValue(value);
  return leaf;
}

std::vector<Sample> makeMapSamples()
{
  using Map = DataItemMap;
  std::vector<Sample> samples = {
      makeItemSample<Map>(
          [](Map& map)
          {
            const auto inner = boost::make_shared<Map>();
            inner->insertItem("sigma", makeLeaf<ipReal64>(1.5));
            map.insertItem("inner", inner);
            map.insertItem("Count", makeLeaf<ipInt32>(-3));
            map.insertItem("node", makeSampleNode(7, "seven"));
          }),
      makeItemSample<Map>([](Map& map) { map.insertItem("", makeLeaf<std::string>("unnamed")); }),
      asNew(makeItemSample<Map>([](Map&) {}))};
  samples[0].isChangedByItself = true; // emptied
  samples[1].isChangedByItself = true;
  return samples;
}

std::vector<Sample> makeNodeCollSamples()
{
  using Coll = BaseDataItemNodeColl;
  std::vector<Sample> samples = {makeItemSample<Coll>(
                                     [](Coll& coll)
                                     {
                                       coll.push_back(makeSampleNode(1, "one"));
                                       coll.push_back(makeSampleNode(2, "two"));
                                     }),
                                 asNew(makeItemSample<Coll>([](Coll&) {}))};
  samples[0].isChangedByItself = true; // emptied
  return samples;
}

/// Those of the leaf and of the collection of a value type.
template <class T>
struct LeafSamples
{
  LeafSamples(const std::string& type, const T& first, const T& second)
    : leaf("orvel::DataItemLeaf<" + type + ">", [=] { return makeLeafSamples<T>(first, second); })
    , coll("orvel::DataItemLeafColl<" + type + ">", [=] { return makeLeafCollSamples<T>(first, second); })
  {
  }

  ClassSamples leaf;
  ClassSamples coll;
};

const LeafSamples<ipBool> g_leavesBool("ipBool", true, false);
const LeafSamples<ipInt8> g_leavesInt8("ipInt8", -128, 127);
const LeafSamples<ipUInt8> g_leavesUInt8("ipUInt8", 255, 0);
const LeafSamples<ipInt16> g_leavesInt16("ipInt16", -300, 7);
const LeafSamples<ipUInt16> g_leavesUInt16("ipUInt16", 65535, 1);
const LeafSamples<ipInt32> g_leavesInt32("ipInt32", -70000, 3);
const LeafSamples<ipUInt32> g_leavesUInt32("ipUInt32", 4000000000U, 3);
const LeafSamples<ipInt64> g_leavesInt64("ipInt64", -5000000000, 9);
const LeafSamples<ipUInt64> g_leavesUInt64("ipUInt64", 18446744073709551615U, 9);
const LeafSamples<ipReal32> g_leavesReal32("ipReal32", 0.1F, -2.5F);
const LeafSamples<ipReal64> g_leavesReal64("ipReal64", 0.1, -1e300);
const LeafSamples<std::string> g_leavesString("std::string", "a < b", "");
const LeafSamples<boost::filesystem::path> g_leavesPath("boost::filesystem::path", "images/stack 1.tif", "");

const ClassSamples g_enumLeaf("orvel::BaseDataItemEnumLeaf", makeEnumLeafSamples);
const ClassSamples g_nodeColl("orvel::BaseDataItemNodeColl", makeNodeCollSamples);
const ClassSamples g_map("orvel::DataItemMap", makeMapSamples);

} // namespace
