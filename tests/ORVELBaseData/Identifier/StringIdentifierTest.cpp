#include "ORVELBaseData/Identifier/StringIdentifier.h"

#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

ORVEL_TEST_EXPOSE(Value, &orvel::StringIdentifier::_value)

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(StringIdentifier, IsEmptyAtFirst)
{
  EXPECT_EQ(StringIdentifier().getValue(), "");
}

TEST(StringIdentifier, HoldsOneString)
{
  const std::string text("nul\0in", 6);
  StringIdentifier identifier(text);
  EXPECT_EQ(identifier.getValue(), text);
  identifier.setValue("left eye");
  EXPECT_EQ(identifier.getValue(), "left eye");
}

TEST(StringIdentifier, IsMadeOfAStringWithoutBeingNamed)
{
  const StringIdentifier identifier = std::string("left eye");
  EXPECT_EQ(identifier.getValue(), "left eye");
}

TEST(StringIdentifier, TakesItsOwnStringAgain)
{
  const std::string text = "A string that is too long to be held without memory of its own";
  StringIdentifier identifier(text);
  identifier.setValue(identifier.getValue());
  EXPECT_EQ(identifier.getValue(), text);
}

TEST(StringIdentifier, GivesItsStringByReference)
{
  const StringIdentifier identifier("left eye");
  EXPECT_EQ(&identifier.getValue(), &identifier.getValue());
}

TEST(StringIdentifier, HasItsNameAndVersion)
{
  EXPECT_EQ(StringIdentifier::getTypeName(), "orvel::StringIdentifier");
  EXPECT_EQ(StringIdentifier().getClassName(), "orvel::StringIdentifier");
  EXPECT_EQ(StringIdentifier::getVersion(), 1U);
}

TEST(StringIdentifier, IsCreatedEmptyByItsName)
{
  const std::unique_ptr<BaseDynamicObject> object(
      DynamicObjectFactory::getInstance().createNew("orvel::StringIdentifier"));
  EXPECT_EQ(dynamic_cast<const StringIdentifier&>(*object).getValue(), "");
}

TEST(StringIdentifier, CopiesItsString)
{
  const StringIdentifier identifier("left eye");
  EXPECT_TRUE(identifier.hasCopySupport());
  StringIdentifier assigned("right eye");
  EXPECT_EQ(&(assigned = identifier), &assigned);
  EXPECT_EQ(assigned.getValue(), "left eye");
  EXPECT_EQ(StringIdentifier(identifier).getValue(), "left eye");
  const std::unique_ptr<BaseDynamicObject> duplicate(identifier.duplicate());
  EXPECT_EQ(dynamic_cast<const StringIdentifier&>(*duplicate).getValue(), "left eye");
  EXPECT_EQ(dynamic_cast<const StringIdentifier&>(*identifier.duplicateShared()).getValue(), "left eye");
}

TEST(StringIdentifier, KeepsItsStringWhenItIsAssignedToItself)
{
  StringIdentifier identifier("left eye");
  const StringIdentifier& same = identifier;
  identifier = same;
  EXPECT_EQ(identifier.getValue(), "left eye");
}

TEST(StringIdentifier, KeepsItsStringAndLeaksNothingWhenMemoryEnds)
{
  const StringIdentifier identifier("A string that is too long to be held without memory of its own");
  StringIdentifier target("old");
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const auto check = [&]
  {
    EXPECT_EQ(target.getValue(), "old");
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  };
  EXPECT_GE(failAtEachAllocation([&] { delete identifier.duplicate(); }, check), 2U); // the copy, its string
  EXPECT_GE(failAtEachAllocation([&] { target = identifier; }, check), 1U);
  EXPECT_EQ(target.getValue(), identifier.getValue());
}

TEST(StringIdentifier, AddsNoVirtualOperationAndOneField)
{
  EXPECT_TRUE((std::is_base_of<BaseIdentifier, StringIdentifier>::value));
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(StringIdentifier()), 12U);
  }
  EXPECT_EQ(offsetOf(memberOf(Value())), 8);
  EXPECT_EQ(sizeof(StringIdentifier), 8 + sizeof(std::string));
}

template <class HandWritten>
class ArchivedStringIdentifier : public ::testing::Test
{
protected:
  static std::string archiveOfTwo()
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseIdentifier", 1);
    putVersion(archive, "orvel::StringIdentifier", 1);
    archive.text("_value", "left eye");
    archive.text("_value", "");
    return archive.file();
  }
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedStringIdentifier, Formats, );

TYPED_TEST(ArchivedStringIdentifier, FilesTheVersionsOnceAndEachString)
{
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = StringIdentifier("left eye").write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                  EXPECT_TRUE(StringIdentifier().write(archive));
                }),
            this->archiveOfTwo());
}

TYPED_TEST(ArchivedStringIdentifier, IsReadAsItIsFiled)
{
  readFile<TypeParam>(this->archiveOfTwo(),
                      [](BaseIArchive& archive)
                      {
                        StringIdentifier identifier("old");
                        const BoolResult read = identifier.read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(identifier.getValue(), "left eye");
                        EXPECT_TRUE(identifier.read(archive));
                        EXPECT_EQ(identifier.getValue(), "");
                      });
}

TYPED_TEST(ArchivedStringIdentifier, BringsAnyBytesBack)
{
  const std::string bytes(" \xFF\0<\r\n ", 7);
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { EXPECT_TRUE(StringIdentifier(bytes).write(archive)); });
  StringIdentifier identifier("old");
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(identifier.read(archive)); });
  EXPECT_EQ(identifier.getValue(), bytes);
}

TYPED_TEST(ArchivedStringIdentifier, KeepsItsStringWhenThereIsNoNewOne)
{
  TypeParam file;
  putVersion(file, "orvel::BaseIdentifier", 1);
  putVersion(file, "orvel::StringIdentifier", 1);
  StringIdentifier identifier("old");
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { identifier.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(identifier.getValue(), "old");
}

TYPED_TEST(ArchivedStringIdentifier, RefusesANewerVersion)
{
  TypeParam file;
  putVersion(file, "orvel::BaseIdentifier", 1);
  putVersion(file, "orvel::StringIdentifier", 2);
  StringIdentifier identifier("old");
  EXPECT_EQ(
      messageOf<ORVELSerializationException>(
          [&]
          { readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { identifier.read(archive); }); }),
      "Version 2 of class orvel::StringIdentifier is not supported, the highest supported version is 1");
  EXPECT_EQ(identifier.getValue(), "old");
}

} // namespace
