#include <ORVELSerialization/Private/ObjectTables.h>

#include <utility>

#include <boost/weak_ptr.hpp>

#include <ORVELSerialization/BaseSerializationObject.h>

namespace orvel::details
{

void ReadObjects::letGo(std::size_t first) noexcept
{
  try
  {
    const std::vector<boost::weak_ptr<BaseSerializationObject>> left(
        _objects.begin() + static_cast<std::ptrdiff_t>(first), _objects.end());
    _objects.resize(first);
    for (const boost::weak_ptr<BaseSerializationObject>& candidate : left)
      if (const SerializationObjectPtr object = candidate.lock(); object && object->hasCopySupport())
        object->copy(*object->createShared());
  }
  catch (...)
  {
    // Out of memory while memory is being freed: a cycle stays.
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
