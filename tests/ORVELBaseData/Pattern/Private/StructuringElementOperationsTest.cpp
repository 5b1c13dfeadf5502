#include "ORVELBaseData/Pattern/Private/StructuringElementOperations.h"

#include <cstring>
#include <new>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include "../StructuringElement/ElementTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

// StructuringElementXY and StructuringElementXYZ. The box that they keep is tested in BoundingBoxTest.cpp.
namespace
{

using namespace orvel;
using namespace orvel::test;

template <class ElementType>
class StructuringElement : public ::testing::Test
{
protected:
  using Traits = ElementTraits<ElementType>;
  using Offset = typename ElementType::OffsetType;
  using Offsets = std::set<Offset>;

  static Offset at(ipInt32 x, ipInt32 y, ipInt32 z = 0) { return Traits::at(x, y, z); }
  static Offset at(const Coordinates& place) { return Traits::OffsetTraits::at(place); }

  /// The offsets (0, 0, 0) and (4, -1, 2).
  static ElementType makeElement()
  {
    ElementType element;
    element.insert(at(0, 0, 0));
    element.insert(at(4, -1, 2));
    return element;
  }

  /// An element whose only offset was removed.
  static ElementType makeEmptied()
  {
    ElementType element;
    element.insert(at(1, 2, 3));
    element.remove(at(1, 2, 3));
    return element;
  }

  static ElementType makeOfSet(const Offsets& offsets)
  {
    ElementType element = makeElement();
    element.setDataColl(offsets);
    return element;
  }

  static ElementState stateOfFresh() { return {{0, 0, 0}, {0, 0, 0}, {}}; }

  /// An operation on makeElement() that raises.
  static void expectRaisedUnchanged(void (*operation)(ElementType&), const std::string& message,
                                    const std::string& function, const std::string& statement)
  {
    ElementType element = makeElement();
    expectRaised<ORVELBaseDataException>(
        [&] { operation(element); },
        {message, "void orvel::" + std::string(Traits::name) + "::" + function,
         "ORVELBaseData/Pattern/StructuringElement/" + std::string(Traits::name) + ".cpp", "", statement});
    EXPECT_EQ(stateOf(element), stateOf(makeElement()));
  }
};

using Elements = ::testing::Types<StructuringElementXY, StructuringElementXYZ>;

struct ElementNames
{
  template <class ElementType>
  static std::string GetName(int)
  {
    return ElementTraits<ElementType>::name;
  }
};

TYPED_TEST_SUITE(StructuringElement, Elements, ElementNames);

TEST(StructuringElementTypes, AreThese)
{
  EXPECT_TRUE((std::is_same<XYOffsetColl, std::set<OffsetXY>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYPtr, boost::shared_ptr<StructuringElementXY>>::value));
  EXPECT_TRUE(
      (std::is_same<StructuringElementXYConstPtr, boost::shared_ptr<const StructuringElementXY>>::value));
  EXPECT_TRUE((std::is_same<XYZOffsetColl, std::set<OffsetXYZ>>::value));
  EXPECT_TRUE((std::is_same<StructuringElementXYZPtr, boost::shared_ptr<StructuringElementXYZ>>::value));
  EXPECT_TRUE(
      (std::is_same<StructuringElementXYZConstPtr, boost::shared_ptr<const StructuringElementXYZ>>::value));
}

TYPED_TEST(StructuringElement, ReportsItsKind)
{
  const TypeParam element;
  const BaseStructuringElement& base = element;
  EXPECT_EQ(base.getStructuringElementType().getValue(), TestFixture::Traits::isPlanar ? 0U : 1U);
  EXPECT_STREQ(element.getStructuringElementType().getText(),
               TestFixture::Traits::isPlanar ? "eSET_XY" : "eSET_XYZ");
}

TYPED_TEST(StructuringElement, OffersTheseOperations)
{
  using Place = typename TestFixture::Offset;
  using PlaceColl = typename TestFixture::Offsets;
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::insert), void (TypeParam::*)(const Place&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::remove), void (TypeParam::*)(const Place&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::exists), bool (TypeParam::*)(const Place&) const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getNbData), ipUInt64 (TypeParam::*)() const>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&TypeParam::getDataColl), const PlaceColl& (TypeParam::*)() const>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&TypeParam::setDataColl), void (TypeParam::*)(const PlaceColl&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::clear), void (TypeParam::*)()>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getStructuringElementType),
                            eStructuringElementType (TypeParam::*)() const>::value));
}

TYPED_TEST(StructuringElement, CreatesOthersThatAreFresh)
{
  const boost::scoped_ptr<TypeParam> made(TypeParam::createNewObject());
  const boost::shared_ptr<TypeParam> shared = TypeParam::createSharedObject();
  EXPECT_EQ(stateOf(*made), this->stateOfFresh());
  EXPECT_EQ(stateOf(*shared), this->stateOfFresh());

  const TypeParam element = this->makeElement();
  const boost::scoped_ptr<BaseDynamicObject> another(element.createNew());
  const DynamicObjectPtr sharedOther = element.createShared();
  EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*another)), this->stateOfFresh());
  EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*sharedOther)), this->stateOfFresh());
}

TYPED_TEST(StructuringElement, HasNoOffsetInEitherEmptyState)
{
  EXPECT_EQ(stateOf(TypeParam()), this->stateOfFresh());
  TypeParam cleared = this->makeElement();
  cleared.clear();
  for (const TypeParam& element : {TypeParam(), cleared, this->makeEmptied()})
  {
    EXPECT_EQ(element.getNbData(), 0U);
    EXPECT_TRUE(element.getDataColl().empty());
    for (const Coordinates& place :
         {Coordinates{0, 0, 0}, Coordinates{1, 2, 3}, Coordinates{g_highest, g_highest, g_highest},
          Coordinates{g_lowest, g_lowest, g_lowest}})
      EXPECT_FALSE(element.exists(this->at(place)));
  }
}

TYPED_TEST(StructuringElement, HasTheOffsetsThatWereInserted)
{
  TypeParam element = this->makeElement();
  EXPECT_EQ(element.getNbData(), 2U);
  EXPECT_TRUE(element.exists(this->at(0, 0, 0)));
  EXPECT_TRUE(element.exists(this->at(4, -1, 2)));
  EXPECT_FALSE(element.exists(this->at(-1, 4, 2)));
  element.remove(this->at(4, -1, 2));
  EXPECT_EQ(element.getNbData(), 1U);
  EXPECT_FALSE(element.exists(this->at(4, -1, 2)));
}

TYPED_TEST(StructuringElement, RefusesAnOffsetThatExistsAndStaysUnchanged)
{
  this->expectRaisedUnchanged([](TypeParam& element) { element.insert(TestFixture::at(0, 0, 0)); },
                              "Can't insert element into structuring element, it already exists",
                              "insert(const OffsetType&)", "eInsertExistingSEElt");
  this->expectRaisedUnchanged([](TypeParam& element) { element.insert(TestFixture::at(4, -1, 2)); },
                              "Can't insert element into structuring element, it already exists",
                              "insert(const OffsetType&)", "eInsertExistingSEElt");
}

TYPED_TEST(StructuringElement, ReportsAMissingOffsetOfRemoveAndStaysUnchanged)
{
  this->expectRaisedUnchanged([](TypeParam& element) { element.remove(TestFixture::at(1, 2, 3)); },
                              "Can't remove element from structuring element, it does not exists",
                              "remove(const OffsetType&)", "eRemoveMissingSEElt");
  for (TypeParam element : {TypeParam(), this->makeEmptied()})
  {
    const ElementState before = stateOf(element);
    EXPECT_THROW(element.remove(this->at(1, 2, 3)), ORVELBaseDataException);
    EXPECT_EQ(stateOf(element), before);
  }
}

TYPED_TEST(StructuringElement, RemovesAnOffsetThatIsItsOwn)
{
  TypeParam element = this->makeElement();
  element.remove(*element.getDataColl().find(this->at(0, 0, 0))); // the argument dies with it
  EXPECT_EQ(stateOf(element), TestFixture::Traits::stateOfOne(4, -1, 2));
}

TYPED_TEST(StructuringElement, HasTheBoxOfTheNextOffsetsAfterAnEmptySet)
{
  TypeParam element = this->makeOfSet({});
  element.insert(this->at(-5, 7, 1));
  EXPECT_EQ(stateOf(element), TestFixture::Traits::stateOfOne(-5, 7, 1));
  element.insert(this->at(-4, 6, 3));
  EXPECT_EQ(stateOf(element).min, TestFixture::Traits::place(-5, 6, 1));
  EXPECT_EQ(stateOf(element).size, TestFixture::Traits::sizes(2, 2, 3));
}

TYPED_TEST(StructuringElement, IsClearedToTheFreshState)
{
  for (TypeParam element : {this->makeElement(), this->makeEmptied()})
  {
    element.clear();
    EXPECT_EQ(stateOf(element), this->stateOfFresh());
  }
}

TYPED_TEST(StructuringElement, ReplacesTheWholeSetAndFindsItsBox)
{
  const TypeParam element = this->makeOfSet({this->at(-1, 2, 5), this->at(3, -4, 5)});
  EXPECT_EQ(stateOf(element),
            (ElementState{TestFixture::Traits::place(-1, -4, 5),
                          TestFixture::Traits::sizes(5, 7, 1),
                          {TestFixture::Traits::place(3, -4, 5), TestFixture::Traits::place(-1, 2, 5)}}));
}

TYPED_TEST(StructuringElement, FindsTheBoxOfAnySetAgainstTheLimits)
{
  const auto lowest = this->at(g_lowest, g_lowest, g_lowest);
  const auto highest = this->at(g_highest, g_highest, g_highest);
  EXPECT_EQ(stateOf(this->makeOfSet({lowest})),
            TestFixture::Traits::stateOfOne(g_lowest, g_lowest, g_lowest));
  EXPECT_EQ(stateOf(this->makeOfSet({highest})),
            TestFixture::Traits::stateOfOne(g_highest, g_highest, g_highest));
  const ElementState both = stateOf(this->makeOfSet({lowest, highest})); // the size wraps
  EXPECT_EQ(both.min, TestFixture::Traits::place(g_lowest, g_lowest, g_lowest));
  EXPECT_EQ(both.size, (Sizes{0, 0, 0}));
}

TYPED_TEST(StructuringElement, HasTheLargestMinimumAndSizeTwoForAnEmptySet)
{
  for (TypeParam element : {this->makeElement(), TypeParam(), this->makeEmptied()})
  {
    element.setDataColl({});
    EXPECT_EQ(stateOf(element), TestFixture::Traits::emptiedState());
  }
}

TYPED_TEST(StructuringElement, KeepsACopyOfTheSetThatItIsGiven)
{
  typename TestFixture::Offsets offsets = {this->at(1, 1, 1)};
  TypeParam element;
  element.setDataColl(offsets);
  offsets.insert(this->at(9, 9, 9));
  EXPECT_EQ(element.getNbData(), 1U);
  EXPECT_NE(&*element.getDataColl().begin(), &*offsets.begin());
  element.insert(this->at(2, 2, 2));
  EXPECT_EQ(offsets.count(this->at(2, 2, 2)), 0U);
}

TYPED_TEST(StructuringElement, TakesItsOwnSet)
{
  TypeParam element = this->makeElement();
  element.setDataColl(element.getDataColl());
  EXPECT_EQ(stateOf(element), stateOf(this->makeElement()));

  TypeParam fresh; // its box is that of a set of no offsets that was never walked
  fresh.setDataColl(fresh.getDataColl());
  EXPECT_EQ(stateOf(fresh), TestFixture::Traits::emptiedState());
}

TYPED_TEST(StructuringElement, IsWalkedInRows)
{
  TypeParam element;
  for (const Coordinates& place : {Coordinates{0, 1, 0}, Coordinates{1, 0, 0}, Coordinates{-1, 1, 0},
                                   Coordinates{5, -1, 0}, Coordinates{0, 0, 0}})
    element.insert(this->at(place));
  EXPECT_EQ(placesOf(element), (Places{{5, -1, 0}, {0, 0, 0}, {1, 0, 0}, {-1, 1, 0}, {0, 1, 0}}));
}

TYPED_TEST(StructuringElement, HoldsTheSameStepByStepAsAtOnce)
{
  std::mt19937 random(20243);
  const auto draw = [&random]
  {
    return std::uniform_int_distribution<int>(-3, 3)(random);
  };
  TypeParam element = this->makeEmptied();
  typename TestFixture::Offsets model;
  for (int step = 0; step < 2000; ++step)
  {
    const auto offset = this->at(draw(), draw(), draw());
    ASSERT_EQ(element.exists(offset), model.count(offset) == 1);
    if (model.insert(offset).second)
      element.insert(offset);
    else
    {
      element.remove(offset);
      model.erase(offset);
    }
    ASSERT_EQ(element.getDataColl(), model);
    ASSERT_EQ(stateOf(this->makeOfSet(model)), stateOf(element));
  }
}

// Copies

TYPED_TEST(StructuringElement, IsCopiedWithItsBoxAsItIs)
{
  for (const TypeParam& source : {TypeParam(), this->makeElement(), this->makeEmptied()})
  {
    const TypeParam constructed(source);
    TypeParam assigned = this->makeElement();
    assigned = source;
    TypeParam copied = this->makeElement();
    copied.copy(source);
    const boost::scoped_ptr<BaseDynamicObject> owned(source.duplicate());
    const DynamicObjectPtr shared = source.duplicateShared();
    EXPECT_EQ(stateOf(constructed), stateOf(source));
    EXPECT_EQ(stateOf(assigned), stateOf(source));
    EXPECT_EQ(stateOf(copied), stateOf(source));
    EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*owned)), stateOf(source));
    EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*shared)), stateOf(source));
  }
}

TYPED_TEST(StructuringElement, IsFreshWhenItIsConstructedFromItself)
{
  alignas(TypeParam) unsigned char storage[sizeof(TypeParam)];
  std::memset(storage, 0x5A, sizeof storage);
  auto* const place = reinterpret_cast<TypeParam*>(storage);
  TypeParam* const element = new (storage) TypeParam(*place); // not looked at, as it is the same
  EXPECT_EQ(stateOf(*element), this->stateOfFresh());
  element->~TypeParam();
}

template <class ElementType>
struct CountingElement : ElementType
{
  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    ElementType::copy(other);
  }

  int nbCopies = 0;
};

TYPED_TEST(StructuringElement, IsAssignedByItsVirtualCopy)
{
  CountingElement<TypeParam> derived;
  TypeParam& element = derived;
  EXPECT_EQ(&(element = this->makeElement()), &element);
  EXPECT_EQ(derived.nbCopies, 1);
  EXPECT_EQ(stateOf(element), stateOf(this->makeElement()));
}

TYPED_TEST(StructuringElement, SharesNothingWithItsCopy)
{
  const TypeParam source = this->makeElement();
  TypeParam copied(source);
  copied.remove(this->at(0, 0, 0));
  copied.insert(this->at(9, 9, 9));
  EXPECT_EQ(stateOf(source), stateOf(this->makeElement()));
}

TYPED_TEST(StructuringElement, SurvivesACopyOfItselfWithItsOffsetsInPlace)
{
  for (TypeParam element : {TypeParam(), this->makeElement(), this->makeEmptied()})
  {
    const ElementState before = stateOf(element);
    const auto first = element.getDataColl().begin();
    const TypeParam& itself = element;
    element = itself;
    element.copy(itself);
    EXPECT_EQ(stateOf(element), before);
    EXPECT_EQ(element.getDataColl().begin(), first);
  }
}

// Without memory

TYPED_TEST(StructuringElement, IsUnchangedWhenThereIsNoMemoryForAnOffset)
{
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  const auto offset = this->at(9, 9, 9);
  const std::size_t nbFailures =
      failAtEachAllocation([&] { element.insert(offset); }, [&] { EXPECT_EQ(stateOf(element), before); });
  EXPECT_EQ(nbFailures, 1U); // the offset itself
  EXPECT_TRUE(element.exists(offset));
}

TYPED_TEST(StructuringElement, IsUnchangedWhenThereIsNoMemoryForASet)
{
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  const typename TestFixture::Offsets offsets = {this->at(1, 1, 1), this->at(2, 2, 2), this->at(3, 3, 3)};
  const std::size_t nbFailures = failAtEachAllocation([&] { element.setDataColl(offsets); },
                                                      [&] { EXPECT_EQ(stateOf(element), before); });
  EXPECT_GE(nbFailures, 1U);
  EXPECT_EQ(element.getDataColl(), offsets);
}

TYPED_TEST(StructuringElement, IsUnchangedWhenThereIsNoMemoryForACopy)
{
  TypeParam source = this->makeElement();
  source.insert(this->at(7, 7, 7));
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  const std::size_t nbFailures =
      failAtEachAllocation([&] { element = source; }, [&] { EXPECT_EQ(stateOf(element), before); });
  EXPECT_GE(nbFailures, 1U);
  EXPECT_EQ(stateOf(element), stateOf(source));
}

TYPED_TEST(StructuringElement, LeaksNothingWhenItsDuplicateRunsOutOfMemory)
{
  const TypeParam source = this->makeElement();
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const auto check = [nbBlocks]
  {
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  };
  // The element and two offsets.
  EXPECT_EQ(failAtEachAllocation([&] { delete source.duplicate(); }, check), 3U);
  EXPECT_EQ(failAtEachAllocation([&] { source.duplicateShared(); }, check), 3U);
  check();
}

// Archives

TEST(StructuringElementXYFile, IsThisXmlText)
{
  StructuringElementXY element;
  element.insert(OffsetXY(3, -2));
  element.insert(OffsetXY(4, -2));
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { element.write(archive); }),
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

TEST(StructuringElementXYZFile, IsThisXmlText)
{
  StructuringElementXYZ element;
  element.insert(OffsetXYZ(3, -2, 7));
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { element.write(archive); }),
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

/// The file of an element must be these bytes, and the 8 bytes of its hash behind them.
template <class Element, std::size_t SIZE>
void expectBytes(const Element& element, const char (&bytes)[SIZE])
{
  const std::string file = fileOf<HandWrittenBinary>([&](BaseOArchive& archive) { element.write(archive); });
  const std::string start(bytes, SIZE - 1);
  EXPECT_EQ(file.substr(0, start.size()), start);
  EXPECT_EQ(file.size(), start.size() + 8);
}

TEST(StructuringElementXYFile, IsTheseBytes)
{
  StructuringElementXY element;
  element.insert(OffsetXY(3, -2));
  element.insert(OffsetXY(4, -2));
  expectBytes(element, "\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little" // format, its version, byte order
                       "\x9F\x01\xFF\x9F\x01\xFF"                // class versions of the base and the element
                       "\x9F\x9F\x02"                            // the set, 2 offsets
                       "\x9F\x9F\x01\xFF\x03\x21\xFF"            // class version and first offset
                       "\x9F\x04\x21\xFF"                        // second offset
                       "\xFF\xFF"                                // end of the set
                       "\x03\x21"                                // the minima
                       "\x02\x01"                                // the sizes
                       "\x83\x63"
                       "end\x18\x2C\x1B"); // 44 bytes come before this
}

TEST(StructuringElementXYZFile, IsTheseBytes)
{
  StructuringElementXYZ element;
  element.insert(OffsetXYZ(3, -2, 7));
  expectBytes(element, "\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little" // format, its version, byte order
                       "\x9F\x01\xFF\x9F\x01\xFF"                // class versions of the base and the element
                       "\x9F\x9F\x01"                            // the set, 1 offset
                       "\x9F\x9F\x01\xFF\x03\x21\x07\xFF"        // class version and offset
                       "\xFF\xFF"                                // end of the set
                       "\x03\x21\x07"                            // the minima
                       "\x01\x01\x01"                            // the sizes
                       "\x83\x63"
                       "end\x18\x2B\x1B"); // 43 bytes come before this
}

/// Puts elements into archives by hand, in one of the formats.
template <class ElementAndFormat>
class ArchivedStructuringElement : public ::testing::Test
{
protected:
  using Element = typename ElementAndFormat::first_type;
  using HandWritten = typename ElementAndFormat::second_type;
  using Traits = ElementTraits<Element>;

  static typename Element::OffsetType at(ipInt32 x, ipInt32 y, ipInt32 z) { return Traits::at(x, y, z); }

  static Element makeElement()
  {
    Element element;
    element.insert(at(0, 0, 0));
    element.insert(at(4, -1, 2));
    return element;
  }

  /// The offsets (0, 0, 0) and (4, -1, 2) in their order: by z, then by y.
  static ElementState stateOfElement()
  {
    const Coordinates first = Traits::place(0, 0, 0);
    const Coordinates second = Traits::place(4, -1, 2);
    return {Traits::place(0, -1, 0), Traits::sizes(5, 2, 3),
            Traits::isPlanar ? Places{second, first} : Places{first, second}};
  }

  /// An archive of one element, put together by hand.
  static HandWritten archiveOf(const ElementState& state, ipUInt32 baseVersion = 1, ipUInt32 version = 1)
  {
    HandWritten archive;
    putElementVersions<Element>(archive, baseVersion, version);
    putElementItems<Element>(archive, state);
    return archive;
  }

  static std::string fileOfElements(const std::vector<Element>& elements)
  {
    return fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          for (const Element& element : elements)
          {
            const BoolResult written = element.write(archive);
            EXPECT_TRUE(written);
            EXPECT_EQ(written.getMessage(), "");
          }
        });
  }

  static void readElement(const std::string& file, Element& element)
  {
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            const BoolResult read = element.read(archive);
                            EXPECT_TRUE(read);
                            EXPECT_EQ(read.getMessage(), "");
                          });
  }

  static ElementState readState(const HandWritten& archive)
  {
    Element element;
    readElement(archive.file(), element);
    return stateOf(element);
  }

  static std::string failureOfReading(const HandWritten& archive, Element& element)
  {
    return messageOf<ORVELSerializationException>(
        [&] { readStart<HandWritten>(archive.file(), [&](BaseIArchive& input) { element.read(input); }); });
  }
};

using ElementsAndFormats = ::testing::Types<
    std::pair<StructuringElementXY, HandWrittenXml>, std::pair<StructuringElementXY, HandWrittenBinary>,
    std::pair<StructuringElementXYZ, HandWrittenXml>, std::pair<StructuringElementXYZ, HandWrittenBinary>>;

struct ElementAndFormatNames
{
  template <class ElementAndFormat>
  static std::string GetName(int)
  {
    return std::string(ElementTraits<typename ElementAndFormat::first_type>::name) +
           (std::is_same<typename ElementAndFormat::second_type, HandWrittenXml>::value ? "Xml" : "Binary");
  }
};

TYPED_TEST_SUITE(ArchivedStructuringElement, ElementsAndFormats, ElementAndFormatNames);

TYPED_TEST(ArchivedStructuringElement, HoldsVersionsOffsetsAndBoxInOrder)
{
  EXPECT_EQ(this->fileOfElements({this->makeElement()}), this->archiveOf(this->stateOfElement()).file());
}

TYPED_TEST(ArchivedStructuringElement, HoldsTheTwoEmptyStatesApart)
{
  typename TestFixture::Element element;
  EXPECT_EQ(this->fileOfElements({element}), this->archiveOf({{0, 0, 0}, {0, 0, 0}, {}}).file());
  element.setDataColl({});
  EXPECT_EQ(this->fileOfElements({element}), this->archiveOf(TestFixture::Traits::emptiedState()).file());
}

TYPED_TEST(ArchivedStructuringElement, ComesBackAsItWasInEveryState)
{
  using ElementType = typename TestFixture::Element;
  ElementType emptied;
  emptied.setDataColl({});
  for (const ElementType& written : {this->makeElement(), ElementType(), emptied})
  {
    ElementType element = this->makeElement();
    element.insert(this->at(9, 9, 9));
    this->readElement(this->fileOfElements({written}), element);
    EXPECT_EQ(stateOf(element), stateOf(written));
  }
}

TYPED_TEST(ArchivedStructuringElement, ComesBackUnderASharedPointerOfItsBase)
{
  const auto written = boost::make_shared<typename TestFixture::Element>(this->makeElement());
  const std::string file = fileOf<typename TestFixture::HandWritten>(
      [&](BaseOArchive& archive) { archive << SerializationOItem("element", written); });
  boost::shared_ptr<BaseStructuringElement> base;
  readFile<typename TestFixture::HandWritten>(file, [&](BaseIArchive& archive)
                                              { archive >> SerializationIItem("element", base); });
  const auto element = boost::dynamic_pointer_cast<typename TestFixture::Element>(base);
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(stateOf(*element), stateOf(*written));
}

TYPED_TEST(ArchivedStructuringElement, TakesABoxThatDoesNotFitItsOffsets)
{
  using Space = ElementTraits<typename TestFixture::Element>;
  const ElementState states[] = {
      {Space::place(100, -200, 300), Space::sizes(4294967295U, 0, 7), {Space::place(1, 2, 3)}},
      {Space::place(-1, -2, -3), Space::sizes(5, 6, 7), {}},
      {Space::place(0, 0, 0), Space::sizes(0, 0, 0), {Space::place(1, 2, 3)}},
  };
  for (const ElementState& state : states)
  {
    const std::string file = this->archiveOf(state).file();
    typename TestFixture::Element element;
    this->readElement(file, element);
    EXPECT_EQ(stateOf(element), state);
    EXPECT_EQ(this->fileOfElements({element}), file);
  }
}

TYPED_TEST(ArchivedStructuringElement, WidensTheBoxThatWasReadUntilARemovalFindsItAgain)
{
  using Space = ElementTraits<typename TestFixture::Element>;
  typename TestFixture::Element element;
  this->readElement(
      this->archiveOf({Space::place(-9, -9, -9), Space::sizes(10, 10, 10), {Space::place(1, 2, 3)}}).file(),
      element);
  element.insert(this->at(5, 5, 5));
  EXPECT_EQ(stateOf(element).min, Space::place(-9, -9, -9));
  EXPECT_EQ(stateOf(element).size, Space::sizes(15, 15, 15));
  element.remove(this->at(5, 5, 5));
  EXPECT_EQ(stateOf(element), Space::stateOfOne(1, 2, 3));
}

TYPED_TEST(ArchivedStructuringElement, DropsARepeatedOffset)
{
  ElementState state = this->stateOfElement();
  state.places.push_back(state.places[0]);
  state.places.push_back(state.places[1]);
  EXPECT_EQ(this->readState(this->archiveOf(state)), this->stateOfElement());
}

TYPED_TEST(ArchivedStructuringElement, ReadsOffsetsInAnyOrder)
{
  ElementState state = this->stateOfElement();
  std::swap(state.places[0], state.places[1]);
  EXPECT_EQ(this->readState(this->archiveOf(state)), this->stateOfElement());
}

TYPED_TEST(ArchivedStructuringElement, ReadsOldVersionsAlike)
{
  EXPECT_EQ(this->readState(this->archiveOf(this->stateOfElement(), 0, 0)), this->stateOfElement());
}

TYPED_TEST(ArchivedStructuringElement, KeepsWhatWasReadWhenTheArchiveEnds)
{
  typename TestFixture::HandWritten archive;
  putElementVersions<typename TestFixture::Element>(archive);
  putOffsets<typename TestFixture::Element>(archive, 0, {});
  archive.close();
  archive.close();
  archive.integer("_minX", 77);
  auto element = this->makeElement();
  this->failureOfReading(archive, element);
  ElementState expected = this->stateOfElement(); // the old one, but for what was read
  expected.min[0] = 77;
  expected.places.clear();
  EXPECT_EQ(stateOf(element), expected);
}

TYPED_TEST(ArchivedStructuringElement, KeepsTheOffsetsReadSoFarWhenTheSetIsCut)
{
  typename TestFixture::HandWritten archive;
  putElementVersions<typename TestFixture::Element>(archive);
  putOffsets<typename TestFixture::Element>(archive, 2, {{7, 8, 9}});
  archive.close();
  archive.close();
  auto element = this->makeElement();
  this->failureOfReading(archive, element);
  ElementState expected = this->stateOfElement(); // the old box
  expected.places = {TestFixture::Traits::place(7, 8, 9)};
  EXPECT_EQ(stateOf(element), expected);
}

} // namespace
