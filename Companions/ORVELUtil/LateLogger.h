#pragma once

/// \file
/// \brief A logger that is obtained from log4cplus on first use.

#include <mutex>
#include <string>

#include <log4cplus/logger.h>

namespace orvel::details
{

/// \brief A logger that is obtained from log4cplus on first use and lives until its library is unloaded.
///
/// The library constructs it at load, empty: log4cplus belongs to the application and is not touched then. If
/// it were constructed on first use, it would be destroyed before static objects of the application, whose
/// destructors may still raise failures. May be used by several threads at once.
class LateLogger
{
public:
  log4cplus::Logger& get(const std::string& name)
  {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!_isObtained)
    {
      _logger = log4cplus::Logger::getInstance(name);
      _isObtained = true;
    }
    return _logger;
  }

private:
  std::mutex _mutex;
  bool _isObtained = false;
  log4cplus::Logger _logger;
};

} // namespace orvel::details
