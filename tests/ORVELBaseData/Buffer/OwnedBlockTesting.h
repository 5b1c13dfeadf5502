#pragma once

/// \file
/// \brief What the tests of owned blocks share.

#include <cstddef>
#include <cstring>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <support/FailingAllocation.h>

namespace orvel::test
{

/// \brief Return the bytes of values, in the byte order of the machine.
template <class T>
std::string bytesOf(const std::vector<T>& values)
{
  return std::string(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
}

/// \brief Return the bytes of a buffer's elements.
inline std::string contentsOf(const BaseBlockBuffer& buffer)
{
  return std::string(static_cast<const char*>(buffer.getDataPtr()), buffer.getMemorySize());
}

/// \brief Set the bytes of a buffer's elements, all of them.
inline void setContents(BaseBlockBuffer& buffer, const std::string& bytes)
{
  if (bytes.size() != buffer.getMemorySize())
    throw std::logic_error("these are not the bytes of all elements");
  std::memcpy(buffer.getDataPtr(), bytes.data(), bytes.size());
}

/// \brief Tell whether a failure has a std::bad_alloc as its cause.
inline bool isCausedByBadAlloc(const BaseException& failure)
{
  return dynamic_cast<const std::bad_alloc*>(failure.getCause()) != nullptr;
}

/// \brief What an operation that ran out of memory has thrown.
enum class OutOfMemory
{
  raised, ///< ORVELBaseDataException
  passed  ///< anything else, such as the std::bad_alloc itself
};

/// \brief Call an operation until it succeeds, with its first allocation failing, then its second and so on.
///
/// After each failure check is called with what was thrown, when the exception is gone.
/// \return how many times the operation failed
template <class Operation, class Check>
std::size_t failInTurn(Operation operation, Check check)
{
  for (std::size_t nbFailures = 0;; ++nbFailures)
  {
    OutOfMemory thrown = OutOfMemory::passed;
    failAllocationAfter(nbFailures);
    try
    {
      operation();
      failNoAllocation();
      return nbFailures;
    }
    catch (const ORVELBaseDataException&)
    {
      thrown = OutOfMemory::raised;
    }
    catch (const std::exception&)
    {
    }
    failNoAllocation();
    check(thrown);
  }
}

} // namespace orvel::test
