#include "ORVELBaseData/PtrColl/BasePtrColl.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/ObjectCollArchive.h>
#include <support/RaisedFailure.h>
#include <support/SkeletonElement.h>

ORVEL_TEST_EXPOSE(Coll, &orvel::BasePtrColl::_coll)

namespace
{

using namespace orvel;
using namespace orvel::test;

/// The least that a derived class supplies, and a way to its elements.
class PtrColl : public BasePtrColl
{
public:
  /// \param hasSkeletons whether the elements take the mode; they are SkeletonElements or the like then
  explicit PtrColl(bool hasSkeletons = false, std::vector<SerializationObjectPtr> elements = {})
    : _hasSkeletons(hasSkeletons)
  {
    _coll = std::move(elements);
  }

  BaseDynamicObject* createNew() const override { return new PtrColl; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<PtrColl>(); }
  const std::string& getElementTypeName() const override { return BaseSerializationObject::getTypeName(); }
  bool hasSkeletonElements() const override { return _hasSkeletons; }

  using BasePtrColl::_coll;

  const SkeletonElement& at(std::size_t index) const
  {
    return dynamic_cast<const SkeletonElement&>(*_coll.at(index));
  }

private:
  bool _hasSkeletons;
};

// The class

TEST(BasePtrColl, IsEmptyAtFirst)
{
  EXPECT_TRUE(PtrColl()._coll.empty());
  EXPECT_EQ(PtrColl().getSerializationMode(), g_full);
}

TEST(BasePtrColl, ReleasesItsElementsWhenItIsDestroyed)
{
  const SkeletonElementPtr element = makeElement();
  {
    const PtrColl coll(false, {element, nullptr, element});
    EXPECT_EQ(element.use_count(), 3);
  }
  EXPECT_EQ(element.use_count(), 1);
}

TEST(BasePtrColl, HasItsNameAndVersion)
{
  EXPECT_EQ(BasePtrColl::getTypeName(), "orvel::BasePtrColl");
  EXPECT_EQ(PtrColl().getClassName(), "orvel::BasePtrColl"); // a derived class without its own name
  EXPECT_EQ(BasePtrColl::getVersion(), 1U);
}

TEST(BasePtrColl, IsNotRegistered)
{
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered("orvel::BasePtrColl"));
}

struct WithoutCreateNew : BasePtrColl
{
  DynamicObjectPtr createShared() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return getTypeName(); }
  bool hasSkeletonElements() const override { return false; }
};

struct WithoutCreateShared : BasePtrColl
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return getTypeName(); }
  bool hasSkeletonElements() const override { return false; }
};

struct WithoutElementTypeName : BasePtrColl
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  bool hasSkeletonElements() const override { return false; }
};

struct WithoutSkeletonAnswer : BasePtrColl
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return getTypeName(); }
};

TEST(BasePtrColl, LeavesFourOperationsToDerivedClasses)
{
  static_assert(std::is_base_of_v<BaseObjectWithSkeleton, BasePtrColl>);
  static_assert(std::is_abstract_v<BasePtrColl>);
  static_assert(std::is_abstract_v<WithoutCreateNew>);
  static_assert(std::is_abstract_v<WithoutCreateShared>);
  static_assert(std::is_abstract_v<WithoutElementTypeName>);
  static_assert(std::is_abstract_v<WithoutSkeletonAnswer>);
  static_assert(!std::is_abstract_v<PtrColl>);
}

TEST(BasePtrColl, CannotBeCopied)
{
  PtrColl coll(false, {makeElement()});
  const PtrColl other;
  EXPECT_FALSE(coll.hasCopySupport());
  const std::pair<const char*, std::function<void()>> attempts[] = {
      {"orvel::BasePtrColl::copy(",
       [&]
       {
         coll.copy(other);
       }},
      {"orvel::BasePtrColl::copy(",
       [&]
       {
         coll.copy(coll);
       }},
      {"orvel::BasePtrColl::duplicate(",
       [&]
       {
         coll.duplicate();
       }},
      {"orvel::BasePtrColl::duplicateShared(",
       [&]
       {
         coll.duplicateShared();
       }},
  };
  for (const auto& attempt : attempts)
  {
    SCOPED_TRACE(attempt.first);
    const LogCapture log(getORVELUtilLogger());
    const auto failure = failureOf<ORVELUtilException>(attempt.second);
    EXPECT_EQ(failure.getMessage(), "Class orvel::BasePtrColl doesn't support copy");
    EXPECT_NE(failure.getFunction().find(attempt.first), std::string::npos);
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/PtrColl/BasePtrColl.cpp");
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords()[0].message, failure.getMessage());
    EXPECT_EQ(coll._coll.size(), 1U);
  }
}

TEST(BasePtrColl, HasItsOperationsAndMemberInTheirOrder)
{
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::write), 10U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::read), 11U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::getElementTypeName), 12U);
  EXPECT_EQ(vtableIndexOf(&BasePtrColl::hasSkeletonElements), 13U);
  using Elements = std::vector<SerializationObjectPtr>;
  static_assert(std::is_same_v<decltype(memberOf(Coll())), Elements BasePtrColl::*>);
  EXPECT_EQ(offsetOf(memberOf(Coll())), static_cast<std::ptrdiff_t>(sizeof(BaseObjectWithSkeleton)));
  EXPECT_EQ(sizeof(BasePtrColl), sizeof(BaseObjectWithSkeleton) + sizeof(Elements));
}

// Archives

template <class HandWritten>
class BasePtrCollArchive : public ObjectCollArchive<HandWritten>
{
protected:
  /// The version record of the collection.
  static HandWritten begin()
  {
    HandWritten archive;
    putVersion(archive, "orvel::BasePtrColl", 1);
    return archive;
  }

  /// The start of the list.
  static HandWritten beginList(std::int64_t size)
  {
    HandWritten archive = begin();
    openList(archive, size);
    return archive;
  }

  static void openList(HandWritten& archive, std::int64_t size)
  {
    archive.openSection("_coll");
    archive.openSection("vector");
    archive.integer("size", size);
  }

  static void closeList(HandWritten& archive)
  {
    archive.close();
    archive.close();
  }

  static std::string finishList(HandWritten archive)
  {
    closeList(archive);
    return archive.file();
  }
};

using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(BasePtrCollArchive, Formats, );

TYPED_TEST(BasePtrCollArchive, OfNoElementsHoldsTheirCount)
{
  const std::string file = this->finishList(this->beginList(0));
  for (const bool hasSkeletons : {false, true})
  {
    EXPECT_EQ(this->write(PtrColl(hasSkeletons)), file);
    PtrColl coll(hasSkeletons, {makeElement()});
    this->read(coll, file);
    EXPECT_TRUE(coll._coll.empty());
  }
}

TYPED_TEST(BasePtrCollArchive, HoldsTheElementsInOrder)
{
  TypeParam expected = this->beginList(2);
  this->putElement(expected, true, g_full, 21, 22);
  this->putElement(expected, false, g_full, 11, 12);
  const std::string file = this->finishList(expected);
  for (const bool hasSkeletons : {false, true})
  {
    EXPECT_EQ(this->write(PtrColl(hasSkeletons, {makeElement(21, 22), makeElement(11, 12)})), file);
    PtrColl coll(hasSkeletons, {makeElement(), makeElement(), makeElement()});
    this->read(coll, file);
    ASSERT_EQ(coll._coll.size(), 2U);
    EXPECT_EQ(coll.at(0).structure, 21);
    EXPECT_EQ(coll.at(0).data, 22);
    EXPECT_EQ(coll.at(1).structure, 11);
    EXPECT_EQ(coll.at(1).data, 12);
  }
}

TEST(BasePtrCollFile, IsThisXmlText)
{
  const PtrColl coll(false, {boost::make_shared<ElementsRange>(3, 4), nullptr});
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { coll.write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BasePtrColl">
    <item key="version">1</item>
  </section>
  <section name="_coll">
    <section name="vector">
      <item key="size">2</item>
      <section name="value">
        <section name="shared_ptr&lt;orvel::BaseSerializationObject&gt;">
          <pointer key="pObject" id="1" class="orvel::ElementsRange">
            <section name="orvel::ElementsRange">
              <item key="version">2</item>
            </section>
            <item key="_startOffset">3</item>
            <item key="_nbElements">4</item>
          </pointer>
        </section>
      </section>
      <section name="value">
        <section name="shared_ptr&lt;orvel::BaseSerializationObject&gt;">
          <pointer key="pObject" null="true"/>
        </section>
      </section>
    </section>
  </section>
</orvelArchive>
)");
}

TEST(BasePtrCollFile, OfDataIsThisXmlText)
{
  const PtrColl coll(true, {makeElement(11, 12), nullptr, makeElement(21, 22)});
  coll.setSerializationMode(g_data);
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { coll.write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BasePtrColl">
    <item key="version">1</item>
  </section>
  <object key="curObject">
    <section name="orvel::SkeletonElement">
      <item key="version">1</item>
    </section>
    <item key="_data">12</item>
  </object>
  <object key="curObject">
    <item key="_data">22</item>
  </object>
</orvelArchive>
)");
}

TYPED_TEST(BasePtrCollArchive, HoldsTheVersionOnceForManyCollections)
{
  TypeParam expected = this->begin();
  for (int i = 0; i < 2; ++i)
  {
    this->openList(expected, 0);
    this->closeList(expected);
  }
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  PtrColl().write(archive);
                  PtrColl().write(archive);
                }),
            expected.file());
}

TYPED_TEST(BasePtrCollArchive, IsAlikeInEveryModeWithoutSkeletons)
{
  const SkeletonElementPtr first = makeElement(11, 12);
  const SkeletonElementPtr second = makeElement(21, 22);
  second->setSerializationMode(g_skeleton);
  const PtrColl coll(false, {first, nullptr, second});
  TypeParam expected = this->beginList(3);
  this->putElement(expected, true, g_full, 11, 12);
  this->putNull(expected);
  this->putElement(expected, false, g_skeleton, 21, 0);
  const std::string file = this->finishList(expected);
  for (const auto mode : {g_full, g_skeleton, g_data})
  {
    coll.setSerializationMode(mode);
    EXPECT_EQ(this->write(coll), file);
    EXPECT_EQ(first->getSerializationMode(), g_full); // the elements keep theirs
    EXPECT_EQ(second->getSerializationMode(), g_skeleton);
  }
}

TYPED_TEST(BasePtrCollArchive, IsReadAsAListInEveryModeWithoutSkeletons)
{
  TypeParam archive = this->beginList(1);
  this->putElement(archive, true, g_full, 11, 12);
  const std::string file = this->finishList(archive);
  for (const auto mode : {g_full, g_skeleton, g_data})
  {
    PtrColl coll(false);
    coll.setSerializationMode(mode);
    this->read(coll, file);
    ASSERT_EQ(coll._coll.size(), 1U);
    EXPECT_EQ(coll.at(0).data, 12);
    EXPECT_EQ(coll.at(0).modesRead, std::vector<ipUInt64>{0});
    EXPECT_EQ(coll.getSerializationMode(), mode);
  }
}

TYPED_TEST(BasePtrCollArchive, OfDataWithoutElementsHoldsTheVersionAloneIfTheyHaveSkeletons)
{
  PtrColl withSkeletons(true);
  withSkeletons.setSerializationMode(g_data);
  EXPECT_EQ(this->write(withSkeletons), this->begin().file());
  this->read(withSkeletons, this->begin().file());
  EXPECT_TRUE(withSkeletons._coll.empty());

  const PtrColl without(false);
  without.setSerializationMode(g_data);
  EXPECT_EQ(this->write(without), this->finishList(this->beginList(0)));
}

TYPED_TEST(BasePtrCollArchive, HandsItsModeToItsElementsWhenWritten)
{
  const std::pair<eSklSrzMode::domain, ipUInt64> modes[] = {{g_skeleton, 1}, {g_data, 2}, {g_full, 0}};
  for (const auto& mode : modes)
  {
    const SkeletonElementPtr first = makeElement();
    const SkeletonElementPtr second = makeElement();
    second->setSerializationMode(g_skeleton);
    const PtrColl coll(true, {nullptr, first, nullptr, second});
    coll.setSerializationMode(mode.first);
    this->write(coll);
    for (const SkeletonElementPtr& element : {first, second})
    {
      EXPECT_EQ(element->modesWritten, std::vector<ipUInt64>{mode.second});
      EXPECT_EQ(element->getSerializationMode(), mode.first); // and they keep it
    }
  }
}

TYPED_TEST(BasePtrCollArchive, HandsItsModeToAllElementsBeforeItWritesTheFirst)
{
  for (const auto mode : {g_skeleton, g_data})
  {
    const SkeletonElementPtr first = makeElement();
    const SkeletonElementPtr second = makeElement();
    const PtrColl coll(true, {first, second});
    coll.setSerializationMode(mode);
    std::vector<ipUInt64> modesOfSecond;
    first->whenWritten = [&]
    {
      modesOfSecond.push_back(second->getSerializationMode().getValue());
    };
    this->write(coll);
    EXPECT_EQ(modesOfSecond, std::vector<ipUInt64>{eSklSrzMode(mode).getValue()});
  }
}

TYPED_TEST(BasePtrCollArchive, LeavesTheModesHandedOnWhenAWriteFails)
{
  const SkeletonElementPtr first = makeElement();
  const SkeletonElementPtr second = makeElement();
  const PtrColl coll(true, {first, second});
  coll.setSerializationMode(g_skeleton);
  first->whenWritten = []
  {
    throw std::runtime_error("no");
  };
  EXPECT_THROW(fileOf<TypeParam>([&](BaseOArchive& archive) { coll.write(archive); }), std::runtime_error);
  EXPECT_EQ(first->getSerializationMode(), g_skeleton);
  EXPECT_EQ(second->getSerializationMode(), g_skeleton);
}

TYPED_TEST(BasePtrCollArchive, HandsItsModeDownThroughCollectionsOfCollections)
{
  const SkeletonElementPtr element = makeElement(11, 12);
  const auto inner = boost::make_shared<PtrColl>(true, std::vector<SerializationObjectPtr>{element});
  const PtrColl coll(true, {inner});
  coll.setSerializationMode(g_data);
  TypeParam expected = this->begin();
  expected.openObject("curObject");
  this->putCurObject(expected, true, 12);
  expected.close();
  EXPECT_EQ(this->write(coll), expected.file());
  EXPECT_EQ(inner->getSerializationMode(), g_data);
  EXPECT_EQ(element->getSerializationMode(), g_data);
}

TYPED_TEST(BasePtrCollArchive, IsAListOfSkeletonsInSkeletonMode)
{
  const PtrColl coll(true, {makeElement(11, 12), nullptr, makeElement(21, 22)});
  coll.setSerializationMode(g_skeleton);
  TypeParam expected = this->beginList(3);
  this->putElement(expected, true, g_skeleton, 11, 12);
  this->putNull(expected);
  this->putElement(expected, false, g_skeleton, 21, 22);
  EXPECT_EQ(this->write(coll), this->finishList(expected));
}

TYPED_TEST(BasePtrCollArchive, OfDataHoldsTheElementsInOrderAndNoTraceOfNulls)
{
  const PtrColl coll(true, {nullptr, makeElement(11, 12), nullptr, makeElement(21, 22), nullptr});
  coll.setSerializationMode(g_data);
  TypeParam expected = this->begin();
  this->putCurObject(expected, true, 12);
  this->putCurObject(expected, false, 22);
  EXPECT_EQ(this->write(coll), expected.file());
}

TYPED_TEST(BasePtrCollArchive, OfDataFillsTheElementsThatAreThereAndSkipsNulls)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  this->putCurObject(archive, false, 22);
  const SkeletonElementPtr first = makeElement(1, 2);
  const SkeletonElementPtr second = makeElement(3, 4);
  first->setSerializationMode(g_data); // the collection does not do that
  second->setSerializationMode(g_data);
  PtrColl coll(true, {first, nullptr, second, nullptr});
  coll.setSerializationMode(g_data);
  this->read(coll, archive.file());
  EXPECT_EQ(coll._coll, (std::vector<SerializationObjectPtr>{first, nullptr, second, nullptr}));
  EXPECT_EQ(first->structure, 1);
  EXPECT_EQ(first->data, 12);
  EXPECT_EQ(second->structure, 3);
  EXPECT_EQ(second->data, 22);
}

TYPED_TEST(BasePtrCollArchive, OfDataFilesAnElementThatIsThereTwiceTwice)
{
  const SkeletonElementPtr element = makeElement(11, 12);
  PtrColl coll(true, {element, element});
  coll.setSerializationMode(g_data);
  TypeParam expected = this->begin();
  this->putCurObject(expected, true, 12);
  this->putCurObject(expected, false, 12);
  EXPECT_EQ(this->write(coll), expected.file());

  TypeParam other = this->begin();
  this->putCurObject(other, true, 98);
  this->putCurObject(other, false, 99);
  this->read(coll, other.file());
  EXPECT_EQ(element->data, 99); // filled twice
}

TYPED_TEST(BasePtrCollArchive, OfDataWithFewerElementsThanAreThereFillsThoseAndIsRefused)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  const SkeletonElementPtr first = makeElement();
  const SkeletonElementPtr second = makeElement(0, 4);
  first->setSerializationMode(g_data);
  second->setSerializationMode(g_data);
  PtrColl coll(true, {first, second});
  coll.setSerializationMode(g_data);
  this->expectRefused(coll, archive.file());
  EXPECT_EQ(coll._coll, (std::vector<SerializationObjectPtr>{first, second}));
  EXPECT_EQ(first->data, 12);
  EXPECT_EQ(second->data, 4);
}

TYPED_TEST(BasePtrCollArchive, OfDataWithMoreElementsThanAreThereLeavesTheRestUnread)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  this->putCurObject(archive, false, 22);
  const SkeletonElementPtr element = makeElement();
  element->setSerializationMode(g_data);
  PtrColl coll(true, {element});
  coll.setSerializationMode(g_data);
  readStart<TypeParam>(archive.file(),
                       [&](BaseIArchive& input)
                       {
                         EXPECT_TRUE(coll.read(input));
                         EXPECT_EQ(element->data, 12);
                         EXPECT_THROW(input.close(), ORVELSerializationException);
                       });
}

TYPED_TEST(BasePtrCollArchive, DoesNotHandItsModeToTheElementsThatItFills)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  const SkeletonElementPtr element = makeElement();
  PtrColl coll(true, {element});
  coll.setSerializationMode(g_data);
  this->expectRefused(coll, archive.file()); // the element looks for structure, too
  EXPECT_EQ(element->modesRead, std::vector<ipUInt64>{0});
  EXPECT_EQ(element->getSerializationMode(), g_full);
}

TYPED_TEST(BasePtrCollArchive, DoesNotHandItsModeToTheElementsThatItMakes)
{
  TypeParam skeleton = this->beginList(1);
  this->putElement(skeleton, true, g_skeleton, 11, 0);
  PtrColl coll(true);
  coll.setSerializationMode(g_skeleton);
  this->expectRefused(coll, this->finishList(skeleton)); // the new element looks for data, too

  TypeParam full = this->beginList(1);
  this->putElement(full, true, g_full, 11, 12);
  this->read(coll, this->finishList(full));
  ASSERT_EQ(coll._coll.size(), 1U);
  EXPECT_EQ(coll.at(0).modesRead, std::vector<ipUInt64>{0});
  EXPECT_EQ(coll.at(0).getSerializationMode(), g_full);
}

TYPED_TEST(BasePtrCollArchive, TakesAnyOtherModeForTheList)
{
  TypeParam archive = this->beginList(1);
  this->putElement(archive, true, g_full, 11, 12);
  const std::string file = this->finishList(archive);
  for (const ipUInt64 mode : {ipUInt64{3}, ipUInt64{0x100000002}})
  {
    const SkeletonElementPtr element = makeElement(11, 12);
    PtrColl coll(true, {element});
    coll.setSerializationMode(eSklSrzMode(mode));
    EXPECT_EQ(this->write(coll), file);
    EXPECT_EQ(element->modesWritten, std::vector<ipUInt64>{mode});
    this->read(coll, file);
    ASSERT_EQ(coll._coll.size(), 1U);
    EXPECT_NE(coll._coll[0], element); // made anew
  }
}

TYPED_TEST(BasePtrCollArchive, HoldsBuffersWithoutTheirElementsAsSkeletonsAndThoseAlone)
{
  const auto buffer = boost::make_shared<TypedOwnBuffer>();
  buffer->init(2, eDataType::eDT_UInt8);
  std::copy_n("\x0A\x0B", 2, static_cast<char*>(buffer->getDataPtr()));
  PtrColl coll(true, {buffer});

  coll.setSerializationMode(g_skeleton);
  TypeParam skeleton = this->beginList(1);
  this->openValue(skeleton);
  skeleton.openPointer("pObject", "orvel::TypedOwnBuffer");
  putVersion(skeleton, "orvel::BaseOwnBuffer", 1);
  skeleton.boolean("bInit", true);
  skeleton.integer("size", 2);
  skeleton.enumeration("dataType", 3, "eDT_UInt8");
  putVersion(skeleton, "orvel::TypedOwnBuffer", 1);
  skeleton.close();
  this->closeValue(skeleton);
  EXPECT_EQ(this->write(coll), this->finishList(skeleton));

  coll.setSerializationMode(g_data);
  const std::string data = this->write(coll);
  std::copy_n("\x00\x00", 2, static_cast<char*>(buffer->getDataPtr()));
  this->read(coll, data); // the buffer kept the mode of the write
  EXPECT_EQ(std::string(static_cast<const char*>(buffer->getDataPtr()), 2), "\x0A\x0B");
}

TYPED_TEST(BasePtrCollArchive, BringsNullsThatAreWrittenAgain)
{
  TypeParam archive = this->beginList(3);
  this->putNull(archive);
  this->putElement(archive, true, g_full, 11, 12);
  this->putNull(archive);
  const std::string file = this->finishList(archive);
  for (const bool hasSkeletons : {false, true})
  {
    PtrColl coll(hasSkeletons);
    this->read(coll, file);
    ASSERT_EQ(coll._coll.size(), 3U);
    EXPECT_EQ(coll._coll[0], nullptr);
    EXPECT_EQ(coll.at(1).data, 12);
    EXPECT_EQ(coll._coll[2], nullptr);
    EXPECT_EQ(this->write(coll), file);
  }
}

TYPED_TEST(BasePtrCollArchive, BringsAnElementThatIsThereTwiceAsOne)
{
  TypeParam expected = this->beginList(2);
  this->putElement(expected, true, g_full, 11, 12);
  this->openValue(expected);
  expected.reference("pObject", 1);
  this->closeValue(expected);
  const std::string file = this->finishList(expected);
  const SkeletonElementPtr element = makeElement(11, 12);
  PtrColl coll(true, {element, element});
  EXPECT_EQ(this->write(coll), file);
  this->read(coll, file);
  ASSERT_EQ(coll._coll.size(), 2U);
  EXPECT_EQ(coll._coll[0], coll._coll[1]);
  EXPECT_NE(coll._coll[0], element);
}

TYPED_TEST(BasePtrCollArchive, LetsItsOldElementsGoBeforeNewOnesAreRead)
{
  TypeParam archive = this->beginList(3);
  this->putElement(archive, true, g_full, 11, 12);
  this->putUnknownObject(archive);
  this->putElement(archive, false, g_full, 31, 32);
  const SkeletonElementPtr old = makeElement();
  PtrColl coll(false, {old, old, old, old});
  this->expectRefused(coll, this->finishList(archive));
  EXPECT_EQ(old.use_count(), 1);
  ASSERT_EQ(coll._coll.size(), 3U); // made to measure before the elements are read into their places
  EXPECT_EQ(coll.at(0).data, 12);
  EXPECT_EQ(coll._coll[1], nullptr);
  EXPECT_EQ(coll._coll[2], nullptr);
}

TYPED_TEST(BasePtrCollArchive, WithMoreElementsThanItCouldHoldIsRefusedBeforeMemoryIsTaken)
{
  PtrColl coll;
  this->expectRefused(coll, this->finishList(this->beginList(4294967295)));
  EXPECT_EQ(coll._coll.capacity(), 0U);
}

TYPED_TEST(BasePtrCollArchive, WithElementsThatHaveNoSkeletonIsRefusedWhenNotTrusted)
{
  TypeParam archive = this->beginList(2);
  this->putPlainObject(archive);
  this->putElement(archive, true, g_full, 11, 12);
  const std::string file = this->finishList(archive);
  PtrColl coll(true);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { this->readUntrusted(coll, file); });
  EXPECT_NE(message.find(": an object of class orvel::ElementsRange can't stand for class "
                         "orvel::BaseObjectWithSkeleton"),
            std::string::npos)
      << message;
  ASSERT_EQ(coll._coll.size(), 2U);
  EXPECT_EQ(coll._coll[0], nullptr);
  EXPECT_EQ(coll.at(1).data, 12);

  PtrColl plain(false); // takes any object
  this->readUntrusted(plain, file);
  EXPECT_EQ(plain._coll.at(0)->getClassName(), "orvel::ElementsRange");
}

TYPED_TEST(BasePtrCollArchive, CutAnywhereIsRefused)
{
  const std::string file = this->write(PtrColl(true, {makeElement(11, 12), nullptr, makeElement(21, 22)}));
  const std::size_t end = file.find_last_not_of('\n') + 1; // the end of the last line may be missing
  for (std::size_t length = 0; length < end; ++length)
  {
    PtrColl coll(true);
    EXPECT_THROW(
        readFile<TypeParam>(file.substr(0, length), [&](BaseIArchive& archive) { coll.read(archive); }),
        ORVELSerializationException)
        << length;
  }
}

TYPED_TEST(BasePtrCollArchive, IsReadUnderItsOwnAndALowerVersion)
{
  for (const ipUInt32 version : {0U, 1U})
  {
    TypeParam archive;
    putVersion(archive, "orvel::BasePtrColl", version);
    this->openList(archive, 1);
    this->putElement(archive, true, g_full, 11, 12);
    PtrColl coll;
    readFile<TypeParam>(this->finishList(archive),
                        [&](BaseIArchive& input)
                        {
                          EXPECT_TRUE(coll.read(input));
                          EXPECT_EQ(input.getRegisterClassVersion("orvel::BasePtrColl"), version);
                        });
    EXPECT_EQ(coll.at(0).data, 12);
  }
}

TYPED_TEST(BasePtrCollArchive, OfANewerVersionIsRefusedAndChangesNothing)
{
  TypeParam archive;
  putVersion(archive, "orvel::BasePtrColl", 2);
  this->openList(archive, 0);
  const std::string file = this->finishList(archive);
  for (const auto mode : {g_full, g_data})
  {
    const SkeletonElementPtr element = makeElement();
    PtrColl coll(true, {element});
    coll.setSerializationMode(mode);
    readStart<TypeParam>(
        file,
        [&](BaseIArchive& input)
        {
          const auto failure = failureOf<ORVELSerializationException>([&] { coll.read(input); });
          EXPECT_EQ(
              failure.getMessage(),
              "Version 2 of class orvel::BasePtrColl is not supported, the highest supported version is 1");
          EXPECT_NE(failure.getFunction().find("orvel::BasePtrColl::read("), std::string::npos);
          EXPECT_FALSE(input.isClassVersionRegistred("orvel::BasePtrColl"));
        });
    EXPECT_EQ(coll._coll, std::vector<SerializationObjectPtr>{element});
  }
}

} // namespace
