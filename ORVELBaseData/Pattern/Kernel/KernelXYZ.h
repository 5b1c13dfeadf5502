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
/// As KernelXY, with one axis more: every operation behaves and fails as described there. Archive version 2.
/// \see KernelXY
class ORVELBASEDATA_EXPORT KernelXYZ : public BaseKernel
{
  ORVEL_DECLARE_SERIALIZABLE(KernelXYZ)

public:
  using OffsetType = OffsetXYZ; ///< place of a tap
  using ValueType = ipReal32;   ///< coefficient of a tap

  KernelXYZ(); ///< no taps; box and sums are 0

  void insert(const OffsetType& offset, const ValueType& value);  ///< \see KernelXY::insert
  void replace(const OffsetType& offset, const ValueType& value); ///< \see KernelXY::replace
  void remove(const OffsetType& offset);                          ///< \see KernelXY::remove
  ValueType getValue(const OffsetType& offset) const;             ///< \see KernelXY::getValue
  ipBool exists(const OffsetType& offset) const;                  ///< whether the offset has a tap
  void multiply(ipReal32 factor);                                 ///< \see KernelXY::multiply

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
