#include "ORVELUtil/LogMessageManager.h"

#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace orvel
{

/// All instances by key.
struct LogMessageManagers
{
  std::mutex mutex;
  std::map<std::string, std::unique_ptr<LogMessageManager>> instances;

  LogMessageManager& get(const std::string& key)
  {
    const std::lock_guard<std::mutex> lock(mutex);
    std::unique_ptr<LogMessageManager>& instance = instances[key];
    if (!instance)
      instance.reset(new LogMessageManager(key));
    return *instance;
  }
};

struct LogMessageManager::State
{
  std::string key;
  std::mutex mutex;
  std::map<std::pair<std::string, int>, std::string> texts;
};

LogMessageManager::LogMessageManager(const std::string& key)
  : _state(new State{key, {}, {}})
{
}

LogMessageManager::~LogMessageManager() = default;

LogMessageManager& LogMessageManager::getInstance(const std::string& key)
{
  static LogMessageManagers g_managers;
  return g_managers.get(key);
}

void LogMessageManager::addMessage(const std::string& domainKey, int id, const std::string& text)
{
  const std::lock_guard<std::mutex> lock(_state->mutex);
  _state->texts.insert_or_assign(std::pair(domainKey, id), text); // whole or not at all
}

std::string LogMessageManager::getMessage(const std::string& domainKey, int id) const
{
  const std::lock_guard<std::mutex> lock(_state->mutex);
  const auto found = _state->texts.find({domainKey, id});
  if (found == _state->texts.end())
    throw std::out_of_range("No message " + std::to_string(id) + " of domain " + domainKey +
                            " in the table of " + _state->key);
  return found->second;
}

} // namespace orvel
