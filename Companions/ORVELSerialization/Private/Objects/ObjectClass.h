#pragma once

#include <limits>
#include <string>
#include <typeinfo>
#include <utility>

#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// A class that shared objects of an archive have, ready to make more of them.
class ObjectClass
{
public:
  explicit ObjectClass(std::string name)
    : _name(std::move(name))
  {
  }

  /// Makes an object. \throw ArchiveFailure if the class is unknown or its objects can't be read
  SerializationObjectPtr create();

private:
  std::string _name;
  DynamicObjectFactory::SharedFunction _create = nullptr; // holds as long as the factory has not changed
  ipUInt64 _changeCount = std::numeric_limits<ipUInt64>::max();
  const std::type_info* _type = nullptr; // of the latest object: it is serializable
};

} // namespace orvel::details
