#pragma once

/// \file
/// \brief Common form of the enumerations whose enumerators have a text.

#include <cstddef>
#include <type_traits>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Common form of named enumerations: a 64-bit value, its clamped enumerator and its text.
///
/// \code
/// class eColour : public NamedEnumeration<eColour>
/// {
/// public:
///   enum domain { eC_Red, eC_Green }; // in order, numbered without gaps from `first`
///   using NamedEnumeration::NamedEnumeration;
///   static const char* findText(ipUInt32 value); // spelling of the enumerator, null beyond the last
/// };
/// \endcode
/// A default-constructed enumeration has no value yet: it is set later.
///
/// Numbers and texts are archive formats: neither may change. Comparison is on the whole 64-bit value;
/// the text and the enumerator depend on its low 32 bits only.
template <class E, ipUInt32 first = 0>
class NamedEnumeration
{
public:
  /// \brief Make the enumeration of an enumerator; also an implicit conversion.
  template <class Domain, class Enumeration = E, // a template, as E is not complete here
            std::enable_if_t<std::is_same_v<Domain, typename Enumeration::domain>, int> = 0>
  NamedEnumeration(Domain enumerator)
    : _value(static_cast<ipUInt64>(enumerator))
  {
  }

  /// \brief Make the enumeration of any number.
  explicit NamedEnumeration(ipUInt64 value)
    : _value(value)
  {
  }

  ipUInt64 getValue() const { return _value; } ///< the value as it was set

  /// \brief Return the enumerator of the low 32 bits, or the first one if they match no enumerator.
  auto getDomain() const
  {
    const auto value = static_cast<ipUInt32>(_value);
    return static_cast<typename E::domain>(E::findText(value) != nullptr ? value : first);
  }

  /// \brief Return the enumerator's spelling by the low 32 bits, null if they match no enumerator.
  const char* getText() const { return E::findText(static_cast<ipUInt32>(_value)); }

  friend bool operator==(const E& left, const E& right) { return left.getValue() == right.getValue(); }
  friend bool operator!=(const E& left, const E& right) { return left.getValue() != right.getValue(); }

protected:
  NamedEnumeration() {} // leaves the value unset

private:
  ipUInt64 _value;
};

/// \brief Return texts[value], null beyond the last: the body of most findText functions.
template <std::size_t N>
const char* findEnumerationText(const char* const (&texts)[N], ipUInt32 value)
{
  return value < N ? texts[value] : nullptr;
}

} // namespace orvel
