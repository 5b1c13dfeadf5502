#pragma once

/// \file
/// \brief Root of the kit's exceptions.

#include <exception>
#include <memory>
#include <string>

#include <boost/exception/exception.hpp>

#include <ORVELUtil/ORVELUtilExport.h>

namespace orvel
{

/// \brief A failure: its message, the raising function, its file and line, and its cause.
///
/// Copies share their texts: copying never throws. The exception keeps a copy of the texts of its cause, and
/// of the causes of that, so the cause itself may be destroyed. `std::bad_alloc`, `std::bad_array_new_length`
/// and UnHandleException also keep their type.
class ORVELUTIL_EXPORT BaseException : public std::exception, public boost::exception
{
public:
  /// \param message what went wrong
  /// \param function signature of the raising function, may be null
  /// \param file source file of the raising statement, may be null
  /// \param line line of the raising statement
  BaseException(const std::string& message, const char* function, const char* file, unsigned int line);

  /// \param cause the failure that led to this one
  BaseException(const std::string& message, const char* function, const char* file, unsigned int line,
                const BaseException& cause);

  /// \param cause the failure that led to this one
  BaseException(const std::string& message, const char* function, const char* file, unsigned int line,
                const std::exception& cause);

  BaseException(const BaseException& other) noexcept;
  BaseException& operator=(const BaseException& other) noexcept;
  ~BaseException() noexcept override;

  /// \brief Return "message [function, file:line]; cause: ", followed by the text of the cause.
  ///
  /// What is not known is left out. The text is valid as long as the exception.
  const char* what() const noexcept override;

  const std::string& getMessage() const noexcept;  ///< what went wrong
  const std::string& getFunction() const noexcept; ///< signature of the raising function
  const std::string& getFile() const noexcept;     ///< source file of the raising statement
  unsigned int getLine() const noexcept;           ///< line of the raising statement

  /// \brief Return the cause, null if there is none. It lives as long as this exception.
  const std::exception* getCause() const noexcept;

private:
  struct Texts;

  std::shared_ptr<const Texts> _texts;
};

} // namespace orvel
