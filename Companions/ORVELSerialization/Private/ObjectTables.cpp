#include <ORVELSerialization/Private/ObjectTables.h>

#include <utility>

#include <ORVELSerialization/BaseSerializationObject.h>

namespace orvel::details
{

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
