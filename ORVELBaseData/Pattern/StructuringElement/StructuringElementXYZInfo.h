#pragma once

/// \file
/// \brief Descriptions of structuring elements of volumes.

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Pattern/StructuringElement/BaseStructuringElementInfo.h>
#include <ORVELBaseData/Pattern/StructuringElement/SEXYZSubType.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

struct SourceLocation;

/// \brief Structuring element of volumes with the kind and the parameters of the shape that made it.
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
/// A copy has an element of its own. It takes the parameters of its shape over.
///
/// Archive version 1: behind "_bInit", if that is true, "_seXYZSubType", the parameters of the shape, and the
/// element under "_pSEXYZ"; it is not made anew on reading. An element that is null in the archive is
/// refused. A read that fails keeps what came before the failure, "_bInit" included, and the old element.
class ORVELBASEDATA_EXPORT StructuringElementXYZInfo : public BaseStructuringElementInfo
{
  ORVEL_DECLARE_SERIALIZABLE(StructuringElementXYZInfo)

public:
  StructuringElementXYZInfo(); ///< a description that is not initialised

  eStructuringElementType getStructuringElementType() const override; ///< eSET_XYZ

  void init(const StructuringElementXYZ&
                element); ///< \brief Take a copy of any element. Its own one comes out empty.
  void initEmpty();       ///< \brief Take a new empty element; the kind is generic.

  /// \brief Make a ball. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius); the description is not initialised then
  void initSpherical(ipReal64 radius);

  void initCubic(ipUInt32 halfSize); ///< \brief Make a cube. \see StructuringElementUtils.h
  void initRectangular(ipUInt32 halfSizeX, ipUInt32 halfSizeY,
                       ipUInt32 halfSizeZ); ///< \brief Make a box. \see StructuringElementUtils.h

  /// \brief Make a segment from the origin. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius); the description is not initialised then
  void initHalfLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius);

  /// \brief Make a segment through the origin. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius); the description is not initialised then
  void initLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius);

  /// \name Queries
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  /// \throw ORVELBaseDataException (eInvalidSESubType) for a parameter that the shape does not have
  /// \{
  const eSEXYZSubType& getSEXYZSubType() const;                ///< the kind of the shape
  StructuringElementXYZConstPtr getStructuringElement() const; ///< the element, shared
  const XYZOffsetColl& getDataColl() const;                    ///< the offsets of the element
  ipReal64 getRadius() const;                                  ///< of a ball or a segment
  ipUInt32 getHalfSize() const;                                ///< of a cube; a box has others
  ipUInt32 getHalfSizeX() const;                               ///< of a box
  ipUInt32 getHalfSizeY() const;                               ///< of a box
  ipUInt32 getHalfSizeZ() const;                               ///< of a box
  ipReal64 getTheta() const;                                   ///< of a segment
  ipReal64 getPhi() const;                                     ///< of a segment
  /// \}

  /// \brief Add an offset to the element. \return false if it is there already
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  bool insert(const OffsetXYZ& offset);
  bool insert(ipInt32 x, ipInt32 y, ipInt32 z); ///< \copydoc insert(const OffsetXYZ&)

  /// \brief Remove an offset from the element. \return false if it is not there
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  bool remove(const OffsetXYZ& offset);
  bool remove(ipInt32 x, ipInt32 y, ipInt32 z); ///< \copydoc remove(const OffsetXYZ&)

protected:
  void clearDerived() override; ///< \brief Empty the element in place.

private:
  void start(eSEXYZSubType::domain subType);
  void requireInitialized(const SourceLocation& here) const;
  bool isSegment() const;

  eSEXYZSubType _seXYZSubType = eSEXYZSubType::eSEXYZ_Generic;
  ipReal64 _radius = 0;
  ipUInt32 _halfSize = 0;
  ipUInt32 _halfSizeX = 0;
  ipUInt32 _halfSizeY = 0;
  ipUInt32 _halfSizeZ = 0;
  ipReal64 _theta = 0;
  ipReal64 _phi = 0;
  StructuringElementXYZPtr _pSEXYZ = boost::make_shared<StructuringElementXYZ>();
};

using StructuringElementXYZInfoPtr = boost::shared_ptr<StructuringElementXYZInfo>; ///< shared description
using StructuringElementXYZInfoConstPtr =
    boost::shared_ptr<const StructuringElementXYZInfo>; ///< shared constant description

} // namespace orvel
