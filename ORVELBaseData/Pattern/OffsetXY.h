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
/// Unit: pixels. Range: any two 32-bit numbers. A plain value: it has no states and checks nothing.
/// Offsets have an order and ==, but neither != nor a hash.
///
/// Archive version 1. A read that fails leaves the coordinates that it has read until then.
class ORVELBASEDATA_EXPORT OffsetXY : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(OffsetXY)

public:
  /// \brief Make an offset whose coordinates have no value until they are assigned or read.
  OffsetXY() {} // not = default, with which OffsetXY() would zero the coordinates

  /// \brief Make an offset with these coordinates.
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

/// \brief Order by y, then by x, as signed numbers: the raster order of a neighbourhood.
///
/// Kernels and structuring elements keep, sum and store their offsets in this order.
inline bool operator<(const OffsetXY& left, const OffsetXY& right)
{
  if (left.getYOffset() != right.getYOffset())
    return left.getYOffset() < right.getYOffset();
  return left.getXOffset() < right.getXOffset();
}

/// \brief Return whether all coordinates are equal.
inline bool operator==(const OffsetXY& left, const OffsetXY& right)
{
  return left.getXOffset() == right.getXOffset() && left.getYOffset() == right.getYOffset();
}

} // namespace orvel
