#pragma once

/// \file
/// \brief A key and a reference to a value that is written to an archive or read from one.

#include <cstddef>
#include <string>
#include <utility>

#include <boost/shared_ptr.hpp>

namespace orvel
{

class BaseSerializationObject;

using SerializationObjectPtr = boost::shared_ptr<BaseSerializationObject>; ///< shared object
using SerializationObjectConstPtr =
    boost::shared_ptr<const BaseSerializationObject>; ///< shared constant object

/// \brief A value to be written under a key. Lives for one `operator<<` expression; does not own the value.
template <class T>
class SerializationOItem
{
public:
  SerializationOItem(std::string key, const T& value)
    : _key(std::move(key))
    , _value(value)
  {
  }

  template <std::size_t N>
  SerializationOItem(const char (&key)[N], const T& value) ///< a literal: its length is known beforehand
    : _key(key, std::char_traits<char>::length(key))
    , _value(value)
  {
  }

  const std::string& getKey() const { return _key; }
  const T& getValue() const { return _value; }

private:
  std::string _key;
  const T& _value;
};

/// \brief A value to be read from under a key. Lives for one `operator>>` expression; does not own the value.
template <class T>
class SerializationIItem
{
public:
  SerializationIItem(std::string key, T& value)
    : _key(std::move(key))
    , _value(value)
  {
  }

  template <std::size_t N>
  SerializationIItem(const char (&key)[N], T& value) ///< a literal: its length is known beforehand
    : _key(key, std::char_traits<char>::length(key))
    , _value(value)
  {
  }

  const std::string& getKey() const { return _key; }
  T& getValue() const { return _value; }

private:
  std::string _key;
  T& _value;
};

} // namespace orvel
