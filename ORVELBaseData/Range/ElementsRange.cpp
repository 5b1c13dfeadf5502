#include "ORVELBaseData/Range/ElementsRange.h"

#include <tuple>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(ElementsRange, BaseSerializationObject, 2)

ElementsRange::ElementsRange(ipUInt64 startOffset, ipUInt64 nbElements)
  : _startOffset(startOffset)
  , _nbElements(nbElements)
{
}

bool ElementsRange::operator==(const ElementsRange& other) const
{
  return _startOffset == other._startOffset && _nbElements == other._nbElements;
}

bool ElementsRange::operator!=(const ElementsRange& other) const
{
  return !(*this == other);
}

bool ElementsRange::operator<(const ElementsRange& other) const
{
  return std::tie(_startOffset, _nbElements) < std::tie(other._startOffset, other._nbElements);
}

void ElementsRange::copyMembers(const ElementsRange& other)
{
  _startOffset = other._startOffset;
  _nbElements = other._nbElements;
}

void ElementsRange::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_startOffset", _startOffset);
  archive << SerializationOItem("_nbElements", _nbElements);
}

void ElementsRange::readMembers(BaseIArchive& archive, ipUInt32 version)
{
  if (version == 1)
  {
    readVersion1(archive);
    return;
  }
  archive >> SerializationIItem("_startOffset", _startOffset);
  archive >> SerializationIItem("_nbElements", _nbElements);
}

void ElementsRange::readVersion1(BaseIArchive& archive)
{
  ipUInt32 startOffset = 0;
  ipUInt32 nbElements = 0;
  archive >> SerializationIItem("_startOffset", startOffset);
  archive >> SerializationIItem("_nbElements", nbElements);

  // Stored together: a failure between the two reads leaves the old range whole.
  _startOffset = startOffset;
  _nbElements = nbElements;
}

} // namespace orvel
