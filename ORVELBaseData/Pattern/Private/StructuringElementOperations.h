#pragma once

/// \file
/// \brief What StructuringElementXY and StructuringElementXYZ do alike, written once for any number of axes.

#include <set>
#include <utility>

#include <ORVELBaseData/Pattern/Private/BoundingBox.h>
#include <ORVELSerialization/ItemOperators.h>

namespace orvel::details
{

/// \brief The operations of a structuring element. Those that may fail answer false and leave the element
/// unchanged, so that the public operation raises the failure in its own name.
template <class Element>
struct StructuringElementOperations
{
  using Offset = typename Element::OffsetType;

  static bool insert(Element& element, const Offset& offset)
  {
    auto& offsets = element._dataColl;
    const auto sizeBefore = offsets.size();
    offsets.insert(offsets.end(), offset); // mostly they come in their order
    if (offsets.size() == sizeBefore)
      return false;
    Box::include(element, offset);
    return true;
  }

  static bool remove(Element& element, const Offset& offset)
  {
    if (element._dataColl.erase(offset) == 0)
      return false;
    fitBox(element);
    return true;
  }

  /// \brief Take a set of offsets over; to hand it in as a temporary saves the copy.
  static void setOffsets(Element& element, std::set<Offset> offsets)
  {
    element._dataColl = std::move(offsets);
    fitBox(element);
  }

  static void clear(Element& element)
  {
    element._dataColl.clear();
    Box::clear(element);
  }

  static void copy(Element& element, const Element& other)
  {
    if (&element == &other)
      return;
    // The copy is made first: without memory for it the old offsets still fit their box.
    std::set<Offset> offsets = other._dataColl;
    element._dataColl = std::move(offsets);
    Box::copy(element, other);
  }

  static void write(const Element& element, BaseOArchive& archive)
  {
    archive << SerializationOItem("_dataColl", element._dataColl);
    Box::write(element, archive);
  }

  static void read(Element& element, BaseIArchive& archive)
  {
    archive >> SerializationIItem("_dataColl", element._dataColl);
    Box::read(element, archive);
  }

private:
  using Box = BoundingBox<Element>;

  static void fitBox(Element& element)
  {
    Box::fit(element, element._dataColl, [](const Offset& offset) -> const Offset& { return offset; });
  }
};

} // namespace orvel::details
