#pragma once

/// \file
/// \brief Root of the collections of an object per plan.

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/PlanIndex/PlanIndex.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

struct SourceLocation;

/// \brief Root of the collections that hold one shared object per plan, for other libraries to derive from.
///
/// The collection is sparse: a plan is there or not. It is reached by its index in logarithmic time, or by
/// its rank in the order of PlanIndex, z fastest and t slowest, in linear time: to visit all plans, walk
/// getBaseColl(). Objects are shared with whoever else holds their pointers; one may stand under several
/// keys. A single plan can be neither replaced nor taken out.
///
/// Copies are made by the derived classes that want them, each in its own way; through this class there is
/// none. A collection has no lock, and write() changes the serialization mode of the objects: two threads
/// must not write one collection at the same time.
///
/// Archive version 1. What follows depends on hasSkeletonElements() and on the serialization mode:
///
/// | objects | mode | `write` | `read` |
/// |---|---|---|---|
/// | without skeleton | any | the map | the map |
/// | with skeleton | eSSM_Full, eSSM_Skeleton | hands the mode on, then the map | the map |
/// | with skeleton | eSSM_Data | hands the mode on, then an item "curObject" per object | those items |
///
/// The map is the item "_planIndexedColl" (\see ItemOperators.h): reading it drops the old objects
/// first; after a failure the collection holds the plans read so far. Null pointers come from an archive, or
/// from a prototype whose duplicateShared() returns one. In an archive that is not trusted, objects without a
/// skeleton where there should be one are refused (ORVELSerializationException) and null pointers stand in
/// their places.
///
/// "curObject" items hold an object in place each, null pointers apart, in the order of the plans, without
/// keys and count: they are read into the objects that stand in the collection, whose plans must be those of
/// the collection that was written. `write` hands the mode of the collection on to the objects, which keep
/// it; `read` does not: whoever reads in another mode than eSSM_Full sets the modes of the objects first.
///
/// Beware: objects that are created while the map is read start in mode eSSM_Full, whatever the mode of the
/// collection. A skeleton can be read back if the objects file themselves whether their data follow, or are
/// made so that they expect a skeleton; the buffers of this library do neither.
///
/// The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BasePlanIndexedColl : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY(BasePlanIndexedColl)

public:
  ~BasePlanIndexedColl() override = 0;

  virtual const std::string& getElementTypeName() const = 0; ///< name of the class of the objects

  /// \brief Whether the objects derive from BaseObjectWithSkeleton, so that the mode is handed on to them.
  virtual bool hasSkeletonElements() const = 0;

  /// \brief Return the number of plans.
  ipUInt64 getNbPlans() const { return _planIndexedColl.size(); }

  /// \brief Return the plans and their objects, in the order of PlanIndex.
  const std::map<PlanIndex, SerializationObjectPtr>& getBaseColl() const { return _planIndexedColl; }

  /// \brief Return the smallest extent along z that covers every plan: the largest of index + 1; 0 without
  /// plans. The index 2^64 - 1, which no extent covers, counts as 0. Time: linear in the number of plans.
  ipUInt64 getMaxSizeZ() const;
  ipUInt64 getMaxSizeC() const; ///< the same along c \see getMaxSizeZ
  ipUInt64 getMaxSizeT() const; ///< the same along t \see getMaxSizeZ

  bool exists(const PlanIndex& planIndex) const;         ///< whether a plan is there
  bool exists(ipUInt64 z, ipUInt64 c, ipUInt64 t) const; ///< whether a plan is there

  /// \brief Tell whether the collection holds every plan of a stack of these extents, and nothing else.
  ///
  /// Only the number of plans, in 64-bit arithmetic that wraps around, and the last plan are looked at: other
  /// plans are trusted to lie within the extents. Without plans an extent of 0 is complete. Constant time.
  bool isComplete(ipUInt64 sizeZ, ipUInt64 sizeC, ipUInt64 sizeT) const;

  /// \brief The same for the extents that cover every plan: only a product that wraps around can mislead it.
  /// Linear time. \see getMaxSizeZ
  bool isComplete() const;

  /// \brief Return the index of a plan, valid as long as the plan is there.
  /// \param planOffset rank of the plan in the order of PlanIndex, from 0. Time: linear in the rank.
  /// \throw ORVELBaseDataException (eInvalidPlanOffset) if there is no such rank
  const PlanIndex& getPlanIndex(ipUInt64 planOffset) const;

  /// \brief Return the object of a plan.
  /// \throw ORVELBaseDataException (ePlanNotFound) if the plan is not there
  SerializationObjectConstPtr getStorage(const PlanIndex& planIndex) const;

  /// \brief Return the object of a plan. The reference is valid as long as the plan is there.
  /// \throw ORVELBaseDataException (ePlanNotFound) if the plan is not there
  const SerializationObjectPtr& getStorage(const PlanIndex& planIndex);

  /// \brief Enter a plan. The object is shared, not copied.
  /// \throw ORVELBaseDataException (eNullPlanPtr) if the pointer is null, also if the plan is there;
  /// (ePlanAlreadyExists) if the plan is there. Nothing has changed.
  void insert(const PlanIndex& planIndex, const SerializationObjectPtr& object);

  /// \brief Hold every plan of a stack of these extents, each with a copy of its own of one object, in place
  /// of all that was there. An extent of 0 leaves the collection empty.
  ///
  /// Copies are made by the prototype's duplicateShared(), z in the outer loop and t in the inner one. The
  /// prototype may be an object of this collection.
  /// \throw whatever duplicateShared() raises; the collection holds the plans entered so far
  void assign(const BaseSerializationObject& prototype, ipUInt64 sizeZ, ipUInt64 sizeC, ipUInt64 sizeT);

  void clear(); ///< \brief Take all plans out.

protected:
  BasePlanIndexedColl(); ///< an empty collection

private:
  const SerializationObjectPtr& find(const PlanIndex& planIndex, const SourceLocation& here) const;

  std::map<PlanIndex, SerializationObjectPtr> _planIndexedColl;
};

using BasePlanIndexedCollPtr = boost::shared_ptr<BasePlanIndexedColl>; ///< shared collection
using BasePlanIndexedCollConstPtr =
    boost::shared_ptr<const BasePlanIndexedColl>; ///< shared constant collection

} // namespace orvel
