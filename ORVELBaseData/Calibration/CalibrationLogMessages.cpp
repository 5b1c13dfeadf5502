#include "ORVELBaseData/Calibration/CalibrationLogMessages.h"

namespace orvel
{

namespace
{

constexpr MessageTableEntry g_messages[] = {
    {eCalibrationMessage::eInvalidScale, "eInvalidScale", "Scale value %f should be strictly positive"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(eCalibrationMessage, "ORVELBaseData", g_messages)

} // namespace orvel
