#include "ORVELUtil/LogMessageManager.h"

#include <memory>
#include <stdexcept>

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

LogMessageManager::LogMessageManager(std::string key)
  : _key(std::move(key))
{
}

LogMessageManager& LogMessageManager::getInstance(const std::string& key)
{
  static LogMessageManagers g_managers;
  return g_managers.get(key);
}

void LogMessageManager::addMessage(const std::string& domainKey, int id, const std::string& text)
{
  const std::lock_guard<std::mutex> lock(_mutex);
  _texts.insert_or_assign(std::pair(domainKey, id), text); // whole or not at all
}

std::string LogMessageManager::getMessage(const std::string& domainKey, int id) const
{
  const std::lock_guard<std::mutex> lock(_mutex);
  const auto found = _texts.find({domainKey, id});
  if (found == _texts.end())
    throw std::out_of_range("No message " + std::to_string(id) + " of domain " + domainKey +
                            " in the table of " + _key);
  return found->second;
}

} // namespace orvel
