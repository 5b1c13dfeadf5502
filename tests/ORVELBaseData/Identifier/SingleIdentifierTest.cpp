#include "ORVELBaseData/Identifier/SingleIdentifier.h"

#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

ORVEL_TEST_EXPOSE(Value, &orvel::SingleIdentifier::_value)

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(SingleIdentifier, HoldsOneNumber)
{
  SingleIdentifier identifier(4294967295U);
  EXPECT_EQ(identifier.getValue(), 4294967295U);
  identifier.setValue(0);
  EXPECT_EQ(identifier.getValue(), 0U);
}

TEST(SingleIdentifier, DoesNotTouchTheNumberOfANewOne)
{
  fillBlocksWith(0xA5);
  const std::unique_ptr<BaseDynamicObject> owned(SingleIdentifier(3).createNew());
  const DynamicObjectPtr shared = SingleIdentifier(3).createShared();
  fillNoBlocks();
  EXPECT_EQ(dynamic_cast<const SingleIdentifier&>(*owned).getValue(), 0xA5A5A5A5U);
  EXPECT_EQ(dynamic_cast<const SingleIdentifier&>(*shared).getValue(), 0xA5A5A5A5U);
}

TEST(SingleIdentifier, IsMadeOfANumberWithoutBeingNamed)
{
  const SingleIdentifier identifier = 3U;
  EXPECT_EQ(identifier.getValue(), 3U);
}

TEST(SingleIdentifier, HasItsNameAndVersion)
{
  EXPECT_EQ(SingleIdentifier::getTypeName(), "orvel::SingleIdentifier");
  EXPECT_EQ(SingleIdentifier(3).getClassName(), "orvel::SingleIdentifier");
  EXPECT_EQ(SingleIdentifier::getVersion(), 1U);
}

TEST(SingleIdentifier, IsCreatedByItsName)
{
  const std::unique_ptr<BaseDynamicObject> object(
      DynamicObjectFactory::getInstance().createNew("orvel::SingleIdentifier"));
  EXPECT_NE(dynamic_cast<SingleIdentifier*>(object.get()), nullptr);
}

TEST(SingleIdentifier, CopiesItsNumber)
{
  const SingleIdentifier identifier(3);
  EXPECT_TRUE(identifier.hasCopySupport());
  SingleIdentifier assigned;
  EXPECT_EQ(&(assigned = identifier), &assigned);
  EXPECT_EQ(assigned.getValue(), 3U);
  EXPECT_EQ(SingleIdentifier(identifier).getValue(), 3U);
  const std::unique_ptr<BaseDynamicObject> duplicate(identifier.duplicate());
  EXPECT_EQ(dynamic_cast<const SingleIdentifier&>(*duplicate).getValue(), 3U);
  EXPECT_EQ(dynamic_cast<const SingleIdentifier&>(*identifier.duplicateShared()).getValue(), 3U);
}

TEST(SingleIdentifier, KeepsItsNumberWhenItIsAssignedToItself)
{
  SingleIdentifier identifier(3);
  const SingleIdentifier& same = identifier;
  identifier = same;
  EXPECT_EQ(identifier.getValue(), 3U);
}

TEST(SingleIdentifier, AddsNoVirtualOperationAndOneField)
{
  EXPECT_TRUE((std::is_base_of<BaseIdentifier, SingleIdentifier>::value));
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(SingleIdentifier(3)), 12U);
  }
  EXPECT_EQ(offsetOf(memberOf(Value())), 8);
  EXPECT_EQ(sizeof(SingleIdentifier), 16U);
}

template <class HandWritten>
class ArchivedSingleIdentifier : public ::testing::Test
{
protected:
  static std::string archiveOfTwo()
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseIdentifier", 1);
    putVersion(archive, "orvel::SingleIdentifier", 1);
    archive.integer("_value", 3);
    archive.integer("_value", 4294967295);
    return archive.file();
  }
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedSingleIdentifier, Formats, );

TYPED_TEST(ArchivedSingleIdentifier, FilesTheVersionsOnceAndEachNumber)
{
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = SingleIdentifier(3).write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                  EXPECT_TRUE(SingleIdentifier(4294967295U).write(archive));
                }),
            this->archiveOfTwo());
}

TYPED_TEST(ArchivedSingleIdentifier, IsReadAsItIsFiled)
{
  readFile<TypeParam>(this->archiveOfTwo(),
                      [](BaseIArchive& archive)
                      {
                        SingleIdentifier identifier;
                        const BoolResult read = identifier.read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(identifier.getValue(), 3U);
                        EXPECT_TRUE(identifier.read(archive));
                        EXPECT_EQ(identifier.getValue(), 4294967295U);
                      });
}

TYPED_TEST(ArchivedSingleIdentifier, KeepsItsNumberWhenTheNewOneDoesNotFit)
{
  TypeParam file;
  putVersion(file, "orvel::BaseIdentifier", 1);
  putVersion(file, "orvel::SingleIdentifier", 1);
  file.integer("_value", 4294967296); // one too many
  SingleIdentifier identifier(7);
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { identifier.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(identifier.getValue(), 7U);
}

TYPED_TEST(ArchivedSingleIdentifier, RefusesANewerVersion)
{
  TypeParam file;
  putVersion(file, "orvel::BaseIdentifier", 1);
  putVersion(file, "orvel::SingleIdentifier", 2);
  file.integer("_value", 3);
  SingleIdentifier identifier(7);
  EXPECT_EQ(
      messageOf<ORVELSerializationException>(
          [&]
          { readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { identifier.read(archive); }); }),
      "Version 2 of class orvel::SingleIdentifier is not supported, the highest supported version is 1");
  EXPECT_EQ(identifier.getValue(), 7U);
}

} // namespace
