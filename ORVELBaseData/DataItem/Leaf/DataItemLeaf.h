#pragma once

/// \file
/// \brief Leaves of the thirteen types of values.

#include <ORVELBaseData/DataItem/Leaf/BaseDataItemLeaf.h>
#include <ORVELBaseData/DataItem/ValueTypes.h>

namespace orvel
{

/// \brief Item of one value of type T.
///
/// T is one of the thirteen types of ValueTypes.h. The class name spells it without the kit's namespace:
/// "orvel::DataItemLeaf<ipInt16>", "orvel::DataItemLeaf<std::string>".
///
/// The value of a new leaf of a number or a bool is not set: set, copy or read it before use. A new string or
/// path is empty; both may hold any bytes. There is no constructor from a value.
///
/// Unlike that of other classes, duplicate() creates the new object by the virtual createNew(), so a derived
/// class need not override it. But duplicateShared() creates a DataItemLeaf<T>.
///
/// Archive version 1: the item "_value".
template <class T>
class ORVELBASEDATA_EXPORT DataItemLeaf : public BaseDataItemLeaf
{
  static_assert(DataItemValue<T>::name != nullptr);
  ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(DataItemLeaf)

public:
  DataItemLeaf(); ///< a leaf whose value is not set, unless T is a string or path

  eDataItemValueType getDataItemValueType() const override; ///< the type of T

  void setValue(const T& value) { _value = value; }
  const T& getValue() const { return _value; } ///< valid as long as the leaf exists
  T& accessValue() { return _value; }          ///< the value, to change it in place

private:
  T _value;
};

#define ORVEL_DECLARE_LEAF(Type, Name, text) extern template class ORVELBASEDATA_EXPORT DataItemLeaf<Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_DECLARE_LEAF)
#undef ORVEL_DECLARE_LEAF

} // namespace orvel
