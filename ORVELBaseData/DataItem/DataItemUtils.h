#pragma once

/// \file
/// \brief Comparison of trees of data items.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

class BaseDataItem;

/// \brief Tell whether two trees describe the same value.
///
/// Items of different classes, which are told apart by their names, are never equal, but for the nodes of a
/// collection: there keys and items decide. Floating values agree within a relative tolerance (\see
/// orvel::math::compareRelative), all other values exactly; single precision takes the tolerance narrowed to
/// it. Enumerates are compared by their texts, so all values of one class that have no text are equal. Paths
/// are compared element by element, and a NaN differs from itself. A kind or a type of values above the range
/// counts as a leaf or as bool, but types are compared before that. Null pointers in place of items, and
/// items that hold themselves, are the caller's to avoid.
///
/// Call it as `orvel::equal`: for items of types of the standard library, such as DataItemLeaf<std::string>,
/// the bare name finds std::equal too.
///
/// Complexity: one walk over both trees at once, up to the first difference; nodes match all keys before any
/// item, maps compare item by item; an item that stands in several places is looked at in each. Several
/// threads may compare a tree that nobody changes.
///
/// \param tolerance not checked: a negative one or NaN makes floating values agree only where they are equal
///
/// \throw ORVELBaseDataException (eUnknownItem) if a node lists a key that it does not know
///
/// \throw ORVELBaseDataException (eInvalidDataItemValueType) for a leaf collection of enumerates,
/// which only another library could have
ORVELBASEDATA_EXPORT bool equal(const BaseDataItem& lhs, const BaseDataItem& rhs, const ipReal64& tolerance);

} // namespace orvel
