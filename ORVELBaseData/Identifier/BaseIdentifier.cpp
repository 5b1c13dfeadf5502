#include "ORVELBaseData/Identifier/BaseIdentifier.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseIdentifier, BaseSerializationObject, 1)

BaseIdentifier::~BaseIdentifier() = default;

} // namespace orvel
