#pragma once

/// \file
/// \brief What the exception of every library has to pass.

#include <exception>
#include <new>
#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELUtil/BaseException.h>
#include <support/LayoutChecks.h>

namespace orvel::test
{

template <class Exception>
class LibraryException : public ::testing::Test
{
};

TYPED_TEST_SUITE_P(LibraryException);

TYPED_TEST_P(LibraryException, ForwardsWhatItIsMadeFrom)
{
  const TypeParam failure("m", "f()", "a.cpp", 3);
  EXPECT_EQ(failure.getMessage(), "m");
  EXPECT_EQ(failure.getFunction(), "f()");
  EXPECT_EQ(failure.getFile(), "a.cpp");
  EXPECT_EQ(failure.getLine(), 3U);
  EXPECT_EQ(failure.getCause(), nullptr);
  EXPECT_STREQ(failure.what(), "m [f(), a.cpp:3]");
}

TYPED_TEST_P(LibraryException, TakesACauseOfEitherKind)
{
  const TypeParam ours("m", "f()", "a.cpp", 3, BaseException("inner", nullptr, nullptr, 0));
  EXPECT_STREQ(ours.what(), "m [f(), a.cpp:3]; cause: inner");
  const TypeParam standard("m", "f()", "a.cpp", 3, std::runtime_error("root"));
  EXPECT_STREQ(standard.what(), "m [f(), a.cpp:3]; cause: root");
  const TypeParam memory("m", "f()", "a.cpp", 3, std::bad_alloc());
  EXPECT_NE(dynamic_cast<const std::bad_alloc*>(memory.getCause()), nullptr);
}

// A cause of this very class is a cause, and not the argument of the copy constructor.
TYPED_TEST_P(LibraryException, TakesACauseOfItsOwnClass)
{
  const TypeParam inner("inner", nullptr, nullptr, 0);
  const TypeParam outer("outer", nullptr, nullptr, 0, inner);
  EXPECT_STREQ(outer.what(), "outer; cause: inner");
}

TYPED_TEST_P(LibraryException, HoldsNothingOfItsOwn)
{
  struct Derived : TypeParam
  {
    virtual void next() = 0;
  };
  EXPECT_EQ(vtableIndexOf(&Derived::next), 3U); // behind the destructor and what()
  EXPECT_TRUE((std::is_base_of_v<BaseException, TypeParam>));
  EXPECT_EQ(sizeof(TypeParam), sizeof(BaseException));
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<TypeParam>);
}

TYPED_TEST_P(LibraryException, IsCaughtAsItsBases)
{
  EXPECT_THROW(throw TypeParam("m", "f()", "a.cpp", 3), TypeParam);
  EXPECT_THROW(throw TypeParam("m", "f()", "a.cpp", 3), BaseException);
  EXPECT_THROW(throw TypeParam("m", "f()", "a.cpp", 3), std::exception);
}

REGISTER_TYPED_TEST_SUITE_P(LibraryException, ForwardsWhatItIsMadeFrom, TakesACauseOfEitherKind,
                            TakesACauseOfItsOwnClass, HoldsNothingOfItsOwn, IsCaughtAsItsBases);

} // namespace orvel::test
