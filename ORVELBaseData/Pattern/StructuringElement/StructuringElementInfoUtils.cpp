#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h"

#include <boost/make_shared.hpp>

namespace orvel
{

ORVEL_DEFINE_ENUMERATION_ITEMS(eSEXYSubType)
ORVEL_DEFINE_ENUMERATION_ITEMS(eSEXYZSubType)

namespace
{

/// Makes a description by one of its initialisations.
template <class Info, class... Parameters, class... Arguments>
boost::shared_ptr<Info> makeInfo(void (Info::*init)(Parameters...), const Arguments&... arguments)
{
  auto info = boost::make_shared<Info>();
  (*info.*init)(arguments...);
  return info;
}

} // namespace

StructuringElementXYInfoPtr genericSEXYInfo(const StructuringElementXY& element)
{
  return makeInfo(&StructuringElementXYInfo::init, element);
}

StructuringElementXYInfoPtr emptySEXYInfo()
{
  return makeInfo(&StructuringElementXYInfo::initEmpty);
}

StructuringElementXYInfoPtr squareSEXYInfo(ipUInt32 halfSize)
{
  return makeInfo(&StructuringElementXYInfo::initSquare, halfSize);
}

StructuringElementXYInfoPtr rectangularSEXYInfo(ipUInt32 halfSizeX, ipUInt32 halfSizeY)
{
  return makeInfo(&StructuringElementXYInfo::initRectangular, halfSizeX, halfSizeY);
}

StructuringElementXYInfoPtr circularSEXYInfo(ipReal64 radius)
{
  return makeInfo(&StructuringElementXYInfo::initCircular, radius);
}

StructuringElementXYInfoPtr halfLinearSEXYInfo(ipReal64 theta, ipReal64 radius)
{
  return makeInfo(&StructuringElementXYInfo::initHalfLinear, theta, radius);
}

StructuringElementXYInfoPtr linearSEXYInfo(ipReal64 theta, ipReal64 radius)
{
  return makeInfo(&StructuringElementXYInfo::initLinear, theta, radius);
}

StructuringElementXYZInfoPtr genericSEXYZInfo(const StructuringElementXYZ& element)
{
  return makeInfo(&StructuringElementXYZInfo::init, element);
}

StructuringElementXYZInfoPtr emptySEXYZInfo()
{
  return makeInfo(&StructuringElementXYZInfo::initEmpty);
}

StructuringElementXYZInfoPtr cubicSEXYZInfo(ipUInt32 halfSize)
{
  return makeInfo(&StructuringElementXYZInfo::initCubic, halfSize);
}

StructuringElementXYZInfoPtr rectangularSEXYZInfo(ipUInt32 halfSizeX, ipUInt32 halfSizeY, ipUInt32 halfSizeZ)
{
  return makeInfo(&StructuringElementXYZInfo::initRectangular, halfSizeX, halfSizeY, halfSizeZ);
}

StructuringElementXYZInfoPtr sphericalSEXYZInfo(ipReal64 radius)
{
  return makeInfo(&StructuringElementXYZInfo::initSpherical, radius);
}

StructuringElementXYZInfoPtr halfLinearSEXYZInfo(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  return makeInfo(&StructuringElementXYZInfo::initHalfLinear, theta, phi, radius);
}

StructuringElementXYZInfoPtr linearSEXYZInfo(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  return makeInfo(&StructuringElementXYZInfo::initLinear, theta, phi, radius);
}

} // namespace orvel
