#include "ORVELBaseData/Pattern/Kernel/BaseKernel.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseKernel, BaseSerializationObject, 1)

BaseKernel::~BaseKernel() = default;

} // namespace orvel
