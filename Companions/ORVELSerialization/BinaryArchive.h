#pragma once

/// \file
/// \brief Archives in the binary format: compact, hashed, readable by any CBOR tool.

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include <boost/filesystem/path.hpp>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/ORVELSerializationExport.h>

namespace orvel
{

namespace details
{
class BinaryReader;
class BinaryWriter;
class InputOrigin;
class OutputTarget;
} // namespace details

/// \brief Writes the binary format: a sequence of CBOR items (RFC 8949, RFC 8742).
///
/// - Tag 55799 around the array ["ORVEL", 1, "little"]: format, format version, byte order of blocks.
/// - The items in order, without keys: booleans; integers in the shortest form; 32-bit and 64-bit floats in
///   their own width; text strings, or byte strings where they are not UTF-8; blocks as byte strings.
/// - A section or an object in place is an array of indefinite length; section names are not stored.
/// - A pointer is null; or tag 28 around an array of indefinite length whose first element names the class,
///   by its text the first time and by its number (from 0) after that; or tag 29 with the number (from 0) of
///   an earlier tag 28.
/// - Last comes the array ["end", number of bytes before it, XXH3-64 of them].
///
/// The same objects give the same bytes. Not element-wise: vectors of numbers travel as raw blocks, which go
/// from memory to the file without another copy.
class ORVELSERIALIZATION_EXPORT BinaryOArchive : public BaseOArchive
{
public:
  /// \brief Begin an archive that replaces the file of that name on close().
  ///
  /// It is written beside the file under another name. Without close(), also because of an exception, the old
  /// file stays as it is and nothing else is left behind. The new file keeps the mode of the old one, and its
  /// folder must be writable and readable. Symbolic links are followed, also to a file that does not exist
  /// yet, but not in a circle; hard links keep the old file. A pipe or a device is written to directly.
  /// \throw ORVELSerializationException if the file cannot be made, with the system's reason
  explicit BinaryOArchive(const boost::filesystem::path& path);

  /// \brief Begin an archive on a stream, which must outlive it. Needs no seeking.
  explicit BinaryOArchive(std::ostream& stream);

  ~BinaryOArchive() override;

  bool isElementWise() const override; ///< false

  void writeBlock(const void* data, ipUInt64 sizeInBytes) override;
  void writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item) override;
  void writeObject(const std::string& key, const BaseSerializationObject& object) override;
  void writeBool(const std::string& key, bool value) override;
  void writeInteger(const std::string& key, ipInt64 value) override;
  void writeUnsigned(const std::string& key, ipUInt64 value) override;
  void writeReal32(const std::string& key, ipReal32 value) override;
  void writeReal64(const std::string& key, ipReal64 value) override;
  void writeString(const std::string& key, std::string_view value) override;

  /// \brief Write the end mark and publish: bring the file to the disk, put it in place, and bring that to
  /// the disk.
  /// \throw ORVELSerializationException with the system's reason; the old file is then kept, unless
  /// syncing the folder, the last step, fails: then the new file is in place but may not survive a crash
  void close() override;

protected:
  void openSection(std::string_view name) override;
  void closeSection() override;
  std::string getPlace() const override;

private:
  BinaryOArchive(std::string name, std::unique_ptr<details::OutputTarget> target, const SourceLocation& here);

  std::unique_ptr<details::BinaryWriter> _writer;
};

/// \brief Reads the binary format. \see BinaryOArchive
///
/// Keys are not stored and hence not compared. Reading is one pass without seeking, the hash runs along and
/// is compared by close(). Places in failures are byte offsets of items.
class ORVELSERIALIZATION_EXPORT BinaryIArchive : public BaseIArchive
{
public:
  /// \throw ORVELSerializationException if the file cannot be opened, is not an archive of this format, or is
  /// one of another version or byte order
  explicit BinaryIArchive(const boost::filesystem::path& path);

  /// \brief Read from a stream, which must outlive the archive, from its present position to its end.
  /// \throw ORVELSerializationException as with a file
  explicit BinaryIArchive(std::istream& stream);

  ~BinaryIArchive() override;

  bool isElementWise() const override; ///< false

  void readBlock(void* data, ipUInt64 sizeInBytes) override;
  void readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item) override;
  void readObject(const std::string& key, BaseSerializationObject& object) override;
  void releaseObjects() noexcept override;
  bool readBool(const std::string& key) override;
  ipInt64 readInteger(const std::string& key, ipInt64 minimum, ipInt64 maximum) override;
  ipUInt64 readUnsigned(const std::string& key, ipUInt64 maximum) override;
  ipReal32 readReal32(const std::string& key) override;
  ipReal64 readReal64(const std::string& key) override;
  void readString(const std::string& key, std::string& value) override;
  void close() override;

protected:
  void openSection(std::string_view name) override;
  void closeSection() override;
  void leaveSection() override;
  std::string getPlace() const override;
  bool holds(ipUInt64 sizeInBytes) override;
  ipUInt64 getMinItemSize() const override; ///< 1
  ipUInt64 getPosition() const override;

private:
  friend struct details::ArchiveAccess;

  BinaryIArchive(std::string name, std::unique_ptr<details::InputOrigin> origin, const SourceLocation& here);

  std::unique_ptr<details::BinaryReader> _reader;
};

} // namespace orvel
