#pragma once

/// \file
/// \brief Messages of ORVELSerialization.

#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/ORVELSerializationLog.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief What belongs to the message domain of the library: base of its MessageOwner.
struct ORVELSerializationMessageOwner
{
  using Exception = ORVELSerializationException;
  static log4cplus::Logger& getLogger() { return getORVELSerializationLogger(); }
  static const LogMessageManager& getManager() { return getORVELSerializationLogMessageManager(); }
};

/// \brief Failures of archives and of what they hold. The source has the texts.
///
/// The texts of 0 to 24 and of 28 begin with the archive's name and, except 0, the place in it: the byte
/// offset, or the line and the column. The arguments below come after those.
class ORVELSERIALIZATION_EXPORT eORVELSerializationMessage
  : public NamedEnumeration<eORVELSerializationMessage>
{
public:
  enum domain
  {
    eCannotOpen,              ///< the file can't be opened: the system's reason
    eNotAnArchive,            ///< the content is something else: what was seen
    eOtherFormatVersion,      ///< format of another version: that version, the supported one
    eOtherByteOrder,          ///< blocks in another byte order: that order, the supported one
    eCutShort,                ///< the archive ends early
    eDamaged,                 ///< the archive is not well formed: what is wrong
    eUnexpectedItem,          ///< another item than the next one: what was expected, what was found
    eValueOutOfRange,         ///< a number does not fit its type: the number, the key, the range
    eUnknownClass,            ///< nobody has registered the class of an object: its name
    eWrongClass,              ///< an object's class does not fit: its class, the class asked for
    eTooDeep,                 ///< objects within objects beyond the limit: the limit
    eTooManyElements,         ///< a count that the rest of the archive can't fill: the count
    eTooMuchWork,             ///< the work budget is spent
    eNotFinished,             ///< closed within a section or an object
    eWriteFailed,             ///< the system refused to write: its reason
    eReadFailed,              ///< the system refused to read: its reason
    eUnreadItems,             ///< the end was expected: what was found
    eBehindEnd,               ///< there is something behind the end
    eHashMismatch,            ///< the content is not what was written
    eUnknownReference,        ///< reference to an object that does not come before it: its number
    eInvalidValue,            ///< a text is no value of the type asked for: the text, the key
    eInvalidKey,              ///< the format can't carry the key or name: the text
    eObjectFailed,            ///< an object's own write or read reported a failure: its class, the message
    eFailedBefore,            ///< use after a failure: the one answer to every further call
    eClosed,                  ///< use after close()
    eUnsupportedClassVersion, ///< version of a class above the supported one: version, class, supported
                              ///< version
    eUnknownEnumerationText,  ///< text of no enumerator: the text
    eUnknownEnumerationValue, ///< number of no enumerator: the number
    eTooManyUnfilledBytes     ///< memory beyond the limit without bytes to fill it: the limit
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eORVELSerializationMessage, ORVELSerializationMessageOwner,
                            ORVELSERIALIZATION_EXPORT)

} // namespace orvel
