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

namespace details
{
template <class Info>
struct InfoFields;
template <class Info>
struct InfoOperations;
} // namespace details

/// \brief Structuring element of volumes with the kind and the parameters of its shape.
///
/// As StructuringElementXYInfo, with one axis more: the states, what those who hold the element see, and what
/// a failure leaves are the same. A copied cube has its half size, though. The keys of the kind and of the
/// element in an archive are "_seXYZSubType" and "_pSEXYZ".
/// \see StructuringElementXYInfo
class ORVELBASEDATA_EXPORT StructuringElementXYZInfo : public BaseStructuringElementInfo
{
  ORVEL_DECLARE_SERIALIZABLE(StructuringElementXYZInfo)

public:
  StructuringElementXYZInfo(); ///< a description that is not initialised

  eStructuringElementType getStructuringElementType() const override; ///< eSET_XYZ

  /// \brief Copy an element, as a generic shape. \see StructuringElementXYInfo::init
  void init(const StructuringElementXYZ& element);

  void initEmpty(); ///< \brief Take a new empty element, as a generic shape.

  /// \name Shapes
  /// Each builds the element with the builder of the same name. \see StructuringElementUtils.h
  /// \throw ORVELBaseDataException (eInvalidRadius) if the radius is negative or NaN; the description is then
  /// not initialised
  /// \{
  void initSpherical(ipReal64 radius);                                              ///< a ball
  void initCubic(ipUInt32 halfSize);                                                ///< a cube
  void initRectangular(ipUInt32 halfSizeX, ipUInt32 halfSizeY, ipUInt32 halfSizeZ); ///< a box
  void initHalfLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius); ///< a segment from the origin
  void initLinear(ipReal64 theta, ipReal64 phi, ipReal64 radius);     ///< a segment through the origin
  /// \}

  /// \name Queries
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  /// \throw ORVELBaseDataException (eInvalidSESubType) for a parameter that the shape does not have
  /// \{
  const eSEXYZSubType& getSEXYZSubType() const;                ///< the kind of the shape
  StructuringElementXYZConstPtr getStructuringElement() const; ///< the element, shared
  const XYZOffsetColl& getDataColl() const;                    ///< the offsets of the element
  ipReal64 getRadius() const;                                  ///< of a ball or a segment
  ipUInt32 getHalfSize() const;                                ///< of a cube, not of a box
  ipUInt32 getHalfSizeX() const;                               ///< of a box, not of a cube
  ipUInt32 getHalfSizeY() const;                               ///< of a box, not of a cube
  ipUInt32 getHalfSizeZ() const;                               ///< of a box, not of a cube
  ipReal64 getTheta() const;                                   ///< of a segment
  ipReal64 getPhi() const;                                     ///< of a segment
  /// \}

  /// \name Changes of the element
  /// \throw ORVELBaseDataException (eSEInfoNotInitialized) if the description is not initialised
  /// \{
  bool insert(const OffsetXYZ& offset); ///< \brief Add an offset. \return false if it is there already
  bool insert(ipInt32 x, ipInt32 y, ipInt32 z); ///< \copydoc insert(const OffsetXYZ&)
  bool remove(const OffsetXYZ& offset);         ///< \brief Remove an offset. \return false if it is not there
  bool remove(ipInt32 x, ipInt32 y, ipInt32 z); ///< \copydoc remove(const OffsetXYZ&)
  /// \}

protected:
  void clearDerived() override; ///< \brief Empty the element in place.

private:
  friend struct details::InfoFields<StructuringElementXYZInfo>;
  friend struct details::InfoOperations<StructuringElementXYZInfo>;

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
