#include "ORVELSerialization/BaseIArchive.h"

#include <limits>

#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

TEST(BaseIArchive, IsTrustingAtFirst)
{
  RecordingIArchive archive;
  EXPECT_FALSE(archive.isUntrusted());
  archive.setUntrusted(true);
  EXPECT_TRUE(archive.isUntrusted());
  archive.setUntrusted(false);
  EXPECT_FALSE(archive.isUntrusted());
}

TEST(BaseIArchive, AcceptsACountThatItCanJustHold)
{
  RecordingIArchive archive;
  archive.minItemSize = 3;
  archive.nbBytesLeft = 30;
  archive.checkCount(10);
  archive.checkBlock(15, 2);
  archive.checkCount(0);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.checkCount(11); }),
            "Archive recording, call 0: the rest of the archive can't hold 11 elements");
  EXPECT_TRUE(archive.isFailed());
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.checkCount(1); }),
            "Archive recording, call 0: the archive can't be used after a failure");
}

TEST(BaseIArchive, RefusesASizeThatDoesNotFitSixtyFourBits)
{
  for (const ipUInt64 size : {ipUInt64{2}, ipUInt64{8}, g_largest})
  {
    RecordingIArchive archive;
    archive.nbBytesLeft = g_largest - 1;
    EXPECT_THROW(archive.checkBlock(g_largest / 2 + 1, size), ORVELSerializationException);
  }
  RecordingIArchive archive;
  archive.nbBytesLeft = 8;
  archive.checkBlock(g_largest, 0);
}

TEST(BaseIArchive, GrantsWorkAsTheArchiveIsRead)
{
  RecordingIArchive archive;
  archive.setLimits({128, 2});
  archive.spendWork(4096); // the start
  EXPECT_FALSE(archive.isFailed());
  archive.position = 10;
  archive.spendWork(19);
  archive.spendWork(1);
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive.spendWork(1); }),
            "Archive recording, call 0: more work asked for than the length of the archive allows");
  EXPECT_TRUE(archive.isFailed());
}

TEST(BaseIArchive, RefusesMoreWorkThanItGrants)
{
  RecordingIArchive archive;
  EXPECT_THROW(archive.spendWork(4097), ORVELSerializationException);
  RecordingIArchive another;
  EXPECT_THROW(another.spendWork(g_largest), ORVELSerializationException);
}

TEST(BaseIArchive, GrantsAnyWorkWhereTheLimitSaysSo)
{
  RecordingIArchive archive;
  archive.setLimits({128, g_largest});
  archive.position = 1;
  archive.spendWork(g_largest - 1);
  EXPECT_FALSE(archive.isFailed());
}

TEST(BaseIArchive, GrantsTheStartOnlyWhereTheLimitIsZero)
{
  RecordingIArchive archive;
  archive.setLimits({128, 0});
  archive.position = 1000000;
  archive.spendWork(4096);
  EXPECT_THROW(archive.spendWork(1), ORVELSerializationException);
}

TEST(BaseIArchive, QuotesTextsInItsFailures)
{
  RecordingIArchive archive;
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&] { archive.raiseInvalidValue("a\n\"\xFF", "K", ORVEL_HERE); }),
            "Archive recording, call 0: \"a\\x0a\"\\xff\" is no valid value of item \"K\"");
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&] { archive.raiseInvalidValue(std::string(121, 'x'), "K", ORVEL_HERE); }),
            "Archive recording, call 0: \"" + std::string(120, 'x') +
                "...\" is no valid value of item \"K\"");
}

} // namespace
