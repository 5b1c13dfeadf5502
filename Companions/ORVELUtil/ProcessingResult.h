#pragma once

/// \file
/// \brief Result of an operation together with a message.

#include <string>
#include <type_traits>
#include <utility>

namespace orvel
{

/// \brief A result of type T and a message; a plain value.
///
/// A success is made from the result alone and has an empty message. A pointer is not a bool here: a message
/// that is given without a result does not compile.
template <class T>
class ProcessingResult
{
public:
  ProcessingResult(T result) ///< success: the message is empty
    : _result(std::move(result))
  {
  }
  ProcessingResult(T result, std::string message) ///< with a message, as failures have
    : _result(std::move(result))
    , _message(std::move(message))
  {
  }
  template <class Pointer, class... Message,
            std::enable_if_t<std::is_same_v<T, bool> && (std::is_pointer_v<std::decay_t<Pointer>> ||
                                                         std::is_member_pointer_v<std::decay_t<Pointer>>),
                             int> = 0>
  ProcessingResult(const Pointer& result, const Message&... message) = delete; ///< \see ProcessingResult

  const T& getResult() const { return _result; }
  const std::string& getMessage() const { return _message; } ///< empty for a success

  operator T() const { return _result; } ///< the result itself: `if (object.write(archive))`

private:
  T _result;
  std::string _message;
};

/// Result of every `write` and `read`: true, or false with the reason.
using BoolResult = ProcessingResult<bool>;

} // namespace orvel
