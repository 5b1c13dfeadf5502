#include "ORVELBaseData/Pattern/Kernel/KernelXYZ.h"

#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELBaseData/Pattern/Private/KernelOperations.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(KernelXYZ, BaseKernel, 2)

using Operations = details::KernelOperations<KernelXYZ>;

KernelXYZ::KernelXYZ() = default;

void KernelXYZ::insert(const OffsetType& offset, const ValueType& value)
{
  if (!Operations::insert(*this, offset, value))
    raise(ORVEL_HERE, eKernelMessage::eInsertExistingKernelElt);
}

void KernelXYZ::replace(const OffsetType& offset, const ValueType& value)
{
  if (!Operations::replace(*this, offset, value))
    raise(ORVEL_HERE, eKernelMessage::eRemoveMissingKernelElt); // callers know this text, not that of id 1
}

void KernelXYZ::remove(const OffsetType& offset)
{
  if (!Operations::remove(*this, offset))
    raise(ORVEL_HERE, eKernelMessage::eRemoveMissingKernelElt);
}

KernelXYZ::ValueType KernelXYZ::getValue(const OffsetType& offset) const
{
  const ValueType* value = Operations::find(*this, offset);
  if (value == nullptr)
    raise(ORVEL_HERE, eKernelMessage::eGetMissingKernelElt);
  return *value;
}

ipBool KernelXYZ::exists(const OffsetType& offset) const
{
  return Operations::find(*this, offset) != nullptr;
}

void KernelXYZ::multiply(ipReal32 factor)
{
  Operations::multiply(*this, factor);
}

eKernelType KernelXYZ::getKernelType() const
{
  return eKernelType::eKT_XYZ;
}

ipUInt32 KernelXYZ::getNbData() const
{
  return static_cast<ipUInt32>(_dataColl.size());
}

void KernelXYZ::clear()
{
  Operations::clear(*this);
}

ipReal32 KernelXYZ::computeAbsCoefSum()
{
  return Operations::computeAbsCoefSum(*this);
}

void KernelXYZ::copyMembers(const KernelXYZ& other)
{
  Operations::copy(*this, other);
}

void KernelXYZ::writeMembers(BaseOArchive& archive) const
{
  Operations::write(*this, archive);
}

void KernelXYZ::readMembers(BaseIArchive& archive, ipUInt32 version)
{
  Operations::read(*this, archive, version);
}

} // namespace orvel
