#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "../Signature.h"
#include "InfoArchiveChecks.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using Info = StructuringElementXYZInfo;

ORVEL_TEST_EXPOSE(SubType, &StructuringElementXYZInfo::_seXYZSubType)
ORVEL_TEST_EXPOSE(Radius, &StructuringElementXYZInfo::_radius)
ORVEL_TEST_EXPOSE(HalfSize, &StructuringElementXYZInfo::_halfSize)
ORVEL_TEST_EXPOSE(HalfSizeX, &StructuringElementXYZInfo::_halfSizeX)
ORVEL_TEST_EXPOSE(HalfSizeY, &StructuringElementXYZInfo::_halfSizeY)
ORVEL_TEST_EXPOSE(HalfSizeZ, &StructuringElementXYZInfo::_halfSizeZ)
ORVEL_TEST_EXPOSE(Theta, &StructuringElementXYZInfo::_theta)
ORVEL_TEST_EXPOSE(Phi, &StructuringElementXYZInfo::_phi)
ORVEL_TEST_EXPOSE(Pointer, &StructuringElementXYZInfo::_pSEXYZ)

constexpr const char* g_notInitialized = "Structuring element informations have not been initialized";
constexpr const char* g_invalidSubType =
    "Structuring element sub type do not allows to retrieve this kind of information";

using Formats = ::testing::Types<std::pair<Info, HandWrittenXml>, std::pair<Info, HandWrittenBinary>>;

struct FormatNames
{
  template <class InfoAndFormat>
  static std::string GetName(int)
  {
    return std::is_same<typename InfoAndFormat::second_type, HandWrittenXml>::value ? "Xml" : "Binary";
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(StructuringElementXYZInfo, ArchivedInfo, Formats, FormatNames);

TEST(StructuringElementXYZInfo, HasItsFrameIdentity)
{
  EXPECT_EQ(Info::getTypeName(), "orvel::StructuringElementXYZInfo");
  EXPECT_EQ(Info().getClassName(), "orvel::StructuringElementXYZInfo");
  EXPECT_EQ(Info::getVersion(), 1U);
  EXPECT_TRUE(Info().hasCopySupport());
  EXPECT_TRUE((std::is_base_of<BaseStructuringElementInfo, Info>::value));
}

TEST(StructuringElementXYZInfo, NamesItsTypes)
{
  EXPECT_TRUE((std::is_same<StructuringElementXYZInfoPtr, boost::shared_ptr<Info>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYZInfoConstPtr, boost::shared_ptr<const Info>>::value));
}

TEST(StructuringElementXYZInfo, TellsItsKind)
{
  const Info info; // also when it is not initialised
  EXPECT_TRUE(info.getStructuringElementType() == eStructuringElementType::eSET_XYZ);
  const BaseStructuringElementInfo& base = info;
  EXPECT_EQ(base.getStructuringElementType().getValue(), 1U);
}

TEST(StructuringElementXYZInfo, HasMembersOfTheseTypes)
{
  EXPECT_TRUE((std::is_same<decltype(memberOf(SubType())), eSEXYZSubType Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(Radius())), ipReal64 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(HalfSize())), ipUInt32 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(HalfSizeX())), ipUInt32 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(HalfSizeY())), ipUInt32 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(HalfSizeZ())), ipUInt32 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(Theta())), ipReal64 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(Phi())), ipReal64 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(Pointer())), StructuringElementXYZPtr Info::*>::value));
}

TEST(StructuringElementXYZInfo, AnswersQueriesWithTheseTypes)
{
  const Info info;
  EXPECT_TRUE((std::is_same<decltype(info.getSEXYZSubType()), const eSEXYZSubType&>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getStructuringElement()), StructuringElementXYZConstPtr>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getDataColl()), const XYZOffsetColl&>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getRadius()), ipReal64>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getHalfSize()), ipUInt32>::value));
}

TEST(StructuringElementXYZInfo, IsInitialisedWithTheseArguments)
{
  EXPECT_TRUE((std::is_same<decltype(&Info::initSpherical), void (Info::*)(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initCubic), void (Info::*)(ipUInt32)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&Info::initRectangular), void (Info::*)(ipUInt32, ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&Info::initHalfLinear), void (Info::*)(ipReal64, ipReal64, ipReal64)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&Info::initLinear), void (Info::*)(ipReal64, ipReal64, ipReal64)>::value));
}

// Which parameters each shape has

/// A query for a parameter, with the kinds that allow it.
struct Query
{
  double (*ask)(const Info& info);
  std::string function;
  std::vector<ipUInt64> allowed;
};

const Query g_queries[] = {
    {[](const Info& info) -> double { return info.getRadius(); },
     "ipReal64 StructuringElementXYZInfo::getRadius() const",
     {1, 4, 5}},
    {[](const Info& info) -> double { return info.getHalfSize(); },
     "ipUInt32 StructuringElementXYZInfo::getHalfSize() const",
     {2}},
    {[](const Info& info) -> double { return info.getHalfSizeX(); },
     "ipUInt32 StructuringElementXYZInfo::getHalfSizeX() const",
     {3}},
    {[](const Info& info) -> double { return info.getHalfSizeY(); },
     "ipUInt32 StructuringElementXYZInfo::getHalfSizeY() const",
     {3}},
    {[](const Info& info) -> double { return info.getHalfSizeZ(); },
     "ipUInt32 StructuringElementXYZInfo::getHalfSizeZ() const",
     {3}},
    {[](const Info& info) -> double { return info.getTheta(); },
     "ipReal64 StructuringElementXYZInfo::getTheta() const",
     {4, 5}},
    {[](const Info& info) -> double { return info.getPhi(); },
     "ipReal64 StructuringElementXYZInfo::getPhi() const",
     {4, 5}},
};

/// One description of each kind, at the place of its number.
std::vector<Info> makeOfEachKind()
{
  std::vector<Info> infos(6);
  infos[0].initEmpty();
  infos[1].initSpherical(1.5);
  infos[2].initCubic(2);
  infos[3].initRectangular(2, 1, 0);
  infos[4].initHalfLinear(0.5, 1.0, 3.0);
  infos[5].initLinear(0.5, 1.0, 3.0);
  return infos;
}

TEST(StructuringElementXYZInfo, HasTheKindOfItsInitialisation)
{
  const std::vector<Info> infos = makeOfEachKind();
  for (std::size_t i = 0; i < infos.size(); ++i)
  {
    EXPECT_EQ(infos[i].getSEXYZSubType().getValue(), i);
    EXPECT_STREQ(infos[i].getSEXYZSubType().getText(), InfoTraits<Info>::subTypeTexts[i]);
  }
}

TEST(StructuringElementXYZInfo, AnswersOnlyForTheParametersOfItsShape)
{
  const std::vector<Info> infos = makeOfEachKind();
  for (const Query& query : g_queries)
    for (std::size_t i = 0; i < infos.size(); ++i)
    {
      const bool isAllowed = std::count(query.allowed.begin(), query.allowed.end(), i) == 1;
      if (isAllowed)
      {
        EXPECT_NO_THROW(query.ask(infos[i])) << query.function << " " << i;
      }
      else
      {
        EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { query.ask(infos[i]); }), g_invalidSubType)
            << query.function << " " << i;
      }
    }
}

TEST(StructuringElementXYZInfo, StaysUnchangedByAQueryThatItRefuses)
{
  for (const Info& info : makeOfEachKind())
  {
    const InfoState before = stateOfInfo(info);
    for (const Query& query : g_queries)
      try
      {
        query.ask(info);
      }
      catch (const ORVELBaseDataException&)
      {
        EXPECT_EQ(stateOfInfo(info), before);
      }
  }
}

TEST(StructuringElementXYZInfo, NamesTheQueryThatTheShapeDoesNotAllow)
{
  Info info;
  info.initEmpty();
  for (const Query& query : g_queries)
  {
    const LogCapture log(getORVELBaseDataLogger());
    const auto failure = failureOf<ORVELBaseDataException>([&] { query.ask(info); });
    EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(query.function));
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.cpp");
    EXPECT_NE(sourceLine(failure.getFile(), failure.getLine())
                  .find("Operations::get(*this, "),
              std::string::npos);
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords().front().level, 40000);
    EXPECT_EQ(log.getRecords().front().message, g_invalidSubType);
    EXPECT_EQ(log.getRecords().front().line, static_cast<int>(failure.getLine()));
  }
}

/// An operation that needs an initialised description.
struct Operation
{
  void (*call)(Info& info);
  std::string function;
};

const Operation g_operations[] = {
    {[](Info& info) { info.getSEXYZSubType(); },
     "const eSEXYZSubType& StructuringElementXYZInfo::getSEXYZSubType() const"},
    {[](Info& info) { info.getStructuringElement(); },
     "StructuringElementXYZConstPtr StructuringElementXYZInfo::getStructuringElement() const"},
    {[](Info& info) { info.getDataColl(); },
     "const XYZOffsetColl& StructuringElementXYZInfo::getDataColl() const"},
    {[](Info& info) { info.insert(OffsetXYZ(0, 0, 0)); },
     "bool StructuringElementXYZInfo::insert(const OffsetXYZ&)"},
    {[](Info& info) { info.insert(0, 0, 0); },
     "bool StructuringElementXYZInfo::insert(ipInt32, ipInt32, ipInt32)"},
    {[](Info& info) { info.remove(OffsetXYZ(0, 0, 0)); },
     "bool StructuringElementXYZInfo::remove(const OffsetXYZ&)"},
    {[](Info& info) { info.remove(0, 0, 0); },
     "bool StructuringElementXYZInfo::remove(ipInt32, ipInt32, ipInt32)"},
};

void expectNotInitialized(Info& info, void (*call)(Info& info), const std::string& function)
{
  const LogCapture log(getORVELBaseDataLogger());
  const auto failure = failureOf<ORVELBaseDataException>([&] { call(info); });
  EXPECT_EQ(failure.getMessage(), g_notInitialized);
  EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(function));
  EXPECT_EQ(failure.getFile(), "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.cpp");
  EXPECT_NE(sourceLine(failure.getFile(), failure.getLine()).find("ORVEL_HERE)"),
            std::string::npos);
  EXPECT_FALSE(info.isInitialized());
  ASSERT_EQ(log.getRecords().size(), 1U);
  EXPECT_EQ(log.getRecords().front().level, 40000);
  EXPECT_EQ(log.getRecords().front().message, g_notInitialized);
  EXPECT_EQ(log.getRecords().front().line, static_cast<int>(failure.getLine()));
}

TEST(StructuringElementXYZInfo, NamesTheOperationThatNeedsAnInitialisation)
{
  Info info;
  for (const Operation& operation : g_operations)
    expectNotInitialized(info, operation.call, operation.function);
}

TEST(StructuringElementXYZInfo, FindsItselfNotInitialisedBeforeItLooksAtItsKind)
{
  for (const Query& query : g_queries)
    for (Info info : makeOfEachKind())
    {
      info.clear();
      const auto failure = failureOf<ORVELBaseDataException>([&] { query.ask(info); });
      EXPECT_EQ(failure.getMessage(), g_notInitialized);
      EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(query.function));
    }
}

TEST(StructuringElementXYZInfo, HasTheParametersOfItsInitialisation)
{
  Info info;
  info.initSpherical(1.5);
  EXPECT_EQ(info.getRadius(), 1.5);
  info.initCubic(2);
  EXPECT_EQ(info.getHalfSize(), 2U);
  info.initRectangular(3, 2, 1);
  EXPECT_EQ(info.getHalfSizeX(), 3U);
  EXPECT_EQ(info.getHalfSizeY(), 2U);
  EXPECT_EQ(info.getHalfSizeZ(), 1U);
  info.initHalfLinear(0.5, 1.0, 3.0);
  EXPECT_EQ(info.getTheta(), 0.5);
  EXPECT_EQ(info.getPhi(), 1.0);
  EXPECT_EQ(info.getRadius(), 3.0);
  info.initLinear(-7.5, 8.5, 4.0);
  EXPECT_EQ(info.getTheta(), -7.5);
  EXPECT_EQ(info.getPhi(), 8.5);
  EXPECT_EQ(info.getRadius(), 4.0);
}

TEST(StructuringElementXYZInfo, HasTheElementOfItsInitialisation)
{
  Info info;
  info.initSpherical(1.0);
  EXPECT_EQ(placesOf(*info.getStructuringElement()),
            (Places{{0, 0, -1}, {0, -1, 0}, {-1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}));
  info.initCubic(1);
  EXPECT_EQ(info.getDataColl().size(), 27U);
  info.initRectangular(0, 0, 1);
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{0, 0, -1}, {0, 0, 0}, {0, 0, 1}}));
  info.initHalfLinear(0.0, 1.0, 2.0);
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{0, 0, 0}, {0, 0, 1}, {0, 0, 2}}));
  info.initLinear(0.0, 1.0, 1.0);
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{0, 0, -1}, {0, 0, 0}, {0, 0, 1}}));
}

TEST(StructuringElementXYZInfo, CarriesTheHalfSizeOfACubeIntoACopy)
{
  Info cube;
  cube.initCubic(3);
  Info target;
  target.initCubic(7);
  target = cube;
  EXPECT_EQ(target.getHalfSize(), 3U);
  EXPECT_EQ(target.getDataColl().size(), 343U);
  EXPECT_EQ(Info(cube).getHalfSize(), 3U);
  const auto duplicate = boost::dynamic_pointer_cast<Info>(cube.duplicateShared());
  ASSERT_NE(duplicate, nullptr);
  EXPECT_EQ(duplicate->getHalfSize(), 3U);
}

// What its fields hold that no query tells

using Parameters = std::tuple<ipReal64, ipUInt32, ipUInt32, ipUInt32, ipUInt32, ipReal64,
                              ipReal64>; // the radius, the half sizes, the angles

const Parameters g_others(91, 92, 93, 94, 96, 95, 97);

Parameters parametersOf(const Info& info)
{
  return {info.*memberOf(Radius()),    info.*memberOf(HalfSize()),  info.*memberOf(HalfSizeX()),
          info.*memberOf(HalfSizeY()), info.*memberOf(HalfSizeZ()), info.*memberOf(Theta()),
          info.*memberOf(Phi())};
}

void setOthers(Info& info)
{
  std::tie(info.*memberOf(Radius()), info.*memberOf(HalfSize()), info.*memberOf(HalfSizeX()),
           info.*memberOf(HalfSizeY()), info.*memberOf(HalfSizeZ()), info.*memberOf(Theta()),
           info.*memberOf(Phi())) = g_others;
}

/// \return the parameters after an initialisation or a copy that found the others
template <class Change>
Parameters parametersAfter(Change change)
{
  Info info;
  setOthers(info);
  change(info);
  return parametersOf(info);
}

TEST(StructuringElementXYZInfo, StoresTheParametersOfItsShapeAlone)
{
  EXPECT_EQ(parametersAfter([](Info& info) { info.init(StructuringElementXYZ()); }), g_others);
  EXPECT_EQ(parametersAfter([](Info& info) { info.initEmpty(); }), g_others);
  EXPECT_EQ(parametersAfter([](Info& info) { info.initSpherical(1.5); }),
            Parameters(1.5, 92, 93, 94, 96, 95, 97));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initCubic(4); }), Parameters(91, 4, 93, 94, 96, 95, 97));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initRectangular(4, 5, 6); }),
            Parameters(91, 92, 4, 5, 6, 95, 97));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initHalfLinear(0.5, 1.25, 3.0); }),
            Parameters(3.0, 92, 93, 94, 96, 0.5, 1.25));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initLinear(0.5, 1.25, 3.0); }),
            Parameters(3.0, 92, 93, 94, 96, 0.5, 1.25));
}

TEST(StructuringElementXYZInfo, StoresTheKindButNoParameterOfAFailedInitialisation)
{
  Info info;
  setOthers(info);
  EXPECT_THROW(info.initSpherical(-1), ORVELBaseDataException);
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 1U);
  EXPECT_EQ(parametersOf(info), g_others);
  EXPECT_THROW(info.initHalfLinear(0.5, 1.25, -1), ORVELBaseDataException);
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 4U);
  EXPECT_EQ(parametersOf(info), g_others);
  EXPECT_THROW(info.initLinear(0.5, 1.25, -1), ORVELBaseDataException);
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 5U);
  EXPECT_EQ(parametersOf(info), g_others);
}

TEST(StructuringElementXYZInfo, IsCopiedWithTheParametersOfItsShapeAlone)
{
  const Parameters expected[] = {g_others,
                                 Parameters(1.5, 92, 93, 94, 96, 95, 97),
                                 Parameters(91, 2, 93, 94, 96, 95, 97),
                                 Parameters(91, 92, 2, 1, 0, 95, 97),
                                 Parameters(3.0, 92, 93, 94, 96, 0.5, 1.0),
                                 Parameters(3.0, 92, 93, 94, 96, 0.5, 1.0)};
  const std::vector<Info> sources = makeOfEachKind();
  for (std::size_t i = 0; i < sources.size(); ++i)
    EXPECT_EQ(parametersAfter([&](Info& info) { info = sources[i]; }), expected[i]) << i;
}

TEST(StructuringElementXYZInfo, KeepsItsKindAndParametersOutOfReachWhenWhatItCopiesIsNotInitialised)
{
  Info source;
  source.initLinear(0.5, 1.25, 3.0);
  source.clear();
  Info info;
  info.initRectangular(4, 5, 6);
  setOthers(info);
  info = source;
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 3U);
  EXPECT_EQ(parametersOf(info), g_others);
}

} // namespace
