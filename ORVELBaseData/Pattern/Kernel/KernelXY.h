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
/// Taps are kept in ascending order of their offsets. A coefficient of 0 is a tap like any other. The kernel
/// also keeps what filters often need:
///  - the bounding box of the offsets: the smallest coordinate and the size along each axis, in pixels. The
///    box touches a tap on each side and may hold places without taps. Its arithmetic has 32 bits and wraps
///    around; a size that has wrapped to 0 counts as no box;
///  - the sum of the coefficients and that of their absolute values. Each change adds to them and subtracts
///    from them as floats, so they may differ by rounding from a fresh summation.
///
/// A copy takes box and sums as they are.
///
/// A NaN coefficient is accepted, is stored as it is given, and makes both sums NaN until clear(), as an
/// infinite one that is removed does. A NaN that is computed, in a sum, in a product or by a builder, is the
/// default quiet NaN, which is positive.
///
/// A kernel without taps has one of two states. New or cleared: box and sums are 0. Emptied by remove(): each
/// minimum is 2147483647, each size 2, and the sums hold what rounding left. All operations answer the same
/// in both states, and the next insert() gives both the box of that one tap.
///
/// Archive version 2. Version 1 held no sum of absolute values and is still read: each coefficient v becomes
/// |v| + v, which is 2 max(v, 0), and the sum of absolute values becomes 0. Box and sums are read without a
/// check against the taps; an offset that is stored twice is one tap with the later coefficient. A read that
/// fails leaves what it has read until then.
class ORVELBASEDATA_EXPORT KernelXY : public BaseKernel
{
  ORVEL_DECLARE_SERIALIZABLE(KernelXY)

public:
  using OffsetType = OffsetXY; ///< place of a tap
  using ValueType = ipReal32;  ///< coefficient of a tap

  KernelXY(); ///< no taps; box and sums are 0

  /// \brief Add a tap.
  ///
  /// Complexity: O(log n); O(1) for an offset behind the last one.
  /// \throw ORVELBaseDataException (eInsertExistingKernelElt) if the offset has a tap; the kernel is unchanged
  void insert(const OffsetType& offset, const ValueType& value);

  /// \brief Change the coefficient of a tap; the box stays. Complexity: O(log n).
  /// \throw ORVELBaseDataException (eRemoveMissingKernelElt, with the text of remove()) if the offset has no tap; the
  /// kernel is unchanged
  void replace(const OffsetType& offset, const ValueType& value);

  /// \brief Remove a tap and shrink the box to the taps that are left. Complexity: O(n).
  /// \throw ORVELBaseDataException (eRemoveMissingKernelElt) if the offset has no tap; the kernel is unchanged
  void remove(const OffsetType& offset);

  /// \brief Return the coefficient of a tap. Complexity: O(log n), as that of exists().
  /// \throw ORVELBaseDataException (eGetMissingKernelElt) if the offset has no tap
  ValueType getValue(const OffsetType& offset) const;

  ipBool exists(const OffsetType& offset) const; ///< whether the offset has a tap

  /// \brief Multiply every coefficient and both sums by a factor; the box stays.
  ///
  /// The sum of absolute values is multiplied by the factor itself, not by its absolute value: a negative
  /// factor changes its sign. Complexity: O(n).
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

  /// \brief Replace each coefficient v by |v| + v and return 0, for kernels of version 1.
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
