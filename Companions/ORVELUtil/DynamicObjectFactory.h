#pragma once

/// \file
/// \brief Process-wide registry from class names to creators.

#include <set>
#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELUtil/BaseDynamicObject.h>
#include <ORVELUtil/ORVELUtilExport.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

namespace details
{

/// \brief Return an address within the module (the program or shared library) of the caller.
///
/// Hidden, so that each module has a function of its own.
[[gnu::visibility("hidden")]] inline const void* addressInThisModule()
{
  return reinterpret_cast<const void*>(&addressInThisModule);
}

} // namespace details

/// \brief Registry from class-name text to the two functions that create an object of the class.
///
/// Libraries register their classes when they are loaded and remove them when they are unloaded
/// (\see DynamicRegistrator). Several modules may register one name; a module is the program or a shared
/// library. Each registration is an entry of its own. The oldest entry creates; when it is removed, the next
/// oldest does.
///
/// There is one instance. It needs no construction at run time and is never destroyed, so it serves the
/// initialisers and clean-ups of any library in any order. It holds memory only while a class is registered.
/// All operations may be called from several threads at once. Any text is a name; names are compared byte by
/// byte.
class ORVELUTIL_EXPORT DynamicObjectFactory
{
public:
  using NewFunction = BaseDynamicObject* (*)(); ///< creates an object that the caller owns
  using SharedFunction = boost::shared_ptr<BaseDynamicObject> (*)(); ///< creates a shared object

  /// \brief Return the one instance.
  static DynamicObjectFactory& getInstance();

  DynamicObjectFactory(const DynamicObjectFactory&) = delete;
  DynamicObjectFactory& operator=(const DynamicObjectFactory&) = delete;

  /// \brief Register a class. A name that is registered already gets one more entry.
  /// \throw std::bad_alloc if memory ends; nothing has changed then
  void registerClass(const std::string& className, NewFunction newFcn, SharedFunction sharedFcn);

  /// \brief Remove the newest entry of a name that belongs to the calling module, if there is one.
  ///
  /// That is the newest entry whose creator lies in the calling module, or else the newest that this module
  /// has registered. A direct call knows its module in any build. A call through a pointer to this function
  /// goes by its return address, which may be that of the caller's caller if the caller ends with the call.
  /// If no module holds that address, the newest entry of the name is removed, whichever module it belongs
  /// to.
  ///
  /// Throws nothing and opens no file; may run while modules are loaded and unloaded.
  void unRegisterClass(const std::string& className);

  /// \brief Remove the newest entry of a name that has this creator, if there is one.
  void unRegisterClass(const std::string& className, NewFunction newFcn);

  /// \brief Create an object by class name; the caller owns it. O(log n).
  /// \throw ORVELUtilException naming the class if it is not registered, or if its creator is null
  BaseDynamicObject* createNew(const std::string& className) const;

  /// \brief Create a shared object by class name. O(log n).
  /// \throw ORVELUtilException naming the class if it is not registered, or if its creator is null
  DynamicObjectPtr createShared(const std::string& className) const;

  /// \brief Return the function that creates shared objects of a class, null if the class is unknown.
  SharedFunction findSharedFunction(const std::string& className) const;

  /// \brief Return how many times an entry has been added or removed since the process began.
  ///
  /// Lets a caller keep what a look-up returned: ask for the count first, then look up; the result holds, for
  /// any name, as long as the count is the same. Calls that change no entry are not counted. Takes no lock.
  ///
  /// It sees every change that happened before the call, in this thread or in one that this thread has
  /// synchronised with. It may miss a change that another thread makes meanwhile, as createShared() may: a
  /// module may be unloaded only while no thread creates its objects.
  ipUInt64 getChangeCount() const;

  /// \brief Return whether a class is registered.
  bool isRegistered(const std::string& className) const;

  /// \brief Return the names of all registered classes, sorted.
  std::set<std::string> getRegisteredClassNames() const;

private:
  constexpr DynamicObjectFactory() noexcept = default;
  ~DynamicObjectFactory() = default;

  void registerClassOf(const void* addressInModule, const std::string& className, NewFunction newFcn,
                       SharedFunction sharedFcn);
  void unRegisterClassOf(const void* addressInModule, const std::string& className);

  static DynamicObjectFactory g_instance;
};

#ifndef ORVELUTIL_BUILD
// Compiled into each caller, at any level of optimisation, so that the address lies in the caller's module.
// Calls through a pointer reach the functions in the library.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wgnu-inline-cpp-without-extern" // which a member cannot have
#endif

[[gnu::always_inline, gnu::gnu_inline]] inline void
DynamicObjectFactory::registerClass(const std::string& className, NewFunction newFcn,
                                    SharedFunction sharedFcn)
{
  registerClassOf(details::addressInThisModule(), className, newFcn, sharedFcn);
}

[[gnu::always_inline, gnu::gnu_inline]] inline void
DynamicObjectFactory::unRegisterClass(const std::string& className)
{
  unRegisterClassOf(details::addressInThisModule(), className);
}

#ifdef __clang__
#pragma clang diagnostic pop
#endif
#endif

} // namespace orvel
