#pragma once

/// \file
/// \brief Run of elements.

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Half-open run of elements [startOffset, startOffset + nbElements).
///
/// Unit: elements, not bytes. A plain value: any two numbers are accepted; their sum may exceed 64 bits.
/// Archive version 2; version 1 held 32-bit numbers and is still read. A read that fails between the two
/// numbers keeps the new start with the old length, in version 1 both old numbers.
class ORVELBASEDATA_EXPORT ElementsRange : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(ElementsRange)

public:
  ElementsRange() = default; ///< the empty run at 0
  ElementsRange(ipUInt64 startOffset, ipUInt64 nbElements);

  ipUInt64 getStartOffset() const { return _startOffset; } ///< index of the first element
  ipUInt64 getNbElements() const { return _nbElements; }   ///< number of elements

  bool operator==(const ElementsRange& other) const; ///< compares both numbers, also of empty ranges
  bool operator!=(const ElementsRange& other) const;

  /// \brief Order by start, then by length.
  bool operator<(const ElementsRange& other) const;

private:
  void readVersion1(BaseIArchive& archive);

  ipUInt64 _startOffset = 0;
  ipUInt64 _nbElements = 0;
};

using ElementsRangePtr = boost::shared_ptr<ElementsRange>;            ///< shared range
using ElementsRangeConstPtr = boost::shared_ptr<const ElementsRange>; ///< shared constant range

} // namespace orvel
