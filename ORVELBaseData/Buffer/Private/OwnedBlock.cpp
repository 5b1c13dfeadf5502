#include "ORVELBaseData/Buffer/Private/OwnedBlock.h"

#include <new>

#include <ORVELBaseData/ORVELBaseDataLogMessages.h>

namespace orvel::details
{

void replaceBlock(BaseBuffer& buffer, OwnedBlock& block, ipUInt64 sizeInBytes, const SourceLocation& here)
{
  block.reset(); // first, so that both need not fit into the memory
  try
  {
    block.reset(new char[sizeInBytes]);
  }
  catch (const std::bad_alloc& failure)
  {
    buffer.clear();
    raiseWithCause(here, failure, eORVELBaseDataMessage::eMemoryAllocationFailed, sizeInBytes);
  }
}

void requireSize(ipUInt64 sizeInBytes, const SourceLocation& here)
{
  if (sizeInBytes == g_tooLarge)
    raiseWithCause(here, std::bad_array_new_length(), eORVELBaseDataMessage::eMemoryAllocationFailed,
                   sizeInBytes);
}

} // namespace orvel::details
