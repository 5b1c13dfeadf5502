#pragma once

/// \file
/// \brief Displacements in space.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Integer displacement from a centre voxel, the address of a neighbour.
///
/// As OffsetXY, with one axis more; neither class derives from the other. Unit: voxels. Archive version 1.
class ORVELBASEDATA_EXPORT OffsetXYZ : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(OffsetXYZ)

public:
  /// \brief Make an offset whose coordinates have no value until they are assigned or read.
  OffsetXYZ() {} // not = default, with which OffsetXYZ() would zero the coordinates

  /// \brief Make an offset with these coordinates.
  OffsetXYZ(ipInt32 x, ipInt32 y, ipInt32 z)
    : _xOffset(x)
    , _yOffset(y)
    , _zOffset(z)
  {
  }

  ipInt32 getXOffset() const { return _xOffset; } ///< displacement along x
  ipInt32 getYOffset() const { return _yOffset; } ///< displacement along y
  ipInt32 getZOffset() const { return _zOffset; } ///< displacement along z

private:
  ipInt32 _xOffset;
  ipInt32 _yOffset;
  ipInt32 _zOffset;
};

/// \brief Order by z, then by y, then by x, as signed numbers: plane by plane, each in raster order.
///
/// Kernels and structuring elements keep, sum and store their offsets in this order.
inline bool operator<(const OffsetXYZ& left, const OffsetXYZ& right)
{
  if (left.getZOffset() != right.getZOffset())
    return left.getZOffset() < right.getZOffset();
  if (left.getYOffset() != right.getYOffset())
    return left.getYOffset() < right.getYOffset();
  return left.getXOffset() < right.getXOffset();
}

/// \brief Return whether all coordinates are equal.
inline bool operator==(const OffsetXYZ& left, const OffsetXYZ& right)
{
  return left.getXOffset() == right.getXOffset() && left.getYOffset() == right.getYOffset() &&
         left.getZOffset() == right.getZOffset();
}

} // namespace orvel
