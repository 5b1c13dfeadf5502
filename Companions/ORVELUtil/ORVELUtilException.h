#pragma once

/// \file
/// \brief A failure of the ORVELUtil library.

#include <ORVELUtil/BaseException.h>
#include <ORVELUtil/ORVELUtilExport.h>

namespace orvel
{

/// \brief A failure of the ORVELUtil library.
class ORVELUTIL_EXPORT ORVELUtilException : public BaseException
{
public:
  using BaseException::BaseException;
  ORVELUtilException(const ORVELUtilException&) noexcept = default;
  ORVELUtilException& operator=(const ORVELUtilException&) noexcept = default;
  ~ORVELUtilException() noexcept override;
};

} // namespace orvel
