#include "ORVELUtil/ORVELUtilException.h"

namespace orvel
{

ORVELUtilException::~ORVELUtilException() noexcept = default;

} // namespace orvel
