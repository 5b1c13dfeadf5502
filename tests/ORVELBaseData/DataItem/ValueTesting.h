#pragma once

/// \file
/// \brief What the tests of leaves and leaf collections know of the types of values.

#include <cstdint>
#include <string>
#include <type_traits>

#include <boost/filesystem/path.hpp>
#include <gtest/gtest.h>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::test
{

/// \brief The types that leaves and leaf collections are closed over.
using ValueTypes = testing::Types<ipBool, ipInt8, ipUInt8, ipInt16, ipUInt16, ipInt32, ipUInt32, ipInt64,
                                  ipUInt64, ipReal32, ipReal64, std::string, boost::filesystem::path>;

/// \brief A type as it stands in class names, its number and text among the value types, and two values.
template <class T>
struct ValueTypeTraits;

#define ORVEL_TEST_VALUE_TYPE(Type, number, valueTypeText, firstValue, secondValue)                          \
  template <>                                                                                                \
  struct ValueTypeTraits<Type>                                                                               \
  {                                                                                                          \
    static constexpr const char* name = #Type;                                                               \
    static constexpr ipUInt64 valueType = number;                                                            \
    static constexpr const char* text = valueTypeText;                                                       \
    static Type first() { return firstValue; }                                                               \
    static Type second() { return secondValue; }                                                             \
  };
ORVEL_TEST_VALUE_TYPE(ipBool, 0, "eDIVT_Bool", true, false)
ORVEL_TEST_VALUE_TYPE(ipInt8, 1, "eDIVT_Int8", -128, 127)
ORVEL_TEST_VALUE_TYPE(ipUInt8, 2, "eDIVT_UInt8", 255, 1)
ORVEL_TEST_VALUE_TYPE(ipInt16, 3, "eDIVT_Int16", -32768, 32767)
ORVEL_TEST_VALUE_TYPE(ipUInt16, 4, "eDIVT_UInt16", 65535, 1)
ORVEL_TEST_VALUE_TYPE(ipInt32, 5, "eDIVT_Int32", -2147483647 - 1, 2147483647)
ORVEL_TEST_VALUE_TYPE(ipUInt32, 6, "eDIVT_UInt32", 4294967295U, 1)
ORVEL_TEST_VALUE_TYPE(ipInt64, 7, "eDIVT_Int64", -9223372036854775807L - 1, 9223372036854775807L)
ORVEL_TEST_VALUE_TYPE(ipUInt64, 8, "eDIVT_UInt64", 9223372036854775807UL, 1)
ORVEL_TEST_VALUE_TYPE(ipReal32, 9, "eDIVT_Real32", -2.5F, 0.125F)
ORVEL_TEST_VALUE_TYPE(ipReal64, 10, "eDIVT_Real64", 1024.25, -0.5)
ORVEL_TEST_VALUE_TYPE(std::string, 11, "eDIVT_String", "left eye", "r")
ORVEL_TEST_VALUE_TYPE(boost::filesystem::path, 12, "eDIVT_Path", "images/stack.tif", "a")
#undef ORVEL_TEST_VALUE_TYPE

/// \brief Put a value into a hand-written archive.
template <class HandWritten, class T>
void putValue(HandWritten& archive, const std::string& key, const T& value)
{
  if constexpr (std::is_same_v<T, bool>)
    archive.boolean(key, value);
  else if constexpr (std::is_same_v<T, ipReal32>)
    archive.real32(key, value);
  else if constexpr (std::is_same_v<T, ipReal64>)
    archive.real64(key, value);
  else if constexpr (std::is_same_v<T, std::string>)
    archive.text(key, value);
  else if constexpr (std::is_same_v<T, boost::filesystem::path>)
    archive.text(key, value.string());
  else
    archive.integer(key, static_cast<std::int64_t>(value));
}

} // namespace orvel::test
