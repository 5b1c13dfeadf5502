#include "ORVELBaseData/Pattern/Kernel/KernelLogMessages.h"

namespace orvel
{

namespace
{

constexpr MessageTableEntry g_messages[] = {
    {eKernelMessage::eInsertExistingKernelElt, "eInsertExistingKernelElt",
     "Can't insert element into kernel, it already exists"},
    {eKernelMessage::eReplaceMissingKernelElt, "eReplaceMissingKernelElt",
     "Can't replace element into kernel, it does not exists"},
    {eKernelMessage::eRemoveMissingKernelElt, "eRemoveMissingKernelElt",
     "Can't remove element from kernel, it does not exists"},
    {eKernelMessage::eGetMissingKernelElt, "eGetMissingKernelElt",
     "Can't get element value from kernel, it does not exists"},
    {eKernelMessage::eNullGaussianRatioAndKernelSize, "eNullGaussianRatioAndKernelSize",
     "Gaussian ratio and minimum kernel size can't be both null"},
    {eKernelMessage::eInvalidGaussianRatio, "eInvalidGaussianRatio",
     "Invalid value %f for input gaussian distribution ratio, should be in ]0, 1["},
    {eKernelMessage::eInvalidStdDevX, "eInvalidStdDevX",
     "Invalid value %f for input standard deviation along x axis, should be in ]0, inf["},
    {eKernelMessage::eInvalidStdDevY, "eInvalidStdDevY",
     "Invalid value %f for input standard deviation along y axis, should be in ]0, inf["},
    {eKernelMessage::eInvalidStdDevZ, "eInvalidStdDevZ",
     "Invalid value %f for input standard deviation along z axis, should be in ]0, inf["},
    {eKernelMessage::eEvenKernelSize, "eEvenKernelSize", "Input kernel size %d must be odd"},
    {eKernelMessage::eKernelSizeMismatchXY, "eKernelSizeMismatchXY",
     "Provided half kernel size X %d and Y %d mismatch with value collection size %d"},
    {eKernelMessage::eKernelSizeMismatchXYZ, "eKernelSizeMismatchXYZ",
     "Provided half kernel size X %d, Y %d and Z %d mismatch with value collection size %d"},
    {eKernelMessage::eCloseStdDevXY, "eCloseStdDevXY",
     "Standard deviation along X and Y are close, the rotation may not be visible"},
    {eKernelMessage::eTooLowOrientation, "eTooLowOrientation",
     "The specified orientation is too low, the rotation is useless and the kernel won't be rotated"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(eKernelMessage, "ORVELBaseData", g_messages)

} // namespace orvel
