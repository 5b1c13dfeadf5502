#include "ORVELBaseData/DataItem/Leaf/DataItemLeaf.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE_TEMPLATE_BUT_DUPLICATE(
    DataItemLeaf, std::string("orvel::DataItemLeaf<") + DataItemValue<T>::name + ">", BaseDataItemLeaf, 1)

template <class T>
DataItemLeaf<T>::DataItemLeaf() // no zero is promised: leaves are made in great numbers to be read
{
}

template <class T>
BaseDynamicObject* DataItemLeaf<T>::duplicate() const
{
  // Through the virtual createNew(), unlike other classes: a derived leaf need not replace duplicate().
  std::unique_ptr<BaseDynamicObject> duplicated(createNew());
  duplicated->copy(*this);
  return duplicated.release();
}

template <class T>
eDataItemValueType DataItemLeaf<T>::getDataItemValueType() const
{
  return DataItemValue<T>::valueType;
}

template <class T>
void DataItemLeaf<T>::copyMembers(const DataItemLeaf& other)
{
  _value = other._value;
}

template <class T>
void DataItemLeaf<T>::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem<T>("_value", _value);
}

template <class T>
void DataItemLeaf<T>::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem<T>("_value", _value);
}

#define ORVEL_MAKE_LEAF(Type, Name, text) template class DataItemLeaf<Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_MAKE_LEAF)
#undef ORVEL_MAKE_LEAF

} // namespace orvel

ORVEL_DEFINE_TEMPLATE_REGISTRATOR(DataItemLeaf)

namespace
{

#define ORVEL_REGISTER_LEAF(Type, Name, text)                                                                \
  const DataItemLeafDynamicRegistrator<Type> g_##Name##Registrator("orvel::DataItemLeaf<" text ">");
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_REGISTER_LEAF)
#undef ORVEL_REGISTER_LEAF

} // namespace
