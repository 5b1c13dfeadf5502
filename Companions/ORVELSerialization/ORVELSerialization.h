#pragma once

/// \file
/// \brief All of ORVELSerialization.

#include <ORVELSerialization/ArchiveLimits.h>
#include <ORVELSerialization/BaseArchive.h>
#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/DataType.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/NamedEnumerationItems.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/ORVELSerializationLog.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/ObjectFile.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>
#include <ORVELSerialization/SerializationItem.h>
#include <ORVELSerialization/SerializationObjectWithGuid.h>
#include <ORVELSerialization/SklSrzMode.h>
#include <ORVELSerialization/XmlArchive.h>
