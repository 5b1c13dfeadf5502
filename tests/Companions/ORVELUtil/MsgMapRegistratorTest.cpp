#include "ORVELUtil/MsgMapRegistrator.h"

#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace sample
{

struct eTableMessage
{
  enum domain
  {
    eOne,
    eTwo,
    eThree
  };
};

struct eRefusedMessage
{
  enum domain
  {
    eOne
  };
};

int g_nbManagersAsked = 0;

} // namespace sample

namespace orvel::details
{

template <>
struct MsgMapRegistratorDerived<sample::eTableMessage, void>
{
  static LogMessageManager& getManager()
  {
    ++sample::g_nbManagersAsked;
    return LogMessageManager::getInstance("MsgMapRegistratorTest");
  }

  static MessageTable getTable()
  {
    static constexpr MessageTableEntry g_messages[] = {
        {0, "eOne", "Text one"}, {1, "eTwo", "Text %d"}, {2, "eThree", ""}};
    return g_messages;
  }
};

template <>
struct MsgMapRegistratorDerived<sample::eRefusedMessage, void>
{
  static LogMessageManager& getManager() { throw std::runtime_error("no manager"); }

  static MessageTable getTable()
  {
    static constexpr MessageTableEntry g_messages[] = {{0, "eOne", "Text one"}};
    return g_messages;
  }
};

} // namespace orvel::details

namespace
{

using orvel::LogMessageManager;
using orvel::MessageTable;
using orvel::MessageTableEntry;
using sample::eTableMessage;
using Registrator =
    orvel::MsgMapRegistrator<eTableMessage, orvel::details::MsgMapRegistratorDerived<eTableMessage, void>>;

constexpr const char* g_domainKey = "N6sample13eTableMessage6domainE";

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("MsgMapRegistratorTest");
}

// One test, as the table can be entered once in a process.
TEST(MsgMapRegistrator, EntersTheTableOnce)
{
  ASSERT_THROW(manager().getMessage(g_domainKey, 0), std::out_of_range);
  EXPECT_TRUE(Registrator::registerMessageMap());
  EXPECT_EQ(manager().getMessage(g_domainKey, 0), "Text one");
  EXPECT_EQ(manager().getMessage(g_domainKey, 1), "Text %d");
  EXPECT_EQ(manager().getMessage(g_domainKey, 2), "");
  EXPECT_THROW(manager().getMessage(g_domainKey, 3), std::out_of_range);
  EXPECT_EQ(sample::g_nbManagersAsked, 1);

  // A second call would put the old text back.
  manager().addMessage(g_domainKey, 0, "changed");
  EXPECT_TRUE(Registrator::registerMessageMap());
  EXPECT_TRUE(MessageMapRegistrator<eTableMessage>::process());
  EXPECT_EQ(manager().getMessage(g_domainKey, 0), "changed");
  EXPECT_EQ(sample::g_nbManagersAsked, 1);
}

TEST(MsgMapRegistrator, DoesNotTryAgainAfterAFailure)
{
  EXPECT_THROW(MessageMapRegistrator<sample::eRefusedMessage>::process(), std::runtime_error);
  EXPECT_TRUE(MessageMapRegistrator<sample::eRefusedMessage>::process()); // noted before anything is done
}

TEST(MsgMapRegistrator, HasAWrapperAtGlobalScope)
{
  EXPECT_TRUE((std::is_same_v<decltype(&::MessageMapRegistrator<eTableMessage, void>::process), bool (*)()>));
  EXPECT_TRUE((std::is_same_v<decltype(&Registrator::registerMessageMap), bool (*)()>));
}

TEST(MessageTable, KnowsItsEntries)
{
  static constexpr MessageTableEntry g_entries[] = {{0, "eA", "a"}, {1, "eB", "b"}};
  const MessageTable table(g_entries);
  EXPECT_EQ(table.size, 2U);
  EXPECT_STREQ(table.findText(0), "eA");
  EXPECT_STREQ(table.findText(1), "eB");
  EXPECT_EQ(table.findText(2), nullptr);
  EXPECT_EQ(table.findText(0xFFFFFFFF), nullptr);
}

} // namespace
