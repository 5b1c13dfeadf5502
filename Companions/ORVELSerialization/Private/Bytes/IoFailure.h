#pragma once

#include <stdexcept>

namespace orvel::details
{

/// The system or a stream refused; what() is the reason.
class IoFailure : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
  static IoFailure ofErrno(int error); ///< with the system's text
};

} // namespace orvel::details
