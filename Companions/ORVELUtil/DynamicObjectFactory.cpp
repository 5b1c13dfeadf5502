#include "ORVELUtil/DynamicObjectFactory.h"

#include <algorithm>
#include <map>
#include <memory>
#include <type_traits>
#include <vector>

#include <ORVELUtil/ORVELUtilLogMessages.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

struct DynamicObjectFactory::Table
{
  std::map<std::string, std::vector<Creators>> entries; // per name, oldest first; never an empty list
};

// Initialised at compile time and without clean-up: there is no moment at which it is not usable.
DynamicObjectFactory DynamicObjectFactory::g_instance;

DynamicObjectFactory& DynamicObjectFactory::getInstance()
{
  static_assert(std::is_trivially_destructible_v<std::mutex>);
  return g_instance;
}

void DynamicObjectFactory::registerClass(const std::string& className, NewFunction newFcn,
                                         SharedFunction sharedFcn)
{
  const std::lock_guard<std::mutex> lock(_mutex);
  std::unique_ptr<Table> newTable;
  if (_table == nullptr)
    newTable = std::make_unique<Table>();
  Table& table = _table == nullptr ? *newTable : *_table;

  const auto found = table.entries.find(className);
  if (found != table.entries.end())
    found->second.push_back({newFcn, sharedFcn});
  else
    table.entries.emplace(className, std::vector<Creators>{{newFcn, sharedFcn}});

  if (newTable)
    _table = newTable.release();
  ++_changeCount;
}

template <class Predicate>
void DynamicObjectFactory::removeNewest(const std::string& className, Predicate predicate)
{
  const std::lock_guard<std::mutex> lock(_mutex);
  if (_table == nullptr)
    return;
  const auto found = _table->entries.find(className);
  if (found == _table->entries.end())
    return;

  std::vector<Creators>& entries = found->second;
  const auto newest = std::find_if(entries.rbegin(), entries.rend(), predicate);
  if (newest == entries.rend())
    return;
  ++_changeCount;
  entries.erase(std::next(newest).base());
  if (entries.empty())
    _table->entries.erase(found);
  if (_table->entries.empty())
  {
    delete _table;
    _table = nullptr;
  }
}

void DynamicObjectFactory::unRegisterClass(const std::string& className)
{
  removeNewest(className, [](const Creators&) { return true; });
}

void DynamicObjectFactory::unRegisterClass(const std::string& className, NewFunction newFcn)
{
  removeNewest(className, [newFcn](const Creators& entry) { return entry.newFcn == newFcn; });
}

bool DynamicObjectFactory::findCreators(const std::string& className, Creators& creators) const
{
  const std::lock_guard<std::mutex> lock(_mutex);
  if (_table == nullptr)
    return false;
  const auto found = _table->entries.find(className);
  if (found == _table->entries.end())
    return false;
  creators = found->second.front();
  return true;
}

// Creators run, and failures are raised, without the lock: a constructor or a log appender may well
// create by name itself.

BaseDynamicObject* DynamicObjectFactory::createNew(const std::string& className) const
{
  Creators creators;
  if (!findCreators(className, creators))
    raise(ORVEL_HERE, eORVELUtilErrors::eUnknownClassName, className);
  if (creators.newFcn == nullptr)
    raise(ORVEL_HERE, eORVELUtilErrors::eNoNewCreator, className);
  return creators.newFcn();
}

DynamicObjectPtr DynamicObjectFactory::createShared(const std::string& className) const
{
  Creators creators;
  if (!findCreators(className, creators))
    raise(ORVEL_HERE, eORVELUtilErrors::eUnknownClassName, className);
  if (creators.sharedFcn == nullptr)
    raise(ORVEL_HERE, eORVELUtilErrors::eNoSharedCreator, className);
  return creators.sharedFcn();
}

DynamicObjectFactory::SharedFunction
DynamicObjectFactory::findSharedFunction(const std::string& className) const
{
  Creators creators;
  return findCreators(className, creators) ? creators.sharedFcn : nullptr;
}

bool DynamicObjectFactory::isRegistered(const std::string& className) const
{
  Creators creators;
  return findCreators(className, creators);
}

std::set<std::string> DynamicObjectFactory::getRegisteredClassNames() const
{
  const std::lock_guard<std::mutex> lock(_mutex);
  std::set<std::string> names;
  if (_table != nullptr)
    for (const auto& [name, creators] : _table->entries)
      names.insert(names.end(), name);
  return names;
}

} // namespace orvel
