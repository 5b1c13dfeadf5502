// Failures of archives name the operation that was called.

#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

#include "ArchiveTesting.h"
#include "RecordingArchive.h"
#include "SampleClasses.h"
#include <ORVELSerialization/ObjectFile.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

template <class Format>
class ArchiveFunctions : public testing::Test
{
protected:
  static constexpr bool isXml = std::is_same_v<Format, XmlFormat>;

  /// The class of the archive and the file that raises for it.
  static std::string classOf(const char* direction)
  {
    return std::string("orvel::") + (isXml ? "Xml" : "Binary") + direction + "Archive";
  }
  static std::string file()
  {
    return std::string("Companions/ORVELSerialization/") + (isXml ? "Xml" : "Binary") + "Archive.cpp";
  }

  /// Checks that a failure is raised in the name of an operation of the archive.
  static void expectNamed(const std::function<void()>& operation, const std::string& signature)
  {
    const auto failure = failureOf<ORVELSerializationException>(operation);
    expectFunction(failure.getFunction(), signature);
    EXPECT_EQ(failure.getFile(), file());
    EXPECT_NE(sourceLine(failure.getFile(), failure.getLine()).find("ORVEL_HERE"), std::string::npos)
        << failure.getFile() << ":" << failure.getLine();
  }

  struct Reading
  {
    const char* result;
    const char* signature;
    std::function<void(BaseIArchive&)> operation;
  };

  static std::vector<Reading> readings()
  {
    return {{"bool", "readBool(const std::string&)",
             [](BaseIArchive& archive)
             {
               archive.readBool("K");
             }},
            {"orvel::ipInt64", "readInteger(const std::string&, orvel::ipInt64, orvel::ipInt64)",
             [](BaseIArchive& archive)
             {
               archive.readInteger("K", -1, 1);
             }},
            {"orvel::ipUInt64", "readUnsigned(const std::string&, orvel::ipUInt64)",
             [](BaseIArchive& archive)
             {
               archive.readUnsigned("K", 1);
             }},
            {"orvel::ipReal32", "readReal32(const std::string&)",
             [](BaseIArchive& archive)
             {
               archive.readReal32("K");
             }},
            {"orvel::ipReal64", "readReal64(const std::string&)",
             [](BaseIArchive& archive)
             {
               archive.readReal64("K");
             }},
            {"void", "readString(const std::string&, std::string&)",
             [](BaseIArchive& archive)
             {
               std::string text;
               archive.readString("K", text);
             }},
            {"void", "readBlock(void*, orvel::ipUInt64)",
             [](BaseIArchive& archive)
             {
               char byte = 0;
               archive.readBlock(&byte, 1);
             }},
            {"void", "readObject(const std::string&, orvel::BaseSerializationObject&)",
             [](BaseIArchive& archive)
             {
               TestPoint point;
               archive.readObject("K", point);
             }},
            {"void",
             "readObjectPtr(const "
             "orvel::SerializationIItem<boost::shared_ptr<orvel::BaseSerializationObject> >&)",
             [](BaseIArchive& archive)
             {
               SerializationObjectPtr object;
               archive.readObjectPtr(SerializationIItem("K", object));
             }},
            {"void", "close()",
             [](BaseIArchive& archive)
             {
               archive.close();
             }}};
  }

  struct Writing
  {
    const char* signature;
    std::function<void(BaseOArchive&)> operation;
  };

  static std::vector<Writing> writings()
  {
    return {{"writeBool(const std::string&, bool)",
             [](BaseOArchive& archive)
             {
               archive.writeBool("\xFF", true);
             }},
            {"writeInteger(const std::string&, orvel::ipInt64)",
             [](BaseOArchive& archive)
             {
               archive.writeInteger("\xFF", 1);
             }},
            {"writeUnsigned(const std::string&, orvel::ipUInt64)",
             [](BaseOArchive& archive)
             {
               archive.writeUnsigned("\xFF", 1);
             }},
            {"writeReal32(const std::string&, orvel::ipReal32)",
             [](BaseOArchive& archive)
             {
               archive.writeReal32("\xFF", 1);
             }},
            {"writeReal64(const std::string&, orvel::ipReal64)",
             [](BaseOArchive& archive)
             {
               archive.writeReal64("\xFF", 1);
             }},
            {"writeString(const std::string&, std::string_view)",
             [](BaseOArchive& archive)
             {
               archive.writeString("\xFF", "text");
             }},
            {"writeObject(const std::string&, const orvel::BaseSerializationObject&)",
             [](BaseOArchive& archive)
             {
               archive.writeObject("\xFF", TestPoint());
             }},
            {"writeObjectPtr(const "
             "orvel::SerializationOItem<boost::shared_ptr<orvel::BaseSerializationObject> >&)",
             [](BaseOArchive& archive)
             {
               const SerializationObjectPtr object = boost::make_shared<TestPoint>();
               archive.writeObjectPtr(SerializationOItem("\xFF", object));
             }},
            {"openSection(std::string_view)", [](BaseOArchive& archive)
             {
               const ArchiveSectionManager section(archive, "\xFF");
             }}};
  }

  static std::string writing(const char* signature)
  {
    return "virtual void " + classOf("O") + "::" + signature;
  }
  static std::string reading(const char* result, const char* signature)
  {
    return std::string("virtual ") + result + " " + classOf("I") + "::" + signature;
  }
};

TYPED_TEST_SUITE(ArchiveFunctions, Formats, );

TYPED_TEST(ArchiveFunctions, AreNamedWhereAnotherItemIsFound)
{
  // Nothing that is asked for, and nothing that may be left at the end.
  const std::string file = TypeParam::wrap(this->isXml ? "<section name=\"s\"></section>" : "\x9F\xFF");
  for (const auto& row : this->readings())
  {
    std::istringstream stream(row.signature == std::string("readObject(const std::string&, "
                                                           "orvel::BaseSerializationObject&)") ||
                                      row.signature == std::string("close()")
                                  ? TypeParam::wrap(this->isXml ? "<item key=\"K\">x</item>" : "\x01")
                                  : file);
    typename TypeParam::IArchive archive(stream);
    this->expectNamed([&] { row.operation(archive); }, this->reading(row.result, row.signature));
  }
}

TYPED_TEST(ArchiveFunctions, AreNamedAfterAFailureAndAfterTheEnd)
{
  for (const auto& row : this->readings())
  {
    std::istringstream stream(TypeParam::wrap(""));
    typename TypeParam::IArchive failed(stream);
    EXPECT_THROW(failed.readBool("K"), ORVELSerializationException);
    this->expectNamed([&] { row.operation(failed); }, this->reading(row.result, row.signature));

    std::istringstream again(TypeParam::wrap(""));
    typename TypeParam::IArchive closed(again);
    closed.close();
    this->expectNamed([&] { row.operation(closed); }, this->reading(row.result, row.signature));
  }
  for (const auto& row : this->writings())
  {
    std::ostringstream stream;
    typename TypeParam::OArchive closed(stream);
    closed.close();
    this->expectNamed([&] { row.operation(closed); }, this->writing(row.signature));
    this->expectNamed([&] { closed.close(); }, this->writing("close()"));
    this->expectNamed([&] { closed.writeBlock("x", 1); }, this->writing("writeBlock(const void*, "
                                                                        "orvel::ipUInt64)"));
  }
}

TYPED_TEST(ArchiveFunctions, AreNamedWhereTheWorkIsSpent)
{
  for (const auto& row : this->readings())
  {
    std::istringstream stream(TypeParam::wrap(""));
    typename TypeParam::IArchive archive(stream);
    archive.setLimits({128, 0});
    archive.spendWork(4095); // the first unit was taken when the archive was opened
    this->expectNamed([&] { row.operation(archive); }, this->reading(row.result, row.signature));
  }
}

TYPED_TEST(ArchiveFunctions, AreNamedWhereTheArchiveIsCutShort)
{
  const std::string whole = TypeParam::wrap("");
  if (this->isXml)
  {
    std::istringstream stream(whole.substr(0, whole.size() - 5));
    this->expectNamed([&] { typename TypeParam::IArchive archive(stream); },
                      "orvel::XmlIArchive::XmlIArchive(std::istream&)");
    return;
  }
  for (const auto& row : this->readings())
  {
    std::istringstream stream(whole.substr(0, 18));
    typename TypeParam::IArchive archive(stream);
    this->expectNamed([&] { row.operation(archive); }, this->reading(row.result, row.signature));
  }
}

TYPED_TEST(ArchiveFunctions, AreNamedWhereAnObjectIsTooDeepOrFails)
{
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  output.setLimits({0, 16});
  this->expectNamed([&] { output.writeObject("K", TestPoint()); },
                    this->writing("writeObject(const std::string&, const orvel::BaseSerializationObject&)"));

  std::istringstream input(
      fileBy<TypeParam>([](BaseOArchive& archive) { archive << SerializationOItem("K", TestHeir()); }));
  typename TypeParam::IArchive archive(input);
  TestHeir heir;
  TestReluctant::g_refuses = true;
  this->expectNamed([&] { archive.readObject("K", heir); },
                    this->reading("void", "readObject(const std::string&, orvel::BaseSerializationObject&)"));
  TestReluctant::g_refuses = false;
}

TYPED_TEST(ArchiveFunctions, AreNamedWhereAClassIsUnknown)
{
  std::string file = fileOfObject<TypeParam>(boost::make_shared<TestPoint>());
  file.replace(file.find("orvel::TestPoint"), 16, "orvel::TestPoinX");
  this->expectNamed(
      [&] { objectOfFile<TypeParam>(file); },
      this->reading("void",
                    "readObjectPtr(const "
                    "orvel::SerializationIItem<boost::shared_ptr<orvel::BaseSerializationObject> >&)"));
}

TYPED_TEST(ArchiveFunctions, AreNamedWhereAKeyCanNotBeStored)
{
  for (const auto& row : this->writings())
  {
    std::ostringstream stream;
    typename TypeParam::OArchive archive(stream);
    if (this->isXml)
      this->expectNamed([&] { row.operation(archive); }, this->writing(row.signature));
    else
      EXPECT_NO_THROW(row.operation(archive)); // the binary format stores no keys
  }
}

TYPED_TEST(ArchiveFunctions, AreNamedWhereASectionIsLeftOpenOrHoldsMore)
{
  std::ostringstream stream;
  typename TypeParam::OArchive output(stream);
  const ArchiveSectionManager open(output, "s");
  this->expectNamed([&] { output.close(); }, this->writing("close()"));

  std::istringstream input(TypeParam::wrap(
      this->isXml ? "<section name=\"s\"><item key=\"K\">1</item></section>" : "\x9F\x01\xFF"));
  typename TypeParam::IArchive archive(input);
  {
    const ArchiveSectionManager section(archive, "s");
  }
  this->expectNamed([&] { archive.close(); }, this->reading("void", "closeSection()"));
}

TYPED_TEST(ArchiveFunctions, AreNamedWhereTheSystemRefuses)
{
  FullBuffer full(0);
  std::ostream stream(&full);
  typename TypeParam::OArchive output(stream);
  this->expectNamed([&] { output.close(); }, this->writing("close()"));

  const std::string name = this->isXml ? "Xml" : "Binary";
  struct Throwing : std::streambuf
  {
    int_type underflow() override { throw std::runtime_error("the line is dead"); }
  } dead;
  std::istream input(&dead);
  this->expectNamed([&] { typename TypeParam::IArchive archive(input); },
                    "orvel::" + name + "IArchive::" + name + "IArchive(std::istream&)");
  input.setstate(std::ios::failbit);
  this->expectNamed([&] { typename TypeParam::IArchive archive(input); },
                    "orvel::" + name + "IArchive::" + name + "IArchive(std::istream&)");

  const boost::filesystem::path missing("/nowhere/at/all");
  this->expectNamed([&] { typename TypeParam::IArchive archive(missing); },
                    "orvel::" + name + "IArchive::" + name + "IArchive(const boost::filesystem::path&)");
  this->expectNamed([&] { typename TypeParam::OArchive archive(missing); },
                    "orvel::" + name + "OArchive::" + name + "OArchive(const boost::filesystem::path&)");
}

// Operations of the common base

void expectNamedInBase(const std::function<void()>& operation, const std::string& signature)
{
  const auto failure = failureOf<ORVELSerializationException>(operation);
  expectFunction(failure.getFunction(), signature);
  EXPECT_EQ(failure.getFile(), "Companions/ORVELSerialization/BaseIArchive.cpp");
}

TEST(BaseArchiveFunctions, AreNamed)
{
  RecordingIArchive archive;
  archive.nbBytesLeft = 0;
  expectNamedInBase([&] { archive.checkCount(1); }, "void orvel::BaseIArchive::checkCount(orvel::ipUInt64)");
  expectNamedInBase([&] { archive.checkBlock(1, 1); },
                    "void orvel::BaseIArchive::checkBlock(orvel::ipUInt64, orvel::ipUInt64)");
  RecordingIArchive another;
  expectNamedInBase([&] { another.spendWork(100000); },
                    "void orvel::BaseIArchive::spendWork(orvel::ipUInt64)");
}

TEST(BaseArchiveFunctions, AreThoseOfTheCallerWhereItFindsAValueOrAClassWrong)
{
  RecordingIArchive archive;
  expectRaised<ORVELSerializationException>(
      [&] { archive.raiseInvalidValue("text", "K", ORVEL_HERE_IN("void caller()")); },
      {"Archive recording, call 0: \"text\" is no valid value of item \"K\"", "void caller()",
       "tests/Companions/ORVELSerialization/ArchiveFunctionsTest.cpp"});
  expectRaised<ORVELSerializationException>(
      [&] { archive.raiseWrongClass("A", "B", ORVEL_HERE_IN("void caller()")); },
      {"Archive recording, call 0: an object of class A can't stand for class B", "void caller()",
       "tests/Companions/ORVELSerialization/ArchiveFunctionsTest.cpp"});
}

// Whole files

TEST(LoadObject, IsNamedByFailuresOfItsOwn)
{
  const std::string signature =
      "orvel::SerializationObjectPtr orvel::loadObject(const boost::filesystem::path&, orvel::ArchiveTrust)";
  const auto missing = failureOf<ORVELSerializationException>([] { loadObject("/nowhere/at/all"); });
  EXPECT_EQ(missing.getFunction(), signature);
  EXPECT_EQ(missing.getFile(), "Companions/ORVELSerialization/ObjectFile.cpp");

  const TemporaryFolder folder;
  const boost::filesystem::path path = folder / "point.bin";
  saveObject(path, TestPoint());
  const auto wrong = failureOf<ORVELSerializationException>([&] { loadObject<TestNode>(path); });
  EXPECT_EQ(wrong.getFunction(),
            "boost::shared_ptr<T> orvel::loadObject<T>(const boost::filesystem::path&, orvel::ArchiveTrust)");
  EXPECT_EQ(wrong.getFile(), "Companions/ORVELSerialization/ObjectFile.h");

  writeBytes(path, "no archive");
  const auto damaged = failureOf<ORVELSerializationException>([&] { loadObject(path); });
  EXPECT_EQ(damaged.getFunction(), signature);
}

} // namespace
