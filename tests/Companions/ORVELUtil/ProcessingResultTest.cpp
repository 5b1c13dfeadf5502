#include "ORVELUtil/ProcessingResult.h"

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace
{

using orvel::BoolResult;
using orvel::ProcessingResult;

TEST(ProcessingResult, IsASuccessWithoutAMessageWhenMadeFromTrueAlone)
{
  const BoolResult success(true);
  EXPECT_TRUE(success.getResult());
  EXPECT_EQ(success.getMessage(), "");
}

TEST(ProcessingResult, HoldsTheMessageOfAFailure)
{
  const BoolResult failure(false, "the base is missing");
  EXPECT_FALSE(failure.getResult());
  EXPECT_EQ(failure.getMessage(), "the base is missing");
}

TEST(ProcessingResult, ConvertsToBool)
{
  EXPECT_TRUE((std::is_convertible_v<BoolResult, bool>));
  const bool success = BoolResult(true);
  EXPECT_TRUE(success);
  const bool failure = BoolResult(false, "");
  EXPECT_FALSE(failure);
}

TEST(ProcessingResult, IsMadeFromABoolByAReturnStatement)
{
  const auto succeed = []() -> BoolResult
  {
    return true;
  };
  EXPECT_TRUE(succeed().getResult());
  EXPECT_EQ(succeed().getMessage(), "");
}

TEST(ProcessingResult, IsHandedUpWithItsMessage)
{
  const BoolResult base(false, "from the base");
  BoolResult handedUp(true);
  handedUp = base;
  EXPECT_FALSE(handedUp);
  EXPECT_EQ(handedUp.getMessage(), "from the base");
  EXPECT_EQ(base.getMessage(), "from the base");
}

TEST(ProcessingResult, KeepsAMessageWithZerosInIt)
{
  const std::string message("a\0b", 3);
  EXPECT_EQ(BoolResult(false, message).getMessage(), message);
}

TEST(ProcessingResult, HoldsResultsOfOtherTypes)
{
  const ProcessingResult<std::string> result(std::string("result"), "message");
  EXPECT_EQ(result.getResult(), "result");
  EXPECT_EQ(result.getMessage(), "message");
  const std::string converted = result;
  EXPECT_EQ(converted, "result");
}

} // namespace
