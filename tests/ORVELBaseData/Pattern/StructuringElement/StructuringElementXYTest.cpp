#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h"

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

ORVEL_TEST_EXPOSE(DataColl, &StructuringElementXY::_dataColl)
ORVEL_TEST_EXPOSE(MinX, &StructuringElementXY::_minX)
ORVEL_TEST_EXPOSE(MinY, &StructuringElementXY::_minY)
ORVEL_TEST_EXPOSE(SizeX, &StructuringElementXY::_sizeX)
ORVEL_TEST_EXPOSE(SizeY, &StructuringElementXY::_sizeY)

TEST(StructuringElementXY, HasItsFrameIdentity)
{
  EXPECT_EQ(StructuringElementXY::getTypeName(), "orvel::StructuringElementXY");
  EXPECT_EQ(StructuringElementXY().getClassName(), "orvel::StructuringElementXY");
  EXPECT_EQ(StructuringElementXY::getVersion(), 1U);
  EXPECT_TRUE(StructuringElementXY().hasCopySupport());
  EXPECT_TRUE((std::is_base_of<BaseStructuringElement, StructuringElementXY>::value));
}

TEST(StructuringElementXY, NamesItsTypes)
{
  EXPECT_TRUE((std::is_same<XYOffsetColl, std::set<OffsetXY>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYPtr, boost::shared_ptr<StructuringElementXY>>::value));
  EXPECT_TRUE(
      (std::is_same<StructuringElementXYConstPtr, boost::shared_ptr<const StructuringElementXY>>::value));
}

TEST(StructuringElementXY, TellsItsKind)
{
  const StructuringElementXY element;
  EXPECT_TRUE(element.getStructuringElementType() == eStructuringElementType::eSET_XY);
  const BaseStructuringElement& base = element;
  EXPECT_EQ(base.getStructuringElementType().getValue(), 0U);
}

TEST(StructuringElementXY, HasMembersOfTheseTypes)
{
  using Element = StructuringElementXY;
  EXPECT_TRUE((std::is_same<decltype(memberOf(DataColl())), std::set<OffsetXY> Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinX())), ipInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinY())), ipInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeX())), ipUInt32 Element::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeY())), ipUInt32 Element::*>::value));
}

TEST(StructuringElementXY, ReturnsEachMember)
{
  StructuringElementXY element;
  element.*memberOf(MinX()) = 1;
  element.*memberOf(MinY()) = 2;
  element.*memberOf(SizeX()) = 3;
  element.*memberOf(SizeY()) = 4;
  EXPECT_EQ(element.getMinX(), 1);
  EXPECT_EQ(element.getMinY(), 2);
  EXPECT_EQ(element.getSizeX(), 3U);
  EXPECT_EQ(element.getSizeY(), 4U);
  EXPECT_EQ(&element.getDataColl(), &(element.*memberOf(DataColl())));
}

/// What a failure tells of the statement that raised it.
struct RaisingCase
{
  void (*operation)(StructuringElementXY& element);
  std::string message;
  std::string function;
  std::string statement;
};

const RaisingCase g_raisingCases[] = {
    {[](StructuringElementXY& element) { element.insert(OffsetXY(0, 0)); },
     "Can't insert element into structuring element, it already exists",
     "void orvel::StructuringElementXY::insert(const OffsetType&)", "eInsertExistingSEElt"},
    {[](StructuringElementXY& element) { element.remove(OffsetXY(9, 0)); },
     "Can't remove element from structuring element, it does not exists",
     "void orvel::StructuringElementXY::remove(const OffsetType&)", "eRemoveMissingSEElt"},
};

StructuringElementXY makeElement()
{
  StructuringElementXY element;
  element.insert(OffsetXY(0, 0));
  return element;
}

TEST(StructuringElementXY, NamesTheRaisingFunctionAndStatement)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    StructuringElementXY element = makeElement();
    const auto failure = failureOf<ORVELBaseDataException>([&] { raising.operation(element); });
    EXPECT_EQ(failure.getMessage(), raising.message);
    EXPECT_NE(std::string(failure.what()).find(raising.message), std::string::npos);
    EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(raising.function));
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.cpp");
    EXPECT_NE(sourceLine(failure.getFile(), failure.getLine())
                  .find("raise(ORVEL_HERE, eStructuringElementMessage::" + raising.statement),
              std::string::npos);
    EXPECT_EQ(failure.getCause(), nullptr);
  }
}

TEST(StructuringElementXY, LogsEachFailureOnceAtErrorLevel)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    StructuringElementXY element = makeElement();
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

TEST(StructuringElementXY, RaisesTheSameWithLoggingDisabled)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    StructuringElementXY element = makeElement();
    const LogCapture log(getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL);
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { raising.operation(element); }), raising.message);
    EXPECT_TRUE(log.getRecords().empty());
  }
}

StructuringElementXY makeElementOfTwo()
{
  StructuringElementXY element;
  element.insert(OffsetXY(3, -2));
  element.insert(OffsetXY(4, -2));
  return element;
}

TEST(StructuringElementXYFile, IsThisXmlText)
{
  EXPECT_EQ(fileOf<HandWrittenXml>([](BaseOArchive& archive) { makeElementOfTwo().write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BaseStructuringElement">
    <item key="version">1</item>
  </section>
  <section name="orvel::StructuringElementXY">
    <item key="version">1</item>
  </section>
  <section name="_dataColl">
    <section name="set">
      <item key="size">2</item>
      <object key="key">
        <section name="orvel::OffsetXY">
          <item key="version">1</item>
        </section>
        <item key="_xOffset">3</item>
        <item key="_yOffset">-2</item>
      </object>
      <object key="key">
        <item key="_xOffset">4</item>
        <item key="_yOffset">-2</item>
      </object>
    </section>
  </section>
  <item key="_minX">3</item>
  <item key="_minY">-2</item>
  <item key="_sizeX">2</item>
  <item key="_sizeY">1</item>
</orvelArchive>
)");
}

TEST(StructuringElementXYFile, IsTheseBytes)
{
  const std::string file =
      fileOf<HandWrittenBinary>([](BaseOArchive& archive) { makeElementOfTwo().write(archive); });
  const char bytes[] = "\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little" // format, its version, byte order
                       "\x9F\x01\xFF\x9F\x01\xFF"                // class versions of the base and the element
                       "\x9F\x9F\x02"                            // the set, 2 offsets
                       "\x9F\x9F\x01\xFF\x03\x21\xFF"            // class version and first offset
                       "\x9F\x04\x21\xFF"                        // second offset
                       "\xFF\xFF"                                // end of the set
                       "\x03\x21"                                // the minima
                       "\x02\x01"                                // the sizes
                       "\x83\x63"
                       "end\x18\x2C\x1B"; // 44 bytes stand before this; the 8 bytes of the hash follow
  const std::string start(bytes, sizeof bytes - 1);
  EXPECT_EQ(file.substr(0, start.size()), start);
  EXPECT_EQ(file.size(), start.size() + 8);
}

TEST(StructuringElementXY, TravelsUnderASharedPointerByItsClassName)
{
  const auto written = boost::make_shared<StructuringElementXY>(makeElement());
  const std::string file = fileOf<HandWrittenXml>([&written](BaseOArchive& archive)
                                                  { archive << SerializationOItem("element", written); });
  readFile<HandWrittenXml>(file,
                           [](BaseIArchive& archive)
                           {
                             boost::shared_ptr<BaseStructuringElement> base;
                             archive >> SerializationIItem("element", base);
                             const auto element = boost::dynamic_pointer_cast<StructuringElementXY>(base);
                             ASSERT_NE(element, nullptr);
                             EXPECT_TRUE(element->exists(OffsetXY(0, 0)));
                           });
}

} // namespace
