#pragma once

/// \file
/// \brief What StructuringElementXYInfo and StructuringElementXYZInfo do alike, written once for both.

#include <algorithm>
#include <iterator>
#include <type_traits>
#include <utility>
#include <variant>

#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief Whether a copy of a description carries a parameter.
enum class InCopies
{
  carried,
  notCarried
};

/// \brief A parameter of a kind of shape: its archive key and its field.
template <class Info, class Kind>
struct ShapeParameter // NOLINT(clang-analyzer-optin.performance.Padding): in the order in which a row is read
{
  using Field = std::variant<ipReal64 Info::*, ipUInt32 Info::*>;

  typename Kind::domain kind;
  const char* key;
  Field field;
  InCopies inCopies = InCopies::carried;
};

/// \brief The archive keys and the fields of a description. Each class specialises it in its source:
///  - `Kind`, the enumeration of its shapes;
///  - `kindKey`, `kind`, `elementKey`, `element`, the item and the field of the kind and of the element;
///  - `parameters`, the table of all shapes. The parameters of one kind follow each other, in the order of
///    the arguments of the initialisation and of the archive.
template <class Info>
struct InfoFields;

/// \brief The operations of a description. Failures are raised in the name of the public operation.
template <class Info>
struct InfoOperations
{
  using Fields = InfoFields<Info>;
  using Kind = typename Fields::Kind;
  using Parameter = ShapeParameter<Info, Kind>;

  static void requireInitialized(const Info& info, const SourceLocation& here)
  {
    if (!info.isInitialized())
      raise(here, eStructuringElementMessage::eSEInfoNotInitialized);
  }

  /// \brief Return a parameter if the shape has it.
  template <class Value>
  static Value get(const Info& info, Value Info::*field, const SourceLocation& here)
  {
    requireInitialized(info, here);
    for (const Parameter& parameter : Fields::parameters)
      if (parameter.kind == kindOf(info) && parameter.field == typename Parameter::Field(field))
        return info.*field;
    raise(here, eStructuringElementMessage::eInvalidSESubType);
  }

  /// \brief Take the first steps of every initialisation: whatever fails afterwards, the old shape is gone.
  static void start(Info& info, typename Kind::domain kind)
  {
    info.clear();
    info.*Fields::kind = kind;
  }

  /// \brief Make a shape by its builder, whose arguments are the parameters of the kind.
  template <class ElementPtr, class... Values>
  static void init(Info& info, typename Kind::domain kind, ElementPtr (*build)(Values...), Values... values)
  {
    start(info, kind);
    info.*Fields::element = build(values...);
    auto parameter = std::find_if(std::begin(Fields::parameters), std::end(Fields::parameters),
                                  [kind](const Parameter& row) { return row.kind == kind; });
    ((info.*std::get<Values Info::*>((parameter++)->field) = values), ...);
    info.initBase();
  }

  template <class Offset>
  static bool insert(Info& info, const Offset& offset, const SourceLocation& here)
  {
    requireInitialized(info, here);
    auto& element = *(info.*Fields::element);
    if (element.exists(offset))
      return false;
    element.insert(offset);
    return true;
  }

  template <class Offset>
  static bool remove(Info& info, const Offset& offset, const SourceLocation& here)
  {
    requireInitialized(info, here);
    auto& element = *(info.*Fields::element);
    if (!element.exists(offset))
      return false;
    element.remove(offset);
    return true;
  }

  static void copy(Info& info, const Info& other)
  {
    if (!other.isInitialized())
    {
      info.clear();
      return;
    }
    info.*Fields::kind = other.*Fields::kind;
    visitParameters(info,
                    [&](const Parameter& parameter, auto field)
                    {
                      if (parameter.inCopies == InCopies::carried)
                        info.*field = other.*field;
                    });
    *(info.*Fields::element) = *(other.*Fields::element);
  }

  static void write(const Info& info, BaseOArchive& archive)
  {
    if (!info.isInitialized())
      return;
    archive << SerializationOItem(Fields::kindKey, info.*Fields::kind);
    visitParameters(info, [&](const Parameter& parameter, auto field)
                    { archive << SerializationOItem(parameter.key, info.*field); });
    archive << SerializationOItem(Fields::elementKey, info.*Fields::element);
  }

  static void read(Info& info, BaseIArchive& archive, const SourceLocation& here)
  {
    if (!info.isInitialized())
    {
      info.clear();
      return;
    }
    archive >> SerializationIItem(Fields::kindKey, info.*Fields::kind);
    visitParameters(info, [&](const Parameter& parameter, auto field)
                    { archive >> SerializationIItem(parameter.key, info.*field); });
    std::decay_t<decltype(info.*Fields::element)> element;
    archive >> SerializationIItem(Fields::elementKey, element);
    if (!element) // a description always has one
      archive.raiseInvalidValue("null", Fields::elementKey, here);
    info.*Fields::element = std::move(element);
  }

private:
  static typename Kind::domain kindOf(const Info& info) { return (info.*Fields::kind).getDomain(); }

  /// Calls visit(parameter, pointer to its field) for each parameter of the shape, in the order of the table.
  template <class Visit>
  static void visitParameters(const Info& info, Visit visit)
  {
    for (const Parameter& parameter : Fields::parameters)
      if (parameter.kind == kindOf(info))
        std::visit([&](auto field) { visit(parameter, field); }, parameter.field);
  }
};

} // namespace orvel::details
