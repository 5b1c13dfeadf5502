#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h"

#include <set>
#include <string>
#include <type_traits>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "../Signature.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELSerialization/ItemOperators.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

ORVEL_TEST_EXPOSE(DataColl, &StructuringElementXYZ::_dataColl)
ORVEL_TEST_EXPOSE(MinX, &StructuringElementXYZ::_minX)
ORVEL_TEST_EXPOSE(MinY, &StructuringElementXYZ::_minY)
ORVEL_TEST_EXPOSE(MinZ, &StructuringElementXYZ::_minZ)
ORVEL_TEST_EXPOSE(SizeX, &StructuringElementXYZ::_sizeX)
ORVEL_TEST_EXPOSE(SizeY, &StructuringElementXYZ::_sizeY)
ORVEL_TEST_EXPOSE(SizeZ, &StructuringElementXYZ::_sizeZ)

TEST(StructuringElementXYZ, HasItsFrameIdentity)
{
  EXPECT_EQ(StructuringElementXYZ::getTypeName(), "orvel::StructuringElementXYZ");
  EXPECT_EQ(StructuringElementXYZ().getClassName(), "orvel::StructuringElementXYZ");
  EXPECT_EQ(StructuringElementXYZ::getVersion(), 1U);
  EXPECT_TRUE(StructuringElementXYZ().hasCopySupport());
  EXPECT_TRUE((std::is_base_of<BaseStructuringElement, StructuringElementXYZ>::value));
}

TEST(StructuringElementXYZ, NamesItsTypes)
{
  EXPECT_TRUE((std::is_same<XYZOffsetColl, std::set<OffsetXYZ>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYZPtr, boost::shared_ptr<StructuringElementXYZ>>::value));
  EXPECT_TRUE(
      (std::is_same<StructuringElementXYZConstPtr, boost::shared_ptr<const StructuringElementXYZ>>::value));
}

TEST(StructuringElementXYZ, TellsItsKind)
{
  const StructuringElementXYZ element;
  EXPECT_TRUE(element.getStructuringElementType() == eStructuringElementType::eSET_XYZ);
  const BaseStructuringElement& base = element;
  EXPECT_EQ(base.getStructuringElementType().getValue(), 1U);
}

TEST(StructuringElementXYZ, HasMembersOfTheseTypes)
{
  using Element = StructuringElementXYZ;
  EXPECT_TRUE((std::is_same<decltype(memberOf(DataColl())), std::set<OffsetXYZ> Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinX())), ipInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinY())), ipInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinZ())), ipInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeX())), ipUInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeY())), ipUInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeZ())), ipUInt32 Element::*>::value));
}

TEST(StructuringElementXYZ, ReturnsEachMember)
{
  StructuringElementXYZ element;
  element.*memberOf(MinX()) = 1;
  element.*memberOf(MinY()) = 2;
  element.*memberOf(MinZ()) = 3;
  element.*memberOf(SizeX()) = 4;
  element.*memberOf(SizeY()) = 5;
  element.*memberOf(SizeZ()) = 6;
  EXPECT_EQ(element.getMinX(), 1);
  EXPECT_EQ(element.getMinY(), 2);
  EXPECT_EQ(element.getMinZ(), 3);
  EXPECT_EQ(element.getSizeX(), 4U);
  EXPECT_EQ(element.getSizeY(), 5U);
  EXPECT_EQ(element.getSizeZ(), 6U);
  EXPECT_EQ(&element.getDataColl(), &(element.*memberOf(DataColl())));
}

/// What a failure tells of the statement that raised it.
struct RaisingCase
{
  void (*operation)(StructuringElementXYZ& element);
  std::string message;
  std::string function;
  std::string statement;
};

const RaisingCase g_raisingCases[] = {
    {[](StructuringElementXYZ& element) { element.insert(OffsetXYZ(0, 0, 0)); },
     "Can't insert element into structuring element, it already exists",
     "void orvel::StructuringElementXYZ::insert(const OffsetType&)", "eInsertExistingSEElt"},
    {[](StructuringElementXYZ& element) { element.remove(OffsetXYZ(9, 0, 0)); },
     "Can't remove element from structuring element, it does not exists",
     "void orvel::StructuringElementXYZ::remove(const OffsetType&)", "eRemoveMissingSEElt"},
};

StructuringElementXYZ makeElement()
{
  StructuringElementXYZ element;
  element.insert(OffsetXYZ(0, 0, 0));
  return element;
}

TEST(StructuringElementXYZ, NamesTheRaisingFunctionAndStatement)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    StructuringElementXYZ element = makeElement();
    const auto failure = failureOf<ORVELBaseDataException>([&] { raising.operation(element); });
    EXPECT_EQ(failure.getMessage(), raising.message);
    EXPECT_NE(std::string(failure.what()).find(raising.message), std::string::npos);
    EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(raising.function));
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.cpp");
    EXPECT_NE(sourceLine(failure.getFile(), failure.getLine())
                  .find("raise(ORVEL_HERE, eStructuringElementMessage::" + raising.statement),
              std::string::npos);
    EXPECT_EQ(failure.getCause(), nullptr);
  }
}

TEST(StructuringElementXYZ, LogsEachFailureOnceAtErrorLevel)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    StructuringElementXYZ element = makeElement();
    const LogCapture log(getORVELBaseDataLogger());
    const auto failure = failureOf<ORVELBaseDataException>([&] { raising.operation(element); });
    ASSERT_EQ(log.getRecords().size(), 1U);
    const LogRecord& record = log.getRecords().front();
    EXPECT_EQ(record.level, 40000);
    EXPECT_EQ(record.logger, getORVELBaseDataLoggerName());
    EXPECT_EQ(record.message, raising.message);
    EXPECT_EQ(record.file, failure.getFile());
    EXPECT_EQ(record.line, static_cast<int>(failure.getLine()));
  }
}

TEST(StructuringElementXYZ, RaisesTheSameWithLoggingDisabled)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    StructuringElementXYZ element = makeElement();
    const LogCapture log(getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL);
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { raising.operation(element); }), raising.message);
    EXPECT_TRUE(log.getRecords().empty());
  }
}

StructuringElementXYZ makeElementOfOne()
{
  StructuringElementXYZ element;
  element.insert(OffsetXYZ(3, -2, 7));
  return element;
}

TEST(StructuringElementXYZFile, IsThisXmlText)
{
  EXPECT_EQ(fileOf<HandWrittenXml>([](BaseOArchive& archive) { makeElementOfOne().write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BaseStructuringElement">
    <item key="version">1</item>
  </section>
  <section name="orvel::StructuringElementXYZ">
    <item key="version">1</item>
  </section>
  <section name="_dataColl">
    <section name="set">
      <item key="size">1</item>
      <object key="key">
        <section name="orvel::OffsetXYZ">
          <item key="version">1</item>
        </section>
        <item key="_xOffset">3</item>
        <item key="_yOffset">-2</item>
        <item key="_zOffset">7</item>
      </object>
    </section>
  </section>
  <item key="_minX">3</item>
  <item key="_minY">-2</item>
  <item key="_minZ">7</item>
  <item key="_sizeX">1</item>
  <item key="_sizeY">1</item>
  <item key="_sizeZ">1</item>
</orvelArchive>
)");
}

TEST(StructuringElementXYZFile, IsTheseBytes)
{
  const std::string file =
      fileOf<HandWrittenBinary>([](BaseOArchive& archive) { makeElementOfOne().write(archive); });
  const char bytes[] = "\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little" // format, its version, byte order
                       "\x9F\x01\xFF\x9F\x01\xFF"                // class versions of the base and the element
                       "\x9F\x9F\x01"                            // the set, 1 offset
                       "\x9F\x9F\x01\xFF\x03\x21\x07\xFF"        // class version and offset
                       "\xFF\xFF"                                // end of the set
                       "\x03\x21\x07"                            // the minima
                       "\x01\x01\x01"                            // the sizes
                       "\x83\x63"
                       "end\x18\x2B\x1B"; // 43 bytes stand before this; the 8 bytes of the hash follow
  const std::string start(bytes, sizeof bytes - 1);
  EXPECT_EQ(file.substr(0, start.size()), start);
  EXPECT_EQ(file.size(), start.size() + 8);
}

TEST(StructuringElementXYZ, TravelsUnderASharedPointerByItsClassName)
{
  const auto written = boost::make_shared<StructuringElementXYZ>(makeElement());
  const std::string file = fileOf<HandWrittenXml>([&written](BaseOArchive& archive)
                                                  { archive << SerializationOItem("element", written); });
  readFile<HandWrittenXml>(file,
                           [](BaseIArchive& archive)
                           {
                             boost::shared_ptr<BaseStructuringElement> base;
                             archive >> SerializationIItem("element", base);
                             const auto element = boost::dynamic_pointer_cast<StructuringElementXYZ>(base);
                             ASSERT_NE(element, nullptr);
                             EXPECT_TRUE(element->exists(OffsetXYZ(0, 0, 0)));
                           });
}

} // namespace
