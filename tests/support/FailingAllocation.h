#pragma once

/// \file
/// \brief Runs an operation out of memory at each of its allocations in turn.
///
/// A program that uses it lists FailingAllocation.cpp among its sources: its operators new and delete become
/// those of the program and of the libraries.

#include <cstddef>
#include <new>

namespace orvel::test
{

/// \brief Let the allocation after the next nbAllowed ones of this program fail with std::bad_alloc, once.
void failAllocationAfter(std::size_t nbAllowed);

/// \brief The same for the allocations of arrays, the raw blocks of buffers among them; others succeed.
void failArrayAllocationAfter(std::size_t nbAllowed);

/// \brief Return the size in bytes that the latest allocation of an array asked for.
std::size_t getLatestArraySize();

/// \brief Return how many arrays have been allocated so far.
std::size_t getNbArraysAllocated();

/// \brief Let no allocation fail any more.
void failNoAllocation();

/// \brief Return the number of blocks of operator new that are in use.
std::ptrdiff_t getNbBlocksInUse();

/// \brief Return the number of bytes that operator new was asked for since the program started.
std::size_t getAllocatedBytes();

/// \brief Let every new block hold this byte all over, so that it shows what a constructor leaves alone.
void fillBlocksWith(unsigned char byte);

/// \brief Let new blocks hold what they hold again.
void fillNoBlocks();

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
