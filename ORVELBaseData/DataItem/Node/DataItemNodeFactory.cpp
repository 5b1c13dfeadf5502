#include "ORVELBaseData/DataItem/Node/DataItemNodeFactory.h"

#include <ORVELBaseData/DataItem/DataItemLogMessages.h>
#include <ORVELUtil/UnitMutex.h>

namespace orvel
{

namespace
{

class Mutex : public UnitMutex<Mutex>
{
};
[[maybe_unused]] const bool g_mutexMade = Mutex::touch();

} // namespace

DataItemNodeFactory& DataItemNodeFactory::getInstance()
{
  const boost::mutex::scoped_lock lock(Mutex::get());
  static DataItemNodeFactory g_factoryInstance;
  return g_factoryInstance;
}

void DataItemNodeFactory::registerNode(const std::string& key, const NodeInfo& info)
{
  if (!_nodeInfoMap.try_emplace(key, info).second)
    raise(ORVEL_HERE, eDataItemMessage::eNodeAlreadyRegistred, key);
}

void DataItemNodeFactory::unRegisterNode(const std::string& key)
{
  const auto found = _nodeInfoMap.find(key);
  if (found == _nodeInfoMap.end())
    raise(ORVEL_HERE, eDataItemMessage::eNodeNotRegistredForRemoval, key);
  _nodeInfoMap.erase(found);
}

bool DataItemNodeFactory::isRegistredNode(const std::string& key) const
{
  return _nodeInfoMap.count(key) != 0;
}

ItemNameColl DataItemNodeFactory::getRegistredNodes() const
{
  ItemNameColl keys;
  for (const auto& [key, info] : _nodeInfoMap)
    keys.emplace_hint(keys.end(), key);
  return keys;
}

const DataItemNodeFactory::NodeInfo& DataItemNodeFactory::get(const std::string& key,
                                                              const SourceLocation& here) const
{
  const auto found = _nodeInfoMap.find(key);
  if (found == _nodeInfoMap.end())
    raise(here, eDataItemMessage::eNodeNotRegistred, key);
  return found->second;
}

const std::string& DataItemNodeFactory::getNodeName(const std::string& key) const
{
  return get(key, ORVEL_HERE).name;
}

const std::string& DataItemNodeFactory::getNodeToolTip(const std::string& key) const
{
  return get(key, ORVEL_HERE).toolTip;
}

const std::string& DataItemNodeFactory::getNodeLibraryName(const std::string& key) const
{
  return get(key, ORVEL_HERE).libraryName;
}

const boost::filesystem::path& DataItemNodeFactory::getNodeHeaderPath(const std::string& key) const
{
  return get(key, ORVEL_HERE).headerPath;
}

DataItemNodePtr DataItemNodeFactory::createNode(const std::string& key) const
{
  return get(key, ORVEL_HERE).creatorFcn();
}

} // namespace orvel
