#pragma once

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// The objects that an output archive has written, numbered from 0, looked up by address. It keeps them
/// alive: the address of a dead object could come back as that of another.
class WrittenObjects
{
public:
  /// Returns the object's number; a new object is entered as the next one.
  /// \param isNew tells whether it was entered
  ipUInt64 enter(const SerializationObjectPtr& object, bool& isNew)
  {
    if (2 * _objects.size() >= _slots.size())
      grow();
    const ipUInt64 hash = hashOf(object.get());
    for (std::size_t index = placeOf(hash);; index = (index + 1) & (_slots.size() - 1))
    {
      Slot& slot = _slots[index];
      isNew = slot.numberPlusOne == 0;
      if (isNew)
      {
        _objects.push_back(object);
        _heights.push_back(0);
        slot = {static_cast<ipUInt32>(_objects.size()), static_cast<ipUInt32>(hash)};
        return _objects.size() - 1;
      }
      if (slot.hash == static_cast<ipUInt32>(hash) && _objects[slot.numberPlusOne - 1] == object)
        return slot.numberPlusOne - 1;
    }
  }

  ipUInt32 getHeight(ipUInt64 number) const { return _heights[number]; } ///< 0 until it is set
  void setHeight(ipUInt64 number, ipUInt32 height) { _heights[number] = height; }

private:
  struct Slot // small, as most look-ups wait for the memory that it lies in
  {
    ipUInt32 numberPlusOne = 0; // 0: free
    ipUInt32 hash = 0;          // the lower half
  };

  /// Fibonacci hashing: the upper bits of the product depend on every bit of the address.
  static ipUInt64 hashOf(const BaseSerializationObject* object)
  {
    return (reinterpret_cast<std::uintptr_t>(object) >> 4U) * 0x9E3779B97F4A7C15U;
  }

  std::size_t placeOf(ipUInt64 hash) const { return hash >> (64U - _log2Slots); }

  void grow()
  {
    if (_objects.size() >= std::numeric_limits<ipUInt32>::max() / 2)
      throw std::length_error("more shared objects than an archive can number");
    const unsigned log2Slots = _slots.empty() ? 6 : _log2Slots + 1;
    std::vector<Slot> slots(std::size_t{1} << log2Slots);
    _slots.swap(slots);
    _log2Slots = log2Slots;
    for (std::size_t number = 0; number < _objects.size(); ++number)
    {
      const ipUInt64 hash = hashOf(_objects[number].get());
      std::size_t index = placeOf(hash);
      while (_slots[index].numberPlusOne != 0)
        index = (index + 1) & (_slots.size() - 1);
      _slots[index] = {static_cast<ipUInt32>(number + 1), static_cast<ipUInt32>(hash)};
    }
  }

  std::vector<SerializationObjectPtr> _objects; // by number
  std::vector<ipUInt32> _heights;               // by number
  std::vector<Slot> _slots;                     // a power of two of them, at most half of them taken
  unsigned _log2Slots = 0;
};

} // namespace orvel::details
