#pragma once

/// \file
/// \brief What the standard library does with memory, in functions that nothing is inlined from.

#include <cstddef>
#include <cstdint>

namespace orvel::benchmarks
{

/// \brief std::reverse_copy of elements of so many bytes.
void reverseCopy(void* dst, std::size_t elementSize, std::size_t nbElements, const void* src);

/// \brief std::fill with the low bytes of a value.
void fill(void* dst, std::size_t elementSize, std::size_t nbElements, std::uint64_t value);

} // namespace orvel::benchmarks
