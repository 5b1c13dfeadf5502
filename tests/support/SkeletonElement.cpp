#include "SkeletonElement.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(SkeletonElement, BaseObjectWithSkeleton, 1)

SkeletonElement::SkeletonElement(ipInt32 structureValue, ipInt32 dataValue)
  : structure(structureValue)
  , data(dataValue)
{
}

void SkeletonElement::copyMembers(const SkeletonElement& other)
{
  structure = other.structure;
  data = other.data;
}

void SkeletonElement::writeMembers(BaseOArchive& archive) const
{
  modesWritten.push_back(getSerializationMode().getValue());
  if (whenWritten)
    whenWritten();
  if (getSerializationMode() != eSklSrzMode::eSSM_Data)
    archive << SerializationOItem("_structure", structure);
  if (getSerializationMode() != eSklSrzMode::eSSM_Skeleton)
    archive << SerializationOItem("_data", data);
}

void SkeletonElement::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  modesRead.push_back(getSerializationMode().getValue());
  if (getSerializationMode() != eSklSrzMode::eSSM_Data)
    archive >> SerializationIItem("_structure", structure);
  if (getSerializationMode() != eSklSrzMode::eSSM_Skeleton)
    archive >> SerializationIItem("_data", data);
}

} // namespace orvel
