#pragma once

/// \file
/// \brief How collections of shared objects are archived: whole, or as the contents of objects in place.

#include <string>
#include <type_traits>

#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/ItemOperators.h>

namespace orvel::details
{

/// \brief Return the pointer of an element, which is the pointer itself or the value of a map entry.
template <class Element>
auto& objectOf(Element& element)
{
  if constexpr (std::is_same_v<std::remove_const_t<Element>, SerializationObjectPtr>)
    return element;
  else
    return element.second;
}

/// \brief Write the objects of a collection.
///
/// If they have a skeleton, the owner's mode is first set on each; in mode eSSM_Data each object that is not
/// null is then one item "curObject", in order, without keys or a count. Otherwise the collection is one
/// item. \param owner the object that holds the collection; its `hasSkeletonElements` is called once
template <class Owner, class Coll>
void writeObjectColl(BaseOArchive& archive, const Owner& owner, const char* key, const Coll& coll)
{
  if (owner.hasSkeletonElements())
  {
    const eSklSrzMode mode = owner.getSerializationMode();
    for (const auto& element : coll)
    {
      if (objectOf(element))
        static_cast<const BaseObjectWithSkeleton&>(*objectOf(element)).setSerializationMode(mode);
    }
    if (mode == eSklSrzMode::eSSM_Data)
    {
      for (const auto& element : coll)
      {
        if (objectOf(element))
          archive << SerializationOItem<BaseSerializationObject>("curObject", *objectOf(element));
      }
      return;
    }
  }
  archive << SerializationOItem(key, coll);
}

/// \brief Replace objects without a skeleton by null pointers, as they would be used as if they had one.
/// \return the class of the first of them, or the empty text
template <class Coll>
std::string dropPlainObjects(Coll& coll)
{
  std::string className;
  for (auto& element : coll)
  {
    SerializationObjectPtr& object = objectOf(element);
    if (!object || dynamic_cast<const BaseObjectWithSkeleton*>(object.get()) != nullptr)
      continue;
    if (className.empty())
      className = object->getClassName();
    object.reset();
  }
  return className;
}

/// \brief Read a collection of objects with a skeleton from an untrusted archive.
/// \throw ORVELSerializationException also if an object has no skeleton
template <class Coll>
void readUntrustedColl(BaseIArchive& archive, const char* key, Coll& coll)
{
  try
  {
    archive >> SerializationIItem(key, coll);
  }
  catch (...)
  {
    dropPlainObjects(coll); // what was read so far stays
    throw;
  }
  const std::string refused = dropPlainObjects(coll);
  if (!refused.empty())
    archive.raiseWrongClass(refused, BaseObjectWithSkeleton::getTypeName(), ORVEL_HERE);
}

/// \brief Read what writeObjectColl() has written. If the objects have a skeleton and the mode is eSSM_Data,
/// the objects of the collection are read in place, else they are replaced. Sets the mode of no object.
template <class Owner, class Coll>
void readObjectColl(BaseIArchive& archive, const Owner& owner, const char* key, Coll& coll)
{
  const bool hasSkeletonElements = owner.hasSkeletonElements();
  if (hasSkeletonElements && owner.getSerializationMode() == eSklSrzMode::eSSM_Data)
  {
    for (auto& element : coll)
    {
      if (objectOf(element))
        archive >> SerializationIItem<BaseSerializationObject>("curObject", *objectOf(element));
    }
    return;
  }
  if (hasSkeletonElements && archive.isUntrusted())
    readUntrustedColl(archive, key, coll);
  else
    archive >> SerializationIItem(key, coll);
}

} // namespace orvel::details
