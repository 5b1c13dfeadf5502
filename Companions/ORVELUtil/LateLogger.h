#pragma once

/// \file
/// \brief A logger that is made at load and got from log4cplus on first use.

#include <mutex>
#include <string>

#include <log4cplus/logger.h>

namespace orvel::details
{

/// \brief A logger that is got from log4cplus on first use and lives until its library is unloaded.
///
/// It is made at load, empty: log4cplus belongs to the application and is not touched then, and what a
/// function made on its first call would be destroyed before the static objects of the application, whose
/// destructors may still raise. May be used by several threads at once.
class LateLogger
{
public:
  log4cplus::Logger& get(const std::string& name)
  {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!_got)
    {
      _logger = log4cplus::Logger::getInstance(name);
      _got = true;
    }
    return _logger;
  }

private:
  std::mutex _mutex;
  bool _got = false;
  log4cplus::Logger _logger;
};

} // namespace orvel::details
