#pragma once

/// \file
/// \brief Leaves of the thirteen types of values.

#include <ORVELBaseData/DataItem/Leaf/BaseDataItemLeaf.h>
#include <ORVELBaseData/DataItem/ValueTypes.h>

namespace orvel
{

/// \brief Item of one value of type T.
///
/// There is one for each of the thirteen types of ValueTypes.h. The class name spells the type without its
/// namespace of the kit: "orvel::DataItemLeaf<ipInt16>", "orvel::DataItemLeaf<std::string>".
///
/// A new leaf of a number or a bool has no value yet: set it, copy or read it before it is asked for. A new
/// string or path is empty; it may hold any bytes. There is no constructor from a value.
///
/// duplicate() goes through the virtual createNew(), unlike that of other classes, so a class derived from
/// this one need not replace it; duplicateShared() makes a DataItemLeaf<T> all the same.
///
/// Archive version 1: the item "_value".
template <class T>
class ORVELBASEDATA_EXPORT DataItemLeaf : public BaseDataItemLeaf
{
  static_assert(DataItemValue<T>::name != nullptr);
  ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(DataItemLeaf)

public:
  DataItemLeaf(); ///< a leaf whose value is not set

  eDataItemValueType getDataItemValueType() const override; ///< the type of T

  void setValue(const T& value) { _value = value; }
  const T& getValue() const { return _value; } ///< valid as long as the leaf
  T& accessValue() { return _value; }          ///< the value, to be changed in place

private:
  T _value;
};

#define ORVEL_DECLARE_LEAF(Type, Name, text) extern template class ORVELBASEDATA_EXPORT DataItemLeaf<Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_DECLARE_LEAF)
#undef ORVEL_DECLARE_LEAF

} // namespace orvel
