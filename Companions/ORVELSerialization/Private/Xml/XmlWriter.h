#pragma once

// What an archive of the XML format writes by.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <ORVELSerialization/Private/Bytes/ByteSink.h>
#include <ORVELSerialization/Private/Objects/WrittenObjects.h>

namespace orvel::details
{

/// Elements, indented by two blanks a level. Names that XML can't carry throw ArchiveFailure.
class XmlWriter
{
public:
  explicit XmlWriter(std::unique_ptr<OutputTarget> target);

  void openArchive();
  void closeArchive();

  void openSection(std::string_view name);
  void closeSection();

  void openObject(const std::string& key);
  void closeObject();

  void putNull(const std::string& key);
  void putReference(const std::string& key, ipUInt64 number);
  void openPointer(const std::string& key, ipUInt64 number, const std::string& className);
  void closePointer();

  /// Writes an item with a text that needs no escapes.
  void putItem(const std::string& key, std::string_view text);

  /// Writes an item with any bytes.
  void putString(const std::string& key, std::string_view text);

  void putBlock(const char* data, ipUInt64 sizeInBytes);

  ipUInt64 getNbOpen() const { return _nbOpen; } ///< elements that are open, the archive's own included

  ByteSink sink;
  WrittenObjects objects;

private:
  void indent();
  void putName(std::string_view name);
  void putEscaped(std::string_view text, bool isAttribute);
  void putBase64(const char* data, std::size_t size);
  void open();
  void close(std::string_view element);

  ipUInt64 _nbOpen = 0;
};

} // namespace orvel::details
