#pragma once

/// \file
/// \brief Registers a class with the factory while its library is loaded.

#include <ORVELUtil/DynamicObjectFactory.h>

namespace orvel
{

/// \brief Keeps a class in the factory from its own construction to its own destruction.
class BaseDynamicRegistrator
{
public:
  BaseDynamicRegistrator(const BaseDynamicRegistrator&) = delete;
  BaseDynamicRegistrator& operator=(const BaseDynamicRegistrator&) = delete;

protected:
  using NewFcn = BaseDynamicObject* (*)();
  using SharedFcn = boost::shared_ptr<BaseDynamicObject> (*)();

  /// \param className the class-name text, a literal: it must outlive the registrator
  BaseDynamicRegistrator(const char* className, NewFcn newFcn, SharedFcn sharedFcn)
    : _className(className)
    , _newFcn(newFcn)
  {
    DynamicObjectFactory::getInstance().registerClass(_className, newFcn, sharedFcn);
  }

  /// An exception here ends the process: nobody could handle it at unload.
  ~BaseDynamicRegistrator() noexcept
  {
    DynamicObjectFactory::getInstance().unRegisterClass(_className, _newFcn);
  }

private:
  const char* _className;
  NewFcn _newFcn;
};

/// \brief Keeps class T in the factory.
///
/// The one object per class is the static member `g_classRegistrator` of T, so that the class is known from
/// the load of its library to the unload. T has the static functions `createNewObject` and
/// `createSharedObject`.
template <class T>
class DynamicRegistrator : public BaseDynamicRegistrator
{
public:
  /// \param className the class-name text, a literal: it must outlive the registrator
  explicit DynamicRegistrator(const char* className)
    : BaseDynamicRegistrator(className, &newCreatorFcn, &sharedCreatorFcn)
  {
  }

  static BaseDynamicObject* newCreatorFcn() { return T::createNewObject(); }
  static boost::shared_ptr<BaseDynamicObject> sharedCreatorFcn() { return T::createSharedObject(); }
};

} // namespace orvel
