#include "ORVELSerialization/XmlArchive.h"

#include <cstring>
#include <limits>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "ArchiveTesting.h"
#include "SampleClasses.h"
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

template <class T>
std::string contentOf(const T& value)
{
  const std::string file =
      fileBy<XmlFormat>([&](BaseOArchive& archive) { archive << SerializationOItem("K", value); });
  const std::string empty = XmlFormat::wrap("");
  const std::string start = empty.substr(0, empty.size() - 16);
  EXPECT_EQ(file.substr(0, start.size()), start);
  const std::string content = file.substr(start.size(), file.size() - start.size() - 16);
  EXPECT_EQ(XmlFormat::wrap(content), file);
  return content;
}

template <class T>
T valueOf(const std::string& content)
{
  T value{};
  readWhole<XmlFormat>(XmlFormat::wrap(content),
                       [&](BaseIArchive& archive) { archive >> SerializationIItem("K", value); });
  return value;
}

template <class T>
std::string failureToRead(const std::string& content)
{
  return messageOf<ORVELSerializationException>([&] { valueOf<T>(content); });
}

std::string item(const std::string& text)
{
  return "  <item key=\"K\">" + text + "</item>\n";
}

template <class To, class From>
To fromBits(From bits)
{
  static_assert(sizeof(To) == sizeof(From));
  To value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

// The text

TEST(XmlArchive, LooksAsItIsDocumented)
{
  const std::string file = fileBy<XmlFormat>(
      [](BaseOArchive& archive)
      {
        {
          const ArchiveSectionManager section(archive, "a <section>");
          archive << SerializationOItem("version", 2);
        }
        archive << SerializationOItem("point", TestPoint(1, -1));
        archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("none", nullptr));
        archive.writeBlock("abc", 3);
        archive.writeBlock(nullptr, 0);
      });
  EXPECT_EQ(file, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<orvelArchive format=\"1\">\n"
                  "  <section name=\"a &lt;section&gt;\">\n"
                  "    <item key=\"version\">2</item>\n"
                  "  </section>\n"
                  "  <object key=\"point\">\n"
                  "    <section name=\"orvel::TestPoint\">\n"
                  "      <item key=\"version\">3</item>\n"
                  "    </section>\n"
                  "    <item key=\"_x\">1</item>\n"
                  "    <item key=\"_y\">-1</item>\n"
                  "  </object>\n"
                  "  <pointer key=\"none\" null=\"true\"/>\n"
                  "  <block size=\"3\">YWJj</block>\n"
                  "  <block size=\"0\"></block>\n"
                  "</orvelArchive>\n");
}

TEST(XmlArchive, FilesSharedObjectsWithTheirNumberAndClass)
{
  const SerializationObjectPtr point = boost::make_shared<TestPoint>(5, 6);
  const std::string file = fileBy<XmlFormat>(
      [&](BaseOArchive& archive)
      {
        archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("a", point));
        archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("b", point));
        archive.writeObjectPtr(
            SerializationOItem<SerializationObjectPtr>("c", boost::make_shared<TestPoint>(7, 8)));
      });
  EXPECT_EQ(file, XmlFormat::wrap("  <pointer key=\"a\" id=\"1\" class=\"orvel::TestPoint\">\n"
                                  "    <section name=\"orvel::TestPoint\">\n"
                                  "      <item key=\"version\">3</item>\n"
                                  "    </section>\n"
                                  "    <item key=\"_x\">5</item>\n"
                                  "    <item key=\"_y\">6</item>\n"
                                  "  </pointer>\n"
                                  "  <pointer key=\"b\" ref=\"1\"/>\n"
                                  "  <pointer key=\"c\" id=\"2\" class=\"orvel::TestPoint\">\n"
                                  "    <item key=\"_x\">7</item>\n"
                                  "    <item key=\"_y\">8</item>\n"
                                  "  </pointer>\n"));
}

TEST(XmlArchive, EscapesEachOfManyNamesAsItIs)
{
  std::string expected;
  const std::string file = fileBy<XmlFormat>(
      [&](BaseOArchive& archive)
      {
        for (int turn = 0; turn < 2; ++turn)
          for (int number = 0; number < 1000; ++number)
          {
            const std::string digits = std::to_string(number * 7919 % 1000);
            const ArchiveSectionManager section(archive, "a<" + digits + ">");
            expected += "  <section name=\"a&lt;" + digits + "&gt;\">\n  </section>\n";
          }
      });
  EXPECT_EQ(file, XmlFormat::wrap(expected));
}

TEST(XmlArchive, EncodesATextForOneControlCharacterAtAnyPlace)
{
  for (std::size_t place = 0; place < 17; ++place)
    for (int code = 0; code < 0x20; ++code)
    {
      std::string text = "seventeen letters";
      text[place] = static_cast<char>(code);
      const std::string content = contentOf(text);
      const bool isCarried = code == '\t' || code == '\n';
      EXPECT_EQ(content.find("encoding=\"base64\"") == std::string::npos, isCarried) << place << ", " << code;
      EXPECT_EQ(valueOf<std::string>(content), text);
    }
}

TEST(XmlArchive, NamesSectionsOfContainers)
{
  EXPECT_EQ(contentOf(std::map<std::string, int>{{"a", 1}}), "  <section name=\"K\">\n"
                                                             "    <section name=\"map\">\n"
                                                             "      <item key=\"size\">1</item>\n"
                                                             "      <item key=\"key\">a</item>\n"
                                                             "      <item key=\"value\">1</item>\n"
                                                             "    </section>\n"
                                                             "  </section>\n");
  EXPECT_EQ(contentOf(TestPointPtr()), "  <section name=\"K\">\n"
                                       "    <section name=\"shared_ptr&lt;orvel::TestPoint&gt;\">\n"
                                       "      <pointer key=\"pObject\" null=\"true\"/>\n"
                                       "    </section>\n"
                                       "  </section>\n");
}

TEST(XmlArchive, FilesScalarsAsTheirTexts)
{
  EXPECT_EQ(contentOf(true), item("true"));
  EXPECT_EQ(contentOf(false), item("false"));
  EXPECT_EQ(contentOf(static_cast<signed char>(-128)), item("-128"));
  EXPECT_EQ(contentOf(static_cast<unsigned char>(65)), item("65"));
  EXPECT_EQ(contentOf(std::numeric_limits<long>::min()), item("-9223372036854775808"));
  EXPECT_EQ(contentOf(18446744073709551615UL), item("18446744073709551615"));
  EXPECT_EQ(contentOf(1234567), item("1234567"));
  EXPECT_EQ(contentOf(eDataType(eDataType::eDT_UInt16)), item("eDT_UInt16"));
  EXPECT_EQ(contentOf(boost::filesystem::path("/a b")), item("/a b"));
}

TEST(XmlArchive, FilesFloatsAsTheShortestText)
{
  EXPECT_EQ(contentOf(0.1F), item("0.1"));
  EXPECT_EQ(contentOf(1.5F), item("1.5"));
  EXPECT_EQ(contentOf(100.0F), item("100"));
  EXPECT_EQ(contentOf(-0.0F), item("-0"));
  EXPECT_EQ(contentOf(0.0F), item("0"));
  EXPECT_EQ(contentOf(1e-45F), item("1e-45"));
  EXPECT_EQ(contentOf(3.4028235e38F), item("3.4028235e+38"));
  EXPECT_EQ(contentOf(0.1), item("0.1"));
  EXPECT_EQ(contentOf(0.1 + 0.2), item("0.30000000000000004"));
  EXPECT_EQ(contentOf(5e-324), item("5e-324"));
  EXPECT_EQ(contentOf(1.7976931348623157e308), item("1.7976931348623157e+308"));
  EXPECT_EQ(contentOf(std::numeric_limits<float>::infinity()), item("inf"));
  EXPECT_EQ(contentOf(-std::numeric_limits<double>::infinity()), item("-inf"));
  EXPECT_EQ(contentOf(fromBits<float>(0x7FC00000U)), item("nan"));
  EXPECT_EQ(contentOf(fromBits<float>(0x7FC00001U)), item("nan(0x7fc00001)"));
  EXPECT_EQ(contentOf(fromBits<float>(0xFFC00000U)), item("nan(0xffc00000)"));
  EXPECT_EQ(contentOf(fromBits<double>(0x7FF8000000000000UL)), item("nan"));
  EXPECT_EQ(contentOf(fromBits<double>(0x7FF0000000000001UL)), item("nan(0x7ff0000000000001)"));
}

TEST(XmlArchive, FilesTextsForPeopleAndOtherBytesInBase64)
{
  EXPECT_EQ(contentOf(std::string()), item(""));
  EXPECT_EQ(contentOf(std::string(" a\tb\n ")), item(" a\tb\n "));
  EXPECT_EQ(contentOf(std::string("a<b>&\"'")), item("a&lt;b&gt;&amp;\"'"));
  EXPECT_EQ(contentOf(std::string("\xC3\xBC")), item("\xC3\xBC"));
  const auto base64 = [](const std::string& text)
  {
    return "  <item key=\"K\" encoding=\"base64\">" + text + "</item>\n";
  };
  EXPECT_EQ(contentOf(std::string("\r")), base64("DQ=="));
  EXPECT_EQ(contentOf(std::string(1, '\0')), base64("AA=="));
  EXPECT_EQ(contentOf(std::string("\xFF\xFE")), base64("//4="));
  EXPECT_EQ(contentOf(std::string("ab\x01")), base64("YWIB"));
}

TEST(XmlArchive, BreaksTheTextOfALongBlock)
{
  const std::string bytes(58, 'a');
  const std::string file =
      fileBy<XmlFormat>([&](BaseOArchive& archive) { archive.writeBlock(bytes.data(), 58); });
  std::string line;
  for (int i = 0; i < 19; ++i)
    line += "YWFh";
  EXPECT_EQ(file, XmlFormat::wrap("  <block size=\"58\">\n" + line + "\nYQ==\n  </block>\n"));
}

TEST(XmlArchive, EscapesNames)
{
  const std::string file = fileBy<XmlFormat>([](BaseOArchive& archive)
                                             { archive << SerializationOItem("a\"<&>'\t\n\xC3\xBC", 1); });
  EXPECT_EQ(file, XmlFormat::wrap("  <item key=\"a&quot;&lt;&amp;&gt;'&#9;&#10;\xC3\xBC\">1</item>\n"));
  readWhole<XmlFormat>(file, [](BaseIArchive& archive)
                       { EXPECT_EQ(archive.readInteger("a\"<&>'\t\n\xC3\xBC", 0, 9), 1); });
}

TEST(XmlArchive, ReadsAKeyThatIsSpeltLikeTheSectionAroundIt)
{
  const std::string file = fileBy<XmlFormat>(
      [](BaseOArchive& archive)
      {
        const ArchiveSectionManager section(archive, "a<b");
        archive << SerializationOItem("a<b", 1);
      });
  readWhole<XmlFormat>(file,
                       [](BaseIArchive& archive)
                       {
                         const ArchiveSectionManager section(archive, "a<b");
                         EXPECT_EQ(archive.readInteger("a<b", 0, 9), 1);
                       });
}

TEST(XmlArchive, RefusesNamesThatXmlCanNotCarry)
{
  for (const std::string name : {"a\rb", "\xFF", "\x01"})
  {
    std::ostringstream stream;
    XmlOArchive archive(stream);
    const std::string message =
        messageOf<ORVELSerializationException>([&] { archive << SerializationOItem(name, 1); });
    EXPECT_NE(message.find(" can't be filed"), std::string::npos) << message;
    EXPECT_TRUE(archive.isFailed());
    std::ostringstream other;
    XmlOArchive another(other);
    EXPECT_THROW(ArchiveSectionManager(another, name), ORVELSerializationException);
  }
  std::ostringstream stream;
  XmlOArchive archive(stream);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive << SerializationOItem("a\rb", 1); }),
            "Archive stream, byte 78: the name \"a\\x0db\" can't be filed");
}

// What people's editors make of it

TEST(XmlArchive, ReadsWhatPeopleHaveEdited)
{
  const std::string content =
      "<!-- a comment -->\r\n<section\r\n   name='any'><item key='version'  >3</item>"
      "<?editor instruction?></section>\r\n\r\n<item key=\"K\">5<!-- five --></item>\r\n";
  std::istringstream stream("\xEF\xBB\xBF<!-- first --><?xml version='1.0'?>\n<orvelArchive format='1' >" +
                            content + "</orvelArchive >\n<!-- last -->\n");
  XmlIArchive archive(stream);
  {
    const ArchiveSectionManager section(archive, "x");
    EXPECT_EQ(archive.readUnsigned("version", 9), 3U);
  }
  EXPECT_EQ(archive.readInteger("K", 0, 9), 5);
  archive.close();
}

TEST(XmlArchive, ReadsTextsOfEverySpelling)
{
  EXPECT_EQ(valueOf<std::string>(item("&amp;&lt;&gt;&quot;&apos;")), "&<>\"'");
  EXPECT_EQ(valueOf<std::string>(item("&#65;&#x42;&#x20AC;&#128512;")), "AB\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(valueOf<std::string>(item("&#13;&#10;&#9;")), "\r\n\t");
  EXPECT_EQ(valueOf<std::string>(item("a\r\nb\rc\n")), "a\nb\nc\n");
  EXPECT_EQ(valueOf<std::string>(item("<![CDATA[<&amp;>]]>")), "<&amp;>");
  EXPECT_EQ(valueOf<std::string>(item("a<![CDATA[b]]>c<!-- no -->d")), "abcd");
  EXPECT_EQ(valueOf<std::string>(item("<![CDATA[]]>")), "");
  EXPECT_EQ(valueOf<std::string>("<item key=\"K\"/>"), "");
  EXPECT_EQ(valueOf<std::string>("<item key=\"K\" encoding=\"base64\"> Y W\nI=\n</item>"), "ab");
  EXPECT_EQ(valueOf<int>(item("&#53;")), 5);
  EXPECT_EQ(valueOf<int>(item("<![CDATA[5]]>")), 5);
}

// The parser drops a text that is nothing but blanks where it is not the only one of its element.
TEST(XmlArchive, KeepsBlanksBesideCommentsAndSections)
{
  EXPECT_EQ(valueOf<std::string>(item("  <!-- no -->x")), "  x");
  EXPECT_EQ(valueOf<std::string>(item("  <![CDATA[x]]>  ")), "  x  ");
  EXPECT_EQ(valueOf<std::string>(item("a<!-- no --> <!-- no -->b")), "a b");
}

TEST(XmlArchive, NormalisesLineEndsAlsoInCharacterData)
{
  EXPECT_EQ(valueOf<std::string>(item("<![CDATA[a\r\nb\rc]]>")), "a\nb\nc");
}

TEST(XmlArchive, ReadsFloatsInOtherSpellings)
{
  EXPECT_EQ(valueOf<float>(item("1e2")), 100.0F);
  EXPECT_EQ(valueOf<float>(item(".5")), 0.5F);
  EXPECT_EQ(valueOf<double>(item("5")), 5.0);
  EXPECT_EQ(valueOf<double>(item("-1.50e+1")), -15.0);
}

// Wrong values

TEST(XmlArchive, RefusesTextsThatAreNoValues)
{
  const auto invalid = [](const std::string& text)
  {
    return "Archive stream, line 3, column 3: " + text + " is no valid value of item \"K\"";
  };
  for (const std::string text :
       {"", " 5", "5 ", "+5", "0x5", "5.0", "1e2", "five", "--5", "-", "5-", "1,000", "1.000"})
  {
    EXPECT_EQ(failureToRead<int>(item(text)), invalid("\"" + text + "\""));
    EXPECT_EQ(failureToRead<unsigned long>(item(text)), invalid("\"" + text + "\""));
  }
  for (const std::string text : {"", "True", "TRUE", "1", "0", " true", "true ", "yes"})
    EXPECT_EQ(failureToRead<bool>(item(text)), invalid("\"" + text + "\""));
  for (const std::string text : {"",
                                 "1,5",
                                 " 1",
                                 "1 ",
                                 "+1",
                                 "0x1p3",
                                 "infinity",
                                 "INF",
                                 "Inf",
                                 "NaN",
                                 "nan()",
                                 "nan(0x)",
                                 "nan(7fc00001)",
                                 "nan(0x7f800000)",
                                 "nan(0x0)",
                                 "nan(0x1ffffffff)",
                                 "-nan",
                                 "1.5f",
                                 "e5",
                                 ".",
                                 "-",
                                 "1e",
                                 "1..2"})
    EXPECT_EQ(failureToRead<float>(item(text)), invalid("\"" + text + "\"")) << text;
  EXPECT_EQ(failureToRead<double>(item("nan(0x7ff0000000000000)")), invalid("\"nan(0x7ff0000000000000)\""));
  EXPECT_EQ(failureToRead<int>("  <item key=\"K\" encoding=\"base64\">NQ==</item>"), invalid("\"NQ==\""));
  for (const std::string text :
       {"A", "AA", "AAA", "A===", "AA=A", "AB==", "AAB=", "AA==AA==", "AA!=", "AAAA="})
    EXPECT_EQ(failureToRead<std::string>("  <item key=\"K\" encoding=\"base64\">" + text + "</item>"),
              invalid("\"" + text + "\""))
        << text;
}

TEST(XmlArchive, ChecksNumbersAgainstTheWidthThatIsAskedFor)
{
  const auto outOfRange = [](const std::string& value, const std::string& range)
  {
    return "Archive stream, line 3, column 3: value " + value +
           " of item \"K\" is out of range, should be in " + range;
  };
  EXPECT_EQ(failureToRead<unsigned char>(item("256")), outOfRange("256", "[0, 255]"));
  EXPECT_EQ(failureToRead<unsigned char>(item("-1")), outOfRange("-1", "[0, 255]"));
  EXPECT_EQ(failureToRead<signed char>(item("-129")), outOfRange("-129", "[-128, 127]"));
  EXPECT_EQ(failureToRead<short>(item("32768")), outOfRange("32768", "[-32768, 32767]"));
  EXPECT_EQ(failureToRead<unsigned short>(item("65536")), outOfRange("65536", "[0, 65535]"));
  EXPECT_EQ(failureToRead<int>(item("2147483648")), outOfRange("2147483648", "[-2147483648, 2147483647]"));
  EXPECT_EQ(failureToRead<unsigned int>(item("4294967296")), outOfRange("4294967296", "[0, 4294967295]"));
  EXPECT_EQ(failureToRead<long>(item("9223372036854775808")),
            outOfRange("9223372036854775808", "[-9223372036854775808, 9223372036854775807]"));
  EXPECT_EQ(failureToRead<long>(item("-9223372036854775809")),
            outOfRange("-9223372036854775809", "[-9223372036854775808, 9223372036854775807]"));
  EXPECT_EQ(failureToRead<unsigned long>(item("18446744073709551616")),
            outOfRange("18446744073709551616", "[0, 18446744073709551615]"));
  EXPECT_EQ(failureToRead<float>(item("1e39")), outOfRange("1e39", "[-inf, inf]"));
  EXPECT_EQ(failureToRead<double>(item("1e309")), outOfRange("1e309", "[-inf, inf]"));
}

// Another item than the next one

TEST(XmlArchive, NamesWhatItExpectedAndWhatItFound)
{
  const auto unexpected = [](const std::string& place, const std::string& expected, const std::string& found)
  {
    return "Archive stream, " + place + ": expected " + expected + ", found " + found;
  };
  const std::string first = "line 3, column 3";
  EXPECT_EQ(failureToRead<int>("  <item key=\"L\">5</item>\n"),
            unexpected(first, "item \"K\"", "item \"L\""));
  EXPECT_EQ(failureToRead<int>("  <item key=\"k\">5</item>\n"),
            unexpected(first, "item \"K\"", "item \"k\""));
  EXPECT_EQ(failureToRead<int>("  <item>5</item>\n"), unexpected(first, "item \"K\"", "item"));
  EXPECT_EQ(failureToRead<int>("  <object key=\"K\"></object>\n"),
            unexpected(first, "item \"K\"", "object \"K\""));
  EXPECT_EQ(failureToRead<int>("  <section name=\"K\"></section>\n"),
            unexpected(first, "item \"K\"", "section \"K\""));
  EXPECT_EQ(failureToRead<int>("  <block size=\"0\"></block>\n"), unexpected(first, "item \"K\"", "block"));
  EXPECT_EQ(failureToRead<int>("  <other key=\"K\">5</other>\n"),
            unexpected(first, "item \"K\"", "other \"K\""));
  EXPECT_EQ(
      failureToRead<int>("  text\n"),
      unexpected("line 2, column 1", "elements or the end of orvelArchive", "the text \"\\x0a  text\\x0a\""));
  EXPECT_EQ(failureToRead<TestPoint>(item("5")), unexpected(first, "object \"K\"", "item \"K\""));
  EXPECT_EQ(failureToRead<std::vector<int>>(item("5")), unexpected(first, "section", "item \"K\""));
  EXPECT_EQ(
      messageOf<ORVELSerializationException>([] { objectOfFile<XmlFormat>(XmlFormat::wrap(item("5"))); }),
      unexpected(first, "pointer \"object\"", "item \"K\""));
  EXPECT_EQ(failureToRead<int>("").substr(0, 16), "Archive stream, ");
  EXPECT_NE(failureToRead<int>("").find(": expected item \"K\", found the end of the archive"),
            std::string::npos);
}

TEST(XmlArchive, CountsLinesAndColumns)
{
  const std::string content = "\n\n  <!-- \xC3\xBC -->  <item key=\"L\">5</item>\n";
  EXPECT_EQ(failureToRead<int>(content),
            "Archive stream, line 5, column 16: expected item \"K\", found item \"L\"");
}

TEST(XmlArchive, RefusesAnElementWithinAValue)
{
  EXPECT_EQ(failureToRead<std::string>("  <item key=\"K\">5<item key=\"L\">6</item></item>\n"),
            "Archive stream, line 3, column 18: the archive is damaged: an element within item");
}

TEST(XmlArchive, RefusesABlockOfAnotherSizeOrText)
{
  char data[3];
  const auto read = [&](const std::string& content)
  {
    return messageOf<ORVELSerializationException>(
        [&]
        {
          readWhole<XmlFormat>(XmlFormat::wrap(content),
                               [&](BaseIArchive& archive) { archive.readBlock(data, 3); });
        });
  };
  const std::string start = "Archive stream, line 3, column 1: ";
  EXPECT_EQ(read("<block size=\"4\">YWJj</block>"),
            start + "expected a block of 3 bytes, found a block of 4 bytes");
  EXPECT_EQ(read("<block>YWJj</block>"), start + "the archive is damaged: a block without its size");
  EXPECT_EQ(read("<block size=\"x\">YWJj</block>"),
            start + "the archive is damaged: a block without its size");
  const std::string damaged =
      start + "the archive is damaged: the text of a block is not its bytes in base64";
  EXPECT_EQ(read("<block size=\"3\">YWI=</block>"), damaged);
  EXPECT_EQ(read("<block size=\"3\">YWJjZA==</block>"), damaged);
  EXPECT_EQ(read("<block size=\"3\">YWJ</block>"), damaged);
  EXPECT_EQ(read("<block size=\"3\">YW!j</block>"), damaged);
  EXPECT_EQ(read("<block size=\"3\"></block>"), damaged);
}

TEST(XmlArchive, FailsWithTheNextOperationIfASectionHoldsMore)
{
  std::istringstream stream(
      XmlFormat::wrap("<section name=\"s\">\n" + item("1") + item("2") + "</section>\n"));
  XmlIArchive archive(stream);
  {
    const ArchiveSectionManager section(archive, "s");
    archive.readInteger("K", 0, 9);
  }
  EXPECT_TRUE(archive.isFailed());
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.close(); }),
            "Archive stream, line 5, column 3: expected the end of section, found item \"K\"");
}

TEST(XmlArchive, RefusesToCloseWhileItemsAreLeft)
{
  std::istringstream stream(XmlFormat::wrap(item("1")));
  XmlIArchive archive(stream);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.close(); }),
            "Archive stream, line 3, column 3: items are left unread, found item \"K\"");
}

TEST(XmlArchive, RefusesDataBehindTheEnd)
{
  for (const std::string behind :
       {"x", "<item/>", "<orvelArchive format=\"1\"/>", "<!DOCTYPE a>", "<![CDATA[x]]>"})
  {
    const std::string message = messageOf<ORVELSerializationException>(
        [&] { readWhole<XmlFormat>(XmlFormat::wrap("") + behind, [](BaseIArchive&) {}); });
    EXPECT_NE(message.find(": there is data behind the end of the archive"), std::string::npos)
        << behind << message;
    // A text begins where the root ends, with the line end.
    const std::string place = behind[0] == 'x' ? "line 3, column 16: " : "line 4, column ";
    EXPECT_EQ(message.substr(0, 16 + place.size()), "Archive stream, " + place) << message;
  }
}

// References

TEST(XmlArchive, RefusesReferencesToWhatDoesNotStandBefore)
{
  const auto read = [](const std::string& attributes)
  {
    return messageOf<ORVELSerializationException>(
        [&] {
          objectOfFile<XmlFormat>(XmlFormat::wrap("<pointer key=\"object\" " + attributes + "></pointer>"));
        });
  };
  const std::string start = "Archive stream, line 3, column 1: ";
  for (const std::string number : {"1", "0", "-1", "", "x", "18446744073709551617"})
    EXPECT_EQ(read("ref=\"" + number + "\""),
              start + "reference to object \"" + number + "\", which doesn't stand before it");
  const std::string damaged = start + "the archive is damaged: a pointer needs the next id and a class";
  EXPECT_EQ(read(""), damaged);
  EXPECT_EQ(read("id=\"1\""), damaged);
  EXPECT_EQ(read("class=\"orvel::TestPoint\""), damaged);
  EXPECT_EQ(read("id=\"2\" class=\"orvel::TestPoint\""), damaged);
  EXPECT_EQ(read("id=\"0\" class=\"orvel::TestPoint\""), damaged);
  EXPECT_EQ(read("null=\"false\""), damaged);
}

// What is no archive

std::string failureToOpen(const std::string& file)
{
  return messageOf<ORVELSerializationException>(
      [&]
      {
        std::istringstream stream(file);
        XmlIArchive archive(stream);
      });
}

TEST(XmlArchive, RefusesWhatIsNoArchive)
{
  for (const std::string file :
       {"", "   ", "no archive", "<?xml version=\"1.0\"?>", "<other format=\"1\"/>",
        "<orvelarchive format=\"1\"/>", "<!-- only -->", "text <orvelArchive format=\"1\"/>"})
  {
    const std::string message = failureToOpen(file);
    EXPECT_EQ(message.substr(0, 21), "Archive stream, line ") << message;
    EXPECT_NE(message.find(": this is not an archive: "), std::string::npos) << message;
  }
  EXPECT_EQ(failureToOpen("<orvelArchive/>"),
            "Archive stream, line 1, column 1: this is not an archive: it names no format version");
}

TEST(XmlArchive, RefusesOtherFormatVersions)
{
  for (const std::string version : {"2", "0", "", "1.0", " 1"})
    EXPECT_EQ(failureToOpen("<orvelArchive format=\"" + version + "\"></orvelArchive>"),
              "Archive stream, line 1, column 1: format version \"" + version +
                  "\" is not supported, the supported version is \"1\"");
}

TEST(XmlArchive, RefusesADoctype)
{
  for (const std::string doctype : {"<!DOCTYPE orvelArchive>", "<!DOCTYPE a [<!ENTITY b \"c\">]>",
                                    "<!DOCTYPE a SYSTEM \"file:///etc/passwd\">"})
  {
    // The place is that of what it declares.
    EXPECT_EQ(failureToOpen(doctype + "<orvelArchive format=\"1\"></orvelArchive>"),
              "Archive stream, line 1, column 11: the archive is damaged: a DOCTYPE is not allowed");
  }
  const std::string file = XmlFormat::wrap("<!DOCTYPE a>");
  EXPECT_NE(failureToOpen(file).find("Archive stream, line 3, column "), std::string::npos);
}

TEST(XmlArchive, RefusesUnknownEntities)
{
  for (const std::string entity :
       {"&nbsp;", "&AMP;", "&;", "&#;", "&#x;", "&#0;", "&#1;", "&#xD800;", "&#x110000;", "&#xFFFE;",
        "&#65 ;", "&#-1;", "&#99999999999999999999;", "& amp;"})
    EXPECT_EQ(failureToRead<std::string>(item("a" + entity)),
              "Archive stream, line 3, column 3: the archive is damaged: unknown entity \"" +
                  entity.substr(0, 16) + "\"");
  EXPECT_NE(failureToRead<std::string>(item("a&amp")).find("the archive is damaged: unknown entity \"&amp"),
            std::string::npos);
  EXPECT_NE(failureToRead<std::string>(item("&amp")).find("the archive is damaged: unknown entity \"&amp"),
            std::string::npos);
  EXPECT_NE(failureToRead<int>("<item key=\"K&bad;\">5</item>")
                .find("the archive is damaged: unknown entity \"&bad;\""),
            std::string::npos);
}

TEST(XmlArchive, RefusesBytesThatXmlExcludes)
{
  for (const std::string& bytes :
       {std::string("\xFF"), std::string("\xC3"), std::string("\xED\xA0\x80"), std::string("\x01"),
        std::string(1, '\0'), std::string("\x1F"), std::string("\xEF\xBF\xBF"), std::string("\xC0\x80"),
        std::string("\xF5\x80\x80\x80")})
  {
    EXPECT_EQ(failureToRead<std::string>(item("ab" + bytes + "c")),
              "Archive stream, line 3, column 19: the archive is damaged: a byte that is no UTF-8 or no "
              "character of XML");
    EXPECT_EQ(failureToRead<std::string>(item("x") + "<!-- " + bytes + " -->").substr(0, 34),
              "Archive stream, line 4, column 6: ");
  }
}

TEST(XmlArchive, NamesTheLineOfABadByteInALongText)
{
  constexpr std::size_t nbLines = 400; // some 10 KiB
  for (std::size_t bad = 0; bad < nbLines; ++bad)
  {
    std::string content;
    for (std::size_t line = 0; line < nbLines; ++line)
      content += item(line == bad ? "ab\x01" : line % 3 == 0 ? "\xC3\xA9t\xC3\xA9" : "ab");
    EXPECT_EQ(failureToRead<std::string>(content),
              "Archive stream, line " + std::to_string(3 + bad) +
                  ", column 19: the archive is damaged: a byte that is no UTF-8 or no character of XML");
  }
}

TEST(XmlArchive, RefusesRepeatedAndUnknownAttributes)
{
  EXPECT_EQ(failureToRead<int>("<item key=\"K\" key=\"K\">5</item>"),
            "Archive stream, line 3, column 1: the archive is damaged: repeated attribute \"key\" of item");
  EXPECT_EQ(failureToRead<int>("<item key=\"K\" other=\"1\">5</item>"),
            "Archive stream, line 3, column 1: the archive is damaged: unknown attribute \"other\" of item");
  EXPECT_EQ(failureToRead<int>("<item key=\"K\" size=\"1\">5</item>"),
            "Archive stream, line 3, column 1: the archive is damaged: unknown attribute \"size\" of item");
  EXPECT_EQ(failureToRead<std::string>("<item key=\"K\" encoding=\"hex\">00</item>"),
            "Archive stream, line 3, column 1: the archive is damaged: unknown encoding \"hex\"");
  EXPECT_EQ(failureToOpen("<orvelArchive format=\"1\" format=\"1\"/>"),
            "Archive stream, line 1, column 1: the archive is damaged: repeated attribute \"format\" of "
            "orvelArchive");
}

TEST(XmlArchive, RefusesWhatIsNotWellFormed)
{
  for (const std::string content :
       {"<item key=\"K\">5</itm>", "<item key=\"K>5</item>", "<item key=K>5</item>", "<item key=\"K\">5",
        "</section>", "<item key=\"K\">5</item><", "<item key=\"K\"5</item>", "<!-- open", "<![CDATA[ open"})
  {
    const std::string message = failureToOpen(XmlFormat::wrap(content));
    EXPECT_TRUE(message.find(": the archive is damaged: ") != std::string::npos ||
                message.find(": the archive is cut short") != std::string::npos)
        << content << " " << message;
  }
}

TEST(XmlArchive, SaysThatItIsCutShort)
{
  const std::string file = XmlFormat::wrap(item("5"));
  const std::string message = failureToOpen(file.substr(0, file.size() - 20));
  EXPECT_NE(message.find(": the archive is cut short"), std::string::npos) << message;
}

} // namespace
