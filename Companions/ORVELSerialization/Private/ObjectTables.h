#pragma once

// Identity of shared objects within an archive.

#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ScalarTypes.h>

#include <cstdint>
#include <string>
#include <vector>

namespace orvel::details
{

/// The objects that an output archive has filed, numbered from 0, looked up by address. It keeps them alive:
/// the address of a dead object could come back as that of another.
class FiledObjects
{
public:
  /// Returns the object's number, and enters it as the next one if it is new.
  /// \param isNew tells whether it was entered
  ipUInt64 enter(const SerializationObjectPtr& object, bool& isNew)
  {
    if (2 * _objects.size() >= _slots.size())
      grow();
    for (std::size_t slot = hash(object.get());; ++slot)
    {
      Slot& candidate = _slots[slot & (_slots.size() - 1)];
      if (candidate.object == nullptr)
      {
        candidate = {object.get(), _objects.size()};
        _objects.push_back(object);
        isNew = true;
        return candidate.number;
      }
      if (candidate.object == object.get())
      {
        isNew = false;
        return candidate.number;
      }
    }
  }

private:
  struct Slot
  {
    const BaseSerializationObject* object = nullptr;
    ipUInt64 number = 0;
  };

  static std::size_t hash(const BaseSerializationObject* object)
  {
    // Fibonacci hashing: the products' upper bits depend on every bit of the address.
    return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(object) >> 4U) * 0x9E3779B97F4A7C15U) >>
           20U;
  }

  void grow()
  {
    std::vector<Slot> slots(_slots.empty() ? 64 : 2 * _slots.size());
    for (std::size_t number = 0; number < _objects.size(); ++number)
    {
      std::size_t slot = hash(_objects[number].get());
      while (slots[slot & (slots.size() - 1)].object != nullptr)
        ++slot;
      slots[slot & (slots.size() - 1)] = {_objects[number].get(), number};
    }
    _slots.swap(slots);
  }

  std::vector<SerializationObjectPtr> _objects; // by number
  std::vector<Slot> _slots;                     // a power of two of them, at most half of them taken
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

  /// Looks a class up in the factory.
  explicit ObjectClass(std::string name);

  const std::string& getName() const { return _name; }

  /// Makes an object; null with the reason if the class does not serve.
  SerializationObjectPtr create(Problem& problem);

private:
  std::string _name;
  DynamicObjectFactory::SharedFunction _create;
  bool _isSerializable = false; // known since the first object
};

} // namespace orvel::details
