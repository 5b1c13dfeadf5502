#include "ORVELUtil/LogMessageFormater.h"

#include <locale>

#include <boost/format.hpp>

#include <ORVELUtil/LogMessageManager.h>

namespace orvel
{

struct LogMessageFormater::State
{
  explicit State(const LogMessageManager& textManager)
    : manager(textManager)
    , format("", std::locale::classic())
  {
  }

  /// Moves the current format to the output if all its placeholders are bound.
  void moveIfFinished()
  {
    if (format.remaining_args() != 0)
      return;
    boost::format empty("", std::locale::classic());
    output += format.str();
    format.swap(empty);
  }

  const LogMessageManager& manager;
  boost::format format; // empty, or with an unbound placeholder
  std::string output;   // not a stream, which would swallow the end of memory and truncate the text
};

LogMessageFormater::LogMessageFormater(const LogMessageManager& manager)
  : _state(std::make_unique<State>(manager))
{
}

LogMessageFormater::~LogMessageFormater() = default;

LogMessageFormater& LogMessageFormater::setMsgId(const std::string& domainKey, int id)
{
  _state->format = boost::format(_state->manager.getMessage(domainKey, id), std::locale::classic());
  _state->moveIfFinished();
  return *this;
}

template <class T>
LogMessageFormater& LogMessageFormater::operator%(const T& argument)
{
  _state->format % argument;
  _state->moveIfFinished();
  return *this;
}

LogMessageFormater& LogMessageFormater::operator<<(const std::string& text)
{
  _state->output += text;
  return *this;
}

std::string LogMessageFormater::string() const
{
  return _state->output + _state->format.str();
}

template LogMessageFormater& LogMessageFormater::operator%(const std::string&);
template LogMessageFormater& LogMessageFormater::operator%(const char* const&);
template LogMessageFormater& LogMessageFormater::operator%(const unsigned int&);
template LogMessageFormater& LogMessageFormater::operator%(const unsigned long&);
template LogMessageFormater& LogMessageFormater::operator%(const int&);
template LogMessageFormater& LogMessageFormater::operator%(const float&);
template LogMessageFormater& LogMessageFormater::operator%(const double&);

} // namespace orvel
