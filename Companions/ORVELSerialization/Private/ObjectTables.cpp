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

SerializationObjectPtr ObjectClass::create(Problem& problem)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  const ipUInt64 changeCount = factory.getChangeCount(); // before the look-up
  if (changeCount != _changeCount)
  {
    _create = factory.findSharedFunction(_name);
    _type = nullptr;
    _changeCount = changeCount;
  }
  problem = Problem::unknown;
  if (_create == nullptr)
    return nullptr;
  DynamicObjectPtr object = _create();
  problem = Problem::none;
  const BaseDynamicObject* const created = object.get();
  if (created != nullptr && _type == &typeid(*created))
    return boost::static_pointer_cast<BaseSerializationObject>(std::move(object));
  SerializationObjectPtr serializable = boost::dynamic_pointer_cast<BaseSerializationObject>(object);
  if (serializable)
    _type = &typeid(*created);
  else
    problem = Problem::notSerializable;
  return serializable;
}

} // namespace orvel::details
