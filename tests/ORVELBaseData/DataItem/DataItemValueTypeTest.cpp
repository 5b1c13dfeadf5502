#include "ORVELBaseData/DataItem/DataItemValueType.h"

#include <vector>

#include <gtest/gtest.h>

#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct DataItemValueTypeTable
{
  using Enumeration = eDataItemValueType;
  static std::vector<EnumerationRow<eDataItemValueType>> rows()
  {
    return {{eDataItemValueType::eDIVT_Bool, 0, "eDIVT_Bool"},
            {eDataItemValueType::eDIVT_Int8, 1, "eDIVT_Int8"},
            {eDataItemValueType::eDIVT_UInt8, 2, "eDIVT_UInt8"},
            {eDataItemValueType::eDIVT_Int16, 3, "eDIVT_Int16"},
            {eDataItemValueType::eDIVT_UInt16, 4, "eDIVT_UInt16"},
            {eDataItemValueType::eDIVT_Int32, 5, "eDIVT_Int32"},
            {eDataItemValueType::eDIVT_UInt32, 6, "eDIVT_UInt32"},
            {eDataItemValueType::eDIVT_Int64, 7, "eDIVT_Int64"},
            {eDataItemValueType::eDIVT_UInt64, 8, "eDIVT_UInt64"},
            {eDataItemValueType::eDIVT_Real32, 9, "eDIVT_Real32"},
            {eDataItemValueType::eDIVT_Real64, 10, "eDIVT_Real64"},
            {eDataItemValueType::eDIVT_String, 11, "eDIVT_String"},
            {eDataItemValueType::eDIVT_Path, 12, "eDIVT_Path"},
            {eDataItemValueType::eDIVT_Enum, 13, "eDIVT_Enum"}};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(DataItemValueType, Enumeration, DataItemValueTypeTable, );

} // namespace
