#include "ORVELUtil/ProcessingResult.h"

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

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

template <class... Arguments>
constexpr bool g_makesABoolResult = std::is_constructible_v<BoolResult, Arguments...>;

TEST(ProcessingResult, IsNotMadeOfAMessageAlone)
{
  static_assert(!g_makesABoolResult<const char*>);
  static_assert(!g_makesABoolResult<char*>);
  static_assert(!g_makesABoolResult<const char* const&>);
  static_assert(!g_makesABoolResult<const char(&)[5]>);
  static_assert(!g_makesABoolResult<char(&)[5]>);
  static_assert(!g_makesABoolResult<std::string>);
  static_assert(!g_makesABoolResult<const std::string&>);
  static_assert(!std::is_convertible_v<const char*, BoolResult>);
  static_assert(!std::is_convertible_v<const char(&)[5], BoolResult>);
  static_assert(!std::is_convertible_v<std::string, BoolResult>);
  static_assert(!std::is_assignable_v<BoolResult&, const char*>);
  static_assert(!std::is_assignable_v<BoolResult&, const char(&)[5]>);
  static_assert(!g_makesABoolResult<const char*, std::string>);
  static_assert(!g_makesABoolResult<const char(&)[5], const char(&)[8]>);
}

TEST(ProcessingResult, IsNotMadeOfAnyPointer)
{
  static_assert(!g_makesABoolResult<void*>);
  static_assert(!g_makesABoolResult<const int*>);
  static_assert(!g_makesABoolResult<int(&)[2]>);
  static_assert(!g_makesABoolResult<std::nullptr_t>);
  static_assert(!g_makesABoolResult<void (*)()>);
  static_assert(!g_makesABoolResult<void (&)()>);
  static_assert(!g_makesABoolResult<int BoolResult::*>);
  static_assert(!g_makesABoolResult<bool (BoolResult::*)()>);
  static_assert(!std::is_convertible_v<void*, BoolResult>);
  static_assert(!std::is_convertible_v<std::nullptr_t, BoolResult>);
}

TEST(ProcessingResult, IsMadeOfWhatElseIsABool)
{
  static_assert(g_makesABoolResult<bool>);
  static_assert(g_makesABoolResult<bool&>);
  static_assert(g_makesABoolResult<int>);
  static_assert(g_makesABoolResult<std::true_type>);
  static_assert(g_makesABoolResult<std::vector<bool>::reference>);
  static_assert(g_makesABoolResult<bool, const char*>);
  static_assert(g_makesABoolResult<bool, const char(&)[5]>);
  static_assert(g_makesABoolResult<bool, std::string>);
  static_assert(std::is_convertible_v<bool, BoolResult>);
  static_assert(std::is_convertible_v<int, BoolResult>);
  static_assert(std::is_copy_constructible_v<BoolResult> && std::is_move_assignable_v<BoolResult>);
}

TEST(ProcessingResult, IsMadeOfATextWhereTheResultIsOne)
{
  static_assert(std::is_constructible_v<ProcessingResult<std::string>, const char*>);
  static_assert(std::is_constructible_v<ProcessingResult<std::string>, const char(&)[5]>);
  static_assert(std::is_constructible_v<ProcessingResult<const char*>, const char(&)[5]>);
  static_assert(std::is_convertible_v<std::string, ProcessingResult<std::string>>);
  static_assert(std::is_constructible_v<ProcessingResult<int*>, std::nullptr_t>);
  EXPECT_EQ(ProcessingResult<std::string>("text").getResult(), "text");
  EXPECT_EQ(ProcessingResult<std::string>("text").getMessage(), "");
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
