#include "ORVELBaseData/ORVELBaseDataLogMessages.h"

namespace orvel
{

namespace
{

using M = eORVELBaseDataMessage;

constexpr MessageTableEntry g_messages[] = {
    {M::eMemoryAllocationFailed, "eMemoryAllocationFailed",
     "Memory allocation failed with requested size %lld"},
    {M::eBufferNotInitialized, "eBufferNotInitialized", "Buffer should be initialized before used"},
    {M::eOwnFragmentDataPtr, "eOwnFragmentDataPtr",
     "Can't set fragment data pointer on own fragment hybrid buffer"},
    {M::eInvalidBufferType, "eInvalidBufferType", "Invalid buffer type %s"},
    {M::eInvalidFragmentIndex, "eInvalidFragmentIndex",
     "Invalid fragment index %d for buffer with %d fragments"},
    {M::eKeyAlreadyExists, "eKeyAlreadyExists", "Key %s already exists"},
    {M::eUnknownKey, "eUnknownKey", "Unknown key %s"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(eORVELBaseDataMessage, "ORVELBaseData", g_messages)

} // namespace orvel
