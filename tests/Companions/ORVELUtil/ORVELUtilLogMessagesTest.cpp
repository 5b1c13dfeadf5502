#include "ORVELUtil/ORVELUtilLogMessages.h"

#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>
#include <support/RaisedFailure.h>

namespace
{

using orvel::eORVELUtilErrors;
using orvel::ipUInt64;
using orvel::LogMessageFormater;

constexpr const char* g_domainKey = "N5orvel16eORVELUtilErrors6domainE";

std::string render(eORVELUtilErrors::domain id)
{
  LogMessageFormater formater(orvel::getORVELUtilLogMessageManager());
  return (formater[id] % std::string("orvel::Sample")).string();
}

TEST(ORVELUtilLogMessages, HaveTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(eORVELUtilErrors::domain).name(), g_domainKey);
}

TEST(ORVELUtilLogMessages, HaveFixedIdsAndSpellings)
{
  EXPECT_EQ(eORVELUtilErrors(eORVELUtilErrors::eUnknownClassName).getValue(), 0U);
  EXPECT_EQ(eORVELUtilErrors(eORVELUtilErrors::eNoNewCreator).getValue(), 1U);
  EXPECT_EQ(eORVELUtilErrors(eORVELUtilErrors::eNoSharedCreator).getValue(), 2U);
  EXPECT_EQ(eORVELUtilErrors(eORVELUtilErrors::eNoCopySupport).getValue(), 3U);
  EXPECT_STREQ(eORVELUtilErrors(ipUInt64(0)).getText(), "eUnknownClassName");
  EXPECT_STREQ(eORVELUtilErrors(ipUInt64(1)).getText(), "eNoNewCreator");
  EXPECT_STREQ(eORVELUtilErrors(ipUInt64(2)).getText(), "eNoSharedCreator");
  EXPECT_STREQ(eORVELUtilErrors(ipUInt64(3)).getText(), "eNoCopySupport");
  EXPECT_EQ(eORVELUtilErrors(ipUInt64(4)).getText(), nullptr);
}

TEST(ORVELUtilLogMessages, RenderTheClassName)
{
  EXPECT_EQ(render(eORVELUtilErrors::eUnknownClassName), "Unknown class name orvel::Sample");
  EXPECT_EQ(render(eORVELUtilErrors::eNoNewCreator),
            "Class orvel::Sample is registered without a creator of objects");
  EXPECT_EQ(render(eORVELUtilErrors::eNoSharedCreator),
            "Class orvel::Sample is registered without a creator of shared objects");
  EXPECT_EQ(render(eORVELUtilErrors::eNoCopySupport), "Class orvel::Sample doesn't support copy");
}

TEST(ORVELUtilLogMessages, EndWithTheLastId)
{
  EXPECT_THROW(orvel::getORVELUtilLogMessageManager().getMessage(g_domainKey, 4), std::out_of_range);
}

TEST(ORVELUtilLogMessages, AddNothingWhenRegisteredAgain)
{
  orvel::LogMessageManager& manager = orvel::getORVELUtilLogMessageManager();
  const std::string original = manager.getMessage(g_domainKey, 3);
  manager.addMessage(g_domainKey, 3, "changed");
  const bool registered = MessageMapRegistrator<eORVELUtilErrors>::process();
  const std::string text = manager.getMessage(g_domainKey, 3);
  manager.addMessage(g_domainKey, 3, original);

  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

TEST(ORVELUtilLogMessages, AreRaisedAsFailuresOfTheLibrary)
{
  orvel::test::expectRaised<orvel::ORVELUtilException>(
      [] { orvel::raise(ORVEL_HERE_IN("void f()"), eORVELUtilErrors::eNoCopySupport, "orvel::BaseBuffer"); },
      {"Class orvel::BaseBuffer doesn't support copy", "void f()",
       "tests/Companions/ORVELUtil/ORVELUtilLogMessagesTest.cpp"});
}

} // namespace
