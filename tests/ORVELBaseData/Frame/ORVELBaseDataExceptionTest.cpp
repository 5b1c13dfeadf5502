#include "ORVELBaseData/ORVELBaseDataException.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

#include <support/LayoutChecks.h>

namespace
{

using orvel::BaseException;
using orvel::ORVELBaseDataException;

TEST(ORVELBaseDataException, ForwardsWhatItIsMadeFrom)
{
  const ORVELBaseDataException failure("m", "f()", "a.cpp", 3);
  EXPECT_EQ(failure.getMessage(), "m");
  EXPECT_EQ(failure.getFunction(), "f()");
  EXPECT_EQ(failure.getFile(), "a.cpp");
  EXPECT_EQ(failure.getLine(), 3U);
  EXPECT_EQ(failure.getCause(), nullptr);
}

TEST(ORVELBaseDataException, TakesACauseOfEitherKind)
{
  const ORVELBaseDataException ours("m", "f()", "a.cpp", 3, BaseException("inner", nullptr, nullptr, 0));
  EXPECT_STREQ(ours.what(), "m [f(), a.cpp:3]; cause: inner");
  const ORVELBaseDataException standard("m", "f()", "a.cpp", 3, std::runtime_error("root"));
  EXPECT_STREQ(standard.what(), "m [f(), a.cpp:3]; cause: root");
}

TEST(ORVELBaseDataException, KeepsABadAlloc)
{
  const ORVELBaseDataException failure("m", "f()", "a.cpp", 3, std::bad_alloc());
  EXPECT_NE(dynamic_cast<const std::bad_alloc*>(failure.getCause()), nullptr);
}

TEST(ORVELBaseDataException, HoldsNothingOfItsOwn)
{
  struct Derived : ORVELBaseDataException
  {
    virtual void next() = 0;
  };
  EXPECT_EQ(orvel::test::vtableIndexOf(&Derived::next), 3U); // behind the destructor and what()
  EXPECT_TRUE((std::is_base_of_v<BaseException, ORVELBaseDataException>));
  EXPECT_EQ(sizeof(ORVELBaseDataException), sizeof(BaseException));
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<ORVELBaseDataException>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<ORVELBaseDataException>);
}

TEST(ORVELBaseDataException, IsCaughtAsItsBases)
{
  EXPECT_THROW(throw ORVELBaseDataException("m", "f()", "a.cpp", 3), ORVELBaseDataException);
  EXPECT_THROW(throw ORVELBaseDataException("m", "f()", "a.cpp", 3), BaseException);
  EXPECT_THROW(throw ORVELBaseDataException("m", "f()", "a.cpp", 3), std::exception);
}

} // namespace
