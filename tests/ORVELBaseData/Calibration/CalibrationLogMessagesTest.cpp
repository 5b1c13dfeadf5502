#include "ORVELBaseData/Calibration/CalibrationLogMessages.h"

#include <limits>
#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>
#include <support/CommaLocale.h>

namespace
{

using orvel::eCalibrationMessage;
using orvel::ipReal32;
using orvel::ipUInt64;
using orvel::LogMessageFormater;
using orvel::LogMessageManager;

constexpr const char* g_domainKey = "N5orvel19eCalibrationMessage6domainE";
constexpr const char* g_text = "Scale value %f should be strictly positive";

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("ORVELBaseData");
}

TEST(CalibrationLogMessages, HaveTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(eCalibrationMessage::domain).name(), g_domainKey);
}

TEST(CalibrationLogMessages, AreRegisteredWhenTheLibraryIsLoaded)
{
  EXPECT_EQ(manager().getMessage(g_domainKey, 0), g_text);
}

TEST(CalibrationLogMessages, EndWithTheLastId)
{
  EXPECT_ANY_THROW(manager().getMessage(g_domainKey, 1));
}

TEST(CalibrationLogMessages, HaveFixedIdsAndSpellings)
{
  EXPECT_EQ(eCalibrationMessage(eCalibrationMessage::eInvalidScale).getValue(), 0U);
  EXPECT_STREQ(eCalibrationMessage(eCalibrationMessage::eInvalidScale).getText(), "eInvalidScale");
  EXPECT_EQ(eCalibrationMessage(ipUInt64(1)).getText(), nullptr);
}

TEST(CalibrationLogMessages, AddNothingWhenRegisteredAgain)
{
  manager().addMessage(g_domainKey, 0, "changed");
  const bool registered = MessageMapRegistrator<eCalibrationMessage>::process();
  const std::string text = manager().getMessage(g_domainKey, 0);
  manager().addMessage(g_domainKey, 0, g_text);

  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

std::string textOfScale(ipReal32 scale)
{
  LogMessageFormater formater(manager());
  return (formater[eCalibrationMessage::eInvalidScale] % scale).string();
}

TEST(CalibrationLogMessages, RenderTheScale)
{
  EXPECT_EQ(textOfScale(0.0F), "Scale value 0.000000 should be strictly positive");
  EXPECT_EQ(textOfScale(-0.0F), "Scale value -0.000000 should be strictly positive");
  EXPECT_EQ(textOfScale(-1.5F), "Scale value -1.500000 should be strictly positive");
  EXPECT_EQ(textOfScale(std::numeric_limits<ipReal32>::quiet_NaN()),
            "Scale value nan should be strictly positive");
  EXPECT_EQ(textOfScale(-std::numeric_limits<ipReal32>::infinity()),
            "Scale value -inf should be strictly positive");
  // -(2^24 - 1) * 2^104, all of its digits
  EXPECT_EQ(textOfScale(std::numeric_limits<ipReal32>::lowest()),
            "Scale value -340282346638528859811704183484516925440.000000 should be strictly positive");
}

TEST(CalibrationLogMessages, RenderTheScaleWithAPointWhateverTheLocale)
{
  const orvel::test::CommaLocale locale;
  EXPECT_EQ(textOfScale(-1234.5F), "Scale value -1234.500000 should be strictly positive");
}

} // namespace
