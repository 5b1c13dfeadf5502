#pragma once

/// \file
/// \brief Enters the message table of a domain into its manager, once.

#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ScalarTypes.h>

#include <cstddef>
#include <typeinfo>

namespace orvel
{

/// \brief One message of a domain: its enumerator, that one's spelling, and the text of the message.
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

  /// \brief Return the enumerator's spelling, null beyond the last: the findText of a message domain.
  const char* findText(ipUInt32 value) const
  {
    return value < size ? entries[value].enumeratorName : nullptr;
  }

  const MessageTableEntry* entries;
  std::size_t size;
};

namespace details
{

/// \brief What a domain E gives to its registrator: specialised by each domain beside its enumeration, with
/// `static LogMessageManager& getManager()` and `static MessageTable getTable()`.
template <class E, class Enable>
struct MsgMapRegistratorDerived;

} // namespace details

/// \brief Enters the messages of domain E into the manager that Derived names.
///
/// The source unit of the domain's messages instantiates it and calls registerMessageMap() from a
/// load-time initialiser. The domain's key is the name of `E::domain` in the run-time type information.
template <class E, class Derived>
class MsgMapRegistrator
{
public:
  /// \brief Enter the texts in ascending order of id; a second call adds nothing.
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
