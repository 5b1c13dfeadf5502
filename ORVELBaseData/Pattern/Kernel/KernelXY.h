#pragma once

/// \file
/// \brief Kernels of planar images.

#include <map>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/BaseKernel.h>
#include <ORVELBaseData/Pattern/OffsetXY.h>

namespace orvel
{

namespace details
{
template <class Holder>
struct BoundingBox;
template <class Kernel>
struct KernelOperations;
} // namespace details

/// \brief Sparse weighted neighbourhood of a pixel: a coefficient for each offset that has a tap.
///
/// Beside the taps it keeps what filters ask for again and again:
///  - the bounding box of the offsets, as the smallest coordinate and the size along each axis, both in
///    32-bit arithmetic that wraps around. The box touches a tap on each side and may have holes. Taps at
///    both ends of the range give the size 0, which the next insert takes for a box without taps;
///  - the sums of the coefficients and of their absolute values, running floats that each change adds to and
///    subtracts from, so that they may differ by rounding from a fresh summation. NaN and infinity are
///    legal coefficients and spoil both sums until clear().
///
/// A NaN coefficient is stored as it is given. A NaN that is computed, in a sum, a product or by a builder,
/// is the default quiet NaN, which is positive.
///
/// A kernel has two empty states. Fresh or cleared: box and sums are 0. Emptied by remove: each minimum is
/// 2147483647, each size 2, and the sums hold what rounding left. Both answer alike, and after the next
/// insert both have the box of that one tap.
///
/// A coefficient of 0 is a tap. A copy takes the box and the sums as they are.
///
/// Archive version 2; version 1 held no sum of absolute values and is still read: each of its coefficients v
/// becomes |v| + v, and the sum of absolute values 0. The archived box and sums are taken as they are,
/// without a check against the taps. An offset that comes twice is one tap, with the later coefficient. A
/// read that fails has lost the old taps and keeps what it read.
class ORVELBASEDATA_EXPORT KernelXY : public BaseKernel
{
  ORVEL_DECLARE_SERIALIZABLE(KernelXY)

public:
  using OffsetType = OffsetXY; ///< place of a tap
  using ValueType = ipReal32;  ///< coefficient of a tap

  KernelXY(); ///< a kernel without taps; box and sums are 0

  /// \brief Add a tap.
  ///
  /// Complexity: one lookup, none for a tap behind the last one.
  /// \throw ORVELBaseDataException (eInsertExistingKernelElt) if the offset has a tap; the kernel is
  /// unchanged
  void insert(const OffsetType& offset, const ValueType& value);

  /// \brief Change the coefficient of a tap; the box stays. Complexity: one lookup.
  /// \throw ORVELBaseDataException (eRemoveMissingKernelElt: the text is that of remove) if the offset has no
  /// tap; the kernel is unchanged
  void replace(const OffsetType& offset, const ValueType& value);

  /// \brief Remove a tap and shrink the box to the taps that are left. Complexity: a walk over all taps.
  /// \throw ORVELBaseDataException (eRemoveMissingKernelElt) if the offset has no tap; the kernel is
  /// unchanged
  void remove(const OffsetType& offset);

  /// \brief Return the coefficient of a tap.
  /// \throw ORVELBaseDataException (eGetMissingKernelElt) if the offset has no tap
  ValueType getValue(const OffsetType& offset) const;

  ipBool exists(const OffsetType& offset) const; ///< whether the offset has a tap

  /// \brief Multiply every coefficient and both sums by a factor; the box stays.
  ///
  /// The sum of absolute values is multiplied by the factor itself: a negative factor turns its sign.
  void multiply(ipReal32 factor);

  eKernelType getKernelType() const override; ///< eKT_XY
  ipUInt32 getNbData() const override;
  void clear() override;

  /// \brief Return the taps, in ascending order of their offsets.
  const std::map<OffsetType, ValueType>& getDataColl() const { return _dataColl; }

  ipInt32 getMinX() const { return _minX; }              ///< smallest x of the box
  ipInt32 getMinY() const { return _minY; }              ///< smallest y of the box
  ipUInt32 getSizeX() const { return _sizeX; }           ///< width of the box, in pixels
  ipUInt32 getSizeY() const { return _sizeY; }           ///< height of the box, in pixels
  ipReal32 getCoefSum() const { return _coefSum; }       ///< sum of the coefficients
  ipReal32 getAbsCoefSum() const { return _absCoefSum; } ///< sum of their absolute values

private:
  friend struct details::BoundingBox<KernelXY>;
  friend struct details::KernelOperations<KernelXY>;

  /// \brief Replace each coefficient v by |v| + v and return 0: what reading a kernel of version 1 does.
  ipReal32 computeAbsCoefSum();

  std::map<OffsetType, ValueType> _dataColl;
  ipInt32 _minX = 0;
  ipInt32 _minY = 0;
  ipUInt32 _sizeX = 0;
  ipUInt32 _sizeY = 0;
  ipReal32 _coefSum = 0;
  ipReal32 _absCoefSum = 0;
};

using KernelXYPtr = boost::shared_ptr<KernelXY>;            ///< shared kernel
using KernelXYConstPtr = boost::shared_ptr<const KernelXY>; ///< shared constant kernel

} // namespace orvel
