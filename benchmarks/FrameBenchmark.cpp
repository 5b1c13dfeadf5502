// The frame's small costs: creation by class name, the class-name text, the version.

#include <memory>
#include <string>
#include <unordered_map>

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "BenchmarkSupport.h"
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELUtil/DynamicObjectFactory.h>

namespace orvel::benchmarks
{

namespace
{

using NewFunction = BaseDynamicObject* (*)();
using SharedFunction = DynamicObjectPtr (*)();

const std::string g_kernelName = "orvel::KernelXY";

/// What a factory without lock and without several modules would do.
struct Creators
{
  NewFunction newFcn;
  SharedFunction sharedFcn;
};
using CreatorTable = std::unordered_map<std::string, Creators>;

template <class T>
void enterClass(CreatorTable& table)
{
  table[T::getTypeName()] = {[]() -> BaseDynamicObject* { return T::createNewObject(); },
                             []() -> DynamicObjectPtr
                             {
                               return T::createSharedObject();
                             }};
}

const CreatorTable& getTable()
{
  static const CreatorTable g_table = []
  {
    CreatorTable table;
    enterClass<KernelXY>(table);
    enterClass<ElementsRange>(table);
    // The names of all registered classes, so that the look-up is not easier than ours.
    for (const std::string& name : DynamicObjectFactory::getInstance().getRegisteredClassNames())
    {
      table.try_emplace(name);
    }
    return table;
  }();
  return g_table;
}

/// Creates until the end of the run; the last object shows whether the right class came out.
template <class Create>
void timeCreation(benchmark::State& state, Create create)
{
  const auto sample = create();
  if (!check(state, sample && sample->getClassName() == g_kernelName, "an object of another class came out"))
  {
    return;
  }
  for ([[maybe_unused]] auto _ : state)
  {
    auto object = create();
    benchmark::DoNotOptimize(object);
  }
}

template <class Create>
void addCreation(const std::string& group, const std::string& side, Create create)
{
  addCase(
      group, side, [create](benchmark::State& state) { timeCreation(state, create); },
      benchmark::kNanosecond);
}

using Owned = std::unique_ptr<BaseDynamicObject>;

void addCreationCases()
{
  addCreation("create_shared", "orvel",
              [] { return DynamicObjectFactory::getInstance().createShared(g_kernelName); });
  addCreation("create_shared", "make_shared",
              [] { return DynamicObjectPtr(boost::make_shared<KernelXY>()); });
  addCreation("create_shared", "table", [] { return getTable().find(g_kernelName)->second.sharedFcn(); });

  addCreation("create_new", "orvel",
              [] { return Owned(DynamicObjectFactory::getInstance().createNew(g_kernelName)); });
  addCreation("create_new", "new", [] { return Owned(new KernelXY); });
  addCreation("create_new", "table", [] { return Owned(getTable().find(g_kernelName)->second.newFcn()); });
}

void addNameCases()
{
  addCase(
      "type_name", "orvel",
      [](benchmark::State& state)
      {
        if (!check(state, ElementsRange::getTypeName() == "orvel::ElementsRange", "wrong class name"))
        {
          return;
        }
        for ([[maybe_unused]] auto _ : state)
        {
          benchmark::DoNotOptimize(&ElementsRange::getTypeName());
        }
      },
      benchmark::kNanosecond);
  addCase(
      "version", "orvel",
      [](benchmark::State& state)
      {
        if (!check(state, ElementsRange::getVersion() != 0U, "the class has no version"))
        {
          return;
        }
        for ([[maybe_unused]] auto _ : state)
        {
          benchmark::DoNotOptimize(ElementsRange::getVersion());
        }
      },
      benchmark::kNanosecond);
  for (const char* group : {"type_name", "version"})
  {
    addCase(
        group, "boost_mutex",
        [](benchmark::State& state)
        {
          static boost::mutex g_mutex;
          for ([[maybe_unused]] auto _ : state)
          {
            const boost::lock_guard<boost::mutex> lock(g_mutex);
            benchmark::ClobberMemory();
          }
        },
        benchmark::kNanosecond);
  }
}

} // namespace

void addFrameCases()
{
  addCreationCases();
  addNameCases();
}

} // namespace orvel::benchmarks
