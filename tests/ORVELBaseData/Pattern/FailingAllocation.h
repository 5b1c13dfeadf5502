#pragma once

/// \file
/// \brief Runs an operation out of memory at each of its allocations in turn.

#include <cstddef>
#include <new>

namespace orvel::test
{

/// \brief Let the allocation after the next nbAllowed ones of this program fail with std::bad_alloc, once.
void failAllocationAfter(std::size_t nbAllowed);

/// \brief Let no allocation fail any more.
void failNoAllocation();

/// \brief Return the number of blocks of operator new that are in use.
std::ptrdiff_t getNbBlocksInUse();

/// \brief Call an operation until it succeeds, with its first allocation failing, then its second and so on;
/// call check after each failure.
/// \return how many times it failed
template <class Operation, class Check>
std::size_t failAtEachAllocation(Operation operation, Check check)
{
  for (std::size_t nbFailures = 0;; ++nbFailures)
  {
    failAllocationAfter(nbFailures);
    try
    {
      operation();
    }
    catch (const std::bad_alloc&)
    {
      failNoAllocation();
      check();
      continue;
    }
    failNoAllocation();
    return nbFailures;
  }
}

} // namespace orvel::test
