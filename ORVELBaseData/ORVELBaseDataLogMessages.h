#pragma once

/// \file
/// \brief Messages of ORVELBaseData that belong to no family.

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief What belongs to every message domain of the library: base of their MessageOwner.
struct ORVELBaseDataMessageOwner
{
  using Exception = ORVELBaseDataException;
  static log4cplus::Logger& getLogger() { return getORVELBaseDataLogger(); }
  static const LogMessageManager& getManager() { return getORVELBaseDataLogMessageManager(); }
};

/// \brief Failures of buffers and collections. The texts are in the source.
class ORVELBASEDATA_EXPORT eORVELBaseDataMessage : public NamedEnumeration<eORVELBaseDataMessage>
{
public:
  enum domain
  {
    eMemoryAllocationFailed, ///< memory cannot be allocated: its size in bytes
    eBufferNotInitialized,   ///< use of a buffer before its initialisation
    eOwnFragmentDataPtr,     ///< a fragment of a buffer that owns its memory can't be set
    eInvalidBufferType,      ///< an element type that the operation doesn't take: its name
    eInvalidFragmentIndex,   ///< no such fragment: the index, the number of fragments
    eKeyAlreadyExists,       ///< registered, but raised by nobody: the key
    eUnknownKey              ///< registered, but raised by nobody: the key
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eORVELBaseDataMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
