#pragma once

/// \file
/// \brief All of ORVELBaseData.

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELBaseData/Pattern/Kernel/BaseKernel.h>
#include <ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.h>
#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELBaseData/Pattern/Kernel/KernelType.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>
#include <ORVELBaseData/Range/ElementsRange.h>
