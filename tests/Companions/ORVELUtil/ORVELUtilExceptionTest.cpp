#include "ORVELUtil/ORVELUtilException.h"

#include <gtest/gtest.h>

#include <support/ExceptionChecks.h>

namespace orvel::test
{

INSTANTIATE_TYPED_TEST_SUITE_P(ORVELUtil, LibraryException, ORVELUtilException, );

} // namespace orvel::test
