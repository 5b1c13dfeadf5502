#pragma once

/// \file
/// \brief Adds the message table of a domain to its manager, once.

#include <cstddef>
#include <typeinfo>

#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief One message of a domain: its enumerator, the enumerator's spelling, and the text.
struct MessageTableEntry
{
  int id;
  const char* enumeratorName;
  const char* text;
};

/// \brief The messages of a domain, in ascending order of id, from 0 without gaps.
struct MessageTable
{
  template <std::size_t N>
  constexpr MessageTable(const MessageTableEntry (&table)[N])
    : entries(table)
    , size(N)
  {
  }

  /// \brief Return the enumerator's spelling, null beyond the last one.
  const char* findText(ipUInt32 value) const
  {
    return value < size ? entries[value].enumeratorName : nullptr;
  }

  const MessageTableEntry* entries;
  std::size_t size;
};

namespace details
{

/// \brief The manager and the table of a domain E. Each domain specialises it beside its enumeration, with
/// `static LogMessageManager& getManager()` and `static MessageTable getTable()`.
template <class E, class Enable>
struct MsgMapRegistratorDerived;

} // namespace details

/// \brief Adds the messages of domain E to the manager of Derived.
///
/// The source of the domain's messages instantiates it and calls registerMessageMap() from a load-time
/// initialiser. The domain's key is the name of `E::domain` in the run-time type information.
template <class E, class Derived>
class MsgMapRegistrator
{
public:
  /// \brief Add the texts in ascending order of id; a second call adds nothing.
  /// \return true
  static bool registerMessageMap()
  {
    if (g_bAlreadyRegistred)
      return true;
    g_bAlreadyRegistred = true;
    LogMessageManager& manager = Derived::getManager();
    const MessageTable table = Derived::getTable();
    for (std::size_t index = 0; index < table.size; ++index)
      manager.addMessage(typeid(typename E::domain).name(), table.entries[index].id,
                         table.entries[index].text);
    return true;
  }

private:
  static bool g_bAlreadyRegistred; // used during load only, by one thread
};

template <class E, class Derived>
bool MsgMapRegistrator<E, Derived>::g_bAlreadyRegistred = false;

} // namespace orvel

/// \brief Registers the messages of domain E; the name under which initialisers call it.
template <class E, class Enable = void>
struct MessageMapRegistrator
{
  /// \see orvel::MsgMapRegistrator::registerMessageMap
  static bool process()
  {
    return orvel::MsgMapRegistrator<
        E, orvel::details::MsgMapRegistratorDerived<E, Enable>>::registerMessageMap();
  }
};

/// Declares, within the namespace orvel and below its enumeration, that a domain has a table of messages.
/// Owner has the members of a MessageOwner.
#define ORVEL_DECLARE_MESSAGE_TABLE(Enumeration, Owner, EXPORT)                                              \
  namespace details                                                                                          \
  {                                                                                                          \
  template <>                                                                                                \
  struct EXPORT MsgMapRegistratorDerived<Enumeration, void>                                                  \
  {                                                                                                          \
    static LogMessageManager& getManager();                                                                  \
    static MessageTable getTable();                                                                          \
  };                                                                                                         \
  }                                                                                                          \
  extern template class EXPORT                                                                               \
      MsgMapRegistrator<Enumeration, details::MsgMapRegistratorDerived<Enumeration, void>>;                  \
  template <>                                                                                                \
  struct MessageOwner<Enumeration::domain> : Owner                                                           \
  {                                                                                                          \
  };

/// Defines what ORVEL_DECLARE_MESSAGE_TABLE and the enumeration declare, and registers the table at load.
/// \param managerKey key of the LogMessageManager
/// \param messages an array of MessageTableEntry
#define ORVEL_DEFINE_MESSAGE_TABLE(Enumeration, managerKey, messages)                                        \
  const char* Enumeration::findText(ipUInt32 value)                                                          \
  {                                                                                                          \
    return MessageTable(messages).findText(value);                                                           \
  }                                                                                                          \
  LogMessageManager& details::MsgMapRegistratorDerived<Enumeration, void>::getManager()                      \
  {                                                                                                          \
    return LogMessageManager::getInstance(managerKey);                                                       \
  }                                                                                                          \
  MessageTable details::MsgMapRegistratorDerived<Enumeration, void>::getTable()                              \
  {                                                                                                          \
    return messages;                                                                                         \
  }                                                                                                          \
  template class MsgMapRegistrator<Enumeration, details::MsgMapRegistratorDerived<Enumeration, void>>;       \
  namespace                                                                                                  \
  {                                                                                                          \
  [[maybe_unused]] const bool g_messagesRegistered = MessageMapRegistrator<Enumeration>::process();          \
  }
