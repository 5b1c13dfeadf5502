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

/// \brief Failures of the data items. The texts stand in the source; their misspelled words stay as they are.
class ORVELBASEDATA_EXPORT eDataItemMessage : public NamedEnumeration<eDataItemMessage>
{
public:
  enum domain
  {
    eInvalidDataItemType,        ///< registered, but raised by nobody: the kind
    eInvalidDataItemValueType,   ///< a comparison of collections of a type that they can't have: the type
    eInvalidEnumIntValue,        ///< a number of no enumerator: the number, the enumeration
    eInvalidEnumStrValue,        ///< a text of no enumerator: the text, the enumeration
    eNodeIndexOutOfBounds,       ///< no such node: the index, the number of nodes
    eItemAlreadyInMap,           ///< the name is taken: the name
    eItemNotInMap,               ///< removal of what is not there: the name
    eNodeAlreadyRegistred,       ///< the key is taken: the key
    eUnknownItem,                ///< nothing stands under the name: the name; raised by maps and nodes
    eNodeNotRegistred,           ///< use of a key that is not there: the key
    eNodeNotRegistredForRemoval, ///< removal of a key that is not there: the key
    eNullItemPtr                 ///< a null pointer in place of an item
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eDataItemMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
