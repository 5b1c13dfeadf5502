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

const DataItemNodeFactory::NodeInfo* DataItemNodeFactory::find(const std::string& key) const
{
  const auto found = _nodeInfoMap.find(key);
  return found == _nodeInfoMap.end() ? nullptr : &found->second;
}

bool DataItemNodeFactory::isRegistredNode(const std::string& key) const
{
  return find(key) != nullptr;
}

ItemNameColl DataItemNodeFactory::getRegistredNodes() const
{
  ItemNameColl keys;
  for (const auto& [key, info] : _nodeInfoMap)
    keys.emplace_hint(keys.end(), key);
  return keys;
}

const std::string& DataItemNodeFactory::getNodeName(const std::string& key) const
{
  const NodeInfo* const info = find(key);
  if (info == nullptr)
    raise(ORVEL_HERE, eDataItemMessage::eNodeNotRegistred, key);
  return info->name;
}

const std::string& DataItemNodeFactory::getNodeToolTip(const std::string& key) const
{
  const NodeInfo* const info = find(key);
  if (info == nullptr)
    raise(ORVEL_HERE, eDataItemMessage::eNodeNotRegistred, key);
  return info->toolTip;
}

const std::string& DataItemNodeFactory::getNodeLibraryName(const std::string& key) const
{
  const NodeInfo* const info = find(key);
  if (info == nullptr)
    raise(ORVEL_HERE, eDataItemMessage::eNodeNotRegistred, key);
  return info->libraryName;
}

const boost::filesystem::path& DataItemNodeFactory::getNodeHeaderPath(const std::string& key) const
{
  const NodeInfo* const info = find(key);
  if (info == nullptr)
    raise(ORVEL_HERE, eDataItemMessage::eNodeNotRegistred, key);
  return info->headerPath;
}

DataItemNodePtr DataItemNodeFactory::createNode(const std::string& key) const
{
  const NodeInfo* const info = find(key);
  if (info == nullptr)
    raise(ORVEL_HERE, eDataItemMessage::eNodeNotRegistred, key);
  return info->creatorFcn();
}

} // namespace orvel
