#include "ORVELBaseData/Calibration/GeometricCalibration.h"

#include <initializer_list>

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Calibration/CalibrationLogMessages.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(GeometricCalibration, BaseSerializationObject, 2)

namespace
{

void checkScales(const SourceLocation& here, std::initializer_list<ipReal32> scales)
{
  for (const ipReal32 scale : scales)
  {
    if (!(scale > 0)) // refuses NaN too
      raise(here, eCalibrationMessage::eInvalidScale, scale);
  }
}

// Scales an axis; what the origin becomes is rounded, and NaN under a scale of 0: callers know it so.
void scaleAxis(ipReal32& axisScale, ipReal32& origin, ipReal32 scale)
{
  axisScale = scale;
  origin = origin / scale * scale;
}

void replaceUnit(std::string& unit, const std::string& unitStr)
{
  if (!unitStr.empty())
    unit = unitStr;
}

} // namespace

GeometricCalibration::GeometricCalibration() = default;

void GeometricCalibration::init2d(ipReal32 xScale, ipReal32 yScale, const std::string& unitStr,
                                  ipReal32 xOrigin, ipReal32 yOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj)
{
  checkScales(ORVEL_HERE, {xScale, yScale});
  init3d(xScale, yScale, 1.0F, unitStr, xOrigin, yOrigin, 0.0F, qr, qi, qj, 0.0F);
}

void GeometricCalibration::init3d(ipReal32 xScale, ipReal32 yScale, ipReal32 zScale,
                                  const std::string& unitStr, ipReal32 xOrigin, ipReal32 yOrigin,
                                  ipReal32 zOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj, ipReal32 qk)
{
  checkScales(ORVEL_HERE, {xScale, yScale, zScale});
  _unitStr = unitStr; // first, as it alone may fail
  _xScale = xScale;
  _yScale = yScale;
  _zScale = zScale;
  _xOrigin = xOrigin;
  _yOrigin = yOrigin;
  _zOrigin = zOrigin;
  _rotation = {qr, qi, qj, qk};
}

void GeometricCalibration::setOrigin(ipReal32 x, ipReal32 y)
{
  setOrigin(x, y, 0.0F);
}

void GeometricCalibration::setOrigin(ipReal32 x, ipReal32 y, ipReal32 z)
{
  _xOrigin = x;
  _yOrigin = y;
  _zOrigin = z;
}

void GeometricCalibration::setUnitStr(const std::string& unitStr)
{
  _unitStr = unitStr;
}

void GeometricCalibration::setScale(ipReal32 scale, const std::string& unitStr)
{
  setScale(scale, scale, scale, unitStr);
}

void GeometricCalibration::setScale(ipReal32 xScale, ipReal32 yScale, const std::string& unitStr)
{
  scaleAxis(_xScale, _xOrigin, xScale);
  scaleAxis(_yScale, _yOrigin, yScale);
  replaceUnit(_unitStr, unitStr);
}

void GeometricCalibration::setScale(ipReal32 xScale, ipReal32 yScale, ipReal32 zScale,
                                    const std::string& unitStr)
{
  scaleAxis(_zScale, _zOrigin, zScale);
  setScale(xScale, yScale, unitStr);
}

bool GeometricCalibration::operator==(const GeometricCalibration& other) const
{
  return _xScale == other._xScale && _yScale == other._yScale && _zScale == other._zScale &&
         _unitStr == other._unitStr && _xOrigin == other._xOrigin && _yOrigin == other._yOrigin &&
         _zOrigin == other._zOrigin && _rotation._qr == other._rotation._qr &&
         _rotation._qi == other._rotation._qi && _rotation._qj == other._rotation._qj &&
         _rotation._qk == other._rotation._qk;
}

bool GeometricCalibration::operator!=(const GeometricCalibration& other) const
{
  return !(other == *this);
}

void GeometricCalibration::copyMembers(const GeometricCalibration& other)
{
  _unitStr = other._unitStr; // first, as it alone may fail
  _xScale = other._xScale;
  _yScale = other._yScale;
  _zScale = other._zScale;
  _xOrigin = other._xOrigin;
  _yOrigin = other._yOrigin;
  _zOrigin = other._zOrigin;
  _rotation = other._rotation;
}

void GeometricCalibration::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_xScale", _xScale);
  archive << SerializationOItem("_yScale", _yScale);
  archive << SerializationOItem("_zScale", _zScale);
  archive << SerializationOItem("_unitStr", _unitStr);
  archive << SerializationOItem("_xOrigin", _xOrigin);
  archive << SerializationOItem("_yOrigin", _yOrigin);
  archive << SerializationOItem("_zOrigin", _zOrigin);
  archive << SerializationOItem("_rotation._qr", _rotation._qr);
  archive << SerializationOItem("_rotation._qi", _rotation._qi);
  archive << SerializationOItem("_rotation._qj", _rotation._qj);
  archive << SerializationOItem("_rotation._qk", _rotation._qk);
}

void GeometricCalibration::readMembers(BaseIArchive& archive, ipUInt32 version)
{
  archive >> SerializationIItem("_xScale", _xScale);
  archive >> SerializationIItem("_yScale", _yScale);
  archive >> SerializationIItem("_zScale", _zScale);
  archive >> SerializationIItem("_unitStr", _unitStr);
  if (version == 1)
  {
    setOrigin(0.0F, 0.0F, 0.0F);
    _rotation = {0.0F, 0.0F, 0.0F, 0.0F};
    return;
  }
  archive >> SerializationIItem("_xOrigin", _xOrigin);
  archive >> SerializationIItem("_yOrigin", _yOrigin);
  archive >> SerializationIItem("_zOrigin", _zOrigin);
  archive >> SerializationIItem("_rotation._qr", _rotation._qr);
  archive >> SerializationIItem("_rotation._qi", _rotation._qi);
  archive >> SerializationIItem("_rotation._qj", _rotation._qj);
  archive >> SerializationIItem("_rotation._qk", _rotation._qk);
}

GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 scale)
{
  return createGeometricCalibration2d(scale, scale, std::string(), 0, 0, 0, 0, 0);
}

GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 xScale, ipReal32 yScale, ipReal32 xOrigin,
                                                     ipReal32 yOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj)
{
  return createGeometricCalibration2d(xScale, yScale, std::string(), xOrigin, yOrigin, qr, qi, qj);
}

GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 scale, const std::string& unitStr,
                                                     ipReal32 xOrigin, ipReal32 yOrigin, ipReal32 qr,
                                                     ipReal32 qi, ipReal32 qj)
{
  return createGeometricCalibration2d(scale, scale, unitStr, xOrigin, yOrigin, qr, qi, qj);
}

GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 xScale, ipReal32 yScale,
                                                     const std::string& unitStr, ipReal32 xOrigin,
                                                     ipReal32 yOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj)
{
  GeometricCalibrationPtr calibration = boost::make_shared<GeometricCalibration>();
  calibration->init2d(xScale, yScale, unitStr, xOrigin, yOrigin, qr, qi, qj);
  return calibration;
}

GeometricCalibrationPtr createGeometricCalibration3d(ipReal32 scale)
{
  return createGeometricCalibration3d(scale, scale, scale, std::string(), 0, 0, 0, 0, 0, 0, 0);
}

GeometricCalibrationPtr createGeometricCalibration3d(ipReal32 xScale, ipReal32 yScale, ipReal32 zScale,
                                                     ipReal32 xOrigin, ipReal32 yOrigin, ipReal32 zOrigin,
                                                     ipReal32 qr, ipReal32 qi, ipReal32 qj, ipReal32 qk)
{
  return createGeometricCalibration3d(xScale, yScale, zScale, std::string(), xOrigin, yOrigin, zOrigin, qr,
                                      qi, qj, qk);
}

GeometricCalibrationPtr createGeometricCalibration3d(ipReal32 scale, const std::string& unitStr,
                                                     ipReal32 xOrigin, ipReal32 yOrigin, ipReal32 zOrigin,
                                                     ipReal32 qr, ipReal32 qi, ipReal32 qj, ipReal32 qk)
{
  return createGeometricCalibration3d(scale, scale, scale, unitStr, xOrigin, yOrigin, zOrigin, qr, qi, qj,
                                      qk);
}

GeometricCalibrationPtr createGeometricCalibration3d(ipReal32 xScale, ipReal32 yScale, ipReal32 zScale,
                                                     const std::string& unitStr, ipReal32 xOrigin,
                                                     ipReal32 yOrigin, ipReal32 zOrigin, ipReal32 qr,
                                                     ipReal32 qi, ipReal32 qj, ipReal32 qk)
{
  GeometricCalibrationPtr calibration = boost::make_shared<GeometricCalibration>();
  calibration->init3d(xScale, yScale, zScale, unitStr, xOrigin, yOrigin, zOrigin, qr, qi, qj, qk);
  return calibration;
}

} // namespace orvel
