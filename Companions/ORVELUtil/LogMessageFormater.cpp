#include "ORVELUtil/LogMessageFormater.h"

#include <locale>
#include <sstream>

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
    output.imbue(std::locale::classic());
  }

  const LogMessageManager& manager;
  boost::format format;
  std::ostringstream output;
};

LogMessageFormater::LogMessageFormater(const LogMessageManager& manager)
  : _state(std::make_unique<State>(manager))
{
}

LogMessageFormater::~LogMessageFormater() = default;

LogMessageFormater& LogMessageFormater::setMsgId(const std::string& domainKey, int id)
{
  _state->format = boost::format(_state->manager.getMessage(domainKey, id), std::locale::classic());
  return *this;
}

template <class T>
LogMessageFormater& LogMessageFormater::operator%(const T& argument)
{
  boost::format& format = _state->format;
  format % argument;
  if (format.remaining_args() == 0)
  {
    _state->output << format.str();
    format = boost::format("", std::locale::classic());
  }
  return *this;
}

LogMessageFormater& LogMessageFormater::operator<<(const std::string& text)
{
  _state->output << text;
  return *this;
}

std::string LogMessageFormater::string() const
{
  return _state->output.str() + _state->format.str();
}

template LogMessageFormater& LogMessageFormater::operator%(const std::string&);
template LogMessageFormater& LogMessageFormater::operator%(const char* const&);
template LogMessageFormater& LogMessageFormater::operator%(const unsigned int&);
template LogMessageFormater& LogMessageFormater::operator%(const unsigned long&);
template LogMessageFormater& LogMessageFormater::operator%(const int&);
template LogMessageFormater& LogMessageFormater::operator%(const float&);
template LogMessageFormater& LogMessageFormater::operator%(const double&);

} // namespace orvel
