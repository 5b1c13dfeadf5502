#pragma once

/// \file
/// \brief Kernels of volumes.

#include <map>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/BaseKernel.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>

namespace orvel
{

namespace details
{
template <class Holder>
struct BoundingBox;
template <class Kernel>
struct KernelOperations;
} // namespace details

/// \brief Sparse weighted neighbourhood of a voxel: a coefficient for each offset that has a tap.
///
/// The same as KernelXY, with one axis more: the box, the sums, the two empty states, the versions of the
/// archive and every operation behave as told there.
/// \see KernelXY
class ORVELBASEDATA_EXPORT KernelXYZ : public BaseKernel
{
  ORVEL_DECLARE_SERIALIZABLE(KernelXYZ)

public:
  using OffsetType = OffsetXYZ; ///< place of a tap
  using ValueType = ipReal32;   ///< coefficient of a tap

  KernelXYZ(); ///< a kernel without taps; box and sums are 0

  /// \brief Add a tap. \see KernelXY::insert
  /// \throw ORVELBaseDataException (eInsertExistingKernelElt) if the offset has a tap; the kernel is
  /// unchanged
  void insert(const OffsetType& offset, const ValueType& value);

  /// \brief Change the coefficient of a tap. \see KernelXY::replace
  /// \throw ORVELBaseDataException (eRemoveMissingKernelElt: the text is that of remove) if the offset has no
  /// tap; the kernel is unchanged
  void replace(const OffsetType& offset, const ValueType& value);

  /// \brief Remove a tap and shrink the box to the taps that are left. \see KernelXY::remove
  /// \throw ORVELBaseDataException (eRemoveMissingKernelElt) if the offset has no tap; the kernel is
  /// unchanged
  void remove(const OffsetType& offset);

  /// \brief Return the coefficient of a tap.
  /// \throw ORVELBaseDataException (eGetMissingKernelElt) if the offset has no tap
  ValueType getValue(const OffsetType& offset) const;

  ipBool exists(const OffsetType& offset) const; ///< whether the offset has a tap

  /// \brief Multiply every coefficient and both sums by a factor. \see KernelXY::multiply
  void multiply(ipReal32 factor);

  eKernelType getKernelType() const override; ///< eKT_XYZ
  ipUInt32 getNbData() const override;
  void clear() override;

  /// \brief Return the taps, in ascending order of their offsets.
  const std::map<OffsetType, ValueType>& getDataColl() const { return _dataColl; }

  ipInt32 getMinX() const { return _minX; }              ///< smallest x of the box
  ipInt32 getMinY() const { return _minY; }              ///< smallest y of the box
  ipInt32 getMinZ() const { return _minZ; }              ///< smallest z of the box
  ipUInt32 getSizeX() const { return _sizeX; }           ///< width of the box, in voxels
  ipUInt32 getSizeY() const { return _sizeY; }           ///< height of the box, in voxels
  ipUInt32 getSizeZ() const { return _sizeZ; }           ///< depth of the box, in voxels
  ipReal32 getCoefSum() const { return _coefSum; }       ///< sum of the coefficients
  ipReal32 getAbsCoefSum() const { return _absCoefSum; } ///< sum of their absolute values

private:
  friend struct details::BoundingBox<KernelXYZ>;
  friend struct details::KernelOperations<KernelXYZ>;

  /// \see KernelXY::computeAbsCoefSum
  ipReal32 computeAbsCoefSum();

  std::map<OffsetType, ValueType> _dataColl;
  ipInt32 _minX = 0;
  ipInt32 _minY = 0;
  ipInt32 _minZ = 0;
  ipUInt32 _sizeX = 0;
  ipUInt32 _sizeY = 0;
  ipUInt32 _sizeZ = 0;
  ipReal32 _coefSum = 0;
  ipReal32 _absCoefSum = 0;
};

using KernelXYZPtr = boost::shared_ptr<KernelXYZ>;            ///< shared kernel
using KernelXYZConstPtr = boost::shared_ptr<const KernelXYZ>; ///< shared constant kernel

} // namespace orvel
