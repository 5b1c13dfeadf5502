#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

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
  /// object, nobody has been given the objects that were made: they are released, also from cycles.
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
      releaseLatest();
      throw;
    }
    _isReading = false;
  }

  /// Releases the objects that the latest readShared() outside of any other has made; within one it does
  /// nothing. Those that only hold each other would stay for ever: they are made like new ones of their
  /// class, which hold nothing.
  void releaseLatest() noexcept;

private:
  std::vector<SerializationObjectPtr> _objects;
  std::vector<ipUInt32> _heights;
  bool _isReading = false;
  std::size_t _latest = 0; // number of the first object of the latest readShared() outside of any other
};

} // namespace orvel::details
