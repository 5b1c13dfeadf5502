#pragma once

/// \file
/// \brief Leaf collections of the thirteen types of values.

#include <vector>

#include <ORVELBaseData/DataItem/LeafColl/BaseDataItemLeafColl.h>
#include <ORVELBaseData/DataItem/ValueTypes.h>

namespace orvel
{

/// \brief Item of a sequence of values of type T.
///
/// T is one of the thirteen types of ValueTypes.h. The class name spells it without the kit's namespace:
/// "orvel::DataItemLeafColl<ipInt16>". A collection of bool is packed like std::vector<bool>, a bit per
/// value.
///
/// Archive version 1: the item "_coll", in the form of vectors (\see ItemOperators.h). Its count has 32
/// bits: a collection of 2^32 values or more does not survive an archive. After a failed read of single
/// values the others are old, those of bool false. Assigned to itself a collection keeps its values.
template <class T>
class ORVELBASEDATA_EXPORT DataItemLeafColl : public BaseDataItemLeafColl
{
  static_assert(DataItemValue<T>::name != nullptr);
  ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(DataItemLeafColl)

public:
  DataItemLeafColl(); ///< an empty collection

  eDataItemValueType getDataItemValueType() const override; ///< the type of T

  const std::vector<T>& getColl() const { return _coll; }
  std::vector<T>& getColl() { return _coll; } ///< the values, for every operation of vectors

  bool isEmpty() const { return _coll.empty(); }
  ipUInt64 getSize() const { return _coll.size(); }          ///< number of values; of bits for bool
  void push_back(const T& value) { _coll.push_back(value); } ///< append a value
  void clear() { _coll.clear(); }                            ///< remove all values, but keep their memory

private:
  std::vector<T> _coll;
};

#define ORVEL_DECLARE_LEAF_COLL(Type, Name, text)                                                            \
  extern template class ORVELBASEDATA_EXPORT DataItemLeafColl<Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_DECLARE_LEAF_COLL)
#undef ORVEL_DECLARE_LEAF_COLL

} // namespace orvel
