#include "ORVELUtil/BaseDynamicObject.h"

namespace orvel
{

void BaseDynamicObject::initCtorCopy(const BaseDynamicObject& /*other*/)
{
}

} // namespace orvel
