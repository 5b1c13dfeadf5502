#pragma once

/// \file
/// \brief Scale, unit, origin and rotation of the pixel grid of an image.

#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Quaternion qr + qi i + qj j + qk k.
struct Quaternion
{
  ipReal32 _qr; ///< real part
  ipReal32 _qi; ///< part along i
  ipReal32 _qj; ///< part along j
  ipReal32 _qk; ///< part along k
};

/// \brief Scale, unit, origin and rotation of the pixel grid of an image.
///
/// A plain value: the library does no geometry with it. Scales are in units per pixel along each axis, the
/// unit has any name ("mm"), the origin is in those units. The rotation is a quaternion, never normalised.
///
/// Beware: a new calibration has the zero quaternion (0, 0, 0, 0), not the identity (1, 0, 0, 0).
///
/// Archive version 2. Version 1 held the scales and the unit only: reading it sets the origin and the
/// rotation to zeros. After a failure the fields read so far have their new values.
class ORVELBASEDATA_EXPORT GeometricCalibration : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(GeometricCalibration)

public:
  GeometricCalibration(); ///< scales 1, unit "px", origin and rotation zero

  /// \brief Set everything for an image in the plane; along z the scale becomes 1 and the origin 0.
  ///
  /// An empty unit empties the unit. Beware: the rotation takes qr, qi and qj, and qk becomes 0, although a
  /// rotation within the plane of x and y turns around k. Call init3d() to set one.
  /// \throw ORVELBaseDataException (eInvalidScale) with the first scale, in the order x, y, that is not above
  /// 0, NaN included; nothing has changed
  void init2d(ipReal32 xScale, ipReal32 yScale, const std::string& unitStr, ipReal32 xOrigin,
              ipReal32 yOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj);

  /// \brief Set everything. An empty unit empties the unit. Infinite scales are accepted.
  /// \throw ORVELBaseDataException (eInvalidScale) with the first scale, in the order x, y, z, that is not above
  /// 0, NaN included; nothing has changed
  void init3d(ipReal32 xScale, ipReal32 yScale, ipReal32 zScale, const std::string& unitStr, ipReal32 xOrigin,
              ipReal32 yOrigin, ipReal32 zOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj, ipReal32 qk);

  void setOrigin(ipReal32 x, ipReal32 y);             ///< \brief Set the origin; along z it becomes 0.
  void setOrigin(ipReal32 x, ipReal32 y, ipReal32 z); ///< \brief Set the origin.

  void setUnitStr(const std::string& unitStr); ///< \brief Set the unit, also to an empty text.

  /// \brief Set the scale along all axes, and the unit unless it is empty.
  ///
  /// The scale is not tested, unlike in init2d() and init3d(). The origin along each axis whose scale is set
  /// becomes origin / scale * scale, in 32-bit arithmetic with the new scale: a finite scale other than 0
  /// rounds it, and a scale of 0 makes it NaN, so that the calibration differs from itself.
  void setScale(ipReal32 scale, const std::string& unitStr);

  /// \brief Set the scale along x and y, and the unit unless it is empty. Scale and origin along z stay.
  /// \see setScale(ipReal32, const std::string&)
  void setScale(ipReal32 xScale, ipReal32 yScale, const std::string& unitStr);

  /// \brief Set the scales, and the unit unless it is empty. \see setScale(ipReal32, const std::string&)
  void setScale(ipReal32 xScale, ipReal32 yScale, ipReal32 zScale, const std::string& unitStr);

  ipReal32 getXScale() const { return _xScale; }              ///< units per pixel along x
  ipReal32 getYScale() const { return _yScale; }              ///< units per pixel along y
  ipReal32 getZScale() const { return _zScale; }              ///< units per pixel along z
  const std::string& getUnitStr() const { return _unitStr; }  ///< name of the unit, may be empty
  ipReal32 getXOrigin() const { return _xOrigin; }            ///< origin along x, in units
  ipReal32 getYOrigin() const { return _yOrigin; }            ///< origin along y, in units
  ipReal32 getZOrigin() const { return _zOrigin; }            ///< origin along z, in units
  const Quaternion& getRotation() const { return _rotation; } ///< rotation, not normalised

  /// \brief Compare every field, exactly: 0 equals -0, and a NaN makes a calibration differ from itself.
  bool operator==(const GeometricCalibration& other) const;
  bool operator!=(const GeometricCalibration& other) const; ///< not equal \see operator==

private:
  ipReal32 _xScale = 1.0F;
  ipReal32 _yScale = 1.0F;
  ipReal32 _zScale = 1.0F;
  std::string _unitStr = "px";
  ipReal32 _xOrigin = 0.0F;
  ipReal32 _yOrigin = 0.0F;
  ipReal32 _zOrigin = 0.0F;
  Quaternion _rotation = {0.0F, 0.0F, 0.0F, 0.0F};
};

using GeometricCalibrationPtr = boost::shared_ptr<GeometricCalibration>; ///< shared calibration
using GeometricCalibrationConstPtr =
    boost::shared_ptr<const GeometricCalibration>; ///< shared constant calibration

/// \name Calibrations of images in the plane
/// Each returns a new calibration, set by GeometricCalibration::init2d(). Where an argument is missing, the
/// scale of y is that of x, other numbers are 0, and the unit is empty, not "px".
/// \throw ORVELBaseDataException (eInvalidScale) as init2d()
/// \{
ORVELBASEDATA_EXPORT GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 scale);
ORVELBASEDATA_EXPORT GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 xScale, ipReal32 yScale,
                                                                          ipReal32 xOrigin, ipReal32 yOrigin,
                                                                          ipReal32 qr, ipReal32 qi,
                                                                          ipReal32 qj);
ORVELBASEDATA_EXPORT GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 scale,
                                                                          const std::string& unitStr,
                                                                          ipReal32 xOrigin, ipReal32 yOrigin,
                                                                          ipReal32 qr, ipReal32 qi,
                                                                          ipReal32 qj);
ORVELBASEDATA_EXPORT GeometricCalibrationPtr createGeometricCalibration2d(ipReal32 xScale, ipReal32 yScale,
                                                                          const std::string& unitStr,
                                                                          ipReal32 xOrigin, ipReal32 yOrigin,
                                                                          ipReal32 qr, ipReal32 qi,
                                                                          ipReal32 qj);
/// \}

/// \name Calibrations of images in space
/// Each returns a new calibration, set by GeometricCalibration::init3d(). Where an argument is missing, the
/// scales of y and z are that of x, other numbers are 0, and the unit is empty, not "px".
/// \throw ORVELBaseDataException (eInvalidScale) as init3d()
/// \{
ORVELBASEDATA_EXPORT GeometricCalibrationPtr createGeometricCalibration3d(ipReal32 scale);
ORVELBASEDATA_EXPORT GeometricCalibrationPtr createGeometricCalibration3d(ipReal32 xScale, ipReal32 yScale,
                                                                          ipReal32 zScale, ipReal32 xOrigin,
                                                                          ipReal32 yOrigin, ipReal32 zOrigin,
                                                                          ipReal32 qr, ipReal32 qi,
                                                                          ipReal32 qj, ipReal32 qk);
ORVELBASEDATA_EXPORT GeometricCalibrationPtr
createGeometricCalibration3d(ipReal32 scale, const std::string& unitStr, ipReal32 xOrigin, ipReal32 yOrigin,
                             ipReal32 zOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj, ipReal32 qk);
ORVELBASEDATA_EXPORT GeometricCalibrationPtr createGeometricCalibration3d(
    ipReal32 xScale, ipReal32 yScale, ipReal32 zScale, const std::string& unitStr, ipReal32 xOrigin,
    ipReal32 yOrigin, ipReal32 zOrigin, ipReal32 qr, ipReal32 qi, ipReal32 qj, ipReal32 qk);
/// \}

} // namespace orvel
