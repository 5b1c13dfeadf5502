#include "ORVELBaseData/Pattern/StructuringElement/BaseStructuringElementInfo.h"

#include <cstddef>
#include <dlfcn.h>
#include <limits>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include "InfoTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using Base = BaseStructuringElementInfo;

ORVEL_TEST_EXPOSE(Init, &BaseStructuringElementInfo::_bInit)
ORVEL_TEST_EXPOSE(ClearDerived, &BaseStructuringElementInfo::clearDerived)
ORVEL_TEST_EXPOSE(InitBase, &BaseStructuringElementInfo::initBase)

TEST(BaseStructuringElementInfo, IsTheAbstractRootOfDescriptions)
{
  EXPECT_TRUE(std::is_abstract<Base>::value);
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, Base>::value));
  EXPECT_TRUE(std::has_virtual_destructor<Base>::value);
  EXPECT_FALSE(std::is_copy_assignable<Base>::value); // copy() takes the whole object over
}

/// Implements all pure operations.
struct WholeInfo : Base
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  eStructuringElementType getStructuringElementType() const override
  {
    return eStructuringElementType::eSET_XY;
  }
  void clearDerived() override
  {
    ++nbClears;
    wasInitialized = isInitialized();
  }

  int nbClears = 0;
  bool wasInitialized = true;
};

TEST(BaseStructuringElementInfo, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<WholeInfo>::value);
  EXPECT_EQ(WholeInfo().getClassName(), "orvel::BaseStructuringElementInfo");
}

TEST(BaseStructuringElementInfo, IsNotInitializedWhenNew)
{
  EXPECT_FALSE(WholeInfo().isInitialized());
}

TEST(BaseStructuringElementInfo, IsInitializedByTheLastStepOfAnInitialisation)
{
  WholeInfo info;
  (info.*memberOf(InitBase()))();
  EXPECT_TRUE(info.isInitialized());
  EXPECT_EQ(info.nbClears, 0);
}

TEST(BaseStructuringElementInfo, IsClearedBeforeWhatDerivesFromIt)
{
  WholeInfo info;
  (info.*memberOf(InitBase()))();
  info.clear();
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ(info.nbClears, 1);
  EXPECT_FALSE(info.wasInitialized);
}

TEST(BaseStructuringElementInfo, CopiesWhetherItIsInitialized)
{
  WholeInfo initialised;
  (initialised.*memberOf(InitBase()))();
  WholeInfo info;
  info.copy(initialised);
  EXPECT_TRUE(info.isInitialized());
  info.copy(WholeInfo());
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ(info.nbClears, 0); // that is the derived copy's to do
}

TEST(BaseStructuringElementInfo, LeavesTheseOperationsPure)
{
  const auto table =
      static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel26BaseStructuringElementInfoE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  for (const std::size_t index :
       {vtableIndexOf(&Base::createNew), vtableIndexOf(&Base::createShared),
        vtableIndexOf(&Base::hasCopySupport), vtableIndexOf(&Base::duplicate),
        vtableIndexOf(&Base::duplicateShared), vtableIndexOf(&Base::getStructuringElementType),
        vtableIndexOf(memberOf(ClearDerived()))})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&Base::getClassName), vtableIndexOf(&Base::initCtorCopy), vtableIndexOf(&Base::copy),
        vtableIndexOf(&Base::write), vtableIndexOf(&Base::read)})
    EXPECT_FALSE(isPure(index)) << index;
}

TEST(BaseStructuringElementInfo, HasOneField)
{
  EXPECT_TRUE((std::is_same<decltype(memberOf(Init())), bool Base::*>::value));
  EXPECT_EQ(offsetOf(memberOf(Init())), 8); // behind the pointer to the virtual operations
  EXPECT_EQ(sizeof(Base), 16U);
}

template <class HandWritten>
class ArchivedBaseStructuringElementInfo : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseStructuringElementInfo, Formats, );

TYPED_TEST(ArchivedBaseStructuringElementInfo, HoldsItsVersionAndWhetherItIsInitialized)
{
  for (const bool isInitialized : {false, true})
  {
    TypeParam file;
    putVersion(file, "orvel::BaseStructuringElementInfo", 1);
    file.boolean("_bInit", isInitialized);

    WholeInfo written;
    written.*memberOf(Init()) = isInitialized;
    EXPECT_EQ(fileOf<TypeParam>([&](BaseOArchive& archive) { EXPECT_TRUE(written.write(archive)); }),
              file.file());

    WholeInfo info;
    info.*memberOf(Init()) = !isInitialized;
    readFile<TypeParam>(file.file(), [&](BaseIArchive& archive) { EXPECT_TRUE(info.read(archive)); });
    EXPECT_EQ(info.isInitialized(), isInitialized);
  }
}

// What StructuringElementXYInfo and StructuringElementXYZInfo have in common, tested on both.

template <class InfoType>
class StructuringElementInfo : public ::testing::Test
{
protected:
  using Traits = InfoTraits<InfoType>;
  using Element = typename Traits::Element;

  /// The offsets (1, 2, 3) and (5, 0, 0).
  static Element makeElement()
  {
    Element element;
    element.insert(ElementTraits<Element>::at(1, 2, 3));
    element.insert(ElementTraits<Element>::at(5, 0, 0));
    return element;
  }

  static InfoType makeCube()
  {
    InfoType info;
    Traits::initCube(info, 1);
    return info;
  }

  template <class Operation>
  static void expectNotInitialized(Operation operation)
  {
    EXPECT_EQ(messageOf<ORVELBaseDataException>(operation),
              "Structuring element informations have not been initialized");
  }

  static void expectNotInitialized(InfoType& info)
  {
    EXPECT_FALSE(info.isInitialized());
    expectNotInitialized([&] { Traits::subTypeOf(info); });
    expectNotInitialized([&] { info.getStructuringElement(); });
    expectNotInitialized([&] { info.getDataColl(); });
    expectNotInitialized([&] { info.getRadius(); });
    expectNotInitialized([&] { info.getHalfSize(); });
    expectNotInitialized([&] { info.getHalfSizeX(); });
    expectNotInitialized([&] { info.getHalfSizeY(); });
    expectNotInitialized([&] { info.getTheta(); });
    expectNotInitialized([&] { info.insert(ElementTraits<Element>::at(0, 0, 0)); });
    expectNotInitialized([&] { info.remove(ElementTraits<Element>::at(0, 0, 0)); });
    expectNotInitialized([&] { Traits::insert(info, 0, 0, 0); });
    expectNotInitialized([&] { Traits::remove(info, 0, 0, 0); });
  }

  static constexpr ipUInt64 nbOffsetsOfCube = ElementTraits<Element>::nbAxes == 2 ? 9 : 27;
};

using Infos = ::testing::Types<StructuringElementXYInfo, StructuringElementXYZInfo>;

struct InfoNames
{
  template <class InfoType>
  static std::string GetName(int)
  {
    return InfoTraits<InfoType>::name;
  }
};

TYPED_TEST_SUITE(StructuringElementInfo, Infos, InfoNames);

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
  ASSERT_NE(dynamic_cast<TypeParam*>(another.get()), nullptr);
  ASSERT_NE(dynamic_cast<TypeParam*>(sharedOther.get()), nullptr);
  this->expectNotInitialized(dynamic_cast<TypeParam&>(*another));
  this->expectNotInitialized(dynamic_cast<TypeParam&>(*sharedOther));
}

TYPED_TEST(StructuringElementInfo, AnswersNothingWhenNew)
{
  TypeParam info;
  this->expectNotInitialized(info);
  EXPECT_FALSE(info.isInitialized());
}

TYPED_TEST(StructuringElementInfo, AnswersNothingWhenCleared)
{
  TypeParam info = this->makeCube();
  info.clear();
  this->expectNotInitialized(info);
  info.clear(); // allowed again
  this->expectNotInitialized(info);
}

TYPED_TEST(StructuringElementInfo, IsInitialisedInEitherState)
{
  ipUInt64 subType = 0;
  for (const auto& initialise : newElementInitialisations<TypeParam>())
  {
    TypeParam fresh;
    initialise(fresh);
    TypeParam used = this->makeCube();
    initialise(used);
    EXPECT_TRUE(fresh.isInitialized());
    EXPECT_EQ(TestFixture::Traits::subTypeOf(fresh), subType++); // in the order of the kinds
    EXPECT_EQ(stateOfInfo(used), stateOfInfo(fresh));
  }
}

TYPED_TEST(StructuringElementInfo, TakesACopyOfAnyElement)
{
  typename TestFixture::Element element = this->makeElement();
  TypeParam info = this->makeCube();
  info.init(element);
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 0U);
  EXPECT_EQ(stateOf(*info.getStructuringElement()), stateOf(element));
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
  EXPECT_TRUE(info.isInitialized());
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 0U);
  EXPECT_EQ(info.getStructuringElement(), held);
  EXPECT_EQ(stateOf(*held), stateOf(typename TestFixture::Element()));
}

TYPED_TEST(StructuringElementInfo, IsEmptyAndGenericWhenInitialisedEmpty)
{
  TypeParam info;
  info.initEmpty();
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 0U);
  EXPECT_EQ(stateOf(*info.getStructuringElement()), stateOf(typename TestFixture::Element()));
  EXPECT_TRUE(TestFixture::Traits::insert(info, 0, 0, 0));
  EXPECT_EQ(placesOf(*info.getStructuringElement()), (Places{{0, 0, 0}}));
}

TYPED_TEST(StructuringElementInfo, AnswersWithTheSetOfItsElement)
{
  const TypeParam info = this->makeCube();
  EXPECT_EQ(info.getDataColl().size(), TestFixture::nbOffsetsOfCube);
  EXPECT_EQ(&info.getDataColl(), &info.getStructuringElement()->getDataColl());
}

TYPED_TEST(StructuringElementInfo, InsertsWhatIsNotThere)
{
  for (const bool isByCoordinates : {false, true})
  {
    TypeParam info = this->makeCube();
    const auto insert = [&](ipInt32 x, ipInt32 y, ipInt32 z)
    {
      return isByCoordinates ? TestFixture::Traits::insert(info, x, y, z)
                             : info.insert(ElementTraits<typename TestFixture::Element>::at(x, y, z));
    };
    const InfoState before = stateOfInfo(info);
    EXPECT_FALSE(insert(0, 0, 0));
    EXPECT_EQ(stateOfInfo(info), before);
    EXPECT_TRUE(insert(5, 6, 7));
    EXPECT_FALSE(insert(5, 6, 7));
    EXPECT_EQ(info.getDataColl().size(), TestFixture::nbOffsetsOfCube + 1);
    EXPECT_TRUE(
        info.getStructuringElement()->exists(ElementTraits<typename TestFixture::Element>::at(5, 6, 7)));
    EXPECT_EQ(info.getStructuringElement()->getSizeX(), 7U);
    EXPECT_EQ(info.getStructuringElement()->getSizeY(), 8U);
  }
}

TYPED_TEST(StructuringElementInfo, RemovesWhatIsThere)
{
  for (const bool isByCoordinates : {false, true})
  {
    TypeParam info = this->makeCube();
    const auto remove = [&](ipInt32 x, ipInt32 y, ipInt32 z)
    {
      return isByCoordinates ? TestFixture::Traits::remove(info, x, y, z)
                             : info.remove(ElementTraits<typename TestFixture::Element>::at(x, y, z));
    };
    const InfoState before = stateOfInfo(info);
    EXPECT_FALSE(remove(5, 6, 7));
    EXPECT_EQ(stateOfInfo(info), before);
    TestFixture::Traits::insert(info, 5, 6, 7);
    EXPECT_TRUE(remove(5, 6, 7));
    EXPECT_EQ(stateOfInfo(info), before);
    EXPECT_FALSE(remove(5, 6, 7));
    EXPECT_TRUE(remove(1, -1, 0));
    EXPECT_EQ(info.getDataColl().size(), TestFixture::nbOffsetsOfCube - 1);
  }
}

TYPED_TEST(StructuringElementInfo, RefusesAnOffsetWithoutAFailure)
{
  TypeParam info = this->makeCube();
  const LogCapture log(getORVELBaseDataLogger());
  EXPECT_FALSE(TestFixture::Traits::insert(info, 0, 0, 0));
  EXPECT_FALSE(TestFixture::Traits::remove(info, 5, 6, 7));
  EXPECT_TRUE(log.getRecords().empty()); // unlike those of the element itself
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
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 2U);
  EXPECT_EQ(info.getHalfSize(), 1U);
  TestFixture::Traits::remove(info, 0, 0, 0);
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 2U);
  EXPECT_EQ(info.getHalfSize(), 1U);

  TestFixture::Traits::initBall(info, 1.5);
  TestFixture::Traits::insert(info, 5, 5, 5);
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 1U);
  EXPECT_EQ(info.getRadius(), 1.5);
}

// What holders of the element see

TYPED_TEST(StructuringElementInfo, SharesItsElement)
{
  const TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  EXPECT_EQ(info.getStructuringElement(), held);
  EXPECT_EQ(held.use_count(), 2);
}

TYPED_TEST(StructuringElementInfo, LeavesItsElementToItsHolders)
{
  boost::scoped_ptr<TypeParam> info(new TypeParam(this->makeCube()));
  const auto held = info->getStructuringElement();
  info.reset();
  EXPECT_EQ(held->getNbData(), TestFixture::nbOffsetsOfCube);
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(StructuringElementInfo, LetsHoldersSeeItsChanges)
{
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  TestFixture::Traits::insert(info, 5, 5, 5);
  EXPECT_EQ(held->getNbData(), TestFixture::nbOffsetsOfCube + 1);
  TestFixture::Traits::remove(info, 0, 0, 0);
  EXPECT_EQ(held->getNbData(), TestFixture::nbOffsetsOfCube);
  EXPECT_EQ(info.getStructuringElement(), held);
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
  EXPECT_TRUE(info.isInitialized());
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 2U);
  EXPECT_EQ(info.getHalfSize(), 1U);
  EXPECT_EQ(info.getStructuringElement(), held);
  EXPECT_EQ(stateOf(*held), stateOf(typename TestFixture::Element()));
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

TYPED_TEST(StructuringElementInfo, FillsTheElementOfHoldersWhenInitialisedWithAnElement)
{
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  info.init(this->makeElement());
  EXPECT_EQ(info.getStructuringElement(), held);
  EXPECT_EQ(stateOf(*held), stateOf(this->makeElement()));
}

TYPED_TEST(StructuringElementInfo, FillsTheElementOfHoldersWithACopy)
{
  TypeParam source;
  source.init(this->makeElement());
  TypeParam info = this->makeCube();
  const auto held = info.getStructuringElement();
  info = source;
  EXPECT_EQ(info.getStructuringElement(), held);
  EXPECT_EQ(stateOf(*held), stateOf(this->makeElement()));
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
  for (const auto& initialise : radiusInitialisations<TypeParam>())
    for (const double radius : {-1.0, -std::numeric_limits<double>::infinity()})
    {
      TypeParam info;
      EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { initialise(info, radius); }),
                std::string("Invalid radius value ") + (radius == -1.0 ? "-1.000000" : "-inf") +
                    ", should not be negative");
      EXPECT_EQ(messageOf<ORVELBaseDataException>(
                    [&] { initialise(info, std::numeric_limits<double>::quiet_NaN()); }),
                "Invalid radius value nan, should not be negative");
      this->expectNotInitialized(info);
    }
}

TYPED_TEST(StructuringElementInfo, IsNotInitialisedAfterAFailure)
{
  for (const auto& initialise : radiusInitialisations<TypeParam>())
  {
    TypeParam info = this->makeCube();
    EXPECT_THROW(initialise(info, -1), ORVELBaseDataException);
    this->expectNotInitialized(info);
  }
}

TYPED_TEST(StructuringElementInfo, KeepsItsEmptiedElementAfterAFailure)
{
  for (const auto& initialise : radiusInitialisations<TypeParam>())
  {
    TypeParam info = this->makeCube();
    const auto held = info.getStructuringElement();
    EXPECT_THROW(initialise(info, -1), ORVELBaseDataException);
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
  EXPECT_EQ(info.getDataColl().size(), ElementTraits<typename TestFixture::Element>::nbAxes == 2 ? 5U : 7U);
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
  for (const auto& initialiseSource : newElementInitialisations<TypeParam>())
    for (const auto& initialiseTarget : newElementInitialisations<TypeParam>())
    {
      TypeParam source;
      initialiseSource(source);
      TypeParam target;
      initialiseTarget(target);
      EXPECT_EQ(&(target = source), &target);
      EXPECT_EQ(stateOfInfo(target), stateOfInfo(source));
    }
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
  const TypeParam copied(source);
  EXPECT_EQ(copied.getStructuringElement()->getMinX(), g_highest);
  EXPECT_EQ(copied.getStructuringElement()->getSizeX(), 2U);
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
          EXPECT_EQ(TestFixture::Traits::subTypeOf(target), 1U);
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

TYPED_TEST(StructuringElementInfo, StandsACopyOfItself)
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
