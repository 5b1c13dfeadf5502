#include "ORVELBaseData/ORVELBaseDataException.h"

namespace orvel
{

ORVELBaseDataException::~ORVELBaseDataException() noexcept = default;

} // namespace orvel
