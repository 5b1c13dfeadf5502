#pragma once

// The XML of an archive as a sequence of events that a reader takes one by one.

#include <ORVELSerialization/Private/ByteSource.h>
#include <ORVELUtil/ScalarTypes.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvel::details
{

enum class XmlElement : unsigned char
{
  archive, ///< orvelArchive, the root
  section,
  item,
  object,
  pointer,
  block,
  unknown
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
  encoding,
  unknown
};

std::string_view getElementName(XmlElement element);

/// The text is no well-formed XML, or XML that archives don't use; what() says why.
class XmlFailure : public std::runtime_error
{
public:
  XmlFailure(const std::string& reason, bool isCutShort)
    : std::runtime_error(reason)
    , _isCutShort(isCutShort)
  {
  }

  bool isCutShort() const { return _isCutShort; } ///< the text just ends early

private:
  bool _isCutShort;
};

/// Parses XML in pieces, as the reader asks for events; memory does not grow with the text.
class XmlEvents
{
public:
  enum class Kind : unsigned char
  {
    start, ///< of an element
    text,  ///< in an item or a block; elsewhere if it is more than blanks
    end,   ///< of an element
    finish ///< of the document, and of what it comes from
  };

  struct Event
  {
    Kind kind;
    XmlElement element;     ///< of a start or an end
    ipUInt64 position;      ///< byte offset
    std::size_t textBegin;  ///< of a text, or of an element's unknown name
    std::size_t textSize;   ///< the same
    std::size_t attributes; ///< number of the first one of a start
    std::size_t nbAttributes;
  };

  explicit XmlEvents(std::unique_ptr<InputOrigin> origin);
  ~XmlEvents();

  /// The next event; it and its texts stay valid until the next one is asked for.
  /// \throw XmlFailure, IoFailure
  const Event& peek()
  {
    if (_next == _last)
      parseMore();
    return *_next;
  }

  /// Goes past the event that peek() gave.
  void pop() { ++_next; }

  /// Tells whether peek() gives an event at once, so that those before it stay valid.
  bool hasNext() const { return _next != _last; }

  std::string_view getText(const Event& event) const;

  /// Finds an attribute of a start. \return false if it has none of that name
  bool findAttribute(const Event& event, XmlAttribute attribute, std::string_view& value) const;

  /// Tells whether that many bytes are left from the next event on, or rather more.
  bool holds(ipUInt64 size);

  ipUInt64 getPosition() const; ///< bytes parsed so far

  /// A byte offset of the latest events, as "line 3, column 7"; both count from 1, columns in bytes.
  std::string getPlace(ipUInt64 position) const;

  /// Where parsing has failed, or got to.
  ipUInt64 getFailurePosition() const;

private:
  struct Parser;

  void parseMore();

  std::unique_ptr<Parser> _parser;
  const Event* _next = nullptr;
  const Event* _last = nullptr;
};

} // namespace orvel::details
