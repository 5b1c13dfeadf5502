#include "BufferSubjects.h"

#include <support/LayoutChecks.h>

ORVEL_TEST_EXPOSE(OwnBlock, &orvel::BaseOwnBuffer::_block)
ORVEL_TEST_EXPOSE(HybridBlock, &orvel::HybridBuffer::_block)
ORVEL_TEST_EXPOSE(FragBlock, &orvel::FragHybridBuffer::_block)
ORVEL_TEST_EXPOSE(FragList, &orvel::BaseFragBuffer::_fragments)

namespace orvel::test
{

const char* blockOf(const BaseOwnBuffer& buffer)
{
  return (buffer.*memberOf(OwnBlock())).get();
}

const char* blockOf(const HybridBuffer& buffer)
{
  return (buffer.*memberOf(HybridBlock())).get();
}

const char* blockOf(const FragHybridBuffer& buffer)
{
  return (buffer.*memberOf(FragBlock())).get();
}

const BufferPtrColl& listOf(const BaseFragBuffer& buffer)
{
  return buffer.*memberOf(FragList());
}

} // namespace orvel::test
