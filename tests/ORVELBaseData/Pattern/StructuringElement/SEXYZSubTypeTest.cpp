#include "ORVELBaseData/Pattern/StructuringElement/SEXYZSubType.h"

#include <gtest/gtest.h>

#include "SubTypeTables.h"
#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(SEXYZSubType, Enumeration, SEXYZSubTypeTable, );

} // namespace
