#pragma once

// Identity of shared objects within an archive.

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// The objects that an output archive has filed, numbered from 0, looked up by address. It keeps them alive:
/// the address of a dead object could come back as that of another.
class FiledObjects
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

/// The objects that an input archive has made, numbered from 0.
class ReadObjects
{
public:
  std::size_t size() const { return _objects.size(); }
  bool has(ipUInt64 number) const { return number < _objects.size() && _objects[number]; }
  const SerializationObjectPtr& operator[](std::size_t number) const { return _objects[number]; }

  /// Enters an object as the next one, null for one that was skipped. \return its number
  ipUInt64 enter(const SerializationObjectPtr& object)
  {
    _objects.push_back(object);
    _heights.push_back(0);
    return _objects.size() - 1;
  }

  ipUInt32 getHeight(ipUInt64 number) const { return _heights[number]; } ///< 0 until it is set
  void setHeight(ipUInt64 number, ipUInt32 height) { _heights[number] = height; }

  /// Reads a shared object; `read` enters it and what it holds. If that fails outside of any other shared
  /// object, nobody has been given the objects that were made: they are let go, also from cycles.
  template <class Read>
  void readShared(Read read)
  {
    if (std::exchange(_isReading, true))
    {
      read();
      return;
    }
    _latest = _objects.size();
    try
    {
      read();
    }
    catch (...)
    {
      _isReading = false;
      letLatestGo();
      throw;
    }
    _isReading = false;
  }

  /// Lets the objects go that the latest readShared() outside of any other has made; within one it does
  /// nothing. Those that only hold each other would stay for ever: they are made like new ones of their
  /// class, which hold nothing.
  void letLatestGo() noexcept;

private:
  std::vector<SerializationObjectPtr> _objects;
  std::vector<ipUInt32> _heights;
  bool _isReading = false;
  std::size_t _latest = 0; // number of the first object of the latest readShared() outside of any other
};

/// A class that shared objects of an archive have, ready to make more of them.
class ObjectClass
{
public:
  enum class Problem
  {
    none,
    unknown,        ///< nobody has registered the class
    notSerializable ///< it is no BaseSerializationObject
  };

  explicit ObjectClass(std::string name)
    : _name(std::move(name))
  {
  }

  const std::string& getName() const { return _name; }

  /// Makes an object; null with the reason if the class does not serve.
  SerializationObjectPtr create(Problem& problem);

private:
  std::string _name;
  DynamicObjectFactory::SharedFunction _create = nullptr; // as long as the factory has not changed
  ipUInt64 _changeCount = std::numeric_limits<ipUInt64>::max();
  const std::type_info* _type = nullptr; // of the latest object: it is serializable
};

} // namespace orvel::details
