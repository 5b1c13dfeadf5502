#include "ORVELSerialization/BinaryArchive.h"

#include <limits>
#include <stdexcept>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "ArchiveTesting.h"
#include "SampleClasses.h"
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr std::size_t g_headerSize = 18;

template <class T>
std::string contentOf(const T& value)
{
  const std::string file =
      fileBy<BinaryFormat>([&](BaseOArchive& archive) { archive << SerializationOItem("K", value); });
  const std::size_t end = file.rfind(std::string("\x83\x63") + "end");
  const std::string content = file.substr(g_headerSize, end - g_headerSize);
  EXPECT_EQ(file, BinaryFormat::wrap(content)); // header, size and hash by other means
  return content;
}

std::string bytes(std::initializer_list<int> values)
{
  std::string text;
  for (const int value : values)
    text += static_cast<char>(value);
  return text;
}

/// Read an item of type T from a file with that content.
template <class T>
T valueOf(const std::string& content)
{
  T value{};
  readWhole<BinaryFormat>(BinaryFormat::wrap(content),
                          [&](BaseIArchive& archive) { archive >> SerializationIItem("K", value); });
  return value;
}

template <class T>
std::string failureToRead(const std::string& content)
{
  return messageOf<ORVELSerializationException>([&] { valueOf<T>(content); });
}

// The bytes

TEST(BinaryArchive, BeginsWithTheMarkOfCborAndItsFormat)
{
  const std::string file = fileBy<BinaryFormat>([](BaseOArchive&) {});
  EXPECT_EQ(file.substr(0, g_headerSize), bytes({0xD9, 0xD9, 0xF7, 0x83, 0x65, 'O', 'R', 'V', 'E', 'L', 0x01,
                                                 0x66, 'l', 'i', 't', 't', 'l', 'e'}));
}

TEST(BinaryArchive, EndsWithTheNumberOfBytesAndTheirHash)
{
  const std::string file =
      fileBy<BinaryFormat>([](BaseOArchive& archive) { archive << SerializationOItem("K", 1); });
  ASSERT_EQ(file.size(), g_headerSize + 1 + 1 + 4 + 1 + 9);
  EXPECT_EQ(file.substr(g_headerSize + 1, 6), bytes({0x83, 0x63, 'e', 'n', 'd', 0x13}));
  EXPECT_EQ(file, BinaryFormat::wrap("\x01"));
}

TEST(BinaryArchive, FilesBooleansAndNull)
{
  EXPECT_EQ(contentOf(false), "\xF4");
  EXPECT_EQ(contentOf(true), "\xF5");
  EXPECT_EQ(contentOf(TestPointPtr()), "\x9F\x9F\xF6\xFF\xFF");
}

TEST(BinaryArchive, FilesIntegersInTheirShortestForm)
{
  // The borders of RFC 8949, section 3, and its examples in appendix A.
  EXPECT_EQ(contentOf(0UL), bytes({0x00}));
  EXPECT_EQ(contentOf(23UL), bytes({0x17}));
  EXPECT_EQ(contentOf(24UL), bytes({0x18, 0x18}));
  EXPECT_EQ(contentOf(100UL), bytes({0x18, 0x64}));
  EXPECT_EQ(contentOf(255UL), bytes({0x18, 0xFF}));
  EXPECT_EQ(contentOf(256UL), bytes({0x19, 0x01, 0x00}));
  EXPECT_EQ(contentOf(1000UL), bytes({0x19, 0x03, 0xE8}));
  EXPECT_EQ(contentOf(65535UL), bytes({0x19, 0xFF, 0xFF}));
  EXPECT_EQ(contentOf(65536UL), bytes({0x1A, 0x00, 0x01, 0x00, 0x00}));
  EXPECT_EQ(contentOf(1000000UL), bytes({0x1A, 0x00, 0x0F, 0x42, 0x40}));
  EXPECT_EQ(contentOf(4294967295UL), bytes({0x1A, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(contentOf(4294967296UL), bytes({0x1B, 0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(contentOf(1000000000000UL), bytes({0x1B, 0, 0, 0, 0xE8, 0xD4, 0xA5, 0x10, 0x00}));
  EXPECT_EQ(contentOf(18446744073709551615UL), bytes({0x1B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(contentOf(-1L), bytes({0x20}));
  EXPECT_EQ(contentOf(-24L), bytes({0x37}));
  EXPECT_EQ(contentOf(-25L), bytes({0x38, 0x18}));
  EXPECT_EQ(contentOf(-100L), bytes({0x38, 0x63}));
  EXPECT_EQ(contentOf(-256L), bytes({0x38, 0xFF}));
  EXPECT_EQ(contentOf(-257L), bytes({0x39, 0x01, 0x00}));
  EXPECT_EQ(contentOf(-1000L), bytes({0x39, 0x03, 0xE7}));
  EXPECT_EQ(contentOf(-65537L), bytes({0x3A, 0, 1, 0, 0}));
  EXPECT_EQ(contentOf(-4294967297L), bytes({0x3B, 0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(contentOf(std::numeric_limits<long>::min()),
            bytes({0x3B, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(contentOf(std::numeric_limits<long>::max()),
            bytes({0x1B, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(contentOf(static_cast<signed char>(-128)), bytes({0x38, 0x7F}));
}

TEST(BinaryArchive, FilesFloatsInTheirOwnWidth)
{
  EXPECT_EQ(contentOf(100000.0F), bytes({0xFA, 0x47, 0xC3, 0x50, 0x00}));
  EXPECT_EQ(contentOf(1.0F), bytes({0xFA, 0x3F, 0x80, 0x00, 0x00}));
  EXPECT_EQ(contentOf(-0.0F), bytes({0xFA, 0x80, 0x00, 0x00, 0x00}));
  EXPECT_EQ(contentOf(std::numeric_limits<float>::infinity()), bytes({0xFA, 0x7F, 0x80, 0x00, 0x00}));
  EXPECT_EQ(contentOf(std::numeric_limits<float>::quiet_NaN()), bytes({0xFA, 0x7F, 0xC0, 0x00, 0x00}));
  EXPECT_EQ(contentOf(1.1), bytes({0xFB, 0x3F, 0xF1, 0x99, 0x99, 0x99, 0x99, 0x99, 0x9A}));
  EXPECT_EQ(contentOf(-4.1), bytes({0xFB, 0xC0, 0x10, 0x66, 0x66, 0x66, 0x66, 0x66, 0x66}));
  EXPECT_EQ(contentOf(1.0), bytes({0xFB, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0}));
}

TEST(BinaryArchive, FilesStringsAsTextsWhereTheyAreUtf8)
{
  EXPECT_EQ(contentOf(std::string()), bytes({0x60}));
  EXPECT_EQ(contentOf(std::string("IETF")), bytes({0x64, 'I', 'E', 'T', 'F'}));
  EXPECT_EQ(contentOf(std::string("\xC3\xBC")), bytes({0x62, 0xC3, 0xBC}));
  EXPECT_EQ(contentOf(std::string("a\0b", 3)), bytes({0x63, 'a', 0, 'b'}));
  EXPECT_EQ(contentOf(std::string("\xFF")), bytes({0x41, 0xFF}));
  EXPECT_EQ(contentOf(std::string("\xC0\x80")), bytes({0x42, 0xC0, 0x80}));
  EXPECT_EQ(contentOf(std::string("\xED\xA0\x80")), bytes({0x43, 0xED, 0xA0, 0x80}));
  EXPECT_EQ(contentOf(std::string(24, 'x')), bytes({0x78, 24}) + std::string(24, 'x'));
  EXPECT_EQ(contentOf(std::string(256, 'x')), bytes({0x79, 1, 0}) + std::string(256, 'x'));
  EXPECT_EQ(contentOf(boost::filesystem::path("/a")), bytes({0x62, '/', 'a'}));
}

TEST(BinaryArchive, FilesSectionsAndObjectsInPlaceAsArraysOfUnknownLength)
{
  // object [ section [ version 3 ] x y ]
  EXPECT_EQ(contentOf(TestPoint(1, -1)), bytes({0x9F, 0x9F, 0x03, 0xFF, 0x01, 0x20, 0xFF}));
}

TEST(BinaryArchive, FilesVectorsOfNumbersAsBlocksInTheMachinesByteOrder)
{
  EXPECT_EQ(contentOf(std::vector<unsigned short>{1, 0x1234}),
            bytes({0x9F, 0x9F, 0x02, 0x44, 0x01, 0x00, 0x34, 0x12, 0xFF, 0xFF}));
  EXPECT_EQ(contentOf(std::vector<unsigned char>{}), bytes({0x9F, 0x9F, 0x00, 0x40, 0xFF, 0xFF}));
  EXPECT_EQ(contentOf(std::vector<bool>{true}), bytes({0x9F, 0x9F, 0x01, 0xF5, 0xFF, 0xFF}));
}

TEST(BinaryArchive, FilesEnumerationsAsNumbers)
{
  EXPECT_EQ(contentOf(eDataType(eDataType::eDT_Real64)), bytes({0x0B}));
}

TEST(BinaryArchive, FilesSharedObjectsUnderTheTagsOfIdentity)
{
  const TestPointPtr first = boost::make_shared<TestPoint>(1, 2);
  const TestPointPtr second = boost::make_shared<TestPoint>(3, 4);
  const std::string content = contentOf(std::vector<TestPointPtr>{first, second, first});
  EXPECT_EQ(content,
            bytes({0x9F, 0x9F, 0x03}) +                                                   //
                bytes({0x9F, 0x9F, 0xD8, 28, 0x9F, 0x70}) + "orvel::TestPoint" +          //
                bytes({0x9F, 0x03, 0xFF, 0x01, 0x02, 0xFF, 0xFF, 0xFF}) +                 // its version
                bytes({0x9F, 0x9F, 0xD8, 28, 0x9F, 0x00, 0x03, 0x04, 0xFF, 0xFF, 0xFF}) + // by number
                bytes({0x9F, 0x9F, 0xD8, 29, 0x00, 0xFF, 0xFF, 0xFF, 0xFF}));             // again
}

TEST(BinaryArchive, NumbersClassesAsTheyAppear)
{
  const std::string content = contentOf(
      std::vector<SerializationObjectPtr>{boost::make_shared<TestPoint>(), boost::make_shared<TestWithMode>(),
                                          boost::make_shared<TestWithMode>()});
  EXPECT_NE(content.find(bytes({0xD8, 28, 0x9F, 0x73}) + "orvel::TestWithMode"), std::string::npos);
  EXPECT_NE(content.find(bytes({0xD8, 28, 0x9F, 0x01, 0xFF})), std::string::npos);
}

// What a reader accepts

TEST(BinaryArchive, ReadsIntegersAlsoInLongerForms)
{
  EXPECT_EQ(valueOf<int>(bytes({0x18, 0x05})), 5);
  EXPECT_EQ(valueOf<int>(bytes({0x1B, 0, 0, 0, 0, 0, 0, 0, 5})), 5);
  EXPECT_EQ(valueOf<signed char>(bytes({0x39, 0x00, 0x7F})), -128);
}

TEST(BinaryArchive, ChecksIntegersAgainstTheWidthThatIsAskedFor)
{
  const auto outOfRange = [](const std::string& value, const std::string& range)
  {
    return "Archive stream, byte 18: value " + value + " of item \"K\" is out of range, should be in " +
           range;
  };
  EXPECT_EQ(failureToRead<unsigned char>(contentOf(256)), outOfRange("256", "[0, 255]"));
  EXPECT_EQ(failureToRead<unsigned char>(contentOf(-1)), outOfRange("-1", "[0, 255]"));
  EXPECT_EQ(failureToRead<signed char>(contentOf(128)), outOfRange("128", "[-128, 127]"));
  EXPECT_EQ(failureToRead<signed char>(contentOf(-129)), outOfRange("-129", "[-128, 127]"));
  EXPECT_EQ(failureToRead<short>(contentOf(32768)), outOfRange("32768", "[-32768, 32767]"));
  EXPECT_EQ(failureToRead<short>(contentOf(-32769)), outOfRange("-32769", "[-32768, 32767]"));
  EXPECT_EQ(failureToRead<unsigned short>(contentOf(65536)), outOfRange("65536", "[0, 65535]"));
  EXPECT_EQ(failureToRead<int>(contentOf(2147483648L)),
            outOfRange("2147483648", "[-2147483648, 2147483647]"));
  EXPECT_EQ(failureToRead<int>(contentOf(-2147483649L)),
            outOfRange("-2147483649", "[-2147483648, 2147483647]"));
  EXPECT_EQ(failureToRead<unsigned int>(contentOf(4294967296L)), outOfRange("4294967296", "[0, 4294967295]"));
  EXPECT_EQ(failureToRead<long>(contentOf(9223372036854775808UL)),
            outOfRange("9223372036854775808", "[-9223372036854775808, 9223372036854775807]"));
  EXPECT_EQ(failureToRead<unsigned long>(contentOf(-1)), outOfRange("-1", "[0, 18446744073709551615]"));
  EXPECT_EQ(failureToRead<long>(bytes({0x3B, 0x80, 0, 0, 0, 0, 0, 0, 0})),
            outOfRange("-9223372036854775809", "[-9223372036854775808, 9223372036854775807]"));
  EXPECT_EQ(failureToRead<unsigned char>(bytes({0x3B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})),
            outOfRange("-18446744073709551616", "[0, 255]"));
}

TEST(BinaryArchive, NamesWhatItExpectedAndWhatItFound)
{
  const auto unexpected = [](const std::string& expected, const std::string& found)
  {
    return "Archive stream, byte 18: expected " + expected + " as item \"K\", found " + found;
  };
  EXPECT_EQ(failureToRead<int>("\xF5"), unexpected("an integer", "true"));
  EXPECT_EQ(failureToRead<int>("\xF4"), unexpected("an integer", "false"));
  EXPECT_EQ(failureToRead<int>("\xF6"), unexpected("an integer", "null"));
  EXPECT_EQ(failureToRead<int>(bytes({0xF7})), unexpected("an integer", "an unknown value"));
  EXPECT_EQ(failureToRead<int>(contentOf(1.0F)), unexpected("an integer", "a 32-bit float"));
  EXPECT_EQ(failureToRead<int>(contentOf(1.0)), unexpected("an integer", "a 64-bit float"));
  EXPECT_EQ(failureToRead<unsigned int>(contentOf(std::string("abc"))),
            unexpected("an integer", "a text of 3 bytes"));
  EXPECT_EQ(failureToRead<int>(contentOf(std::string("\xFF"))),
            unexpected("an integer", "a block of 1 bytes"));
  EXPECT_EQ(failureToRead<int>(bytes({0x9F, 0xFF})),
            unexpected("an integer", "the start of a section or an object"));
  EXPECT_EQ(failureToRead<int>(bytes({0xFF})), unexpected("an integer", "the end of a section or an object"));
  EXPECT_EQ(failureToRead<int>(bytes({0xD8, 28, 0x9F, 0xFF})), unexpected("an integer", "an object"));
  EXPECT_EQ(failureToRead<int>(bytes({0xD8, 29, 0x00})),
            unexpected("an integer", "a reference to an object"));
  EXPECT_EQ(failureToRead<int>(bytes({0xC1, 0x00})), unexpected("an integer", "tag 1"));
  EXPECT_EQ(failureToRead<int>(bytes({0xA0})), unexpected("an integer", "a map"));
  EXPECT_EQ(failureToRead<bool>(bytes({0x01})), unexpected("a boolean", "the integer 1"));
  EXPECT_EQ(failureToRead<float>(contentOf(1.0)), unexpected("a 32-bit float", "a 64-bit float"));
  EXPECT_EQ(failureToRead<float>(contentOf(1)), unexpected("a 32-bit float", "the integer 1"));
  EXPECT_EQ(failureToRead<double>(contentOf(1.0F)), unexpected("a 64-bit float", "a 32-bit float"));
  EXPECT_EQ(failureToRead<double>(bytes({0xF9, 0x3C, 0x00})),
            unexpected("a 64-bit float", "an unknown value"));
  EXPECT_EQ(failureToRead<std::string>(contentOf(-5)), unexpected("a text", "the integer -5"));
  EXPECT_EQ(failureToRead<std::string>(bytes({0x7F, 0x61, 'a', 0xFF})),
            unexpected("a text", "a text of unknown length"));
  EXPECT_EQ(
      messageOf<ORVELSerializationException>([] { objectOfFile<BinaryFormat>(BinaryFormat::wrap("\x01")); }),
      "Archive stream, byte 18: expected an object as item \"object\", found the integer 1");
  EXPECT_EQ(failureToRead<TestPoint>("\x01"),
            "Archive stream, byte 18: expected the start of an object, found the "
            "integer 1");
  EXPECT_EQ(failureToRead<std::vector<int>>("\x01"),
            "Archive stream, byte 18: expected the start of a section, found the integer 1");
}

TEST(BinaryArchive, MeetsTheEndMarkWhereAnItemIsMissing)
{
  EXPECT_EQ(failureToRead<int>(""),
            "Archive stream, byte 18: expected an integer as item \"K\", found the end of the archive");
}

TEST(BinaryArchive, RefusesABlockOfAnotherSize)
{
  char data[4];
  const auto read = [&](const std::string& content)
  {
    return messageOf<ORVELSerializationException>(
        [&]
        {
          readWhole<BinaryFormat>(BinaryFormat::wrap(content),
                                  [&](BaseIArchive& archive) { archive.readBlock(data, 4); });
        });
  };
  EXPECT_EQ(read("\x43"
                 "abc"),
            "Archive stream, byte 18: expected a block of 4 bytes, found a block of 3 bytes");
  EXPECT_EQ(read("\x45"
                 "abcde"),
            "Archive stream, byte 18: expected a block of 4 bytes, found a block of 5 bytes");
  EXPECT_EQ(read("\x64"
                 "abcd"),
            "Archive stream, byte 18: expected a block of 4 bytes, found a text of 4 bytes");
  EXPECT_EQ(read(bytes({0x5F, 0x44, 1, 2, 3, 4, 0xFF})),
            "Archive stream, byte 18: expected a block of 4 bytes, found a block of unknown length");
}

TEST(BinaryArchive, FailsWithTheNextOperationIfASectionHoldsMore)
{
  std::istringstream stream(BinaryFormat::wrap(bytes({0x9F, 0x01, 0x02, 0xFF})));
  BinaryIArchive archive(stream);
  int value = 0;
  {
    const ArchiveSectionManager section(archive, "s");
    archive >> SerializationIItem("K", value);
  }
  EXPECT_TRUE(archive.isFailed());
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.close(); }),
            "Archive stream, byte 20: expected the end of the section, found the integer 2");
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.close(); }),
            "Archive stream, byte 20: the archive can't be used after a failure");
}

TEST(BinaryArchive, ReportsASectionThatHoldsMoreAtTheEndOfItsObject)
{
  struct EndsWithASection : TestPoint
  {
    BoolResult read(BaseIArchive& archive) override
    {
      const ArchiveSectionManager section(archive, "s");
      archive >> SerializationIItem("K", _x);
      return BoolResult(true);
    }
  } object;
  std::istringstream stream(BinaryFormat::wrap(bytes({0x9F, 0x9F, 0x01, 0x02, 0xFF, 0xFF})));
  BinaryIArchive archive(stream);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.readObject("K", object); }),
            "Archive stream, byte 21: expected the end of the section, found the integer 2");
}

TEST(BinaryArchive, RefusesAnObjectThatHoldsMore)
{
  EXPECT_EQ(failureToRead<TestPoint>(bytes({0x9F, 0x9F, 0x03, 0xFF, 0x01, 0x02, 0x05, 0xFF})),
            "Archive stream, byte 24: expected the end of the object, found the integer 5");
}

// A CBOR tool would refuse such a text, too.
TEST(BinaryArchive, RefusesTextStringsThatAreNoUtf8)
{
  const std::string damaged = ": the archive is damaged: a text string is not UTF-8";
  for (const std::string& text : {bytes({0x61, 0xFF}), bytes({0x62, 0xC0, 0x80}), bytes({0x62, 'a', 0xC3}),
                                  bytes({0x63, 0xED, 0xA0, 0x80}), bytes({0x64, 0xF4, 0x90, 0x80, 0x80})})
  {
    EXPECT_EQ(failureToRead<std::string>(text), "Archive stream, byte 18" + damaged);
    EXPECT_EQ(failureToRead<boost::filesystem::path>(text), "Archive stream, byte 18" + damaged);
    EXPECT_EQ(messageOf<ORVELSerializationException>(
                  [&] { objectOfFile<BinaryFormat>(BinaryFormat::wrap("\xD8\x1C\x9F" + text + "\xFF")); }),
              "Archive stream, byte 18" + damaged);
    std::string asBytes = text;
    asBytes[0] = static_cast<char>(asBytes[0] - 0x20);
    EXPECT_EQ(valueOf<std::string>(asBytes), text.substr(1));
  }
  EXPECT_EQ(failureToRead<std::string>(bytes({0x7A, 0, 1, 0, 0}) + std::string(65535, 'x') + "\xC3"),
            "Archive stream, byte 18" + damaged);
}

TEST(BinaryArchive, RefusesToSkipATextStringThatIsNoUtf8)
{
  std::istringstream stream(BinaryFormat::wrap(bytes({0x9F, 0x61, 0xFF, 0xFF})));
  BinaryIArchive archive(stream);
  EXPECT_THROW(
      {
        const ArchiveSectionManager section(archive, "s");
        throw std::runtime_error("half way");
      },
      std::runtime_error);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.close(); }),
            "Archive stream, byte 19: the archive can't be used after a failure");
}

// References and classes

TEST(BinaryArchive, RefusesReferencesToWhatDoesNotStandBefore)
{
  const auto read = [](const std::string& content)
  {
    return messageOf<ORVELSerializationException>(
        [&] { objectOfFile<BinaryFormat>(BinaryFormat::wrap(content)); });
  };
  EXPECT_EQ(read(bytes({0xD8, 29, 0x00})),
            "Archive stream, byte 18: reference to object the integer 0, which doesn't stand before it");
  EXPECT_EQ(read(bytes({0xD8, 29, 0xF5})),
            "Archive stream, byte 18: reference to object true, which doesn't stand before it");
  EXPECT_EQ(read(bytes({0xD8, 28, 0x9F, 0x00})),
            "Archive stream, byte 18: expected a class, found the integer 0");
  EXPECT_EQ(read(bytes({0xD8, 28, 0x9F, 0xF6})), "Archive stream, byte 18: expected a class, found null");
  EXPECT_EQ(read(bytes({0xD8, 28, 0x01})),
            "Archive stream, byte 20: expected the start of an object, found the integer 1");
}

// Header and end

std::string failureToOpen(const std::string& file)
{
  return messageOf<ORVELSerializationException>(
      [&]
      {
        std::istringstream stream(file);
        BinaryIArchive archive(stream);
      });
}

TEST(BinaryArchive, RefusesWhatIsNoArchive)
{
  const std::string start = "Archive stream, byte 0: this is not an archive: ";
  EXPECT_EQ(failureToOpen(""), start + "it doesn't start with the mark of CBOR");
  EXPECT_EQ(failureToOpen("\xD9\xD9"), start + "it doesn't start with the mark of CBOR");
  EXPECT_EQ(failureToOpen("<?xml version=\"1.0\"?>"), start + "it doesn't start with the mark of CBOR");
  EXPECT_EQ(failureToOpen("\xD9\xD9\xF7\x01"), start + "it is CBOR with other content");
  EXPECT_EQ(failureToOpen("\xD9\xD9\xF7\x83\x65OTHER\x01\x66little"),
            start + "it is CBOR with other content");
  EXPECT_EQ(failureToOpen("\xD9\xD9\xF7\x83\x45ORVEL\x01\x66little"),
            start + "it is CBOR with other content");
  EXPECT_EQ(failureToOpen("\xD9\xD9\xF7\x81\x65ORVEL"), start + "it is CBOR with other content");
  EXPECT_EQ(failureToOpen(bytes({0xD9, 0xD9, 0xF7, 0x9F}) + "\x65ORVEL\x01\x66little"),
            start + "it is CBOR with other content");
  EXPECT_EQ(
      failureToOpen(bytes({0xD9, 0xD9, 0xF7, 0x83, 0x7B, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})),
      start + "it is CBOR with other content");
}

TEST(BinaryArchive, RefusesOtherFormatVersionsAndByteOrders)
{
  EXPECT_EQ(failureToOpen("\xD9\xD9\xF7\x83\x65ORVEL\x02\x66little"),
            "Archive stream, byte 10: format version 2 is not supported, the supported version is 1");
  EXPECT_EQ(
      failureToOpen(bytes({0xD9, 0xD9, 0xF7, 0x83, 0x65, 'O', 'R', 'V', 'E', 'L', 0x00}) + "\x66little"),
      "Archive stream, byte 10: format version 0 is not supported, the supported version is 1");
  EXPECT_EQ(
      failureToOpen("\xD9\xD9\xF7\x83\x65ORVEL\x01\x63"
                    "big"),
      "Archive stream, byte 11: byte order \"big\" is not supported, the supported order is \"little\"");
}

TEST(BinaryArchive, RefusesToCloseWhileItemsAreLeft)
{
  std::istringstream stream(BinaryFormat::wrap("\x05"));
  BinaryIArchive archive(stream);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.close(); }),
            "Archive stream, byte 18: items are left unread, found the integer 5");
  EXPECT_TRUE(archive.isFailed());
}

TEST(BinaryArchive, RefusesDataBehindTheEnd)
{
  const std::string file = BinaryFormat::wrap("");
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&] { readWhole<BinaryFormat>(file + "x", [](BaseIArchive&) {}); }),
            "Archive stream, byte " + std::to_string(file.size()) +
                ": there is data behind the end of the archive");
}

TEST(BinaryArchive, RefusesAContentThatIsNotWhatWasWritten)
{
  std::string file = BinaryFormat::wrap("\x05");
  file[g_headerSize] = '\x06';
  int value = 0;
  const auto read = [&]
  {
    readWhole<BinaryFormat>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("K", value); });
  };
  EXPECT_EQ(messageOf<ORVELSerializationException>(read),
            "Archive stream, byte 19: the content doesn't match its hash");
  EXPECT_EQ(value, 6); // handed out before the end was seen

  file = BinaryFormat::wrap("\x05");
  file.back() = static_cast<char>(file.back() ^ 1);
  EXPECT_EQ(messageOf<ORVELSerializationException>(read),
            "Archive stream, byte 19: the content doesn't match its hash");
  file = BinaryFormat::wrap("\x05");
  file[g_headerSize + 6] = '\x12'; // the number of bytes
  EXPECT_EQ(messageOf<ORVELSerializationException>(read),
            "Archive stream, byte 19: the content doesn't match its hash");
}

TEST(BinaryArchive, RefusesAnEndMarkThatIsNone)
{
  const std::string start = BinaryFormat::wrap("").substr(0, g_headerSize);
  for (const std::string& end : {std::string("\x83\x63"
                                             "eXd\x12\x00",
                                             7),
                                 std::string("\x82\x63"
                                             "end\x12",
                                             6),
                                 std::string("\x83\x63"
                                             "end\xF5\x00",
                                             7),
                                 std::string("\x83\x43"
                                             "end\x12\x00",
                                             7),
                                 std::string("\x83\x63"
                                             "end\x12\xF6",
                                             7),
                                 std::string("\x80", 1)})
  {
    const std::string message = messageOf<ORVELSerializationException>(
        [&] { readWhole<BinaryFormat>(start + end + "xxxxxxxxx", [](BaseIArchive&) {}); });
    EXPECT_EQ(message, "Archive stream, byte 18: the archive is damaged: the end mark is none");
  }
}

TEST(BinaryArchive, TellsWhereItIsCutShort)
{
  const std::string file = BinaryFormat::wrap(std::string("\x19\x01\x00", 3));
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&]
                {
                  readWhole<BinaryFormat>(file.substr(0, 20), [](BaseIArchive& archive)
                                          { static_cast<void>(archive.readInteger("K", 0, 1000)); });
                }),
            "Archive stream, byte 20: the archive is cut short");
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&] { readWhole<BinaryFormat>(file.substr(0, 18), [](BaseIArchive&) {}); }),
            "Archive stream, byte 18: the archive is cut short");
}

TEST(BinaryArchive, RefusesBytesWithoutAMeaning)
{
  for (const int byte : {0x1C, 0x1D, 0x1E, 0x1F, 0x3C, 0x3F, 0x5C, 0x7E, 0x9C, 0xBD, 0xDC, 0xDF, 0xFC, 0xFE})
  {
    const std::string message = failureToRead<int>(bytes({byte}));
    EXPECT_EQ(message.substr(0, 46), "Archive stream, byte 18: the archive is damage")
        << byte << " " << message;
  }
}

TEST(BinaryArchive, DoesNotCompareKeys)
{
  const std::string file =
      fileBy<BinaryFormat>([](BaseOArchive& archive) { archive << SerializationOItem("K", 1); });
  readWhole<BinaryFormat>(file,
                          [](BaseIArchive& archive) { EXPECT_EQ(archive.readInteger("other", 0, 5), 1); });
}

TEST(BinaryArchive, KeepsTheOldTextIfTheNewOneIsNotReadWhole)
{
  struct ThrowsLater : std::stringbuf
  {
    using std::stringbuf::stringbuf;
    int nbReads = 0;
    std::streamsize xsgetn(char* data, std::streamsize size) override
    {
      if (++nbReads == 2)
        throw std::runtime_error("the disk is dead");
      return std::stringbuf::xsgetn(data, size);
    }
  } buffer(fileBy<BinaryFormat>([](BaseOArchive& archive)
                                { archive << SerializationOItem("K", std::string(300000, 'x')); }));
  std::istream stream(&buffer);
  BinaryIArchive archive(stream);
  std::string text = "old";
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", text); }),
            "Archive stream, byte 18: read failed: the disk is dead");
  EXPECT_EQ(text, "old");
}

TEST(BinaryArchive, IsFailedAfterAnythingThatAStreamBufferThrows)
{
  struct ThrowsOnce : UnseekableBuffer
  {
    using UnseekableBuffer::UnseekableBuffer;
    int nbPieces = 0;
    int_type underflow() override
    {
      if (++nbPieces == 200)
        throw 7;
      return UnseekableBuffer::underflow();
    }
  };
  std::string block(300000, 'x');
  ThrowsOnce buffer(BinaryFormat::wrap(cborHead(2, block.size()) + block));
  std::istream stream(&buffer);
  BinaryIArchive archive(stream);
  EXPECT_THROW(archive.readBlock(block.data(), block.size()), int); // part of the block has been taken
  EXPECT_TRUE(archive.isFailed());
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.readBool("K"); }),
            "Archive stream, byte 18: the archive can't be used after a failure");
}

} // namespace
