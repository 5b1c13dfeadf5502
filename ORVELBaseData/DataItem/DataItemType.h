#pragma once

/// \file
/// \brief Kinds of data items.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of a data item.
///
/// A value that is not an enumerator is treated as eDIT_Leaf; == compares the whole value.
class ORVELBASEDATA_EXPORT eDataItemType : public NamedEnumeration<eDataItemType>
{
public:
  enum domain
  {
    eDIT_Leaf,     ///< one value
    eDIT_Node,     ///< a fixed set of named items
    eDIT_LeafColl, ///< a sequence of values of one type
    eDIT_NodeColl, ///< a sequence of nodes
    eDIT_Map       ///< any items by name
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
