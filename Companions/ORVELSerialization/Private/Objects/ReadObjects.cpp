#include "ORVELSerialization/Private/Objects/ReadObjects.h"

#include <boost/weak_ptr.hpp>

#include <ORVELSerialization/BaseSerializationObject.h>

namespace orvel::details
{

namespace
{

/// Makes an object like a new one of its class, which holds nothing.
void empty(BaseSerializationObject& object) noexcept
{
  try
  {
    if (object.hasCopySupport())
      object.copy(*object.createShared());
  }
  catch (...)
  {
    // Out of memory while memory is being freed, or a class that can't be copied: its cycle stays.
  }
}

} // namespace

void ReadObjects::releaseLatest() noexcept
{
  if (_isReading)
    return;
  try
  {
    const std::vector<boost::weak_ptr<BaseSerializationObject>> left(
        _objects.begin() + static_cast<std::ptrdiff_t>(_latest), _objects.end());
    _objects.resize(_latest);
    _heights.resize(_latest);
    for (const boost::weak_ptr<BaseSerializationObject>& candidate : left)
      if (const SerializationObjectPtr object = candidate.lock())
        empty(*object);
  }
  catch (...)
  {
    // Out of memory for the list: cycles stay.
  }
}

} // namespace orvel::details
