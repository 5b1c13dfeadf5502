#pragma once

// The XML of an archive in memory, and the place in it that a reader has come to.

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include <ORVELSerialization/Private/ByteSource.h>
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

/// The text is not what the reader asks for.
struct XmlFailure
{
  enum class Kind
  {
    notAnArchive,
    cutShort,
    damaged,
    unexpected ///< another element than the next one
  };

  Kind kind;
  ipUInt64 position;    ///< byte offset
  std::string reason;   ///< what is wrong, or what was found
  std::string expected; ///< where something else was found
};

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
/// entities, repeated and unknown attributes, a DOCTYPE, anything behind the root.
class XmlDocument
{
public:
  /// \throw IoFailure
  explicit XmlDocument(std::unique_ptr<InputOrigin> origin);

  /// Parses, and enters the root. \throw XmlFailure
  const XmlAttributes& open();

  // The next two take an element that must be of the kind and, unless that is null, have the key that are
  // asked for; the attributes stay valid until the next element is asked for.

  /// Takes an element with a text in it. \throw XmlFailure
  /// \param text stays valid until the next one is asked for
  const XmlAttributes& takeText(XmlElement element, const std::string* key, std::string_view& text);

  /// Goes into an element with elements in it. \throw XmlFailure
  const XmlAttributes& enter(XmlElement element, const std::string* key);

  /// Leaves an element that enter() went into; all of its content must have been taken. \throw XmlFailure
  void leave();

  bool hasNext() const { return !_next.empty(); } ///< within the element that was entered

  /// Tells what the next element is: a section or what one may hold. \throw XmlFailure if it is none of those
  XmlElement getNextElement() const;

  bool hasBehindRoot() const; ///< anything but comments and blanks

  ipUInt64 getTakenPosition() const;  ///< byte offset of the element taken or entered last
  ipUInt64 getNextPosition() const;   ///< byte offset of what comes next, or of the element that ends next
  ipUInt64 getBehindPosition() const; ///< byte offset of what hasBehindRoot() tells
  ipUInt64 getSize() const { return _size; }
  std::string describeNext() const; ///< for messages

  /// A byte offset as "line 3, column 7"; both count from 1, columns in bytes.
  std::string getPlace(ipUInt64 position) const;

private:
  struct Free
  {
    void operator()(char* memory) const { std::free(memory); }
  };

  void readAll(InputOrigin& origin);
  void checkCharacters();
  pugi::xml_node requireNext(XmlElement element, const std::string* key);
  void readAttributes(XmlElement element);
  [[noreturn]] void raiseUnexpected(const std::string& expected) const;
  pugi::xml_node getBehindRoot() const;
  static std::string joinText(pugi::xml_node node, std::string_view firstText);
  static std::string_view decode(const char* raw, bool isAttribute, std::string& decoded,
                                 pugi::xml_node node);

  std::unique_ptr<char, Free> _text;
  ipUInt64 _size = 0;
  std::vector<ipUInt64> _lineStarts; // the parser overwrites line ends
  pugi::xml_document _document;
  pugi::xml_node _parent;
  pugi::xml_node _next;
  pugi::xml_node _taken;
  XmlAttributes _attributes;
  std::string _decodedAttributes[nbXmlAttributes];
  std::string _checkedName; // the latest name of a section, raw; its entities are known to be right
  std::string _decodedText;
};

} // namespace orvel::details
