#include "ORVELBaseData/Neighborhood/Neighborhood3dType.h"

#include <gtest/gtest.h>

#include "NeighborhoodTables.h"
#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood3dType, Enumeration, Neighborhood3dTypeTable, );

} // namespace
