#pragma once

/// \file
/// \brief Structuring elements of volumes.

#include <set>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>
#include <ORVELBaseData/Pattern/StructuringElement/BaseStructuringElement.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

namespace details
{
template <class Holder>
struct BoundingBox;
template <class Element>
struct StructuringElementOperations;
} // namespace details

using XYZOffsetColl = std::set<OffsetXYZ>; ///< a set of offsets, in their order

/// \brief Unweighted neighbourhood of a voxel: a set of offsets around the centre, with its bounding box.
///
/// The box is kept as the smallest coordinate and the size along each axis, in 32-bit arithmetic that wraps
/// around. It touches an offset on each side and may have holes. Offsets at both ends of the range give the
/// size 0, which the next insert takes for a box without offsets.
///
/// An element has two empty states. Fresh or cleared: the box is all 0. Emptied by remove, or set to an empty
/// set: each minimum is 2147483647, each size 2. Both answer alike, and after the next insert both have the
/// box of that one offset. Copies and archives keep them apart.
///
/// Archive version 1: the items "_dataColl", "_minX", "_minY", "_minZ", "_sizeX", "_sizeY", "_sizeZ". The box
/// is taken as it stands, without a check against the offsets. A read that fails keeps what came before the
/// failure.
class ORVELBASEDATA_EXPORT StructuringElementXYZ : public BaseStructuringElement
{
  ORVEL_DECLARE_SERIALIZABLE(StructuringElementXYZ)

public:
  using OffsetType = OffsetXYZ;

  StructuringElementXYZ(); ///< an element without offsets; the box is 0

  /// \brief Add an offset. Complexity: one lookup, none for an offset behind the last one.
  /// \throw ORVELBaseDataException (eInsertExistingSEElt) if the offset is there; nothing has changed
  void insert(const OffsetType& offset);

  /// \brief Remove an offset and shrink the box to those that are left. Complexity: a walk over all of them.
  /// \throw ORVELBaseDataException (eRemoveMissingSEElt) if the offset is not there; nothing has changed
  void remove(const OffsetType& offset);

  bool exists(const OffsetType& offset) const; ///< whether the offset is there
  ipUInt64 getNbData() const;                  ///< number of offsets

  /// \brief Return the offsets, in ascending order.
  const XYZOffsetColl& getDataColl() const { return _dataColl; }

  /// \brief Replace all offsets by a copy of a set. Complexity: a walk over all of them.
  void setDataColl(const XYZOffsetColl& offsets);

  void clear(); ///< \brief Go back to the state of a new element.

  eStructuringElementType getStructuringElementType() const override; ///< eSET_XYZ

  ipInt32 getMinX() const { return _minX; }    ///< smallest x of the box
  ipInt32 getMinY() const { return _minY; }    ///< smallest y of the box
  ipInt32 getMinZ() const { return _minZ; }    ///< smallest z of the box
  ipUInt32 getSizeX() const { return _sizeX; } ///< size of the box along x, in offsets
  ipUInt32 getSizeY() const { return _sizeY; } ///< size of the box along y, in offsets
  ipUInt32 getSizeZ() const { return _sizeZ; } ///< size of the box along z, in offsets

private:
  friend struct details::BoundingBox<StructuringElementXYZ>;
  friend struct details::StructuringElementOperations<StructuringElementXYZ>;

  XYZOffsetColl _dataColl;
  ipInt32 _minX = 0;
  ipInt32 _minY = 0;
  ipInt32 _minZ = 0;
  ipUInt32 _sizeX = 0;
  ipUInt32 _sizeY = 0;
  ipUInt32 _sizeZ = 0;
};

using StructuringElementXYZPtr = boost::shared_ptr<StructuringElementXYZ>; ///< shared element
using StructuringElementXYZConstPtr =
    boost::shared_ptr<const StructuringElementXYZ>; ///< shared constant element

} // namespace orvel
