#pragma once

/// \file
/// \brief Makers of descriptions, and the archive operators of the kinds of structuring elements.
/// \see NamedEnumerationItems.h

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/StructuringElement/SEXYSubType.h>
#include <ORVELBaseData/Pattern/StructuringElement/SEXYZSubType.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.h>
#include <ORVELSerialization/NamedEnumerationItems.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \name Descriptions of a shape
/// Each creates a description and calls the initialisation that takes the same arguments.
/// \throw ORVELBaseDataException (eInvalidRadius) if the radius is negative or NaN
/// \{
ORVELBASEDATA_EXPORT StructuringElementXYInfoPtr genericSEXYInfo(const StructuringElementXY& element);
ORVELBASEDATA_EXPORT StructuringElementXYInfoPtr emptySEXYInfo();
ORVELBASEDATA_EXPORT StructuringElementXYInfoPtr squareSEXYInfo(ipUInt32 halfSize);
ORVELBASEDATA_EXPORT StructuringElementXYInfoPtr rectangularSEXYInfo(ipUInt32 halfSizeX, ipUInt32 halfSizeY);
ORVELBASEDATA_EXPORT StructuringElementXYInfoPtr circularSEXYInfo(ipReal64 radius);
ORVELBASEDATA_EXPORT StructuringElementXYInfoPtr halfLinearSEXYInfo(ipReal64 theta, ipReal64 radius);
ORVELBASEDATA_EXPORT StructuringElementXYInfoPtr linearSEXYInfo(ipReal64 theta, ipReal64 radius);
ORVELBASEDATA_EXPORT StructuringElementXYZInfoPtr genericSEXYZInfo(const StructuringElementXYZ& element);
ORVELBASEDATA_EXPORT StructuringElementXYZInfoPtr emptySEXYZInfo();
ORVELBASEDATA_EXPORT StructuringElementXYZInfoPtr cubicSEXYZInfo(ipUInt32 halfSize);
ORVELBASEDATA_EXPORT StructuringElementXYZInfoPtr rectangularSEXYZInfo(ipUInt32 halfSizeX, ipUInt32 halfSizeY,
                                                                       ipUInt32 halfSizeZ);
ORVELBASEDATA_EXPORT StructuringElementXYZInfoPtr sphericalSEXYZInfo(ipReal64 radius);
ORVELBASEDATA_EXPORT StructuringElementXYZInfoPtr halfLinearSEXYZInfo(ipReal64 theta, ipReal64 phi,
                                                                      ipReal64 radius);
ORVELBASEDATA_EXPORT StructuringElementXYZInfoPtr linearSEXYZInfo(ipReal64 theta, ipReal64 phi,
                                                                  ipReal64 radius);
/// \}

ORVEL_DECLARE_ENUMERATION_ITEMS(eSEXYSubType, ORVELBASEDATA_EXPORT)
ORVEL_DECLARE_ENUMERATION_ITEMS(eSEXYZSubType, ORVELBASEDATA_EXPORT)

} // namespace orvel
