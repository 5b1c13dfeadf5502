#include "ORVELBaseData/Pattern/Private/InfoOperations.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include "../StructuringElement/InfoTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <support/FailingAllocation.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

// StructuringElementXYInfo and StructuringElementXYZInfo. Their archives are in
// InfoOperationsArchiveTest.cpp.
namespace
{

using namespace orvel;
using namespace orvel::test;

using Base = BaseStructuringElementInfo;
using InfoXY = StructuringElementXYInfo;
using InfoXYZ = StructuringElementXYZInfo;

ORVEL_TEST_EXPOSE(ClearDerived, &BaseStructuringElementInfo::clearDerived)
ORVEL_TEST_EXPOSE(KindXY, &StructuringElementXYInfo::_seXYSubType)
ORVEL_TEST_EXPOSE(RadiusXY, &StructuringElementXYInfo::_radius)
ORVEL_TEST_EXPOSE(HalfSizeXY, &StructuringElementXYInfo::_halfSize)
ORVEL_TEST_EXPOSE(HalfSizeXOfXY, &StructuringElementXYInfo::_halfSizeX)
ORVEL_TEST_EXPOSE(HalfSizeYOfXY, &StructuringElementXYInfo::_halfSizeY)
ORVEL_TEST_EXPOSE(ThetaXY, &StructuringElementXYInfo::_theta)
ORVEL_TEST_EXPOSE(KindXYZ, &StructuringElementXYZInfo::_seXYZSubType)
ORVEL_TEST_EXPOSE(RadiusXYZ, &StructuringElementXYZInfo::_radius)
ORVEL_TEST_EXPOSE(HalfSizeXYZ, &StructuringElementXYZInfo::_halfSize)
ORVEL_TEST_EXPOSE(HalfSizeXOfXYZ, &StructuringElementXYZInfo::_halfSizeX)
ORVEL_TEST_EXPOSE(HalfSizeYOfXYZ, &StructuringElementXYZInfo::_halfSizeY)
ORVEL_TEST_EXPOSE(HalfSizeZOfXYZ, &StructuringElementXYZInfo::_halfSizeZ)
ORVEL_TEST_EXPOSE(ThetaXYZ, &StructuringElementXYZInfo::_theta)
ORVEL_TEST_EXPOSE(PhiXYZ, &StructuringElementXYZInfo::_phi)

// What the fields hold, also those that no query returns.

/// The radius, the half sizes of a cube and along x, y and z, theta and phi; those of the third axis are 0 in
/// the plane.
using Parameters = std::array<double, 7>;

Parameters parametersOf(const InfoXY& info)
{
  return {info.*memberOf(RadiusXY()),
          static_cast<double>(info.*memberOf(HalfSizeXY())),
          static_cast<double>(info.*memberOf(HalfSizeXOfXY())),
          static_cast<double>(info.*memberOf(HalfSizeYOfXY())),
          0,
          info.*memberOf(ThetaXY()),
          0};
}

Parameters parametersOf(const InfoXYZ& info)
{
  return {info.*memberOf(RadiusXYZ()),
          static_cast<double>(info.*memberOf(HalfSizeXYZ())),
          static_cast<double>(info.*memberOf(HalfSizeXOfXYZ())),
          static_cast<double>(info.*memberOf(HalfSizeYOfXYZ())),
          static_cast<double>(info.*memberOf(HalfSizeZOfXYZ())),
          info.*memberOf(ThetaXYZ()),
          info.*memberOf(PhiXYZ())};
}

/// Sets the parameters to 91 ... 97.
void setOthers(InfoXY& info)
{
  info.*memberOf(RadiusXY()) = 91;
  info.*memberOf(HalfSizeXY()) = 92;
  info.*memberOf(HalfSizeXOfXY()) = 93;
  info.*memberOf(HalfSizeYOfXY()) = 94;
  info.*memberOf(ThetaXY()) = 96;
}

void setOthers(InfoXYZ& info)
{
  info.*memberOf(RadiusXYZ()) = 91;
  info.*memberOf(HalfSizeXYZ()) = 92;
  info.*memberOf(HalfSizeXOfXYZ()) = 93;
  info.*memberOf(HalfSizeYOfXYZ()) = 94;
  info.*memberOf(HalfSizeZOfXYZ()) = 95;
  info.*memberOf(ThetaXYZ()) = 96;
  info.*memberOf(PhiXYZ()) = 97;
}

ipUInt64 storedKindOf(const InfoXY& info)
{
  return (info.*memberOf(KindXY())).getValue();
}

ipUInt64 storedKindOf(const InfoXYZ& info)
{
  return (info.*memberOf(KindXYZ())).getValue();
}

// What both offer, by the signatures that failures name.

template <class Info>
struct Operation
{
  std::function<void(Info&)> call;
  std::string function;
};

std::vector<Operation<InfoXY>> operationsOf(const InfoXY& /*info*/)
{
  const std::string scope = "orvel::StructuringElementXYInfo::";
  return {
      {[](InfoXY& info) { info.getSEXYSubType(); },
       "const orvel::eSEXYSubType& " + scope + "getSEXYSubType() const"},
      {[](InfoXY& info) { info.getStructuringElement(); },
       "orvel::StructuringElementXYConstPtr " + scope + "getStructuringElement() const"},
      {[](InfoXY& info) { info.getDataColl(); },
       "const orvel::XYOffsetColl& " + scope + "getDataColl() const"},
      {[](InfoXY& info) { info.insert(OffsetXY(0, 0)); }, "bool " + scope + "insert(const orvel::OffsetXY&)"},
      {[](InfoXY& info) { info.insert(0, 0); }, "bool " + scope + "insert(orvel::ipInt32, orvel::ipInt32)"},
      {[](InfoXY& info) { info.remove(OffsetXY(0, 0)); }, "bool " + scope + "remove(const orvel::OffsetXY&)"},
      {[](InfoXY& info) { info.remove(0, 0); }, "bool " + scope + "remove(orvel::ipInt32, orvel::ipInt32)"}};
}

std::vector<Operation<InfoXYZ>> operationsOf(const InfoXYZ& /*info*/)
{
  const std::string scope = "orvel::StructuringElementXYZInfo::";
  return {{[](InfoXYZ& info) { info.getSEXYZSubType(); },
           "const orvel::eSEXYZSubType& " + scope + "getSEXYZSubType() const"},
          {[](InfoXYZ& info) { info.getStructuringElement(); },
           "orvel::StructuringElementXYZConstPtr " + scope + "getStructuringElement() const"},
          {[](InfoXYZ& info) { info.getDataColl(); },
           "const orvel::XYZOffsetColl& " + scope + "getDataColl() const"},
          {[](InfoXYZ& info) { info.insert(OffsetXYZ(0, 0, 0)); },
           "bool " + scope + "insert(const orvel::OffsetXYZ&)"},
          {[](InfoXYZ& info) { info.insert(0, 0, 0); },
           "bool " + scope + "insert(orvel::ipInt32, orvel::ipInt32, orvel::ipInt32)"},
          {[](InfoXYZ& info) { info.remove(OffsetXYZ(0, 0, 0)); },
           "bool " + scope + "remove(const orvel::OffsetXYZ&)"},
          {[](InfoXYZ& info) { info.remove(0, 0, 0); },
           "bool " + scope + "remove(orvel::ipInt32, orvel::ipInt32, orvel::ipInt32)"}};
}

/// A query for a parameter, with the kinds that have it.
template <class Info>
struct Query : Operation<Info>
{
  std::vector<std::size_t> kinds;
};

template <class Info>
std::vector<Query<Info>> queriesOf()
{
  const std::string scope = "orvel::" + std::string(InfoTraits<Info>::name) + "::";
  const std::string real = "orvel::ipReal64 " + scope;
  const std::string integer = "orvel::ipUInt32 " + scope;
  std::vector<Query<Info>> queries = {
      {{[](Info& info) { info.getRadius(); }, real + "getRadius() const"}, {1, 4, 5}},
      {{[](Info& info) { info.getHalfSize(); }, integer + "getHalfSize() const"}, {2}},
      {{[](Info& info) { info.getHalfSizeX(); }, integer + "getHalfSizeX() const"}, {3}},
      {{[](Info& info) { info.getHalfSizeY(); }, integer + "getHalfSizeY() const"}, {3}},
      {{[](Info& info) { info.getTheta(); }, real + "getTheta() const"}, {4, 5}}};
  if constexpr (!InfoTraits<Info>::isPlanar)
  {
    queries.push_back({{[](Info& info) { info.getHalfSizeZ(); }, integer + "getHalfSizeZ() const"}, {3}});
    queries.push_back({{[](Info& info) { info.getPhi(); }, real + "getPhi() const"}, {4, 5}});
  }
  return queries;
}

template <class InfoType>
class StructuringElementInfo : public ::testing::Test
{
protected:
  using Traits = InfoTraits<InfoType>;
  using Element = typename Traits::Element;

  static constexpr const char* notInitialized = "Structuring element informations have not been initialized";
  static constexpr const char* invalidKind =
      "Structuring element sub type do not allows to retrieve this kind of information";
  static constexpr ipUInt64 nbOffsetsOfCube = Traits::isPlanar ? 9 : 27;

  static typename Element::OffsetType at(ipInt32 x, ipInt32 y, ipInt32 z)
  {
    return ElementTraits<Element>::at(x, y, z);
  }

  /// The offsets (1, 2, 3) and (5, 0, 0).
  static Element makeElement()
  {
    Element element;
    element.insert(at(1, 2, 3));
    element.insert(at(5, 0, 0));
    return element;
  }

  static InfoType makeCube() { return test::makeCube<InfoType>(); }

  /// A description of each kind, at the place of its number.
  static std::vector<InfoType> makeOfEachKind()
  {
    const auto initialisations = newElementInitialisations<InfoType>();
    std::vector<InfoType> infos(initialisations.size()); // no copies: those of squares lack their half size
    for (std::size_t i = 0; i < infos.size(); ++i)
      initialisations[i](infos[i]);
    return infos;
  }

  /// The initialisations of shapes with a radius, with their kinds.
  static std::vector<std::pair<ipUInt64, std::function<void(InfoType&, double)>>> radiusInitialisations()
  {
    return {{1,
             [](InfoType& info, double radius)
             {
               Traits::initBall(info, radius);
             }},
            {4,
             [](InfoType& info, double radius)
             {
               Traits::initHalfLinear(info, 0.5, 1, radius);
             }},
            {5, [](InfoType& info, double radius)
             {
               Traits::initLinear(info, 0.5, 1, radius);
             }}};
  }

  /// Every operation that needs an initialised description must raise so.
  static void expectNotInitialized(InfoType& info)
  {
    EXPECT_FALSE(info.isInitialized());
    std::vector<Operation<InfoType>> operations = operationsOf(info);
    for (const auto& query : queriesOf<InfoType>())
      operations.push_back(query);
    for (const auto& operation : operations)
      expectRaised<ORVELBaseDataException>([&] { operation.call(info); },
                                           expectedOf(notInitialized, operation));
    EXPECT_FALSE(info.isInitialized());
  }

  static ExpectedFailure expectedOf(const std::string& message, const Operation<InfoType>& operation)
  {
    return {message, operation.function,
            "ORVELBaseData/Pattern/StructuringElement/" + std::string(Traits::name) + ".cpp"};
  }

  /// \return the parameters after a change that found the others
  static Parameters parametersAfter(const std::function<void(InfoType&)>& change)
  {
    InfoType info;
    setOthers(info);
    change(info);
    return parametersOf(info);
  }

  /// \return 91 ... 97, but for the parameters of a shape
  static Parameters othersBut(const std::vector<std::pair<std::size_t, double>>& parameters)
  {
    InfoType info;
    setOthers(info);
    Parameters expected = parametersOf(info);
    for (const auto& [place, value] : parameters)
      if (!Traits::isPlanar || (place != 4 && place != 6))
        expected[place] = value;
    return expected;
  }
};

using Infos = ::testing::Types<InfoXY, InfoXYZ>;

struct InfoNames
{
  template <class InfoType>
  static std::string GetName(int)
  {
    return InfoTraits<InfoType>::name;
  }
};

TYPED_TEST_SUITE(StructuringElementInfo, Infos, InfoNames);

// Frame

TEST(StructuringElementInfoTypes, AreThese)
{
  EXPECT_TRUE((std::is_same<StructuringElementXYInfoPtr, boost::shared_ptr<InfoXY>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYInfoConstPtr, boost::shared_ptr<const InfoXY>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYZInfoPtr, boost::shared_ptr<InfoXYZ>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYZInfoConstPtr, boost::shared_ptr<const InfoXYZ>>::value));
}

TYPED_TEST(StructuringElementInfo, ReportsTheSpaceOfItsOffsetsInEitherState)
{
  const TypeParam fresh;
  const TypeParam cube = this->makeCube();
  for (const Base* info : {static_cast<const Base*>(&fresh), static_cast<const Base*>(&cube)})
    EXPECT_EQ(info->getStructuringElementType().getValue(), TestFixture::Traits::isPlanar ? 0U : 1U);
}

TYPED_TEST(StructuringElementInfo, OffersTheseOperations)
{
  using Offset = typename TestFixture::Element::OffsetType;
  using Changer = bool (TypeParam::*)(const Offset&);
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::init),
                            void (TypeParam::*)(const typename TestFixture::Element&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::initEmpty), void (TypeParam::*)()>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::clear), void (Base::*)()>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::isInitialized), bool (Base::*)() const>::value));
  EXPECT_NE(static_cast<Changer>(&TypeParam::insert), nullptr);
  EXPECT_NE(static_cast<Changer>(&TypeParam::remove), nullptr);

  const TypeParam info;
  EXPECT_TRUE((std::is_same<decltype(info.getStructuringElement()),
                            boost::shared_ptr<const typename TestFixture::Element>>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getDataColl()), const std::set<Offset>&>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getRadius()), ipReal64>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getTheta()), ipReal64>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getHalfSize()), ipUInt32>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getHalfSizeX()), ipUInt32>::value));
  EXPECT_TRUE((std::is_same<decltype(info.getHalfSizeY()), ipUInt32>::value));
}

TEST(StructuringElementXYInfo, OffersTheseOperationsOfThePlane)
{
  using Info = InfoXY;
  EXPECT_TRUE((std::is_same<decltype(&Info::getSEXYSubType), const eSEXYSubType& (Info::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initCircular), void (Info::*)(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initSquare), void (Info::*)(ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initRectangular), void (Info::*)(ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initHalfLinear), void (Info::*)(ipReal64, ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initLinear), void (Info::*)(ipReal64, ipReal64)>::value));
}

TEST(StructuringElementXYZInfo, OffersTheseOperationsOfSpace)
{
  using Info = InfoXYZ;
  EXPECT_TRUE(
      (std::is_same<decltype(&Info::getSEXYZSubType), const eSEXYZSubType& (Info::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::getHalfSizeZ), ipUInt32 (Info::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::getPhi), ipReal64 (Info::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initSpherical), void (Info::*)(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(&Info::initCubic), void (Info::*)(ipUInt32)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&Info::initRectangular), void (Info::*)(ipUInt32, ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&Info::initHalfLinear), void (Info::*)(ipReal64, ipReal64, ipReal64)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&Info::initLinear), void (Info::*)(ipReal64, ipReal64, ipReal64)>::value));
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
  EXPECT_FALSE(hasPhi<InfoXY>);
  EXPECT_FALSE(hasHalfSizeZ<InfoXY>);
  EXPECT_TRUE(hasPhi<InfoXYZ>); // the question itself is right
  EXPECT_TRUE(hasHalfSizeZ<InfoXYZ>);
}

TYPED_TEST(StructuringElementInfo, CreatesOthersThatAnswerNothing)
{
  const boost::scoped_ptr<TypeParam> made(TypeParam::createNewObject());
  const boost::shared_ptr<TypeParam> shared = TypeParam::createSharedObject();
  this->expectNotInitialized(*made);
  this->expectNotInitialized(*shared);

  const TypeParam info = this->makeCube();
  const boost::scoped_ptr<BaseDynamicObject> another(info.createNew());
  const DynamicObjectPtr sharedOther = info.createShared();
  this->expectNotInitialized(dynamic_cast<TypeParam&>(*another));
  this->expectNotInitialized(dynamic_cast<TypeParam&>(*sharedOther));
}

// Kinds and parameters

TYPED_TEST(StructuringElementInfo, HasTheKindOfItsInitialisation)
{
  const std::vector<TypeParam> infos = this->makeOfEachKind();
  ASSERT_EQ(infos.size(), 6U);
  for (std::size_t i = 0; i < infos.size(); ++i)
    EXPECT_EQ(TestFixture::Traits::kindOf(infos[i]), i);
}

TYPED_TEST(StructuringElementInfo, AnswersOnlyForTheParametersOfItsShape)
{
  std::vector<TypeParam> infos = this->makeOfEachKind();
  for (const auto& query : queriesOf<TypeParam>())
    for (std::size_t i = 0; i < infos.size(); ++i)
    {
      const InfoState before = stateOfInfo(infos[i]);
      if (std::count(query.kinds.begin(), query.kinds.end(), i) == 1)
        EXPECT_NO_THROW(query.call(infos[i])) << query.function << " " << i;
      else
        expectRaised<ORVELBaseDataException>([&] { query.call(infos[i]); },
                                             this->expectedOf(TestFixture::invalidKind, query));
      EXPECT_EQ(stateOfInfo(infos[i]), before);
    }
}

TYPED_TEST(StructuringElementInfo, IsFoundNotInitialisedWhateverItsKind)
{
  for (TypeParam& info : this->makeOfEachKind())
  {
    info.clear();
    this->expectNotInitialized(info);
  }
}

TYPED_TEST(StructuringElementInfo, HasTheParametersOfItsInitialisation)
{
  using Shape = InfoTraits<TypeParam>;
  TypeParam info;
  Shape::initBall(info, 1.5);
  EXPECT_EQ(info.getRadius(), 1.5);
  Shape::initCube(info, 2);
  EXPECT_EQ(info.getHalfSize(), 2U);
  Shape::initBox(info, 3, 2, 1);
  EXPECT_EQ(info.getHalfSizeX(), 3U);
  EXPECT_EQ(info.getHalfSizeY(), 2U);
  if constexpr (!Shape::isPlanar)
  {
    EXPECT_EQ(info.getHalfSizeZ(), 1U);
  }
  Shape::initHalfLinear(info, 0.5, 1.25, 3.0);
  EXPECT_EQ(info.getTheta(), 0.5);
  EXPECT_EQ(info.getRadius(), 3.0);
  Shape::initLinear(info, -7.5, 8.5, 4.0);
  EXPECT_EQ(info.getTheta(), -7.5);
  EXPECT_EQ(info.getRadius(), 4.0);
  if constexpr (!Shape::isPlanar)
  {
    EXPECT_EQ(info.getPhi(), 8.5);
    Shape::initHalfLinear(info, 0.5, 1.25, 3.0);
    EXPECT_EQ(info.getPhi(), 1.25);
  }
}

TYPED_TEST(StructuringElementInfo, StoresTheParametersOfItsShapeAlone)
{
  using Shape = InfoTraits<TypeParam>;
  EXPECT_EQ(this->parametersAfter([](TypeParam& info) { info.init(typename TestFixture::Element()); }),
            this->othersBut({}));
  EXPECT_EQ(this->parametersAfter([](TypeParam& info) { info.initEmpty(); }), this->othersBut({}));
  EXPECT_EQ(this->parametersAfter([](TypeParam& info) { Shape::initBall(info, 1.5); }),
            this->othersBut({{0, 1.5}}));
  EXPECT_EQ(this->parametersAfter([](TypeParam& info) { Shape::initCube(info, 4); }),
            this->othersBut({{1, 4}}));
  EXPECT_EQ(this->parametersAfter([](TypeParam& info) { Shape::initBox(info, 4, 5, 6); }),
            this->othersBut({{2, 4}, {3, 5}, {4, 6}}));
  EXPECT_EQ(this->parametersAfter([](TypeParam& info) { Shape::initHalfLinear(info, 0.5, 1.25, 3.0); }),
            this->othersBut({{5, 0.5}, {6, 1.25}, {0, 3.0}}));
  EXPECT_EQ(this->parametersAfter([](TypeParam& info) { Shape::initLinear(info, 0.5, 1.25, 3.0); }),
            this->othersBut({{5, 0.5}, {6, 1.25}, {0, 3.0}}));
}

// Elements

TEST(StructuringElementXYInfo, HasTheElementOfItsInitialisation)
{
  InfoXY info;
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

TEST(StructuringElementXYZInfo, HasTheElementOfItsInitialisation)
{
  InfoXYZ info;
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

TYPED_TEST(StructuringElementInfo, AnswersNothingWhenNewOrCleared)
{
  TypeParam fresh;
  this->expectNotInitialized(fresh);
  TypeParam info = this->makeCube();
  info.clear();
  this->expectNotInitialized(info);
  info.clear(); // allowed again
  this->expectNotInitialized(info);
}

TYPED_TEST(StructuringElementInfo, IsInitialisedInEitherState)
{
  for (const auto& initialise : newElementInitialisations<TypeParam>())
  {
    TypeParam fresh;
    initialise(fresh);
    TypeParam used = this->makeCube();
    initialise(used);
    EXPECT_TRUE(fresh.isInitialized());
    EXPECT_EQ(stateOfInfo(used), stateOfInfo(fresh));
  }
}

TYPED_TEST(StructuringElementInfo, TakesACopyOfAnyElement)
{
  typename TestFixture::Element element = this->makeElement();
  TypeParam info = this->makeCube();
  info.init(element);
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 0, stateOf(element)}));
  element.clear();
  EXPECT_EQ(info.getDataColl().size(), 2U);
}

TYPED_TEST(StructuringElementInfo, TakesAnElementInEitherEmptyState)
{
  typename TestFixture::Element emptied;
  emptied.setDataColl({});
  TypeParam info;
  info.init(emptied);
  EXPECT_EQ(stateOf(*info.getStructuringElement()), stateOf(emptied));
  info.init(typename TestFixture::Element());
  EXPECT_EQ(stateOf(*info.getStructuringElement()), stateOf(typename TestFixture::Element()));
}

TYPED_TEST(StructuringElementInfo, IsEmptyWhenInitialisedWithItsOwnElement)
{
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  info.init(*held);
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 0, stateOf(typename TestFixture::Element())}));
  EXPECT_EQ(info.getStructuringElement(), held);
}

TYPED_TEST(StructuringElementInfo, IsEmptyAndGenericWhenInitialisedEmpty)
{
  TypeParam info;
  info.initEmpty();
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 0, stateOf(typename TestFixture::Element())}));
  EXPECT_TRUE(TestFixture::Traits::insert(info, 0, 0, 0));
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{0, 0, 0}}));
}

TYPED_TEST(StructuringElementInfo, AnswersWithTheSetOfItsElement)
{
  const TypeParam info = this->makeCube();
  EXPECT_EQ(info.getDataColl().size(), TestFixture::nbOffsetsOfCube);
  EXPECT_EQ(&info.getDataColl(), &info.getStructuringElement()->getDataColl());
}

TYPED_TEST(StructuringElementInfo, InsertsWhatIsNotThereAndRemovesWhatIs)
{
  for (const bool isByCoordinates : {false, true})
  {
    TypeParam info = this->makeCube();
    const LogCapture log(getORVELBaseDataLogger());
    const auto insert = [&](ipInt32 x, ipInt32 y, ipInt32 z)
    {
      return isByCoordinates ? TestFixture::Traits::insert(info, x, y, z) : info.insert(this->at(x, y, z));
    };
    const auto remove = [&](ipInt32 x, ipInt32 y, ipInt32 z)
    {
      return isByCoordinates ? TestFixture::Traits::remove(info, x, y, z) : info.remove(this->at(x, y, z));
    };
    const InfoState before = stateOfInfo(info);
    EXPECT_FALSE(insert(0, 0, 0));
    EXPECT_FALSE(remove(5, 6, 7));
    EXPECT_EQ(stateOfInfo(info), before);

    EXPECT_TRUE(insert(5, 6, 7));
    EXPECT_FALSE(insert(5, 6, 7));
    EXPECT_EQ(info.getDataColl().size(), TestFixture::nbOffsetsOfCube + 1);
    EXPECT_TRUE(info.getStructuringElement()->exists(this->at(5, 6, 7)));
    EXPECT_EQ(info.getStructuringElement()->getSizeX(), 7U);
    EXPECT_EQ(info.getStructuringElement()->getSizeY(), 8U);

    EXPECT_TRUE(remove(5, 6, 7));
    EXPECT_EQ(stateOfInfo(info), before);
    EXPECT_FALSE(remove(5, 6, 7));
    EXPECT_TRUE(remove(1, -1, 0));
    EXPECT_EQ(info.getDataColl().size(), TestFixture::nbOffsetsOfCube - 1);
    EXPECT_TRUE(log.getRecords().empty()); // unlike those of the element itself
  }
}

TYPED_TEST(StructuringElementInfo, RemovesAnOffsetThatIsItsOwn)
{
  TypeParam info = this->makeCube();
  EXPECT_TRUE(info.remove(*info.getDataColl().begin()));
  EXPECT_EQ(info.getDataColl().size(), TestFixture::nbOffsetsOfCube - 1);
}

TYPED_TEST(StructuringElementInfo, KeepsKindAndParametersWhenItsElementChanges)
{
  TypeParam info = this->makeCube();
  TestFixture::Traits::insert(info, 5, 5, 5);
  TestFixture::Traits::remove(info, 0, 0, 0);
  EXPECT_EQ(TestFixture::Traits::kindOf(info), 2U);
  EXPECT_EQ(info.getHalfSize(), 1U);

  TestFixture::Traits::initBall(info, 1.5);
  TestFixture::Traits::insert(info, 5, 5, 5);
  EXPECT_EQ(TestFixture::Traits::kindOf(info), 1U);
  EXPECT_EQ(info.getRadius(), 1.5);
}

// What holders of the element see

TYPED_TEST(StructuringElementInfo, SharesItsElementAndItsChanges)
{
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  EXPECT_EQ(held.use_count(), 2);
  TestFixture::Traits::insert(info, 5, 5, 5);
  EXPECT_EQ(held->getNbData(), TestFixture::nbOffsetsOfCube + 1);
  TestFixture::Traits::remove(info, 0, 0, 0);
  EXPECT_EQ(held->getNbData(), TestFixture::nbOffsetsOfCube);
  EXPECT_EQ(info.getStructuringElement(), held);
}

TYPED_TEST(StructuringElementInfo, LeavesItsElementToItsHolders)
{
  boost::scoped_ptr<TypeParam> info(new TypeParam(this->makeCube()));
  const auto held = info->getStructuringElement();
  info.reset();
  EXPECT_EQ(held->getNbData(), TestFixture::nbOffsetsOfCube);
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(StructuringElementInfo, EmptiesTheElementOfHoldersWhenCleared)
{
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  info.clear();
  EXPECT_EQ(stateOf(*held), stateOf(typename TestFixture::Element()));
}

TYPED_TEST(StructuringElementInfo, EmptiesItsElementAndNothingElseInItsPartOfClear)
{
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  Base& base = info;
  (base.*memberOf(ClearDerived()))();
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 2, stateOf(typename TestFixture::Element())}));
  EXPECT_EQ(info.getHalfSize(), 1U);
  EXPECT_EQ(info.getStructuringElement(), held);
}

TYPED_TEST(StructuringElementInfo, LeavesHoldersAnEmptyElementWhenItTakesANewOne)
{
  for (const auto& initialise : newElementInitialisations<TypeParam>())
  {
    TypeParam info = this->makeCube();
    const auto held = info.getStructuringElement();
    initialise(info);
    EXPECT_EQ(stateOf(*held), stateOf(typename TestFixture::Element()));
    EXPECT_NE(info.getStructuringElement(), held);
    EXPECT_EQ(held.use_count(), 1);
    TestFixture::Traits::insert(info, 9, 9, 9);
    EXPECT_EQ(held->getNbData(), 0U);
  }
}

TYPED_TEST(StructuringElementInfo, FillsTheElementOfHoldersWithAnElementAndWithACopy)
{
  TypeParam source;
  source.init(this->makeElement());
  const std::function<void(TypeParam&)> changes[] = {[this](TypeParam& info)
                                                     { info.init(this->makeElement()); },
                                                     [&source](TypeParam& info)
                                                     {
                                                       info = source;
                                                     }};
  for (const auto& change : changes)
  {
    TypeParam info = this->makeCube();
    const auto held = info.getStructuringElement();
    change(info);
    EXPECT_EQ(info.getStructuringElement(), held);
    EXPECT_EQ(stateOf(*held), stateOf(this->makeElement()));
  }
}

TYPED_TEST(StructuringElementInfo, EmptiesTheElementOfHoldersByACopyOfWhatIsNotInitialised)
{
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  info = TypeParam();
  this->expectNotInitialized(info);
  EXPECT_EQ(stateOf(*held), stateOf(typename TestFixture::Element()));
  info.init(this->makeElement()); // into the same element
  EXPECT_EQ(info.getStructuringElement(), held);
}

TYPED_TEST(StructuringElementInfo, AnswersSeveralThreadsAtOnce)
{
  const TypeParam info = this->makeCube();
  std::vector<InfoState> states(4);
  std::vector<std::thread> threads;
  for (InfoState& state : states)
    threads.emplace_back([&info, &state] { state = stateOfInfo(info); });
  for (std::thread& thread : threads)
    thread.join();
  for (const InfoState& state : states)
    EXPECT_EQ(state, stateOfInfo(info));
}

// Failed initialisations

TYPED_TEST(StructuringElementInfo, RefusesARadiusThatIsNotAtLeastZero)
{
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const std::pair<double, std::string> radii[] = {{-1.0, "-1.000000"}, {-infinity, "-inf"}, {nan, "nan"}};
  for (const auto& row : this->radiusInitialisations())
    for (const auto& [radius, text] : radii)
      for (TypeParam info : {this->makeCube(), TypeParam()})
      {
        EXPECT_EQ(messageOf<ORVELBaseDataException>([&, value = radius] { row.second(info, value); }),
                  "Invalid radius value " + text + ", should not be negative");
        this->expectNotInitialized(info);
      }
}

TYPED_TEST(StructuringElementInfo, StoresTheKindButNoParameterOfAFailedInitialisation)
{
  for (const auto& [kind, initialise] : this->radiusInitialisations())
  {
    TypeParam info = this->makeCube();
    setOthers(info);
    EXPECT_THROW(initialise(info, -1), ORVELBaseDataException);
    EXPECT_EQ(storedKindOf(info), kind);
    EXPECT_EQ(parametersOf(info), this->othersBut({}));
  }
}

TYPED_TEST(StructuringElementInfo, KeepsItsEmptiedElementAfterAFailure)
{
  for (const auto& row : this->radiusInitialisations())
  {
    TypeParam info = this->makeCube();
    const auto held = info.getStructuringElement();
    EXPECT_THROW(row.second(info, -1), ORVELBaseDataException);
    EXPECT_EQ(stateOf(*held), stateOf(typename TestFixture::Element()));
    EXPECT_EQ(held.use_count(), 2); // still that of the description
    info.init(this->makeElement());
    EXPECT_EQ(info.getStructuringElement(), held);
  }
}

TYPED_TEST(StructuringElementInfo, IsUsableAfterAFailure)
{
  TypeParam info = this->makeCube();
  EXPECT_THROW(TestFixture::Traits::initBall(info, -1), ORVELBaseDataException);
  TestFixture::Traits::initBall(info, 1);
  EXPECT_EQ(info.getRadius(), 1.0);
  EXPECT_EQ(info.getDataColl().size(), TestFixture::Traits::isPlanar ? 5U : 7U);
}

TYPED_TEST(StructuringElementInfo, IsNotInitialisedWhenMemoryRunsOut)
{
  auto initialisations = newElementInitialisations<TypeParam>();
  const typename TestFixture::Element element = this->makeElement();
  initialisations.emplace_back([&element](TypeParam& info) { info.init(element); });
  for (const auto& initialise : initialisations)
  {
    TypeParam info = this->makeCube();
    const std::size_t nbFailures = failAtEachAllocation([&] { initialise(info); },
                                                        [&]
                                                        {
                                                          EXPECT_FALSE(info.isInitialized());
                                                          info.clear();
                                                        });
    EXPECT_GT(nbFailures, 0U);
    EXPECT_TRUE(info.isInitialized());
  }
}

// Copies

TYPED_TEST(StructuringElementInfo, HasAnElementOfItsOwnInACopy)
{
  TypeParam source = this->makeCube();
  const TypeParam constructed(source);
  TypeParam assigned;
  assigned = source;
  const boost::scoped_ptr<BaseDynamicObject> owned(source.duplicate());
  const DynamicObjectPtr shared = source.duplicateShared();
  const InfoState before = stateOfInfo(source);
  const TypeParam* const copies[] = {&constructed, &assigned, dynamic_cast<TypeParam*>(owned.get()),
                                     dynamic_cast<TypeParam*>(shared.get())};
  TestFixture::Traits::insert(source, 5, 5, 5);
  for (const TypeParam* copy : copies)
  {
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy->getStructuringElement(), source.getStructuringElement());
    EXPECT_EQ(stateOfInfo(*copy), before);
  }
}

TYPED_TEST(StructuringElementInfo, IsCopiedInEveryKindOverEveryOther)
{
  for (const TypeParam& source : this->makeOfEachKind())
    for (TypeParam& target : this->makeOfEachKind())
    {
      EXPECT_EQ(&(target = source), &target);
      EXPECT_EQ(stateOfInfo(target), stateOfInfo(source));
    }
}

TYPED_TEST(StructuringElementInfo, IsCopiedWithTheParametersOfItsShapeAlone)
{
  // A copied square has the half size of the target, a copied cube its own.
  const Parameters expected[] = {this->othersBut({}),
                                 this->othersBut({{0, 1.5}}),
                                 TestFixture::Traits::isPlanar ? this->othersBut({})
                                                               : this->othersBut({{1, 2}}),
                                 this->othersBut({{2, 2}, {3, 1}, {4, 0}}),
                                 this->othersBut({{5, 0.5}, {6, 1}, {0, 3}}),
                                 this->othersBut({{5, 0.5}, {6, 1}, {0, 3}})};
  const std::vector<TypeParam> sources = this->makeOfEachKind();
  for (std::size_t i = 0; i < sources.size(); ++i)
    EXPECT_EQ(this->parametersAfter([&](TypeParam& info) { info = sources[i]; }), expected[i]) << i;
}

TYPED_TEST(StructuringElementInfo, KeepsItsKindAndParametersOutOfReachWhenWhatItCopiesIsNotInitialised)
{
  TypeParam source;
  TestFixture::Traits::initLinear(source, 0.5, 1.25, 3.0);
  source.clear();
  TypeParam info;
  TestFixture::Traits::initBox(info, 4, 5, 6);
  setOthers(info);
  info = source;
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ(storedKindOf(info), 3U);
  EXPECT_EQ(parametersOf(info), this->othersBut({}));
}

TYPED_TEST(StructuringElementInfo, CarriesTheHalfSizeIntoEveryCopyOfACubeAndNoneOfASquare)
{
  TypeParam source;
  TestFixture::Traits::initCube(source, 3);
  TypeParam target;
  TestFixture::Traits::initCube(target, 7);
  target = source;
  EXPECT_EQ(stateOfInfo(target), stateOfInfo(source));
  EXPECT_EQ(target.getDataColl().size(), TestFixture::Traits::isPlanar ? 49U : 343U);
  EXPECT_EQ(target.getHalfSize(), TestFixture::Traits::isPlanar ? 7U : 3U); // the target's own

  const ipUInt32 expected = TestFixture::Traits::isPlanar ? 0 : 3; // that of a new one
  const boost::scoped_ptr<BaseDynamicObject> owned(source.duplicate());
  const DynamicObjectPtr shared = source.duplicateShared();
  EXPECT_EQ(TypeParam(source).getHalfSize(), expected);
  EXPECT_EQ(dynamic_cast<TypeParam&>(*owned).getHalfSize(), expected);
  EXPECT_EQ(dynamic_cast<TypeParam&>(*shared).getHalfSize(), expected);
}

TYPED_TEST(StructuringElementInfo, IsCopiedWithAChangedElement)
{
  TypeParam source;
  TestFixture::Traits::initBall(source, 1.5);
  TestFixture::Traits::insert(source, 9, 9, 9);
  const TypeParam copied(source);
  EXPECT_EQ(stateOfInfo(copied), stateOfInfo(source));
  EXPECT_EQ(copied.getRadius(), 1.5);
}

TYPED_TEST(StructuringElementInfo, IsCopiedWithTheStateOfAnEmptiedElement)
{
  TypeParam source;
  source.initEmpty();
  TestFixture::Traits::insert(source, 1, 1, 1);
  TestFixture::Traits::remove(source, 1, 1, 1);
  EXPECT_EQ(stateOf(*TypeParam(source).getStructuringElement()),
            ElementTraits<typename TestFixture::Element>::emptiedState());
}

TYPED_TEST(StructuringElementInfo, HasTheKindOfTheSourceAndItsOldOffsetsWhenMemoryRunsOutForACopy)
{
  TypeParam source;
  TestFixture::Traits::initBall(source, 2.5);
  for (TypeParam target : {this->makeCube(), TypeParam()})
  {
    const bool wasInitialised = target.isInitialized();
    const std::size_t nbFailures = failAtEachAllocation(
        [&] { target = source; },
        [&]
        {
          EXPECT_TRUE(target.isInitialized());
          EXPECT_EQ(TestFixture::Traits::kindOf(target), 1U);
          EXPECT_EQ(target.getRadius(), 2.5);
          EXPECT_EQ(target.getDataColl().size(), wasInitialised ? TestFixture::nbOffsetsOfCube : 0U);
        });
    EXPECT_GT(nbFailures, 0U);
    EXPECT_EQ(stateOfInfo(target), stateOfInfo(source));
  }
}

TYPED_TEST(StructuringElementInfo, IsCopiedWhenItIsNotInitialised)
{
  const TypeParam source;
  TypeParam constructed(source);
  TypeParam assigned = this->makeCube();
  assigned = source;
  this->expectNotInitialized(constructed);
  this->expectNotInitialized(assigned);
  constructed.initEmpty();
  EXPECT_TRUE(constructed.isInitialized());
}

TYPED_TEST(StructuringElementInfo, SurvivesACopyOfItself)
{
  TypeParam info = this->makeCube();
  const InfoState before = stateOfInfo(info);
  const auto held = info.getStructuringElement();
  const TypeParam& itself = info;
  info = itself;
  info.copy(itself);
  EXPECT_EQ(stateOfInfo(info), before);
  EXPECT_EQ(info.getHalfSize(), 1U);
  EXPECT_EQ(info.getStructuringElement(), held);

  TypeParam fresh;
  const TypeParam& freshItself = fresh;
  fresh = freshItself;
  this->expectNotInitialized(fresh);
}

TYPED_TEST(StructuringElementInfo, AnswersNothingWhenItIsConstructedFromItself)
{
  alignas(TypeParam) unsigned char storage[sizeof(TypeParam)];
  std::memset(storage, 0x5A, sizeof storage);
  auto* const place = reinterpret_cast<TypeParam*>(storage);
  TypeParam* const info = new (storage) TypeParam(*place); // not looked at, as it is the same
  this->expectNotInitialized(*info);
  info->initEmpty(); // it has an element
  EXPECT_EQ(stateOfInfo(*info), (InfoState{true, 0, stateOf(typename TestFixture::Element())}));
  info->~TypeParam();
}

template <class InfoType>
struct CountingInfo : InfoType
{
  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    InfoType::copy(other);
  }

  int nbCopies = 0;
};

TYPED_TEST(StructuringElementInfo, IsAssignedByItsVirtualCopy)
{
  CountingInfo<TypeParam> derived;
  TypeParam& info = derived;
  EXPECT_EQ(&(info = this->makeCube()), &info);
  EXPECT_EQ(derived.nbCopies, 1);
}

TYPED_TEST(StructuringElementInfo, LeaksNothingWhenItsDuplicateRunsOutOfMemory)
{
  TypeParam source;
  source.init(this->makeElement());
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const auto check = [nbBlocks]
  {
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  };
  // The description, its element and two offsets.
  EXPECT_EQ(failAtEachAllocation([&] { delete source.duplicate(); }, check), 4U);
  EXPECT_EQ(failAtEachAllocation([&] { source.duplicateShared(); }, check), 4U);
  check();
}

} // namespace
