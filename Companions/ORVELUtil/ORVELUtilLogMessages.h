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

/// \brief Failures of ORVELUtil. The texts are in the source.
class ORVELUTIL_EXPORT eORVELUtilErrors : public NamedEnumeration<eORVELUtilErrors>
{
public:
  enum domain
  {
    /// Creation by a name that is not registered. A registered name raises one of the next two.
    /// Argument: the name.
    eUnknownClassName = 0,
    /// createNew() of a class whose entry has no function for it; createShared() raises eNoSharedCreator.
    /// Argument: the name.
    eNoNewCreator = 1,
    /// createShared() of a class whose entry has no function for it; createNew() raises eNoNewCreator.
    /// Argument: the name.
    eNoSharedCreator = 2,
    /// Copying or duplicating an object of a class that answers false from hasCopySupport(). Argument: the
    /// class name of the root that refuses, which a derived class inherits.
    eNoCopySupport = 3
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eORVELUtilErrors, ORVELUtilMessageOwner, ORVELUTIL_EXPORT)

} // namespace orvel
