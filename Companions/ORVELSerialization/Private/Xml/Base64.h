#pragma once

// Base64 (RFC 4648, section 4), as XML archives use it for blocks and for strings that XML can't carry.

#include <cstddef>
#include <string>
#include <string_view>

namespace orvel::details
{

/// Number of characters that so many bytes become.
constexpr std::size_t base64Size(std::size_t nbBytes)
{
  return (nbBytes + 2) / 3 * 4;
}

/// Encodes bytes. \return the end of what was stored: base64Size(size) characters
char* encodeBase64(const char* data, std::size_t size, char* to);

/// Decodes a text that comes in pieces. Blanks and line ends may stand anywhere.
class Base64Decoder
{
public:
  /// Decodes one more piece into memory with room for `room` bytes.
  /// \return the number of bytes stored; isValid() is false if there were more of them or the text is wrong
  std::size_t decode(std::string_view text, char* to, std::size_t room);

  bool isValid() const { return _isValid; }

  /// Tells whether the text was valid and has come to its end.
  bool isFinished() const { return _isValid && _nbDigits == 0; }

private:
  unsigned _digits = 0;   // of the present group of four
  unsigned _nbDigits = 0; // padding included
  unsigned _nbPadding = 0;
  bool _isValid = true;
  bool _isPadded = false; // padding ends the text
};

/// Decodes a whole text. \return false if it is no base64; the content is then undefined
bool decodeBase64(std::string_view text, std::string& content);

} // namespace orvel::details
