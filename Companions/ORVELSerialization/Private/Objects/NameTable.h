#pragma once

/// \file
/// \brief A few texts with their numbers, looked up by address first.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace orvel::details
{

/// \brief Numbers texts from 0 in the order in which they come.
///
/// Class names are constants of the program that come under the same address time and again: a look-up
/// tries the address first. The text is compared all the same, as a caller's own string may have taken an
/// address over.
class NameTable
{
public:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  /// \brief Return the number of a text, none if it has not been added.
  std::size_t find(const std::string& name) const
  {
    Cached& cached = _cached[(reinterpret_cast<std::uintptr_t>(&name) >> 5U) % _cached.size()];
    if (cached.name == &name && areSame(_names[cached.number], name))
      return cached.number;
    const auto found = std::find(_names.begin(), _names.end(), name);
    if (found == _names.end())
      return none;
    cached = {&name, static_cast<std::size_t>(found - _names.begin())};
    return cached.number;
  }

  /// \brief Add a text that is not in the table. \return its number
  std::size_t add(const std::string& name)
  {
    _names.push_back(name);
    return _names.size() - 1;
  }

private:
  /// Class names have 20 to 50 bytes: a call of memcmp takes longer than to compare so few words.
  static bool areSame(const std::string& left, const std::string& right)
  {
    const std::size_t size = left.size();
    if (size != right.size())
      return false;
    if (size < sizeof(std::uint64_t))
      return left == right;
    for (std::size_t at = 0; at < size - sizeof(std::uint64_t); at += sizeof(std::uint64_t))
      if (wordAt(left, at) != wordAt(right, at))
        return false;
    return wordAt(left, size - sizeof(std::uint64_t)) == wordAt(right, size - sizeof(std::uint64_t));
  }

  static std::uint64_t wordAt(const std::string& text, std::size_t at)
  {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, sizeof(word));
    return word;
  }

  struct Cached
  {
    const std::string* name = nullptr;
    std::size_t number = 0;
  };

  std::vector<std::string> _names;
  mutable std::array<Cached, 64> _cached;
};

} // namespace orvel::details
