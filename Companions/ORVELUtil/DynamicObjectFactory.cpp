#include "ORVELUtil/DynamicObjectFactory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <link.h>
#include <map>
#include <memory>
#include <type_traits>
#include <vector>

#include <ORVELUtil/ORVELUtilLogMessages.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

namespace
{

/// An address of which the module is looked for, and the module's program headers once it is found.
struct ModuleSearch
{
  std::uintptr_t address;
  const void* module = nullptr;
};

int visitModule(dl_phdr_info* info, std::size_t /*size*/, void* data)
{
  auto& search = *static_cast<ModuleSearch*>(data);
  for (const ElfW(Phdr)* segment = info->dlpi_phdr; segment != info->dlpi_phdr + info->dlpi_phnum; ++segment)
    if (segment->p_type == PT_LOAD &&
        search.address - (info->dlpi_addr + segment->p_vaddr) < segment->p_memsz) // unsigned: also not below
    {
      search.module = info->dlpi_phdr;
      return 1;
    }
  return 0;
}

/// Returns what tells the module of an address from the others, null if no module holds it.
///
/// Called without the factory's lock, as the loader has locks of its own. The one that this takes is free
/// while initialisers and clean-ups run; dladdr would wait for the end of a dlopen in another thread.
const void* findModule(const void* address)
{
  ModuleSearch search = {reinterpret_cast<std::uintptr_t>(address)};
  dl_iterate_phdr(&visitModule, &search);
  return search.module;
}

} // namespace

struct DynamicObjectFactory::Entry
{
  NewFunction newFcn = nullptr;
  SharedFunction sharedFcn = nullptr;
  const void* creatorsModule = nullptr;
  const void* callersModule = nullptr;
};

struct DynamicObjectFactory::Table
{
  std::map<std::string, std::vector<Entry>> entries; // per name, oldest first; never an empty list
};

// Initialised at compile time and without clean-up: there is no moment at which it is not usable.
DynamicObjectFactory DynamicObjectFactory::g_instance;

DynamicObjectFactory& DynamicObjectFactory::getInstance()
{
  static_assert(std::is_trivially_destructible_v<std::mutex>);
  return g_instance;
}

void DynamicObjectFactory::registerClassOf(const void* addressInModule, const std::string& className,
                                           NewFunction newFcn, SharedFunction sharedFcn)
{
  const void* const creator =
      newFcn != nullptr ? reinterpret_cast<const void*>(newFcn) : reinterpret_cast<const void*>(sharedFcn);
  const Entry entry = {newFcn, sharedFcn, findModule(creator), findModule(addressInModule)};

  const std::lock_guard<std::mutex> lock(_mutex);
  std::unique_ptr<Table> newTable;
  if (_table == nullptr)
    newTable = std::make_unique<Table>();
  Table& table = _table == nullptr ? *newTable : *_table;

  const auto found = table.entries.find(className);
  if (found != table.entries.end())
    found->second.push_back(entry);
  else
    table.entries.emplace(className, std::vector<Entry>{entry});

  if (newTable)
    _table = newTable.release();
  ++_changeCount;
}

/// Takes out the entry that choose(newest, end) returns; the range ends with the oldest.
template <class Choice>
void DynamicObjectFactory::remove(const std::string& className, Choice choose)
{
  const std::lock_guard<std::mutex> lock(_mutex);
  if (_table == nullptr)
    return;
  const auto found = _table->entries.find(className);
  if (found == _table->entries.end())
    return;

  std::vector<Entry>& entries = found->second;
  const auto chosen = choose(entries.rbegin(), entries.rend());
  if (chosen == entries.rend())
    return;
  ++_changeCount;
  entries.erase(std::next(chosen).base());
  if (entries.empty())
    _table->entries.erase(found);
  if (_table->entries.empty())
  {
    delete _table;
    _table = nullptr;
  }
}

void DynamicObjectFactory::unRegisterClassOf(const void* addressInModule, const std::string& className)
{
  const void* const module = findModule(addressInModule);
  remove(className,
         [module](auto newest, auto end)
         {
           if (module == nullptr)
             return newest;
           const auto ofCreators = std::find_if(
               newest, end, [module](const Entry& entry) { return entry.creatorsModule == module; });
           if (ofCreators != end)
             return ofCreators;
           return std::find_if(newest, end,
                               [module](const Entry& entry) { return entry.callersModule == module; });
         });
}

// What calls through a pointer reach; the header has the others.

[[gnu::noinline]] void DynamicObjectFactory::registerClass(const std::string& className, NewFunction newFcn,
                                                           SharedFunction sharedFcn)
{
  registerClassOf(__builtin_return_address(0), className, newFcn, sharedFcn);
}

[[gnu::noinline]] void DynamicObjectFactory::unRegisterClass(const std::string& className)
{
  unRegisterClassOf(__builtin_return_address(0), className);
}

void DynamicObjectFactory::unRegisterClass(const std::string& className, NewFunction newFcn)
{
  remove(className,
         [newFcn](auto newest, auto end) {
           return std::find_if(newest, end, [newFcn](const Entry& entry) { return entry.newFcn == newFcn; });
         });
}

bool DynamicObjectFactory::find(const std::string& className, Entry& entry) const
{
  const std::lock_guard<std::mutex> lock(_mutex);
  if (_table == nullptr)
    return false;
  const auto found = _table->entries.find(className);
  if (found == _table->entries.end())
    return false;
  entry = found->second.front();
  return true;
}

// Creators run, and failures are raised, without the lock: a constructor or a log appender may well
// create by name itself.

BaseDynamicObject* DynamicObjectFactory::createNew(const std::string& className) const
{
  Entry entry;
  if (!find(className, entry))
    raise(ORVEL_HERE, eORVELUtilErrors::eUnknownClassName, className);
  if (entry.newFcn == nullptr)
    raise(ORVEL_HERE, eORVELUtilErrors::eNoNewCreator, className);
  return entry.newFcn();
}

DynamicObjectPtr DynamicObjectFactory::createShared(const std::string& className) const
{
  Entry entry;
  if (!find(className, entry))
    raise(ORVEL_HERE, eORVELUtilErrors::eUnknownClassName, className);
  if (entry.sharedFcn == nullptr)
    raise(ORVEL_HERE, eORVELUtilErrors::eNoSharedCreator, className);
  return entry.sharedFcn();
}

DynamicObjectFactory::SharedFunction
DynamicObjectFactory::findSharedFunction(const std::string& className) const
{
  Entry entry;
  return find(className, entry) ? entry.sharedFcn : nullptr;
}

bool DynamicObjectFactory::isRegistered(const std::string& className) const
{
  Entry entry;
  return find(className, entry);
}

std::set<std::string> DynamicObjectFactory::getRegisteredClassNames() const
{
  const std::lock_guard<std::mutex> lock(_mutex);
  std::set<std::string> names;
  if (_table != nullptr)
    for (const auto& [name, entries] : _table->entries)
      names.insert(names.end(), name);
  return names;
}

} // namespace orvel
