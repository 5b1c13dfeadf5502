#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.h"

#include <utility>

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(StructuringElementXYInfo, BaseStructuringElementInfo, 1)

StructuringElementXYInfo::StructuringElementXYInfo() = default;

eStructuringElementType StructuringElementXYInfo::getStructuringElementType() const
{
  return eStructuringElementType::eSET_XY;
}

void StructuringElementXYInfo::clearDerived()
{
  _pSEXY->clear();
}

/// The first steps of every initialisation: whatever fails afterwards, the old shape is gone.
void StructuringElementXYInfo::start(eSEXYSubType::domain subType)
{
  clear();
  _seXYSubType = subType;
}

void StructuringElementXYInfo::init(const StructuringElementXY& element)
{
  start(eSEXYSubType::eSEXY_Generic);
  *_pSEXY = element;
  initBase();
}

void StructuringElementXYInfo::initEmpty()
{
  start(eSEXYSubType::eSEXY_Generic);
  _pSEXY = boost::make_shared<StructuringElementXY>();
  initBase();
}

void StructuringElementXYInfo::initCircular(ipReal64 radius)
{
  start(eSEXYSubType::eSEXY_Circular);
  _pSEXY = circularSEXY(radius);
  _radius = radius;
  initBase();
}

void StructuringElementXYInfo::initSquare(ipUInt32 halfSize)
{
  start(eSEXYSubType::eSEXY_Square);
  _pSEXY = squareSEXY(halfSize);
  _halfSize = halfSize;
  initBase();
}

void StructuringElementXYInfo::initRectangular(ipUInt32 halfSizeX, ipUInt32 halfSizeY)
{
  start(eSEXYSubType::eSEXY_Rectangular);
  _pSEXY = rectangularSEXY(halfSizeX, halfSizeY);
  _halfSizeX = halfSizeX;
  _halfSizeY = halfSizeY;
  initBase();
}

void StructuringElementXYInfo::initHalfLinear(ipReal64 theta, ipReal64 radius)
{
  start(eSEXYSubType::eSEXY_HalfLinear);
  _pSEXY = halfLinearSEXY(theta, radius);
  _theta = theta;
  _radius = radius;
  initBase();
}

void StructuringElementXYInfo::initLinear(ipReal64 theta, ipReal64 radius)
{
  start(eSEXYSubType::eSEXY_Linear);
  _pSEXY = linearSEXY(theta, radius);
  _theta = theta;
  _radius = radius;
  initBase();
}

void StructuringElementXYInfo::requireInitialized(const SourceLocation& here) const
{
  if (!isInitialized())
    raise(here, eStructuringElementMessage::eSEInfoNotInitialized);
}

bool StructuringElementXYInfo::isSegment() const
{
  return _seXYSubType == eSEXYSubType::eSEXY_HalfLinear || _seXYSubType == eSEXYSubType::eSEXY_Linear;
}

const eSEXYSubType& StructuringElementXYInfo::getSEXYSubType() const
{
  requireInitialized(ORVEL_HERE);
  return _seXYSubType;
}

StructuringElementXYConstPtr StructuringElementXYInfo::getStructuringElement() const
{
  requireInitialized(ORVEL_HERE);
  return _pSEXY;
}

const XYOffsetColl& StructuringElementXYInfo::getDataColl() const
{
  requireInitialized(ORVEL_HERE);
  return _pSEXY->getDataColl();
}

ipReal64 StructuringElementXYInfo::getRadius() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYSubType != eSEXYSubType::eSEXY_Circular && !isSegment())
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _radius;
}

ipUInt32 StructuringElementXYInfo::getHalfSize() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYSubType != eSEXYSubType::eSEXY_Square)
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _halfSize;
}

ipUInt32 StructuringElementXYInfo::getHalfSizeX() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYSubType != eSEXYSubType::eSEXY_Rectangular)
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _halfSizeX;
}

ipUInt32 StructuringElementXYInfo::getHalfSizeY() const
{
  requireInitialized(ORVEL_HERE);
  if (_seXYSubType != eSEXYSubType::eSEXY_Rectangular)
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _halfSizeY;
}

ipReal64 StructuringElementXYInfo::getTheta() const
{
  requireInitialized(ORVEL_HERE);
  if (!isSegment())
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidSESubType);
  return _theta;
}

bool StructuringElementXYInfo::insert(const OffsetXY& offset)
{
  requireInitialized(ORVEL_HERE);
  if (_pSEXY->exists(offset))
    return false;
  _pSEXY->insert(offset);
  return true;
}

bool StructuringElementXYInfo::insert(ipInt32 x, ipInt32 y)
{
  requireInitialized(ORVEL_HERE);
  return insert(OffsetXY(x, y));
}

bool StructuringElementXYInfo::remove(const OffsetXY& offset)
{
  requireInitialized(ORVEL_HERE);
  if (!_pSEXY->exists(offset))
    return false;
  _pSEXY->remove(offset);
  return true;
}

bool StructuringElementXYInfo::remove(ipInt32 x, ipInt32 y)
{
  requireInitialized(ORVEL_HERE);
  return remove(OffsetXY(x, y));
}

void StructuringElementXYInfo::copyMembers(const StructuringElementXYInfo& other)
{
  if (!other.isInitialized())
  {
    clear();
    return;
  }
  _seXYSubType = other._seXYSubType;
  switch (_seXYSubType.getDomain())
  {
  case eSEXYSubType::eSEXY_Generic:
    break;
  case eSEXYSubType::eSEXY_Circular:
    _radius = other._radius;
    break;
  case eSEXYSubType::eSEXY_Square:
    break; // the half size is not carried: callers know it so
  case eSEXYSubType::eSEXY_Rectangular:
    _halfSizeX = other._halfSizeX;
    _halfSizeY = other._halfSizeY;
    break;
  case eSEXYSubType::eSEXY_HalfLinear:
  case eSEXYSubType::eSEXY_Linear:
    _theta = other._theta;
    _radius = other._radius;
    break;
  }
  *_pSEXY = *other._pSEXY;
}

void StructuringElementXYInfo::writeMembers(BaseOArchive& archive) const
{
  if (!isInitialized())
    return;
  archive << SerializationOItem("_seXYSubType", _seXYSubType);
  switch (_seXYSubType.getDomain())
  {
  case eSEXYSubType::eSEXY_Generic:
    break;
  case eSEXYSubType::eSEXY_Circular:
    archive << SerializationOItem("_radius", _radius);
    break;
  case eSEXYSubType::eSEXY_Square:
    archive << SerializationOItem("_halfSize", _halfSize);
    break;
  case eSEXYSubType::eSEXY_Rectangular:
    archive << SerializationOItem("_halfSizeX", _halfSizeX);
    archive << SerializationOItem("_halfSizeY", _halfSizeY);
    break;
  case eSEXYSubType::eSEXY_HalfLinear:
  case eSEXYSubType::eSEXY_Linear:
    archive << SerializationOItem("_theta", _theta);
    archive << SerializationOItem("_radius", _radius);
    break;
  }
  archive << SerializationOItem("_pSEXY", _pSEXY);
}

void StructuringElementXYInfo::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  if (!isInitialized())
  {
    clear();
    return;
  }
  archive >> SerializationIItem("_seXYSubType", _seXYSubType);
  switch (_seXYSubType.getDomain())
  {
  case eSEXYSubType::eSEXY_Generic:
    break;
  case eSEXYSubType::eSEXY_Circular:
    archive >> SerializationIItem("_radius", _radius);
    break;
  case eSEXYSubType::eSEXY_Square:
    archive >> SerializationIItem("_halfSize", _halfSize);
    break;
  case eSEXYSubType::eSEXY_Rectangular:
    archive >> SerializationIItem("_halfSizeX", _halfSizeX);
    archive >> SerializationIItem("_halfSizeY", _halfSizeY);
    break;
  case eSEXYSubType::eSEXY_HalfLinear:
  case eSEXYSubType::eSEXY_Linear:
    archive >> SerializationIItem("_theta", _theta);
    archive >> SerializationIItem("_radius", _radius);
    break;
  }
  StructuringElementXYPtr element;
  archive >> SerializationIItem("_pSEXY", element);
  if (!element) // a description always has one
    archive.raiseInvalidValue("null", "_pSEXY", ORVEL_HERE);
  _pSEXY = std::move(element);
}

} // namespace orvel
