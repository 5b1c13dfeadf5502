#include "ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h"

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

namespace orvel
{

/// \brief An enumerate leaf as another library would write it: the texts are those of g_texts, in order.
class TestColourLeaf : public BaseDataItemEnumLeaf
{
  ORVEL_DECLARE_SERIALIZABLE(TestColourLeaf)

public:
  TestColourLeaf() { setEnumValue(0); }

  std::string getEnumNameStr() const override { return "eColour"; }

  bool fromString(const std::string& text, ipUInt32& value) const override
  {
    for (value = 0; value < g_texts.size(); ++value)
      if (text == g_texts[value])
        return true;
    return false; // the value is beyond the last
  }

  bool toString(const ipUInt32& value, std::string& text) const override
  {
    if (value >= g_texts.size())
    {
      text = "none"; // not to be used
      return false;
    }
    text = g_texts[value];
    return true;
  }

  static std::vector<std::string> g_texts;
};

std::vector<std::string> TestColourLeaf::g_texts = {"eC_Red", "eC_Green"};

ORVEL_DEFINE_SERIALIZABLE(TestColourLeaf, BaseDataItemEnumLeaf, 1)

void TestColourLeaf::copyMembers(const TestColourLeaf& /*other*/)
{
}
void TestColourLeaf::writeMembers(BaseOArchive& /*archive*/) const
{
}
void TestColourLeaf::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

} // namespace orvel

namespace
{

using namespace orvel;
using namespace orvel::test;

TestColourLeaf colour(ipUInt32 value)
{
  TestColourLeaf leaf;
  leaf.setEnumValue(value);
  return leaf;
}

TEST(BaseDataItemEnumLeaf, IsALeafOfAnEnumerate)
{
  EXPECT_TRUE((std::is_base_of<BaseDataItemLeaf, BaseDataItemEnumLeaf>::value));
  const BaseDataItemEnumLeaf leaf;
  EXPECT_EQ(leaf.getDataItemType(), eDataItemType::eDIT_Leaf);
  EXPECT_EQ(leaf.getDataItemValueType().getValue(), 13U);
  EXPECT_STREQ(leaf.getDataItemValueType().getText(), "eDIVT_Enum");
}

TEST(BaseDataItemEnumLeaf, CreatedByItsNameKnowsNoEnumeration)
{
  const std::unique_ptr<BaseDynamicObject> object(
      DynamicObjectFactory::getInstance().createNew("orvel::BaseDataItemEnumLeaf"));
  auto* const leaf = dynamic_cast<BaseDataItemEnumLeaf*>(object.get());
  ASSERT_NE(leaf, nullptr);
  EXPECT_TRUE(leaf->hasCopySupport());
  EXPECT_EQ(leaf->getDataItemValueType(), eDataItemValueType::eDIVT_Enum);
  leaf->setEnumValue(0);
  EXPECT_EQ(leaf->getValueStr(), "");
  EXPECT_EQ(leaf->getEnumNameStr(), "");
}

TEST(BaseDataItemEnumLeaf, FindsNothingByItselfAndLeavesTheResultsAlone)
{
  const BaseDataItemEnumLeaf leaf;
  std::string text = "old";
  ipUInt32 value = 7;
  EXPECT_FALSE(leaf.toString(0, text));
  EXPECT_EQ(text, "old");
  EXPECT_FALSE(leaf.fromString("eC_Red", value));
  EXPECT_FALSE(leaf.fromString("", value));
  EXPECT_EQ(value, 7U);
}

TEST(BaseDataItemEnumLeaf, TakesAnyInteger)
{
  BaseDataItemEnumLeaf leaf;
  leaf.setEnumValue(4294967295U);
  EXPECT_EQ(leaf.getEnumValue(), 4294967295U);
}

TEST(BaseDataItemEnumLeaf, GivesTheTextOfItsValueByTheDerivedClass)
{
  EXPECT_EQ(colour(0).getValueStr(), "eC_Red");
  EXPECT_EQ(colour(1).getValueStr(), "eC_Green");
}

TEST(BaseDataItemEnumLeaf, GivesTheEmptyTextForAnIntegerOutsideItsEnumeration)
{
  EXPECT_EQ(colour(2).getValueStr(), ""); // whatever toString left behind
}

TEST(BaseDataItemEnumLeaf, EqualsAnotherOfItsClassWithoutATextToo)
{
  EXPECT_TRUE(orvel::equal(colour(2), colour(3), 0.0));
  EXPECT_TRUE(orvel::equal(colour(1), colour(1), 0.0));
  EXPECT_FALSE(orvel::equal(colour(1), colour(2), 0.0));
}

TEST(BaseDataItemEnumLeaf, CopiesTheIntegerAndNoText)
{
  const TestColourLeaf leaf = colour(77); // has no text at all
  TestColourLeaf assigned;
  assigned = leaf;
  EXPECT_EQ(assigned.getEnumValue(), 77U);
  EXPECT_EQ(TestColourLeaf(leaf).getEnumValue(), 77U);
  const std::unique_ptr<BaseDynamicObject> duplicate(leaf.duplicate());
  EXPECT_EQ(dynamic_cast<const TestColourLeaf&>(*duplicate).getEnumValue(), 77U);
  EXPECT_EQ(dynamic_cast<const TestColourLeaf&>(*leaf.duplicateShared()).getEnumValue(), 77U);
}

TEST(BaseDataItemEnumLeaf, KeepsItsIntegerWhenItIsAssignedToItself)
{
  BaseDataItemEnumLeaf leaf;
  leaf.setEnumValue(5);
  const BaseDataItemEnumLeaf& same = leaf;
  leaf = same;
  EXPECT_EQ(leaf.getEnumValue(), 5U);
}

/// Replaces what makes new objects, but not what makes duplicates.
class ForgetfulLeaf : public BaseDataItemEnumLeaf
{
public:
  BaseDynamicObject* createNew() const override { return new ForgetfulLeaf; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<ForgetfulLeaf>(); }
};

TEST(BaseDataItemEnumLeaf, IsDuplicatedAsItsOwnClass)
{
  ForgetfulLeaf leaf;
  leaf.setEnumValue(5);
  const std::unique_ptr<BaseDynamicObject> duplicate(leaf.duplicate());
  EXPECT_EQ(dynamic_cast<const ForgetfulLeaf*>(duplicate.get()), nullptr);
  EXPECT_EQ(dynamic_cast<const BaseDataItemEnumLeaf&>(*duplicate).getEnumValue(), 5U);
}

TEST(BaseDataItemEnumLeaf, IsDuplicatedUnderASharedPointerAsItsOwnClass)
{
  ForgetfulLeaf leaf;
  leaf.setEnumValue(5);
  const DynamicObjectPtr duplicate = leaf.duplicateShared();
  EXPECT_EQ(dynamic_cast<const ForgetfulLeaf*>(duplicate.get()), nullptr);
  EXPECT_EQ(dynamic_cast<const BaseDataItemEnumLeaf&>(*duplicate).getEnumValue(), 5U);
}

TEST(BaseDataItemEnumLeaf, DoesNotTouchTheIntegerOfANewOne)
{
  fillBlocksWith(0xA5);
  const std::unique_ptr<BaseDynamicObject> owned(BaseDataItemEnumLeaf().createNew());
  const DynamicObjectPtr shared = BaseDataItemEnumLeaf().createShared();
  fillNoBlocks();
  EXPECT_EQ(dynamic_cast<const BaseDataItemEnumLeaf&>(*owned).getEnumValue(), 0xA5A5A5A5U);
  EXPECT_EQ(dynamic_cast<const BaseDataItemEnumLeaf&>(*shared).getEnumValue(), 0xA5A5A5A5U);
}

// Archives

template <class HandWritten>
class ArchivedEnumLeaf : public ::testing::Test
{
};

TYPED_TEST_SUITE(ArchivedEnumLeaf, Formats, );

/// What stands ahead of the text in the first leaf of an archive.
template <class HandWritten>
HandWritten startOfFirst()
{
  HandWritten archive;
  putVersion(archive, "orvel::BaseDataItem", 1);
  putVersion(archive, "orvel::BaseDataItemLeaf", 1);
  putVersion(archive, "orvel::BaseDataItemEnumLeaf", 1);
  return archive;
}

/// One leaf with this text.
template <class HandWritten>
std::string archiveOf(const std::string& text)
{
  auto archive = startOfFirst<HandWritten>();
  archive.text("enumValue", text);
  putVersion(archive, "orvel::TestColourLeaf", 1);
  return archive.file();
}

TYPED_TEST(ArchivedEnumLeaf, StoresTheTextAndNotTheInteger)
{
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = colour(1).write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            archiveOf<TypeParam>("eC_Green"));
}

TYPED_TEST(ArchivedEnumLeaf, StoresTheVersionsOnceAndEachText)
{
  auto expected = startOfFirst<TypeParam>();
  expected.text("enumValue", "eC_Green");
  putVersion(expected, "orvel::TestColourLeaf", 1);
  expected.text("enumValue", "eC_Red");
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  colour(1).write(archive);
                  colour(0).write(archive);
                }),
            expected.file());
}

/// Has the empty text for one integer, and answers something else for the text of the present value.
class EmptyTextLeaf : public BaseDataItemEnumLeaf
{
public:
  EmptyTextLeaf() { setEnumValue(9); }
  std::string getValueStr() const override { return "not to be stored"; }
  bool fromString(const std::string& text, ipUInt32& value) const override
  {
    value = 9;
    return text.empty();
  }
  bool toString(const ipUInt32& value, std::string& /*text*/) const override { return value == 9; }
};

TYPED_TEST(ArchivedEnumLeaf, StoresTheTextOfToStringAlsoWhenItIsEmpty)
{
  auto expected = startOfFirst<TypeParam>();
  expected.text("enumValue", "");
  EXPECT_EQ(fileOf<TypeParam>([](BaseOArchive& archive) { EXPECT_TRUE(EmptyTextLeaf().write(archive)); }),
            expected.file());
  EmptyTextLeaf leaf;
  leaf.setEnumValue(0);
  readFile<TypeParam>(expected.file(), [&](BaseIArchive& archive) { EXPECT_TRUE(leaf.read(archive)); });
  EXPECT_EQ(leaf.getEnumValue(), 9U);
}

TYPED_TEST(ArchivedEnumLeaf, IsReadByItsText)
{
  TestColourLeaf leaf;
  readFile<TypeParam>(archiveOf<TypeParam>("eC_Green"),
                      [&](BaseIArchive& archive)
                      {
                        const BoolResult read = leaf.read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                      });
  EXPECT_EQ(leaf.getEnumValue(), 1U);
}

TYPED_TEST(ArchivedEnumLeaf, MeansTheSameAfterTheIntegersWereReordered)
{
  const std::string file = fileOf<TypeParam>([](BaseOArchive& archive) { colour(1).write(archive); });
  const std::vector<std::string> old = TestColourLeaf::g_texts;
  TestColourLeaf::g_texts = {"eC_Blue", "eC_Red", "eC_Grey", "eC_Green"};
  TestColourLeaf leaf;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(leaf.read(archive)); });
  const std::string text = leaf.getValueStr();
  TestColourLeaf::g_texts = old;
  EXPECT_EQ(leaf.getEnumValue(), 3U);
  EXPECT_EQ(text, "eC_Green");
}

TYPED_TEST(ArchivedEnumLeaf, RefusesToWriteAnIntegerOutsideItsEnumeration)
{
  std::ostringstream stream;
  typename TypeParam::OArchive archive(stream);
  expectRaised<ORVELBaseDataException>(
      [&] { colour(2).write(archive); },
      {"Invalid enumerate integer value 2 for enumerate eColour",
       "virtual orvel::BoolResult orvel::BaseDataItemEnumLeaf::write(orvel::BaseOArchive&) const",
       "ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.cpp"});
}

TYPED_TEST(ArchivedEnumLeaf, LeavesItsVersionInAFailedArchiveWhenWritingIsRefused)
{
  std::ostringstream stream;
  typename TypeParam::OArchive archive(stream);
  EXPECT_THROW(colour(2).write(archive), ORVELBaseDataException);
  EXPECT_TRUE(archive.isClassVersionRegistred("orvel::BaseDataItemEnumLeaf"));
  EXPECT_FALSE(archive.isClassVersionRegistred("orvel::TestColourLeaf"));
  EXPECT_TRUE(archive.isFailed()); // half an object is in it
}

TYPED_TEST(ArchivedEnumLeaf, RefusesToReadATextOutsideItsEnumeration)
{
  std::istringstream stream(archiveOf<TypeParam>("eC_Grey"));
  typename TypeParam::IArchive archive(stream);
  TestColourLeaf leaf;
  expectRaised<ORVELBaseDataException>(
      [&] { leaf.read(archive); },
      {"Invalid enumerate string value eC_Grey for enumerate eColour",
       "virtual orvel::BoolResult orvel::BaseDataItemEnumLeaf::read(orvel::BaseIArchive&)",
       "ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.cpp"});
}

TYPED_TEST(ArchivedEnumLeaf, FailsTheArchiveWhenAReadThatIsCalledDirectlyIsRefused)
{
  std::istringstream stream(archiveOf<TypeParam>("eC_Grey"));
  typename TypeParam::IArchive archive(stream);
  TestColourLeaf leaf;
  EXPECT_THROW(leaf.read(archive), ORVELBaseDataException);
  EXPECT_TRUE(archive.isFailed());
  EXPECT_NE(failureOf<ORVELSerializationException>([&] { leaf.read(archive); })
                .getMessage()
                .find("the archive can't be used after a failure"),
            std::string::npos);
}

TYPED_TEST(ArchivedEnumLeaf, HoldsWhatFromStringLeftWhenReadingIsRefused)
{
  TestColourLeaf leaf = colour(1);
  EXPECT_THROW(readStart<TypeParam>(archiveOf<TypeParam>("eC_Grey"),
                                    [&](BaseIArchive& archive) { leaf.read(archive); }),
               ORVELBaseDataException);
  EXPECT_EQ(leaf.getEnumValue(), 2U); // the number of its texts
}

TYPED_TEST(ArchivedEnumLeaf, ThatIsPlainRefusesEveryInteger)
{
  for (const ipUInt32 value : {0U, 4294967295U})
  {
    std::ostringstream stream;
    typename TypeParam::OArchive archive(stream);
    BaseDataItemEnumLeaf leaf;
    leaf.setEnumValue(value);
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { leaf.write(archive); }),
              "Invalid enumerate integer value " + std::to_string(value) + " for enumerate ");
  }
}

TYPED_TEST(ArchivedEnumLeaf, ThatIsPlainRefusesEveryText)
{
  for (const std::string text : {"", "eC_Red"})
  {
    std::istringstream stream(archiveOf<TypeParam>(text));
    typename TypeParam::IArchive archive(stream);
    BaseDataItemEnumLeaf leaf;
    leaf.setEnumValue(5);
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { leaf.read(archive); }),
              "Invalid enumerate string value " + text + " for enumerate ");
    EXPECT_EQ(leaf.getEnumValue(), 5U); // its fromString leaves it alone
  }
}

TYPED_TEST(ArchivedEnumLeaf, RefusesANewerVersionUnderTheNameOfTheBase)
{
  TypeParam file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::BaseDataItemLeaf", 1);
  putVersion(file, "orvel::BaseDataItemEnumLeaf", 2);
  file.text("enumValue", "eC_Red");
  TestColourLeaf leaf = colour(1);
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&]
                { readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { leaf.read(archive); }); }),
            "Version 2 of class orvel::BaseDataItemEnumLeaf is not supported, the highest supported version "
            "is 1");
  EXPECT_EQ(leaf.getEnumValue(), 1U);
}

} // namespace
