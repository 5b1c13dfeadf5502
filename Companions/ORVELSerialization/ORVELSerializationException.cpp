#include "ORVELSerialization/ORVELSerializationException.h"

namespace orvel
{

ORVELSerializationException::~ORVELSerializationException() noexcept = default;

} // namespace orvel
