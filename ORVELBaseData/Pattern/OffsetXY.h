#pragma once

/// \file
/// \brief Displacements in the plane.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Integer displacement from a centre pixel, the address of a neighbour.
///
/// Unit: pixels. A plain value: any two numbers are accepted. There is no operator!= and no hash. Archive
/// version 1; a read that fails keeps the coordinates read so far.
class ORVELBASEDATA_EXPORT OffsetXY : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(OffsetXY)

public:
  /// \brief Make an offset whose coordinates are not set: they have no value until they are assigned or read.
  OffsetXY() {} // stands for = default, which would let OffsetXY() zero the coordinates

  /// \brief Make an offset of these coordinates.
  OffsetXY(ipInt32 x, ipInt32 y)
    : _xOffset(x)
    , _yOffset(y)
  {
  }

  ipInt32 getXOffset() const { return _xOffset; } ///< displacement along x
  ipInt32 getYOffset() const { return _yOffset; } ///< displacement along y

private:
  ipInt32 _xOffset;
  ipInt32 _yOffset;
};

/// \brief Order by y, then by x, signed: the raster order of a neighbourhood.
///
/// Kernels and structuring elements are walked, summed and archived in this order.
inline bool operator<(const OffsetXY& left, const OffsetXY& right)
{
  if (left.getYOffset() != right.getYOffset())
    return left.getYOffset() < right.getYOffset();
  return left.getXOffset() < right.getXOffset();
}

/// \brief Compare every coordinate.
inline bool operator==(const OffsetXY& left, const OffsetXY& right)
{
  return left.getXOffset() == right.getXOffset() && left.getYOffset() == right.getYOffset();
}

} // namespace orvel
