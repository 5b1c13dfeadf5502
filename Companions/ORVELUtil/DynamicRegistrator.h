#pragma once

/// \file
/// \brief Registers a class with the factory for as long as its library is loaded.

#include <ORVELUtil/DynamicObjectFactory.h>

namespace orvel
{

/// \brief Keeps class T in the factory from its own construction to its own destruction.
///
/// One object per class stands at namespace scope, as the static member `g_classRegistrator` of T:
/// the class is known from the load of its library to the unload. T gives the static functions
/// `createNewObject` and `createSharedObject`.
template <class T>
class DynamicRegistrator
{
public:
  /// \param className the class-name text, a literal: it must outlive the registrator
  explicit DynamicRegistrator(const char* className)
    : _className(className)
  {
    DynamicObjectFactory::getInstance().registerClass(_className, &newCreatorFcn, &sharedCreatorFcn);
  }

  /// Ends the process if the class cannot be taken out: nobody could handle it at unload.
  ~DynamicRegistrator() noexcept
  {
    DynamicObjectFactory::getInstance().unRegisterClass(_className, &newCreatorFcn);
  }

  DynamicRegistrator(const DynamicRegistrator&) = delete;
  DynamicRegistrator& operator=(const DynamicRegistrator&) = delete;

  static BaseDynamicObject* newCreatorFcn() { return T::createNewObject(); }
  static boost::shared_ptr<BaseDynamicObject> sharedCreatorFcn() { return T::createSharedObject(); }

private:
  const char* _className;
};

} // namespace orvel
