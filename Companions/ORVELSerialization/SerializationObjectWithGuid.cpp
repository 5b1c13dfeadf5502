#include "ORVELSerialization/SerializationObjectWithGuid.h"

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(SerializationObjectWithGuid)

SerializationObjectWithGuid::SerializationObjectWithGuid()
  : _guid(boost::uuids::random_generator()())
{
}

SerializationObjectWithGuid::~SerializationObjectWithGuid() = default;

void SerializationObjectWithGuid::copy(const BaseDynamicObject& other)
{
  BaseSerializationObject::copy(other);
  _guid = static_cast<const SerializationObjectWithGuid&>(other)._guid;
}

BoolResult SerializationObjectWithGuid::write(BaseOArchive& archive) const
{
  const BoolResult baseResult = BaseSerializationObject::write(archive);
  if (!baseResult)
    return BoolResult(false, baseResult.getMessage());
  archive << SerializationOItem("_guid", boost::uuids::to_string(_guid));
  return BoolResult(true);
}

BoolResult SerializationObjectWithGuid::read(BaseIArchive& archive)
{
  const BoolResult baseResult = BaseSerializationObject::read(archive);
  if (!baseResult)
    return BoolResult(false, baseResult.getMessage());
  std::string text;
  archive >> SerializationIItem("_guid", text);
  boost::uuids::uuid guid = {};
  bool isGuid = false;
  try
  {
    guid = boost::uuids::string_generator()(text);
    isGuid = boost::uuids::to_string(guid) == text; // the generator takes other spellings, too
  }
  catch (const std::runtime_error&)
  {
  }
  if (!isGuid)
    archive.raiseInvalidValue(text, "_guid", ORVEL_HERE);
  _guid = guid;
  return BoolResult(true);
}

} // namespace orvel
