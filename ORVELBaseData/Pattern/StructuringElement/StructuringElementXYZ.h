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
/// As StructuringElementXY, with one axis more: the box, the two empty states and every operation behave as
/// described there. In an archive "_minZ" follows "_minY", and "_sizeZ" follows "_sizeY".
/// \see StructuringElementXY
class ORVELBASEDATA_EXPORT StructuringElementXYZ : public BaseStructuringElement
{
  ORVEL_DECLARE_SERIALIZABLE(StructuringElementXYZ)

public:
  using OffsetType = OffsetXYZ;

  StructuringElementXYZ(); ///< an element without offsets; the box is 0

  /// \brief Add an offset. \see StructuringElementXY::insert
  /// \throw ORVELBaseDataException (eInsertExistingSEElt) if the offset is there; the element is unchanged
  void insert(const OffsetType& offset);

  /// \brief Remove an offset and shrink the box to the offsets left. \see StructuringElementXY::remove
  /// \throw ORVELBaseDataException (eRemoveMissingSEElt) if the offset is not there; the element is unchanged
  void remove(const OffsetType& offset);

  bool exists(const OffsetType& offset) const; ///< whether the offset is there
  ipUInt64 getNbData() const;                  ///< number of offsets

  /// \brief Return the offsets, in ascending order.
  const XYZOffsetColl& getDataColl() const { return _dataColl; }

  /// \brief Replace all offsets by a copy of a set and find its box. Complexity: linear.
  void setDataColl(const XYZOffsetColl& offsets);

  void clear(); ///< \brief Return to the state of a new element.

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
