#pragma once

/// \file
/// \brief Descriptions of structuring elements of planar images.

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Pattern/StructuringElement/BaseStructuringElementInfo.h>
#include <ORVELBaseData/Pattern/StructuringElement/SEXYSubType.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

namespace details
{
template <class Info>
struct InfoFields;
template <class Info>
struct InfoOperations;
} // namespace details

/// \brief Structuring element of planar images with the kind and the parameters of its shape.
///
/// Each initialisation builds the element at once and replaces what the description held. insert() and
/// remove() change the element and neither the kind nor the parameters: a disc with one more offset still
/// returns its radius.
///
/// getStructuringElement() shares the element. Those who hold it see it change by insert() and remove(), and
/// emptied by clear(), by every initialisation and by a copy of a description that is not initialised. init()
/// and a copy of an initialised description fill the same element; the other initialisations and read() take
/// a new one. The reference that getDataColl() returns lives as long as the element, not as long as the
/// description.
///
/// A copy has an element of its own and the parameters of its shape, except the half size of a square:
/// getHalfSize() of a copied square returns what the target held, 0 in a new one.
///
/// Archive version 1: after "_bInit", if that is true, the kind "_seXYSubType", the parameters of the shape,
/// and the element "_pSEXY", which is read and not built from the parameters. A null element is refused. A
/// read that fails keeps what was read before the failure, "_bInit" included, and the old element.
class ORVELBASEDATA_EXPORT StructuringElementXYInfo : public BaseStructuringElementInfo
{
  ORVEL_DECLARE_SERIALIZABLE(StructuringElementXYInfo)

public:
  StructuringElementXYInfo(); ///< a description that is not initialised

  eStructuringElementType getStructuringElementType() const override; ///< eSET_XY

  /// \brief Copy an element, as a generic shape. Passing this description's own element empties it.
  void init(const StructuringElementXY& element);

  void initEmpty(); ///< \brief Take a new empty element, as a generic shape.

  /// \name Shapes
  /// Each builds the element with the builder of the same name. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius) if the radius is negative or NaN; the description is then
  /// not initialised
  /// \{
  void initCircular(ipReal64 radius);                           ///< a disc
  void initSquare(ipUInt32 halfSize);                           ///< a square
  void initRectangular(ipUInt32 halfSizeX, ipUInt32 halfSizeY); ///< a rectangle
  void initHalfLinear(ipReal64 theta, ipReal64 radius);         ///< a segment from the origin
  void initLinear(ipReal64 theta, ipReal64 radius);             ///< a segment through the origin
  /// \}

  /// \name Queries
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  /// \throw ORVELBaseDataException (eInvalidSESubType) for a parameter that the shape does not have
  /// \{
  const eSEXYSubType& getSEXYSubType() const;                 ///< the kind of the shape
  StructuringElementXYConstPtr getStructuringElement() const; ///< the element, shared
  const XYOffsetColl& getDataColl() const;                    ///< the offsets of the element
  ipReal64 getRadius() const;                                 ///< of a disc or a segment
  ipUInt32 getHalfSize() const;                               ///< of a square, not of a rectangle
  ipUInt32 getHalfSizeX() const;                              ///< of a rectangle, not of a square
  ipUInt32 getHalfSizeY() const;                              ///< of a rectangle, not of a square
  ipReal64 getTheta() const;                                  ///< of a segment
  /// \}

  /// \name Changes of the element
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  /// \{
  bool insert(const OffsetXY& offset); ///< \brief Add an offset. \return false if it is there already
  bool insert(ipInt32 x, ipInt32 y);   ///< \copydoc insert(const OffsetXY&)
  bool remove(const OffsetXY& offset); ///< \brief Remove an offset. \return false if it is not there
  bool remove(ipInt32 x, ipInt32 y);   ///< \copydoc remove(const OffsetXY&)
  /// \}

protected:
  void clearDerived() override; ///< \brief Empty the element in place.

private:
  friend struct details::InfoFields<StructuringElementXYInfo>;
  friend struct details::InfoOperations<StructuringElementXYInfo>;

  eSEXYSubType _seXYSubType = eSEXYSubType::eSEXY_Generic;
  ipReal64 _radius = 0;
  ipUInt32 _halfSize = 0;
  ipUInt32 _halfSizeX = 0;
  ipUInt32 _halfSizeY = 0;
  ipReal64 _theta = 0;
  StructuringElementXYPtr _pSEXY = boost::make_shared<StructuringElementXY>();
};

using StructuringElementXYInfoPtr = boost::shared_ptr<StructuringElementXYInfo>; ///< shared description
using StructuringElementXYInfoConstPtr =
    boost::shared_ptr<const StructuringElementXYInfo>; ///< shared constant description

} // namespace orvel
