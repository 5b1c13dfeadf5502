#pragma once

/// \file
/// \brief A failure of an archive, or of what an archive holds.

#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELUtil/BaseException.h>

namespace orvel
{

/// \brief A failure of an archive, or of what an archive holds.
class ORVELSERIALIZATION_EXPORT ORVELSerializationException : public BaseException
{
public:
  using BaseException::BaseException;
  ORVELSerializationException(const ORVELSerializationException&) noexcept = default;
  ORVELSerializationException& operator=(const ORVELSerializationException&) noexcept = default;
  ~ORVELSerializationException() noexcept override;
};

} // namespace orvel
