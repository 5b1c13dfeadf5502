#include "ORVELBaseData/Pattern/Kernel/KernelXY.h"

#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELBaseData/Pattern/Private/KernelOperations.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(KernelXY, BaseKernel, 2)

using Operations = details::KernelOperations<KernelXY>;

KernelXY::KernelXY() = default;

void KernelXY::insert(const OffsetType& offset, const ValueType& value)
{
  if (!Operations::insert(*this, offset, value))
    raise(ORVEL_HERE, eKernelMessage::eInsertExistingKernelElt);
}

void KernelXY::replace(const OffsetType& offset, const ValueType& value)
{
  if (!Operations::replace(*this, offset, value))
    raise(ORVEL_HERE, eKernelMessage::eRemoveMissingKernelElt); // callers know this text, not that of id 1
}

void KernelXY::remove(const OffsetType& offset)
{
  if (!Operations::remove(*this, offset))
    raise(ORVEL_HERE, eKernelMessage::eRemoveMissingKernelElt);
}

KernelXY::ValueType KernelXY::getValue(const OffsetType& offset) const
{
  const ValueType* value = Operations::find(*this, offset);
  if (value == nullptr)
    raise(ORVEL_HERE, eKernelMessage::eGetMissingKernelElt);
  return *value;
}

ipBool KernelXY::exists(const OffsetType& offset) const
{
  return Operations::find(*this, offset) != nullptr;
}

void KernelXY::multiply(ipReal32 factor)
{
  Operations::multiply(*this, factor);
}

eKernelType KernelXY::getKernelType() const
{
  return eKernelType::eKT_XY;
}

ipUInt32 KernelXY::getNbData() const
{
  return static_cast<ipUInt32>(_dataColl.size());
}

void KernelXY::clear()
{
  Operations::clear(*this);
}

ipReal32 KernelXY::computeAbsCoefSum()
{
  return Operations::computeAbsCoefSum(*this);
}

void KernelXY::copyMembers(const KernelXY& other)
{
  Operations::copy(*this, other);
}

void KernelXY::writeMembers(BaseOArchive& archive) const
{
  Operations::write(*this, archive);
}

void KernelXY::readMembers(BaseIArchive& archive, ipUInt32 version)
{
  Operations::read(*this, archive, version);
}

} // namespace orvel
