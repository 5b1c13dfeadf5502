#pragma once

/// \file
/// \brief Structuring elements of planar images.

#include <set>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/OffsetXY.h>
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

using XYOffsetColl = std::set<OffsetXY>; ///< a set of offsets, in their order

/// \brief Unweighted neighbourhood of a pixel: a set of offsets around the centre, with its bounding box.
///
/// The box is the smallest coordinate and the size along each axis, in 32-bit arithmetic that wraps around.
/// It touches an offset on each side and may have holes. Offsets at both ends of the 32-bit range give the
/// size 0, which the next insert() takes for a box without offsets.
///
/// An element has two empty states. New or cleared: the box is all 0. Emptied by remove(), or set to an empty
/// set: each minimum is 2147483647, each size 2. Both behave alike, and the next insert() gives both the box
/// of that one offset. Copies and archives keep them apart.
///
/// \code
/// StructuringElementXY corner;
/// corner.insert(OffsetXY(0, 0));
/// corner.insert(OffsetXY(1, 0));
/// corner.insert(OffsetXY(0, 1)); // minimum (0, 0), size (2, 2)
/// \endcode
///
/// Archive version 1: the items "_dataColl", "_minX", "_minY", "_sizeX", "_sizeY". The box is read as it is
/// stored and not checked against the offsets. A read that fails keeps what was read before the failure.
class ORVELBASEDATA_EXPORT StructuringElementXY : public BaseStructuringElement
{
  ORVEL_DECLARE_SERIALIZABLE(StructuringElementXY)

public:
  using OffsetType = OffsetXY;

  StructuringElementXY(); ///< an element without offsets; the box is 0

  /// \brief Add an offset. Complexity: logarithmic, constant for an offset after the last one.
  /// \throw ORVELBaseDataException (eInsertExistingSEElt) if the offset is there; the element is unchanged
  void insert(const OffsetType& offset);

  /// \brief Remove an offset and shrink the box to the offsets left. Complexity: linear.
  /// \throw ORVELBaseDataException (eRemoveMissingSEElt) if the offset is not there; the element is unchanged
  void remove(const OffsetType& offset);

  bool exists(const OffsetType& offset) const; ///< whether the offset is there
  ipUInt64 getNbData() const;                  ///< number of offsets

  /// \brief Return the offsets, in ascending order.
  const XYOffsetColl& getDataColl() const { return _dataColl; }

  /// \brief Replace all offsets by a copy of a set and find its box. Complexity: linear.
  void setDataColl(const XYOffsetColl& offsets);

  void clear(); ///< \brief Return to the state of a new element.

  eStructuringElementType getStructuringElementType() const override; ///< eSET_XY

  ipInt32 getMinX() const { return _minX; }    ///< smallest x of the box
  ipInt32 getMinY() const { return _minY; }    ///< smallest y of the box
  ipUInt32 getSizeX() const { return _sizeX; } ///< size of the box along x, in offsets
  ipUInt32 getSizeY() const { return _sizeY; } ///< size of the box along y, in offsets

private:
  friend struct details::BoundingBox<StructuringElementXY>;
  friend struct details::StructuringElementOperations<StructuringElementXY>;

  XYOffsetColl _dataColl;
  ipInt32 _minX = 0;
  ipInt32 _minY = 0;
  ipUInt32 _sizeX = 0;
  ipUInt32 _sizeY = 0;
};

using StructuringElementXYPtr = boost::shared_ptr<StructuringElementXY>; ///< shared element
using StructuringElementXYConstPtr =
    boost::shared_ptr<const StructuringElementXY>; ///< shared constant element

} // namespace orvel
