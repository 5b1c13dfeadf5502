#pragma once

// What an archive of the binary format writes by.

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <ORVELSerialization/Private/Binary/Cbor.h>
#include <ORVELSerialization/Private/Bytes/ByteSink.h>
#include <ORVELSerialization/Private/Objects/NameTable.h>
#include <ORVELSerialization/Private/Objects/WrittenObjects.h>

namespace orvel::details
{

class BinaryWriter
{
public:
  explicit BinaryWriter(std::unique_ptr<OutputTarget> target)
    : sink(std::move(target), Hashing::xxh3)
  {
  }

  void putHead(cbor::Major major, ipUInt64 argument)
  {
    sink.advance(cbor::putHead(sink.reserve(cbor::largestHead), major, argument));
  }

  void putString(cbor::Major major, std::string_view text)
  {
    putHead(major, text.size());
    sink.append(text);
  }

  void openArray()
  {
    sink.put(cbor::openArray);
    ++_nbOpen;
  }

  void closeArray()
  {
    sink.put(cbor::closeArray);
    --_nbOpen;
  }

  ipUInt64 getNbOpen() const { return _nbOpen; } ///< arrays that are open: sections and objects

  // Keys are not stored.

  void openObject(const std::string& /*key*/) { openArray(); }
  void closeObject() { closeArray(); }

  void putNull(const std::string& /*key*/) { sink.put(cbor::null); }

  void putReference(const std::string& /*key*/, ipUInt64 number)
  {
    putHead(cbor::Major::tag, cbor::referenceTag);
    putHead(cbor::Major::unsignedInteger, number);
  }

  /// The class is a text the first time that it comes, and its number after that.
  void openPointer(const std::string& /*key*/, ipUInt64 /*number*/, const std::string& className)
  {
    putHead(cbor::Major::tag, cbor::shareableTag);
    openArray();
    const std::size_t classNumber = _classes.find(className);
    if (classNumber != NameTable::none)
    {
      putHead(cbor::Major::unsignedInteger, classNumber);
      return;
    }
    _classes.add(className);
    putString(cbor::Major::text, className);
  }
  void closePointer() { closeArray(); }

  ByteSink sink;
  WrittenObjects objects;

private:
  NameTable _classes;
  ipUInt64 _nbOpen = 0;
};

} // namespace orvel::details
