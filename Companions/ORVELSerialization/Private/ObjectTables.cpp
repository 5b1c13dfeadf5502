#include "ORVELSerialization/Private/ObjectTables.h"

#include <utility>

#include <boost/weak_ptr.hpp>

#include <ORVELSerialization/BaseSerializationObject.h>

namespace orvel::details
{

namespace
{

/// Makes an object like a new one of its class, which holds nothing.
void empty(BaseSerializationObject& object) noexcept
{
  try
  {
    if (object.hasCopySupport())
      object.copy(*object.createShared());
  }
  catch (...)
  {
    // Out of memory while memory is being freed, or a class that can't be copied: its cycle stays.
  }
}

} // namespace

void ReadObjects::letLatestGo() noexcept
{
  if (_isReading)
    return;
  try
  {
    const std::vector<boost::weak_ptr<BaseSerializationObject>> left(
        _objects.begin() + static_cast<std::ptrdiff_t>(_latest), _objects.end());
    _objects.resize(_latest);
    _heights.resize(_latest);
    for (const boost::weak_ptr<BaseSerializationObject>& candidate : left)
      if (const SerializationObjectPtr object = candidate.lock())
        empty(*object);
  }
  catch (...)
  {
    // Out of memory for the list: cycles stay.
  }
}

ObjectClass::ObjectClass(std::string name)
  : _name(std::move(name))
  , _create(DynamicObjectFactory::getInstance().findSharedFunction(_name))
{
}

SerializationObjectPtr ObjectClass::create(Problem& problem)
{
  problem = Problem::unknown;
  if (_create == nullptr)
    return nullptr;
  DynamicObjectPtr object = _create();
  problem = Problem::none;
  if (_isSerializable)
    return boost::static_pointer_cast<BaseSerializationObject>(std::move(object));
  SerializationObjectPtr serializable = boost::dynamic_pointer_cast<BaseSerializationObject>(object);
  if (serializable)
    _isSerializable = true;
  else
    problem = Problem::notSerializable;
  return serializable;
}

} // namespace orvel::details
