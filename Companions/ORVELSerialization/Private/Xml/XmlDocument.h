#pragma once

// The XML of an archive in memory, and the place in it that a reader has come to.

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Bytes/ByteSource.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

enum class XmlElement : unsigned char
{
  archive, ///< orvelArchive, the root
  section,
  item,
  object,
  pointer,
  block
};

enum class XmlAttribute : unsigned char
{
  format,
  name,
  key,
  id,
  className, ///< spelled "class"
  ref,
  null,
  size,
  encoding
};

constexpr std::size_t nbXmlAttributes = 9;

const char* getElementName(XmlElement element);

/// The attributes of an element that was found. They stay valid until the next element is asked for.
class XmlAttributes
{
public:
  bool has(XmlAttribute attribute) const
  {
    return _values[static_cast<std::size_t>(attribute)].data() != nullptr;
  }
  std::string_view get(XmlAttribute attribute) const { return _values[static_cast<std::size_t>(attribute)]; }

private:
  friend class XmlDocument;

  std::string_view _values[nbXmlAttributes];
};

/// An archive's XML, read whole, and a cursor that goes through it element by element.
///
/// The parser is quick but lenient; what it lets pass is checked here: encoding, control characters,
/// entities, repeated and unknown attributes, a DOCTYPE, anything behind the root. What is not as the reader
/// asks for throws ArchiveFailure.
class XmlDocument
{
public:
  explicit XmlDocument(std::unique_ptr<InputOrigin> origin);

  /// Reads and parses all of it, and enters the root. \throw IoFailure
  const XmlAttributes& open();

  // The next two take an element that must be of the kind and, unless that is null, have the key that are
  // asked for; the attributes stay valid until the next element is asked for.

  /// Takes an element with a text in it.
  /// \param text stays valid until the next one is asked for
  const XmlAttributes& takeText(XmlElement element, const std::string* key, std::string_view& text);

  /// Goes into an element with elements in it.
  const XmlAttributes& enter(XmlElement element, const std::string* key);

  const XmlAttributes& getAttributes() const { return _attributes; } ///< of the element that came last

  /// Leaves an element that enter() went into; all of its content must have been taken.
  void leave();

  /// Checks that all of the root's content has been taken, and that nothing is behind it.
  void checkEnd();

  bool hasNext() const { return !_next.empty(); } ///< within the element that was entered
  XmlElement getNextElement();                    ///< a section or what one may hold
  ipUInt64 getNbOpen() const { return _nbOpen; }  ///< elements that were entered, the root included
  ipUInt64 getNextPosition() const; ///< byte offset of what comes next, or of the element that ends next
  ipUInt64 getSize() const { return _size; }

  /// Returns the place of what has failed, or of the element taken or entered last, as "line 3, column 7";
  /// both count from 1, columns in bytes.
  std::string getPlace() const;

  /// Ends the use of the document.
  [[noreturn]] void fail(ipUInt64 position, const ArchiveFailure& failure);

private:
  struct Free
  {
    void operator()(char* memory) const { std::free(memory); }
  };

  void readAll();
  void checkCharacters();
  pugi::xml_node requireNext(XmlElement element, const std::string* key);
  void readAttributes(XmlElement element);
  std::string describeNext() const;
  std::string joinText(pugi::xml_node node, std::string_view firstText);
  std::string_view decode(const char* raw, bool isAttribute, std::string& decoded, pugi::xml_node node);
  [[noreturn]] void failDamaged(ipUInt64 position, const std::string& reason);
  [[noreturn]] void failUnexpected(const std::string& expected);

  std::unique_ptr<InputOrigin> _origin; // null once all is read
  std::unique_ptr<char, Free> _text;
  ipUInt64 _size = 0;
  std::vector<ipUInt64> _lineStarts; // the parser overwrites line ends
  pugi::xml_document _document;
  pugi::xml_node _parent;
  pugi::xml_node _next;
  pugi::xml_node _taken;
  ipUInt64 _nbOpen = 0;
  bool _hasFailed = false;
  ipUInt64 _failurePosition = 0;
  XmlAttributes _attributes;
  std::string _decodedAttributes[nbXmlAttributes];
  std::string _checkedName; // the latest name of a section, raw; its entities are known to be right
  std::string _decodedText;
};

} // namespace orvel::details
