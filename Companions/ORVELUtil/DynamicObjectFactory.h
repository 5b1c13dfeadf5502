#pragma once

/// \file
/// \brief Process-wide registry from class names to creators.

#include <atomic>
#include <mutex>
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
/// Libraries enter their classes when they are loaded and take them out when they are unloaded
/// (\see DynamicRegistrator). Several modules may enter a class under one name: every registration is
/// an entry of its own. The oldest entry creates; when it is taken out, the next oldest does. A module is the
/// program or a shared library.
///
/// The one instance needs no construction at run time and is never destroyed, so that it serves the
/// initialisers and clean-ups of any library in any order. It holds memory only while a class is
/// registered. All operations may be called from several threads at once. Any text is a name; names are
/// compared byte by byte.
class ORVELUTIL_EXPORT DynamicObjectFactory
{
public:
  using NewFunction = BaseDynamicObject* (*)(); ///< creates an object that the caller owns
  using SharedFunction = boost::shared_ptr<BaseDynamicObject> (*)(); ///< creates a shared object

  /// \brief Return the one instance.
  static DynamicObjectFactory& getInstance();

  DynamicObjectFactory(const DynamicObjectFactory&) = delete;
  DynamicObjectFactory& operator=(const DynamicObjectFactory&) = delete;

  /// \brief Enter a class. Never refuses: a name that is known already gets one more entry.
  /// \throw std::bad_alloc without a change
  void registerClass(const std::string& className, NewFunction newFcn, SharedFunction sharedFcn);

  /// \brief Take out the newest entry of a name that belongs to the calling module; without one do nothing.
  ///
  /// That is the newest entry whose creator lies in the calling module, or else the newest that this module
  /// has registered. A direct call knows its module in any build. A call through a pointer to this function
  /// goes by its return address, which may be that of the caller's caller if the caller ends with the call.
  /// If no module holds that address, the newest entry of the name is taken out, whoever made it.
  ///
  /// Throws nothing and opens no file; may run while modules are loaded and unloaded.
  void unRegisterClass(const std::string& className);

  /// \brief Take out the newest entry of a name that has this creator; without such an entry do nothing.
  void unRegisterClass(const std::string& className, NewFunction newFcn);

  /// \brief Create an object by class name; the caller owns it. O(log n).
  /// \throw ORVELUtilException naming the class if nobody has registered it, or if its creator is null
  BaseDynamicObject* createNew(const std::string& className) const;

  /// \brief Create a shared object by class name. O(log n).
  /// \throw ORVELUtilException naming the class if nobody has registered it, or if its creator is null
  DynamicObjectPtr createShared(const std::string& className) const;

  /// \brief Return the function that creates shared objects of a class, null if the class is unknown.
  SharedFunction findSharedFunction(const std::string& className) const;

  /// \brief Return how many times an entry has been added or taken out since the process began.
  ///
  /// Lets a caller keep what a look-up gave: ask for the count first, then look up; the answer holds, for
  /// any name, as long as the count is the same. A name that is refused, or an unknown one that is taken
  /// out, is not a change. Takes no lock. It sees every change that happened before the call (in this
  /// thread, or in one that this thread has synchronised with). A change made meanwhile by another thread
  /// may be missed, as by createShared(): a module may be unloaded only when no thread creates its objects.
  ipUInt64 getChangeCount() const { return _changeCount; }

  /// \brief Tell whether a class is known.
  bool isRegistered(const std::string& className) const;

  /// \brief Return the names of all known classes, sorted.
  std::set<std::string> getRegisteredClassNames() const;

private:
  struct Table;
  struct Entry;

  constexpr DynamicObjectFactory() noexcept = default;
  ~DynamicObjectFactory() = default;

  void registerClassOf(const void* addressInModule, const std::string& className, NewFunction newFcn,
                       SharedFunction sharedFcn);
  void unRegisterClassOf(const void* addressInModule, const std::string& className);
  template <class Choice>
  void remove(const std::string& className, Choice choose);
  bool find(const std::string& className, Entry& entry) const;

  mutable std::mutex _mutex;
  std::atomic<ipUInt64> _changeCount = 0;
  Table* _table = nullptr; // exists while there is an entry, so that nothing is left behind at unload

  static DynamicObjectFactory g_instance;
};

#ifndef ORVELUTIL_BUILD
// These two become part of each caller, also where nothing is optimised, so that it is the caller's module
// that gives the address. The library has the functions that calls through a pointer reach.
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
