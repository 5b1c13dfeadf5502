#include "ORVELBaseData/DataItem/DataItemType.h"

#include <vector>

#include <gtest/gtest.h>

#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct DataItemTypeTable
{
  using Enumeration = eDataItemType;
  static std::vector<EnumerationRow<eDataItemType>> rows()
  {
    return {{eDataItemType::eDIT_Leaf, 0, "eDIT_Leaf"},
            {eDataItemType::eDIT_Node, 1, "eDIT_Node"},
            {eDataItemType::eDIT_LeafColl, 2, "eDIT_LeafColl"},
            {eDataItemType::eDIT_NodeColl, 3, "eDIT_NodeColl"},
            {eDataItemType::eDIT_Map, 4, "eDIT_Map"}};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(DataItemType, Enumeration, DataItemTypeTable, );

} // namespace
