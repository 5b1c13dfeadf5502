#include "ORVELBaseData/ORVELBaseDataLogMessages.h"

#include <new>
#include <stdexcept>
#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ORVELUtilLogMessages.h>
#include <support/RaisedFailure.h>

namespace
{

using M = orvel::eORVELBaseDataMessage;
using orvel::ipUInt64;
using orvel::LogMessageManager;
using orvel::ORVELBaseDataException;
using orvel::test::failureOf;
using orvel::test::LogCapture;
using orvel::test::messageOf;

constexpr const char* g_domainKey = "N5orvel21eORVELBaseDataMessage6domainE";

struct Message
{
  M::domain enumerator;
  int id;
  const char* spelling;
  const char* text;
};

const Message g_messages[] = {
    {M::eMemoryAllocationFailed, 0, "eMemoryAllocationFailed",
     "Memory allocation failed with requested size %lld"},
    {M::eBufferNotInitialized, 1, "eBufferNotInitialized", "Buffer should be initialized before used"},
    {M::eOwnFragmentDataPtr, 2, "eOwnFragmentDataPtr",
     "Can't set fragment data pointer on own fragment hybrid buffer"},
    {M::eInvalidBufferType, 3, "eInvalidBufferType", "Invalid buffer type %s"},
    {M::eInvalidFragmentIndex, 4, "eInvalidFragmentIndex",
     "Invalid fragment index %d for buffer with %d fragments"},
    {M::eKeyAlreadyExists, 5, "eKeyAlreadyExists", "Key %s already exists"},
    {M::eUnknownKey, 6, "eUnknownKey", "Unknown key %s"},
};

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("ORVELBaseData");
}

TEST(ORVELBaseDataLogMessages, HaveTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(M::domain).name(), g_domainKey);
}

TEST(ORVELBaseDataLogMessages, AreRegisteredWhenTheLibraryIsLoaded)
{
  for (const Message& message : g_messages)
    EXPECT_EQ(manager().getMessage(g_domainKey, message.id), message.text);
}

TEST(ORVELBaseDataLogMessages, EndWithTheLastId)
{
  EXPECT_THROW(manager().getMessage(g_domainKey, 7), std::out_of_range);
  EXPECT_THROW(manager().getMessage(g_domainKey, -1), std::out_of_range);
}

TEST(ORVELBaseDataLogMessages, HaveFixedIdsAndSpellings)
{
  for (const Message& message : g_messages)
  {
    EXPECT_EQ(M(message.enumerator).getValue(), static_cast<ipUInt64>(message.id));
    EXPECT_STREQ(M(message.enumerator).getText(), message.spelling);
  }
  EXPECT_EQ(M(ipUInt64(7)).getText(), nullptr);
}

TEST(ORVELBaseDataLogMessages, AddNothingWhenRegisteredAgain)
{
  manager().addMessage(g_domainKey, 5, "changed");
  const bool processed = MessageMapRegistrator<M>::process();
  const bool registered =
      orvel::MsgMapRegistrator<M, orvel::details::MsgMapRegistratorDerived<M, void>>::registerMessageMap();
  const std::string text = manager().getMessage(g_domainKey, 5);
  manager().addMessage(g_domainKey, 5, g_messages[5].text);

  EXPECT_TRUE(processed);
  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

TEST(ORVELBaseDataLogMessages, RenderEachTextWithItsArguments)
{
  const auto raised = [](auto... arguments)
  {
    return messageOf<ORVELBaseDataException>([&] { orvel::raise(ORVEL_HERE, arguments...); });
  };
  EXPECT_EQ(raised(M::eMemoryAllocationFailed, ipUInt64(18446744073709551615UL)),
            "Memory allocation failed with requested size 18446744073709551615");
  EXPECT_EQ(raised(M::eMemoryAllocationFailed, ipUInt64(0)),
            "Memory allocation failed with requested size 0");
  EXPECT_EQ(raised(M::eBufferNotInitialized), "Buffer should be initialized before used");
  EXPECT_EQ(raised(M::eOwnFragmentDataPtr), "Can't set fragment data pointer on own fragment hybrid buffer");
  EXPECT_EQ(raised(M::eInvalidBufferType, static_cast<const char*>("eDT_Int8")),
            "Invalid buffer type eDT_Int8");
  EXPECT_EQ(raised(M::eInvalidFragmentIndex, ipUInt64(4294967296UL), ipUInt64(3)),
            "Invalid fragment index 4294967296 for buffer with 3 fragments");
  EXPECT_EQ(raised(M::eKeyAlreadyExists, std::string("a key")), "Key a key already exists");
  EXPECT_EQ(raised(M::eUnknownKey, std::string("a key")), "Unknown key a key");
}

TEST(ORVELBaseDataLogMessages, AreLoggedAtErrorLevelOnTheLibrarysLogger)
{
  const LogCapture capture(orvel::getORVELBaseDataLogger());
  const auto failure =
      failureOf<ORVELBaseDataException>([] { orvel::raise(ORVEL_HERE, M::eBufferNotInitialized); });
  ASSERT_EQ(capture.getRecords().size(), 1U);
  const orvel::test::LogRecord& record = capture.getRecords()[0];
  EXPECT_EQ(record.level, 40000);
  EXPECT_EQ(record.logger, "ORVEL.ORVELBaseData");
  EXPECT_EQ(record.message, "Buffer should be initialized before used");
  EXPECT_EQ(record.file, "tests/ORVELBaseData/Frame/ORVELBaseDataLogMessagesTest.cpp");
  EXPECT_EQ(record.file, failure.getFile());
  EXPECT_EQ(static_cast<unsigned int>(record.line), failure.getLine());
  EXPECT_EQ(std::string(failure.what()).find("Buffer should be initialized before used"), 0U);
}

TEST(ORVELBaseDataLogMessages, AreThrownAllTheSameWhenTheLoggerIsDisabled)
{
  const LogCapture capture(orvel::getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { orvel::raise(ORVEL_HERE, M::eBufferNotInitialized); }),
            "Buffer should be initialized before used");
  EXPECT_EQ(capture.getRecords().size(), 0U);
}

TEST(ORVELBaseDataLogMessages, KeepTheBadAllocOfAFailedAllocation)
{
  const auto failure = failureOf<ORVELBaseDataException>(
      []
      {
        try
        {
          throw std::bad_alloc();
        }
        catch (const std::bad_alloc& cause)
        {
          orvel::raiseWithCause(ORVEL_HERE, cause, M::eMemoryAllocationFailed, ipUInt64(4096));
        }
      });
  EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 4096");
  EXPECT_NE(dynamic_cast<const std::bad_alloc*>(failure.getCause()), nullptr);
}

// A message id is unique only together with its key, and tables are filed under it.
TEST(MessageDomains, HaveTheirKeys)
{
  EXPECT_STREQ(typeid(orvel::eKernelMessage::domain).name(), "N5orvel14eKernelMessage6domainE");
  EXPECT_STREQ(typeid(orvel::eORVELUtilErrors::domain).name(), "N5orvel16eORVELUtilErrors6domainE");
  EXPECT_STREQ(typeid(orvel::eORVELSerializationMessage::domain).name(),
               "N5orvel26eORVELSerializationMessage6domainE");
}

TEST(MessageDomains, HaveTheirTablesWithTheirOwners)
{
  EXPECT_NO_THROW(
      LogMessageManager::getInstance("ORVELBaseData").getMessage("N5orvel14eKernelMessage6domainE", 0));
  EXPECT_NO_THROW(
      LogMessageManager::getInstance("ORVELUtil").getMessage("N5orvel16eORVELUtilErrors6domainE", 3));
  EXPECT_NO_THROW(LogMessageManager::getInstance("ORVELSerialization")
                      .getMessage("N5orvel26eORVELSerializationMessage6domainE", 25));
}

} // namespace
