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

/// \brief What the code has to know of an element type T; there is nothing for any other type.
///  - `dataType`, the enumerator of eDataType;
///  - `name`, the alias of the type, such as "ipInt16".
template <class T>
struct ElementType
{
  static_assert(sizeof(T) == 0, "this is no type of buffer elements: it is not among those of eDataType");
};

#define ORVEL_DESCRIBE_ELEMENT_TYPE(Name)                                                                    \
  template <>                                                                                                \
  struct ElementType<ip##Name>                                                                               \
  {                                                                                                          \
    static constexpr eDataType::domain dataType = eDataType::eDT_##Name;                                     \
    static constexpr const char* name = "ip" #Name;                                                          \
  };
ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_DESCRIBE_ELEMENT_TYPE)
#undef ORVEL_DESCRIBE_ELEMENT_TYPE

} // namespace orvel
