#include "ORVELSerialization/ORVELSerializationLogMessages.h"

#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>
#include <log4cplus/logger.h>

#include <ORVELSerialization/ORVELSerializationLog.h>
#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;
using Message = eORVELSerializationMessage;

template <class... Arguments>
std::string raised(Message::domain id, const Arguments&... arguments)
{
  return messageOf<ORVELSerializationException>([&] { raise(ORVEL_HERE, id, arguments...); });
}

const std::string g_name = "a.xml";
const std::string g_place = "byte 7";

TEST(ORVELSerializationLogMessages, RenderEachTextWithItsArguments)
{
  EXPECT_EQ(raised(Message::eCannotOpen, g_name, "No such file"),
            "Archive a.xml can't be opened: No such file");
  EXPECT_EQ(raised(Message::eNotAnArchive, g_name, g_place, "why"),
            "Archive a.xml, byte 7: this is not an archive: why");
  EXPECT_EQ(raised(Message::eOtherFormatVersion, g_name, g_place, "2", "1"),
            "Archive a.xml, byte 7: format version 2 is not supported, the supported version is 1");
  EXPECT_EQ(raised(Message::eOtherByteOrder, g_name, g_place, "big", "little"),
            "Archive a.xml, byte 7: byte order big is not supported, the supported order is little");
  EXPECT_EQ(raised(Message::eCutShort, g_name, g_place), "Archive a.xml, byte 7: the archive is cut short");
  EXPECT_EQ(raised(Message::eDamaged, g_name, g_place, "why"),
            "Archive a.xml, byte 7: the archive is damaged: why");
  EXPECT_EQ(raised(Message::eUnexpectedItem, g_name, g_place, "this", "that"),
            "Archive a.xml, byte 7: expected this, found that");
  EXPECT_EQ(raised(Message::eValueOutOfRange, g_name, g_place, "300", "\"K\"", "0", "255"),
            "Archive a.xml, byte 7: value 300 of item \"K\" is out of range, should be in [0, 255]");
  EXPECT_EQ(raised(Message::eUnknownClass, g_name, g_place, "\"X\""),
            "Archive a.xml, byte 7: unknown class \"X\"");
  EXPECT_EQ(raised(Message::eWrongClass, g_name, g_place, "X", "Y"),
            "Archive a.xml, byte 7: an object of class X can't stand for class Y");
  EXPECT_EQ(raised(Message::eTooDeep, g_name, g_place, 128U),
            "Archive a.xml, byte 7: more than 128 objects within objects");
  EXPECT_EQ(raised(Message::eTooManyElements, g_name, g_place, 5U),
            "Archive a.xml, byte 7: the rest of the archive can't hold 5 elements");
  EXPECT_EQ(raised(Message::eTooMuchWork, g_name, g_place),
            "Archive a.xml, byte 7: more work asked for than the length of the archive allows");
  EXPECT_EQ(raised(Message::eNotFinished, g_name, g_place),
            "Archive a.xml, byte 7: closed within a section or an object");
  EXPECT_EQ(raised(Message::eWriteFailed, g_name, g_place, "why"),
            "Archive a.xml, byte 7: write failed: why");
  EXPECT_EQ(raised(Message::eReadFailed, g_name, g_place, "why"), "Archive a.xml, byte 7: read failed: why");
  EXPECT_EQ(raised(Message::eUnreadItems, g_name, g_place, "more"),
            "Archive a.xml, byte 7: items are left unread, found more");
  EXPECT_EQ(raised(Message::eBehindEnd, g_name, g_place),
            "Archive a.xml, byte 7: there is data behind the end of the archive");
  EXPECT_EQ(raised(Message::eHashMismatch, g_name, g_place),
            "Archive a.xml, byte 7: the content doesn't match its hash");
  EXPECT_EQ(raised(Message::eUnknownReference, g_name, g_place, "7"),
            "Archive a.xml, byte 7: reference to object 7, which doesn't stand before it");
  EXPECT_EQ(raised(Message::eInvalidValue, g_name, g_place, "\"x\"", "\"K\""),
            "Archive a.xml, byte 7: \"x\" is no valid value of item \"K\"");
  EXPECT_EQ(raised(Message::eInvalidKey, g_name, g_place, "\"K\""),
            "Archive a.xml, byte 7: the name \"K\" can't be filed");
  EXPECT_EQ(raised(Message::eObjectFailed, g_name, g_place, "X", "why"),
            "Archive a.xml, byte 7: object of class X failed: why");
  EXPECT_EQ(raised(Message::eFailedBefore, g_name, g_place),
            "Archive a.xml, byte 7: the archive can't be used after a failure");
  EXPECT_EQ(raised(Message::eClosed, g_name, g_place),
            "Archive a.xml, byte 7: the archive can't be used after it was closed");
  EXPECT_EQ(raised(Message::eUnsupportedClassVersion, 3U, "orvel::X", 2U),
            "Version 3 of class orvel::X is not supported, the highest supported version is 2");
  EXPECT_EQ(raised(Message::eUnknownEnumerationText, "x"), "Unknown enumeration text x");
  EXPECT_EQ(raised(Message::eUnknownEnumerationValue, -1), "Unknown enumeration value -1");
  EXPECT_EQ(raised(Message::eTooManyUnfilledBytes, g_name, g_place, 64U),
            "Archive a.xml, byte 7: more than 64 bytes of memory that the archive does not fill");
}

TEST(ORVELSerializationLogMessages, HaveTheFixedNumbers)
{
  EXPECT_EQ(Message::eUnsupportedClassVersion, 25);
  EXPECT_EQ(Message::eUnknownEnumerationText, 26);
  EXPECT_EQ(Message::eUnknownEnumerationValue, 27);
  EXPECT_EQ(Message::eFailedBefore, 23);
  EXPECT_EQ(Message::eClosed, 24);
  EXPECT_STREQ(Message::findText(25), "eUnsupportedClassVersion");
  EXPECT_EQ(Message::eTooManyUnfilledBytes, 28);
  EXPECT_EQ(Message::findText(29), nullptr);
}

TEST(ORVELSerializationLogMessages, AreRegisteredAtLoadUnderTheKeyOfTheirDomain)
{
  EXPECT_EQ(LogMessageManager::getInstance("ORVELSerialization")
                .getMessage("N5orvel26eORVELSerializationMessage6domainE", 27),
            "Unknown enumeration value %d");
}

TEST(ORVELSerializationLog, HasALoggerBelowTheBaseLoggerAndMessagesUnderItsName)
{
  EXPECT_EQ(getORVELSerializationLogger().getName(), getBaseLoggerName() + ".ORVELSerialization");
  EXPECT_EQ(&getORVELSerializationLogger(), &getORVELSerializationLogger());
  EXPECT_EQ(&getORVELSerializationLogMessageManager(), &LogMessageManager::getInstance("ORVELSerialization"));
}

TEST(ORVELSerializationException, ForwardsWhatItIsMadeFrom)
{
  const ORVELSerializationException failure("m", "f()", "a.cpp", 3);
  EXPECT_EQ(failure.getMessage(), "m");
  EXPECT_EQ(failure.getFunction(), "f()");
  EXPECT_EQ(failure.getFile(), "a.cpp");
  EXPECT_EQ(failure.getLine(), 3U);
  EXPECT_EQ(failure.getCause(), nullptr);
  const ORVELSerializationException ours("m", "f()", "a.cpp", 3, BaseException("inner", nullptr, nullptr, 0));
  EXPECT_STREQ(ours.what(), "m [f(), a.cpp:3]; cause: inner");
  const ORVELSerializationException standard("m", "f()", "a.cpp", 3, std::runtime_error("root"));
  EXPECT_STREQ(standard.what(), "m [f(), a.cpp:3]; cause: root");
  const ORVELSerializationException own("outer", nullptr, nullptr, 0, failure); // no call for the copy
  EXPECT_STREQ(own.what(), "outer; cause: m [f(), a.cpp:3]");
}

TEST(ORVELSerializationException, HoldsNothingOfItsOwn)
{
  struct Derived : ORVELSerializationException
  {
    virtual void next() = 0;
  };
  EXPECT_EQ(orvel::test::vtableIndexOf(&Derived::next), 3U); // behind the destructor and what()
  EXPECT_TRUE((std::is_base_of_v<BaseException, ORVELSerializationException>));
  EXPECT_EQ(sizeof(ORVELSerializationException), sizeof(BaseException));
  EXPECT_THROW(throw ORVELSerializationException("m", "f()", "a.cpp", 3), BaseException);
}

} // namespace
