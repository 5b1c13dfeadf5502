#pragma once

/// \file
/// \brief What the generators of separable kernels do alike: one kernel for each axis, each a line of taps.

#include <array>
#include <cstddef>
#include <utility>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Pattern/Private/OffsetCoordinates.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief The pointers that a generator fills, x first.
template <class Kernel, std::size_t NB_AXES>
using KernelResults = boost::shared_ptr<Kernel>* const (&)[NB_AXES];

/// \brief Reset all pointers, in order.
template <class Kernel, std::size_t NB_AXES>
void releaseAll(KernelResults<Kernel, NB_AXES> results)
{
  for (boost::shared_ptr<Kernel>* const result : results)
    result->reset();
}

/// \brief Make a kernel for each axis and call fill(kernel, axis) for it.
///
/// They are handed out when all are done: running out of memory half way leaves the pointers as they were,
/// and one pointer may be given for several axes.
template <class Kernel, std::size_t NB_AXES, class Fill>
void makeForEachAxis(KernelResults<Kernel, NB_AXES> results, Fill fill)
{
  std::array<boost::shared_ptr<Kernel>, NB_AXES> kernels;
  for (boost::shared_ptr<Kernel>& kernel : kernels)
    kernel = boost::make_shared<Kernel>();
  for (std::size_t axis = 0; axis < NB_AXES; ++axis)
    fill(*kernels[axis], axis);
  for (std::size_t axis = 0; axis < NB_AXES; ++axis)
    *results[axis] = kernels[axis];
}

/// \brief Return the offset that lies i steps from the origin along an axis.
template <class Offset>
Offset offsetOnAxis(std::size_t axis, ipInt32 i)
{
  decltype(coordinatesOf(std::declval<Offset>())) coordinates = {};
  coordinates[axis] = i;
  return offsetAt(coordinates);
}

} // namespace orvel::details
