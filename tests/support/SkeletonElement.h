#pragma once

/// \file
/// \brief An object that honours the serialization mode and remembers with which it was written and read.
///
/// A program that uses it lists SkeletonElement.cpp among its sources.

#include <functional>
#include <vector>

#include <boost/shared_ptr.hpp>

#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

/// \brief One number of structure, "_structure", and one of data, "_data". Class name
/// "orvel::SkeletonElement", version 1.
///
/// Filed in full: both; as a skeleton: the structure; as data: the data.
class SkeletonElement : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE(SkeletonElement)

public:
  explicit SkeletonElement(ipInt32 structure = 0, ipInt32 data = 0);

  ipInt32 structure;
  ipInt32 data;

  // What happened to it; not copied.
  mutable std::vector<ipUInt64> modesWritten; ///< the modes of its writes, the first at the front
  std::vector<ipUInt64> modesRead;
  std::function<void()> whenWritten; ///< called by each write, if there is one
};

using SkeletonElementPtr = boost::shared_ptr<SkeletonElement>;

} // namespace orvel
