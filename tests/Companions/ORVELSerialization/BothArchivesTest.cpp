// What both concrete archives do alike: values, identity, limits, and what follows a failure.

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "ArchiveTesting.h"
#include "SampleClasses.h"
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

template <class Format>
class BothArchives : public testing::Test
{
};

TYPED_TEST_SUITE(BothArchives, Formats, );

template <class To, class From>
To bitsOf(From value)
{
  static_assert(sizeof(To) == sizeof(From));
  To bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// Values

template <class Format, class T>
void expectKept(T value)
{
  EXPECT_EQ((throughFile<Format, T>(value)), value);
}

TYPED_TEST(BothArchives, KeepIntegersOfEveryWidthAtTheirLimits)
{
  using F = TypeParam;
  expectKept<F>(true);
  expectKept<F>(false);
  const auto both = [](auto example)
  {
    using T = decltype(example);
    for (const T value :
         {std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), T{0}, T{1}, static_cast<T>(-1)})
      expectKept<F>(value);
  };
  both(static_cast<signed char>(0));
  both(static_cast<unsigned char>(0));
  both(static_cast<short>(0));
  both(static_cast<unsigned short>(0));
  both(0);
  both(0U);
  both(0L);
  both(0UL);
}

TYPED_TEST(BothArchives, KeepEveryBitOfFloats)
{
  for (const ipUInt32 bits :
       {0x00000000U, 0x80000000U, 0x00000001U, 0x80000001U, 0x007FFFFFU, 0x00800000U, 0x3F800000U,
        0x3DCCCCCDU, 0x7F7FFFFFU, 0xFF7FFFFFU, 0x7F800000U, 0xFF800000U, 0x7FC00000U, 0xFFC00000U,
        0x7FC00001U, 0x7F800001U, 0xFFFFFFFFU, 0x7FFFFFFFU, 0x7FA00000U})
    EXPECT_EQ((bitsOf<ipUInt32>(throughFile<TypeParam>(bitsOf<float>(bits)))), bits);
  std::mt19937 random(1);
  for (int i = 0; i < 3000; ++i)
  {
    const auto bits = static_cast<ipUInt32>(random());
    EXPECT_EQ((bitsOf<ipUInt32>(throughFile<TypeParam>(bitsOf<float>(bits)))), bits);
  }
}

TYPED_TEST(BothArchives, KeepEveryBitOfDoubles)
{
  for (const ipUInt64 bits :
       {0x0000000000000000UL, 0x8000000000000000UL, 0x0000000000000001UL, 0x8000000000000001UL,
        0x000FFFFFFFFFFFFFUL, 0x0010000000000000UL, 0x3FB999999999999AUL, 0x7FEFFFFFFFFFFFFFUL,
        0x7FF0000000000000UL, 0xFFF0000000000000UL, 0x7FF8000000000000UL, 0xFFF8000000000000UL,
        0x7FF8000000000001UL, 0x7FF0000000000001UL, 0xFFFFFFFFFFFFFFFFUL})
    EXPECT_EQ((bitsOf<ipUInt64>(throughFile<TypeParam>(bitsOf<double>(bits)))), bits);
  std::mt19937_64 random(2);
  for (int i = 0; i < 3000; ++i)
  {
    const ipUInt64 bits = random();
    EXPECT_EQ((bitsOf<ipUInt64>(throughFile<TypeParam>(bitsOf<double>(bits)))), bits);
  }
}

TYPED_TEST(BothArchives, KeepEveryByteAloneAndInPairs)
{
  std::vector<std::string> strings;
  for (int first = 0; first < 256; ++first)
  {
    strings.emplace_back(1, static_cast<char>(first));
    for (int second = 0; second < 256; ++second)
      strings.push_back({static_cast<char>(first), static_cast<char>(second)});
  }
  EXPECT_TRUE(throughFile<TypeParam>(strings) == strings);
}

TYPED_TEST(BothArchives, KeepTextsOfEveryKind)
{
  const std::vector<std::string> strings = {
      "",
      " ",
      "\n",
      "\t",
      "  blanks at both ends  ",
      "\n lines \n\n",
      "\r\n",
      "<&>\"'",
      "]]>",
      "<![CDATA[x]]>",
      "<!-- no comment -->",
      "&amp;&#10;&lt;",
      "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", // one, two and three bytes beyond ASCII
      "\xC0\x80",                             // an overlong form
      "\xED\xA0\x80",                         // half a pair of surrogates
      "\xF4\x90\x80\x80",                     // beyond the last character
      "\xEF\xBF\xBE",                         // U+FFFE
      "\xEF\xBF\xBF",                         // U+FFFF
      "\xEF\xBB\xBF",                         // the byte order mark
      "\xC2\x85\xE2\x80\xA8",                 // line ends of other worlds
      "\x7F",
      std::string(1, '\0'),
      std::string("a\0b", 3),
      std::string(100000, 'x'),
      std::string(300000, ' '),
      std::string(70000, '\0'),
      "base64",
      "dHJ1ZQ==",
      "true",
      "1,5"};
  for (const std::string& text : strings)
    EXPECT_TRUE(throughFile<TypeParam>(text) == text) << text.substr(0, 40);
}

TYPED_TEST(BothArchives, KeepPaths)
{
  for (const std::string text : {"", "/", "a", "/a/b c/\xC3\xA4", "a\xFF\n/b", "..//x/./"})
  {
    const boost::filesystem::path path(text);
    EXPECT_EQ(throughFile<TypeParam>(path).native(), text);
  }
}

TYPED_TEST(BothArchives, KeepContainers)
{
  using F = TypeParam;
  expectKept<F>(std::vector<unsigned char>{});
  expectKept<F>(std::vector<signed char>{-128, 0, 127});
  expectKept<F>(std::vector<short>{-32768, 32767});
  expectKept<F>(std::vector<unsigned long>(1000, 18446744073709551615UL));
  expectKept<F>(std::vector<double>{0.1, -1e300});
  expectKept<F>(std::vector<bool>{true, false, true});
  expectKept<F>(std::vector<bool>{});
  expectKept<F>(std::vector<std::vector<std::string>>{{"a", ""}, {}, {std::string(1, '\0')}});
  expectKept<F>(std::set<TestPoint>{TestPoint(1, 2), TestPoint(3, 4)});
  expectKept<F>(std::map<std::string, std::vector<float>>{{"", {}}, {"a", {1.5F}}});
  expectKept<F>(std::map<TestPoint, bool>{{TestPoint(1, 2), true}});
}

TYPED_TEST(BothArchives, KeepABlockOfAnySize)
{
  for (const std::size_t size : {0UL, 1UL, 2UL, 3UL, 56UL, 57UL, 58UL, 4095UL, 4096UL, 4097UL, 131071UL,
                                 131072UL, 131073UL, 262143UL, 262144UL, 262145UL, 1000000UL})
  {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
      bytes[i] = static_cast<char>(i * 7 + (i >> 8U));
    const std::string file = fileBy<TypeParam>(
        [&](BaseOArchive& archive)
        {
          archive.writeBlock(bytes.data(), bytes.size());
          archive.writeBool("K", true);
        });
    std::string copy(size, 'x');
    readWhole<TypeParam>(file,
                         [&](BaseIArchive& archive)
                         {
                           archive.readBlock(copy.data(), copy.size());
                           EXPECT_TRUE(archive.readBool("K"));
                         });
    EXPECT_TRUE(copy == bytes) << size;
  }
}

TYPED_TEST(BothArchives, GiveTheSameBytesForTheSameObjects)
{
  const std::string file = fileOfObject<TypeParam>(TestMix::makeFull());
  const boost::shared_ptr<TestMix> another = TestMix::makeFull();
  EXPECT_EQ(fileOfObject<TypeParam>(another), file);
  EXPECT_EQ(fileOfObject<TypeParam>(another), file);
  EXPECT_EQ(fileOfObject<TypeParam>(objectOfFile<TypeParam>(file)), file);
}

TYPED_TEST(BothArchives, KeepAnObjectWithSomethingOfEverything)
{
  const boost::shared_ptr<TestMix> mix = TestMix::makeFull();
  for (const bool untrusted : {false, true})
  {
    const SerializationObjectPtr copy = objectOfFile<TypeParam>(fileOfObject<TypeParam>(mix), untrusted);
    ASSERT_NE(boost::dynamic_pointer_cast<TestMix>(copy), nullptr);
    EXPECT_TRUE(dynamic_cast<const TestMix&>(*copy) == *mix);
  }
}

TYPED_TEST(BothArchives, DoNotCompareTheNamesOfSections)
{
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      {
        const ArchiveSectionManager section(archive, "one name");
        archive << SerializationOItem("K", 1);
      });
  readWhole<TypeParam>(file,
                       [](BaseIArchive& archive)
                       {
                         const ArchiveSectionManager section(archive, "another <name>");
                         int value = 0;
                         archive >> SerializationIItem("K", value);
                         EXPECT_EQ(value, 1);
                       });
}

TYPED_TEST(BothArchives, AnswerWhetherTheyFileElementsApart)
{
  std::ostringstream stream;
  EXPECT_EQ(typename TypeParam::OArchive(stream).isElementWise(), (std::is_same_v<TypeParam, XmlFormat>));
  std::istringstream input(TypeParam::wrap(""));
  EXPECT_EQ(typename TypeParam::IArchive(input).isElementWise(), (std::is_same_v<TypeParam, XmlFormat>));
}

TYPED_TEST(BothArchives, MayBeEmpty)
{
  const std::string file = fileBy<TypeParam>([](BaseOArchive&) {});
  EXPECT_EQ(file, TypeParam::wrap(""));
  readWhole<TypeParam>(file, [](BaseIArchive&) {});
}

// Sections that an exception leaves

struct OwnFailure
{
};

/// A file of a section with `write(archive)` in it, and of the number 7 behind it.
template <class Format, class Write>
std::string fileWithSection(Write write)
{
  return fileBy<Format>(
      [&](BaseOArchive& archive)
      {
        {
          const ArchiveSectionManager section(archive, "s");
          write(archive);
        }
        archive << SerializationOItem("K", 7);
      });
}

/// Leaves a section by an exception after read(archive), and checks that the number behind it is found.
template <class Format, class Read>
void expectSkipped(const std::string& file, Read read)
{
  readWhole<Format>(file,
                    [&](BaseIArchive& archive)
                    {
                      EXPECT_THROW(
                          {
                            const ArchiveSectionManager section(archive, "s");
                            read(archive);
                            throw OwnFailure();
                          },
                          OwnFailure);
                      EXPECT_FALSE(archive.isFailed());
                      int value = 0;
                      archive >> SerializationIItem("K", value);
                      EXPECT_EQ(value, 7);
                    });
}

TYPED_TEST(BothArchives, WriteOnBehindASectionThatAnExceptionHasLeft)
{
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      {
        EXPECT_THROW(
            {
              const ArchiveSectionManager outer(archive, "outer");
              const ArchiveSectionManager inner(archive, "inner");
              archive << SerializationOItem("A", 1);
              throw OwnFailure();
            },
            OwnFailure);
        EXPECT_FALSE(archive.isFailed());
        archive << SerializationOItem("K", 7);
      });
  readWhole<TypeParam>(file,
                       [](BaseIArchive& archive)
                       {
                         int value = 0;
                         {
                           const ArchiveSectionManager outer(archive, "outer");
                           const ArchiveSectionManager inner(archive, "inner");
                           archive >> SerializationIItem("A", value);
                         }
                         archive >> SerializationIItem("K", value);
                         EXPECT_EQ(value, 7);
                       });
}

TYPED_TEST(BothArchives, SkipWhatIsLeftOfASectionThatAnExceptionLeaves)
{
  const std::string file = fileWithSection<TypeParam>(
      [](BaseOArchive& archive)
      {
        archive << SerializationOItem("A", 1) << SerializationOItem("M", TestMix::makeFull())
                << SerializationOItem("I", TestMix()) << SerializationOItem("N", -300L)
                << SerializationOItem("T", std::string("\xFF")) << SerializationOItem("E", std::string());
        const std::string block(300000, 'x');
        archive.writeBlock(block.data(), block.size());
        const ArchiveSectionManager inner(archive, "inner");
        archive << SerializationOItem("B", std::vector<bool>{true, false});
      });
  expectSkipped<TypeParam>(file, [](BaseIArchive&) {});
  expectSkipped<TypeParam>(file,
                           [](BaseIArchive& archive)
                           {
                             int value = 0;
                             archive >> SerializationIItem("A", value);
                             EXPECT_EQ(value, 1);
                           });
  const std::string empty = fileWithSection<TypeParam>([](BaseOArchive&) {});
  expectSkipped<TypeParam>(empty, [](BaseIArchive&) {});
}

TYPED_TEST(BothArchives, SkipSectionsOneWithinTheOther)
{
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      {
        const ArchiveSectionManager outer(archive, "outer");
        {
          const ArchiveSectionManager inner(archive, "inner");
          archive << SerializationOItem("A", 1);
        }
        archive << SerializationOItem("K", 7);
      });
  readWhole<TypeParam>(file,
                       [](BaseIArchive& archive)
                       {
                         const ArchiveSectionManager outer(archive, "outer");
                         EXPECT_THROW(
                             {
                               const ArchiveSectionManager inner(archive, "inner");
                               throw OwnFailure();
                             },
                             OwnFailure);
                         int value = 0;
                         archive >> SerializationIItem("K", value);
                         EXPECT_EQ(value, 7);
                       });
  expectSkipped<TypeParam>(
      fileWithSection<TypeParam>([](BaseOArchive& archive)
                                 { const ArchiveSectionManager inner(archive, "inner"); }),
      [](BaseIArchive& archive)
      {
        const ArchiveSectionManager inner(archive, "inner");
        throw OwnFailure();
      });
}

TYPED_TEST(BothArchives, SkipSectionsOfAnyDepth)
{
  constexpr int depth = 100000; // a call for each would need more than the stack
  std::string starts;
  std::string ends;
  for (int i = 0; i <= depth; ++i)
  {
    starts += std::is_same_v<TypeParam, XmlFormat> ? "<section name=\"s\">" : "\x9F";
    ends += std::is_same_v<TypeParam, XmlFormat> ? "</section>" : "\xFF";
  }
  const std::string number = std::is_same_v<TypeParam, XmlFormat> ? "<item key=\"K\">7</item>" : "\x07";
  expectSkipped<TypeParam>(TypeParam::wrap(starts + ends + number), [](BaseIArchive&) {});
}

TYPED_TEST(BothArchives, NumberSharedObjectsOnBehindThoseThatWereSkipped)
{
  const auto skipped = boost::make_shared<TestNode>();
  skipped->_next = boost::make_shared<TestNode>();
  const TestPointPtr point = boost::make_shared<TestPoint>(3, 4);
  const std::string file = fileBy<TypeParam>(
      [&](BaseOArchive& archive)
      {
        archive << SerializationOItem("A", boost::make_shared<TestPoint>(1, 2));
        {
          const ArchiveSectionManager section(archive, "s");
          archive << SerializationOItem("B", skipped);
        }
        archive << SerializationOItem("C", point) << SerializationOItem("D", point)
                << SerializationOItem("E", skipped);
      });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  TestPointPtr first;
  TestPointPtr copy;
  TestPointPtr again;
  TestNodePtr missing;
  archive >> SerializationIItem("A", first);
  EXPECT_THROW(
      {
        const ArchiveSectionManager section(archive, "s");
        throw OwnFailure();
      },
      OwnFailure);
  archive >> SerializationIItem("C", copy) >> SerializationIItem("D", again);
  EXPECT_TRUE(*copy == TestPoint(3, 4));
  EXPECT_EQ(again, copy);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("E", missing); });
  EXPECT_NE(message.find(": reference to object "), std::string::npos) << message;
  EXPECT_EQ(missing, nullptr);
}

TYPED_TEST(BothArchives, NumberClassesOnBehindThoseThatWereSkipped)
{
  const std::string file = fileBy<TypeParam>(
      [&](BaseOArchive& archive)
      {
        archive << SerializationOItem("A", boost::make_shared<TestPoint>(1, 2));
        {
          const ArchiveSectionManager section(archive, "s");
          archive << SerializationOItem("B", boost::make_shared<TestWithMode>());
        }
        archive << SerializationOItem("C", boost::make_shared<TestMix>())
                << SerializationOItem("D", boost::make_shared<TestMix>());
      });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  TestPointPtr point;
  archive >> SerializationIItem("A", point);
  EXPECT_THROW(
      {
        const ArchiveSectionManager section(archive, "s");
        throw OwnFailure();
      },
      OwnFailure);
  boost::shared_ptr<TestMix> mix;
  archive.setUntrusted(true);
  archive >> SerializationIItem("C", mix) >> SerializationIItem("D", mix);
  EXPECT_TRUE(*mix == TestMix());
  archive.close();
}

TYPED_TEST(BothArchives, AreFailedIfASectionCanNotBeSkipped)
{
  const bool isXml = std::is_same_v<TypeParam, XmlFormat>;
  const std::vector<std::string> contents =
      isXml ? std::vector<std::string>{"<other/>",
                                       "<section name=\"t\">text</section>",
                                       "<item key=\"K\"/><![CDATA[x]]>",
                                       "<item key=\"K\">&other;</item>",
                                       "<item other=\"1\"/>",
                                       "<item key=\"K\"><item key=\"K\"/></item>",
                                       "<pointer key=\"K\" id=\"2\" class=\"orvel::TestPoint\"/>",
                                       "<pointer key=\"K\" id=\"1\"/>"}
            : std::vector<std::string>{
                  "\xA0",                                 // a map
                  "\x80",                                 // an array of definite length
                  "\x7F\x61 \xFF",                        // a text of unknown length
                  "\x5F\x41 \xFF",                        // a block of unknown length
                  "\xF7",                                 // an unknown value
                  "\xFC",                                 // no item at all
                  "\x63 x",                               // a text that is cut short
                  "\x5A\xFF\xFF\xFF\xFF",                 // a block that is cut short
                  "\x62\xC3 ",                            // no UTF-8
                  "\xC1\x01",                             // an unknown tag
                  "\xD8\x1C\x01",                         // an object that is none
                  std::string("\xD8\x1C\x9F\x00\xFF", 5), // an object of an unknown class number
                  "\xD8\x1C\x9F\x61\xFF\xFF",             // one whose class is no UTF-8
                  std::string("\xD8\x1D\x00", 3),         // a reference to no object
                  "\xD8\x1D\x61 ",                        // a reference without a number
                  "\x9F"                                  // a section without an end
              };
  for (const std::string& content : contents)
  {
    std::istringstream stream(isXml ? TypeParam::wrap("<section name=\"s\">" + content + "</section>")
                                    : TypeParam::wrap("\x9F" + content + "\xFF"));
    typename TypeParam::IArchive archive(stream);
    EXPECT_THROW(
        {
          const ArchiveSectionManager section(archive, "s");
          throw OwnFailure(); // and not that of the archive
        },
        OwnFailure);
    EXPECT_TRUE(archive.isFailed()) << content;
    EXPECT_THROW(archive.close(), ORVELSerializationException);
  }
}

TYPED_TEST(BothArchives, SkipWithinTheWorkThatTheirLengthAllows)
{
  const std::string file = fileWithSection<TypeParam>(
      [](BaseOArchive& archive) { archive << SerializationOItem("A", std::vector<bool>(10000, true)); });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  archive.setLimits({128, 0});
  EXPECT_THROW(
      {
        const ArchiveSectionManager section(archive, "s");
        throw OwnFailure();
      },
      OwnFailure);
  EXPECT_TRUE(archive.isFailed());
}

/// Writes and reads a number in a section, and throws if it is negative.
struct Picky : TestPoint
{
  BoolResult write(BaseOArchive& archive) const override
  {
    const ArchiveSectionManager section(archive, "picky");
    archive << SerializationOItem("x", _x);
    if (_x < 0)
      throw OwnFailure();
    return BoolResult(true);
  }
  BoolResult read(BaseIArchive& archive) override
  {
    const ArchiveSectionManager section(archive, "picky");
    archive >> SerializationIItem("x", _x);
    throw OwnFailure();
  }
};

TYPED_TEST(BothArchives, AreFailedIfAnObjectLeavesASectionByAnException)
{
  Picky picky;
  const std::string file = fileBy<TypeParam>([&](BaseOArchive& archive) { archive.writeObject("K", picky); });
  picky._x = -1;
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  EXPECT_THROW(output.writeObject("K", picky), OwnFailure);
  EXPECT_TRUE(output.isFailed());
  std::istringstream input(file);
  typename TypeParam::IArchive archive(input);
  EXPECT_THROW(archive.readObject("K", picky), OwnFailure);
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(BothArchives, AreFailedByAFailureOfTheirOwnWithinASection)
{
  std::istringstream stream(
      fileWithSection<TypeParam>([](BaseOArchive& archive) { archive << SerializationOItem("A", 300); }));
  typename TypeParam::IArchive archive(stream);
  EXPECT_THROW(
      {
        const ArchiveSectionManager section(archive, "s");
        unsigned char small = 0;
        archive >> SerializationIItem("A", small);
      },
      ORVELSerializationException);
  EXPECT_TRUE(archive.isFailed());
}

// Archives of the caller's own

TYPED_TEST(BothArchives, PassEverySharedObjectThroughWriteObjectPtr)
{
  struct Counting : TypeParam::OArchive
  {
    using TypeParam::OArchive::OArchive;
    int nbPointers = 0;
    void writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item) override
    {
      EXPECT_EQ(item.getKey(), "pObject");
      ++nbPointers;
      TypeParam::OArchive::writeObjectPtr(item);
    }
  };
  std::ostringstream stream;
  Counting archive(stream);
  const TestPointPtr point = boost::make_shared<TestPoint>();
  const auto node = boost::make_shared<TestNode>(); // writes a null pointer
  node->_children = {point};
  archive << SerializationOItem("A", point) << SerializationOItem("B", TestPointPtr());
  EXPECT_EQ(archive.nbPointers, 2);
  archive << SerializationOItem("C", std::vector<TestPointPtr>{point, nullptr});
  EXPECT_EQ(archive.nbPointers, 4);
  archive << SerializationOItem("D", std::map<int, TestPointPtr>{{1, point}});
  EXPECT_EQ(archive.nbPointers, 5);
  archive << SerializationOItem("E", SerializationObjectPtr(node));
  EXPECT_EQ(archive.nbPointers, 8); // the node, its null pointer and its child
  archive << SerializationOItem("F", SerializationObjectConstPtr(point));
  EXPECT_EQ(archive.nbPointers, 9);
}

// Objects in place

TYPED_TEST(BothArchives, KeepTheIdentityOfAnObjectInPlace)
{
  const std::string file =
      fileBy<TypeParam>([](BaseOArchive& archive) { archive << SerializationOItem("K", TestPoint(1, 2)); });
  TestPoint point;
  BaseSerializationObject& root = point;
  readWhole<TypeParam>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("K", root); });
  EXPECT_TRUE(point == TestPoint(1, 2));
}

TYPED_TEST(BothArchives, FileAVersionOncePerArchive)
{
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      {
        for (int i = 0; i < 3; ++i)
          archive << SerializationOItem("K", TestPoint(i, -i));
      });
  readWhole<TypeParam>(file,
                       [](BaseIArchive& archive)
                       {
                         for (int i = 0; i < 3; ++i)
                         {
                           TestPoint point;
                           archive >> SerializationIItem("K", point);
                           EXPECT_TRUE(point == TestPoint(i, -i));
                         }
                         EXPECT_EQ(archive.getRegisterClassVersion("orvel::TestPoint"), 3U);
                       });
}

// Shared objects

template <class Format>
TestNodePtr nodeThrough(const TestNodePtr& node, bool untrusted = false)
{
  return boost::dynamic_pointer_cast<TestNode>(objectOfFile<Format>(fileOfObject<Format>(node), untrusted));
}

TYPED_TEST(BothArchives, BringSharedObjectsBackAsOne)
{
  const auto root = boost::make_shared<TestNode>();
  const auto shared = boost::make_shared<TestNode>();
  shared->_value = 5;
  root->_next = shared;
  root->_children = {shared, boost::make_shared<TestNode>(), shared, nullptr};
  for (const bool untrusted : {false, true})
  {
    const TestNodePtr copy = nodeThrough<TypeParam>(root, untrusted);
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->_children.size(), 4U);
    EXPECT_EQ(copy->_next->_value, 5);
    EXPECT_EQ(copy->_children[0], copy->_next);
    EXPECT_EQ(copy->_children[2], copy->_next);
    EXPECT_NE(copy->_children[1], copy->_next);
    EXPECT_EQ(copy->_children[3], nullptr);
    EXPECT_EQ(copy->_next.use_count(), 3);
  }
}

TYPED_TEST(BothArchives, FileASharedObjectOnceAlsoIfItIsChangedMeanwhile)
{
  const TestPointPtr point = boost::make_shared<TestPoint>(1, 2);
  const std::string file = fileBy<TypeParam>(
      [&](BaseOArchive& archive)
      {
        archive << SerializationOItem("A", point);
        point->_x = 9;
        archive << SerializationOItem("B", point);
      });
  TestPointPtr first;
  TestPointPtr second;
  readWhole<TypeParam>(file, [&](BaseIArchive& archive)
                       { archive >> SerializationIItem("A", first) >> SerializationIItem("B", second); });
  EXPECT_TRUE(*first == TestPoint(1, 2));
  EXPECT_EQ(second, first);
}

TYPED_TEST(BothArchives, BringNullBack)
{
  EXPECT_EQ(objectOfFile<TypeParam>(fileOfObject<TypeParam>(nullptr)), nullptr);
  SerializationObjectPtr object = boost::make_shared<TestPoint>();
  readWhole<TypeParam>(fileOfObject<TypeParam>(nullptr),
                       [&](BaseIArchive& archive) {
                         archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", object));
                       });
  EXPECT_EQ(object, nullptr);
}

TYPED_TEST(BothArchives, BringCyclesBack)
{
  const auto first = boost::make_shared<TestNode>();
  first->_next = boost::make_shared<TestNode>();
  first->_next->_next = first;
  first->_next->_children = {first->_next};
  const TestNodePtr copy = nodeThrough<TypeParam>(first);
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(copy, first);
  EXPECT_NE(copy->_next, copy);
  EXPECT_EQ(copy->_next->_next, copy);
  EXPECT_EQ(copy->_next->_children.at(0), copy->_next);
  for (const TestNodePtr& node : {first, copy}) // cycles must be opened by hand
  {
    node->_next->_children.clear();
    node->_next.reset();
  }
}

TYPED_TEST(BothArchives, BringAnObjectThatHoldsItselfBack)
{
  const auto node = boost::make_shared<TestNode>();
  node->_next = node;
  node->_children = {node, node};
  const TestNodePtr copy = nodeThrough<TypeParam>(node);
  EXPECT_EQ(copy->_next, copy);
  EXPECT_EQ(copy->_children, (std::vector<SerializationObjectPtr>{copy, copy}));
  for (const TestNodePtr& each : {node, copy})
  {
    each->_children.clear();
    TestNodePtr(each)->_next.reset();
  }
}

TYPED_TEST(BothArchives, TellObjectsApartThatComeAtOneAddressInTurn)
{
  // Each temporary dies after it was filed; the next one would be given its address.
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      {
        for (int i = 0; i < 50; ++i)
        {
          const TestPointPtr point = boost::make_shared<TestPoint>(i, 0);
          archive << SerializationOItem("K", point);
        }
      });
  readWhole<TypeParam>(file,
                       [](BaseIArchive& archive)
                       {
                         for (int i = 0; i < 50; ++i)
                         {
                           TestPointPtr point;
                           archive >> SerializationIItem("K", point);
                           EXPECT_EQ(point->_x, i);
                           EXPECT_EQ(point.use_count(), 2); // the archive's and this one
                         }
                       });
}

TYPED_TEST(BothArchives, KeepWhatTheyHaveNumberedAliveAndLetItGoInTheEnd)
{
  const int nbBefore = TestNode::g_nbAlive;
  {
    std::ostringstream stream;
    typename TypeParam::OArchive archive(stream);
    archive << SerializationOItem("K", TestNodePtr(boost::make_shared<TestNode>()));
    EXPECT_EQ(TestNode::g_nbAlive, nbBefore + 1);
  }
  EXPECT_EQ(TestNode::g_nbAlive, nbBefore);
}

TYPED_TEST(BothArchives, KeepManySharedObjects)
{
  constexpr int nbPoints = 5000;
  std::vector<TestPointPtr> points;
  for (int i = 0; i < nbPoints; ++i)
    points.push_back(boost::make_shared<TestPoint>(i, 2 * i));
  for (int i = 0; i < nbPoints; ++i)
    points.push_back(points[static_cast<std::size_t>(nbPoints - 1 - i)]);
  const std::vector<TestPointPtr> copies = throughFile<TypeParam>(points);
  ASSERT_EQ(copies.size(), points.size());
  for (std::size_t i = 0; i < nbPoints; ++i)
  {
    EXPECT_TRUE(*copies[i] == *points[i]);
    EXPECT_EQ(copies[2 * nbPoints - 1 - i], copies[i]);
  }
}

TYPED_TEST(BothArchives, RefuseAnObjectOfAnUnknownClass)
{
  std::string file = fileOfObject<TypeParam>(boost::make_shared<TestPoint>());
  const std::size_t name = file.find("orvel::TestPoint");
  file.replace(name, 16, "orvel::TestPoinX");
  const std::string place = std::is_same_v<TypeParam, XmlFormat> ? "line 3, column 3" : "byte 18";
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { objectOfFile<TypeParam>(file); }),
            "Archive stream, " + place + ": unknown class \"orvel::TestPoinX\"");
}

TYPED_TEST(BothArchives, RefuseAClassThatCanNotBeFiled)
{
  const std::string name = "orvel::TestNotSerializable";
  const std::string file =
      std::is_same_v<TypeParam, XmlFormat>
          ? TypeParam::wrap("<pointer key=\"object\" id=\"1\" class=\"" + name + "\"></pointer>")
          : TypeParam::wrap("\xD8\x1C\x9F\x78\x1A" + name + "\xFF");
  const std::string place = std::is_same_v<TypeParam, XmlFormat> ? "line 3, column 1" : "byte 18";
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { objectOfFile<TypeParam>(file); }),
            "Archive stream, " + place +
                ": an object of class orvel::TestNotSerializable can't stand for class "
                "orvel::BaseSerializationObject");
}

/// A class that is registered, or not, as a test asks for it.
class Fleeting
{
public:
  enum class Creator
  {
    makesPoints,
    makesNothing,
    makesWhatCanNotBeStored
  };

  Fleeting() { g_creator = Creator::makesPoints; }
  ~Fleeting() { unRegister(); }
  Fleeting(const Fleeting&) = delete;
  Fleeting& operator=(const Fleeting&) = delete;

  static void doRegister() { factory().registerClass(g_name, &createNew, &createShared); }
  static void unRegister() { factory().unRegisterClass(g_name, &createNew); }

  static constexpr const char* g_name = "orvel::Fleeting1"; // as long as "orvel::TestPoint"
  static Creator g_creator;

private:
  static DynamicObjectFactory& factory() { return DynamicObjectFactory::getInstance(); }
  static BaseDynamicObject* createNew() { return nullptr; }
  static DynamicObjectPtr createShared()
  {
    switch (g_creator)
    {
    case Creator::makesPoints:
      return boost::make_shared<TestPoint>();
    case Creator::makesNothing:
      return nullptr;
    default:
      return boost::make_shared<TestNotSerializable>();
    }
  }
};
Fleeting::Creator Fleeting::g_creator = Creator::makesPoints;

/// A file of two objects of the class under the key "object".
template <class Format>
std::string fileOfFleeting()
{
  std::string file = fileBy<Format>(
      [](BaseOArchive& archive)
      {
        for (int i = 0; i < 2; ++i)
        {
          const SerializationObjectPtr point = boost::make_shared<TestPoint>(i, i);
          archive.writeObjectPtr(SerializationOItem("object", point));
        }
      });
  for (std::size_t at = 0; (at = file.find("orvel::TestPoint", at)) != std::string::npos;)
    file.replace(at, 16, Fleeting::g_name);
  return file;
}

template <class Format, class Between>
void expectSecondObject(const std::string& failure, Between between)
{
  const Fleeting fleeting;
  Fleeting::doRegister();
  std::istringstream stream(fileOfFleeting<Format>());
  typename Format::IArchive archive(stream);
  SerializationObjectPtr object;
  const SerializationIItem<SerializationObjectPtr> item("object", object);
  archive.readObjectPtr(item);
  ASSERT_NE(object, nullptr);
  between();
  if (failure.empty())
  {
    archive.readObjectPtr(item);
    EXPECT_TRUE(dynamic_cast<const TestPoint&>(*object) == TestPoint(1, 1));
    return;
  }
  const std::string message = messageOf<ORVELSerializationException>([&] { archive.readObjectPtr(item); });
  EXPECT_NE(message.find(failure), std::string::npos) << message;
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(BothArchives, AskTheFactoryForEachObject)
{
  expectSecondObject<TypeParam>("", [] {});
  expectSecondObject<TypeParam>(": unknown class \"orvel::Fleeting1\"", [] { Fleeting::unRegister(); });
  expectSecondObject<TypeParam>("",
                                []
                                {
                                  Fleeting::unRegister();
                                  Fleeting::doRegister();
                                });
}

TYPED_TEST(BothArchives, LookAtEachObjectThatACreatorMakes)
{
  const std::string wrongClass =
      ": an object of class orvel::Fleeting1 can't stand for class orvel::BaseSerializationObject";
  expectSecondObject<TypeParam>(wrongClass, [] { Fleeting::g_creator = Fleeting::Creator::makesNothing; });
  expectSecondObject<TypeParam>(wrongClass,
                                [] { Fleeting::g_creator = Fleeting::Creator::makesWhatCanNotBeStored; });
}

TYPED_TEST(BothArchives, RefuseTheWrongClassWhenUntrusted)
{
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      { archive << SerializationOItem("K", SerializationObjectPtr(boost::make_shared<TestPoint>())); });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  archive.setUntrusted(true);
  TestNodePtr node;
  const std::string message =
      messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", node); });
  EXPECT_EQ(message.substr(0, 16), "Archive stream, ");
  EXPECT_NE(message.find(": an object of class orvel::TestPoint can't stand for class orvel::TestNode"),
            std::string::npos)
      << message;
  EXPECT_EQ(node, nullptr);
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(BothArchives, ConvertWithoutACheckWhenTrusted)
{
  if (isSanitized)
    GTEST_SKIP() << "a conversion on trust to a wrong class is what the sanitizers look for";
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      { archive << SerializationOItem("K", SerializationObjectPtr(boost::make_shared<TestPoint>())); });
  readWhole<TypeParam>(file,
                       [](BaseIArchive& archive)
                       {
                         TestNodePtr node;
                         archive >> SerializationIItem("K", node);
                         EXPECT_EQ(node->getClassName(), "orvel::TestPoint");
                       });
}

// Limits

TYPED_TEST(BothArchives, WriteAndReadObjectsToTheLimitOfDepth)
{
  // 127 nests within the outermost: 128 objects in one another.
  const TestNest deepest(127);
  const std::string file =
      fileBy<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("K", deepest); });
  TestNest copy;
  readWhole<TypeParam>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("K", copy); });
  EXPECT_EQ(copy.getDepth(), 127);
}

TYPED_TEST(BothArchives, RefuseToWriteBeyondTheLimitOfDepth)
{
  std::ostringstream stream;
  typename TypeParam::OArchive archive(stream);
  const TestNest tooDeep(128);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { archive << SerializationOItem("K", tooDeep); });
  EXPECT_NE(message.find(": more than 128 objects within objects"), std::string::npos) << message;
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(BothArchives, RefuseToReadBeyondTheLimitOfDepth)
{
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      {
        archive.setLimits({129, 16});
        archive << SerializationOItem("K", TestNest(128));
      });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  TestNest copy;
  const std::string message =
      messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", copy); });
  EXPECT_NE(message.find(": more than 128 objects within objects"), std::string::npos) << message;

  std::istringstream again(file);
  typename TypeParam::IArchive generous(again);
  generous.setLimits({129, 16});
  generous >> SerializationIItem("K", copy);
  EXPECT_EQ(copy.getDepth(), 128);
}

TYPED_TEST(BothArchives, CountPointersAndObjectsInPlaceAlike)
{
  const auto chain = [](int length)
  {
    TestNodePtr node;
    for (int i = 0; i < length; ++i)
    {
      const auto before = boost::make_shared<TestNode>();
      before->_next = node;
      node = before;
    }
    return node;
  };
  // The last node of a chain holds a point in place: one more object.
  EXPECT_NE(nodeThrough<TypeParam>(chain(127)), nullptr);
  EXPECT_THROW(fileOfObject<TypeParam>(chain(128)), ORVELSerializationException);
}

/// Chains filed bottom up: each node stands at the top and refers to the one before.
void fileUpward(BaseOArchive& archive, int length)
{
  TestNodePtr node;
  for (int i = 0; i < length; ++i)
  {
    const auto next = boost::make_shared<TestNode>();
    next->_next = node;
    node = next;
    archive << SerializationOItem("K", node);
  }
}

TYPED_TEST(BothArchives, CountWhatAReferenceBringsAsObjectsWithinObjects)
{
  const std::string file = fileBy<TypeParam>([](BaseOArchive& archive) { fileUpward(archive, 127); });
  readWhole<TypeParam>(file,
                       [](BaseIArchive& archive)
                       {
                         for (int i = 0; i < 127; ++i)
                         {
                           TestNodePtr node;
                           archive >> SerializationIItem("K", node);
                         }
                       });
}

TYPED_TEST(BothArchives, RefuseReferencesThatWriteBeyondTheLimitOfDepth)
{
  std::ostringstream stream;
  typename TypeParam::OArchive archive(stream);
  const std::string message = messageOf<ORVELSerializationException>([&] { fileUpward(archive, 128); });
  EXPECT_NE(message.find(": more than 128 objects within objects"), std::string::npos) << message;
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(BothArchives, RefuseReferencesThatReadBeyondTheLimitOfDepth)
{
  const std::string file = fileBy<TypeParam>(
      [](BaseOArchive& archive)
      {
        archive.setLimits({100000, 16});
        fileUpward(archive, 1000); // a few bytes each: nobody could let a long chain go again
      });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  int nbRead = 0;
  const std::string message = messageOf<ORVELSerializationException>(
      [&]
      {
        for (; nbRead < 1000; ++nbRead)
        {
          TestNodePtr node;
          archive >> SerializationIItem("K", node);
        }
      });
  EXPECT_NE(message.find(": more than 128 objects within objects"), std::string::npos) << message;
  EXPECT_EQ(nbRead, 127); // each holds a point in place: the last one would be 129 deep
}

TYPED_TEST(BothArchives, RefuseMoreWorkThanTheirLengthAllows)
{
  const std::vector<bool> values(5000, true);
  const std::string file =
      fileBy<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("K", values); });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  archive.setLimits({128, 0});
  std::vector<bool> copy;
  const std::string message =
      messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", copy); });
  EXPECT_NE(message.find(": more work asked for than the length of the archive allows"), std::string::npos)
      << message;
  EXPECT_EQ(throughFile<TypeParam>(values), values);
}

// After a failure, after the end

template <class Operation>
void expectFailedBefore(Operation operation, const std::string& expected)
{
  EXPECT_EQ(messageOf<ORVELSerializationException>(operation), expected);
}

TYPED_TEST(BothArchives, AnswerEveryUseAfterAFailureWithOneError)
{
  std::istringstream stream(
      fileBy<TypeParam>([](BaseOArchive& archive) { archive << SerializationOItem("K", 300); }));
  typename TypeParam::IArchive archive(stream);
  unsigned char small = 7;
  EXPECT_THROW(archive >> SerializationIItem("K", small), ORVELSerializationException);
  EXPECT_EQ(small, 7);
  EXPECT_TRUE(archive.isFailed());
  EXPECT_FALSE(archive.isClosed());

  const std::string place = std::is_same_v<TypeParam, XmlFormat> ? "line 3, column 3" : "byte 18";
  const std::string expected = "Archive stream, " + place + ": the archive can't be used after a failure";
  int value = 0;
  TestPoint point;
  TestPointPtr pointer;
  std::string text;
  std::vector<int> values;
  SerializationObjectPtr object;
  expectFailedBefore([&] { archive >> SerializationIItem("K", value); }, expected);
  expectFailedBefore([&] { archive.readUnsigned("K", 1); }, expected);
  expectFailedBefore([&] { archive.readReal32("K"); }, expected);
  expectFailedBefore([&] { archive.readReal64("K"); }, expected);
  expectFailedBefore([&] { archive.readBool("K"); }, expected);
  expectFailedBefore([&] { archive.readBlock(&value, 1); }, expected);
  expectFailedBefore([&] { archive >> SerializationIItem("K", text); }, expected);
  expectFailedBefore([&] { archive >> SerializationIItem("K", point); }, expected);
  expectFailedBefore([&] { archive >> SerializationIItem("K", pointer); }, expected);
  expectFailedBefore([&] { archive >> SerializationIItem("K", values); }, expected);
  expectFailedBefore([&] { archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("K", object)); },
                     expected);
  expectFailedBefore([&] { archive.checkCount(1); }, expected);
  expectFailedBefore([&] { const ArchiveSectionManager section(archive, "s"); }, expected);
  expectFailedBefore([&] { archive.close(); }, expected);
}

TYPED_TEST(BothArchives, AnswerEveryUseAfterAFailureToWriteWithOneError)
{
  std::ostringstream stream;
  typename TypeParam::OArchive archive(stream);
  EXPECT_THROW(archive << SerializationOItem("K", TestBrittle()), std::runtime_error);
  EXPECT_TRUE(archive.isFailed());
  const std::string first =
      messageOf<ORVELSerializationException>([&] { archive << SerializationOItem("K", 1); });
  EXPECT_NE(first.find(": the archive can't be used after a failure"), std::string::npos);
  EXPECT_EQ(first.substr(0, 21), "Archive stream, byte ");
  expectFailedBefore([&] { archive.writeBool("K", true); }, first);
  expectFailedBefore([&] { archive.writeUnsigned("K", 1); }, first);
  expectFailedBefore([&] { archive.writeReal32("K", 1); }, first);
  expectFailedBefore([&] { archive.writeReal64("K", 1); }, first);
  expectFailedBefore([&] { archive.writeString("K", "x"); }, first);
  expectFailedBefore([&] { archive.writeString("K", "\xFF"); }, first);
  expectFailedBefore([&] { archive.writeBlock("x", 1); }, first);
  expectFailedBefore([&] { archive << SerializationOItem("K", TestPoint()); }, first);
  expectFailedBefore([&] { archive << SerializationOItem("K", TestPointPtr()); }, first);
  expectFailedBefore([&] { const ArchiveSectionManager section(archive, "s"); }, first);
  expectFailedBefore([&] { archive.close(); }, first);
}

TYPED_TEST(BothArchives, CanNotBeUsedAfterTheyWereClosed)
{
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  output << SerializationOItem("K", 1);
  output.close();
  EXPECT_TRUE(output.isClosed());
  EXPECT_FALSE(output.isFailed());
  const std::string file = stream.str();
  const std::string closed = ": the archive can't be used after it was closed";
  EXPECT_NE(messageOf<ORVELSerializationException>([&] { output.close(); }).find(closed), std::string::npos);
  EXPECT_NE(
      messageOf<ORVELSerializationException>([&] { output << SerializationOItem("K", 1); }).find(closed),
      std::string::npos);
  EXPECT_EQ(stream.str(), file);
  EXPECT_TRUE(output.isClosed());

  std::istringstream input(file);
  typename TypeParam::IArchive archive(input);
  int value = 0;
  archive >> SerializationIItem("K", value);
  archive.close();
  EXPECT_TRUE(archive.isClosed());
  EXPECT_NE(messageOf<ORVELSerializationException>([&] { archive.close(); }).find(closed), std::string::npos);
  EXPECT_NE(
      messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", value); }).find(closed),
      std::string::npos);
}

TYPED_TEST(BothArchives, CanNotBeClosedWithinASection)
{
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  {
    const ArchiveSectionManager section(output, "s");
    const std::string message = messageOf<ORVELSerializationException>([&] { output.close(); });
    EXPECT_NE(message.find(": closed within a section or an object"), std::string::npos);
  }
  EXPECT_TRUE(output.isFailed());
  const std::string file =
      fileBy<TypeParam>([](BaseOArchive& archive) { const ArchiveSectionManager section(archive, "s"); });
  std::istringstream input(file);
  typename TypeParam::IArchive archive(input);
  const ArchiveSectionManager section(archive, "s");
  const std::string message = messageOf<ORVELSerializationException>([&] { archive.close(); });
  EXPECT_NE(message.find(": closed within a section or an object"), std::string::npos);
}

TYPED_TEST(BothArchives, CanNotBeClosedWithinAnObject)
{
  struct Closing : TestPoint
  {
    bool closesWhenWritten = false;
    BoolResult write(BaseOArchive& archive) const override
    {
      if (closesWhenWritten)
        archive.close();
      return BoolResult(true);
    }
    BoolResult read(BaseIArchive& archive) override
    {
      archive.close();
      return BoolResult(true);
    }
  } object;
  const std::string file =
      fileBy<TypeParam>([&](BaseOArchive& archive) { archive.writeObject("K", object); });
  object.closesWhenWritten = true;
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  const std::string writing =
      messageOf<ORVELSerializationException>([&] { output.writeObject("K", object); });
  EXPECT_NE(writing.find(": closed within a section or an object"), std::string::npos) << writing;
  EXPECT_TRUE(output.isFailed());
  std::istringstream input(file);
  typename TypeParam::IArchive archive(input);
  const std::string reading =
      messageOf<ORVELSerializationException>([&] { archive.readObject("K", object); });
  EXPECT_NE(reading.find(": closed within a section or an object"), std::string::npos) << reading;
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(BothArchives, RaiseTheFailureThatAnObjectReports)
{
  TestReluctant::g_refuses = true;
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { output << SerializationOItem("K", TestHeir()); });
  EXPECT_NE(message.find(": object of class orvel::TestHeir failed: the base can't write"), std::string::npos)
      << message;
  TestReluctant::g_refuses = false;
  std::istringstream input(
      fileBy<TypeParam>([](BaseOArchive& archive) { archive << SerializationOItem("K", TestHeir()); }));
  TestReluctant::g_refuses = true;
  typename TypeParam::IArchive archive(input);
  TestHeir heir;
  const std::string reading =
      messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", heir); });
  EXPECT_NE(reading.find(": object of class orvel::TestHeir failed: the base can't read"), std::string::npos)
      << reading;
  TestReluctant::g_refuses = false;
}

TYPED_TEST(BothArchives, AreFailedAfterANewerVersion)
{
  std::string file = fileOfObject<TypeParam>(boost::make_shared<TestPoint>(1, 2));
  if (std::is_same_v<TypeParam, XmlFormat>)
    file.replace(file.find("\"version\">3"), 11, "\"version\">4");
  else
    file.replace(file.find("\x9F\x03\xFF"), 3, "\x9F\x04\xFF");
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  SerializationObjectPtr object;
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&] { archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", object)); }),
            "Version 4 of class orvel::TestPoint is not supported, the highest supported version is 3");
  EXPECT_EQ(object, nullptr);
  EXPECT_TRUE(archive.isFailed());
}

// Streams

TYPED_TEST(BothArchives, ReadFromStreamsThatCanNotSeek)
{
  const boost::shared_ptr<TestMix> mix = TestMix::makeFull();
  mix->_reals.assign(100000, 0.25F);
  const std::string file = fileOfObject<TypeParam>(mix);
  for (const std::size_t pieceSize : {1UL, 7UL, 1000UL, 1000000UL})
  {
    UnseekableBuffer buffer(file, pieceSize);
    std::istream stream(&buffer);
    typename TypeParam::IArchive archive(stream);
    SerializationObjectPtr copy;
    archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", copy));
    archive.close();
    EXPECT_TRUE(dynamic_cast<const TestMix&>(*copy) == *mix);
  }
}

TYPED_TEST(BothArchives, ReadAStreamFromWhereItStands)
{
  const std::string file =
      fileBy<TypeParam>([](BaseOArchive& archive) { archive << SerializationOItem("K", 5); });
  std::istringstream stream("before" + file);
  stream.ignore(6);
  typename TypeParam::IArchive archive(stream);
  int value = 0;
  archive >> SerializationIItem("K", value);
  archive.close();
  EXPECT_EQ(value, 5);
}

TYPED_TEST(BothArchives, RefuseAStreamInAFailedState)
{
  std::istringstream stream(TypeParam::wrap(""));
  stream.setstate(std::ios::failbit);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { typename TypeParam::IArchive archive(stream); }),
            "Archive stream can't be opened: the stream reports an error");
}

TYPED_TEST(BothArchives, ReportWhatAStreamBufferThrows)
{
  struct Throwing : std::streambuf
  {
    int_type underflow() override { throw std::ios_base::failure("the line is dead"); }
  } buffer;
  std::istream stream(&buffer);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { typename TypeParam::IArchive archive(stream); });
  EXPECT_NE(message.find(": read failed: the line is dead"), std::string::npos) << message;
}

TYPED_TEST(BothArchives, ReportAStreamThatTakesNoMore)
{
  const std::string file = fileOfObject<TypeParam>(TestMix::makeFull());
  for (std::size_t room = 0; room < file.size(); room += 13)
  {
    FullBuffer buffer(room);
    std::ostream stream(&buffer);
    const std::string message = messageOf<ORVELSerializationException>(
        [&]
        {
          typename TypeParam::OArchive archive(stream);
          archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("object", TestMix::makeFull()));
          archive.close();
        });
    EXPECT_NE(message.find(": write failed: the stream reports an error"), std::string::npos) << message;
  }
}

TYPED_TEST(BothArchives, FlushTheStreamWhenTheyAreClosed)
{
  struct Flushed : std::stringbuf
  {
    std::string flushed;
    int answer = 0;
    int sync() override
    {
      flushed = str();
      return answer;
    }
  } buffer;
  std::ostream stream(&buffer);
  typename TypeParam::OArchive archive(stream);
  archive.close();
  EXPECT_EQ(buffer.flushed, TypeParam::wrap(""));

  typename TypeParam::OArchive refused(stream);
  buffer.answer = -1;
  const std::string message = messageOf<ORVELSerializationException>([&] { refused.close(); });
  EXPECT_NE(message.find(": write failed: the stream reports an error"), std::string::npos) << message;
  EXPECT_FALSE(refused.isClosed());
}

TYPED_TEST(BothArchives, DoNotFinishAfterAPieceWasLost)
{
  struct ThrowsOnce : std::stringbuf
  {
    bool hasThrown = false;
    std::streamsize xsputn(const char* data, std::streamsize size) override
    {
      if (!hasThrown)
      {
        hasThrown = true;
        throw std::runtime_error("once");
      }
      return std::stringbuf::xsputn(data, size);
    }
  } buffer;
  std::ostream stream(&buffer);
  stream.exceptions(std::ios::badbit | std::ios::failbit);
  typename TypeParam::OArchive archive(stream);
  const std::string block(1000000, 'x');
  EXPECT_THROW(archive.writeBlock(block.data(), block.size()), std::exception);
  stream.clear();
  EXPECT_THROW(archive.close(), ORVELSerializationException);
}

TYPED_TEST(BothArchives, AreFailedAfterAnythingThatAStreamBufferThrows)
{
  struct ThrowsOnce : std::stringbuf
  {
    bool hasThrown = false;
    std::streamsize xsputn(const char* data, std::streamsize size) override
    {
      if (!hasThrown)
      {
        hasThrown = true;
        throw 7;
      }
      return std::stringbuf::xsputn(data, size);
    }
  } buffer;
  std::ostream stream(&buffer);
  stream.exceptions(std::ios::badbit);
  typename TypeParam::OArchive archive(stream);
  const std::string block(1000000, 'x');
  EXPECT_THROW(archive.writeBlock(block.data(), block.size()), int);
  EXPECT_TRUE(archive.isFailed());
  stream.clear();
  EXPECT_THROW(archive.close(), ORVELSerializationException);
}

} // namespace
