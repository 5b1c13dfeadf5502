#pragma once

/// \file
/// \brief Root of the ordered collections of shared objects.

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

/// \brief Root of the ordered collections of shared serialisable objects. Other libraries derive from it.
///
/// This class archives the elements. Access to them and all the rest is for the derived class, which uses the
/// field directly. An element may be null. The collection shares its elements with everybody who holds their
/// pointers.
///
/// The collection is not copied through this class (\see ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY); a derived
/// class may copy its own. It has no lock, and write() changes the serialization mode of the elements: two
/// threads must not write one collection at the same time.
///
/// Archive version 1. What follows depends on hasSkeletonElements() and on the serialization mode:
///
/// | elements | mode | `write` | `read` |
/// |---|---|---|---|
/// | without skeleton | any | "_coll" | "_coll" |
/// | with skeleton | eSSM_Full, eSSM_Skeleton | sets the mode on the elements, then "_coll" | "_coll" |
/// | with skeleton | eSSM_Data | sets the mode on the elements, then a "curObject" each | these items |
///
/// "_coll" has the form of vectors of shared objects (\see ItemOperators.h). Reading it releases the old
/// elements first; after a failure the collection holds the elements read so far, and null pointers for the
/// others. From an untrusted archive an element without a skeleton, where it should have one, is refused
/// (ORVELSerializationException), and a null pointer takes its place.
///
/// The items "curObject" hold the elements that are not null in place, in order and without a count. They are
/// read into the elements of the collection, which must have the same number and classes as those written.
/// `write` sets the mode of the collection on the elements, which keep it. `read` does not: before reading in
/// another mode than eSSM_Full the caller must set the modes of the elements.
///
/// Beware: elements that are created while "_coll" is read have the mode eSSM_Full, whatever the mode of the
/// collection. So a skeleton can only be read if the elements store whether data follow, or expect a skeleton
/// when new; the buffers of this library do neither.
///
/// The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BasePtrColl : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY(BasePtrColl)

public:
  ~BasePtrColl() override;

  virtual const std::string& getElementTypeName() const = 0; ///< class name of the elements
  virtual bool hasSkeletonElements() const = 0; ///< whether the elements derive from BaseObjectWithSkeleton

protected:
  BasePtrColl(); ///< an empty collection

  std::vector<SerializationObjectPtr> _coll; ///< the elements, in order; null pointers are allowed
};

using BasePtrCollPtr = boost::shared_ptr<BasePtrColl>;            ///< shared collection
using BasePtrCollConstPtr = boost::shared_ptr<const BasePtrColl>; ///< shared constant collection

} // namespace orvel
