#pragma once

/// \file
/// \brief The objects that the programs and plug-ins register.

#include <string>

#include <boost/make_shared.hpp>

#include <ORVELUtil/BaseDynamicObject.h>

namespace orvel::test
{

/// \brief An object that returns a name; Name::g_text is the name. Each module has a Name of its own.
template <class Name>
class NamedObject : public BaseDynamicObject
{
public:
  static NamedObject* createNewObject() { return new NamedObject; }
  static boost::shared_ptr<NamedObject> createSharedObject() { return boost::make_shared<NamedObject>(); }

  const std::string& getClassName() const override { return _name; }
  BaseDynamicObject* createNew() const override { return createNewObject(); }
  DynamicObjectPtr createShared() const override { return createSharedObject(); }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  void copy(const BaseDynamicObject&) override {}

private:
  std::string _name = Name::g_text; // not a static, which would be destroyed before the last clean-up
};

} // namespace orvel::test
