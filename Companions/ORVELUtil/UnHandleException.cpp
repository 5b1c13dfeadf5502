#include "ORVELUtil/UnHandleException.h"

namespace orvel
{

UnHandleException::UnHandleException()
  : BaseException("Exception of unknown type", nullptr, nullptr, 0)
{
}

UnHandleException::~UnHandleException() noexcept = default;

} // namespace orvel
