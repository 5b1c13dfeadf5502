#include "ORVELSerialization/Private/Xml/XmlDocument.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include <boost/locale/utf.hpp>

#include <ORVELSerialization/Private/Text.h>

namespace orvel::details
{

using Message = eORVELSerializationMessage;

namespace
{

constexpr const char* g_elementNames[] = {"orvelArchive", "section", "item", "object", "pointer", "block"};

constexpr const char* g_attributeNames[nbXmlAttributes] = {"format", "name", "key",  "id",      "class",
                                                           "ref",    "null", "size", "encoding"};

constexpr unsigned bitOf(XmlAttribute attribute)
{
  return 1U << static_cast<unsigned>(attribute);
}

/// The attributes that an element may have, by element.
constexpr unsigned g_allowedAttributes[] = {bitOf(XmlAttribute::format),
                                            bitOf(XmlAttribute::name),
                                            bitOf(XmlAttribute::key) | bitOf(XmlAttribute::encoding),
                                            bitOf(XmlAttribute::key),
                                            bitOf(XmlAttribute::key) | bitOf(XmlAttribute::id) |
                                                bitOf(XmlAttribute::className) | bitOf(XmlAttribute::ref) |
                                                bitOf(XmlAttribute::null),
                                            bitOf(XmlAttribute::size)};

// Texts are decoded here: the parser would let unknown entities pass. A text stands in its element's own
// value, which saves a node; blanks between elements are left out.
constexpr unsigned g_parseFlags = pugi::parse_minimal | pugi::parse_cdata | pugi::parse_ws_pcdata_single |
                                  pugi::parse_embed_pcdata | pugi::parse_doctype | pugi::parse_fragment |
                                  pugi::parse_comments | pugi::parse_pi;

constexpr unsigned char g_specialInText = 1;
constexpr unsigned char g_specialInAttribute = 2;

/// What must be replaced when it is met, by character.
constexpr std::array<unsigned char, 256> g_specialCharacters = []
{
  std::array<unsigned char, 256> special = {};
  special['&'] = special['\r'] = g_specialInText | g_specialInAttribute;
  special['\n'] = special['\t'] = g_specialInAttribute;
  return special;
}();

/// What follows the line feed that ends a line, or the end of the text.
const char* findLineEnd(const char* line, const char* end)
{
  const void* const lineFeed = std::memchr(line, '\n', static_cast<std::size_t>(end - line));
  return lineFeed == nullptr ? end : static_cast<const char*>(lineFeed) + 1;
}

/// Tells whether a text is nothing but printable ASCII and line feeds.
bool isPlainText(const char* begin, const char* end)
{
  unsigned char unusual = 0; // no early end and nothing but bytes: so the compiler can use vectors
  for (const char* at = begin; at != end; ++at)
  {
    const auto byte = static_cast<unsigned char>(*at);
    const unsigned char mask = static_cast<unsigned char>(byte - 0x20U) < 0x60U ? 0 : 0xFF;
    unusual |= static_cast<unsigned char>(mask & (byte ^ '\n'));
  }
  return unusual == 0;
}

/// The number of an attribute's name, nbXmlAttributes if it is unknown.
std::size_t findAttributeName(const char* name)
{
  for (std::size_t index = 0; index < nbXmlAttributes; ++index)
    if (g_attributeNames[index][0] == name[0] && std::strcmp(g_attributeNames[index], name) == 0)
      return index;
  return nbXmlAttributes;
}

constexpr const char* g_blanks = " \t\r\n";

bool isBlankCharacter(char character)
{
  return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

bool isBlank(const char* text)
{
  return text[std::strspn(text, g_blanks)] == '\0';
}

/// The node itself, or the next one that says something: comments and processing instructions do not.
pugi::xml_node skipComments(pugi::xml_node node)
{
  while (node.type() == pugi::node_comment || node.type() == pugi::node_pi)
    node = node.next_sibling();
  return node;
}

bool isElement(pugi::xml_node node, XmlElement element)
{
  return node.type() == pugi::node_element && std::strcmp(node.name(), getElementName(element)) == 0;
}

/// Byte offset of a node; the parser knows that of an element's name.
ipUInt64 positionOf(pugi::xml_node node)
{
  const std::ptrdiff_t offset = node.offset_debug();
  if (offset < 0)
    return 0;
  return static_cast<ipUInt64>(node.type() == pugi::node_element ? std::max<std::ptrdiff_t>(offset - 1, 0)
                                                                 : offset);
}

/// A CDATA section as XML means it: nothing but line ends is normalised there.
std::string normaliseLineEnds(std::string_view text)
{
  std::string normalised;
  for (std::size_t index = 0; index < text.size(); ++index)
  {
    if (text[index] != '\r')
      normalised += text[index];
    else if (text.substr(index + 1, 1) != "\n")
      normalised += '\n';
  }
  return normalised;
}

/// Appends the character that an entity stands for; its text is that between & and ;.
bool appendEntity(std::string_view entity, std::string& text)
{
  if (entity == "amp")
    text += '&';
  else if (entity == "lt")
    text += '<';
  else if (entity == "gt")
    text += '>';
  else if (entity == "quot")
    text += '"';
  else if (entity == "apos")
    text += '\'';
  else
  {
    const bool isHexadecimal = entity.substr(0, 2) == "#x";
    if (entity.substr(0, 1) != "#")
      return false;
    entity.remove_prefix(isHexadecimal ? 2 : 1);
    boost::locale::utf::code_point point = 0;
    const char* const end = entity.data() + entity.size();
    const std::from_chars_result result = std::from_chars(entity.data(), end, point, isHexadecimal ? 16 : 10);
    const bool isControl = point < 0x20 && point != '\t' && point != '\n' && point != '\r';
    if (result.ec != std::errc() || result.ptr != end || isControl || point == 0xFFFE || point == 0xFFFF ||
        !boost::locale::utf::is_valid_codepoint(point))
      return false;
    boost::locale::utf::utf_traits<char>::encode(point, std::back_inserter(text));
  }
  return true;
}

} // namespace

const char* getElementName(XmlElement element)
{
  return g_elementNames[static_cast<std::size_t>(element)];
}

XmlDocument::XmlDocument(std::unique_ptr<InputOrigin> origin)
  : _origin(std::move(origin))
{
}

// Memory grows with what has really come; where the length is known it is right at once.
void XmlDocument::readAll()
{
  ipUInt64 capacity = 0;
  if (!_origin->getLength(capacity))
    capacity = 64UL * 1024;
  ++capacity; // so that the read that finds the end has room
  for (;;)
  {
    if (_text == nullptr || _size == capacity)
    {
      capacity = _text == nullptr ? capacity : 2 * capacity;
      char* const larger = static_cast<char*>(std::realloc(_text.get(), capacity));
      if (larger == nullptr)
        throw std::bad_alloc();
      static_cast<void>(_text.release());
      _text.reset(larger);
    }
    const std::size_t nbRead = _origin->read(_text.get() + _size, capacity - _size);
    if (nbRead == 0)
      return;
    _size += nbRead;
  }
}

/// Refuses what is no UTF-8 and characters that XML excludes, and notes where lines begin.
void XmlDocument::checkCharacters()
{
  constexpr std::ptrdiff_t usualPiece = 4096; // small enough to be still at hand for the second look at it
  const char* const begin = _text.get();
  const char* const end = begin + _size;
  _lineStarts.assign(1, 0);
  for (const char* piece = begin; piece != end;)
  {
    const char* const pieceEnd =
        end - piece <= usualPiece ? end : findLineEnd(piece + usualPiece, end); // not within a character
    // The lines come first: a failure names its place by them.
    for (const char* line = findLineEnd(piece, pieceEnd);; line = findLineEnd(line, pieceEnd))
    {
      if (line[-1] == '\n')
        _lineStarts.push_back(static_cast<ipUInt64>(line - begin));
      if (line == pieceEnd)
        break;
    }
    if (!isPlainText(piece, pieceEnd))
    {
      const std::string_view text(piece, static_cast<std::size_t>(pieceEnd - piece));
      const std::size_t legal = countXmlText(text);
      if (legal != text.size())
        failDamaged(static_cast<ipUInt64>(piece - begin) + legal,
                    "a byte that is no UTF-8 or no character of XML");
    }
    piece = pieceEnd;
  }
}

const XmlAttributes& XmlDocument::open()
{
  readAll();
  _origin.reset();
  checkCharacters();
  const std::string_view text(_text.get(), _size);
  const bool hasEnd = text.rfind("</orvelArchive") != std::string_view::npos;
  _text.get()[_size] = '\0'; // the parser would put it in the place of the last character
  const pugi::xml_parse_result result =
      _document.load_buffer_inplace(_text.get(), _size + 1, g_parseFlags, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory)
    throw std::bad_alloc();

  const pugi::xml_node first = skipComments(_document.first_child());
  if (first.type() == pugi::node_doctype)
    failDamaged(positionOf(first), "a DOCTYPE is not allowed");
  const bool isArchive = isElement(first, XmlElement::archive);
  if (!result)
  {
    const auto position = static_cast<ipUInt64>(result.offset);
    if (!isArchive)
      fail(position, ArchiveFailure(Message::eNotAnArchive, result.description()));
    if (!hasEnd)
      fail(position, ArchiveFailure(Message::eCutShort));
    failDamaged(position, result.description());
  }
  if (!isArchive)
    fail(positionOf(first), ArchiveFailure(Message::eNotAnArchive, "it is no XML or XML with other content"));
  _next = first;
  return enter(XmlElement::archive, nullptr);
}

void XmlDocument::fail(ipUInt64 position, const ArchiveFailure& failure)
{
  _hasFailed = true;
  _failurePosition = position;
  throw failure;
}

void XmlDocument::failDamaged(ipUInt64 position, const std::string& reason)
{
  fail(position, ArchiveFailure(Message::eDamaged, reason));
}

void XmlDocument::failUnexpected(const std::string& expected)
{
  fail(getNextPosition(), ArchiveFailure(Message::eUnexpectedItem, expected, describeNext()));
}

/// Looks at the next element, without taking it yet.
pugi::xml_node XmlDocument::requireNext(XmlElement element, const std::string* key)
{
  bool isExpected = isElement(_next, element);
  if (isExpected)
  {
    readAttributes(element);
    isExpected = key == nullptr || _attributes.get(XmlAttribute::key) == *key;
  }
  if (!isExpected)
    failUnexpected(getElementName(element) + (key == nullptr ? std::string() : " " + quoted(*key)));
  _taken = _next;
  return _next;
}

void XmlDocument::readAttributes(XmlElement element)
{
  for (std::string_view& value : _attributes._values)
    value = {};
  for (pugi::xml_attribute attribute = _next.first_attribute(); attribute;
       attribute = attribute.next_attribute())
  {
    const char* const name = attribute.name();
    const std::size_t index = findAttributeName(name);
    const bool isKnown = index != nbXmlAttributes &&
                         (g_allowedAttributes[static_cast<std::size_t>(element)] >> index & 1U) != 0;
    if (!isKnown || _attributes._values[index].data() != nullptr)
      failDamaged(positionOf(_next), (isKnown ? "repeated attribute " : "unknown attribute ") + quoted(name) +
                                         " of " + getElementName(element));
    const bool isName = index == static_cast<std::size_t>(XmlAttribute::name);
    if (isName && _checkedName == attribute.value())
      _attributes._values[index] = _checkedName; // nobody compares names, and the same ones come in rows
    else
      _attributes._values[index] = decode(attribute.value(), true, _decodedAttributes[index], _next);
    if (isName)
      _checkedName = attribute.value();
  }
}

/// The text of an element that also holds comments or CDATA sections.
///
/// The parser drops a text that is nothing but blanks beside those. It still stands in memory: where a kept
/// text ends, the parser has put a null in the place of what follows it.
std::string XmlDocument::joinText(pugi::xml_node node, std::string_view firstText)
{
  std::string joined(firstText);
  const char* end = nullptr; // of a comment or a section that came last
  for (const pugi::xml_node part : node.children())
  {
    const pugi::xml_node_type type = part.type();
    if (type == pugi::node_pcdata)
    {
      std::string decoded;
      joined += decode(part.value(), false, decoded, node);
      end = nullptr;
      continue;
    }
    if (type != pugi::node_cdata && type != pugi::node_comment)
      failDamaged(positionOf(part), std::string("an element within ") + node.name());
    const std::string_view opening = type == pugi::node_cdata ? "<![CDATA[" : "<!--";
    const char* const start = part.value() - opening.size();
    if (*start == '<')
    {
      const char* blanks = start;
      while (isBlankCharacter(blanks[-1]))
        --blanks;
      joined += normaliseLineEnds({blanks, static_cast<std::size_t>(start - blanks)});
    }
    if (type == pugi::node_cdata)
      joined += normaliseLineEnds(part.value());
    end = part.value() + std::strlen(part.value()) + 3; // ]]> or -->
  }
  if (end != nullptr)
    joined += normaliseLineEnds({end, std::strspn(end, g_blanks)});
  return joined;
}

const XmlAttributes& XmlDocument::takeText(XmlElement element, const std::string* key, std::string_view& text)
{
  const pugi::xml_node node = requireNext(element, key);

  // Its text is the element's value; only after a comment or a CDATA section there is more of it.
  text = decode(node.value(), false, _decodedText, node);
  if (!node.first_child().empty())
  {
    std::string joined = joinText(node, text);
    _decodedText.swap(joined);
    text = _decodedText;
  }
  _next = skipComments(node.next_sibling());
  return _attributes;
}

const XmlAttributes& XmlDocument::enter(XmlElement element, const std::string* key)
{
  const pugi::xml_node node = requireNext(element, key);
  if (!isBlank(node.value()))
    fail(positionOf(node), ArchiveFailure(Message::eUnexpectedItem,
                                          std::string("elements or the end of ") + getElementName(element),
                                          "the text " + quoted(node.value())));
  _parent = node;
  ++_nbOpen;
  _next = skipComments(node.first_child());
  return _attributes;
}

void XmlDocument::leave()
{
  if (hasNext())
    failUnexpected(std::string("the end of ") + _parent.name());
  _next = skipComments(_parent.next_sibling());
  _parent = _parent.parent();
  --_nbOpen;
}

void XmlDocument::checkEnd()
{
  if (_nbOpen != 1)
    throw ArchiveFailure(Message::eNotFinished);
  if (hasNext())
    fail(getNextPosition(), ArchiveFailure(Message::eUnreadItems, describeNext()));
  const pugi::xml_node behind = skipComments(skipComments(_document.first_child()).next_sibling());
  if (!behind.empty())
    fail(positionOf(behind), ArchiveFailure(Message::eBehindEnd));
}

XmlElement XmlDocument::getNextElement()
{
  for (const XmlElement element :
       {XmlElement::section, XmlElement::item, XmlElement::object, XmlElement::pointer, XmlElement::block})
    if (isElement(_next, element))
      return element;
  failUnexpected(std::string("elements or the end of ") + _parent.name());
}

std::string XmlDocument::describeNext() const
{
  if (_next.empty())
    return isElement(_parent, XmlElement::archive) ? std::string("the end of the archive")
                                                   : std::string("the end of ") + _parent.name();
  if (_next.type() != pugi::node_element)
    return "the text " + quoted(_next.value());
  pugi::xml_attribute name = _next.attribute("key");
  if (name.empty())
    name = _next.attribute("name");
  return shortened(_next.name()) + (name.empty() ? std::string() : " " + quoted(name.value()));
}

ipUInt64 XmlDocument::getNextPosition() const
{
  return positionOf(_next.empty() ? _parent : _next);
}

std::string XmlDocument::getPlace() const
{
  const ipUInt64 position = _hasFailed ? _failurePosition : positionOf(_taken);
  const auto next = std::upper_bound(_lineStarts.begin(), _lineStarts.end(), position);
  if (next == _lineStarts.begin()) // before any character was looked at
    return "line 1, column 1";
  return "line " + std::to_string(next - _lineStarts.begin()) + ", column " +
         std::to_string(position - *std::prev(next) + 1);
}

/// The text that XML stands for: entities replaced, line ends normalised; blanks in attributes become spaces.
std::string_view XmlDocument::decode(const char* raw, bool isAttribute, std::string& decoded,
                                     pugi::xml_node node)
{
  const unsigned char special = isAttribute ? g_specialInAttribute : g_specialInText;
  const char* end = raw;
  unsigned char found = 0;
  for (; *end != '\0'; ++end)
    found |= g_specialCharacters[static_cast<unsigned char>(*end)];
  const std::string_view text(raw, static_cast<std::size_t>(end - raw));
  if ((found & special) == 0)
    return text;
  decoded.clear();
  for (std::size_t index = 0; index < text.size(); ++index)
  {
    const char character = text[index];
    if (character == '&')
    {
      const std::size_t last = text.find(';', index);
      if (last == std::string_view::npos || !appendEntity(text.substr(index + 1, last - index - 1), decoded))
        failDamaged(positionOf(node),
                    "unknown entity " +
                        quoted(text.substr(
                            index, std::min<std::size_t>(std::min(last, text.size()) - index + 1, 16))));
      index = last;
    }
    else if (character == '\r')
    {
      if (text.substr(index + 1, 1) != "\n")
        decoded += isAttribute ? ' ' : '\n';
    }
    else
      decoded += isAttribute && (character == '\n' || character == '\t') ? ' ' : character;
  }
  return decoded;
}

} // namespace orvel::details
