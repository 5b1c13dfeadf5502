#include "ORVELBaseData/Pattern/StructuringElement/BaseStructuringElement.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseStructuringElement, BaseSerializationObject, 1)

BaseStructuringElement::~BaseStructuringElement() = default;

} // namespace orvel
