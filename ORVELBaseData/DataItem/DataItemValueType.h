#pragma once

/// \file
/// \brief Types of the values of leaves and leaf collections.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Type of the value of a leaf, or of the values of a leaf collection.
///
/// A value that is not an enumerator is treated as eDIVT_Bool; == compares the whole value.
class ORVELBASEDATA_EXPORT eDataItemValueType : public NamedEnumeration<eDataItemValueType>
{
public:
  enum domain
  {
    eDIVT_Bool,   ///< ipBool
    eDIVT_Int8,   ///< ipInt8
    eDIVT_UInt8,  ///< ipUInt8
    eDIVT_Int16,  ///< ipInt16
    eDIVT_UInt16, ///< ipUInt16
    eDIVT_Int32,  ///< ipInt32
    eDIVT_UInt32, ///< ipUInt32
    eDIVT_Int64,  ///< ipInt64
    eDIVT_UInt64, ///< ipUInt64
    eDIVT_Real32, ///< ipReal32
    eDIVT_Real64, ///< ipReal64
    eDIVT_String, ///< std::string
    eDIVT_Path,   ///< boost::filesystem::path
    eDIVT_Enum    ///< an enumerate, held as ipUInt32; leaves only
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
