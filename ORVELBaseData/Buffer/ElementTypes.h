#pragma once

/// \file
/// \brief The C++ types of the elements of buffers.

#include <ORVELSerialization/DataType.h>
#include <ORVELUtil/ScalarTypes.h>

/// Calls apply(Name) for each element type, in the order of eDataType: the type is `ip##Name`, its enumerator
/// `eDT_##Name`.
#define ORVEL_FOR_EACH_ELEMENT_TYPE(apply)                                                                   \
  apply(Bool) apply(Int8) apply(UInt8) apply(Int16) apply(UInt16) apply(Int32) apply(UInt32) apply(Int64)    \
      apply(UInt64) apply(Real32) apply(Real64)

namespace orvel
{

/// \brief Whether T is one of the eleven element types.
template <class T>
inline constexpr bool isElementType = false;

/// \brief Properties of an element type T; other types do not compile.
///  - `dataType`: the enumerator of eDataType
///  - `name`: the alias of the type, such as "ipInt16"
template <class T>
struct ElementType
{
  static_assert(isElementType<T>, "T is not an element type of buffers: eDataType has no enumerator for it");
};

#define ORVEL_DESCRIBE_ELEMENT_TYPE(Name)                                                                    \
  template <>                                                                                                \
  inline constexpr bool isElementType<ip##Name> = true;                                                      \
  template <>                                                                                                \
  struct ElementType<ip##Name>                                                                               \
  {                                                                                                          \
    static constexpr eDataType::domain dataType = eDataType::eDT_##Name;                                     \
    static constexpr const char* name = "ip" #Name;                                                          \
  };
ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_DESCRIBE_ELEMENT_TYPE)
#undef ORVEL_DESCRIBE_ELEMENT_TYPE

} // namespace orvel
