#include "ORVELSerialization/Private/Text.h"

#include <cstring>

#include <boost/locale/utf.hpp>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

namespace
{

using Utf8 = boost::locale::utf::utf_traits<char>;

constexpr ipUInt64 g_everyByte = 0x0101010101010101U;

/// Tells whether the eight bytes are ASCII.
bool isAscii(const char* at)
{
  ipUInt64 word = 0;
  std::memcpy(&word, at, sizeof(word));
  return (word & (0x80U * g_everyByte)) == 0;
}

/// Tells whether the eight bytes are ASCII without control characters, but for the deletion.
bool isPrintable(const char* at)
{
  ipUInt64 word = 0;
  std::memcpy(&word, at, sizeof(word));
  // A byte below 0x20 takes from the next higher one, which can only make more words doubtful.
  return ((word | (word - 0x20U * g_everyByte)) & (0x80U * g_everyByte)) == 0;
}

/// Counts the bytes up to the first illegal character, by a test for the ASCII bytes and one for the others;
/// a quick test may tell that eight bytes at once are legal.
template <class WordTest, class AsciiTest, class OtherTest>
std::size_t countLegal(std::string_view text, WordTest isLegalWord, AsciiTest isLegalAscii,
                       OtherTest isLegalOther)
{
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end)
  {
    if (static_cast<std::size_t>(end - at) >= sizeof(ipUInt64) && isLegalWord(at))
    {
      at += sizeof(ipUInt64);
      continue;
    }
    const auto byte = static_cast<unsigned char>(*at);
    if (byte < 0x80)
    {
      if (!isLegalAscii(byte))
        break;
      ++at;
      continue;
    }
    const char* next = at;
    const boost::locale::utf::code_point point = Utf8::decode(next, end);
    if (point == boost::locale::utf::illegal || point == boost::locale::utf::incomplete ||
        !isLegalOther(point))
      break;
    at = next;
  }
  return static_cast<std::size_t>(at - text.data());
}

/// Tells whether XML has a character beyond ASCII.
bool isXmlCharacter(boost::locale::utf::code_point point)
{
  return point != 0xFFFE && point != 0xFFFF;
}

} // namespace

bool isUtf8(std::string_view text)
{
  return countLegal(
             text, isAscii, [](unsigned char) { return true; },
             [](boost::locale::utf::code_point) { return true; }) == text.size();
}

bool isXmlText(std::string_view text)
{
  return countLegal(
             text, isPrintable,
             [](unsigned char byte) { return byte >= 0x20 || byte == '\t' || byte == '\n'; },
             isXmlCharacter) == text.size();
}

std::size_t countXmlText(std::string_view text)
{
  return countLegal(
      text, isPrintable,
      [](unsigned char byte) { return byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r'; },
      isXmlCharacter);
}

namespace
{

constexpr std::size_t longest = 120; // characters of a text in a message

} // namespace

std::string shortened(std::string_view text)
{
  return std::string(text.substr(0, longest)) + (text.size() > longest ? "..." : "");
}

std::string quoted(std::string_view text)
{
  constexpr std::string_view digits = "0123456789abcdef";
  std::string result = "\"";
  for (const char character : text.substr(0, longest))
  {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x20 && byte < 0x7F)
      result += character;
    else
      result.append("\\x").append(1, digits[byte >> 4U]).append(1, digits[byte & 15U]);
  }
  return result + (text.size() > longest ? "...\"" : "\"");
}

} // namespace orvel::details
