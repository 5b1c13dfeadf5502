#include "ORVELBaseData/Neighborhood/Neighborhood2dType.h"

#include <gtest/gtest.h>

#include "NeighborhoodTables.h"
#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood2dType, Enumeration, Neighborhood2dTypeTable, );

} // namespace
