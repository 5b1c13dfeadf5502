#pragma once

/// \file
/// \brief Element types of buffers.

#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Type of the elements of a buffer.
class ORVELSERIALIZATION_EXPORT eDataType : public NamedEnumeration<eDataType>
{
public:
  enum domain
  {
    eDT_None,   ///< no type
    eDT_Bool,   ///< ipBool, 1 byte
    eDT_Int8,   ///< ipInt8, 1 byte
    eDT_UInt8,  ///< ipUInt8, 1 byte
    eDT_Int16,  ///< ipInt16, 2 bytes
    eDT_UInt16, ///< ipUInt16, 2 bytes
    eDT_Int32,  ///< ipInt32, 4 bytes
    eDT_UInt32, ///< ipUInt32, 4 bytes
    eDT_Int64,  ///< ipInt64, 8 bytes
    eDT_UInt64, ///< ipUInt64, 8 bytes
    eDT_Real32, ///< ipReal32, 4 bytes
    eDT_Real64  ///< ipReal64, 8 bytes
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
