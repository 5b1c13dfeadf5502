#include "ORVELSerialization/ORVELSerializationLogMessages.h"

namespace orvel
{

namespace
{

using M = eORVELSerializationMessage;

constexpr MessageTableEntry g_messages[] = {
    {M::eCannotOpen, "eCannotOpen", "Archive %s can't be opened: %s"},
    {M::eNotAnArchive, "eNotAnArchive", "Archive %s, %s: this is not an archive: %s"},
    {M::eOtherFormatVersion, "eOtherFormatVersion",
     "Archive %s, %s: format version %s is not supported, the supported version is %s"},
    {M::eOtherByteOrder, "eOtherByteOrder",
     "Archive %s, %s: byte order %s is not supported, the supported order is %s"},
    {M::eCutShort, "eCutShort", "Archive %s, %s: the archive is cut short"},
    {M::eDamaged, "eDamaged", "Archive %s, %s: the archive is damaged: %s"},
    {M::eUnexpectedItem, "eUnexpectedItem", "Archive %s, %s: expected %s, found %s"},
    {M::eValueOutOfRange, "eValueOutOfRange",
     "Archive %s, %s: value %s of item %s is out of range, should be in [%s, %s]"},
    {M::eUnknownClass, "eUnknownClass", "Archive %s, %s: unknown class %s"},
    {M::eWrongClass, "eWrongClass", "Archive %s, %s: an object of class %s can't stand for class %s"},
    {M::eTooDeep, "eTooDeep", "Archive %s, %s: more than %d objects within objects"},
    {M::eTooManyElements, "eTooManyElements",
     "Archive %s, %s: the rest of the archive can't hold %d elements"},
    {M::eTooMuchWork, "eTooMuchWork",
     "Archive %s, %s: more work asked for than the length of the archive allows"},
    {M::eNotFinished, "eNotFinished", "Archive %s, %s: closed within a section or an object"},
    {M::eWriteFailed, "eWriteFailed", "Archive %s, %s: write failed: %s"},
    {M::eReadFailed, "eReadFailed", "Archive %s, %s: read failed: %s"},
    {M::eUnreadItems, "eUnreadItems", "Archive %s, %s: items are left unread, found %s"},
    {M::eBehindEnd, "eBehindEnd", "Archive %s, %s: there is data behind the end of the archive"},
    {M::eHashMismatch, "eHashMismatch", "Archive %s, %s: the content doesn't match its hash"},
    {M::eUnknownReference, "eUnknownReference",
     "Archive %s, %s: reference to object %s, which doesn't stand before it"},
    {M::eInvalidValue, "eInvalidValue", "Archive %s, %s: %s is no valid value of item %s"},
    {M::eInvalidKey, "eInvalidKey", "Archive %s, %s: the name %s can't be filed"},
    {M::eObjectFailed, "eObjectFailed", "Archive %s, %s: object of class %s failed: %s"},
    {M::eFailedBefore, "eFailedBefore", "Archive %s, %s: the archive can't be used after a failure"},
    {M::eClosed, "eClosed", "Archive %s, %s: the archive can't be used after it was closed"},
    {M::eUnsupportedClassVersion, "eUnsupportedClassVersion",
     "Version %d of class %s is not supported, the highest supported version is %d"},
    {M::eUnknownEnumerationText, "eUnknownEnumerationText", "Unknown enumeration text %s"},
    {M::eUnknownEnumerationValue, "eUnknownEnumerationValue", "Unknown enumeration value %d"},
    {M::eTooManyUnfilledBytes, "eTooManyUnfilledBytes",
     "Archive %s, %s: more than %d bytes of memory that the archive does not fill"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(eORVELSerializationMessage, "ORVELSerialization", g_messages)

} // namespace orvel
