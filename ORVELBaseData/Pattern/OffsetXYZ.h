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
/// Unit: voxels. A plain value: any three numbers are accepted. It is no OffsetXY, and nothing converts
/// the two. There is no operator!= and no hash. Archive version 1; a read that fails keeps the coordinates
/// read so far.
class ORVELBASEDATA_EXPORT OffsetXYZ : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(OffsetXYZ)

public:
  /// \brief Make an offset whose coordinates are not set: they have no value until they are assigned or read.
  OffsetXYZ() {} // stands for = default, which would let OffsetXYZ() zero the coordinates

  /// \brief Make an offset of these coordinates.
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

/// \brief Order by z, then by y, then by x, signed: plane by plane, each in raster order.
///
/// Kernels and structuring elements are walked, summed and archived in this order.
inline bool operator<(const OffsetXYZ& left, const OffsetXYZ& right)
{
  if (left.getZOffset() != right.getZOffset())
    return left.getZOffset() < right.getZOffset();
  if (left.getYOffset() != right.getYOffset())
    return left.getYOffset() < right.getYOffset();
  return left.getXOffset() < right.getXOffset();
}

/// \brief Compare every coordinate.
inline bool operator==(const OffsetXYZ& left, const OffsetXYZ& right)
{
  return left.getXOffset() == right.getXOffset() && left.getYOffset() == right.getYOffset() &&
         left.getZOffset() == right.getZOffset();
}

} // namespace orvel
