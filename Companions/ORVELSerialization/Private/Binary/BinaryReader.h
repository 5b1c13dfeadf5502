#pragma once

// What an archive of the binary format reads by.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <ORVELSerialization/Private/Binary/Cbor.h>
#include <ORVELSerialization/Private/Bytes/ByteSource.h>
#include <ORVELSerialization/Private/Objects/ObjectClass.h>
#include <ORVELSerialization/Private/Objects/PointerKind.h>
#include <ORVELSerialization/Private/Objects/ReadObjects.h>

namespace orvel::details
{

/// The items of a file in the binary format. All operations that take some throw ArchiveFailure and
/// IoFailure.
class BinaryReader
{
public:
  explicit BinaryReader(std::unique_ptr<InputOrigin> origin);

  static constexpr ipUInt64 formatVersion = 1;
  static constexpr std::string_view formatName = "ORVEL";
  static constexpr std::string_view byteOrder = "little";
  static constexpr std::string_view endMark = "end";

  void readHeader();

  /// Checks the end mark, and that nothing is behind it.
  void readEnd();

  void beginItem() { _itemPosition = _source.getPosition(); }
  ipUInt64 getItemPosition() const
  {
    return _itemPosition;
  } ///< of the present item, or of what is wrong in it
  ipUInt64 getPosition() const { return _source.getPosition(); }
  ipUInt64 getNbOpen() const { return _nbOpen; } ///< arrays that are open: sections and objects
  bool holds(ipUInt64 sizeInBytes) { return _source.holds(sizeInBytes); }

  /// Reads the head of an item. Most lie in the window whole; near its end it must be moved on.
  cbor::Head readHead()
  {
    if (_source.end() - _source.begin() < static_cast<std::ptrdiff_t>(cbor::largestHead))
      return readLastHead();
    cbor::Head head;
    _source.take(cbor::readHead(_source.begin(), _source.end(), head));
    if (cbor::isReserved(head))
      failReserved();
    return head;
  }

  void readBlock(char* data, ipUInt64 sizeInBytes);

  /// Reads a text string or a byte string. A failure leaves the old text.
  void readString(const std::string& key, std::string& text);

  /// Takes the start of an array. \param what is named by failures
  void openArray(const char* what)
  {
    if (!_source.ensure(1) || *_source.begin() != cbor::openArray)
      failAtArray("the start of ", what);
    _source.take(_source.begin() + 1);
    ++_nbOpen;
  }

  void closeArray(const char* what)
  {
    if (!_source.ensure(1) || *_source.begin() != cbor::closeArray)
      failAtArray("the end of ", what);
    _source.take(_source.begin() + 1);
    --_nbOpen;
  }

  void openObject(const std::string& /*key*/) { openArray("an object"); }
  void closeObject() { closeArray("the object"); }

  /// Takes a null pointer or a reference whole, and of a new object the tag.
  PointerKind takePointer(const std::string& key, ipUInt64& number);

  /// Goes into a new object. \return its class
  ObjectClass& openPointer();
  void closePointer() { closeArray("the object"); }

  /// Skips an item of the format, or the start or the end of one that holds others. Shared objects and
  /// classes keep their numbers.
  void skipItem();

  [[noreturn]] void failUnexpected(const char* expected, const std::string& key, const cbor::Head& found);

  ReadObjects objects;

private:
  cbor::Head readLastHead();
  std::string describe(const cbor::Head& head);
  void readContent(const cbor::Head& head, std::string& content);
  ObjectClass& readClass();
  [[noreturn]] static void failReserved();
  [[noreturn]] void failCutShort();
  [[noreturn]] void failAtArray(const char* place, const char* what);
  [[noreturn]] void failUnknownReference(const cbor::Head& reference);

  ByteSource _source;
  ipUInt64 _itemPosition = 0;
  ipUInt64 _nbOpen = 0;
  std::vector<ObjectClass> _classes; // by number
};

} // namespace orvel::details
