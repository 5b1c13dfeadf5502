#include <ORVELUtil/BaseDynamicObject.h>

namespace orvel
{

BaseDynamicObject::~BaseDynamicObject() = default;

void BaseDynamicObject::initCtorCopy(const BaseDynamicObject& /*other*/)
{
}

} // namespace orvel
