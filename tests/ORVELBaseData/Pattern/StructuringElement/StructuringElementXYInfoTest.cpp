#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.h"

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

using Info = StructuringElementXYInfo;

ORVEL_TEST_EXPOSE(SubType, &StructuringElementXYInfo::_seXYSubType)
ORVEL_TEST_EXPOSE(Radius, &StructuringElementXYInfo::_radius)
ORVEL_TEST_EXPOSE(HalfSize, &StructuringElementXYInfo::_halfSize)
ORVEL_TEST_EXPOSE(HalfSizeX, &StructuringElementXYInfo::_halfSizeX)
ORVEL_TEST_EXPOSE(HalfSizeY, &StructuringElementXYInfo::_halfSizeY)
ORVEL_TEST_EXPOSE(Theta, &StructuringElementXYInfo::_theta)
ORVEL_TEST_EXPOSE(Pointer, &StructuringElementXYInfo::_pSEXY)

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

INSTANTIATE_TYPED_TEST_SUITE_P(StructuringElementXYInfo, ArchivedInfo, Formats, FormatNames);

TEST(StructuringElementXYInfo, HasItsFrameIdentity)
{
  EXPECT_EQ(Info::getTypeName(), "orvel::StructuringElementXYInfo");
  EXPECT_EQ(Info().getClassName(), "orvel::StructuringElementXYInfo");
  EXPECT_EQ(Info::getVersion(), 1U);
  EXPECT_TRUE(Info().hasCopySupport());
  EXPECT_TRUE((std::is_base_of<BaseStructuringElementInfo, Info>::value));
}

TEST(StructuringElementXYInfo, NamesItsTypes)
{
  EXPECT_TRUE((std::is_same<StructuringElementXYInfoPtr, boost::shared_ptr<Info>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYInfoConstPtr, boost::shared_ptr<const Info>>::value));
}

TEST(StructuringElementXYInfo, TellsItsKind)
{
  const Info info; // also when it is not initialised
  EXPECT_TRUE(info.getStructuringElementType() == eStructuringElementType::eSET_XY);
  const BaseStructuringElementInfo& base = info;
  EXPECT_EQ(base.getStructuringElementType().getValue(), 0U);
}

TEST(StructuringElementXYInfo, HasMembersOfTheseTypes)
{
  EXPECT_TRUE((std::is_same<decltype(memberOf(SubType())), eSEXYSubType Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(Radius())), ipReal64 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(HalfSize())), ipUInt32 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(HalfSizeX())), ipUInt32 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(HalfSizeY())), ipUInt32 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(Theta())), ipReal64 Info::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(Pointer())), StructuringElementXYPtr Info::*>::value));
}

TEST(StructuringElementXYInfo, AnswersQueriesWithTheseTypes)
{
  const Info info;
  EXPECT_TRUE((std::is_same<decltype(info.getSEXYSubType()), const eSEXYSubType&>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getStructuringElement()), StructuringElementXYConstPtr>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getDataColl()), const XYOffsetColl&>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getRadius()), ipReal64>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getHalfSize()), ipUInt32>::value));
}

TEST(StructuringElementXYInfo, IsInitialisedWithTheseArguments)
{
  EXPECT_TRUE((std::is_same<decltype(&Info::initCircular), void (Info::*)(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initSquare), void (Info::*)(ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initRectangular), void (Info::*)(ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initHalfLinear), void (Info::*)(ipReal64, ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initLinear), void (Info::*)(ipReal64, ipReal64)>::value));
}

template <class Any, class = void>
constexpr bool hasPhi = false;
template <class Any>
constexpr bool hasPhi<Any, std::void_t<decltype(&Any::getPhi)>> = true;

template <class Any, class = void>
constexpr bool hasHalfSizeZ = false;
template <class Any>
constexpr bool hasHalfSizeZ<Any, std::void_t<decltype(&Any::getHalfSizeZ)>> = true;

TEST(StructuringElementXYInfo, HasNoParameterOfTheThirdAxis)
{
  EXPECT_FALSE(hasPhi<StructuringElementXYInfo>);
  EXPECT_FALSE(hasHalfSizeZ<StructuringElementXYInfo>);
  EXPECT_TRUE(hasPhi<StructuringElementXYZInfo>); // the question itself is right
  EXPECT_TRUE(hasHalfSizeZ<StructuringElementXYZInfo>);
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
     "ipReal64 StructuringElementXYInfo::getRadius() const",
     {1, 4, 5}},
    {[](const Info& info) -> double { return info.getHalfSize(); },
     "ipUInt32 StructuringElementXYInfo::getHalfSize() const",
     {2}},
    {[](const Info& info) -> double { return info.getHalfSizeX(); },
     "ipUInt32 StructuringElementXYInfo::getHalfSizeX() const",
     {3}},
    {[](const Info& info) -> double { return info.getHalfSizeY(); },
     "ipUInt32 StructuringElementXYInfo::getHalfSizeY() const",
     {3}},
    {[](const Info& info) -> double { return info.getTheta(); },
     "ipReal64 StructuringElementXYInfo::getTheta() const",
     {4, 5}},
};

/// One description of each kind, at the place of its number.
std::vector<Info> makeOfEachKind()
{
  std::vector<Info> infos(6);
  infos[0].initEmpty();
  infos[1].initCircular(1.5);
  infos[2].initSquare(2);
  infos[3].initRectangular(2, 1);
  infos[4].initHalfLinear(0.5, 3.0);
  infos[5].initLinear(0.5, 3.0);
  return infos;
}

TEST(StructuringElementXYInfo, HasTheKindOfItsInitialisation)
{
  const std::vector<Info> infos = makeOfEachKind();
  for (std::size_t i = 0; i < infos.size(); ++i)
  {
    EXPECT_EQ(infos[i].getSEXYSubType().getValue(), i);
    EXPECT_STREQ(infos[i].getSEXYSubType().getText(), InfoTraits<Info>::subTypeTexts[i]);
  }
}

TEST(StructuringElementXYInfo, AnswersOnlyForTheParametersOfItsShape)
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

TEST(StructuringElementXYInfo, StaysUnchangedByAQueryThatItRefuses)
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

TEST(StructuringElementXYInfo, NamesTheQueryThatTheShapeDoesNotAllow)
{
  Info info;
  info.initEmpty();
  for (const Query& query : g_queries)
  {
    const LogCapture log(getORVELBaseDataLogger());
    const auto failure = failureOf<ORVELBaseDataException>([&] { query.ask(info); });
    EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(query.function));
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.cpp");
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
    {[](Info& info) { info.getSEXYSubType(); },
     "const eSEXYSubType& StructuringElementXYInfo::getSEXYSubType() const"},
    {[](Info& info) { info.getStructuringElement(); },
     "StructuringElementXYConstPtr StructuringElementXYInfo::getStructuringElement() const"},
    {[](Info& info) { info.getDataColl(); },
     "const XYOffsetColl& StructuringElementXYInfo::getDataColl() const"},
    {[](Info& info) { info.insert(OffsetXY(0, 0)); },
     "bool StructuringElementXYInfo::insert(const OffsetXY&)"},
    {[](Info& info) { info.insert(0, 0); }, "bool StructuringElementXYInfo::insert(ipInt32, ipInt32)"},
    {[](Info& info) { info.remove(OffsetXY(0, 0)); },
     "bool StructuringElementXYInfo::remove(const OffsetXY&)"},
    {[](Info& info) { info.remove(0, 0); }, "bool StructuringElementXYInfo::remove(ipInt32, ipInt32)"},
};

void expectNotInitialized(Info& info, void (*call)(Info& info), const std::string& function)
{
  const LogCapture log(getORVELBaseDataLogger());
  const auto failure = failureOf<ORVELBaseDataException>([&] { call(info); });
  EXPECT_EQ(failure.getMessage(), g_notInitialized);
  EXPECT_EQ(normalisedSignature(failure.getFunction()), normalisedSignature(function));
  EXPECT_EQ(failure.getFile(), "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.cpp");
  EXPECT_NE(sourceLine(failure.getFile(), failure.getLine()).find("ORVEL_HERE)"),
            std::string::npos);
  EXPECT_FALSE(info.isInitialized());
  ASSERT_EQ(log.getRecords().size(), 1U);
  EXPECT_EQ(log.getRecords().front().level, 40000);
  EXPECT_EQ(log.getRecords().front().message, g_notInitialized);
  EXPECT_EQ(log.getRecords().front().line, static_cast<int>(failure.getLine()));
}

TEST(StructuringElementXYInfo, NamesTheOperationThatNeedsAnInitialisation)
{
  Info info;
  for (const Operation& operation : g_operations)
    expectNotInitialized(info, operation.call, operation.function);
}

TEST(StructuringElementXYInfo, FindsItselfNotInitialisedBeforeItLooksAtItsKind)
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

TEST(StructuringElementXYInfo, HasTheParametersOfItsInitialisation)
{
  Info info;
  info.initCircular(1.5);
  EXPECT_EQ(info.getRadius(), 1.5);
  info.initSquare(2);
  EXPECT_EQ(info.getHalfSize(), 2U);
  info.initRectangular(2, 1);
  EXPECT_EQ(info.getHalfSizeX(), 2U);
  EXPECT_EQ(info.getHalfSizeY(), 1U);
  info.initHalfLinear(0.5, 3.0);
  EXPECT_EQ(info.getTheta(), 0.5);
  EXPECT_EQ(info.getRadius(), 3.0);
  info.initLinear(-7.5, 4.0);
  EXPECT_EQ(info.getTheta(), -7.5);
  EXPECT_EQ(info.getRadius(), 4.0);
}

TEST(StructuringElementXYInfo, HasTheElementOfItsInitialisation)
{
  Info info;
  info.initCircular(1.0);
  EXPECT_EQ(placesOf(*info.getStructuringElement()),
            (Places{{0, -1, 0}, {-1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}}));
  info.initSquare(2);
  EXPECT_EQ(info.getDataColl().size(), 25U);
  info.initRectangular(1, 0);
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{-1, 0, 0}, {0, 0, 0}, {1, 0, 0}}));
  info.initHalfLinear(0.0, 2.0);
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}));
  info.initLinear(0.0, 1.0);
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{-1, 0, 0}, {0, 0, 0}, {1, 0, 0}}));
}

TEST(StructuringElementXYInfo, DoesNotCarryTheHalfSizeOfASquareIntoACopy)
{
  Info square;
  square.initSquare(3);
  Info target;
  target.initSquare(7);
  target = square;
  EXPECT_EQ(target.getSEXYSubType().getValue(), 2U);
  EXPECT_EQ(target.getDataColl().size(), 49U);
  EXPECT_EQ(target.getHalfSize(), 7U); // the target's own

  EXPECT_EQ(Info(square).getHalfSize(), 0U); // that of a new one
  const auto duplicate = boost::dynamic_pointer_cast<Info>(square.duplicateShared());
  ASSERT_NE(duplicate, nullptr);
  EXPECT_EQ(duplicate->getDataColl().size(), 49U);
  EXPECT_EQ(duplicate->getHalfSize(), 0U);
}

TEST(StructuringElementXYInfo, FilesACopiedSquareWithTheHalfSizeOfTheTarget)
{
  Info square;
  square.initSquare(3);
  Info target;
  target.initSquare(7);
  target = square;
  const std::string file = fileOf<HandWrittenXml>([&](BaseOArchive& archive) { target.write(archive); });
  Info info;
  readFile<HandWrittenXml>(file, [&](BaseIArchive& archive) { info.read(archive); });
  EXPECT_EQ(info.getHalfSize(), 7U);
  EXPECT_EQ(info.getDataColl().size(), 49U);
}

// What its fields hold that no query tells

using Parameters =
    std::tuple<ipReal64, ipUInt32, ipUInt32, ipUInt32, ipReal64>; // the radius, the half sizes, the angle

const Parameters g_others(91, 92, 93, 94, 95);

Parameters parametersOf(const Info& info)
{
  return {info.*memberOf(Radius()), info.*memberOf(HalfSize()), info.*memberOf(HalfSizeX()),
          info.*memberOf(HalfSizeY()), info.*memberOf(Theta())};
}

void setOthers(Info& info)
{
  std::tie(info.*memberOf(Radius()), info.*memberOf(HalfSize()), info.*memberOf(HalfSizeX()),
           info.*memberOf(HalfSizeY()), info.*memberOf(Theta())) = g_others;
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

TEST(StructuringElementXYInfo, StoresTheParametersOfItsShapeAlone)
{
  EXPECT_EQ(parametersAfter([](Info& info) { info.init(StructuringElementXY()); }), g_others);
  EXPECT_EQ(parametersAfter([](Info& info) { info.initEmpty(); }), g_others);
  EXPECT_EQ(parametersAfter([](Info& info) { info.initCircular(1.5); }), Parameters(1.5, 92, 93, 94, 95));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initSquare(4); }), Parameters(91, 4, 93, 94, 95));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initRectangular(4, 5); }), Parameters(91, 92, 4, 5, 95));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initHalfLinear(0.5, 3.0); }),
            Parameters(3.0, 92, 93, 94, 0.5));
  EXPECT_EQ(parametersAfter([](Info& info) { info.initLinear(0.5, 3.0); }), Parameters(3.0, 92, 93, 94, 0.5));
}

TEST(StructuringElementXYInfo, StoresTheKindButNoParameterOfAFailedInitialisation)
{
  Info info;
  setOthers(info);
  EXPECT_THROW(info.initCircular(-1), ORVELBaseDataException);
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 1U);
  EXPECT_EQ(parametersOf(info), g_others);
  EXPECT_THROW(info.initHalfLinear(0.5, -1), ORVELBaseDataException);
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 4U);
  EXPECT_EQ(parametersOf(info), g_others);
  EXPECT_THROW(info.initLinear(0.5, -1), ORVELBaseDataException);
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 5U);
  EXPECT_EQ(parametersOf(info), g_others);
}

TEST(StructuringElementXYInfo, IsCopiedWithTheParametersOfItsShapeAlone)
{
  const Parameters expected[] = {g_others,
                                 Parameters(1.5, 92, 93, 94, 95),
                                 g_others, // also for a square
                                 Parameters(91, 92, 2, 1, 95),
                                 Parameters(3.0, 92, 93, 94, 0.5),
                                 Parameters(3.0, 92, 93, 94, 0.5)};
  const std::vector<Info> sources = makeOfEachKind();
  for (std::size_t i = 0; i < sources.size(); ++i)
    EXPECT_EQ(parametersAfter([&](Info& info) { info = sources[i]; }), expected[i]) << i;
}

TEST(StructuringElementXYInfo, KeepsItsKindAndParametersOutOfReachWhenWhatItCopiesIsNotInitialised)
{
  Info source;
  source.initLinear(0.5, 3.0);
  source.clear();
  Info info;
  info.initRectangular(4, 5);
  setOthers(info);
  info = source;
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ((info.*memberOf(SubType())).getValue(), 3U);
  EXPECT_EQ(parametersOf(info), g_others);
}

} // namespace
