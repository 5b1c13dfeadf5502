#pragma once

/// \file
/// \brief All of ORVELBaseData.

#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation2d.h>
#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation2dUtils.h>
#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation3d.h>
#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation3dUtils.h>
#include <ORVELBaseData/Neighborhood/Neighborhood2dType.h>
#include <ORVELBaseData/Neighborhood/Neighborhood2dUtils.h>
#include <ORVELBaseData/Neighborhood/Neighborhood3dType.h>
#include <ORVELBaseData/Neighborhood/Neighborhood3dUtils.h>
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
#include <ORVELBaseData/Pattern/StructuringElement/SEXYSubType.h>
#include <ORVELBaseData/Pattern/StructuringElement/SEXYZSubType.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Range/ElementsRange.h>
