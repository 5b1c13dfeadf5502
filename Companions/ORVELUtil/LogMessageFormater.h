#pragma once

/// \file
/// \brief Makes a text of a message id and its arguments.

#include <cstddef>
#include <memory>
#include <string>
#include <typeinfo>

#include <ORVELUtil/ORVELUtilExport.h>

namespace orvel
{

class LogMessageManager;

/// \brief Turns a message id and arguments into a text, with the rules of boost::format.
///
/// \code
/// LogMessageFormater message(manager);
/// message[eKernelMessage::eInvalidStdDevX] % stdDev;
/// throw message.string();
/// \endcode
/// A text is finished when its last placeholder is bound; a text without placeholders is finished at once. It
/// is appended to the output, and the current format is empty again.
///
/// Numbers are written as in the "C" locale, whatever locale is set. A formatter belongs to one thread.
class ORVELUTIL_EXPORT LogMessageFormater
{
public:
  /// \param manager table of the texts; must outlive the formatter
  explicit LogMessageFormater(const LogMessageManager& manager);
  ~LogMessageFormater();

  LogMessageFormater(const LogMessageFormater&) = delete;
  LogMessageFormater& operator=(const LogMessageFormater&) = delete;

  /// \brief Look a text up and make it the current format. A text that is not finished is dropped.
  /// \throw std::out_of_range if the table has no such text; the current format is unchanged
  /// \throw boost::io::format_error if the text is not a valid format
  LogMessageFormater& setMsgId(const std::string& domainKey, int id);

  /// \brief Make the text of a message domain's enumerator the current format. \see setMsgId
  template <class Domain>
  LogMessageFormater& operator[](const Domain& value)
  {
    return setMsgId(typeid(Domain).name(), static_cast<int>(value));
  }

  /// \brief Bind the next placeholder of the current format.
  ///
  /// T is std::string, const char*, unsigned int, unsigned long, int, float or double. T decides how the
  /// argument is printed, not the letter of the placeholder.
  /// \throw boost::io::too_many_args if no placeholder is left
  template <class T>
  LogMessageFormater& operator%(const T& argument);

  /// \brief Bind a literal.
  template <std::size_t N>
  LogMessageFormater& operator%(const char (&argument)[N])
  {
    return *this % static_cast<const char*>(argument);
  }

  /// \brief Append to the output. This is how one formatter relays another's text.
  LogMessageFormater& operator<<(const std::string& text);

  /// \brief Return the output.
  /// \throw boost::io::too_few_args if the current format has an unbound placeholder
  std::string string() const;

private:
  struct State;

  std::unique_ptr<State> _state;
};

extern template ORVELUTIL_EXPORT LogMessageFormater& LogMessageFormater::operator%(const std::string&);
extern template ORVELUTIL_EXPORT LogMessageFormater& LogMessageFormater::operator%(const char* const&);
extern template ORVELUTIL_EXPORT LogMessageFormater& LogMessageFormater::operator%(const unsigned int&);
extern template ORVELUTIL_EXPORT LogMessageFormater& LogMessageFormater::operator%(const unsigned long&);
extern template ORVELUTIL_EXPORT LogMessageFormater& LogMessageFormater::operator%(const int&);
extern template ORVELUTIL_EXPORT LogMessageFormater& LogMessageFormater::operator%(const float&);
extern template ORVELUTIL_EXPORT LogMessageFormater& LogMessageFormater::operator%(const double&);

} // namespace orvel
