#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.h"

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Pattern/Private/InfoOperations.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(StructuringElementXYZInfo, BaseStructuringElementInfo, 1)

template <>
struct details::InfoFields<StructuringElementXYZInfo>
{
  using Info = StructuringElementXYZInfo;
  using Kind = eSEXYZSubType;

  static constexpr const char* kindKey = "_seXYZSubType";
  static constexpr auto kind = &Info::_seXYZSubType;
  static constexpr const char* elementKey = "_pSEXYZ";
  static constexpr auto element = &Info::_pSEXYZ;

  static constexpr ShapeParameter<Info, Kind> parameters[] = {
      {Kind::eSEXYZ_Spherical, "_radius", &Info::_radius},
      {Kind::eSEXYZ_Cubic, "_halfSize", &Info::_halfSize},
      {Kind::eSEXYZ_Rectangular, "_halfSizeX", &Info::_halfSizeX},
      {Kind::eSEXYZ_Rectangular, "_halfSizeY", &Info::_halfSizeY},
      {Kind::eSEXYZ_Rectangular, "_halfSizeZ", &Info::_halfSizeZ},
      {Kind::eSEXYZ_HalfLinear, "_theta", &Info::_theta},
      {Kind::eSEXYZ_HalfLinear, "_phi", &Info::_phi},
      {Kind::eSEXYZ_HalfLinear, "_radius", &Info::_radius},
      {Kind::eSEXYZ_Linear, "_theta", &Info::_theta},
      {Kind::eSEXYZ_Linear, "_phi", &Info::_phi},
      {Kind::eSEXYZ_Linear, "_radius", &Info::_radius},
  };
};

using Operations = details::InfoOperations<StructuringElementXYZInfo>;

StructuringElementXYZInfo::StructuringElementXYZInfo() = default;

eStructuringElementType StructuringElementXYZInfo::getStructuringElementType() const
{
  return eStructuringElementType::eSET_XYZ;
}

void StructuringElementXYZInfo::clearDerived()
{
  _pSEXYZ->clear();
}

void StructuringElementXYZInfo::init(const StructuringElementXYZ& element)
{
  Operations::start(*this, eSEXYZSubType::eSEXYZ_Generic);
  *_pSEXYZ = element;
  initBase();
}

void StructuringElementXYZInfo::initEmpty()
{
  Operations::start(*this, eSEXYZSubType::eSEXYZ_Generic);
  _pSEXYZ = boost::make_shared<StructuringElementXYZ>();
  initBase();
}

void StructuringElementXYZInfo::initSpherical(ipReal64 radius)
{
  Operations::init(*this, eSEXYZSubType::eSEXYZ_Spherical, sphericalSEXYZ, radius);
}

void StructuringElementXYZInfo::initCubic(ipUInt32 halfSize)
{
  Operations::init(*this, eSEXYZSubType::eSEXYZ_Cubic, cubicSEXYZ, halfSize);
}

void StructuringElementXYZInfo::initRectangular(ipUInt32 halfSizeX, ipUInt32 halfSizeY, ipUInt32 halfSizeZ)
{
  Operations::init(*this, eSEXYZSubType::eSEXYZ_Rectangular, rectangularSEXYZ, halfSizeX, halfSizeY,
                   halfSizeZ);
}

void StructuringElementXYZInfo::initHalfLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  Operations::init(*this, eSEXYZSubType::eSEXYZ_HalfLinear, halfLinearSEXYZ, theta, phi, radius);
}

void StructuringElementXYZInfo::initLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  Operations::init(*this, eSEXYZSubType::eSEXYZ_Linear, linearSEXYZ, theta, phi, radius);
}

const eSEXYZSubType& StructuringElementXYZInfo::getSEXYZSubType() const
{
  Operations::requireInitialized(*this, ORVEL_HERE);
  return _seXYZSubType;
}

StructuringElementXYZConstPtr StructuringElementXYZInfo::getStructuringElement() const
{
  Operations::requireInitialized(*this, ORVEL_HERE);
  return _pSEXYZ;
}

const XYZOffsetColl& StructuringElementXYZInfo::getDataColl() const
{
  Operations::requireInitialized(*this, ORVEL_HERE);
  return _pSEXYZ->getDataColl();
}

ipReal64 StructuringElementXYZInfo::getRadius() const
{
  return Operations::get(*this, &StructuringElementXYZInfo::_radius, ORVEL_HERE);
}

ipUInt32 StructuringElementXYZInfo::getHalfSize() const
{
  return Operations::get(*this, &StructuringElementXYZInfo::_halfSize, ORVEL_HERE);
}

ipUInt32 StructuringElementXYZInfo::getHalfSizeX() const
{
  return Operations::get(*this, &StructuringElementXYZInfo::_halfSizeX, ORVEL_HERE);
}

ipUInt32 StructuringElementXYZInfo::getHalfSizeY() const
{
  return Operations::get(*this, &StructuringElementXYZInfo::_halfSizeY, ORVEL_HERE);
}

ipUInt32 StructuringElementXYZInfo::getHalfSizeZ() const
{
  return Operations::get(*this, &StructuringElementXYZInfo::_halfSizeZ, ORVEL_HERE);
}

ipReal64 StructuringElementXYZInfo::getTheta() const
{
  return Operations::get(*this, &StructuringElementXYZInfo::_theta, ORVEL_HERE);
}

ipReal64 StructuringElementXYZInfo::getPhi() const
{
  return Operations::get(*this, &StructuringElementXYZInfo::_phi, ORVEL_HERE);
}

bool StructuringElementXYZInfo::insert(const OffsetXYZ& offset)
{
  return Operations::insert(*this, offset, ORVEL_HERE);
}

bool StructuringElementXYZInfo::insert(ipInt32 x, ipInt32 y, ipInt32 z)
{
  return Operations::insert(*this, OffsetXYZ(x, y, z), ORVEL_HERE);
}

bool StructuringElementXYZInfo::remove(const OffsetXYZ& offset)
{
  return Operations::remove(*this, offset, ORVEL_HERE);
}

bool StructuringElementXYZInfo::remove(ipInt32 x, ipInt32 y, ipInt32 z)
{
  return Operations::remove(*this, OffsetXYZ(x, y, z), ORVEL_HERE);
}

void StructuringElementXYZInfo::copyMembers(const StructuringElementXYZInfo& other)
{
  Operations::copy(*this, other);
}

void StructuringElementXYZInfo::writeMembers(BaseOArchive& archive) const
{
  Operations::write(*this, archive);
}

void StructuringElementXYZInfo::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  Operations::read(*this, archive, ORVEL_HERE);
}

} // namespace orvel
