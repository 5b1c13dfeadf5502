#include "ORVELUtil/BaseException.h"

#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <boost/exception/all.hpp>
#include <gtest/gtest.h>

#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/UnHandleException.h>
#include <support/LayoutChecks.h>

namespace
{

using orvel::BaseException;
using orvel::ORVELUtilException;
using orvel::UnHandleException;

BaseException sample()
{
  return BaseException("too wide", "void f(int)", "dir/file.cpp", 12);
}

TEST(BaseException, HoldsWhatItWasMadeFrom)
{
  const BaseException failure = sample();
  EXPECT_EQ(failure.getMessage(), "too wide");
  EXPECT_EQ(failure.getFunction(), "void f(int)");
  EXPECT_EQ(failure.getFile(), "dir/file.cpp");
  EXPECT_EQ(failure.getLine(), 12U);
  EXPECT_EQ(failure.getCause(), nullptr);
}

template <class Exception>
struct Derived : Exception
{
  virtual void next() = 0;
};

TEST(BaseException, HasTheVirtualOperationsOfItsBasesOnly)
{
  using orvel::test::vtableIndexOf;
  EXPECT_EQ(vtableIndexOf(&BaseException::what), 2U); // 0 and 1 are the destructor
  EXPECT_EQ(vtableIndexOf(&Derived<BaseException>::next), 3U);
  EXPECT_EQ(vtableIndexOf(&Derived<UnHandleException>::next), 3U);
  EXPECT_EQ(vtableIndexOf(&Derived<ORVELUtilException>::next), 3U);
}

TEST(BaseException, IsAStandardExceptionFirstAndABoostExceptionThen)
{
  const BaseException failure = sample();
  const std::exception& standard = failure;
  const boost::exception& boostPart = failure;
  EXPECT_EQ(static_cast<const void*>(&standard), static_cast<const void*>(&failure));
  EXPECT_EQ(reinterpret_cast<const char*>(&boostPart),
            reinterpret_cast<const char*>(&failure) + sizeof(void*));
}

TEST(BaseException, TellsMessageAndPlace)
{
  EXPECT_STREQ(sample().what(), "too wide [void f(int), dir/file.cpp:12]");
}

TEST(BaseException, LeavesOutWhatIsNotKnown)
{
  EXPECT_STREQ(BaseException("m", nullptr, nullptr, 7).what(), "m");
  EXPECT_STREQ(BaseException("m", "f()", nullptr, 7).what(), "m [f()]");
  EXPECT_STREQ(BaseException("m", nullptr, "a.cpp", 7).what(), "m [a.cpp:7]");
  EXPECT_STREQ(BaseException("m", "", "", 7).what(), "m");
  EXPECT_STREQ(BaseException("", "f()", "a.cpp", 4294967295U).what(), " [f(), a.cpp:4294967295]");
}

TEST(BaseException, TakesNullTextsAsEmptyOnes)
{
  const BaseException failure("m", nullptr, nullptr, 0);
  EXPECT_EQ(failure.getFunction(), "");
  EXPECT_EQ(failure.getFile(), "");
}

TEST(BaseException, KeepsAMessageOfAnyLength)
{
  const std::string message(1000000, 'x');
  const BaseException failure(message, "f()", "a.cpp", 1);
  EXPECT_EQ(failure.getMessage(), message);
  EXPECT_EQ(failure.what(), message + " [f(), a.cpp:1]");
}

TEST(BaseException, DoesNotTakePercentSignsForPlaceholders)
{
  EXPECT_STREQ(BaseException("50 %s %d%%", nullptr, nullptr, 0).what(), "50 %s %d%%");
}

TEST(BaseException, KeepsItsOwnCopyOfTheTexts)
{
  std::string message = "message";
  std::string function = "f()";
  std::string file = "a.cpp";
  const BaseException failure(message, function.c_str(), file.c_str(), 1);
  message.assign(7, '?');
  function.assign(3, '?');
  file.assign(5, '?');
  EXPECT_STREQ(failure.what(), "message [f(), a.cpp:1]");
}

TEST(BaseException, HasOneTextAsLongAsItLives)
{
  const BaseException failure = sample();
  const char* const what = failure.what();
  { // copies come and go
    const BaseException copy = failure;
    EXPECT_STREQ(copy.what(), what);
  }
  EXPECT_EQ(failure.what(), what);
  EXPECT_STREQ(what, "too wide [void f(int), dir/file.cpp:12]");
}

TEST(BaseException, TellsTheCause)
{
  const BaseException failure("outer", "g()", "b.cpp", 2, sample());
  EXPECT_STREQ(failure.what(), "outer [g(), b.cpp:2]; cause: too wide [void f(int), dir/file.cpp:12]");
  EXPECT_EQ(failure.getMessage(), "outer");
}

TEST(BaseException, KeepsAllTextsOfABaseExceptionAfterTheCauseIsGone)
{
  auto cause = std::make_unique<BaseException>(sample());
  const BaseException failure("outer", "g()", "b.cpp", 2, *cause);
  cause.reset();

  const auto* kept = dynamic_cast<const BaseException*>(failure.getCause());
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->getMessage(), "too wide");
  EXPECT_EQ(kept->getFunction(), "void f(int)");
  EXPECT_EQ(kept->getFile(), "dir/file.cpp");
  EXPECT_EQ(kept->getLine(), 12U);
  EXPECT_EQ(kept->getCause(), nullptr);
}

TEST(BaseException, KeepsTheTextOfAStandardExceptionAfterTheCauseIsGone)
{
  auto cause = std::make_unique<std::runtime_error>("disk full");
  const BaseException failure("outer", "g()", "b.cpp", 2, *cause);
  cause.reset();
  ASSERT_NE(failure.getCause(), nullptr);
  EXPECT_STREQ(failure.getCause()->what(), "disk full");
  EXPECT_STREQ(failure.what(), "outer [g(), b.cpp:2]; cause: disk full");
}

TEST(BaseException, KeepsTheTypeOfABadAlloc)
{
  const std::bad_alloc cause;
  const BaseException failure("outer", "g()", "b.cpp", 2, cause);
  EXPECT_NE(dynamic_cast<const std::bad_alloc*>(failure.getCause()), nullptr);
  EXPECT_NE(failure.getCause(), &cause);
}

TEST(BaseException, KeepsABadAllocOfASizeThatNoBlockHas)
{
  const BaseException failure("m", "f", "a.cpp", 1, std::bad_array_new_length());
  ASSERT_NE(failure.getCause(), nullptr);
  EXPECT_NE(dynamic_cast<const std::bad_alloc*>(failure.getCause()), nullptr);
  EXPECT_NE(dynamic_cast<const std::bad_array_new_length*>(failure.getCause()), nullptr);
  EXPECT_STREQ(failure.getCause()->what(), std::bad_array_new_length().what());
}

TEST(BaseException, KeepsTheTypeOfAnUnknownCause)
{
  const BaseException failure("outer", "g()", "b.cpp", 2, UnHandleException());
  EXPECT_NE(dynamic_cast<const UnHandleException*>(failure.getCause()), nullptr);
}

TEST(BaseException, KeepsABaseExceptionWholeThatComesAsAStandardOne)
{
  const BaseException inner = sample();
  const std::exception& cause = inner;
  const BaseException failure("outer", "g()", "b.cpp", 2, cause);
  const auto* kept = dynamic_cast<const BaseException*>(failure.getCause());
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->getMessage(), "too wide");
  EXPECT_EQ(kept->getLine(), 12U);
}

TEST(BaseException, KeepsTheTextsOfADerivedCause)
{
  const BaseException failure("outer", "g()", "b.cpp", 2, ORVELUtilException("inner", "f()", "a.cpp", 1));
  const auto* kept = dynamic_cast<const BaseException*>(failure.getCause());
  ASSERT_NE(kept, nullptr);
  EXPECT_STREQ(kept->what(), "inner [f(), a.cpp:1]");
}

TEST(BaseException, TakesACauseWithoutAText)
{
  class Wordless : public std::exception
  {
    const char* what() const noexcept override { return nullptr; }
  };
  const BaseException failure("outer", "g()", "b.cpp", 2, Wordless());
  ASSERT_NE(failure.getCause(), nullptr);
  EXPECT_STREQ(failure.getCause()->what(), "");
  EXPECT_STREQ(failure.what(), "outer [g(), b.cpp:2]; cause: ");
}

TEST(BaseException, KeepsTheCausesOfTheCause)
{
  auto first = std::make_unique<BaseException>("first", "f()", "a.cpp", 1, std::runtime_error("root"));
  auto second = std::make_unique<BaseException>("second", "g()", "b.cpp", 2, *first);
  const BaseException third("third", "h()", "c.cpp", 3, *second);
  second.reset();
  first.reset();

  EXPECT_STREQ(third.what(),
               "third [h(), c.cpp:3]; cause: second [g(), b.cpp:2]; cause: first [f(), a.cpp:1]; "
               "cause: root");
  const auto* keptSecond = dynamic_cast<const BaseException*>(third.getCause());
  ASSERT_NE(keptSecond, nullptr);
  EXPECT_EQ(keptSecond->getMessage(), "second");
  const auto* keptFirst = dynamic_cast<const BaseException*>(keptSecond->getCause());
  ASSERT_NE(keptFirst, nullptr);
  EXPECT_EQ(keptFirst->getMessage(), "first");
  ASSERT_NE(keptFirst->getCause(), nullptr);
  EXPECT_STREQ(keptFirst->getCause()->what(), "root");
}

TEST(BaseException, CanBeItsOwnCause)
{
  BaseException failure = sample();
  failure = BaseException("outer", "g()", "b.cpp", 2, failure);
  EXPECT_STREQ(failure.what(), "outer [g(), b.cpp:2]; cause: too wide [void f(int), dir/file.cpp:12]");
}

TEST(BaseException, CopiesWithoutThrowing)
{
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<BaseException>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<BaseException>);
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<BaseException>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<BaseException>);
  EXPECT_TRUE(std::is_nothrow_destructible_v<BaseException>);
}

TEST(BaseException, OutlivesWhatItWasCopiedFrom)
{
  auto original = std::make_unique<BaseException>("outer", "g()", "b.cpp", 2, sample());
  auto copy = std::make_unique<BaseException>(*original);
  original.reset();
  const BaseException copyOfTheCopy = *copy;
  copy.reset();
  EXPECT_STREQ(copyOfTheCopy.what(), "outer [g(), b.cpp:2]; cause: too wide [void f(int), dir/file.cpp:12]");
  ASSERT_NE(copyOfTheCopy.getCause(), nullptr);
  EXPECT_STREQ(copyOfTheCopy.getCause()->what(), "too wide [void f(int), dir/file.cpp:12]");
}

TEST(BaseException, IsWholeAfterItWasMovedFrom)
{
  BaseException original = sample();
  const BaseException moved = std::move(original);
  EXPECT_STREQ(moved.what(), "too wide [void f(int), dir/file.cpp:12]");
  EXPECT_STREQ(original.what(), moved.what()); // a catch block may still ask it
}

TEST(BaseException, IsAssigned)
{
  BaseException failure("old", nullptr, nullptr, 0);
  failure = sample();
  EXPECT_EQ(failure.getMessage(), "too wide");
  const BaseException& same = failure;
  failure = same;
  EXPECT_EQ(failure.getMessage(), "too wide");
}

TEST(BaseException, IsCaughtAsStandardException)
{
  try
  {
    throw sample();
  }
  catch (const std::exception& failure)
  {
    EXPECT_STREQ(failure.what(), "too wide [void f(int), dir/file.cpp:12]");
    return;
  }
}

using NumberInfo = boost::error_info<struct NumberTag, int>;

TEST(BaseException, CarriesWhatBoostAttaches)
{
  try
  {
    throw sample() << NumberInfo(42);
  }
  catch (const boost::exception& failure)
  {
    const int* number = boost::get_error_info<NumberInfo>(failure);
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(*number, 42);
  }
}

TEST(BaseException, TravelsThroughAnExceptionPointer)
{
  std::exception_ptr stored;
  try
  {
    throw BaseException("outer", "g()", "b.cpp", 2, std::runtime_error("root"));
  }
  catch (...)
  {
    stored = std::current_exception();
  }
  try
  {
    std::rethrow_exception(stored);
  }
  catch (const BaseException& failure)
  {
    EXPECT_STREQ(failure.what(), "outer [g(), b.cpp:2]; cause: root");
  }
}

} // namespace
