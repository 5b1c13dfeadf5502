#include "ORVELBaseData/Pattern/StructuringElement/BaseStructuringElementInfo.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseStructuringElementInfo, BaseSerializationObject, 1)

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

void BaseStructuringElementInfo::copyMembers(const BaseStructuringElementInfo& other)
{
  _bInit = other._bInit;
}

void BaseStructuringElementInfo::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_bInit", _bInit);
}

void BaseStructuringElementInfo::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_bInit", _bInit);
}

} // namespace orvel
