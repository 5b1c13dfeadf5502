#pragma once

/// \file
/// \brief What KernelXY and KernelXYZ do alike, written once for any number of axes.

#include <cmath>

#include <ORVELBaseData/Pattern/Private/BoundingBox.h>
#include <ORVELBaseData/Pattern/Private/ComputedNaN.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief The operations of a kernel. Those that may fail answer false and leave the kernel unchanged, so
/// that the public operation raises the failure in its own name.
template <class Kernel>
struct KernelOperations
{
  using Offset = typename Kernel::OffsetType;
  using Value = typename Kernel::ValueType;

  static bool insert(Kernel& kernel, const Offset& offset, Value value)
  {
    // A kernel is mostly built in the order of its taps: the hint saves the lookup then, and costs one
    // comparison otherwise.
    auto& taps = kernel._dataColl;
    const auto nbTapsBefore = taps.size();
    taps.try_emplace(taps.end(), offset, value);
    if (taps.size() == nbTapsBefore)
      return false;
    addToSums(kernel, value);
    Box::include(kernel, offset);
    return true;
  }

  static bool replace(Kernel& kernel, const Offset& offset, Value value)
  {
    const auto tap = kernel._dataColl.find(offset);
    if (tap == kernel._dataColl.end())
      return false;
    subtractFromSums(kernel, tap->second);
    tap->second = value;
    addToSums(kernel, value);
    return true;
  }

  static bool remove(Kernel& kernel, const Offset& offset)
  {
    const auto tap = kernel._dataColl.find(offset);
    if (tap == kernel._dataColl.end())
      return false;
    subtractFromSums(kernel, tap->second);
    kernel._dataColl.erase(tap);
    Box::fit(kernel, kernel._dataColl, [](const auto& tapLeft) -> const Offset& { return tapLeft.first; });
    return true;
  }

  /// \brief Return the coefficient of a tap, null without one.
  static const Value* find(const Kernel& kernel, const Offset& offset)
  {
    const auto tap = kernel._dataColl.find(offset);
    return tap == kernel._dataColl.end() ? nullptr : &tap->second;
  }

  static void multiply(Kernel& kernel, ipReal32 factor)
  {
    for (auto& tap : kernel._dataColl)
      tap.second = withDefaultNaN(tap.second * factor);
    kernel._coefSum = withDefaultNaN(kernel._coefSum * factor);
    kernel._absCoefSum = withDefaultNaN(kernel._absCoefSum * factor);
  }

  static void clear(Kernel& kernel)
  {
    kernel._dataColl.clear();
    Box::clear(kernel);
    kernel._coefSum = 0;
    kernel._absCoefSum = 0;
  }

  static ipReal32 computeAbsCoefSum(Kernel& kernel)
  {
    for (auto& tap : kernel._dataColl)
      tap.second = withDefaultNaN(std::abs(tap.second) + tap.second);
    return 0;
  }

  static void copy(Kernel& kernel, const Kernel& other)
  {
    if (&kernel != &other) // its own taps stay where they are: callers may hold on to them
    {
      auto taps = other._dataColl; // aside: if memory runs out the kernel stays whole
      kernel._dataColl.swap(taps);
    }
    Box::copy(kernel, other);
    kernel._coefSum = other._coefSum;
    kernel._absCoefSum = other._absCoefSum;
  }

  static void write(const Kernel& kernel, BaseOArchive& archive)
  {
    archive << SerializationOItem("_dataColl", kernel._dataColl);
    Box::write(kernel, archive);
    archive << SerializationOItem("_coefSum", kernel._coefSum);
    archive << SerializationOItem("_absCoefSum", kernel._absCoefSum);
  }

  static void read(Kernel& kernel, BaseIArchive& archive, ipUInt32 version)
  {
    archive >> SerializationIItem("_dataColl", kernel._dataColl);
    Box::read(kernel, archive);
    archive >> SerializationIItem("_coefSum", kernel._coefSum);
    if (version < 2)
      kernel._absCoefSum = kernel.computeAbsCoefSum();
    else
      archive >> SerializationIItem("_absCoefSum", kernel._absCoefSum);
  }

private:
  using Box = BoundingBox<Kernel>;

  static void addToSums(Kernel& kernel, Value value)
  {
    kernel._coefSum = withDefaultNaN(kernel._coefSum + value);
    kernel._absCoefSum = withDefaultNaN(kernel._absCoefSum + std::abs(value));
  }

  static void subtractFromSums(Kernel& kernel, Value value)
  {
    kernel._coefSum = withDefaultNaN(kernel._coefSum - value);
    kernel._absCoefSum = withDefaultNaN(kernel._absCoefSum - std::abs(value));
  }
};

} // namespace orvel::details
