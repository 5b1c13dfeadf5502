#include <ORVELSerialization/Private/XmlEvents.h>

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <vector>

#include <expat.h>

namespace orvel::details
{

namespace
{

constexpr std::size_t pieceSize = 64 * 1024;

constexpr std::array<std::string_view, 6> elementNames = {"orvelArchive", "section", "item",
                                                          "object",       "pointer", "block"};
constexpr std::array<std::string_view, 9> attributeNames = {"format", "name", "key",  "id",      "class",
                                                            "ref",    "null", "size", "encoding"};

template <class Enumeration, std::size_t N>
Enumeration findName(const std::array<std::string_view, N>& names, std::string_view name)
{
  return static_cast<Enumeration>(std::find(names.begin(), names.end(), name) - names.begin());
}

bool isBlank(std::string_view text)
{
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// A piece of the text that was parsed, kept so that places in it can be told by line and column.
struct Piece
{
  std::vector<char> text;
  ipUInt64 position = 0;
  ipUInt64 line = 1;   // of its first byte
  ipUInt64 column = 1; // of its first byte

  ipUInt64 getEnd() const { return position + text.size(); }

  /// Where the byte after the first `size` bytes stands.
  void locate(std::size_t size, ipUInt64& atLine, ipUInt64& atColumn) const
  {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(size);
    atLine = line + static_cast<ipUInt64>(std::count(text.begin(), end, '\n'));
    if (atLine == line)
    {
      atColumn = column + size;
      return;
    }
    auto lineStart = end;
    while (*std::prev(lineStart) != '\n')
      --lineStart;
    atColumn = static_cast<ipUInt64>(end - lineStart) + 1;
  }
};

} // namespace

std::string_view getElementName(XmlElement element)
{
  return elementNames[static_cast<std::size_t>(element)];
}

struct XmlEvents::Parser
{
  struct AttributeValue
  {
    XmlAttribute attribute;
    std::size_t begin;
    std::size_t size;
  };

  explicit Parser(std::unique_ptr<InputOrigin> origin)
    : source(std::move(origin), Hashing::none)
    , expat(XML_ParserCreate(nullptr))
  {
    if (expat == nullptr)
      throw std::bad_alloc();
    XML_SetUserData(expat, this);
    XML_SetElementHandler(expat, &onStart, &onEnd);
    XML_SetCharacterDataHandler(expat, &onText);
    XML_SetStartDoctypeDeclHandler(expat, &onDoctype);
  }
  ~Parser() { XML_ParserFree(expat); }
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  std::size_t keep(std::string_view text)
  {
    const std::size_t begin = texts.size();
    texts.append(text);
    return begin;
  }

  Event& add(Kind kind, XmlElement element)
  {
    events.push_back({kind, element, static_cast<ipUInt64>(XML_GetCurrentByteIndex(expat)), texts.size(), 0,
                      attributes.size(), 0});
    return events.back();
  }

  /// Runs a handler; an exception must not pass through the parser, which is written in C.
  template <class Handler>
  static void handle(void* self, Handler handler)
  {
    auto& parser = *static_cast<Parser*>(self);
    try
    {
      handler(parser);
    }
    catch (...)
    {
      parser.exception = std::current_exception();
      XML_StopParser(parser.expat, XML_FALSE);
    }
  }

  static void XMLCALL onStart(void* self, const XML_Char* name, const XML_Char** nameAndValuePairs)
  {
    handle(self,
           [=](Parser& parser)
           {
             const auto element = findName<XmlElement>(elementNames, name);
             Event& event = parser.add(Kind::start, element);
             if (element == XmlElement::unknown)
             {
               parser.keep(name);
               event.textSize = parser.texts.size() - event.textBegin;
             }
             for (const XML_Char** pair = nameAndValuePairs; *pair != nullptr; pair += 2)
             {
               const std::string_view value = pair[1];
               parser.attributes.push_back(
                   {findName<XmlAttribute>(attributeNames, pair[0]), parser.keep(value), value.size()});
               ++event.nbAttributes;
             }
             parser.openElements.push_back(element);
           });
  }

  static void XMLCALL onEnd(void* self, const XML_Char* /*name*/)
  {
    handle(self,
           [](Parser& parser)
           {
             parser.add(Kind::end, parser.openElements.back());
             parser.openElements.pop_back();
           });
  }

  static void XMLCALL onText(void* self, const XML_Char* characters, int size)
  {
    handle(self,
           [=](Parser& parser)
           {
             const std::string_view text(characters, static_cast<std::size_t>(size));
             const XmlElement element = parser.openElements.back();
             if (element != XmlElement::item && element != XmlElement::block && isBlank(text))
               return;
             // The parser hands a text out in pieces, by line and by entity.
             if (parser.events.empty() || parser.events.back().kind != Kind::text)
               parser.add(Kind::text, element);
             parser.keep(text);
             parser.events.back().textSize += text.size();
           });
  }

  static void XMLCALL onDoctype(void* self, const XML_Char* /*name*/, const XML_Char* /*systemId*/,
                                const XML_Char* /*publicId*/, int /*hasInternalSubset*/)
  {
    handle(self, [](Parser&) { throw XmlFailure("a DOCTYPE is not allowed", false); });
  }

  /// Parses the next piece; at the end of the source, the end.
  void parsePiece()
  {
    std::swap(previous, present);
    present.position = previous.getEnd();
    previous.locate(previous.text.size(), present.line, present.column);
    present.text.clear();
    isLast = !source.ensure(1);
    if (!isLast)
    {
      const char* const end =
          source.begin() + std::min<std::ptrdiff_t>(source.end() - source.begin(), pieceSize);
      present.text.assign(source.begin(), end);
      source.take(end);
    }
    const XML_Status status = XML_Parse(expat, present.text.data(), static_cast<int>(present.text.size()),
                                        isLast ? XML_TRUE : XML_FALSE);
    if (status == XML_STATUS_ERROR && !exception)
      exception = std::make_exception_ptr(makeFailure());
  }

  XmlFailure makeFailure() const
  {
    const XML_Error code = XML_GetErrorCode(expat);
    const bool isCutShort = isLast && !openElements.empty() &&
                            (code == XML_ERROR_NO_ELEMENTS || code == XML_ERROR_UNCLOSED_TOKEN ||
                             code == XML_ERROR_PARTIAL_CHAR || code == XML_ERROR_UNCLOSED_CDATA_SECTION);
    return {XML_ErrorString(code), isCutShort};
  }

  ByteSource source;
  XML_Parser expat;
  std::vector<Event> events;
  std::vector<AttributeValue> attributes;
  std::string texts; // of events and attributes
  std::vector<XmlElement> openElements;
  std::exception_ptr exception; // met while the present events were parsed; raised when they are taken
  Piece previous;
  Piece present;
  bool isLast = false;
};

XmlEvents::XmlEvents(std::unique_ptr<InputOrigin> origin)
  : _parser(std::make_unique<Parser>(std::move(origin)))
{
}

XmlEvents::~XmlEvents() = default;

void XmlEvents::parseMore()
{
  Parser& parser = *_parser;
  parser.events.clear();
  parser.attributes.clear();
  parser.texts.clear();
  while (parser.events.empty())
  {
    if (parser.exception)
      std::rethrow_exception(parser.exception);
    if (parser.isLast)
      parser.add(Kind::finish, XmlElement::unknown);
    else
      parser.parsePiece();
  }
  _next = parser.events.data();
  _last = _next + parser.events.size();
}

std::string_view XmlEvents::getText(const Event& event) const
{
  return std::string_view(_parser->texts).substr(event.textBegin, event.textSize);
}

bool XmlEvents::findAttribute(const Event& event, XmlAttribute attribute, std::string_view& value) const
{
  const Parser::AttributeValue* const first = _parser->attributes.data() + event.attributes;
  for (const Parser::AttributeValue* candidate = first; candidate != first + event.nbAttributes; ++candidate)
    if (candidate->attribute == attribute)
    {
      value = std::string_view(_parser->texts).substr(candidate->begin, candidate->size);
      return true;
    }
  return false;
}

bool XmlEvents::holds(ipUInt64 size)
{
  const ipUInt64 parsed = hasNext() ? getPosition() - std::min(_next->position, getPosition()) : 0;
  return size <= parsed || _parser->source.holds(size - parsed);
}

ipUInt64 XmlEvents::getPosition() const
{
  return _parser->source.getPosition();
}

ipUInt64 XmlEvents::getFailurePosition() const
{
  return static_cast<ipUInt64>(XML_GetCurrentByteIndex(_parser->expat));
}

std::string XmlEvents::getPlace(ipUInt64 position) const
{
  // A tag may begin in the piece before; one that began earlier still is told as the start of that piece.
  const Piece& piece = position < _parser->present.position ? _parser->previous : _parser->present;
  const ipUInt64 offset = position - std::min(position, piece.position);
  ipUInt64 line = 1;
  ipUInt64 column = 1;
  piece.locate(static_cast<std::size_t>(std::min<ipUInt64>(offset, piece.text.size())), line, column);
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

} // namespace orvel::details
