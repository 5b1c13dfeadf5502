#pragma once

/// \file
/// \brief How collections of shared objects are archived: whole, or as the contents of objects in place.

#include <string>
#include <utility>

#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/ItemOperators.h>

namespace orvel::details
{

inline const SerializationObjectPtr& objectOf(const SerializationObjectPtr& element)
{
  return element;
}

inline SerializationObjectPtr& objectOf(SerializationObjectPtr& element)
{
  return element;
}

template <class Key>
const SerializationObjectPtr& objectOf(const std::pair<const Key, SerializationObjectPtr>& entry)
{
  return entry.second;
}

template <class Key>
SerializationObjectPtr& objectOf(std::pair<const Key, SerializationObjectPtr>& entry)
{
  return entry.second;
}

/// \brief File the objects of a collection.
///
/// Objects with a skeleton take over the owner's mode first and keep it. With that, in mode eSSM_Data, there
/// is an item "curObject" for each object that is not null, in order, and neither keys nor a count. Otherwise
/// the collection is one item.
/// \param owner the object that holds the collection; its `hasSkeletonElements` is asked once
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

/// \brief Let go of the objects without a skeleton, which would be taken for such as have one. Null pointers
/// stand in their places.
/// \return the class of the first of them; empty if there are none
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

/// \brief Read a collection of objects with a skeleton from an archive that is not trusted.
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
    archive.raiseWrongClass(refused, BaseObjectWithSkeleton::getTypeName());
}

/// \brief Read what writeObjectColl() filed: into the objects that the collection holds, in mode eSSM_Data of
/// objects with a skeleton, else in place of them. The mode of the objects is the caller's matter here.
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
