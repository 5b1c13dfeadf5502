#pragma once

/// \file
/// \brief The item operators: how each kind of value is written to an archive and read from it.
///
/// `archive << SerializationOItem(key, value)` and `archive >> SerializationIItem(key, value)` exist for
///
/// | value | stored as |
/// |---|---|
/// | bool, signed char to unsigned long, float, double | one value |
/// | std::string, boost::filesystem::path | one value |
/// | eDataType and the other named enumerations that own operators | one value |
/// | a serialisable object | in place, through its own `write` and `read` |
/// | std::vector of numbers, bool apart | "vector": an item "value" per element, or one raw block |
/// | std::vector of anything else with an item form | "vector": an item "value" per element |
/// | std::set of serialisable objects | "set": an item "key" per element |
/// | std::map | "map": items "key" and "value" per entry |
/// | boost::shared_ptr to a serialisable object, constant or not | a pointer "pObject" |
///
/// A collection is a section named by the key, in it one named as above, in it an item "size" and the
/// elements. A vector of numbers is a raw block where the archive is not element-wise, an empty one too. A
/// shared pointer is a section named by the key, in it "shared_ptr<" + type name + ">", in it the pointer; on
/// reading that name is "shared_ptr<>". For enumerations \see NamedEnumerationItems.h
///
/// Counts are stored as ipUInt32; larger ones are truncated, the elements are not. On input a count that the
/// rest of the archive cannot hold is a failure before anything is allocated for it.
///
/// Vectors are resized to the count and read into place (vectors of shared pointers release their old
/// elements first). Sets and maps are emptied before the count is read, and each entry is entered as it is
/// read: a repeated map key keeps the last value, a repeated set element the first. After a failure a
/// container holds what was read, a vector with old elements behind it.

#include <limits>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/filesystem/path.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/type_traits/is_arithmetic.hpp>
#include <boost/type_traits/is_base_of.hpp>
#include <boost/type_traits/is_same.hpp>
#include <boost/utility/enable_if.hpp>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/NamedEnumerationItems.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/ScalarTypes.h>
#include <ORVELUtil/SourceLocation.h>

namespace orvel
{

class eDataType;

namespace details
{

/// The arithmetic types that have an item form; the others differ in width between platforms or compilers.
template <class T>
inline constexpr bool isItemScalar =
    std::is_same_v<T, bool> || std::is_same_v<T, signed char> || std::is_same_v<T, unsigned char> ||
    std::is_same_v<T, short> || std::is_same_v<T, unsigned short> || std::is_same_v<T, int> ||
    std::is_same_v<T, unsigned int> || std::is_same_v<T, long> || std::is_same_v<T, unsigned long> ||
    std::is_same_v<T, float> || std::is_same_v<T, double>;

/// Vectors of these travel as raw blocks where the archive is not element-wise.
template <class T>
inline constexpr bool isBlockElement = boost::is_arithmetic<T>::value && !boost::is_same<T, bool>::value;

template <class T>
inline constexpr bool isSharedPtr = false;
template <class E>
inline constexpr bool isSharedPtr<boost::shared_ptr<E>> = true;

/// \brief Return "shared_ptr<" + type name + ">".
ORVELSERIALIZATION_EXPORT std::string nameSharedPtrSection(const std::string& typeName);

} // namespace details

/// \name Single values
/// \{

template <class T>
typename boost::enable_if<boost::is_arithmetic<T>, BaseOArchive&>::type
operator<<(BaseOArchive& archive, const SerializationOItem<T>& item)
{
  static_assert(details::isItemScalar<T>, "this type has no item form");
  if constexpr (std::is_same_v<T, bool>)
    archive.writeBool(item.getKey(), item.getValue());
  else if constexpr (std::is_same_v<T, float>)
    archive.writeReal32(item.getKey(), item.getValue());
  else if constexpr (std::is_same_v<T, double>)
    archive.writeReal64(item.getKey(), item.getValue());
  else if constexpr (std::is_signed_v<T>)
    archive.writeInteger(item.getKey(), item.getValue());
  else
    archive.writeUnsigned(item.getKey(), item.getValue());
  return archive;
}

template <class T>
typename boost::enable_if<boost::is_arithmetic<T>, BaseIArchive&>::type
operator>>(BaseIArchive& archive, const SerializationIItem<T>& item)
{
  static_assert(details::isItemScalar<T>, "this type has no item form");
  if constexpr (std::is_same_v<T, bool>)
    item.getValue() = archive.readBool(item.getKey());
  else if constexpr (std::is_same_v<T, float>)
    item.getValue() = archive.readReal32(item.getKey());
  else if constexpr (std::is_same_v<T, double>)
    item.getValue() = archive.readReal64(item.getKey());
  else if constexpr (std::is_signed_v<T>)
    item.getValue() = static_cast<T>(
        archive.readInteger(item.getKey(), std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
  else
    item.getValue() = static_cast<T>(archive.readUnsigned(item.getKey(), std::numeric_limits<T>::max()));
  return archive;
}

ORVELSERIALIZATION_EXPORT BaseOArchive& operator<<(BaseOArchive& archive,
                                                   const SerializationOItem<std::string>& item);
ORVELSERIALIZATION_EXPORT BaseIArchive& operator>>(BaseIArchive& archive,
                                                   const SerializationIItem<std::string>& item);
ORVELSERIALIZATION_EXPORT BaseOArchive& operator<<(BaseOArchive& archive,
                                                   const SerializationOItem<boost::filesystem::path>& item);
ORVELSERIALIZATION_EXPORT BaseIArchive& operator>>(BaseIArchive& archive,
                                                   const SerializationIItem<boost::filesystem::path>& item);
ORVEL_DECLARE_ENUMERATION_ITEMS(eDataType, ORVELSERIALIZATION_EXPORT)
/// \}

/// \name Objects in place
/// \{

template <class T>
typename boost::enable_if<boost::is_base_of<BaseSerializationObject, T>, BaseOArchive&>::type
operator<<(BaseOArchive& archive, const SerializationOItem<T>& item)
{
  archive.writeObject(item.getKey(), item.getValue());
  return archive;
}

template <class T>
typename boost::enable_if<boost::is_base_of<BaseSerializationObject, T>, BaseIArchive&>::type
operator>>(BaseIArchive& archive, const SerializationIItem<T>& item)
{
  archive.readObject(item.getKey(), item.getValue());
  return archive;
}
/// \}

/// \name Shared objects
/// \{

template <class E>
BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<boost::shared_ptr<E>>& item)
{
  static const std::string g_sectionName = details::nameSharedPtrSection(E::getTypeName());
  details::SectionScope section(archive, item.getKey());
  details::SectionScope pointerSection(archive, g_sectionName);
  // The archive does not change the object; its interface has one pointer type for both directions.
  const SerializationObjectPtr object = boost::const_pointer_cast<std::remove_const_t<E>>(item.getValue());
  archive.writeObjectPtr(SerializationOItem("pObject", object));
  pointerSection.finish();
  section.finish();
  return archive;
}

template <class E>
BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<boost::shared_ptr<E>>& item)
{
  details::SectionScope section(archive, item.getKey());
  details::SectionScope pointerSection(archive, "shared_ptr<>");
  SerializationObjectPtr object;
  archive.readObjectPtr(SerializationIItem("pObject", object));
  try
  {
    if (archive.isUntrusted() && object && dynamic_cast<const E*>(object.get()) == nullptr)
      archive.raiseWrongClass(object->getClassName(), E::getTypeName(), ORVEL_HERE);
    pointerSection.finish();
    section.finish();
  }
  catch (...)
  {
    object.reset();
    archive.releaseObjects(); // nobody is given them
    throw;
  }
  item.getValue() = boost::static_pointer_cast<E>(std::move(object));
  return archive;
}
/// \}

// Containers hold one another: all operators are declared before the first is defined.
template <class E, class A>
BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::vector<E, A>>& item);
template <class E, class A>
BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::vector<E, A>>& item);
template <class E, class C, class A>
BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::set<E, C, A>>& item);
template <class E, class C, class A>
BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::set<E, C, A>>& item);
template <class K, class V, class C, class A>
BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::map<K, V, C, A>>& item);
template <class K, class V, class C, class A>
BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::map<K, V, C, A>>& item);

namespace details
{

inline void writeCount(BaseOArchive& archive, std::size_t count)
{
  archive << SerializationOItem("size", static_cast<ipUInt32>(count)); // the low 32 bits
}

inline ipUInt32 readCount(BaseIArchive& archive)
{
  ipUInt32 count = 0;
  archive >> SerializationIItem("size", count);
  return count;
}

template <class E, class A>
void writeElements(BaseOArchive& archive, const std::vector<E, A>& values)
{
  if constexpr (isBlockElement<E>)
  {
    if (!archive.isElementWise())
    {
      archive.writeBlock(values.data(), values.size() * sizeof(E));
      return;
    }
  }
  for (std::size_t index = 0; index < values.size(); ++index)
  {
    if constexpr (std::is_same_v<E, bool>)
      archive.writeBool("value", values[index]); // the vector holds no bool to refer to
    else
      archive << SerializationOItem<E>("value", values[index]);
  }
}

template <class E, class A>
void readElements(BaseIArchive& archive, std::vector<E, A>& values, ipUInt32 count)
{
  if constexpr (isBlockElement<E>)
  {
    if (!archive.isElementWise())
    {
      archive.checkBlock(count, sizeof(E));
      values.resize(count);
      archive.readBlock(values.data(), values.size() * sizeof(E));
      return;
    }
  }
  archive.checkCount(count);
  if constexpr (isSharedPtr<E>)
    values.clear(); // old objects are released before new ones are made
  values.resize(count);
  for (std::size_t index = 0; index < count; ++index)
  {
    if constexpr (std::is_same_v<E, bool>)
      values[index] = archive.readBool("value");
    else
      archive >> SerializationIItem<E>("value", values[index]);
  }
}

} // namespace details

/// \name Containers
/// \{

template <class E, class A>
BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::vector<E, A>>& item)
{
  details::SectionScope section(archive, item.getKey());
  details::SectionScope vectorSection(archive, "vector");
  const std::vector<E, A>& values = item.getValue();
  details::writeCount(archive, values.size());
  details::writeElements(archive, values);
  vectorSection.finish();
  section.finish();
  return archive;
}

template <class E, class A>
BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::vector<E, A>>& item)
{
  details::SectionScope section(archive, item.getKey());
  details::SectionScope vectorSection(archive, "vector");
  details::readElements(archive, item.getValue(), details::readCount(archive));
  vectorSection.finish();
  section.finish();
  return archive;
}

template <class E, class C, class A>
BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::set<E, C, A>>& item)
{
  details::SectionScope section(archive, item.getKey());
  details::SectionScope setSection(archive, "set");
  details::writeCount(archive, item.getValue().size());
  for (const E& element : item.getValue())
    archive << SerializationOItem<E>("key", element);
  setSection.finish();
  section.finish();
  return archive;
}

template <class E, class C, class A>
BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::set<E, C, A>>& item)
{
  details::SectionScope section(archive, item.getKey());
  details::SectionScope setSection(archive, "set");
  std::set<E, C, A>& elements = item.getValue();
  elements.clear();
  const ipUInt32 count = details::readCount(archive);
  archive.checkCount(count);
  for (ipUInt32 index = 0; index < count; ++index)
  {
    E element{};
    archive >> SerializationIItem<E>("key", element);
    elements.insert(elements.end(), std::move(element)); // archives hold them in order
  }
  setSection.finish();
  section.finish();
  return archive;
}

template <class K, class V, class C, class A>
BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::map<K, V, C, A>>& item)
{
  details::SectionScope section(archive, item.getKey());
  details::SectionScope mapSection(archive, "map");
  details::writeCount(archive, item.getValue().size());
  for (const auto& [key, value] : item.getValue())
    archive << SerializationOItem<K>("key", key) << SerializationOItem<V>("value", value);
  mapSection.finish();
  section.finish();
  return archive;
}

template <class K, class V, class C, class A>
BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::map<K, V, C, A>>& item)
{
  details::SectionScope section(archive, item.getKey());
  details::SectionScope mapSection(archive, "map");
  std::map<K, V, C, A>& entries = item.getValue();
  entries.clear();
  const ipUInt32 count = details::readCount(archive);
  archive.checkCount(count);
  for (ipUInt32 index = 0; index < count; ++index)
  {
    K key{};
    V value{};
    archive >> SerializationIItem<K>("key", key);
    archive >> SerializationIItem<V>("value", value);
    entries.insert_or_assign(entries.end(), std::move(key), std::move(value)); // archives hold them in order
  }
  mapSection.finish();
  section.finish();
  return archive;
}
/// \}

} // namespace orvel
