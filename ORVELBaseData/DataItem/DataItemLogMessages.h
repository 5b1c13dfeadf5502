#pragma once

/// \file
/// \brief Messages of the data items.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief Failures of the data items. Their texts are in the source; misspelled words stay.
class ORVELBASEDATA_EXPORT eDataItemMessage : public NamedEnumeration<eDataItemMessage>
{
public:
  enum domain
  {
    eInvalidDataItemType,        ///< registered, but never raised: the kind
    eInvalidDataItemValueType,   ///< comparison of collections of a type that none can have: the type
    eInvalidEnumIntValue,        ///< a number without enumerator: the number, the enumeration
    eInvalidEnumStrValue,        ///< a text without enumerator: the text, the enumeration
    eNodeIndexOutOfBounds,       ///< no such node: the index, the number of nodes
    eItemAlreadyInMap,           ///< the name is taken: the name
    eItemNotInMap,               ///< removal of an unknown name: the name
    eNodeAlreadyRegistred,       ///< the key is taken: the key
    eUnknownItem,                ///< access to an unknown name, of a map or a node: the name
    eNodeNotRegistred,           ///< access to an unknown key: the key
    eNodeNotRegistredForRemoval, ///< removal of an unknown key: the key
    eNullItemPtr                 ///< a null pointer instead of an item
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eDataItemMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
