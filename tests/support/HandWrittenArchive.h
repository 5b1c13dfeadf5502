#pragma once

/// \file
/// \brief Archives put together by hand, piece by piece, in both formats.
///
/// A second, simple way to say what an archive has to look like, and the way to archives that the library
/// itself does not write: of older and newer class versions, cut short, or with cached values that do not
/// fit.

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel::test
{

/// \brief An XML archive. Numbers are meant to be small or short: they are printed as streams print them.
class HandWrittenXml
{
public:
  using OArchive = XmlOArchive;
  using IArchive = XmlIArchive;

  void openSection(const std::string& name);
  void openObject(const std::string& key);

  /// A shared object that appears for the first time; its number is one more than that of the last.
  void openPointer(const std::string& key, const std::string& className);

  /// \param number of a shared object that came before, from 1
  void reference(const std::string& key, std::uint64_t number);

  void nullPointer(const std::string& key);
  void close(); ///< what was opened last

  void integer(const std::string& key, std::int64_t value);
  void text(const std::string& key, const std::string& value); ///< nothing to escape
  void boolean(const std::string& key, bool value);
  void real32(const std::string& key, float value);
  void real64(const std::string& key, double value);

  /// A named enumeration: its text here, its number in the binary format.
  void enumeration(const std::string& key, std::int64_t number, const std::string& name);

  /// A raw block of up to 57 bytes: longer ones take several lines.
  void block(const std::string& bytes);

  std::string file() const; ///< the archive

private:
  std::string indent() const;
  void open(const std::string& element, const std::string& attribute, const std::string& name);
  void item(const std::string& key, const std::string& text);

  std::vector<std::string> _open;
  std::string _content;
  std::uint64_t _nbPointers = 0;
};

/// \brief A binary archive, a sequence of CBOR items; it stores neither names nor keys.
class HandWrittenBinary
{
public:
  using OArchive = BinaryOArchive;
  using IArchive = BinaryIArchive;

  void openSection(const std::string& name);
  void openObject(const std::string& key);
  void openPointer(const std::string& key, const std::string& className);
  void reference(const std::string& key, std::uint64_t number);
  void nullPointer(const std::string& key);
  void close();

  void integer(const std::string& key, std::int64_t value);
  void text(const std::string& key, const std::string& value);
  void boolean(const std::string& key, bool value);
  void real32(const std::string& key, float value);
  void real64(const std::string& key, double value);
  void enumeration(const std::string& key, std::int64_t number, const std::string& name);
  void block(const std::string& bytes);

  std::string file() const;

private:
  std::string _bytes;
  std::vector<std::string> _classNames;
};

/// \brief Both formats, for typed tests.
using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;

/// \brief Put the version record of a class into a hand-written archive.
template <class HandWritten>
void putVersion(HandWritten& archive, const std::string& className, ipUInt32 version)
{
  archive.openSection(className);
  archive.integer("version", version);
  archive.close();
}

/// \brief Return the file that write(archive) makes, in the format of a hand-written archive.
template <class HandWritten, class Write>
std::string fileOf(Write write)
{
  std::ostringstream stream;
  typename HandWritten::OArchive archive(stream);
  write(archive);
  archive.close();
  return stream.str();
}

/// \brief Call read(archive) on a file and check that it leaves nothing unread.
template <class HandWritten, class Read>
void readFile(const std::string& file, Read read)
{
  std::istringstream stream(file);
  typename HandWritten::IArchive archive(stream);
  read(archive);
  archive.close();
}

/// \brief Call read(archive) on a file that may hold more.
template <class HandWritten, class Read>
void readStart(const std::string& file, Read read)
{
  std::istringstream stream(file);
  typename HandWritten::IArchive archive(stream);
  read(archive);
}

} // namespace orvel::test
