#pragma once

/// \file
/// \brief Messages of ORVELUtil.

#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/ORVELUtilExport.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief What belongs to the message domain of the library: base of its MessageOwner.
struct ORVELUtilMessageOwner
{
  using Exception = ORVELUtilException;
  static log4cplus::Logger& getLogger() { return getORVELUtilLogger(); }
  static const LogMessageManager& getManager() { return getORVELUtilLogMessageManager(); }
};

/// \brief Failures of ORVELUtil. The texts stand in the source.
class ORVELUTIL_EXPORT eORVELUtilErrors : public NamedEnumeration<eORVELUtilErrors>
{
public:
  enum domain
  {
    eUnknownClassName, ///< creation by a name that nobody has registered: the name
    eNoNewCreator,     ///< createNew of a class that was registered with a null function: the name
    eNoSharedCreator,  ///< createShared of a class that was registered with a null function: the name
    eNoCopySupport     ///< copy of a class that has none: the class name
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eORVELUtilErrors, ORVELUtilMessageOwner, ORVELUTIL_EXPORT)

} // namespace orvel
