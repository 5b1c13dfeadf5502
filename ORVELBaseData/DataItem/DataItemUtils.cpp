#include "ORVELBaseData/DataItem/DataItemUtils.h"

#include <vector>

#include <ORVELBaseData/DataItem/DataItemLogMessages.h>
#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELBaseData/Private/Prefetch.h>
#include <ORVELMath/RelativeComparison.h>
#include <ORVELSerialization/ItemOperators.h>

namespace orvel
{

namespace
{

bool areSameClass(const BaseDataItem& lhs, const BaseDataItem& rhs)
{
  const std::string& left = lhs.getClassName();
  const std::string& right = rhs.getClassName();
  return &left == &right || left == right; // a class mostly has one text
}

// A value, or a vector of values.

template <class Values>
bool areEqualValues(const Values& left, const Values& right, ipReal64 /*tolerance*/)
{
  return left == right;
}

bool areEqualValues(ipReal32 left, ipReal32 right, ipReal64 tolerance)
{
  return math::compareRelative<ipReal32>(left, right, static_cast<ipReal32>(tolerance));
}

bool areEqualValues(ipReal64 left, ipReal64 right, ipReal64 tolerance)
{
  return math::compareRelative<ipReal64>(left, right, tolerance);
}

bool areEqualValues(const Real32Vector& left, const Real32Vector& right, ipReal64 tolerance)
{
  return math::compareRelative<ipReal32>(left, right, static_cast<ipReal32>(tolerance));
}

bool areEqualValues(const std::vector<ipReal64>& left, const std::vector<ipReal64>& right, ipReal64 tolerance)
{
  return math::compareRelative<ipReal64>(left, right, tolerance);
}

template <class T>
bool areEqualLeaves(const BaseDataItem& lhs, const BaseDataItem& rhs, ipReal64 tolerance)
{
  return areEqualValues(static_cast<const DataItemLeaf<T>&>(lhs).getValue(),
                        static_cast<const DataItemLeaf<T>&>(rhs).getValue(), tolerance);
}

bool areEqualLeaves(const BaseDataItemLeaf& lhs, const BaseDataItemLeaf& rhs, ipReal64 tolerance)
{
  const eDataItemValueType valueType = lhs.getDataItemValueType();
  if (valueType != rhs.getDataItemValueType())
    return false;
  switch (valueType.getDomain())
  {
#define ORVEL_COMPARE_LEAVES(Type, Name, text)                                                               \
  case eDataItemValueType::eDIVT_##Name:                                                                     \
    return areEqualLeaves<Type>(lhs, rhs, tolerance);
    ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_COMPARE_LEAVES)
#undef ORVEL_COMPARE_LEAVES
  case eDataItemValueType::eDIVT_Enum:
    break;
  }
  return static_cast<const BaseDataItemEnumLeaf&>(lhs).getValueStr() ==
         static_cast<const BaseDataItemEnumLeaf&>(rhs).getValueStr();
}

template <class T>
bool areEqualColls(const BaseDataItem& lhs, const BaseDataItem& rhs, ipReal64 tolerance)
{
  const std::vector<T>& left = static_cast<const DataItemLeafColl<T>&>(lhs).getColl();
  const std::vector<T>& right = static_cast<const DataItemLeafColl<T>&>(rhs).getColl();
  return areEqualValues(left, right, tolerance); // a difference of sizes is one
}

bool areEqualColls(const BaseDataItemLeafColl& lhs, const BaseDataItemLeafColl& rhs, ipReal64 tolerance)
{
  const eDataItemValueType valueType = lhs.getDataItemValueType();
  if (valueType != rhs.getDataItemValueType())
    return false;
  switch (valueType.getDomain())
  {
#define ORVEL_COMPARE_COLLS(Type, Name, text)                                                                \
  case eDataItemValueType::eDIVT_##Name:                                                                     \
    return areEqualColls<Type>(lhs, rhs, tolerance);
    ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_COMPARE_COLLS)
#undef ORVEL_COMPARE_COLLS
  case eDataItemValueType::eDIVT_Enum:
    break;
  }
  constexpr const char* caller =
      "bool orvel::equal(const orvel::BaseDataItem&, const orvel::BaseDataItem&, const orvel::ipReal64&)";
  raise(ORVEL_HERE_IN(caller), eDataItemMessage::eInvalidDataItemValueType, valueType.getText());
}

bool areEqualNodes(const BaseDataItemNode& lhs, const BaseDataItemNode& rhs, const ipReal64& tolerance)
{
  const ItemNameColl& keys = lhs.getItemKeys();
  if (keys != rhs.getItemKeys()) // all of them before any item is looked at
    return false;
  // A loop, as trees nest: it needs less stack than an algorithm.
  for (const std::string& key : keys) // NOLINT(readability-use-anyofallof)
    if (!equal(lhs.getItem(key), rhs.getItem(key), tolerance))
      return false;
  return true;
}

bool areEqualNodeColls(const BaseDataItemNodeColl& lhs, const BaseDataItemNodeColl& rhs,
                       const ipReal64& tolerance)
{
  const ipUInt32 size = lhs.getSize();
  if (size != rhs.getSize())
    return false;
  for (ipUInt32 i = 0; i < size; ++i)
    if (!areEqualNodes(*lhs.getColl()[i], *rhs.getColl()[i], tolerance)) // whatever their classes
      return false;
  return true;
}

} // namespace

namespace details
{

struct DataItemComparison
{
  static bool areEqualMaps(const DataItemMap& lhs, const DataItemMap& rhs, const ipReal64& tolerance)
  {
    if (lhs.getSize() != rhs.getSize())
      return false;
    auto left = lhs._itemMap.begin();
    auto right = rhs._itemMap.begin();
    const auto end = lhs._itemMap.end();
    while (left != end)
    {
      const auto& [name, item] = *left++;
      const auto& [otherName, other] = *right++;
      if (left != end) // the next ones have time to come while these are compared
      {
        prefetch(left->second);
        prefetch(right->second);
      }
      if (name != otherName || !equal(*item, *other, tolerance))
        return false;
    }
    return true;
  }
};

} // namespace details

bool equal(const BaseDataItem& lhs, const BaseDataItem& rhs, const ipReal64& tolerance)
{
  if (!areSameClass(lhs, rhs))
    return false;
  switch (lhs.getDataItemType().getDomain())
  {
  case eDataItemType::eDIT_NodeColl:
    return areEqualNodeColls(static_cast<const BaseDataItemNodeColl&>(lhs),
                             static_cast<const BaseDataItemNodeColl&>(rhs), tolerance);
  case eDataItemType::eDIT_Map:
    return details::DataItemComparison::areEqualMaps(static_cast<const DataItemMap&>(lhs),
                                                     static_cast<const DataItemMap&>(rhs), tolerance);
  case eDataItemType::eDIT_Node:
    return areEqualNodes(static_cast<const BaseDataItemNode&>(lhs), static_cast<const BaseDataItemNode&>(rhs),
                         tolerance);
  case eDataItemType::eDIT_LeafColl:
    return areEqualColls(static_cast<const BaseDataItemLeafColl&>(lhs),
                         static_cast<const BaseDataItemLeafColl&>(rhs), tolerance);
  case eDataItemType::eDIT_Leaf:
    break;
  }
  return areEqualLeaves(static_cast<const BaseDataItemLeaf&>(lhs), static_cast<const BaseDataItemLeaf&>(rhs),
                        tolerance);
}

} // namespace orvel
