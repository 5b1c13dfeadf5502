#include "ORVELBaseData/Pattern/StructuringElement/SEXYSubType.h"

#include <gtest/gtest.h>

#include "SubTypeTables.h"
#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(SEXYSubType, Enumeration, SEXYSubTypeTable, );

} // namespace
