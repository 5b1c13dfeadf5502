#include "ORVELBaseData/Pattern/Kernel/KernelLogMessages.h"

#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>

namespace
{

using orvel::eKernelMessage;
using orvel::ipUInt64;
using orvel::LogMessageFormater;
using orvel::LogMessageManager;

constexpr const char* g_domainKey = "N5orvel14eKernelMessage6domainE";

struct Message
{
  eKernelMessage::domain enumerator;
  int id;
  const char* spelling;
  const char* text;
};

const Message g_messages[] = {
    {eKernelMessage::eInsertExistingKernelElt, 0, "eInsertExistingKernelElt",
     "Can't insert element into kernel, it already exists"},
    {eKernelMessage::eReplaceMissingKernelElt, 1, "eReplaceMissingKernelElt",
     "Can't replace element into kernel, it does not exists"},
    {eKernelMessage::eRemoveMissingKernelElt, 2, "eRemoveMissingKernelElt",
     "Can't remove element from kernel, it does not exists"},
    {eKernelMessage::eGetMissingKernelElt, 3, "eGetMissingKernelElt",
     "Can't get element value from kernel, it does not exists"},
    {eKernelMessage::eNullGaussianRatioAndKernelSize, 4, "eNullGaussianRatioAndKernelSize",
     "Gaussian ratio and minimum kernel size can't be both null"},
    {eKernelMessage::eInvalidGaussianRatio, 5, "eInvalidGaussianRatio",
     "Invalid value %f for input gaussian distribution ratio, should be in ]0, 1["},
    {eKernelMessage::eInvalidStdDevX, 6, "eInvalidStdDevX",
     "Invalid value %f for input standard deviation along x axis, should be in ]0, inf["},
    {eKernelMessage::eInvalidStdDevY, 7, "eInvalidStdDevY",
     "Invalid value %f for input standard deviation along y axis, should be in ]0, inf["},
    {eKernelMessage::eInvalidStdDevZ, 8, "eInvalidStdDevZ",
     "Invalid value %f for input standard deviation along z axis, should be in ]0, inf["},
    {eKernelMessage::eEvenKernelSize, 9, "eEvenKernelSize", "Input kernel size %d must be odd"},
    {eKernelMessage::eKernelSizeMismatchXY, 10, "eKernelSizeMismatchXY",
     "Provided half kernel size X %d and Y %d mismatch with value collection size %d"},
    {eKernelMessage::eKernelSizeMismatchXYZ, 11, "eKernelSizeMismatchXYZ",
     "Provided half kernel size X %d, Y %d and Z %d mismatch with value collection size %d"},
    {eKernelMessage::eCloseStdDevXY, 12, "eCloseStdDevXY",
     "Standard deviation along X and Y are close, the rotation may not be visible"},
    {eKernelMessage::eTooLowOrientation, 13, "eTooLowOrientation",
     "The specified orientation is too low, the rotation is useless and the kernel won't be rotated"},
};

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("ORVELBaseData");
}

TEST(KernelLogMessages, HaveTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(eKernelMessage::domain).name(), g_domainKey);
}

TEST(KernelLogMessages, AreRegisteredWhenTheLibraryIsLoaded)
{
  for (const Message& message : g_messages)
    EXPECT_EQ(manager().getMessage(g_domainKey, message.id), message.text);
}

TEST(KernelLogMessages, EndWithTheLastId)
{
  EXPECT_ANY_THROW(manager().getMessage(g_domainKey, 14));
}

TEST(KernelLogMessages, HaveFixedIdsAndSpellings)
{
  for (const Message& message : g_messages)
  {
    EXPECT_EQ(eKernelMessage(message.enumerator).getValue(), static_cast<ipUInt64>(message.id));
    EXPECT_STREQ(eKernelMessage(message.enumerator).getText(), message.spelling);
  }
  EXPECT_EQ(eKernelMessage(ipUInt64(14)).getText(), nullptr);
}

TEST(KernelLogMessages, AddNothingWhenRegisteredAgain)
{
  manager().addMessage(g_domainKey, 1, "changed");
  const bool registered = MessageMapRegistrator<eKernelMessage>::process();
  const std::string text = manager().getMessage(g_domainKey, 1);
  manager().addMessage(g_domainKey, 1, g_messages[1].text);

  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

std::string textOf(LogMessageFormater& formater)
{
  return formater.string();
}

TEST(KernelLogMessages, WithoutPlaceholdersAreTheirOwnText)
{
  for (const int id : {0, 1, 2, 3, 4, 12, 13})
  {
    LogMessageFormater formater(manager());
    EXPECT_EQ(textOf(formater.setMsgId(g_domainKey, id)), g_messages[id].text);
  }
}

TEST(KernelLogMessages, RenderTheRatio)
{
  LogMessageFormater formater(manager());
  EXPECT_EQ(textOf(formater[eKernelMessage::eInvalidGaussianRatio] % -0.1f),
            "Invalid value -0.100000 for input gaussian distribution ratio, should be in ]0, 1[");
}

TEST(KernelLogMessages, RenderTheStandardDeviations)
{
  LogMessageFormater x(manager());
  EXPECT_EQ(textOf(x[eKernelMessage::eInvalidStdDevX] % 0.0f),
            "Invalid value 0.000000 for input standard deviation along x axis, should be in ]0, inf[");
  LogMessageFormater y(manager());
  EXPECT_EQ(textOf(y[eKernelMessage::eInvalidStdDevY] % -1.5f),
            "Invalid value -1.500000 for input standard deviation along y axis, should be in ]0, inf[");
  LogMessageFormater z(manager());
  EXPECT_EQ(textOf(z[eKernelMessage::eInvalidStdDevZ] % -20.0f),
            "Invalid value -20.000000 for input standard deviation along z axis, should be in ]0, inf[");
}

TEST(KernelLogMessages, RenderTheSizes)
{
  LogMessageFormater even(manager());
  EXPECT_EQ(textOf(even[eKernelMessage::eEvenKernelSize] % 4UL), "Input kernel size 4 must be odd");
  LogMessageFormater xy(manager());
  EXPECT_EQ(textOf(xy[eKernelMessage::eKernelSizeMismatchXY] % 1U % 2U % 8UL),
            "Provided half kernel size X 1 and Y 2 mismatch with value collection size 8");
  LogMessageFormater xyz(manager());
  EXPECT_EQ(textOf(xyz[eKernelMessage::eKernelSizeMismatchXYZ] % 1U % 2U % 3U % 8UL),
            "Provided half kernel size X 1, Y 2 and Z 3 mismatch with value collection size 8");
}

} // namespace
