#pragma once

/// \file
/// \brief A failure of the ORVELBaseData library.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/BaseException.h>

namespace orvel
{

/// \brief A failure of the ORVELBaseData library.
class ORVELBASEDATA_EXPORT ORVELBaseDataException : public BaseException
{
public:
  using BaseException::BaseException;
  ORVELBaseDataException(const ORVELBaseDataException&) noexcept = default;
  ORVELBaseDataException& operator=(const ORVELBaseDataException&) noexcept = default;
  ~ORVELBaseDataException() noexcept override;
};

} // namespace orvel
