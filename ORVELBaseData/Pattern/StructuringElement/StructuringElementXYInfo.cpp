#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.h"

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Pattern/Private/InfoOperations.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(StructuringElementXYInfo, BaseStructuringElementInfo, 1)

template <>
struct details::InfoFields<StructuringElementXYInfo>
{
  using Info = StructuringElementXYInfo;
  using Kind = eSEXYSubType;

  static constexpr const char* kindKey = "_seXYSubType";
  static constexpr auto kind = &Info::_seXYSubType;
  static constexpr const char* elementKey = "_pSEXY";
  static constexpr auto element = &Info::_pSEXY;

  static constexpr ShapeParameter<Info, Kind> parameters[] = {
      {Kind::eSEXY_Circular, "_radius", &Info::_radius},
      {Kind::eSEXY_Square, "_halfSize", &Info::_halfSize, InCopies::notCarried}, // callers rely on it
      {Kind::eSEXY_Rectangular, "_halfSizeX", &Info::_halfSizeX},
      {Kind::eSEXY_Rectangular, "_halfSizeY", &Info::_halfSizeY},
      {Kind::eSEXY_HalfLinear, "_theta", &Info::_theta},
      {Kind::eSEXY_HalfLinear, "_radius", &Info::_radius},
      {Kind::eSEXY_Linear, "_theta", &Info::_theta},
      {Kind::eSEXY_Linear, "_radius", &Info::_radius},
  };
};

using Operations = details::InfoOperations<StructuringElementXYInfo>;

StructuringElementXYInfo::StructuringElementXYInfo() = default;

eStructuringElementType StructuringElementXYInfo::getStructuringElementType() const
{
  return eStructuringElementType::eSET_XY;
}

void StructuringElementXYInfo::clearDerived()
{
  _pSEXY->clear();
}

void StructuringElementXYInfo::init(const StructuringElementXY& element)
{
  Operations::start(*this, eSEXYSubType::eSEXY_Generic);
  *_pSEXY = element;
  initBase();
}

void StructuringElementXYInfo::initEmpty()
{
  Operations::start(*this, eSEXYSubType::eSEXY_Generic);
  _pSEXY = boost::make_shared<StructuringElementXY>();
  initBase();
}

void StructuringElementXYInfo::initCircular(ipReal64 radius)
{
  Operations::init(*this, eSEXYSubType::eSEXY_Circular, circularSEXY, radius);
}

void StructuringElementXYInfo::initSquare(ipUInt32 halfSize)
{
  Operations::init(*this, eSEXYSubType::eSEXY_Square, squareSEXY, halfSize);
}

void StructuringElementXYInfo::initRectangular(ipUInt32 halfSizeX, ipUInt32 halfSizeY)
{
  Operations::init(*this, eSEXYSubType::eSEXY_Rectangular, rectangularSEXY, halfSizeX, halfSizeY);
}

void StructuringElementXYInfo::initHalfLinear(ipReal64 theta, ipReal64 radius)
{
  Operations::init(*this, eSEXYSubType::eSEXY_HalfLinear, halfLinearSEXY, theta, radius);
}

void StructuringElementXYInfo::initLinear(ipReal64 theta, ipReal64 radius)
{
  Operations::init(*this, eSEXYSubType::eSEXY_Linear, linearSEXY, theta, radius);
}

const eSEXYSubType& StructuringElementXYInfo::getSEXYSubType() const
{
  Operations::requireInitialized(*this, ORVEL_HERE);
  return _seXYSubType;
}

StructuringElementXYConstPtr StructuringElementXYInfo::getStructuringElement() const
{
  Operations::requireInitialized(*this, ORVEL_HERE);
  return _pSEXY;
}

const XYOffsetColl& StructuringElementXYInfo::getDataColl() const
{
  Operations::requireInitialized(*this, ORVEL_HERE);
  return _pSEXY->getDataColl();
}

ipReal64 StructuringElementXYInfo::getRadius() const
{
  return Operations::get(*this, &StructuringElementXYInfo::_radius, ORVEL_HERE);
}

ipUInt32 StructuringElementXYInfo::getHalfSize() const
{
  return Operations::get(*this, &StructuringElementXYInfo::_halfSize, ORVEL_HERE);
}

ipUInt32 StructuringElementXYInfo::getHalfSizeX() const
{
  return Operations::get(*this, &StructuringElementXYInfo::_halfSizeX, ORVEL_HERE);
}

ipUInt32 StructuringElementXYInfo::getHalfSizeY() const
{
  return Operations::get(*this, &StructuringElementXYInfo::_halfSizeY, ORVEL_HERE);
}

ipReal64 StructuringElementXYInfo::getTheta() const
{
  return Operations::get(*this, &StructuringElementXYInfo::_theta, ORVEL_HERE);
}

bool StructuringElementXYInfo::insert(const OffsetXY& offset)
{
  return Operations::insert(*this, offset, ORVEL_HERE);
}

bool StructuringElementXYInfo::insert(ipInt32 x, ipInt32 y)
{
  return Operations::insert(*this, OffsetXY(x, y), ORVEL_HERE);
}

bool StructuringElementXYInfo::remove(const OffsetXY& offset)
{
  return Operations::remove(*this, offset, ORVEL_HERE);
}

bool StructuringElementXYInfo::remove(ipInt32 x, ipInt32 y)
{
  return Operations::remove(*this, OffsetXY(x, y), ORVEL_HERE);
}

void StructuringElementXYInfo::copyMembers(const StructuringElementXYInfo& other)
{
  Operations::copy(*this, other);
}

void StructuringElementXYInfo::writeMembers(BaseOArchive& archive) const
{
  Operations::write(*this, archive);
}

void StructuringElementXYInfo::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  Operations::read(*this, archive, ORVEL_HERE);
}

} // namespace orvel
