#pragma once

/// \file
/// \brief Stand-in for a cause of unknown type.

#include <ORVELUtil/BaseException.h>

namespace orvel
{

/// \brief Replaces a cause that is not a std::exception.
///
/// Its message is "Exception of unknown type"; function and file are empty and the line is 0.
class ORVELUTIL_EXPORT UnHandleException : public BaseException
{
public:
  UnHandleException();
  UnHandleException(const UnHandleException&) noexcept = default;
  UnHandleException& operator=(const UnHandleException&) noexcept = default;
  ~UnHandleException() noexcept override;
};

} // namespace orvel
