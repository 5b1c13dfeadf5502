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

/// \brief Registry from class-name text to the two functions that create an object of the class.
///
/// Libraries enter their classes when they are loaded and take them out when they are unloaded
/// (\see DynamicRegistrator). Several modules may enter a class under one name: every registration is
/// an entry of its own. The oldest entry creates; when it is taken out, the next oldest does.
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

  /// \brief Take the newest entry of a name out; an unknown name is left as it is.
  void unRegisterClass(const std::string& className);

  /// \brief Take out the newest entry of a name that has this creator; without such an entry do nothing.
  ///
  /// The form for modules, each of which has creators of its own.
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
  struct Creators
  {
    NewFunction newFcn = nullptr;
    SharedFunction sharedFcn = nullptr;
  };

  constexpr DynamicObjectFactory() noexcept = default;
  ~DynamicObjectFactory() = default;

  template <class Predicate>
  void removeNewest(const std::string& className, Predicate predicate);
  bool findCreators(const std::string& className, Creators& creators) const;

  mutable std::mutex _mutex;
  std::atomic<ipUInt64> _changeCount = 0;
  Table* _table = nullptr; // exists while there is an entry, so that nothing is left behind at unload

  static DynamicObjectFactory g_instance;
};

} // namespace orvel
