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

struct SourceLocation;

/// \brief Structuring element of planar images with the kind and the parameters of the shape that made it.
///
/// The element is made at once by the initialisation, each of which replaces what the description held.
/// insert and remove change the element and leave kind and parameters as they are: a disc with one offset
/// more still answers with its radius.
///
/// getStructuringElement() shares the element. Whoever holds it sees it change by insert and remove, and
/// emptied by clear(), by every initialisation and by a copy of what is not initialised. init() and a copy
/// of what is initialised fill the same element; the other initialisations and read() take a new one. The
/// reference of getDataColl() lives as long as the element, not as long as the description.
///
/// A copy has an element of its own. It takes the parameters of its shape over, but for the half size of a
/// square: getHalfSize() of a copied square answers with what the target held, 0 in a new one.
///
/// Archive version 1: behind "_bInit", if that is true, "_seXYSubType", the parameters of the shape, and the
/// element under "_pSEXY"; it is not made anew on reading. An element that is null in the archive is refused.
/// A read that fails keeps what came before the failure, "_bInit" included, and the old element.
class ORVELBASEDATA_EXPORT StructuringElementXYInfo : public BaseStructuringElementInfo
{
  ORVEL_DECLARE_SERIALIZABLE(StructuringElementXYInfo)

public:
  StructuringElementXYInfo(); ///< a description that is not initialised

  eStructuringElementType getStructuringElementType() const override; ///< eSET_XY

  void init(const StructuringElementXY&
                element); ///< \brief Take a copy of any element. Its own one comes out empty.
  void initEmpty();       ///< \brief Take a new empty element; the kind is generic.

  /// \brief Make a disc. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius); the description is not initialised then
  void initCircular(ipReal64 radius);

  void initSquare(ipUInt32 halfSize); ///< \brief Make a square. \see StructuringElementUtils.h
  void initRectangular(ipUInt32 halfSizeX,
                       ipUInt32 halfSizeY); ///< \brief Make a box. \see StructuringElementUtils.h

  /// \brief Make a segment from the origin. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius); the description is not initialised then
  void initHalfLinear(ipReal64 theta, ipReal64 radius);

  /// \brief Make a segment through the origin. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius); the description is not initialised then
  void initLinear(ipReal64 theta, ipReal64 radius);

  /// \name Queries
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  /// \throw ORVELBaseDataException (eInvalidSESubType) for a parameter that the shape does not have
  /// \{
  const eSEXYSubType& getSEXYSubType() const;                 ///< the kind of the shape
  StructuringElementXYConstPtr getStructuringElement() const; ///< the element, shared
  const XYOffsetColl& getDataColl() const;                    ///< the offsets of the element
  ipReal64 getRadius() const;                                 ///< of a disc or a segment
  ipUInt32 getHalfSize() const;                               ///< of a square; a box has others
  ipUInt32 getHalfSizeX() const;                              ///< of a box
  ipUInt32 getHalfSizeY() const;                              ///< of a box
  ipReal64 getTheta() const;                                  ///< of a segment
  /// \}

  /// \brief Add an offset to the element. \return false if it is there already
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  bool insert(const OffsetXY& offset);
  bool insert(ipInt32 x, ipInt32 y); ///< \copydoc insert(const OffsetXY&)

  /// \brief Remove an offset from the element. \return false if it is not there
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  bool remove(const OffsetXY& offset);
  bool remove(ipInt32 x, ipInt32 y); ///< \copydoc remove(const OffsetXY&)

protected:
  void clearDerived() override; ///< \brief Empty the element in place.

private:
  void start(eSEXYSubType::domain subType);
  void requireInitialized(const SourceLocation& here) const;
  bool isSegment() const;

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
