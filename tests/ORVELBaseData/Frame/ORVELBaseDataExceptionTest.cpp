#include "ORVELBaseData/ORVELBaseDataException.h"

#include <gtest/gtest.h>

#include <support/ExceptionChecks.h>

namespace orvel::test
{

INSTANTIATE_TYPED_TEST_SUITE_P(ORVELBaseData, LibraryException, ORVELBaseDataException, );

} // namespace orvel::test
