#include "ORVELUtil/ORVELUtilException.h"

#include <exception>
#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

namespace
{

using orvel::BaseException;
using orvel::ORVELUtilException;

TEST(ORVELUtilException, ForwardsWhatItIsMadeFrom)
{
  const ORVELUtilException failure("m", "f()", "a.cpp", 3);
  EXPECT_EQ(failure.getMessage(), "m");
  EXPECT_EQ(failure.getFunction(), "f()");
  EXPECT_EQ(failure.getFile(), "a.cpp");
  EXPECT_EQ(failure.getLine(), 3U);
  EXPECT_EQ(failure.getCause(), nullptr);
  EXPECT_STREQ(failure.what(), "m [f(), a.cpp:3]");
}

TEST(ORVELUtilException, TakesACauseOfEitherKind)
{
  const ORVELUtilException ours("m", "f()", "a.cpp", 3, BaseException("inner", nullptr, nullptr, 0));
  EXPECT_STREQ(ours.what(), "m [f(), a.cpp:3]; cause: inner");
  const ORVELUtilException standard("m", "f()", "a.cpp", 3, std::runtime_error("root"));
  EXPECT_STREQ(standard.what(), "m [f(), a.cpp:3]; cause: root");
}

// Without a constructor of its own for it, a cause of this very class is no call for the copy constructor.
TEST(ORVELUtilException, TakesACauseOfItsOwnClass)
{
  const ORVELUtilException inner("inner", nullptr, nullptr, 0);
  const ORVELUtilException outer("outer", nullptr, nullptr, 0, inner);
  EXPECT_STREQ(outer.what(), "outer; cause: inner");
}

TEST(ORVELUtilException, HoldsNothingOfItsOwn)
{
  EXPECT_TRUE((std::is_base_of_v<BaseException, ORVELUtilException>));
  EXPECT_EQ(sizeof(ORVELUtilException), sizeof(BaseException));
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<ORVELUtilException>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<ORVELUtilException>);
}

TEST(ORVELUtilException, IsCaughtAsItsBases)
{
  EXPECT_THROW(throw ORVELUtilException("m", "f()", "a.cpp", 3), ORVELUtilException);
  EXPECT_THROW(throw ORVELUtilException("m", "f()", "a.cpp", 3), BaseException);
  EXPECT_THROW(throw ORVELUtilException("m", "f()", "a.cpp", 3), std::exception);
}

} // namespace
