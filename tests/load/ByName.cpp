// The program and two plug-ins register a class under one name and take it out by that name alone: each takes
// out its own, in every order.
#include "ByName.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <vector>

#include "Check.h"

namespace
{

using orvel::DynamicObjectFactory;
using orvel::test::Plugin;
using orvel::test::require;

/// Requires that these modules have an entry, oldest first.
void requireEntriesOf(const std::vector<std::string>& modules)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  if (modules.empty())
  {
    require(!factory.isRegistered(g_name), "no entry is left");
    return;
  }
  const std::unique_ptr<orvel::BaseDynamicObject> object(factory.createNew(g_name));
  require(object->getClassName() == modules.front(), modules.front().c_str());
  require(factory.createShared(g_name)->getClassName() == modules.front(), modules.front().c_str());
}

/// The ways in which a module's entry comes and goes.
struct Party
{
  std::string name;
  std::function<void()> enter;
  std::function<void()> takeOut;
};

void enterAndTakeOut(const std::vector<Party>& parties, const std::vector<std::size_t>& coming,
                     const std::vector<std::size_t>& going)
{
  std::vector<std::string> modules;
  for (const std::size_t party : coming)
  {
    parties[party].enter();
    modules.push_back(parties[party].name);
    requireEntriesOf(modules);
  }
  for (const std::size_t party : going)
  {
    parties[party].takeOut();
    modules.erase(std::find(modules.begin(), modules.end(), parties[party].name));
    requireEntriesOf(modules);
  }
}

void inEveryOrder(const std::vector<Party>& parties)
{
  std::vector<std::size_t> coming = {0, 1, 2};
  do
  {
    std::vector<std::size_t> going = {0, 1, 2};
    do
      enterAndTakeOut(parties, coming, going);
    while (std::next_permutation(going.begin(), going.end()));
  } while (std::next_permutation(coming.begin(), coming.end()));
}

/// Takes the entries out with functions of the plug-ins first: their unload then has nothing to take out.
void inEveryOrderBy(const char* const* files, const char* function, void (*takeOutOfProgram)())
{
  std::optional<Plugin> plugins[2];
  const auto party = [&](std::size_t number, const char* name)
  {
    return Party{name, [&plugins, number, files] { plugins[number].emplace(files[number]); },
                 [&plugins, number, function]
                 {
                   plugins[number]->getFunction<void()>(function)();
                 }};
  };
  const std::vector<Party> parties = {
      {"program", &enter, takeOutOfProgram}, party(0, "plug-in 1"), party(1, "plug-in 2")};
  std::vector<std::size_t> coming = {0, 1, 2};
  do
  {
    std::vector<std::size_t> going = {0, 1, 2};
    do
    {
      enterAndTakeOut(parties, coming, going);
      enter();
      plugins[0].reset();
      plugins[1].reset();
      requireEntriesOf({"program"});
      takeOut();
    } while (std::next_permutation(going.begin(), going.end()));
  } while (std::next_permutation(coming.begin(), coming.end()));
}

void registerForPlugin(DynamicObjectFactory::NewFunction newFcn,
                       DynamicObjectFactory::SharedFunction sharedFcn)
{
  DynamicObjectFactory::getInstance().registerClass(g_name, newFcn, sharedFcn);
}

/// An entry belongs to the module of its creators, and else to the module that registered it.
void registerCreatorsOfAPlugin(const char* file)
{
  const auto registerThem = [](const Plugin& plugin)
  {
    plugin.getFunction<void(decltype(&registerForPlugin))>("enterForProgram")(&registerForPlugin);
  };
  const Plugin plugin(file);
  plugin.getFunction<void()>("takeOutOfPlugin")();
  requireEntriesOf({});

  registerThem(plugin);
  requireEntriesOf({"plug-in 1"});
  takeOut();
  requireEntriesOf({});

  registerThem(plugin);
  enter();
  plugin.getFunction<void()>("takeOutOfPlugin")();
  requireEntriesOf({"program"});

  registerThem(plugin);
  takeOut(); // the program's own creators come first
  requireEntriesOf({"plug-in 1"});
  takeOut();
  requireEntriesOf({});
}

/// Code that belongs to no module takes out the newest entry.
void takeOutFromCodeOfNoModule(const char* file)
{
#ifdef __x86_64__
  const Plugin plugin(file);
  enter();
  // The member functions of the interface, by the names that the library exports.
  void* const function = dlsym(RTLD_DEFAULT, "_ZN5orvel20DynamicObjectFactory15unRegisterClassERKNSt7__"
                                             "cxx1112basic_stringIcSt11char_traitsIcESaIcEEE");
  require(function != nullptr, "unRegisterClass(name) is exported");

  // mov rax, rdi; mov rdi, rsi; mov rsi, rdx; sub rsp, 8; call rax; add rsp, 8; ret
  const unsigned char code[] = {0x48, 0x89, 0xF8, 0x48, 0x89, 0xF7, 0x48, 0x89, 0xD6, 0x48,
                                0x83, 0xEC, 0x08, 0xFF, 0xD0, 0x48, 0x83, 0xC4, 0x08, 0xC3};
  void* const page = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  require(page != MAP_FAILED, "a page for code");
  std::memcpy(page, code, sizeof(code));
  require(mprotect(page, 4096, PROT_READ | PROT_EXEC) == 0, "code can be run");
  const auto call = reinterpret_cast<void (*)(void*, DynamicObjectFactory*, const std::string*)>(page);

  requireEntriesOf({"plug-in 1", "program"});
  call(function, &DynamicObjectFactory::getInstance(), &g_name);
  takeOut(); // nothing: the program's entry is gone
  requireEntriesOf({"plug-in 1"});
  call(function, &DynamicObjectFactory::getInstance(), &g_name);
  requireEntriesOf({});
  munmap(page, 4096);
#else
  static_cast<void>(file);
#endif
}

} // namespace

int main(int argc, char** argv)
{
  require(argc == 3, "usage: LoadByName PLUGIN1 PLUGIN2");
  const char* const* const files = argv + 1;

  std::optional<Plugin> plugins[2];
  inEveryOrder({{"program", &enter, &takeOut},
                {"plug-in 1", [&] { plugins[0].emplace(files[0]); },
                 [&]
                 {
                   plugins[0].reset();
                 }},
                {"plug-in 2", [&] { plugins[1].emplace(files[1]); },
                 [&]
                 {
                   plugins[1].reset();
                 }}});
  inEveryOrderBy(files, "takeOutOfPlugin", &takeOut);
  inEveryOrderBy(files, "takeOutOfPluginByPointer", &takeOutByPointer);
  registerCreatorsOfAPlugin(files[0]);
  takeOutFromCodeOfNoModule(files[0]);
  require(DynamicObjectFactory::getInstance().getRegisteredClassNames().empty(), "nothing is left");
  return 0;
}
