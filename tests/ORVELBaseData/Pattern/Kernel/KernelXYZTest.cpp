#include "ORVELBaseData/Pattern/Kernel/KernelXYZ.h"

#include <limits>
#include <map>
#include <string>
#include <type_traits>

#include <boost/make_shared.hpp>
#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include "../Signature.h"
#include "KernelTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

ORVEL_TEST_EXPOSE(DataColl, &KernelXYZ::_dataColl)
ORVEL_TEST_EXPOSE(MinX, &KernelXYZ::_minX)
ORVEL_TEST_EXPOSE(MinY, &KernelXYZ::_minY)
ORVEL_TEST_EXPOSE(MinZ, &KernelXYZ::_minZ)
ORVEL_TEST_EXPOSE(SizeX, &KernelXYZ::_sizeX)
ORVEL_TEST_EXPOSE(SizeY, &KernelXYZ::_sizeY)
ORVEL_TEST_EXPOSE(SizeZ, &KernelXYZ::_sizeZ)
ORVEL_TEST_EXPOSE(CoefSum, &KernelXYZ::_coefSum)
ORVEL_TEST_EXPOSE(AbsCoefSum, &KernelXYZ::_absCoefSum)
ORVEL_TEST_EXPOSE(ComputeAbsCoefSum, &KernelXYZ::computeAbsCoefSum)

TEST(KernelXYZ, HasItsFrameIdentity)
{
  EXPECT_EQ(KernelXYZ::getTypeName(), "orvel::KernelXYZ");
  EXPECT_EQ(KernelXYZ().getClassName(), "orvel::KernelXYZ");
  EXPECT_EQ(KernelXYZ::getVersion(), 2U);
  EXPECT_TRUE(KernelXYZ().hasCopySupport());
  EXPECT_TRUE((std::is_base_of<BaseKernel, KernelXYZ>::value));
}

TEST(KernelXYZ, IsCreatedByItsName)
{
  const boost::scoped_ptr<BaseDynamicObject> made(
      DynamicObjectFactory::getInstance().createNew("orvel::KernelXYZ"));
  EXPECT_NE(dynamic_cast<KernelXYZ*>(made.get()), nullptr);
  const DynamicObjectPtr shared = DynamicObjectFactory::getInstance().createShared("orvel::KernelXYZ");
  EXPECT_NE(dynamic_cast<KernelXYZ*>(shared.get()), nullptr);
}

TEST(KernelXYZ, NamesItsTypes)
{
  EXPECT_TRUE((std::is_same<KernelXYZ::OffsetType, OffsetXYZ>::value));
  EXPECT_TRUE((std::is_same<KernelXYZ::ValueType, ipReal32>::value));
  EXPECT_TRUE((std::is_same<KernelXYZPtr, boost::shared_ptr<KernelXYZ>>::value));
}

TEST(KernelXYZ, TellsItsKind)
{
  const KernelXYZ kernel;
  EXPECT_TRUE(kernel.getKernelType() == eKernelType::eKT_XYZ);
  EXPECT_EQ(static_cast<const BaseKernel&>(kernel).getKernelType().getValue(), 1U);
}

TEST(KernelXYZ, AddsNoVirtualOperationToThoseOfItsBase)
{
  EXPECT_EQ(vtableIndexOf(&KernelXYZ::getKernelType), 12U);
  EXPECT_EQ(vtableIndexOf(&KernelXYZ::getNbData), 13U);
  EXPECT_EQ(vtableIndexOf(&KernelXYZ::clear), 14U);
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(KernelXYZ()), 15U);
  }
}

TEST(KernelXYZ, HasItsMembersInOrder)
{
  EXPECT_EQ(offsetOf(memberOf(DataColl())), 8); // behind the pointer to the virtual operations
  EXPECT_EQ(offsetOf(memberOf(MinX())), 56);
  EXPECT_EQ(offsetOf(memberOf(MinY())), 60);
  EXPECT_EQ(offsetOf(memberOf(MinZ())), 64);
  EXPECT_EQ(offsetOf(memberOf(SizeX())), 68);
  EXPECT_EQ(offsetOf(memberOf(SizeY())), 72);
  EXPECT_EQ(offsetOf(memberOf(SizeZ())), 76);
  EXPECT_EQ(offsetOf(memberOf(CoefSum())), 80);
  EXPECT_EQ(offsetOf(memberOf(AbsCoefSum())), 84);
  EXPECT_EQ(sizeof(KernelXYZ), 88U);
}

TEST(KernelXYZ, HasMembersOfTheseTypes)
{
  EXPECT_TRUE(
      (std::is_same<decltype(memberOf(DataColl())), std::map<OffsetXYZ, ipReal32> KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinX())), ipInt32 KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinY())), ipInt32 KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(MinZ())), ipInt32 KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeX())), ipUInt32 KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeY())), ipUInt32 KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(SizeZ())), ipUInt32 KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(CoefSum())), ipReal32 KernelXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(AbsCoefSum())), ipReal32 KernelXYZ::*>::value));
}

TEST(KernelXYZ, ReturnsEachMember)
{
  KernelXYZ kernel;
  kernel.*memberOf(MinX()) = 1;
  kernel.*memberOf(MinY()) = 2;
  kernel.*memberOf(MinZ()) = 3;
  kernel.*memberOf(SizeX()) = 4;
  kernel.*memberOf(SizeY()) = 5;
  kernel.*memberOf(SizeZ()) = 6;
  kernel.*memberOf(CoefSum()) = 7;
  kernel.*memberOf(AbsCoefSum()) = 8;
  EXPECT_EQ(kernel.getMinX(), 1);
  EXPECT_EQ(kernel.getMinY(), 2);
  EXPECT_EQ(kernel.getMinZ(), 3);
  EXPECT_EQ(kernel.getSizeX(), 4U);
  EXPECT_EQ(kernel.getSizeY(), 5U);
  EXPECT_EQ(kernel.getSizeZ(), 6U);
  EXPECT_EQ(kernel.getCoefSum(), 7.0f);
  EXPECT_EQ(kernel.getAbsCoefSum(), 8.0f);
  EXPECT_EQ(&kernel.getDataColl(), &(kernel.*memberOf(DataColl())));
}

TEST(KernelXYZ, DoublesPositiveCoefficientsAndDropsNegativeOnesForOldArchives)
{
  KernelXYZ kernel;
  kernel.insert(OffsetXYZ(0, 0, 0), 1.5);
  kernel.insert(OffsetXYZ(1, 0, 0), -0.5);
  kernel.insert(OffsetXYZ(2, 0, 0), 0);
  EXPECT_EQ((kernel.*memberOf(ComputeAbsCoefSum()))(), 0.0f);
  EXPECT_EQ(kernel.getValue(OffsetXYZ(0, 0, 0)), 3.0f);
  EXPECT_EQ(kernel.getValue(OffsetXYZ(1, 0, 0)), 0.0f);
  EXPECT_EQ(kernel.getValue(OffsetXYZ(2, 0, 0)), 0.0f);
  EXPECT_EQ(kernel.getCoefSum(), 1.0f);
  EXPECT_EQ(kernel.getAbsCoefSum(), 2.0f);
}

TEST(KernelXYZ, LeavesTheRangeOfFloatsAtItsEndsForOldArchives)
{
  constexpr float infinity = std::numeric_limits<float>::infinity();
  KernelXYZ kernel;
  kernel.insert(OffsetXYZ(0, 0, 0), -infinity);
  kernel.insert(OffsetXYZ(1, 0, 0), std::numeric_limits<float>::max());
  kernel.insert(OffsetXYZ(2, 0, 0), -std::numeric_limits<float>::max());
  kernel.insert(OffsetXYZ(3, 0, 0), floatOf(0xFFC12345)); // added to its absolute value
  (kernel.*memberOf(ComputeAbsCoefSum()))();
  EXPECT_EQ(bitsOf(kernel.getValue(OffsetXYZ(0, 0, 0))), g_defaultNaNBits);
  EXPECT_EQ(bitsOf(kernel.getValue(OffsetXYZ(3, 0, 0))), g_defaultNaNBits);
  EXPECT_EQ(kernel.getValue(OffsetXYZ(1, 0, 0)), infinity);
  EXPECT_EQ(kernel.getValue(OffsetXYZ(2, 0, 0)), 0.0f);
}

/// What a failure tells of the statement that raised it.
struct RaisingCase
{
  void (*operation)(KernelXYZ& kernel);
  std::string message;
  std::string function;
  std::string statement;
};

const RaisingCase g_raisingCases[] = {
    {[](KernelXYZ& kernel) { kernel.insert(OffsetXYZ(0, 0, 0), 1); },
     "Can't insert element into kernel, it already exists",
     "void orvel::KernelXYZ::insert(const OffsetType&, const ValueType&)", "eInsertExistingKernelElt"},
    {[](KernelXYZ& kernel) { kernel.replace(OffsetXYZ(9, 0, 0), 1); },
     "Can't remove element from kernel, it does not exists",
     "void orvel::KernelXYZ::replace(const OffsetType&, const ValueType&)", "eRemoveMissingKernelElt"},
    {[](KernelXYZ& kernel) { kernel.remove(OffsetXYZ(9, 0, 0)); },
     "Can't remove element from kernel, it does not exists",
     "void orvel::KernelXYZ::remove(const OffsetType&)", "eRemoveMissingKernelElt"},
    {[](KernelXYZ& kernel) { kernel.getValue(OffsetXYZ(9, 0, 0)); },
     "Can't get element value from kernel, it does not exists",
     "orvel::KernelXYZ::ValueType orvel::KernelXYZ::getValue(const OffsetType&) const",
     "eGetMissingKernelElt"},
};

TEST(KernelXYZ, NamesTheRaisingFunctionAndStatement)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    KernelXYZ kernel;
    kernel.insert(OffsetXYZ(0, 0, 0), 1);
    const ORVELBaseDataException failure =
        failureOf<ORVELBaseDataException>([&] { raising.operation(kernel); });
    EXPECT_EQ(failure.getMessage(), raising.message);
    EXPECT_NE(std::string(failure.what()).find(raising.message), std::string::npos);
    EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(raising.function));
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Pattern/Kernel/KernelXYZ.cpp");
    EXPECT_NE(sourceLine(failure.getFile(), failure.getLine())
                  .find("raise(ORVEL_HERE, eKernelMessage::" + raising.statement),
              std::string::npos);
    EXPECT_EQ(failure.getCause(), nullptr);
  }
}

TEST(KernelXYZ, LogsEachFailureAtErrorLevel)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    KernelXYZ kernel;
    kernel.insert(OffsetXYZ(0, 0, 0), 1);
    const LogCapture log(getORVELBaseDataLogger());
    const ORVELBaseDataException failure =
        failureOf<ORVELBaseDataException>([&] { raising.operation(kernel); });
    ASSERT_EQ(log.getRecords().size(), 1U);
    const LogRecord& record = log.getRecords().front();
    EXPECT_EQ(record.level, 40000);
    EXPECT_EQ(record.logger, getORVELBaseDataLoggerName());
    EXPECT_EQ(record.message, raising.message);
    EXPECT_EQ(record.file, failure.getFile());
    EXPECT_EQ(record.line, static_cast<int>(failure.getLine()));
  }
}

TEST(KernelXYZ, RaisesTheSameWithLoggingDisabled)
{
  for (const RaisingCase& raising : g_raisingCases)
  {
    KernelXYZ kernel;
    kernel.insert(OffsetXYZ(0, 0, 0), 1);
    const LogCapture log(getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL);
    EXPECT_EQ(failureOf<ORVELBaseDataException>([&] { raising.operation(kernel); }).getMessage(),
              raising.message);
    EXPECT_TRUE(log.getRecords().empty());
  }
}

TEST(KernelXYZFile, IsThisXmlText)
{
  EXPECT_EQ(fileOf<HandWrittenXml>(
                [](BaseOArchive& archive)
                {
                  KernelXYZ kernel;
                  kernel.insert(OffsetXYZ(3, -2, 7), 1.5);
                  kernel.insert(OffsetXYZ(4, -2, 7), -0.25);
                  kernel.write(archive);
                }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BaseKernel">
    <item key="version">1</item>
  </section>
  <section name="orvel::KernelXYZ">
    <item key="version">2</item>
  </section>
  <section name="_dataColl">
    <section name="map">
      <item key="size">2</item>
      <object key="key">
        <section name="orvel::OffsetXYZ">
          <item key="version">1</item>
        </section>
        <item key="_xOffset">3</item>
        <item key="_yOffset">-2</item>
        <item key="_zOffset">7</item>
      </object>
      <item key="value">1.5</item>
      <object key="key">
        <item key="_xOffset">4</item>
        <item key="_yOffset">-2</item>
        <item key="_zOffset">7</item>
      </object>
      <item key="value">-0.25</item>
    </section>
  </section>
  <item key="_minX">3</item>
  <item key="_minY">-2</item>
  <item key="_minZ">7</item>
  <item key="_sizeX">2</item>
  <item key="_sizeY">1</item>
  <item key="_sizeZ">1</item>
  <item key="_coefSum">1.25</item>
  <item key="_absCoefSum">1.75</item>
</orvelArchive>
)");
}

TEST(KernelXYZFile, IsTheseBytes)
{
  const std::string file = fileOf<HandWrittenBinary>(
      [](BaseOArchive& archive)
      {
        KernelXYZ kernel;
        kernel.insert(OffsetXYZ(3, -2, 7), 1.5);
        kernel.insert(OffsetXYZ(4, -2, 7), -0.25);
        kernel.write(archive);
      });
  const char bytes[] =
      "\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little"              // format, its version, byte order
      "\x9F\x01\xFF\x9F\x02\xFF"                             // class versions of the base and the kernel
      "\x9F\x9F\x02"                                         // the map, 2 taps
      "\x9F\x9F\x01\xFF\x03\x21\x07\xFF\xFA\x3F\xC0\x00\x00" // class version and first offset, 1.5
      "\x9F\x04\x21\x07\xFF\xFA\xBE\x80\x00\x00"             // second offset, -0.25
      "\xFF\xFF"                                             // end of the map
      "\x03\x21\x07"                                         // the minima
      "\x02\x01\x01"                                         // the sizes
      "\xFA\x3F\xA0\x00\x00\xFA\x3F\xE0\x00\x00"             // 1.25, 1.75
      "\x83\x63"
      "end\x18\x44\x1B"; // 68 bytes stand before this; the 8 bytes of the hash follow
  const std::string start(bytes, sizeof bytes - 1);
  EXPECT_EQ(file.substr(0, start.size()), start);
  EXPECT_EQ(file.size(), start.size() + 8);
}

TEST(KernelXYZ, TravelsUnderASharedPointerByItsClassName)
{
  const boost::shared_ptr<KernelXYZ> written = boost::make_shared<KernelXYZ>();
  written->insert(OffsetXYZ(3, -2, 7), 1.5);
  const std::string file = fileOf<HandWrittenXml>([&written](BaseOArchive& archive)
                                                  { archive << SerializationOItem("kernel", written); });
  readFile<HandWrittenXml>(file,
                           [](BaseIArchive& archive)
                           {
                             boost::shared_ptr<BaseKernel> kernel;
                             archive >> SerializationIItem("kernel", kernel);
                             ASSERT_NE(dynamic_cast<KernelXYZ*>(kernel.get()), nullptr);
                             EXPECT_EQ(dynamic_cast<KernelXYZ&>(*kernel).getValue(OffsetXYZ(3, -2, 7)), 1.5f);
                           });
}

} // namespace
