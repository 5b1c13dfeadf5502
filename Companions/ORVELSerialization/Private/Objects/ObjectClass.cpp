#include "ORVELSerialization/Private/Objects/ObjectClass.h"

#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Text.h>

namespace orvel::details
{

SerializationObjectPtr ObjectClass::create()
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  const ipUInt64 changeCount = factory.getChangeCount(); // before the look-up
  if (changeCount != _changeCount)
  {
    _create = factory.findSharedFunction(_name);
    _type = nullptr;
    _changeCount = changeCount;
  }
  if (_create == nullptr)
    throw ArchiveFailure(eORVELSerializationMessage::eUnknownClass, quoted(_name));

  DynamicObjectPtr object = _create();
  const BaseDynamicObject* const created = object.get();
  if (created != nullptr && _type == &typeid(*created)) // as before: spares the conversion at run time
    return boost::static_pointer_cast<BaseSerializationObject>(std::move(object));
  SerializationObjectPtr serializable = boost::dynamic_pointer_cast<BaseSerializationObject>(object);
  if (!serializable)
    throw ArchiveFailure(eORVELSerializationMessage::eWrongClass, _name,
                         BaseSerializationObject::getTypeName());
  _type = &typeid(*created);
  return serializable;
}

} // namespace orvel::details
