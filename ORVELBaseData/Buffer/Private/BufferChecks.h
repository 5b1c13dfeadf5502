#pragma once

/// \file
/// \brief The checks that the accessors of buffers share.

#include <ORVELBaseData/Buffer/BaseBuffer.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELUtil/Raise.h>

namespace orvel::details
{

/// \brief Raise in the name of `here` unless a buffer is initialised.
/// \throw ORVELBaseDataException (eBufferNotInitialized)
inline void requireInitialized(const BaseBuffer& buffer, const SourceLocation& here)
{
  if (!buffer.isInitialized())
    raise(here, eORVELBaseDataMessage::eBufferNotInitialized);
}

} // namespace orvel::details
