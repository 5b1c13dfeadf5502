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

  eORVELUtilErrors() = default;
  eORVELUtilErrors(domain value)
    : NamedEnumeration(value)
  {
  }
  explicit eORVELUtilErrors(ipUInt64 value)
    : NamedEnumeration(value)
  {
  }

  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

namespace details
{

template <>
struct ORVELUTIL_EXPORT MsgMapRegistratorDerived<eORVELUtilErrors, void>
{
  static LogMessageManager& getManager();
  static MessageTable getTable();
};

} // namespace details

extern template class ORVELUTIL_EXPORT
    MsgMapRegistrator<eORVELUtilErrors, details::MsgMapRegistratorDerived<eORVELUtilErrors, void>>;

template <>
struct MessageOwner<eORVELUtilErrors::domain>
{
  using Exception = ORVELUtilException;
  static log4cplus::Logger& getLogger() { return getORVELUtilLogger(); }
  static const LogMessageManager& getManager() { return getORVELUtilLogMessageManager(); }
};

} // namespace orvel
