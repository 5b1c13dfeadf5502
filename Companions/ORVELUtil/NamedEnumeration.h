#pragma once

/// \file
/// \brief Common form of the enumerations whose enumerators have a text.

#include <cstddef>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief What every named enumeration E shares: a 64-bit value, its clamped enumerator and its text.
///
/// E derives from NamedEnumeration<E> and supplies
///  - `enum domain { ... }`, the enumerators in order, numbered without gaps from `first`;
///  - `E()`, value not set; `E(domain)`; `explicit E(ipUInt64)`, any value;
///  - `static const char* findText(ipUInt32 value)`, the enumerator's spelling, null beyond the last.
///
/// Numbers and texts are archive formats: neither may change. Comparison is on the whole 64-bit value;
/// the text and the enumerator go by its low 32 bits.
template <class E, ipUInt32 first = 0>
class NamedEnumeration
{
public:
  ipUInt64 getValue() const { return _value; } ///< the value as it was set

  /// \brief Return the enumerator of the low 32 bits; the first enumerator if they are none.
  auto getDomain() const
  {
    const auto value = static_cast<ipUInt32>(_value);
    return static_cast<typename E::domain>(E::findText(value) != nullptr ? value : first);
  }

  /// \brief Return the enumerator's spelling by the low 32 bits, null if they are no enumerator.
  const char* getText() const { return E::findText(static_cast<ipUInt32>(_value)); }

  friend bool operator==(const E& left, const E& right) { return left.getValue() == right.getValue(); }
  friend bool operator!=(const E& left, const E& right) { return left.getValue() != right.getValue(); }

protected:
  NamedEnumeration() {} // the value is not set: fields of this type are given theirs later
  explicit NamedEnumeration(ipUInt64 value)
    : _value(value)
  {
  }

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
