#include <ORVELSerialization/Private/Text.h>

#include <boost/locale/utf.hpp>

namespace orvel::details
{

namespace
{

using Utf8 = boost::locale::utf::utf_traits<char>;

/// Tells whether every character of a text is legal, by a test for the ASCII bytes and one for the others.
template <class AsciiTest, class OtherTest>
bool consistsOf(std::string_view text, AsciiTest isLegalAscii, OtherTest isLegalOther)
{
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end)
  {
    const auto byte = static_cast<unsigned char>(*at);
    if (byte < 0x80)
    {
      if (!isLegalAscii(byte))
        return false;
      ++at;
      continue;
    }
    const boost::locale::utf::code_point point = Utf8::decode(at, end);
    if (point == boost::locale::utf::illegal || point == boost::locale::utf::incomplete ||
        !isLegalOther(point))
      return false;
  }
  return true;
}

} // namespace

bool isUtf8(std::string_view text)
{
  return consistsOf(
      text, [](unsigned char) { return true; }, [](boost::locale::utf::code_point) { return true; });
}

bool isXmlText(std::string_view text)
{
  return consistsOf(
      text, [](unsigned char byte) { return byte >= 0x20 || byte == '\t' || byte == '\n'; },
      [](boost::locale::utf::code_point point) { return point != 0xFFFE && point != 0xFFFF; });
}

std::string quoted(std::string_view text)
{
  constexpr std::size_t longest = 120;
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
