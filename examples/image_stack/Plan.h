#pragma once

#include "ImageStackExport.h"
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>

namespace orvel
{

/// \brief One plan of an image: its pixels, which may come later than the plan.
///
/// An archive that holds a collection of plans creates them while it reads, and nobody can tell them the
/// serialization mode in between. So a plan files whether pixels follow, and reads just that: a skeleton is
/// read back in mode eSSM_Full like everything else.
class IMAGE_STACK_EXPORT Plan : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE(Plan)

public:
  Plan();                                             ///< without memory
  Plan(ipUInt64 nbPixels, const eDataType& dataType); ///< with memory and without pixels

  /// \brief Whether the pixels have been set or read; else the memory holds anything.
  bool hasPixels() const { return _hasPixels; }

  const TypedOwnBuffer& getPixels() const { return _pixels; }

  /// \brief Return the pixels to be set.
  TypedOwnBuffer& setPixels();

private:
  bool _hasPixels = false;
  TypedOwnBuffer _pixels;
};

using PlanPtr = boost::shared_ptr<Plan>;
using PlanConstPtr = boost::shared_ptr<const Plan>;

} // namespace orvel
