#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.h"

#include <utility>

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(StructuringElementXYZInfo, BaseStructuringElementInfo, 1)

StructuringElementXYZInfo::StructuringElementXYZInfo() = default;

eStructuringElementType StructuringElementXYZInfo::getStructuringElementType() const
{
  return eStructuringElementType::eSET_XYZ;
}

void StructuringElementXYZInfo::clearDerived()
{
  _pSEXYZ->clear();
}

/// The first steps of every initialisation: whatever fails afterwards, the old shape is gone.
void StructuringElementXYZInfo::start(eSEXYZSubType::domain subType)
{
  clear();
  _seXYZSubType = subType;
}

void StructuringElementXYZInfo::init(const StructuringElementXYZ& element)
{
  start(eSEXYZSubType::eSEXYZ_Generic);
  *_pSEXYZ = element;
  initBase();
}

void StructuringElementXYZInfo::initEmpty()
{
  start(eSEXYZSubType::eSEXYZ_Generic);
  _pSEXYZ = boost::make_shared<StructuringElementXYZ>();
  initBase();
}

void StructuringElementXYZInfo::initSpherical(ipReal64 radius)
{
  start(eSEXYZSubType::eSEXYZ_Spherical);
  _pSEXYZ = sphericalSEXYZ(radius);
  _radius = radius;
  initBase();
}

void StructuringElementXYZInfo::initCubic(ipUInt32 halfSize)
{
  start(eSEXYZSubType::eSEXYZ_Cubic);
  _pSEXYZ = cubicSEXYZ(halfSize);
  _halfSize = halfSize;
  initBase();
}

void StructuringElementXYZInfo::initRectangular(ipUInt32 halfSizeX, ipUInt32 halfSizeY, ipUInt32 halfSizeZ)
{
  start(eSEXYZSubType::eSEXYZ_Rectangular);
  _pSEXYZ = rectangularSEXYZ(halfSizeX, halfSizeY, halfSizeZ);
  _halfSizeX = halfSizeX;
  _halfSizeY = halfSizeY;
  _halfSizeZ = halfSizeZ;
  initBase();
}

void StructuringElementXYZInfo::initHalfLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  start(eSEXYZSubType::eSEXYZ_HalfLinear);
  _pSEXYZ = halfLinearSEXYZ(theta, phi, radius);
  _theta = theta;
  _phi = phi;
  _radius = radius;
  initBase();
}

void StructuringElementXYZInfo::initLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  start(eSEXYZSubType::eSEXYZ_Linear);
  _pSEXYZ = linearSEXYZ(theta, phi, radius);
  _theta = theta;
  _phi = phi;
  _radius = radius;
  initBase();
}

void StructuringElementXYZInfo::requireInitialized(const SourceLocation& here) const
{
  if (!isInitialized())
    raise(here, eStructuringElementMessage::eSEInfoNotInitialized);
}

bool StructuringElementXYZInfo::isSegment() const
{
  return _seXYZSubType == eSEXYZSubType::eSEXYZ_HalfLinear || _seXYZSubType == eSEXYZSubType::eSEXYZ_Linear;
}

const eSEXYZSubType& StructuringElementXYZInfo::getSEXYZSubType() const
{
  requireInitialized(ORVEL_HERE);
  return _seXYZSubType;
}

StructuringElementXYZConstPtr StructuringElementXYZInfo::getStructuringElement() const
{
  requireInitialized(ORVEL_HERE);
  return _pSEXYZ;
}

const XYZOffsetColl& StructuringElementXYZInfo::getDataColl() const
{
  requireInitialized(ORVEL_HERE);
  return _pSEXYZ->getDataColl();
}

ipReal64 StructuringElementXYZInfo::getRadius() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYZSubType != eSEXYZSubType::eSEXYZ_Spherical && !isSegment())
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _radius;
}

ipUInt32 StructuringElementXYZInfo::getHalfSize() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYZSubType != eSEXYZSubType::eSEXYZ_Cubic)
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _halfSize;
}

ipUInt32 StructuringElementXYZInfo::getHalfSizeX() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYZSubType != eSEXYZSubType::eSEXYZ_Rectangular)
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _halfSizeX;
}

ipUInt32 StructuringElementXYZInfo::getHalfSizeY() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYZSubType != eSEXYZSubType::eSEXYZ_Rectangular)
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _halfSizeY;
}

ipUInt32 StructuringElementXYZInfo::getHalfSizeZ() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYZSubType != eSEXYZSubType::eSEXYZ_Rectangular)
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _halfSizeZ;
}

ipReal64 StructuringElementXYZInfo::getTheta() const
{
  requireInitialized(ORVEL_HERE);
  if (!isSegment())
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _theta;
}

ipReal64 StructuringElementXYZInfo::getPhi() const
{
  requireInitialized(ORVEL_HERE);
  if (!isSegment())
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _phi;
}

bool StructuringElementXYZInfo::insert(const OffsetXYZ& offset)
{
  requireInitialized(ORVEL_HERE);
  if (_pSEXYZ->exists(offset))
    return false;
  _pSEXYZ->insert(offset);
  return true;
}

bool StructuringElementXYZInfo::insert(ipInt32 x, ipInt32 y, ipInt32 z)
{
  requireInitialized(ORVEL_HERE);
  return insert(OffsetXYZ(x, y, z));
}

bool StructuringElementXYZInfo::remove(const OffsetXYZ& offset)
{
  requireInitialized(ORVEL_HERE);
  if (!_pSEXYZ->exists(offset))
    return false;
  _pSEXYZ->remove(offset);
  return true;
}

bool StructuringElementXYZInfo::remove(ipInt32 x, ipInt32 y, ipInt32 z)
{
  requireInitialized(ORVEL_HERE);
  return remove(OffsetXYZ(x, y, z));
}

void StructuringElementXYZInfo::copyMembers(const StructuringElementXYZInfo& other)
{
  if (!other.isInitialized())
  {
    clear();
    return;
  }
  _seXYZSubType = other._seXYZSubType;
  switch (_seXYZSubType.getDomain())
  {
  case eSEXYZSubType::eSEXYZ_Generic:
    break;
  case eSEXYZSubType::eSEXYZ_Spherical:
    _radius = other._radius;
    break;
  case eSEXYZSubType::eSEXYZ_Cubic:
    _halfSize = other._halfSize;
    break;
  case eSEXYZSubType::eSEXYZ_Rectangular:
    _halfSizeX = other._halfSizeX;
    _halfSizeY = other._halfSizeY;
    _halfSizeZ = other._halfSizeZ;
    break;
  case eSEXYZSubType::eSEXYZ_HalfLinear:
  case eSEXYZSubType::eSEXYZ_Linear:
    _theta = other._theta;
    _phi = other._phi;
    _radius = other._radius;
    break;
  }
  *_pSEXYZ = *other._pSEXYZ;
}

void StructuringElementXYZInfo::writeMembers(BaseOArchive& archive) const
{
  if (!isInitialized())
    return;
  archive << SerializationOItem("_seXYZSubType", _seXYZSubType);
  switch (_seXYZSubType.getDomain())
  {
  case eSEXYZSubType::eSEXYZ_Generic:
    break;
  case eSEXYZSubType::eSEXYZ_Spherical:
    archive << SerializationOItem("_radius", _radius);
    break;
  case eSEXYZSubType::eSEXYZ_Cubic:
    archive << SerializationOItem("_halfSize", _halfSize);
    break;
  case eSEXYZSubType::eSEXYZ_Rectangular:
    archive << SerializationOItem("_halfSizeX", _halfSizeX);
    archive << SerializationOItem("_halfSizeY", _halfSizeY);
    archive << SerializationOItem("_halfSizeZ", _halfSizeZ);
    break;
  case eSEXYZSubType::eSEXYZ_HalfLinear:
  case eSEXYZSubType::eSEXYZ_Linear:
    archive << SerializationOItem("_theta", _theta);
    archive << SerializationOItem("_phi", _phi);
    archive << SerializationOItem("_radius", _radius);
    break;
  }
  archive << SerializationOItem("_pSEXYZ", _pSEXYZ);
}

void StructuringElementXYZInfo::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  if (!isInitialized())
  {
    clear();
    return;
  }
  archive >> SerializationIItem("_seXYZSubType", _seXYZSubType);
  switch (_seXYZSubType.getDomain())
  {
  case eSEXYZSubType::eSEXYZ_Generic:
    break;
  case eSEXYZSubType::eSEXYZ_Spherical:
    archive >> SerializationIItem("_radius", _radius);
    break;
  case eSEXYZSubType::eSEXYZ_Cubic:
    archive >> SerializationIItem("_halfSize", _halfSize);
    break;
  case eSEXYZSubType::eSEXYZ_Rectangular:
    archive >> SerializationIItem("_halfSizeX", _halfSizeX);
    archive >> SerializationIItem("_halfSizeY", _halfSizeY);
    archive >> SerializationIItem("_halfSizeZ", _halfSizeZ);
    break;
  case eSEXYZSubType::eSEXYZ_HalfLinear:
  case eSEXYZSubType::eSEXYZ_Linear:
    archive >> SerializationIItem("_theta", _theta);
    archive >> SerializationIItem("_phi", _phi);
    archive >> SerializationIItem("_radius", _radius);
    break;
  }
  StructuringElementXYZPtr element;
  archive >> SerializationIItem("_pSEXYZ", element);
  if (!element) // a description always has one
    archive.raiseInvalidValue("null", "_pSEXYZ", ORVEL_HERE);
  _pSEXYZ = std::move(element);
}

} // namespace orvel
