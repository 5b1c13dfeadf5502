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

/// \brief Root of the ordered collections of shared serialisable objects, for other libraries to derive from.
///
/// This root archives the elements and leaves the rest, access to them included, to the derived class, which
/// uses the field directly. An element may be null. Elements are shared with whoever else holds their
/// pointers. Copies are made by the derived classes that want them, each in its own way; through this class
/// there is none. A collection has no lock, and write() changes the serialization mode of the elements: two
/// threads must not write one collection at the same time.
///
/// Archive version 1. What follows depends on hasSkeletonElements() and on the serialization mode:
///
/// | elements | mode | `write` | `read` |
/// |---|---|---|---|
/// | without skeleton | any | the item "_coll" | the item "_coll" |
/// | with skeleton | eSSM_Full, eSSM_Skeleton | hands the mode on, then the item "_coll" | the item "_coll" |
/// | with skeleton | eSSM_Data | hands the mode on, then an item "curObject" per element | those items |
///
/// "_coll" has the form of vectors of shared objects (\see ItemOperators.h): reading it drops the old
/// elements first; after a failure the collection holds the elements read so far, and null pointers in place
/// of the others. In an archive that is not trusted, elements without a skeleton where there should be one
/// are refused (ORVELSerializationException) and null pointers stand in their places.
///
/// "curObject" items hold an element in place each, null elements apart, in order and without a count: they
/// are read into the elements that stand in the collection, which must be as many and of the same classes as
/// those written. `write` hands the mode of the collection on to the elements, which keep it; `read` does
/// not: whoever reads in another mode than eSSM_Full sets the modes of the elements first.
///
/// Beware: elements that are created while the item "_coll" is read start in mode eSSM_Full, whatever the
/// mode of the collection. A skeleton can be read back if the elements file themselves whether their data
/// follow, or are made so that they expect a skeleton; the buffers of this library do neither.
///
/// The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BasePtrColl : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY(BasePtrColl)

public:
  ~BasePtrColl() override;

  virtual const std::string& getElementTypeName() const = 0; ///< name of the class of the elements

  /// \brief Whether the elements derive from BaseObjectWithSkeleton, so that the mode is handed on to them.
  virtual bool hasSkeletonElements() const = 0;

protected:
  BasePtrColl(); ///< an empty collection

  std::vector<SerializationObjectPtr> _coll; ///< the elements, in order; null pointers are allowed
};

using BasePtrCollPtr = boost::shared_ptr<BasePtrColl>;            ///< shared collection
using BasePtrCollConstPtr = boost::shared_ptr<const BasePtrColl>; ///< shared constant collection

} // namespace orvel
