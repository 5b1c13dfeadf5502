#pragma once

/// \file
/// \brief Arithmetic on addresses that callers may take beyond the memory in use.

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief Return the address so many bytes behind another one, wrapping around.
///
/// Computed as a number: a pointer may not leave its block, and callers may give any index.
inline void* addressBehind(const void* address, ipUInt64 offsetInBytes)
{
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  return reinterpret_cast<void*>(reinterpret_cast<ipUInt64>(address) + offsetInBytes);
}

} // namespace orvel::details
