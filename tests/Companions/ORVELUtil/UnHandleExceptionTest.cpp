#include "ORVELUtil/UnHandleException.h"

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace
{

using orvel::BaseException;
using orvel::UnHandleException;

TEST(UnHandleException, SaysThatTheTypeIsUnknown)
{
  const UnHandleException failure;
  EXPECT_EQ(failure.getMessage(), "Exception of unknown type");
  EXPECT_STREQ(failure.what(), "Exception of unknown type");
  EXPECT_EQ(failure.getFunction(), "");
  EXPECT_EQ(failure.getFile(), "");
  EXPECT_EQ(failure.getLine(), 0U);
  EXPECT_EQ(failure.getCause(), nullptr);
}

TEST(UnHandleException, HasADefaultConstructorOnly)
{
  EXPECT_TRUE(std::is_default_constructible_v<UnHandleException>);
  EXPECT_FALSE((std::is_constructible_v<UnHandleException, const std::string&, const char*, const char*,
                                        unsigned int>));
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<UnHandleException>);
}

TEST(UnHandleException, IsABaseException)
{
  EXPECT_TRUE((std::is_base_of_v<BaseException, UnHandleException>));
  EXPECT_EQ(sizeof(UnHandleException), sizeof(BaseException));
  EXPECT_THROW(throw UnHandleException(), BaseException);
}

} // namespace
