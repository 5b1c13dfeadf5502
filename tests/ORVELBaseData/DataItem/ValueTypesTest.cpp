#include "ORVELBaseData/DataItem/ValueTypes.h"

#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "ValueTesting.h"
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>

// The instances of both templates, for all types of values.

namespace
{

using namespace orvel;
using namespace orvel::test;

/// What an instance says of itself, and what it should say.
struct Instance
{
  std::string className;   ///< as it should be
  ipUInt64 valueType;      ///< as it should be
  const char* text;        ///< of the value type, as it should be
  eDataItemType kind;      ///< as it should be
  std::string typeName;    ///< from getTypeName()
  ipUInt32 version;        ///< from getVersion()
  DataItemPtr item;        ///< a new one
  eDataItemValueType type; ///< from its getDataItemValueType()
  bool isOfRoot;
};

template <template <class> class Item, class Root, class... T>
std::vector<Instance> instancesOf(const std::string& name, eDataItemType kind, testing::Types<T...> /*types*/)
{
  return {{name + "<" + ValueTypeTraits<T>::name + ">", ValueTypeTraits<T>::valueType,
           ValueTypeTraits<T>::text, kind, Item<T>::getTypeName(), Item<T>::getVersion(),
           boost::make_shared<Item<T>>(), Item<T>().getDataItemValueType(),
           std::is_base_of<Root, Item<T>>::value}...};
}

std::vector<Instance> allInstances()
{
  auto all = instancesOf<DataItemLeaf, BaseDataItemLeaf>("orvel::DataItemLeaf", eDataItemType::eDIT_Leaf,
                                                         ValueTypes());
  const auto colls = instancesOf<DataItemLeafColl, BaseDataItemLeafColl>(
      "orvel::DataItemLeafColl", eDataItemType::eDIT_LeafColl, ValueTypes());
  all.insert(all.end(), colls.begin(), colls.end());
  return all;
}

TEST(ValueTypes, HaveALeafAndALeafCollectionEach)
{
  EXPECT_EQ(allInstances().size(), 26U);
}

TEST(ValueTypes, GiveItemsTheirKindAndValueType)
{
  for (const Instance& instance : allInstances())
  {
    EXPECT_TRUE(instance.isOfRoot) << instance.className;
    EXPECT_TRUE(instance.item->getDataItemType() == instance.kind) << instance.className;
    EXPECT_EQ(instance.type.getValue(), instance.valueType) << instance.className;
    EXPECT_STREQ(instance.type.getText(), instance.text);
  }
}

TEST(ValueTypes, GiveItemsTheirNameAndVersion)
{
  for (const Instance& instance : allInstances())
  {
    EXPECT_EQ(instance.typeName, instance.className);
    EXPECT_EQ(instance.item->getClassName(), instance.className);
    EXPECT_EQ(instance.version, 1U) << instance.className;
  }
}

} // namespace
