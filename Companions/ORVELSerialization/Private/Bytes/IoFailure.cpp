#include "ORVELSerialization/Private/Bytes/IoFailure.h"

#include <system_error>

namespace orvel::details
{

IoFailure IoFailure::ofErrno(int error)
{
  return IoFailure(std::generic_category().message(error));
}

} // namespace orvel::details
