#pragma once

/// \file
/// \brief The archive operators of the neighbourhoods on the plane.

#include <ORVELBaseData/Neighborhood/Neighborhood2dType.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializationItem.h>

namespace orvel
{

class BaseIArchive;
class BaseOArchive;

/// \name Named enumerations in archives
/// An element-wise archive files the text, any other the number.
/// \throw ORVELSerializationException for a text (id 26) or a number (id 27) of no enumerator; the item keeps
/// its old value, the archive is marked as failed
/// \throw std::logic_error if an element-wise archive is given a value without a text; nothing is filed.
/// Elsewhere such a value is filed as 0.
/// \{
ORVELBASEDATA_EXPORT BaseOArchive& operator<<(BaseOArchive& archive,
                                              const SerializationOItem<eNeighborhood2dType>& item);
ORVELBASEDATA_EXPORT BaseIArchive& operator>>(BaseIArchive& archive,
                                              const SerializationIItem<eNeighborhood2dType>& item);
/// \}

} // namespace orvel
