#include "ORVELUtil/DynamicObjectFactory.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <link.h>
#include <map>
#include <memory>
#include <mutex>
#include <type_traits>
#include <vector>

#include <ORVELUtil/ORVELUtilLogMessages.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

namespace
{

struct Entry
{
  DynamicObjectFactory::NewFunction newFcn = nullptr;
  DynamicObjectFactory::SharedFunction sharedFcn = nullptr;
  const void* creatorModule = nullptr;
  const void* callerModule = nullptr;
};

struct Table
{
  std::map<std::string, std::vector<Entry>> entries; // per name, oldest first; never an empty list
};

// Initialised at compile time and without clean-up: there is no moment at which these are not usable.
std::mutex g_mutex;
std::atomic<ipUInt64> g_changeCount = 0;
Table* g_table = nullptr; // exists while there is an entry, so that nothing is left behind at unload

static_assert(std::is_trivially_destructible_v<std::mutex>);

bool find(const std::string& className, Entry& entry)
{
  const std::lock_guard<std::mutex> lock(g_mutex);
  if (g_table == nullptr)
    return false;
  const auto found = g_table->entries.find(className);
  if (found == g_table->entries.end())
    return false;
  entry = found->second.front();
  return true;
}

/// Removes the entry that choose(newest, end) returns; the range ends with the oldest.
template <class Choice>
void remove(const std::string& className, Choice choose)
{
  const std::lock_guard<std::mutex> lock(g_mutex);
  if (g_table == nullptr)
    return;
  const auto found = g_table->entries.find(className);
  if (found == g_table->entries.end())
    return;

  std::vector<Entry>& entries = found->second;
  const auto chosen = choose(entries.rbegin(), entries.rend());
  if (chosen == entries.rend())
    return;
  ++g_changeCount;
  entries.erase(std::next(chosen).base());
  if (entries.empty())
    g_table->entries.erase(found);
  if (g_table->entries.empty())
  {
    delete g_table;
    g_table = nullptr;
  }
}

/// The search for the module of an address.
struct ModuleSearch
{
  std::uintptr_t address;
  const void* programHeaders = nullptr; // of the module, once it is found
};

int visitModule(dl_phdr_info* info, std::size_t /*size*/, void* data)
{
  auto& search = *static_cast<ModuleSearch*>(data);
  for (const ElfW(Phdr)* segment = info->dlpi_phdr; segment != info->dlpi_phdr + info->dlpi_phnum; ++segment)
    if (segment->p_type == PT_LOAD &&
        search.address - (info->dlpi_addr + segment->p_vaddr) < segment->p_memsz) // wraps below the segment
    {
      search.programHeaders = info->dlpi_phdr;
      return 1;
    }
  return 0;
}

/// Returns a pointer that identifies the module of an address, null if no module holds it.
///
/// Called without the factory's lock, as the loader has locks of its own. The one that this takes is free
/// while initialisers and clean-ups run; dladdr would wait for the end of a dlopen in another thread.
const void* findModule(const void* address)
{
  ModuleSearch search = {reinterpret_cast<std::uintptr_t>(address)};
  dl_iterate_phdr(&visitModule, &search);
  return search.programHeaders;
}

} // namespace

DynamicObjectFactory DynamicObjectFactory::g_instance;

DynamicObjectFactory& DynamicObjectFactory::getInstance()
{
  return g_instance;
}

void DynamicObjectFactory::registerClassOf(const void* addressInModule, const std::string& className,
                                           NewFunction newFcn, SharedFunction sharedFcn)
{
  const void* const creator =
      newFcn != nullptr ? reinterpret_cast<const void*>(newFcn) : reinterpret_cast<const void*>(sharedFcn);
  const Entry entry = {newFcn, sharedFcn, findModule(creator), findModule(addressInModule)};

  const std::lock_guard<std::mutex> lock(g_mutex);
  std::unique_ptr<Table> newTable;
  if (g_table == nullptr)
    newTable = std::make_unique<Table>();
  Table& table = g_table == nullptr ? *newTable : *g_table;

  const auto found = table.entries.find(className);
  if (found != table.entries.end())
    found->second.push_back(entry);
  else
    table.entries.emplace(className, std::vector<Entry>{entry});

  if (newTable)
    g_table = newTable.release();
  ++g_changeCount;
}

void DynamicObjectFactory::unRegisterClassOf(const void* addressInModule, const std::string& className)
{
  const void* const module = findModule(addressInModule);
  const auto choose = [module](auto newest, auto end)
  {
    if (module == nullptr)
      return newest;
    const auto byCreator =
        std::find_if(newest, end, [module](const Entry& entry) { return entry.creatorModule == module; });
    if (byCreator != end)
      return byCreator;
    return std::find_if(newest, end, [module](const Entry& entry) { return entry.callerModule == module; });
  };
  remove(className, choose);
}

// Reached by calls through a pointer; the header has the others.

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
  const auto choose = [newFcn](auto newest, auto end)
  {
    return std::find_if(newest, end, [newFcn](const Entry& entry) { return entry.newFcn == newFcn; });
  };
  remove(className, choose);
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

ipUInt64 DynamicObjectFactory::getChangeCount() const
{
  return g_changeCount;
}

bool DynamicObjectFactory::isRegistered(const std::string& className) const
{
  Entry entry;
  return find(className, entry);
}

std::set<std::string> DynamicObjectFactory::getRegisteredClassNames() const
{
  const std::lock_guard<std::mutex> lock(g_mutex);
  std::set<std::string> names;
  if (g_table != nullptr)
    for (const auto& [name, entries] : g_table->entries)
      names.insert(names.end(), name);
  return names;
}

} // namespace orvel
