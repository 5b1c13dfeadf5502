#pragma once

/// \file
/// \brief Archives in the XML format: made to be read, compared and edited by people.

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
class InputOrigin;
class OutputTarget;
class XmlReader;
class XmlWriter;
} // namespace details

/// \brief Writes the XML format: UTF-8, indented, an element for every item.
///
/// \code{.xml}
/// <?xml version="1.0" encoding="UTF-8"?>
/// <orvelArchive format="1">
///   <section name="orvel::ElementsRange">
///     <item key="version">2</item>
///   </section>
///   <item key="_startOffset">0</item>
///   <item key="_nbElements">5</item>
/// </orvelArchive>
/// \endcode
///
/// | Operation | Element |
/// |---|---|
/// | section | `<section name="...">` around its content |
/// | value | `<item key="...">text</item>` |
/// | object in place | `<object key="...">` around its content |
/// | pointer, first time | `<pointer key="..." id="1" class="orvel::KernelXY">` around the content |
/// | pointer, again | `<pointer key="..." ref="1"/>` |
/// | null pointer | `<pointer key="..." null="true"/>` |
/// | raw block | `<block size="40">` with base64 text, in lines of 76 characters |
///
/// Ids count up from 1. Booleans are `true` or `false`, integers decimal; floating values are the shortest
/// text that reads back to the same bits, `inf`, `-inf`, `nan`, or `nan(0x7fc00001)` with the bits of any
/// other NaN. A string that XML can't carry unchanged is base64 text under `encoding="base64"`. Nothing
/// depends on the locale. The same objects give the same bytes.
class ORVELSERIALIZATION_EXPORT XmlOArchive : public BaseOArchive
{
public:
  /// \brief Begin an archive that replaces the file of that name on close(). \see BinaryOArchive
  /// \throw ORVELSerializationException if the file cannot be made, with the system's reason
  explicit XmlOArchive(const boost::filesystem::path& path);

  /// \brief Begin an archive on a stream, which must outlive it. Needs no seeking.
  explicit XmlOArchive(std::ostream& stream);

  ~XmlOArchive() override;

  bool isElementWise() const override; ///< true

  void writeBlock(const void* data, ipUInt64 sizeInBytes) override;
  void writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item) override;
  void writeObject(const std::string& key, const BaseSerializationObject& object) override;
  void writeBool(const std::string& key, bool value) override;
  void writeInteger(const std::string& key, ipInt64 value) override;
  void writeUnsigned(const std::string& key, ipUInt64 value) override;
  void writeReal32(const std::string& key, ipReal32 value) override;
  void writeReal64(const std::string& key, ipReal64 value) override;
  void writeString(const std::string& key, std::string_view value) override;

  /// \brief Write the end and publish. \see BinaryOArchive::close
  void close() override;

protected:
  void openSection(std::string_view name) override;
  void closeSection() override;
  std::string getPlace() const override;

private:
  XmlOArchive(std::string name, std::unique_ptr<details::OutputTarget> target, const SourceLocation& here);

  std::unique_ptr<details::XmlWriter> _writer;
};

/// \brief Reads the XML format. \see XmlOArchive
///
/// The file is parsed whole when the archive is opened; that takes about five times its size in memory.
/// Comments and white space between elements may stand anywhere, CDATA sections and the line ends of other
/// systems within texts; unknown elements and attributes, a DOCTYPE, and entities other than the five
/// predefined ones and character references are refused. Places in failures are line and column of elements,
/// from 1, columns in bytes; where an end was met too early, those of the element that ends.
///
/// A number or a boolean has no blanks around it, no plus sign and no decimal comma; floats are read in any
/// width. There is no hash: a changed digit is read as it is.
class ORVELSERIALIZATION_EXPORT XmlIArchive : public BaseIArchive
{
public:
  /// \throw ORVELSerializationException if the file cannot be opened, is not an archive of this format, or is
  /// one of another version
  explicit XmlIArchive(const boost::filesystem::path& path);

  /// \brief Read from a stream, which must outlive the archive, from its present position to its end.
  /// \throw ORVELSerializationException as with a file
  explicit XmlIArchive(std::istream& stream);

  ~XmlIArchive() override;

  bool isElementWise() const override; ///< true

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
  ipUInt64 getMinItemSize() const override; ///< 19: `<item key="value"/>`
  ipUInt64 getPosition() const override;

private:
  friend struct details::ArchiveAccess;

  XmlIArchive(std::string name, std::unique_ptr<details::InputOrigin> origin, const SourceLocation& here);

  std::unique_ptr<details::XmlReader> _reader;
};

} // namespace orvel
