#include "ORVELSerialization/BaseArchive.h"

#include <limits>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

// Virtual operations

TEST(BaseArchive, HasItsVirtualOperationsInOrder)
{
  struct Protected : BaseArchive
  {
    static std::vector<std::size_t> indices()
    {
      return {vtableIndexOf(&Protected::openSection), vtableIndexOf(&Protected::closeSection),
              vtableIndexOf(&Protected::leaveSection), vtableIndexOf(&Protected::getPlace)};
    }
  };
  EXPECT_EQ(vtableIndexOf(&BaseArchive::isElementWise), 2U); // 0 and 1 are the destructor
  EXPECT_EQ(Protected::indices(), (std::vector<std::size_t>{3, 4, 5, 6}));
}

TEST(BaseOArchive, HasItsVirtualOperationsInOrder)
{
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeBlock), 7U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeObjectPtr), 8U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeObject), 9U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeBool), 10U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeInteger), 11U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeUnsigned), 12U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeReal32), 13U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeReal64), 14U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::writeString), 15U);
  EXPECT_EQ(vtableIndexOf(&BaseOArchive::close), 16U);
}

TEST(BaseIArchive, HasItsVirtualOperationsInOrder)
{
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readBlock), 7U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readObjectPtr), 8U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readObject), 9U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::releaseObjects), 10U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readBool), 11U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readInteger), 12U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readUnsigned), 13U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readReal32), 14U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readReal64), 15U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::readString), 16U);
  EXPECT_EQ(vtableIndexOf(&BaseIArchive::close), 17U);
}

// Class versions

TEST(BaseArchive, RecordsTheVersionsOfClasses)
{
  RecordingOArchive archive;
  EXPECT_FALSE(archive.isClassVersionRegistred("a"));
  archive.registerClassVersion("a", 5);
  archive.registerClassVersion("b", 4294967295U);
  archive.registerClassVersion("", 0);
  EXPECT_TRUE(archive.isClassVersionRegistred("a"));
  EXPECT_EQ(archive.getRegisterClassVersion("a"), 5U);
  EXPECT_EQ(archive.getRegisterClassVersion("b"), 4294967295U);
  EXPECT_TRUE(archive.isClassVersionRegistred(""));
  EXPECT_EQ(archive.getRegisterClassVersion(""), 0U);
  EXPECT_FALSE(archive.isClassVersionRegistred("c"));
}

TEST(BaseArchive, ReplacesAVersionThatIsRecordedAgain)
{
  RecordingOArchive archive;
  archive.registerClassVersion("a", 5);
  archive.registerClassVersion("b", 6);
  archive.registerClassVersion("a", 1);
  EXPECT_EQ(archive.getRegisterClassVersion("a"), 1U);
  EXPECT_EQ(archive.getRegisterClassVersion("b"), 6U);
}

TEST(BaseArchive, TellsClassesApartByTheirTextAlsoAtOneAddress)
{
  RecordingOArchive archive;
  std::string name = "a";
  archive.registerClassVersion(name, 1);
  EXPECT_EQ(archive.getRegisterClassVersion(name), 1U);
  name = "b"; // the same object, another text
  EXPECT_FALSE(archive.isClassVersionRegistred(name));
  archive.registerClassVersion(name, 2);
  EXPECT_EQ(archive.getRegisterClassVersion(name), 2U);
  name = "a";
  EXPECT_EQ(archive.getRegisterClassVersion(name), 1U);
  const auto copy = std::make_unique<std::string>("b");
  EXPECT_EQ(archive.getRegisterClassVersion(*copy), 2U);
}

TEST(BaseArchive, RecordsANameAndItsVersionOrNeitherIfMemoryEnds)
{
  RecordingOArchive archive;
  for (ipUInt32 number = 0; number < 20; ++number)
  {
    const std::string name = "orvel::AClassWithALongName" + std::to_string(number);
    EXPECT_GT(failAtEachAllocation([&] { archive.registerClassVersion(name, number); },
                                   [&] { EXPECT_FALSE(archive.isClassVersionRegistred(name)); }),
              0U);
    EXPECT_EQ(archive.getRegisterClassVersion(name), number);
  }
  EXPECT_EQ(archive.getRegisterClassVersion("orvel::AClassWithALongName0"), 0U);
}

TEST(BaseArchive, ThrowsForAVersionThatIsNotRecorded)
{
  const RecordingOArchive archive;
  try
  {
    static_cast<void>(archive.getRegisterClassVersion("orvel::Missing"));
    FAIL();
  }
  catch (const std::out_of_range& failure)
  {
    EXPECT_STREQ(failure.what(), "No version of class orvel::Missing is registered in archive recording");
  }
}

TEST(BaseArchive, KeepsVersionsOfEachArchiveApart)
{
  RecordingOArchive first;
  first.registerClassVersion("a", 1);
  EXPECT_FALSE(RecordingOArchive().isClassVersionRegistred("a"));
}

// Limits and state

TEST(BaseArchive, HasLimitsThatCanBeChanged)
{
  RecordingIArchive archive;
  EXPECT_EQ(archive.getLimits().maxDepth, 128U);
  EXPECT_EQ(archive.getLimits().maxWork, 16U);
  EXPECT_EQ(archive.getLimits().maxUnfilledBytes, 67108864U);
  archive.setLimits({3, 4, 5});
  EXPECT_EQ(archive.getLimits().maxDepth, 3U);
  EXPECT_EQ(archive.getLimits().maxWork, 4U);
  EXPECT_EQ(archive.getLimits().maxUnfilledBytes, 5U);
}

template <class Archive>
void expectUnfilledBytesCounted()
{
  constexpr ipUInt64 largest = std::numeric_limits<ipUInt64>::max();
  Archive archive;
  archive.setLimits({128, 16, 100});
  archive.countUnfilledBytes(0);
  archive.countUnfilledBytes(60);
  archive.countUnfilledBytes(40);
  archive.countUnfilledBytes(0);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.countUnfilledBytes(1); }),
            "Archive recording, call 0: more than 100 bytes of memory that the archive does not fill");
  EXPECT_TRUE(archive.isFailed());
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.countUnfilledBytes(0); }),
            "Archive recording, call 0: the archive can't be used after a failure");

  Archive another;
  another.countUnfilledBytes(67108864);
  another.setLimits({128, 16, 50}); // less than there is already
  EXPECT_THROW(another.countUnfilledBytes(1), ORVELSerializationException);

  Archive third;
  third.setLimits({128, 16, largest});
  third.countUnfilledBytes(largest);
  EXPECT_THROW(third.countUnfilledBytes(largest), ORVELSerializationException);
}

TEST(BaseArchive, CountsBytesThatItDoesNotFillAlikeInBothDirections)
{
  expectUnfilledBytesCounted<RecordingOArchive>();
  expectUnfilledBytesCounted<RecordingIArchive>();
}

TEST(BaseArchive, StartsOpenUnderItsName)
{
  const RecordingOArchive archive;
  EXPECT_EQ(archive.getName(), "recording");
  EXPECT_FALSE(archive.isFailed());
  EXPECT_FALSE(archive.isClosed());
}

// Sections

TEST(ArchiveSectionManager, OpensAndClosesSectionsOneInTheOther)
{
  RecordingOArchive archive;
  {
    const ArchiveSectionManager outer(archive, "outer");
    {
      const ArchiveSectionManager inner(archive, std::string("inner"));
    }
    archive << SerializationOItem("K", 1);
  }
  EXPECT_EQ(archive.calls, (Calls{"section outer {", "section inner {", "}", "integer K 1", "}"}));
  EXPECT_FALSE(archive.isFailed());
}

TEST(ArchiveSectionManager, ClosesDuringUnwindingAndThatIsAll)
{
  RecordingOArchive archive;
  try
  {
    const ArchiveSectionManager outer(archive, "outer");
    const ArchiveSectionManager inner(archive, "inner");
    throw std::runtime_error("half way");
  }
  catch (const std::runtime_error& failure)
  {
    EXPECT_STREQ(failure.what(), "half way");
  }
  EXPECT_FALSE(archive.isFailed());
  archive << SerializationOItem("K", 1);
  EXPECT_EQ(archive.calls, (Calls{"section outer {", "section inner {", "}", "}", "integer K 1"}));
}

TEST(ArchiveSectionManager, LetsAnInputArchiveLeaveASectionInAWayOfItsOwn)
{
  struct Leaving : RecordingIArchive
  {
    void leaveSection() override { calls.emplace_back("left }"); }
  } archive;
  EXPECT_THROW(
      {
        const ArchiveSectionManager outer(archive, "outer");
        const ArchiveSectionManager inner(archive, "inner");
        throw std::runtime_error("half way");
      },
      std::runtime_error);
  {
    const ArchiveSectionManager whole(archive, "whole");
  }
  EXPECT_EQ(archive.calls,
            (Calls{"section outer {", "section inner {", "left }", "left }", "section whole {", "}"}));
  EXPECT_FALSE(archive.isFailed());
}

TEST(ArchiveSectionManager, TakesANameThatOnlyConvertsToAString)
{
  struct Name
  {
    operator std::string() const { return "converted"; }
  };
  RecordingOArchive archive;
  {
    const ArchiveSectionManager section(archive, Name());
  }
  EXPECT_EQ(archive.calls, (Calls{"section converted {", "}"}));
}

TEST(ArchiveSectionManager, WorksWithinADestructorThatRunsDuringUnwinding)
{
  struct WritesAtTheEnd
  {
    RecordingOArchive& archive;
    ~WritesAtTheEnd() { const ArchiveSectionManager section(archive, "last"); }
  };
  RecordingOArchive archive;
  try
  {
    const WritesAtTheEnd writer = {archive};
    throw std::runtime_error("of no concern to the archive");
  }
  catch (const std::runtime_error&)
  {
  }
  EXPECT_EQ(archive.calls, (Calls{"section last {", "}"}));
  EXPECT_FALSE(archive.isFailed());
}

TEST(ArchiveSectionManager, RaisesAFailureToCloseWithTheNextOperation)
{
  RecordingOArchive archive;
  archive.sectionThatFails = 1;
  {
    const ArchiveSectionManager section(archive, "s");
  }
  EXPECT_TRUE(archive.isFailed());
  try
  {
    archive << SerializationOItem("K", 1);
    FAIL();
  }
  catch (const std::runtime_error& failure)
  {
    EXPECT_STREQ(failure.what(), "the section can't be closed");
  }
  // Once only; then the one answer to all that follows.
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive << SerializationOItem("K", 1); }),
            "Archive recording, call 2: the archive can't be used after a failure");
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.close(); }),
            "Archive recording, call 2: the archive can't be used after a failure");
}

TEST(ArchiveSectionManager, KeepsTheFirstFailureWhenClosingFailsDuringUnwinding)
{
  RecordingOArchive archive;
  archive.sectionThatFails = 1;
  try
  {
    const ArchiveSectionManager section(archive, "s");
    throw std::runtime_error("first");
  }
  catch (const std::runtime_error& failure)
  {
    EXPECT_STREQ(failure.what(), "first");
  }
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive << SerializationOItem("K", 1); }),
            "Archive recording, call 2: the archive can't be used after a failure");
}

TEST(ArchiveSectionManager, CannotOpenASectionAfterAFailure)
{
  RecordingOArchive archive;
  archive.sectionThatFails = 1;
  EXPECT_THROW(
      {
        const ArchiveSectionManager section(archive, "s");
        throw std::runtime_error("half way");
      },
      std::runtime_error);
  EXPECT_THROW(ArchiveSectionManager(archive, "t"), ORVELSerializationException);
  EXPECT_EQ(archive.calls, (Calls{"section s {", "}"}));
}

} // namespace
