#include "ORVELUtil/LogMessageFormater.h"

#include <climits>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

#include <boost/format/exceptions.hpp>
#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ScalarTypes.h>
#include <support/CommaLocale.h>
#include <support/RaisedFailure.h>

namespace sample
{

struct eNote
{
  enum domain
  {
    eFirst,
    eSecond,
    eMissing
  };
};

} // namespace sample

namespace
{

using orvel::LogMessageFormater;
using orvel::LogMessageManager;
using sample::eNote;

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("LogMessageFormaterTest");
}

/// A formatter whose current format is a given text.
class Format : public LogMessageFormater
{
public:
  explicit Format(const std::string& text)
    : LogMessageFormater(manager())
  {
    manager().addMessage("formats", 0, text);
    setMsgId("formats", 0);
  }
};

TEST(LogMessageFormater, IsEmptyAtFirst)
{
  EXPECT_EQ(LogMessageFormater(manager()).string(), "");
}

TEST(LogMessageFormater, GivesATextWithoutPlaceholders)
{
  EXPECT_EQ(Format("Buffer should be initialized before used").string(),
            "Buffer should be initialized before used");
}

TEST(LogMessageFormater, BindsEachTypeOfArgument)
{
  EXPECT_EQ((Format("<%s>") % std::string("text")).string(), "<text>");
  const char* const pointer = "pointer";
  EXPECT_EQ((Format("<%s>") % pointer).string(), "<pointer>");
  EXPECT_EQ((Format("<%s>") % "literal").string(), "<literal>");
  EXPECT_EQ((Format("<%d>") % 4294967295U).string(), "<4294967295>");
  EXPECT_EQ((Format("<%d>") % 18446744073709551615UL).string(), "<18446744073709551615>");
  EXPECT_EQ((Format("<%d>") % INT_MIN).string(), "<-2147483648>");
  EXPECT_EQ((Format("<%f>") % 0.5f).string(), "<0.500000>");
  EXPECT_EQ((Format("<%f>") % -1234.25).string(), "<-1234.250000>");
}

TEST(LogMessageFormater, PrintsSizesOf64BitsUnsigned)
{
  EXPECT_EQ((Format("size %lld") % orvel::ipUInt64(18446744073709551615UL)).string(),
            "size 18446744073709551615");
}

TEST(LogMessageFormater, PrintsInfinitiesAndNaNs)
{
  EXPECT_EQ((Format("%f") % std::numeric_limits<double>::infinity()).string(), "inf");
  EXPECT_EQ((Format("%f") % -std::numeric_limits<float>::infinity()).string(), "-inf");
  EXPECT_EQ((Format("%f") % std::numeric_limits<double>::quiet_NaN()).string(), "nan");
  EXPECT_EQ((Format("%f") % -0.0).string(), "-0.000000");
}

TEST(LogMessageFormater, TakesWhatTheArgumentIsNotWhatThePlaceholderSays)
{
  EXPECT_EQ((Format("%d") % "text").string(), "text");
  EXPECT_EQ((Format("%s") % 12).string(), "12");
  EXPECT_EQ((Format("%s") % 0.25).string(), "0.25");
}

TEST(LogMessageFormater, BindsInOrder)
{
  EXPECT_EQ((Format("index %d of %d in %s") % 3U % 2UL % "buffer").string(), "index 3 of 2 in buffer");
}

TEST(LogMessageFormater, BindsByNumber)
{
  EXPECT_EQ((Format("%2% before %1%, %2%") % "a" % "b").string(), "b before a, b");
}

TEST(LogMessageFormater, KeepsPercentSigns)
{
  EXPECT_EQ(Format("100%%").string(), "100%");
  EXPECT_EQ((Format("%d%% of %s") % 50 % "all").string(), "50% of all");
}

TEST(LogMessageFormater, DoesNotReadArgumentsAsFormats)
{
  EXPECT_EQ((Format("<%s>") % std::string("%d %1% %%")).string(), "<%d %1% %%>");
}

TEST(LogMessageFormater, KeepsArgumentsOfAnyBytes)
{
  const std::string bytes("\0\x01\xFF\n", 4);
  EXPECT_EQ((Format("%s") % bytes).string(), bytes);
  EXPECT_EQ((Format("<%s>") % std::string()).string(), "<>");
  const std::string large(100000, 'x');
  EXPECT_EQ((Format("<%s>") % large).string(), "<" + large + ">");
}

TEST(LogMessageFormater, ReturnsItself)
{
  LogMessageFormater formater(manager());
  manager().addMessage("formats", 0, "%d");
  EXPECT_EQ(&formater.setMsgId("formats", 0), &formater);
  EXPECT_EQ(&(formater % 1), &formater);
  EXPECT_EQ(&(formater << "text"), &formater);
  manager().addMessage(typeid(eNote::domain).name(), eNote::eFirst, "first");
  EXPECT_EQ(&formater[eNote::eFirst], &formater);
}

TEST(LogMessageFormater, TakesTheKeyOfAnEnumeratorsDomain)
{
  manager().addMessage("N6sample5eNote6domainE", 0, "first %s");
  manager().addMessage("N6sample5eNote6domainE", 1, "second %s");
  LogMessageFormater first(manager());
  EXPECT_EQ((first[eNote::eFirst] % "text").string(), "first text");
  LogMessageFormater second(manager());
  EXPECT_EQ((second[eNote::eSecond] % "text").string(), "second text");
}

TEST(LogMessageFormater, RefusesMoreArgumentsThanPlaceholders)
{
  Format none("no placeholder");
  EXPECT_THROW(none % 1, boost::io::too_many_args);
  Format one("one %d");
  one % 1;
  EXPECT_THROW(one % 2, boost::io::too_many_args);
  LogMessageFormater unset(manager());
  EXPECT_THROW(unset % 1, boost::io::format_error);
}

TEST(LogMessageFormater, KeepsTheFinishedTextWhenAnArgumentIsTooMuch)
{
  Format format("one %d");
  format % 1;
  EXPECT_THROW(format % 2, boost::io::too_many_args);
  EXPECT_EQ(format.string(), "one 1");
}

TEST(LogMessageFormater, RefusesATextWithUnboundPlaceholders)
{
  EXPECT_THROW(Format("%d").string(), boost::io::too_few_args);
  Format two("%d %d");
  two % 1;
  EXPECT_THROW(two.string(), boost::io::too_few_args);
  two % 2;
  EXPECT_EQ(two.string(), "1 2"); // asking early has spoilt nothing
}

TEST(LogMessageFormater, RefusesATextThatIsNoFormat)
{
  EXPECT_THROW(Format("100%"), boost::io::bad_format_string);
}

TEST(LogMessageFormater, RefusesAnIdThatNoTableHolds)
{
  LogMessageFormater formater(manager());
  EXPECT_THROW(formater[eNote::eMissing], std::out_of_range);
  EXPECT_THROW(formater.setMsgId("no such domain", 0), std::out_of_range);
}

TEST(LogMessageFormater, KeepsItsFormatWhenAnIdIsRefused)
{
  Format format("kept %d");
  EXPECT_THROW(format.setMsgId("no such domain", 0), std::out_of_range);
  EXPECT_EQ((format % 1).string(), "kept 1");
}

TEST(LogMessageFormater, ReplacesAFormatThatIsNotFinished)
{
  Format format("first %d %d");
  format % 1;
  manager().addMessage("formats", 1, "second %d");
  format.setMsgId("formats", 1);
  EXPECT_EQ((format % 2).string(), "second 2");
}

TEST(LogMessageFormater, AppendsFinishedTexts)
{
  Format format("first %d.");
  format % 1;
  manager().addMessage("formats", 1, "second %d.");
  format.setMsgId("formats", 1) % 2;
  EXPECT_EQ(format.string(), "first 1.second 2.");
  EXPECT_EQ(format.string(), "first 1.second 2."); // asking takes nothing away
}

TEST(LogMessageFormater, AppendsBehindATextWithoutPlaceholders)
{
  Format format("Buffer should be initialized before used");
  format << " tail";
  EXPECT_EQ(format.string(), "Buffer should be initialized before used tail");
  format << "s";
  EXPECT_EQ(format.string(), "Buffer should be initialized before used tails");
}

TEST(LogMessageFormater, AppendsBehindABoundText)
{
  Format format("one %d");
  format % 1 << " tail";
  EXPECT_EQ(format.string(), "one 1 tail");
}

TEST(LogMessageFormater, KeepsATextWithoutPlaceholdersWhenAnotherIdIsSet)
{
  Format format("first.");
  manager().addMessage("formats", 1, "second %d.");
  manager().addMessage("formats", 2, "third.");
  format.setMsgId("formats", 1) % 2;
  format.setMsgId("formats", 2);
  EXPECT_EQ(format.string(), "first.second 2.third.");
}

TEST(LogMessageFormater, KeepsFinishedTextsWhenAnIdIsRefused)
{
  Format format("first.");
  EXPECT_THROW(format.setMsgId("no such domain", 0), std::out_of_range);
  EXPECT_EQ(format.string(), "first.");
}

TEST(LogMessageFormater, RelaysATextAsItIs)
{
  LogMessageFormater relay(manager());
  relay << "100% of %d";
  EXPECT_EQ(relay.string(), "100% of %d");
  relay << std::string(" and\0more", 9);
  EXPECT_EQ(relay.string(), std::string("100% of %d and\0more", 19));
}

TEST(LogMessageFormater, PutsTheFormatBehindWhatWasInserted)
{
  Format format("%d");
  format << "number ";
  EXPECT_EQ((format % 5).string(), "number 5");
}

TEST(LogMessageFormater, ReadsItsTableWhenTheIdIsSet)
{
  Format format("old %d");
  manager().addMessage("formats", 0, "new %d");
  EXPECT_EQ((format % 1).string(), "old 1");
}

TEST(LogMessageFormater, CannotBeCopied)
{
  EXPECT_FALSE(std::is_copy_constructible_v<LogMessageFormater>);
  EXPECT_FALSE(std::is_copy_assignable_v<LogMessageFormater>);
}

TEST(LogMessageFormater, WritesNumbersTheSameInEveryLocale)
{
  const orvel::test::CommaLocale commas;
  std::ostringstream probe;
  probe << 1234.5;
  ASSERT_EQ(probe.str(), "1.234,5"); // the locale is in force

  EXPECT_EQ((Format("%f") % 1234567.5).string(), "1234567.500000");
  EXPECT_EQ((Format("%f") % 1234567.5f).string(), "1234567.500000");
  EXPECT_EQ((Format("%s") % 1234.5).string(), "1234.5");
  EXPECT_EQ((Format("%d") % 1234567).string(), "1234567");
  EXPECT_EQ((Format("%d") % 1234567U).string(), "1234567");
  EXPECT_EQ((Format("%lld") % 18446744073709551615UL).string(), "18446744073709551615");
}

TEST(LogMessageFormater, KeepsItsWayOfWritingWhenTheLocaleChangesMeanwhile)
{
  Format format("%f %d");
  const orvel::test::CommaLocale commas;
  EXPECT_EQ((format % 1234.5 % 1234567).string(), "1234.500000 1234567");
}

} // namespace
