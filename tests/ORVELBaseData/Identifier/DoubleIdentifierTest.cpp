#include "ORVELBaseData/Identifier/DoubleIdentifier.h"

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

ORVEL_TEST_EXPOSE(HighValue, &orvel::DoubleIdentifier::_highValue)
ORVEL_TEST_EXPOSE(LowValue, &orvel::DoubleIdentifier::_lowValue)

namespace
{

using namespace orvel;
using namespace orvel::test;

void expectValues(const BaseDynamicObject& object, ipUInt32 highValue, ipUInt32 lowValue)
{
  const auto& identifier = dynamic_cast<const DoubleIdentifier&>(object);
  EXPECT_EQ(identifier.getHighValue(), highValue);
  EXPECT_EQ(identifier.getLowValue(), lowValue);
}

TEST(DoubleIdentifier, TakesTheHighValueFirst)
{
  expectValues(DoubleIdentifier(1, 2), 1, 2);
}

TEST(DoubleIdentifier, DoesNotTouchTheValuesOfANewOne)
{
  fillBlocksWith(0xA5);
  const std::unique_ptr<BaseDynamicObject> owned(DoubleIdentifier(1, 2).createNew());
  const DynamicObjectPtr shared = DoubleIdentifier(1, 2).createShared();
  fillNoBlocks();
  expectValues(*owned, 0xA5A5A5A5U, 0xA5A5A5A5U);
  expectValues(*shared, 0xA5A5A5A5U, 0xA5A5A5A5U);
}

TEST(DoubleIdentifier, SetsBothValuesTheHighOneFirst)
{
  DoubleIdentifier identifier;
  identifier.setValue(3, 4294967295U);
  expectValues(identifier, 3, 4294967295U);
}

TEST(DoubleIdentifier, LeavesTheLowValueWhenTheHighOneIsSet)
{
  DoubleIdentifier identifier(1, 2);
  identifier.setHighValue(4294967295U);
  expectValues(identifier, 4294967295U, 2);
}

TEST(DoubleIdentifier, LeavesTheHighValueWhenTheLowOneIsSet)
{
  DoubleIdentifier identifier(1, 2);
  identifier.setLowValue(4294967295U);
  expectValues(identifier, 1, 4294967295U);
}

TEST(DoubleIdentifier, HasItsNameAndVersion)
{
  EXPECT_EQ(DoubleIdentifier::getTypeName(), "orvel::DoubleIdentifier");
  EXPECT_EQ(DoubleIdentifier(1, 2).getClassName(), "orvel::DoubleIdentifier");
  EXPECT_EQ(DoubleIdentifier::getVersion(), 1U);
}

TEST(DoubleIdentifier, IsCreatedByItsName)
{
  const std::unique_ptr<BaseDynamicObject> object(
      DynamicObjectFactory::getInstance().createNew("orvel::DoubleIdentifier"));
  EXPECT_NE(dynamic_cast<DoubleIdentifier*>(object.get()), nullptr);
}

TEST(DoubleIdentifier, CopiesBothValues)
{
  const DoubleIdentifier identifier(1, 2);
  EXPECT_TRUE(identifier.hasCopySupport());
  DoubleIdentifier assigned;
  EXPECT_EQ(&(assigned = identifier), &assigned);
  expectValues(assigned, 1, 2);
  expectValues(DoubleIdentifier(identifier), 1, 2);
  const std::unique_ptr<BaseDynamicObject> duplicate(identifier.duplicate());
  expectValues(*duplicate, 1, 2);
  expectValues(*identifier.duplicateShared(), 1, 2);
}

TEST(DoubleIdentifier, KeepsBothValuesWhenItIsAssignedToItself)
{
  DoubleIdentifier identifier(1, 2);
  const DoubleIdentifier& same = identifier;
  identifier = same;
  expectValues(identifier, 1, 2);
}

TEST(DoubleIdentifier, AddsNoVirtualOperationAndTwoFields)
{
  EXPECT_TRUE((std::is_base_of<BaseIdentifier, DoubleIdentifier>::value));
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(DoubleIdentifier(1, 2)), 12U);
  }
  EXPECT_EQ(offsetOf(memberOf(HighValue())), 8);
  EXPECT_EQ(offsetOf(memberOf(LowValue())), 12);
  EXPECT_EQ(sizeof(DoubleIdentifier), 16U);
}

template <class HandWritten>
class ArchivedDoubleIdentifier : public ::testing::Test
{
protected:
  static std::string archiveOfTwo()
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseIdentifier", 1);
    putVersion(archive, "orvel::DoubleIdentifier", 1);
    archive.integer("_highValue", 1);
    archive.integer("_lowValue", 2);
    archive.integer("_highValue", 4294967295);
    archive.integer("_lowValue", 0);
    return archive.file();
  }
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedDoubleIdentifier, Formats, );

TYPED_TEST(ArchivedDoubleIdentifier, FilesTheVersionsOnceAndTheHighValueFirst)
{
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = DoubleIdentifier(1, 2).write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                  EXPECT_TRUE(DoubleIdentifier(4294967295U, 0).write(archive));
                }),
            this->archiveOfTwo());
}

TYPED_TEST(ArchivedDoubleIdentifier, IsReadAsItIsFiled)
{
  readFile<TypeParam>(this->archiveOfTwo(),
                      [](BaseIArchive& archive)
                      {
                        DoubleIdentifier identifier;
                        const BoolResult read = identifier.read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        expectValues(identifier, 1, 2);
                        EXPECT_TRUE(identifier.read(archive));
                        expectValues(identifier, 4294967295U, 0);
                      });
}

TYPED_TEST(ArchivedDoubleIdentifier, KeepsBothValuesWhenTheSecondCannotBeRead)
{
  TypeParam file;
  putVersion(file, "orvel::BaseIdentifier", 1);
  putVersion(file, "orvel::DoubleIdentifier", 1);
  file.integer("_highValue", 3);
  file.integer("_lowValue", 4294967296); // one too many
  DoubleIdentifier identifier(7, 8);
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { identifier.read(archive); }),
               ORVELSerializationException);
  expectValues(identifier, 7, 8);
}

TYPED_TEST(ArchivedDoubleIdentifier, RefusesANewerVersion)
{
  TypeParam file;
  putVersion(file, "orvel::BaseIdentifier", 1);
  putVersion(file, "orvel::DoubleIdentifier", 2);
  DoubleIdentifier identifier(7, 8);
  EXPECT_EQ(
      messageOf<ORVELSerializationException>(
          [&]
          { readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { identifier.read(archive); }); }),
      "Version 2 of class orvel::DoubleIdentifier is not supported, the highest supported version is 1");
  expectValues(identifier, 7, 8);
}

} // namespace
