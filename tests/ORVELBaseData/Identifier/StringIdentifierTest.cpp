#include "ORVELBaseData/Identifier/StringIdentifier.h"

#include <string>

#include <gtest/gtest.h>

#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>

// What it shares with the other values is tested in BaseIdentifierTest.cpp.

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

template <class HandWritten>
class ArchivedStringIdentifier : public ::testing::Test
{
};
TYPED_TEST_SUITE(ArchivedStringIdentifier, Formats, );

TYPED_TEST(ArchivedStringIdentifier, BringsAnyBytesBack)
{
  const std::string bytes(" \xFF\0<\r\n ", 7);
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { EXPECT_TRUE(StringIdentifier(bytes).write(archive)); });
  StringIdentifier identifier("old");
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(identifier.read(archive)); });
  EXPECT_EQ(identifier.getValue(), bytes);
}

} // namespace
