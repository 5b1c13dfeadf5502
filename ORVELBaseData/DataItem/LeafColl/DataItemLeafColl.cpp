#include "ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h"

#include <type_traits>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE_TEMPLATE(DataItemLeafColl,
                                   std::string("orvel::DataItemLeafColl<") + DataItemValue<T>::name + ">",
                                   BaseDataItemLeafColl, 1)

template <class T>
DataItemLeafColl<T>::DataItemLeafColl() = default;

template <class T>
eDataItemValueType DataItemLeafColl<T>::getDataItemValueType() const
{
  return DataItemValue<T>::valueType;
}

template <class T>
void DataItemLeafColl<T>::copyMembers(const DataItemLeafColl& other)
{
  _coll = other._coll;
}

template <class T>
void DataItemLeafColl<T>::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem<std::vector<T>>("_coll", _coll);
}

template <class T>
void DataItemLeafColl<T>::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  if constexpr (std::is_same_v<T, ipBool>)
    _coll.clear(); // bits that cannot be read are false, whatever was there before
  archive >> SerializationIItem<std::vector<T>>("_coll", _coll);
}

#define ORVEL_MAKE_LEAF_COLL(Type, Name, text) template class DataItemLeafColl<Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_MAKE_LEAF_COLL)
#undef ORVEL_MAKE_LEAF_COLL

} // namespace orvel

ORVEL_DEFINE_TEMPLATE_REGISTRATOR(DataItemLeafColl)

namespace
{

#define ORVEL_REGISTER_LEAF_COLL(Type, Name, text)                                                           \
  const DataItemLeafCollDynamicRegistrator<Type> g_##Name##Registrator("orvel::DataItemLeafColl<" text ">");
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_REGISTER_LEAF_COLL)
#undef ORVEL_REGISTER_LEAF_COLL

} // namespace
