#pragma once

/// \file
/// \brief The C++ types of the values of leaves and leaf collections.

#include <string>

#include <boost/filesystem/path.hpp>

#include <ORVELBaseData/DataItem/DataItemValueType.h>
#include <ORVELUtil/ScalarTypes.h>

/// Calls apply(Type, Name, text) for each type of value, in the order of eDataItemValueType. The enumerator
/// is `eDIVT_##Name`; class names contain the text.
#define ORVEL_FOR_EACH_VALUE_TYPE(apply)                                                                     \
  apply(orvel::ipBool, Bool, "ipBool") apply(orvel::ipInt8, Int8, "ipInt8")                                  \
      apply(orvel::ipUInt8, UInt8, "ipUInt8") apply(orvel::ipInt16, Int16, "ipInt16")                        \
          apply(orvel::ipUInt16, UInt16, "ipUInt16") apply(orvel::ipInt32, Int32, "ipInt32")                 \
              apply(orvel::ipUInt32, UInt32, "ipUInt32") apply(orvel::ipInt64, Int64, "ipInt64")             \
                  apply(orvel::ipUInt64, UInt64, "ipUInt64") apply(orvel::ipReal32, Real32, "ipReal32")      \
                      apply(orvel::ipReal64, Real64, "ipReal64") apply(std::string, String, "std::string")   \
                          apply(boost::filesystem::path, Path, "boost::filesystem::path")

namespace orvel
{

/// \brief Properties of a type T of values:
///  - `valueType`, the enumerator of eDataItemValueType;
///  - `name`, as class names contain it.
template <class T>
struct DataItemValue
{
  static_assert(sizeof(T) == 0, "T is not among the types of eDataItemValueType");
};

#define ORVEL_DESCRIBE_VALUE_TYPE(Type, Name, text)                                                          \
  template <>                                                                                                \
  struct DataItemValue<Type>                                                                                 \
  {                                                                                                          \
    static constexpr eDataItemValueType::domain valueType = eDataItemValueType::eDIVT_##Name;                \
    static constexpr const char* name = text;                                                                \
  };
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_DESCRIBE_VALUE_TYPE)
#undef ORVEL_DESCRIBE_VALUE_TYPE

} // namespace orvel
