#pragma once

/// \file
/// \brief The two roots of collections of shared objects, side by side: how their tests fill them, and what
/// their archives look like.
///
/// A program that uses it lists SkeletonElement.cpp among its sources.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include <ORVELBaseData/PlanIndex/BasePlanIndexedColl.h>
#include <ORVELBaseData/PtrColl/BasePtrColl.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <support/HandWrittenArchive.h>
#include <support/SkeletonElement.h>

namespace orvel::test
{

inline constexpr auto g_full = eSklSrzMode::eSSM_Full;
inline constexpr auto g_skeleton = eSklSrzMode::eSSM_Skeleton;
inline constexpr auto g_data = eSklSrzMode::eSSM_Data;

inline SkeletonElementPtr makeElement(ipInt32 structure = 0, ipInt32 data = 0)
{
  return boost::make_shared<SkeletonElement>(structure, data);
}

using Objects = std::vector<SerializationObjectPtr>;

/// \brief The least that a class derived from one of the roots supplies.
template <class Base>
class LeastColl : public Base
{
public:
  /// \param hasSkeletons whether its objects take the mode; they are SkeletonElements or the like then
  LeastColl(bool hasSkeletons, eSklSrzMode::domain mode)
    : _hasSkeletons(hasSkeletons)
  {
    this->setSerializationMode(mode);
  }

  BaseDynamicObject* createNew() const override { return new LeastColl(false, g_full); }
  DynamicObjectPtr createShared() const override { return boost::make_shared<LeastColl>(false, g_full); }
  const std::string& getElementTypeName() const override { return BaseSerializationObject::getTypeName(); }
  bool hasSkeletonElements() const override { return _hasSkeletons; }

private:
  bool _hasSkeletons;
};

/// \brief A collection of pointers.
class PtrColl : public LeastColl<BasePtrColl>
{
public:
  using Root = BasePtrColl;
  static constexpr const char* className = "orvel::BasePtrColl";
  static constexpr const char* table = "_ZTVN5orvel11BasePtrCollE"; ///< of virtual operations
  static constexpr bool hasPureDestructor = false;
  static constexpr const char* sourceFile = "ORVELBaseData/PtrColl/BasePtrColl.cpp";
  static constexpr const char* key = "_coll";
  static constexpr const char* form = "vector";
  static constexpr bool hasPlaceBeforeRead = true; ///< for the objects that are read

  explicit PtrColl(bool hasSkeletons = false, const Objects& objects = {}, eSklSrzMode::domain mode = g_full)
    : LeastColl(hasSkeletons, mode)
  {
    _coll = objects;
  }

  const Objects& getObjects() const { return _coll; }

  template <class HandWritten>
  static void putKey(HandWritten& /*archive*/, std::size_t /*rank*/)
  {
  }
};

/// \brief A collection of plans; the n-th object belongs to the n-th plan.
class PlanColl : public LeastColl<BasePlanIndexedColl>
{
public:
  using Root = BasePlanIndexedColl;
  static constexpr const char* className = "orvel::BasePlanIndexedColl";
  static constexpr const char* table = "_ZTVN5orvel19BasePlanIndexedCollE";
  static constexpr bool hasPureDestructor = true;
  static constexpr const char* sourceFile = "ORVELBaseData/PlanIndex/BasePlanIndexedColl.cpp";
  static constexpr const char* key = "_planIndexedColl";
  static constexpr const char* form = "map";
  static constexpr bool hasPlaceBeforeRead = false;

  /// \brief The plans of the objects, in the order of the keys.
  static PlanIndex planOf(std::size_t rank)
  {
    const PlanIndex plans[] = {{7, 0, 0}, {0, 1, 0}, {3, 1, 0}, {0, 0, 1}, {1, 0, 2}};
    return plans[rank];
  }

  explicit PlanColl(bool hasSkeletons = false, const Objects& objects = {}, eSklSrzMode::domain mode = g_full)
    : LeastColl(hasSkeletons, mode)
  {
    for (std::size_t i = objects.size(); i-- > 0;) // in another order than that of the keys
    {
      insert(planOf(i), objects[i] ? objects[i] : makeElement());
      if (!objects[i]) // insert() takes none; archives may bring one
        const_cast<SerializationObjectPtr&>(getStorage(planOf(i))).reset();
    }
  }

  Objects getObjects() const
  {
    Objects objects;
    for (const auto& [plan, object] : getBaseColl())
      objects.push_back(object);
    return objects;
  }

  template <class HandWritten>
  static void putKey(HandWritten& archive, std::size_t rank)
  {
    putKey(archive, planOf(rank), rank == 0);
  }

  /// \param isFirst whether it brings the version of its class
  template <class HandWritten>
  static void putKey(HandWritten& archive, const PlanIndex& plan, bool isFirst)
  {
    archive.openObject("key");
    if (isFirst)
      putVersion(archive, "orvel::PlanIndex", PlanIndex::getVersion());
    archive.integer("_zPlanIdx", static_cast<std::int64_t>(plan.getZPlanIdx()));
    archive.integer("_cPlanIdx", static_cast<std::int64_t>(plan.getCPlanIdx()));
    archive.integer("_tPlanIdx", static_cast<std::int64_t>(plan.getTPlanIdx()));
    archive.close();
  }
};

/// \brief A hand-written archive of collections of class Coll, PtrColl or PlanColl.
template <class Coll, class HandWritten>
class ObjectCollArchive
{
public:
  /// \brief Start with the version record of the root.
  explicit ObjectCollArchive(ipUInt32 version = 1) { putVersion(_archive, Coll::className, version); }

  /// \brief Start the item of all objects; the entries follow.
  ObjectCollArchive& open(std::int64_t size)
  {
    _archive.openSection(Coll::key);
    _archive.openSection(Coll::form);
    _archive.integer("size", size);
    _rank = 0;
    _isOpen = true;
    return *this;
  }

  ObjectCollArchive& close()
  {
    _archive.close();
    _archive.close();
    _isOpen = false;
    return *this;
  }

  ObjectCollArchive& null()
  {
    openEntry();
    _archive.nullPointer("pObject");
    return closeEntry();
  }

  /// \brief Put an element with what the mode says; the first one brings the version of its class.
  ObjectCollArchive& element(int structure, int data, eSklSrzMode::domain mode = g_full)
  {
    openEntry();
    _archive.openPointer("pObject", "orvel::SkeletonElement");
    putContent(structure, data, mode);
    _archive.close();
    return closeEntry();
  }

  /// \brief Put an object of a class without a skeleton, and the version of its class.
  ObjectCollArchive& plainObject()
  {
    openEntry();
    _archive.openPointer("pObject", "orvel::ElementsRange");
    putVersion(_archive, "orvel::ElementsRange", ElementsRange::getVersion());
    _archive.integer("_startOffset", 3);
    _archive.integer("_nbElements", 4);
    _archive.close();
    return closeEntry();
  }

  /// \brief Put an object that cannot be made.
  ObjectCollArchive& unknownObject()
  {
    openEntry();
    _archive.openPointer("pObject", "orvel::UnknownClass");
    _archive.close();
    return closeEntry();
  }

  /// \param number of an object that came before, from 1
  ObjectCollArchive& reference(std::uint64_t number)
  {
    openEntry();
    _archive.reference("pObject", number);
    return closeEntry();
  }

  /// \brief Put the data of an element in place.
  ObjectCollArchive& curObject(int data)
  {
    _archive.openObject("curObject");
    putContent(0, data, g_data);
    _archive.close();
    return *this;
  }

  /// \brief Let the next entry be of that rank, which matters where entries have keys.
  ObjectCollArchive& at(std::size_t rank)
  {
    _rank = rank;
    return *this;
  }

  /// \brief Start an entry, to the pointer.
  void openEntry()
  {
    Coll::putKey(_archive, _rank++);
    openValue();
  }

  void openValue()
  {
    _archive.openSection("value");
    _archive.openSection("shared_ptr<orvel::BaseSerializationObject>");
  }

  ObjectCollArchive& closeEntry()
  {
    _archive.close();
    _archive.close();
    return *this;
  }

  HandWritten& access() { return _archive; }

  /// \brief Return the file, finished.
  std::string file() const
  {
    ObjectCollArchive finished(*this);
    if (_isOpen)
      finished.close();
    return finished._archive.file();
  }

private:
  void putContent(int structure, int data, eSklSrzMode::domain mode)
  {
    if (!_hasElement)
      putVersion(_archive, "orvel::SkeletonElement", SkeletonElement::getVersion());
    _hasElement = true;
    if (mode != g_data)
      _archive.integer("_structure", structure);
    if (mode != g_skeleton)
      _archive.integer("_data", data);
  }

  HandWritten _archive;
  std::size_t _rank = 0;
  bool _isOpen = false;
  bool _hasElement = false;
};

} // namespace orvel::test
