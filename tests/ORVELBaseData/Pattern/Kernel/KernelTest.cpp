#include <limits>
#include <map>
#include <string>
#include <type_traits>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "KernelTesting.h"
#include "ORVELBaseData/Pattern/Kernel/KernelXY.h"
#include "ORVELBaseData/Pattern/Kernel/KernelXYZ.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELSerialization/ItemOperators.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

// What each of the two classes has of its own: names, layout, failures. What they do alike has tests with
// KernelOperations.
namespace
{

using namespace orvel;
using namespace orvel::test;

ORVEL_TEST_EXPOSE(PlaneDataColl, &KernelXY::_dataColl)
ORVEL_TEST_EXPOSE(PlaneMinX, &KernelXY::_minX)
ORVEL_TEST_EXPOSE(PlaneMinY, &KernelXY::_minY)
ORVEL_TEST_EXPOSE(PlaneSizeX, &KernelXY::_sizeX)
ORVEL_TEST_EXPOSE(PlaneSizeY, &KernelXY::_sizeY)
ORVEL_TEST_EXPOSE(PlaneCoefSum, &KernelXY::_coefSum)
ORVEL_TEST_EXPOSE(PlaneAbsCoefSum, &KernelXY::_absCoefSum)
ORVEL_TEST_EXPOSE(PlaneComputeAbsCoefSum, &KernelXY::computeAbsCoefSum)
ORVEL_TEST_EXPOSE(SpaceDataColl, &KernelXYZ::_dataColl)
ORVEL_TEST_EXPOSE(SpaceMinX, &KernelXYZ::_minX)
ORVEL_TEST_EXPOSE(SpaceMinY, &KernelXYZ::_minY)
ORVEL_TEST_EXPOSE(SpaceMinZ, &KernelXYZ::_minZ)
ORVEL_TEST_EXPOSE(SpaceSizeX, &KernelXYZ::_sizeX)
ORVEL_TEST_EXPOSE(SpaceSizeY, &KernelXYZ::_sizeY)
ORVEL_TEST_EXPOSE(SpaceSizeZ, &KernelXYZ::_sizeZ)
ORVEL_TEST_EXPOSE(SpaceCoefSum, &KernelXYZ::_coefSum)
ORVEL_TEST_EXPOSE(SpaceAbsCoefSum, &KernelXYZ::_absCoefSum)
ORVEL_TEST_EXPOSE(SpaceComputeAbsCoefSum, &KernelXYZ::computeAbsCoefSum)

ipReal32 computeAbsCoefSum(KernelXY& kernel)
{
  return (kernel.*memberOf(PlaneComputeAbsCoefSum()))();
}

ipReal32 computeAbsCoefSum(KernelXYZ& kernel)
{
  return (kernel.*memberOf(SpaceComputeAbsCoefSum()))();
}

template <class KernelType>
class KernelClass : public ::testing::Test
{
protected:
  using Traits = KernelTraits<KernelType>;

  static typename KernelType::OffsetType at(ipInt32 x) { return Traits::at({x, 0, 0}); }

  /// Taps 1.5, -0.5 and 0 along x.
  static KernelType makeKernel()
  {
    KernelType kernel;
    kernel.insert(at(0), 1.5);
    kernel.insert(at(1), -0.5);
    kernel.insert(at(2), 0);
    return kernel;
  }
};

TYPED_TEST_SUITE(KernelClass, Kernels, KernelNames);

TYPED_TEST(KernelClass, HasItsFrameIdentity)
{
  EXPECT_EQ(TypeParam::getTypeName(), std::string("orvel::") + TestFixture::Traits::name);
  EXPECT_EQ(TypeParam::getVersion(), 2U);
  EXPECT_TRUE((std::is_base_of<BaseKernel, TypeParam>::value));
}

TEST(KernelXY, NamesItsTypesAndItsKind)
{
  EXPECT_TRUE((std::is_same<KernelXY::OffsetType, OffsetXY>::value));
  EXPECT_TRUE((std::is_same<KernelXY::ValueType, ipReal32>::value));
  EXPECT_TRUE((std::is_same<KernelXYPtr, boost::shared_ptr<KernelXY>>::value));
  EXPECT_TRUE(KernelXY().getKernelType() == eKernelType::eKT_XY);
  EXPECT_EQ(KernelXY().getKernelType().getValue(), 0U);
}

TEST(KernelXYZ, NamesItsTypesAndItsKind)
{
  EXPECT_TRUE((std::is_same<KernelXYZ::OffsetType, OffsetXYZ>::value));
  EXPECT_TRUE((std::is_same<KernelXYZ::ValueType, ipReal32>::value));
  EXPECT_TRUE((std::is_same<KernelXYZPtr, boost::shared_ptr<KernelXYZ>>::value));
  EXPECT_TRUE(KernelXYZ().getKernelType() == eKernelType::eKT_XYZ);
  EXPECT_EQ(KernelXYZ().getKernelType().getValue(), 1U);
}

TEST(KernelXY, HasMembersOfTheseTypesInOrder)
{
  std::map<OffsetXY, ipReal32> KernelXY::*const taps = memberOf(PlaneDataColl());
  ipInt32 KernelXY::*const minima[] = {memberOf(PlaneMinX()), memberOf(PlaneMinY())};
  ipUInt32 KernelXY::*const sizes[] = {memberOf(PlaneSizeX()), memberOf(PlaneSizeY())};
  ipReal32 KernelXY::*const sums[] = {memberOf(PlaneCoefSum()), memberOf(PlaneAbsCoefSum())};
  EXPECT_EQ(offsetOf(taps), 8); // behind the pointer to the virtual operations
  EXPECT_EQ(offsetOf(minima[0]), 56);
  EXPECT_EQ(offsetOf(minima[1]), 60);
  EXPECT_EQ(offsetOf(sizes[0]), 64);
  EXPECT_EQ(offsetOf(sizes[1]), 68);
  EXPECT_EQ(offsetOf(sums[0]), 72);
  EXPECT_EQ(offsetOf(sums[1]), 76);
  EXPECT_EQ(sizeof(KernelXY), 80U);

  KernelXY kernel;
  kernel.*minima[0] = 1;
  kernel.*minima[1] = 2;
  kernel.*sizes[0] = 4;
  kernel.*sizes[1] = 5;
  kernel.*sums[0] = 7;
  kernel.*sums[1] = 8;
  EXPECT_EQ(boxOf(kernel), (Box{{1, 2}, {4, 5}}));
  EXPECT_EQ(kernel.getCoefSum(), 7.0f);
  EXPECT_EQ(kernel.getAbsCoefSum(), 8.0f);
  EXPECT_EQ(&kernel.getDataColl(), &(kernel.*taps));
}

TEST(KernelXYZ, HasMembersOfTheseTypesInOrder)
{
  std::map<OffsetXYZ, ipReal32> KernelXYZ::*const taps = memberOf(SpaceDataColl());
  ipInt32 KernelXYZ::*const minima[] = {memberOf(SpaceMinX()), memberOf(SpaceMinY()), memberOf(SpaceMinZ())};
  ipUInt32 KernelXYZ::*const sizes[] = {memberOf(SpaceSizeX()), memberOf(SpaceSizeY()),
                                        memberOf(SpaceSizeZ())};
  ipReal32 KernelXYZ::*const sums[] = {memberOf(SpaceCoefSum()), memberOf(SpaceAbsCoefSum())};
  EXPECT_EQ(offsetOf(taps), 8);
  for (std::size_t axis = 0; axis < 3; ++axis)
  {
    EXPECT_EQ(offsetOf(minima[axis]), 56 + 4 * static_cast<std::ptrdiff_t>(axis));
    EXPECT_EQ(offsetOf(sizes[axis]), 68 + 4 * static_cast<std::ptrdiff_t>(axis));
  }
  EXPECT_EQ(offsetOf(sums[0]), 80);
  EXPECT_EQ(offsetOf(sums[1]), 84);
  EXPECT_EQ(sizeof(KernelXYZ), 88U);

  KernelXYZ kernel;
  for (int axis = 0; axis < 3; ++axis)
  {
    kernel.*minima[axis] = 1 + axis;
    kernel.*sizes[axis] = 4U + static_cast<ipUInt32>(axis);
  }
  kernel.*sums[0] = 7;
  kernel.*sums[1] = 8;
  EXPECT_EQ(boxOf(kernel), (Box{{1, 2, 3}, {4, 5, 6}}));
  EXPECT_EQ(kernel.getCoefSum(), 7.0f);
  EXPECT_EQ(kernel.getAbsCoefSum(), 8.0f);
  EXPECT_EQ(&kernel.getDataColl(), &(kernel.*taps));
}

TYPED_TEST(KernelClass, DoublesPositiveCoefficientsAndDropsNegativeOnesForOldArchives)
{
  TypeParam kernel = this->makeKernel();
  EXPECT_EQ(computeAbsCoefSum(kernel), 0.0f);
  EXPECT_EQ(kernel.getValue(this->at(0)), 3.0f);
  EXPECT_EQ(kernel.getValue(this->at(1)), 0.0f);
  EXPECT_EQ(kernel.getValue(this->at(2)), 0.0f);
  EXPECT_EQ(kernel.getCoefSum(), 1.0f);
  EXPECT_EQ(kernel.getAbsCoefSum(), 2.0f);
}

TYPED_TEST(KernelClass, LeavesTheRangeOfFloatsAtItsEndsForOldArchives)
{
  constexpr float infinity = std::numeric_limits<float>::infinity();
  constexpr float largest = std::numeric_limits<float>::max();
  TypeParam kernel;
  kernel.insert(this->at(0), -infinity);
  kernel.insert(this->at(1), largest);
  kernel.insert(this->at(2), -largest);
  kernel.insert(this->at(3), floatOf(0xFFC12345)); // a NaN, added to its absolute value
  computeAbsCoefSum(kernel);
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(0))), g_defaultNaNBits);
  EXPECT_EQ(kernel.getValue(this->at(1)), infinity);
  EXPECT_EQ(kernel.getValue(this->at(2)), 0.0f);
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(3))), g_defaultNaNBits);
}

TYPED_TEST(KernelClass, RaisesInTheNameOfItsOwnOperations)
{
  const std::string name = TestFixture::Traits::name;
  const std::string scope = "orvel::" + name + "::";
  const std::string file = "ORVELBaseData/Pattern/Kernel/" + name + ".cpp";
  TypeParam kernel = this->makeKernel();
  const auto expectFailure = [&](const auto& operation, const std::string& message,
                                 const std::string& function, const std::string& statement)
  {
    expectRaised<ORVELBaseDataException>(operation, {message, function, file, "", statement});
  };
  expectFailure([&] { kernel.insert(this->at(0), 1); }, "Can't insert element into kernel, it already exists",
                "void " + scope + "insert(const OffsetType&, const ValueType&)", "eInsertExistingKernelElt");
  expectFailure([&] { kernel.replace(this->at(9), 1); },
                "Can't remove element from kernel, it does not exists",
                "void " + scope + "replace(const OffsetType&, const ValueType&)", "eRemoveMissingKernelElt");
  expectFailure([&] { kernel.remove(this->at(9)); }, "Can't remove element from kernel, it does not exists",
                "void " + scope + "remove(const OffsetType&)", "eRemoveMissingKernelElt");
  expectFailure([&] { kernel.getValue(this->at(9)); },
                "Can't get element value from kernel, it does not exists",
                scope + "ValueType " + scope + "getValue(const OffsetType&) const", "eGetMissingKernelElt");
}

TYPED_TEST(KernelClass, RaisesTheSameWithLoggingDisabled)
{
  const LogCapture log(getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL);
  TypeParam kernel = this->makeKernel();
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { kernel.insert(this->at(0), 1); }),
            "Can't insert element into kernel, it already exists");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { kernel.getValue(this->at(9)); }),
            "Can't get element value from kernel, it does not exists");
  EXPECT_TRUE(log.getRecords().empty());
}

TYPED_TEST(KernelClass, TravelsUnderAPointerToItsBaseByItsClassName)
{
  const auto written = boost::make_shared<TypeParam>(this->makeKernel());
  const std::string file = fileOf<HandWrittenXml>([&](BaseOArchive& archive)
                                                  { archive << SerializationOItem("kernel", written); });
  boost::shared_ptr<BaseKernel> read;
  readFile<HandWrittenXml>(file,
                           [&](BaseIArchive& archive) { archive >> SerializationIItem("kernel", read); });
  const auto* const kernel = dynamic_cast<const TypeParam*>(read.get());
  ASSERT_NE(kernel, nullptr);
  EXPECT_EQ(tapsOf(*kernel), tapsOf(*written));
}

} // namespace
