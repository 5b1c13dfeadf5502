#include "ORVELSerialization/ORVELSerializationException.h"

#include <gtest/gtest.h>

#include <support/ExceptionChecks.h>

namespace orvel::test
{

INSTANTIATE_TYPED_TEST_SUITE_P(ORVELSerialization, LibraryException, ORVELSerializationException, );

} // namespace orvel::test
