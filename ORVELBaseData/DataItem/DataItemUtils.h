#pragma once

/// \file
/// \brief Comparison of trees of data items.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

class BaseDataItem;

/// \brief Compare two trees by value.
///
/// Items whose class names differ are not equal, except nodes within a collection: these are compared by
/// their keys and items. Floating values may differ by a relative tolerance (\see
/// orvel::math::compareRelative), which is narrowed to single precision for values of that type; a NaN
/// differs from itself. Enumerates are compared by text, so all values of one class without a text are equal.
/// Paths are compared element by element. All other values must be the same. The caller must avoid null
/// pointers instead of items, and items that hold themselves.
///
/// Call it as `orvel::equal`: for items of a type of the standard library, such as DataItemLeaf<std::string>,
/// the bare name also finds std::equal.
///
/// Time: one walk over both trees, up to the first difference; nodes compare all keys before any item, maps
/// entry by entry. An item that is held in several places is compared in each, which takes exponential time
/// for trees that share much: n maps, each with the next one under two names, make 2^n comparisons. Several
/// threads may compare a tree that nobody changes.
///
/// \param tolerance not checked: with a negative one or NaN floating values agree only where they are equal
///
/// \throw ORVELBaseDataException (eUnknownItem) if a node lists a key that it does not know;
/// (eInvalidDataItemValueType) for a leaf collection of enumerates, which only another library can define
ORVELBASEDATA_EXPORT bool equal(const BaseDataItem& lhs, const BaseDataItem& rhs, const ipReal64& tolerance);

} // namespace orvel
