#include "ORVELSerialization/NamedEnumerationItems.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ORVELSerializationLog.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <support/RaisedFailure.h>

namespace orvel
{

class eTestConnexity : public NamedEnumeration<eTestConnexity>
{
public:
  enum domain
  {
    eTC_4Connexity,
    eTC_8Connexity
  };
  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value)
  {
    static constexpr const char* g_texts[] = {"eTC_4Connexity", "eTC_8Connexity"};
    return findEnumerationText(g_texts, value);
  }
};

ORVEL_DEFINE_ENUMERATION_ITEMS(eTestConnexity)

} // namespace orvel

namespace
{

using namespace orvel;
using namespace orvel::test;

Calls written(Kind kind, ipUInt64 value)
{
  RecordingOArchive archive(kind);
  archive << SerializationOItem("K", eTestConnexity(value));
  return archive.calls;
}

eTestConnexity read(RecordingIArchive::Value answer, Kind kind)
{
  RecordingIArchive archive(kind, {std::move(answer)});
  eTestConnexity value(ipUInt64{0});
  archive >> SerializationIItem("K", value);
  return value;
}

TEST(NamedEnumerationItems, FileTheTextElementByElement)
{
  EXPECT_EQ(written(Kind::elementWise, 0), Calls{"string K eTC_4Connexity"});
  EXPECT_EQ(written(Kind::elementWise, 1), Calls{"string K eTC_8Connexity"});
}

TEST(NamedEnumerationItems, FileTheNumberElsewhere)
{
  EXPECT_EQ(written(Kind::blocks, 0), Calls{"integer K 0"});
  EXPECT_EQ(written(Kind::blocks, 1), Calls{"integer K 1"});
}

TEST(NamedEnumerationItems, GoByTheLowThirtyTwoBits)
{
  EXPECT_EQ(written(Kind::elementWise, 0x500000001), Calls{"string K eTC_8Connexity"});
  EXPECT_EQ(written(Kind::blocks, 0x500000001), Calls{"integer K 1"});
}

TEST(NamedEnumerationItems, FileZeroForAValueOutOfRangeWhereNumbersAreFiled)
{
  EXPECT_EQ(written(Kind::blocks, 2), Calls{"integer K 0"});
  EXPECT_EQ(written(Kind::blocks, 7), Calls{"integer K 0"});
  EXPECT_EQ(written(Kind::blocks, 0xFFFFFFFF), Calls{"integer K 0"});
}

TEST(NamedEnumerationItems, EndInALogicErrorForAValueOutOfRangeWhereTextsAreFiled)
{
  RecordingOArchive archive(Kind::elementWise);
  EXPECT_THROW(archive << SerializationOItem("K", eTestConnexity(ipUInt64{7})), std::logic_error);
  EXPECT_TRUE(archive.calls.empty());
  EXPECT_FALSE(archive.isFailed());
}

TEST(NamedEnumerationItems, ReadTheTextExactly)
{
  EXPECT_EQ(read(std::string("eTC_4Connexity"), Kind::elementWise).getValue(), 0U);
  EXPECT_EQ(read(std::string("eTC_8Connexity"), Kind::elementWise).getValue(), 1U);
  for (const std::string text : {"eTC_8connexity", "eTC_8Connexity ", " eTC_8Connexity", "eTC_8", "", "1"})
    EXPECT_EQ(messageOf<ORVELSerializationException>([&] { read(text, Kind::elementWise); }),
              "Unknown enumeration text " + text);
}

TEST(NamedEnumerationItems, ReadTheNumbersThatHaveAnEnumerator)
{
  EXPECT_EQ(read(ipInt64{0}, Kind::blocks).getValue(), 0U);
  EXPECT_EQ(read(ipInt64{1}, Kind::blocks).getValue(), 1U);
  for (const ipInt64 number : {ipInt64{2}, ipInt64{-1}, ipInt64{2147483647}, ipInt64{-2147483648}})
    EXPECT_EQ(messageOf<ORVELSerializationException>([&] { read(number, Kind::blocks); }),
              "Unknown enumeration value " + std::to_string(number));
}

TEST(NamedEnumerationItems, KeepTheTargetOnAFailure)
{
  eTestConnexity value(ipUInt64{0xABCDEF0123});
  RecordingIArchive texts(Kind::elementWise, {std::string("?")});
  EXPECT_THROW(texts >> SerializationIItem("K", value), ORVELSerializationException);
  RecordingIArchive numbers(Kind::blocks, {ipInt64{2}});
  EXPECT_THROW(numbers >> SerializationIItem("K", value), ORVELSerializationException);
  EXPECT_EQ(value.getValue(), 0xABCDEF0123U);
}

TEST(NamedEnumerationItems, LeaveAFailedArchiveAfterAnUnknownTextOrNumber)
{
  eTestConnexity value(ipUInt64{0});
  RecordingIArchive texts(Kind::elementWise, {std::string("?"), std::string("eTC_8Connexity")});
  EXPECT_THROW(texts >> SerializationIItem("K", value), ORVELSerializationException);
  EXPECT_TRUE(texts.isFailed());
  RecordingIArchive numbers(Kind::blocks, {ipInt64{2}, ipInt64{1}});
  EXPECT_THROW(numbers >> SerializationIItem("K", value), ORVELSerializationException);
  EXPECT_TRUE(numbers.isFailed());

  // Refused, though the next answer would do.
  for (RecordingIArchive* archive : {&texts, &numbers})
    EXPECT_EQ(messageOf<ORVELSerializationException>([&] { *archive >> SerializationIItem("K", value); }),
              "Archive recording, call 1: the archive can't be used after a failure");
  EXPECT_EQ(value.getValue(), 0U);
}

TEST(NamedEnumerationItems, LogTheFailureAndNameTheOperator)
{
  const LogCapture log(getORVELSerializationLogger());
  const auto failure =
      failureOf<ORVELSerializationException>([&] { read(std::string("nothing"), Kind::elementWise); });
  ASSERT_EQ(log.getRecords().size(), 1U);
  EXPECT_EQ(log.getRecords()[0].message, "Unknown enumeration text nothing");
  EXPECT_EQ(log.getRecords()[0].level, log4cplus::ERROR_LOG_LEVEL);
  EXPECT_EQ(failure.getFunction(), "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                   "orvel::SerializationIItem<orvel::eTestConnexity>&)");
}

} // namespace
