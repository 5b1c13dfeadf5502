#pragma once

/// \file
/// \brief All of ORVELUtil.

#include <ORVELUtil/BaseDynamicObject.h>
#include <ORVELUtil/BaseException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/DynamicRegistrator.h>
#include <ORVELUtil/LateLogger.h>
#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/ORVELUtilExport.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <ORVELUtil/ORVELUtilLogMessages.h>
#include <ORVELUtil/ProcessingResult.h>
#include <ORVELUtil/Raise.h>
#include <ORVELUtil/ScalarTypes.h>
#include <ORVELUtil/SourceLocation.h>
#include <ORVELUtil/UnHandleException.h>
#include <ORVELUtil/UnitMutex.h>
