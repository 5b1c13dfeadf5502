#pragma once

/// \file
/// \brief Archive that objects are read from.

#include <string>

#include <ORVELSerialization/BaseArchive.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Archive that objects are read from: a typed, ordered stream of items.
///
/// A reader asks for the next item with a key and a type. Anything else than that item is a failure that
/// names the archive, the place, what was expected and what was found. Classes read their members with
/// `archive >> SerializationIItem(key, value)` (\see ItemOperators.h); the operations below are what
/// those operators call and what a concrete archive supplies. All of them raise
/// ORVELSerializationException on a failure; the value then keeps what it held.
class ORVELSERIALIZATION_EXPORT BaseIArchive : public BaseArchive
{
public:
  /// \brief Read raw bytes in the byte order of the machine, exactly as many as were written.
  ///
  /// If the archive turns out to be cut short, part of the bytes may have been stored.
  virtual void readBlock(void* data, ipUInt64 sizeInBytes) = 0;

  /// \brief Read a shared object: create it by its class name and read it with its `read`.
  ///
  /// The pointer is assigned when the object has been read whole. A reference gives the object that came
  /// first, which within a cycle is not read to its end yet. Cycles come back as cycles, for the caller to
  /// break.
  ///
  /// If the outermost object fails, those of its objects that still exist then, because they hold each other,
  /// are emptied by `copy` of a new object of their class.
  virtual void readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item) = 0;

  /// \brief Read an object in place, through its own `read`: the object keeps its identity.
  virtual void readObject(const std::string& key, BaseSerializationObject& object) = 0;

  /// \brief Release the objects created by the latest readObjectPtr(), also from cycles.
  ///
  /// For a caller that does not hand them out. Does nothing within the reading of another shared object,
  /// whose own failure releases all of them.
  virtual void releaseObjects() noexcept {}

  virtual bool readBool(const std::string& key) = 0;

  /// \brief Read an integer; one outside [minimum, maximum] is a failure.
  virtual ipInt64 readInteger(const std::string& key, ipInt64 minimum, ipInt64 maximum) = 0;

  /// \brief Read an integer; one outside [0, maximum] is a failure.
  virtual ipUInt64 readUnsigned(const std::string& key, ipUInt64 maximum) = 0;

  virtual ipReal32 readReal32(const std::string& key) = 0;
  virtual ipReal64 readReal64(const std::string& key) = 0;
  virtual void readString(const std::string& key, std::string& value) = 0;

  /// \brief Go to the end of the archive and check it.
  /// \throw ORVELSerializationException if items are left unread, if anything follows the end, or if the
  /// content is not what was written
  virtual void close() = 0;

  /// \brief Turn the run-time check of the classes of shared objects on or off.
  ///
  /// Off by default: a pointer read for `boost::shared_ptr<E>` is converted to E on trust. Turn it on for
  /// files from elsewhere; an object that is not an E then raises.
  void setUntrusted(bool untrusted) { _untrusted = untrusted; }
  bool isUntrusted() const { return _untrusted; }

  /// \brief Raise unless the rest of the archive can hold that many elements.
  ///
  /// Called with a count from the archive before memory is allocated by it. Where the length of the archive
  /// is not known the archive reads ahead until it is.
  void checkCount(ipUInt64 count);

  /// \brief Raise unless the rest of the archive can hold a raw block of that many elements.
  void checkBlock(ipUInt64 count, ipUInt64 elementSizeInBytes);

  /// \brief Take units of work from the budget that grows with the length of the archive.
  ///
  /// The archive itself takes one unit for every item, element and reference. Classes whose reading costs
  /// much more than their bytes in the archive suggest take what they cost.
  /// \throw ORVELSerializationException if the budget is spent (\see ArchiveLimits)
  void spendWork(ipUInt64 units);

  /// \brief Raise, in the name of `here`, the failure of a text that is not a valid value of an item.
  [[noreturn]] void raiseInvalidValue(const std::string& text, const std::string& key,
                                      const SourceLocation& here);

  /// \brief Raise, in the name of `here`, the failure of an object whose class does not fit.
  [[noreturn]] void raiseWrongClass(const std::string& foundClassName, const std::string& expectedClassName,
                                    const SourceLocation& here);

protected:
  using BaseArchive::BaseArchive;

  /// \brief Return whether that many bytes are left.
  virtual bool holds(ipUInt64 sizeInBytes) = 0;

  /// \brief Return the least number of bytes that an item takes in this format.
  virtual ipUInt64 getMinItemSize() const = 0;

  /// \brief Return how many bytes have been read so far.
  virtual ipUInt64 getPosition() const = 0;

private:
  friend struct details::ArchiveAccess;

  void checkHolds(ipUInt64 count, ipUInt64 elementSizeInBytes, const SourceLocation& here);
  void spendWork(ipUInt64 units, const SourceLocation& here)
  {
    if (units >= _workLeft)
      extendWork(units, here);
    _workLeft -= units;
  }
  void extendWork(ipUInt64 units, const SourceLocation& here);

  bool _untrusted = false;
  ipUInt64 _workLeft = 0;
  ipUInt64 _workGranted = 0;
};

} // namespace orvel
