#include "ORVELSerialization/DataType.h"

#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr const char* g_texts[] = {"eDT_None",  "eDT_Bool",   "eDT_Int8",   "eDT_UInt8",
                                   "eDT_Int16", "eDT_UInt16", "eDT_Int32",  "eDT_UInt32",
                                   "eDT_Int64", "eDT_UInt64", "eDT_Real32", "eDT_Real64"};

TEST(DataType, HasTwelveValuesWithTheSpellingAsText)
{
  for (ipUInt32 value = 0; value < 12; ++value)
    EXPECT_STREQ(eDataType::findText(value), g_texts[value]);
  EXPECT_EQ(eDataType::findText(12), nullptr);
  EXPECT_EQ(eDataType(eDataType::eDT_None).getValue(), 0U);
  EXPECT_EQ(eDataType(eDataType::eDT_Real64).getValue(), 11U);
}

TEST(DataType, IsFiledAsItsTextElementByElement)
{
  for (ipUInt32 value = 0; value < 12; ++value)
  {
    RecordingOArchive archive(Kind::elementWise);
    const eDataType type{ipUInt64{value}};
    EXPECT_EQ(&(archive << SerializationOItem("K", type)), &archive);
    EXPECT_EQ(archive.calls, Calls{std::string("string K ") + g_texts[value]});

    RecordingIArchive input(Kind::elementWise, {std::string(g_texts[value])});
    eDataType read = eDataType::eDT_Bool;
    EXPECT_EQ(&(input >> SerializationIItem("K", read)), &input);
    EXPECT_EQ(input.calls, Calls{"string K"});
    EXPECT_EQ(read.getValue(), value);
  }
}

TEST(DataType, IsFiledAsItsNumberElsewhere)
{
  for (ipUInt32 value = 0; value < 12; ++value)
  {
    RecordingOArchive archive;
    archive << SerializationOItem("K", eDataType{ipUInt64{value}});
    EXPECT_EQ(archive.calls, Calls{"integer K " + std::to_string(value)});

    RecordingIArchive input(Kind::blocks, {ipInt64{value}});
    eDataType read = eDataType::eDT_Bool;
    input >> SerializationIItem("K", read);
    EXPECT_EQ(input.calls, Calls{"integer K [-2147483648, 2147483647]"});
    EXPECT_EQ(read.getValue(), value);
  }
}

TEST(DataType, RefusesUnknownTextsAndNumbersAndKeepsItsValue)
{
  eDataType read = eDataType::eDT_Int16;
  RecordingIArchive texts(Kind::elementWise, {std::string("eDT_int8")});
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { texts >> SerializationIItem("K", read); }),
            "Unknown enumeration text eDT_int8");
  for (const ipInt64 number : {12, -1})
  {
    RecordingIArchive numbers(Kind::blocks, {number});
    EXPECT_EQ(messageOf<ORVELSerializationException>([&] { numbers >> SerializationIItem("K", read); }),
              "Unknown enumeration value " + std::to_string(number));
  }
  EXPECT_EQ(read, eDataType::eDT_Int16);
}

} // namespace
