#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h"

#include <cstddef>
#include <limits>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "InfoTesting.h"
#include "SubTypeTables.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <support/EnumerationItemChecks.h>
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(SEXYSubType, EnumerationItems, SEXYSubTypeTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(SEXYZSubType, EnumerationItems, SEXYZSubTypeTable, );

// The kinds of one dimension are none of the other, though they end alike.
TEST(StructuringElementInfoUtils, TellTheDimensionsApart)
{
  expectRefusal<SEXYSubTypeTable, HandWrittenXml>(xmlOf("eSEXYZ_Linear"),
                                                  "Unknown enumeration text eSEXYZ_Linear");
  expectRefusal<SEXYZSubTypeTable, HandWrittenXml>(xmlOf("eSEXY_Linear"),
                                                   "Unknown enumeration text eSEXY_Linear");
}

TEST(StructuringElementInfoUtils, TakeTheArgumentsOfTheInitialisationsAndGiveSharedDescriptions)
{
  using PtrXY = StructuringElementXYInfoPtr;
  using PtrXYZ = StructuringElementXYZInfoPtr;
  EXPECT_TRUE((std::is_same<decltype(genericSEXYInfo), PtrXY(const StructuringElementXY&)>::value));
  EXPECT_TRUE((std::is_same<decltype(emptySEXYInfo), PtrXY()>::value));
  EXPECT_TRUE((std::is_same<decltype(squareSEXYInfo), PtrXY(ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(rectangularSEXYInfo), PtrXY(ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(circularSEXYInfo), PtrXY(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(halfLinearSEXYInfo), PtrXY(ipReal64, ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(linearSEXYInfo), PtrXY(ipReal64, ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(genericSEXYZInfo), PtrXYZ(const StructuringElementXYZ&)>::value));
  EXPECT_TRUE((std::is_same<decltype(emptySEXYZInfo), PtrXYZ()>::value));
  EXPECT_TRUE((std::is_same<decltype(cubicSEXYZInfo), PtrXYZ(ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(rectangularSEXYZInfo), PtrXYZ(ipUInt32, ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(sphericalSEXYZInfo), PtrXYZ(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(halfLinearSEXYZInfo), PtrXYZ(ipReal64, ipReal64, ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(linearSEXYZInfo), PtrXYZ(ipReal64, ipReal64, ipReal64)>::value));
}

constexpr const char* g_invalidSubType =
    "Structuring element sub type do not allows to retrieve this kind of information";

template <class Operation>
void expectNoSuchParameter(Operation operation)
{
  EXPECT_EQ(messageOf<ORVELBaseDataException>(operation), g_invalidSubType);
}

TEST(StructuringElementInfoUtils, DescribeAnyElementByACopyOfIt)
{
  StructuringElementXY planar;
  planar.insert(OffsetXY(3, -2));
  const StructuringElementXYInfoPtr planarInfo = genericSEXYInfo(planar);
  EXPECT_TRUE(planarInfo->getSEXYSubType() == eSEXYSubType::eSEXY_Generic);
  EXPECT_EQ(stateOf(*planarInfo->getStructuringElement()), stateOf(planar));

  StructuringElementXYZ spatial;
  spatial.insert(OffsetXYZ(3, -2, 7));
  const StructuringElementXYZInfoPtr spatialInfo = genericSEXYZInfo(spatial);
  EXPECT_TRUE(spatialInfo->getSEXYZSubType() == eSEXYZSubType::eSEXYZ_Generic);
  EXPECT_EQ(stateOf(*spatialInfo->getStructuringElement()), stateOf(spatial));

  planar.clear();
  spatial.clear();
  EXPECT_EQ(planarInfo->getDataColl().size(), 1U);
  EXPECT_EQ(spatialInfo->getDataColl().size(), 1U);
}

TEST(StructuringElementInfoUtils, DescribeAnEmptyElement)
{
  const StructuringElementXYInfoPtr planar = emptySEXYInfo();
  EXPECT_TRUE(planar->isInitialized());
  EXPECT_TRUE(planar->getSEXYSubType() == eSEXYSubType::eSEXY_Generic);
  EXPECT_TRUE(planar->getDataColl().empty());
  expectNoSuchParameter([&] { planar->getRadius(); });
  EXPECT_TRUE(planar->insert(0, 0));

  const StructuringElementXYZInfoPtr spatial = emptySEXYZInfo();
  EXPECT_TRUE(spatial->isInitialized());
  EXPECT_TRUE(spatial->getSEXYZSubType() == eSEXYZSubType::eSEXYZ_Generic);
  EXPECT_TRUE(spatial->getDataColl().empty());
  expectNoSuchParameter([&] { spatial->getRadius(); });
  EXPECT_TRUE(spatial->insert(0, 0, 0));
}

TEST(StructuringElementInfoUtils, DescribeASquare)
{
  const StructuringElementXYInfoPtr info = squareSEXYInfo(2);
  EXPECT_TRUE(info->getSEXYSubType() == eSEXYSubType::eSEXY_Square);
  EXPECT_EQ(info->getHalfSize(), 2U);
  EXPECT_EQ(info->getDataColl().size(), 25U);
  expectNoSuchParameter([&] { info->getHalfSizeX(); });
  expectNoSuchParameter([&] { info->getRadius(); });
}

TEST(StructuringElementInfoUtils, DescribeACube)
{
  const StructuringElementXYZInfoPtr info = cubicSEXYZInfo(2);
  EXPECT_TRUE(info->getSEXYZSubType() == eSEXYZSubType::eSEXYZ_Cubic);
  EXPECT_EQ(info->getHalfSize(), 2U);
  EXPECT_EQ(info->getDataColl().size(), 125U);
  expectNoSuchParameter([&] { info->getHalfSizeZ(); });
}

TEST(StructuringElementInfoUtils, DescribeBoxes)
{
  const StructuringElementXYInfoPtr planar = rectangularSEXYInfo(2, 1);
  EXPECT_TRUE(planar->getSEXYSubType() == eSEXYSubType::eSEXY_Rectangular);
  EXPECT_EQ(planar->getHalfSizeX(), 2U);
  EXPECT_EQ(planar->getHalfSizeY(), 1U);
  EXPECT_EQ(planar->getDataColl().size(), 15U);
  expectNoSuchParameter([&] { planar->getHalfSize(); });

  const StructuringElementXYZInfoPtr spatial = rectangularSEXYZInfo(2, 1, 0);
  EXPECT_TRUE(spatial->getSEXYZSubType() == eSEXYZSubType::eSEXYZ_Rectangular);
  EXPECT_EQ(spatial->getHalfSizeX(), 2U);
  EXPECT_EQ(spatial->getHalfSizeY(), 1U);
  EXPECT_EQ(spatial->getHalfSizeZ(), 0U);
  EXPECT_EQ(spatial->getStructuringElement()->getSizeX(), 5U);
  EXPECT_EQ(spatial->getStructuringElement()->getSizeY(), 3U);
  EXPECT_EQ(spatial->getStructuringElement()->getSizeZ(), 1U);
}

TEST(StructuringElementInfoUtils, DescribeADiscAndABall)
{
  const StructuringElementXYInfoPtr disc = circularSEXYInfo(1.5);
  EXPECT_TRUE(disc->getSEXYSubType() == eSEXYSubType::eSEXY_Circular);
  EXPECT_EQ(disc->getRadius(), 1.5);
  EXPECT_EQ(disc->getDataColl().size(), 9U);
  expectNoSuchParameter([&] { disc->getTheta(); });

  const StructuringElementXYZInfoPtr ball = sphericalSEXYZInfo(1.5);
  EXPECT_TRUE(ball->getSEXYZSubType() == eSEXYZSubType::eSEXYZ_Spherical);
  EXPECT_EQ(ball->getRadius(), 1.5);
  EXPECT_EQ(ball->getDataColl().size(), 19U);
  expectNoSuchParameter([&] { ball->getPhi(); });
}

TEST(StructuringElementInfoUtils, DescribeSegmentsOfThePlane)
{
  // cos 0.5 = 0.878, sin 0.5 = 0.479
  const StructuringElementXYInfoPtr half = halfLinearSEXYInfo(0.5, 2.5);
  EXPECT_TRUE(half->getSEXYSubType() == eSEXYSubType::eSEXY_HalfLinear);
  EXPECT_EQ(half->getTheta(), 0.5);
  EXPECT_EQ(half->getRadius(), 2.5);
  EXPECT_EQ(placesOf(*half->getStructuringElement()), (Places{{0, 0, 0}, {1, 0, 0}, {2, 1, 0}}));

  const StructuringElementXYInfoPtr whole = linearSEXYInfo(0.5, 2.5);
  EXPECT_TRUE(whole->getSEXYSubType() == eSEXYSubType::eSEXY_Linear);
  EXPECT_EQ(whole->getTheta(), 0.5);
  EXPECT_EQ(whole->getRadius(), 2.5);
  EXPECT_EQ(whole->getDataColl().size(), 5U);
}

TEST(StructuringElementInfoUtils, DescribeSegmentsOfSpace)
{
  const StructuringElementXYZInfoPtr half = halfLinearSEXYZInfo(0.5, 1.0, 2.5);
  EXPECT_TRUE(half->getSEXYZSubType() == eSEXYZSubType::eSEXYZ_HalfLinear);
  EXPECT_EQ(half->getTheta(), 0.5);
  EXPECT_EQ(half->getPhi(), 1.0);
  EXPECT_EQ(half->getRadius(), 2.5);
  EXPECT_EQ(placesOf(*half->getStructuringElement()), (Places{{0, 0, 0}, {0, 0, 1}, {1, 1, 2}}));

  const StructuringElementXYZInfoPtr whole = linearSEXYZInfo(0.5, 1.0, 2.5);
  EXPECT_TRUE(whole->getSEXYZSubType() == eSEXYZSubType::eSEXYZ_Linear);
  EXPECT_EQ(whole->getTheta(), 0.5);
  EXPECT_EQ(whole->getPhi(), 1.0);
  EXPECT_EQ(whole->getRadius(), 2.5);
  EXPECT_EQ(whole->getDataColl().size(), 5U);
}

TEST(StructuringElementInfoUtils, MakeADescriptionOfItsOwnAtEachCall)
{
  const StructuringElementXYInfoPtr first = squareSEXYInfo(1);
  const StructuringElementXYInfoPtr second = squareSEXYInfo(1);
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_NE(first->getStructuringElement(), second->getStructuringElement());
}

TEST(StructuringElementInfoUtils, PassTheFailureOfTheInitialisationOnAndReleaseTheDescription)
{
  void (*const makers[])(double) = {[](double radius) { circularSEXYInfo(radius); },
                                    [](double radius) { halfLinearSEXYInfo(0.5, radius); },
                                    [](double radius) { linearSEXYInfo(0.5, radius); },
                                    [](double radius) { sphericalSEXYZInfo(radius); },
                                    [](double radius) { halfLinearSEXYZInfo(0.5, 1, radius); },
                                    [](double radius)
                                    {
                                      linearSEXYZInfo(0.5, 1, radius);
                                    }};
  for (const auto make : makers)
  {
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { make(-1.0); }),
              "Invalid radius value -1.000000, should not be negative");
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    EXPECT_THROW(make(std::numeric_limits<double>::quiet_NaN()), ORVELBaseDataException);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  }
}

TEST(StructuringElementInfoUtils, ReleaseTheDescriptionWhenMemoryRunsOut)
{
  void (*const makers[])() = {[] { genericSEXYInfo(StructuringElementXY()); },
                              [] { emptySEXYInfo(); },
                              [] { squareSEXYInfo(1); },
                              [] { linearSEXYInfo(0.5, 2); },
                              [] { genericSEXYZInfo(StructuringElementXYZ()); },
                              [] { emptySEXYZInfo(); },
                              [] { sphericalSEXYZInfo(1); },
                              []
                              {
                                rectangularSEXYZInfo(1, 0, 0);
                              }};
  for (const auto make : makers)
  {
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    const std::size_t nbFailures =
        failAtEachAllocation(make, [nbBlocks] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
    EXPECT_GE(nbFailures, 2U); // the description and its element
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  }
}

} // namespace
