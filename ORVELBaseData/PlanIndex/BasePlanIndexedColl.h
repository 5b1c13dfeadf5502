#pragma once

/// \file
/// \brief Root of the collections of one object per plan.

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

/// \brief Root of the collections that hold one shared object per plan. Other libraries derive from it.
///
/// The collection is sparse: it has a plan or not. A plan is found by its index in logarithmic time, or by
/// its rank in the order of PlanIndex in linear time; to visit all plans, walk getBaseColl(). The collection
/// shares its objects with everybody who holds their pointers. One object may belong to several plans. A
/// single plan can be neither replaced nor removed.
///
/// The collection is not copied through this class (\see ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY); a derived
/// class may copy its own. It has no lock, and write() changes the serialization mode of the objects: two
/// threads must not write one collection at the same time.
///
/// Archive version 1. What follows depends on hasSkeletonElements() and on the serialization mode:
///
/// | objects | mode | `write` | `read` |
/// |---|---|---|---|
/// | without skeleton | any | the map | the map |
/// | with skeleton | eSSM_Full, eSSM_Skeleton | sets the mode on the objects, then the map | the map |
/// | with skeleton | eSSM_Data | sets the mode on the objects, then a "curObject" each | these items |
///
/// The map is the item "_planIndexedColl" (\see ItemOperators.h). Reading it releases the old objects
/// first; after a failure the collection holds the plans read so far. An object may come back null. From an
/// untrusted archive an object without a skeleton, where it should have one, is refused
/// (ORVELSerializationException), and a null pointer takes its place.
///
/// The items "curObject" hold the objects that are not null in place, in the order of the plans, without keys
/// or a count. They are read into the objects of the collection, which must have the same plans as the one
/// that was written. `write` sets the mode of the collection on the objects, which keep it. `read` does not:
/// before reading in another mode than eSSM_Full the caller must set the modes of the objects.
///
/// Beware: objects that are created while the map is read have the mode eSSM_Full, whatever the mode of the
/// collection. So a skeleton can only be read if the objects store whether data follow, or expect a skeleton
/// when new; the buffers of this library do neither.
///
/// The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BasePlanIndexedColl : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY(BasePlanIndexedColl)

public:
  ~BasePlanIndexedColl() override = 0;

  virtual const std::string& getElementTypeName() const = 0; ///< class name of the objects
  virtual bool hasSkeletonElements() const = 0; ///< whether the objects derive from BaseObjectWithSkeleton

  ipUInt64 getNbPlans() const { return _planIndexedColl.size(); } ///< number of plans

  /// \brief Return the plans and their objects, in the order of PlanIndex.
  const std::map<PlanIndex, SerializationObjectPtr>& getBaseColl() const { return _planIndexedColl; }

  /// \brief Return the smallest extent along z that covers every plan: the largest of z + 1, or 0 without
  /// plans. A z of 2^64 - 1, which no extent covers, counts as 0. Time: linear in the number of plans.
  ipUInt64 getMaxSizeZ() const;
  ipUInt64 getMaxSizeC() const; ///< the same along c \see getMaxSizeZ
  ipUInt64 getMaxSizeT() const; ///< the same along t \see getMaxSizeZ

  bool exists(const PlanIndex& planIndex) const;         ///< whether the collection has a plan
  bool exists(ipUInt64 z, ipUInt64 c, ipUInt64 t) const; ///< \copydoc exists(const PlanIndex&) const

  /// \brief Return whether the collection holds every plan of a stack of these extents, and no other.
  ///
  /// Only the number of plans and the last plan are checked, in 64-bit arithmetic that wraps around; the
  /// other plans are trusted to lie within the extents. Without plans every stack with an extent of 0 is
  /// complete. Constant time.
  bool isComplete(ipUInt64 sizeZ, ipUInt64 sizeC, ipUInt64 sizeT) const;

  /// \brief Return whether the collection is complete for the extents that cover every plan.
  ///
  /// The answer may be wrong in two cases: the product of the extents wraps around, or a plan before the last
  /// has an index 2^64 - 1, which no extent covers. With (2^64 - 1, 0, 0) and (0, 1, 0) the extents are 1, 2
  /// and 1, and the collection is called complete. Linear time. \see getMaxSizeZ
  bool isComplete() const;

  /// \brief Return the index of a plan, valid as long as the collection has the plan. Time: linear in the
  /// rank.
  /// \param planOffset rank of the plan in the order of PlanIndex, from 0
  /// \throw ORVELBaseDataException (eInvalidPlanOffset) if there is no such rank
  const PlanIndex& getPlanIndex(ipUInt64 planOffset) const;

  /// \brief Return the object of a plan.
  /// \throw ORVELBaseDataException (ePlanNotFound) if the collection does not have the plan
  SerializationObjectConstPtr getStorage(const PlanIndex& planIndex) const;

  /// \brief Return the object of a plan; the reference is valid as long as the collection has the plan.
  /// \throw ORVELBaseDataException (ePlanNotFound) if the collection does not have the plan
  const SerializationObjectPtr& getStorage(const PlanIndex& planIndex);

  /// \brief Insert a plan. The object is shared, not copied.
  /// \throw ORVELBaseDataException (eNullPlanPtr) if the pointer is null, also if the collection has the
  /// plan; (ePlanAlreadyExists) if it has the plan. The collection is unchanged.
  void insert(const PlanIndex& planIndex, const SerializationObjectPtr& object);

  /// \brief Replace all plans by those of a stack of these extents, each with its own copy of an object. An
  /// extent of 0 leaves the collection empty.
  ///
  /// The prototype's duplicateShared() makes the copies, with z in the outer loop and t in the inner one; a
  /// null pointer that it returns is stored. The prototype may be an object of this collection.
  /// \throw whatever duplicateShared() raises; the collection holds the plans inserted so far
  void assign(const BaseSerializationObject& prototype, ipUInt64 sizeZ, ipUInt64 sizeC, ipUInt64 sizeT);

  void clear(); ///< \brief Remove all plans.

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
