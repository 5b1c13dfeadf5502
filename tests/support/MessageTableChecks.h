#pragma once

/// \file
/// \brief What every message table has to pass.
///
/// A table is a class with
///  - `using Enumeration = ...`, the messages;
///  - `manager` and `domainKey`, the keys under which they are registered;
///  - `static std::vector<MessageRow<Enumeration>> rows()`, in the order of the ids, as literals.

#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::test
{

/// \brief One message: its enumerator with the spelling, and its text.
template <class E>
struct MessageRow
{
  typename E::domain enumerator;
  const char* spelling;
  const char* text;
};

/// \brief Return the text of a message of a table with its arguments.
template <class Table, class... Arguments>
std::string render(typename Table::Enumeration::domain message, const Arguments&... arguments)
{
  LogMessageFormater formater(LogMessageManager::getInstance(Table::manager));
  formater[message];
  static_cast<void>((formater % ... % arguments));
  return formater.string();
}

template <class Table>
class MessageTexts : public ::testing::Test
{
protected:
  LogMessageManager& _manager = LogMessageManager::getInstance(Table::manager);
};

TYPED_TEST_SUITE_P(MessageTexts); // its instances get an empty last argument, which keeps clang++ quiet

TYPED_TEST_P(MessageTexts, HasTheNameOfTheTypeAsDomainKey)
{
  EXPECT_STREQ(typeid(typename TypeParam::Enumeration::domain).name(), TypeParam::domainKey);
}

TYPED_TEST_P(MessageTexts, IsRegisteredWhenTheLibraryIsLoadedAndEndsWithTheLastId)
{
  int id = 0;
  for (const auto& row : TypeParam::rows())
    EXPECT_EQ(this->_manager.getMessage(TypeParam::domainKey, id++), row.text);
  EXPECT_ANY_THROW(this->_manager.getMessage(TypeParam::domainKey, id));
}

TYPED_TEST_P(MessageTexts, HasFixedIdsAndSpellings)
{
  using E = typename TypeParam::Enumeration;
  ipUInt64 id = 0;
  for (const auto& row : TypeParam::rows())
  {
    EXPECT_EQ(E(row.enumerator).getValue(), id++);
    EXPECT_STREQ(E(row.enumerator).getText(), row.spelling);
  }
  EXPECT_EQ(E(id).getText(), nullptr);
}

TYPED_TEST_P(MessageTexts, AddsNothingWhenItIsRegisteredAgain)
{
  const int last = static_cast<int>(TypeParam::rows().size()) - 1;
  this->_manager.addMessage(TypeParam::domainKey, last, "changed");
  const bool registered = MessageMapRegistrator<typename TypeParam::Enumeration>::process();
  const std::string text = this->_manager.getMessage(TypeParam::domainKey, last);
  this->_manager.addMessage(TypeParam::domainKey, last, TypeParam::rows().back().text);
  EXPECT_TRUE(registered);
  EXPECT_EQ(text, "changed");
}

REGISTER_TYPED_TEST_SUITE_P(MessageTexts, HasTheNameOfTheTypeAsDomainKey,
                            IsRegisteredWhenTheLibraryIsLoadedAndEndsWithTheLastId, HasFixedIdsAndSpellings,
                            AddsNothingWhenItIsRegisteredAgain);

} // namespace orvel::test
