#include "ORVELBaseData/Pattern/StructuringElement/BaseStructuringElementInfo.h"

#include <ORVELSerialization/SerializationItems.h>

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(BaseStructuringElementInfo)
ORVEL_DEFINE_VERSION(BaseStructuringElementInfo, 1)
ORVEL_DEFINE_LEVEL(BaseStructuringElementInfo, BaseSerializationObject,
                   _bInit = static_cast<const BaseStructuringElementInfo&>(other)._bInit,
                   archive << SerializationOItem("_bInit", _bInit),
                   archive >> SerializationIItem("_bInit", _bInit))

BaseStructuringElementInfo::~BaseStructuringElementInfo() = default;

void BaseStructuringElementInfo::clear()
{
  _bInit = false;
  clearDerived();
}

void BaseStructuringElementInfo::initBase()
{
  _bInit = true;
}

} // namespace orvel
