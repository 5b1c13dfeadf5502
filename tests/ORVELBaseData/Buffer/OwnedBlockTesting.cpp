#include "OwnedBlockTesting.h"

#include <gtest/gtest.h>

#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// Makes what the first failure and the first archive make for all that follow, so that tests can count
/// allocations in any order and alone.
class FirstUse : public testing::Environment
{
public:
  void SetUp() override
  {
    TypedOwnBuffer buffer;
    for (int i = 0; i < 2; ++i)
    {
      const LogCapture log(getORVELBaseDataLogger());
      EXPECT_THROW(buffer.init(1, eDataType::eDT_None), ORVELBaseDataException);
      failArrayAllocationAfter(0);
      EXPECT_THROW(buffer.init(1, eDataType::eDT_Int8), ORVELBaseDataException);
      failNoAllocation();
    }
    EXPECT_THROW(buffer.getSize(), ORVELBaseDataException);
    move<HandWrittenXml>(buffer);
    move<HandWrittenBinary>(buffer);
  }

private:
  template <class HandWritten>
  static void move(TypedOwnBuffer& buffer)
  {
    const std::string file = fileOf<HandWritten>([&](BaseOArchive& archive) { buffer.write(archive); });
    readFile<HandWritten>(file, [&](BaseIArchive& archive) { buffer.read(archive); });
  }
};

const testing::Environment* const g_firstUse = testing::AddGlobalTestEnvironment(new FirstUse);

} // namespace
