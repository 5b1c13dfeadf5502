#include "ORVELBaseData/Private/ObjectColl.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <support/LayoutChecks.h>
#include <support/ObjectCollArchive.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using Modes = std::vector<ipUInt64>;

const SkeletonElement& elementOf(const SerializationObjectPtr& object)
{
  return dynamic_cast<const SkeletonElement&>(*object);
}

// The classes

template <class Root>
struct WithoutCreateNew : Root
{
  DynamicObjectPtr createShared() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return Root::getTypeName(); }
  bool hasSkeletonElements() const override { return false; }
};

template <class Root>
struct WithoutCreateShared : Root
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return Root::getTypeName(); }
  bool hasSkeletonElements() const override { return false; }
};

template <class Root>
struct WithoutElementTypeName : Root
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  bool hasSkeletonElements() const override { return false; }
};

template <class Root>
struct WithoutSkeletonAnswer : Root
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return Root::getTypeName(); }
};

template <class Coll>
class ObjectColl : public testing::Test
{
};

using Colls = testing::Types<PtrColl, PlanColl>;
TYPED_TEST_SUITE(ObjectColl, Colls, );

TYPED_TEST(ObjectColl, HasItsNameVersionAndMode)
{
  using Root = typename TypeParam::Root;
  EXPECT_EQ(Root::getTypeName(), TypeParam::className);
  EXPECT_EQ(TypeParam().getClassName(), TypeParam::className); // a derived class without its own name
  EXPECT_EQ(Root::getVersion(), 1U);
  EXPECT_EQ(TypeParam().getSerializationMode(), g_full);
}

TYPED_TEST(ObjectColl, LeavesFourOperationsToDerivedClasses)
{
  using Root = typename TypeParam::Root;
  EXPECT_TRUE((std::is_base_of_v<BaseObjectWithSkeleton, Root>));
  EXPECT_TRUE(std::is_abstract_v<Root>);
  EXPECT_TRUE(std::is_abstract_v<WithoutCreateNew<Root>>);
  EXPECT_TRUE(std::is_abstract_v<WithoutCreateShared<Root>>);
  EXPECT_TRUE(std::is_abstract_v<WithoutElementTypeName<Root>>);
  EXPECT_TRUE(std::is_abstract_v<WithoutSkeletonAnswer<Root>>);
  EXPECT_FALSE(std::is_abstract_v<TypeParam>);
}

TYPED_TEST(ObjectColl, LeavesTheseOperationsPure)
{
  std::vector<std::size_t> pure = {3, 4, 12, 13}; // creation and the two that it adds
  if (TypeParam::hasPureDestructor)
    pure.insert(pure.begin(), {0, 1});
  const AbstractTable table(TypeParam::table);
  for (std::size_t index = 0; index < 14; ++index)
    EXPECT_EQ(table.isPure(index), std::count(pure.begin(), pure.end(), index) == 1) << index;
}

TYPED_TEST(ObjectColl, CannotBeCopied)
{
  const std::string name = TypeParam::className;
  const Objects objects = {makeElement()};
  TypeParam coll(false, objects);
  const TypeParam other;
  EXPECT_FALSE(coll.hasCopySupport());
  const auto check = [&](const std::string& function, const std::function<void()>& operation)
  {
    expectRaised<ORVELUtilException>(
        operation, {"Class " + name + " doesn't support copy", function, TypeParam::sourceFile});
    EXPECT_EQ(coll.getObjects(), objects);
  };
  check("virtual void " + name + "::copy(const orvel::BaseDynamicObject&)", [&] { coll.copy(other); });
  check("virtual void " + name + "::copy(const orvel::BaseDynamicObject&)", [&] { coll.copy(coll); });
  check("virtual orvel::BaseDynamicObject* " + name + "::duplicate() const", [&] { coll.duplicate(); });
  check("virtual orvel::DynamicObjectPtr " + name + "::duplicateShared() const",
        [&] { coll.duplicateShared(); });
}

TYPED_TEST(ObjectColl, ReleasesItsObjectsWhenItIsDestroyed)
{
  const SkeletonElementPtr element = makeElement();
  {
    const TypeParam coll(false, {element, nullptr, element});
    EXPECT_EQ(element.use_count(), 3);
  }
  EXPECT_EQ(element.use_count(), 1);
}

// Archives

template <class C, class F>
struct Case
{
  using Coll = C;
  using Format = F;
};

template <class Case>
class ObjectCollFile : public testing::Test
{
protected:
  using CollType = typename Case::Coll;
  using FormatType = typename Case::Format;
  using ArchiveType = ObjectCollArchive<CollType, FormatType>;

  static std::string write(const CollType& coll)
  {
    return fileOf<FormatType>(
        [&](BaseOArchive& archive)
        {
          const BoolResult result = coll.write(archive);
          EXPECT_TRUE(result);
          EXPECT_EQ(result.getMessage(), "");
        });
  }

  static void read(CollType& coll, const std::string& file)
  {
    readFile<FormatType>(file,
                         [&](BaseIArchive& archive)
                         {
                           const BoolResult result = coll.read(archive);
                           EXPECT_TRUE(result);
                           EXPECT_EQ(result.getMessage(), "");
                         });
  }

  static void readUntrusted(CollType& coll, const std::string& file)
  {
    readStart<FormatType>(file,
                          [&](BaseIArchive& archive)
                          {
                            archive.setUntrusted(true);
                            coll.read(archive);
                          });
  }

  static void expectRefused(CollType& coll, const std::string& file)
  {
    EXPECT_THROW(readStart<FormatType>(file, [&](BaseIArchive& archive) { coll.read(archive); }),
                 ORVELSerializationException);
  }

  /// Checks the object of a rank.
  static void expectElement(const CollType& coll, std::size_t rank, ipInt32 structure, ipInt32 data)
  {
    const Objects objects = coll.getObjects();
    ASSERT_LT(rank, objects.size());
    ASSERT_NE(objects[rank], nullptr);
    EXPECT_EQ(elementOf(objects[rank]).structure, structure);
    EXPECT_EQ(elementOf(objects[rank]).data, data);
  }
};

using Cases = testing::Types<Case<PtrColl, HandWrittenXml>, Case<PtrColl, HandWrittenBinary>,
                             Case<PlanColl, HandWrittenXml>, Case<PlanColl, HandWrittenBinary>>;
TYPED_TEST_SUITE(ObjectCollFile, Cases, );

#define ORVEL_TEST_USE_CASE                                                                                  \
  using Coll [[maybe_unused]] = typename TestFixture::CollType;                                              \
  using Format [[maybe_unused]] = typename TestFixture::FormatType;                                          \
  using Archive [[maybe_unused]] = typename TestFixture::ArchiveType

TYPED_TEST(ObjectCollFile, OfNoObjectsHoldsTheirCount)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(0).file();
  for (const bool hasSkeletons : {false, true})
  {
    EXPECT_EQ(this->write(Coll(hasSkeletons)), file);
    Coll coll(hasSkeletons, {makeElement()});
    this->read(coll, file);
    EXPECT_TRUE(coll.getObjects().empty());
  }
}

TYPED_TEST(ObjectCollFile, HoldsTheObjectsInOrder)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(2).element(21, 22).element(11, 12).file();
  for (const bool hasSkeletons : {false, true})
  {
    EXPECT_EQ(this->write(Coll(hasSkeletons, {makeElement(21, 22), makeElement(11, 12)})), file);
    Coll coll(hasSkeletons, {makeElement(), makeElement(), makeElement()});
    this->read(coll, file);
    EXPECT_EQ(coll.getObjects().size(), 2U);
    this->expectElement(coll, 0, 21, 22);
    this->expectElement(coll, 1, 11, 12);
  }
}

TYPED_TEST(ObjectCollFile, HoldsTheVersionOnceForManyCollections)
{
  ORVEL_TEST_USE_CASE;
  EXPECT_EQ(fileOf<Format>(
                [](BaseOArchive& archive)
                {
                  Coll().write(archive);
                  Coll().write(archive);
                }),
            Archive().open(0).close().open(0).file());
}

TYPED_TEST(ObjectCollFile, IsAlikeInEveryModeWithoutSkeletons)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr first = makeElement(11, 12);
  const SkeletonElementPtr second = makeElement(21, 22);
  second->setSerializationMode(g_skeleton);
  const Coll coll(false, {first, nullptr, second});
  const std::string file = Archive().open(3).element(11, 12).null().element(21, 0, g_skeleton).file();
  for (const auto mode : {g_full, g_skeleton, g_data})
  {
    coll.setSerializationMode(mode);
    EXPECT_EQ(this->write(coll), file);
    EXPECT_EQ(first->getSerializationMode(), g_full); // the objects keep theirs
    EXPECT_EQ(second->getSerializationMode(), g_skeleton);
  }
}

TYPED_TEST(ObjectCollFile, IsReadAsAWholeInEveryModeWithoutSkeletons)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(1).element(11, 12).file();
  for (const auto mode : {g_full, g_skeleton, g_data})
  {
    Coll coll(false);
    coll.setSerializationMode(mode);
    this->read(coll, file);
    EXPECT_EQ(coll.getObjects().size(), 1U);
    this->expectElement(coll, 0, 11, 12);
    EXPECT_EQ(elementOf(coll.getObjects()[0]).modesRead, Modes{0});
    EXPECT_EQ(coll.getSerializationMode(), mode);
  }
}

TYPED_TEST(ObjectCollFile, OfDataWithoutObjectsHoldsTheVersionAloneIfTheyHaveSkeletons)
{
  ORVEL_TEST_USE_CASE;
  Coll withSkeletons(true, {}, g_data);
  EXPECT_EQ(this->write(withSkeletons), Archive().file());
  this->read(withSkeletons, Archive().file());
  EXPECT_TRUE(withSkeletons.getObjects().empty());

  const Coll without(false);
  without.setSerializationMode(g_data);
  EXPECT_EQ(this->write(without), Archive().open(0).file());
}

TYPED_TEST(ObjectCollFile, HandsItsModeToItsObjectsWhenWritten)
{
  ORVEL_TEST_USE_CASE;
  const std::pair<eSklSrzMode::domain, ipUInt64> modes[] = {{g_skeleton, 1}, {g_data, 2}, {g_full, 0}};
  for (const auto& [mode, number] : modes)
  {
    const SkeletonElementPtr first = makeElement();
    const SkeletonElementPtr second = makeElement();
    second->setSerializationMode(g_skeleton);
    this->write(Coll(true, {nullptr, first, nullptr, second}, mode));
    for (const SkeletonElementPtr& element : {first, second})
    {
      EXPECT_EQ(element->modesWritten, Modes{number});
      EXPECT_EQ(element->getSerializationMode(), mode); // and they keep it
    }
  }
}

TYPED_TEST(ObjectCollFile, HandsItsModeToAllObjectsBeforeItWritesTheFirst)
{
  ORVEL_TEST_USE_CASE;
  for (const auto mode : {g_skeleton, g_data})
  {
    const SkeletonElementPtr first = makeElement();
    const SkeletonElementPtr second = makeElement();
    Modes modesOfSecond;
    first->whenWritten = [&]
    {
      modesOfSecond.push_back(second->getSerializationMode().getValue());
    };
    this->write(Coll(true, {first, second}, mode));
    EXPECT_EQ(modesOfSecond, Modes{eSklSrzMode(mode).getValue()});
  }
}

TYPED_TEST(ObjectCollFile, LeavesTheModesHandedOnWhenAWriteFails)
{
  ORVEL_TEST_USE_CASE;
  for (const auto mode : {g_skeleton, g_data})
  {
    const SkeletonElementPtr first = makeElement();
    const SkeletonElementPtr second = makeElement();
    const Coll coll(true, {first, second}, mode);
    first->whenWritten = []
    {
      throw std::runtime_error("no");
    };
    EXPECT_THROW(fileOf<Format>([&](BaseOArchive& archive) { coll.write(archive); }), std::runtime_error);
    EXPECT_EQ(first->getSerializationMode(), mode);
    EXPECT_EQ(second->getSerializationMode(), mode);
  }
}

TYPED_TEST(ObjectCollFile, HandsItsModeDownThroughCollectionsOfCollections)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr element = makeElement(11, 12);
  const auto inner = boost::make_shared<Coll>(true, Objects{element});
  Archive expected;
  expected.access().openObject("curObject");
  expected.curObject(12);
  expected.access().close();
  EXPECT_EQ(this->write(Coll(true, {inner}, g_data)), expected.file());
  EXPECT_EQ(inner->getSerializationMode(), g_data);
  EXPECT_EQ(element->getSerializationMode(), g_data);
}

TYPED_TEST(ObjectCollFile, IsAWholeOfSkeletonsInSkeletonMode)
{
  ORVEL_TEST_USE_CASE;
  EXPECT_EQ(this->write(Coll(true, {makeElement(11, 12), nullptr, makeElement(21, 22)}, g_skeleton)),
            Archive().open(3).element(11, 12, g_skeleton).null().element(21, 22, g_skeleton).file());
}

TYPED_TEST(ObjectCollFile, OfDataHoldsTheObjectsInOrderAndNoTraceOfNulls)
{
  ORVEL_TEST_USE_CASE;
  EXPECT_EQ(
      this->write(Coll(true, {nullptr, makeElement(11, 12), nullptr, makeElement(21, 22), nullptr}, g_data)),
      Archive().curObject(12).curObject(22).file());
}

TYPED_TEST(ObjectCollFile, OfDataFillsTheObjectsThatAreThereAndSkipsNulls)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr first = makeElement(1, 2);
  const SkeletonElementPtr second = makeElement(3, 4);
  first->setSerializationMode(g_data); // the collection does not do that
  second->setSerializationMode(g_data);
  const Objects objects = {first, nullptr, second, nullptr};
  Coll coll(true, objects, g_data);
  this->read(coll, Archive().curObject(12).curObject(22).file());
  EXPECT_EQ(coll.getObjects(), objects);
  this->expectElement(coll, 0, 1, 12);
  this->expectElement(coll, 2, 3, 22);
}

TYPED_TEST(ObjectCollFile, OfDataHoldsAnObjectThatIsThereTwiceTwice)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr element = makeElement(11, 12);
  Coll coll(true, {element, element}, g_data);
  EXPECT_EQ(this->write(coll), Archive().curObject(12).curObject(12).file());
  this->read(coll, Archive().curObject(98).curObject(99).file());
  EXPECT_EQ(element->data, 99); // filled twice
}

TYPED_TEST(ObjectCollFile, OfDataWithFewerObjectsThanAreThereFillsThoseAndIsRefused)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr first = makeElement();
  const SkeletonElementPtr second = makeElement(0, 4);
  first->setSerializationMode(g_data);
  second->setSerializationMode(g_data);
  Coll coll(true, {first, second}, g_data);
  this->expectRefused(coll, Archive().curObject(12).file());
  EXPECT_EQ(coll.getObjects(), (Objects{first, second}));
  EXPECT_EQ(first->data, 12);
  EXPECT_EQ(second->data, 4);
}

TYPED_TEST(ObjectCollFile, OfDataWithMoreObjectsThanAreThereLeavesTheRestUnread)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr element = makeElement();
  element->setSerializationMode(g_data);
  Coll coll(true, {element}, g_data);
  readStart<Format>(Archive().curObject(12).curObject(22).file(),
                    [&](BaseIArchive& input)
                    {
                      EXPECT_TRUE(coll.read(input));
                      EXPECT_EQ(element->data, 12);
                      EXPECT_THROW(input.close(), ORVELSerializationException);
                    });
}

TYPED_TEST(ObjectCollFile, DoesNotHandItsModeToTheObjectsThatItFills)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr element = makeElement();
  Coll coll(true, {element}, g_data);
  this->expectRefused(coll, Archive().curObject(12).file()); // the object looks for structure, too
  EXPECT_EQ(element->modesRead, Modes{0});
  EXPECT_EQ(element->getSerializationMode(), g_full);
}

TYPED_TEST(ObjectCollFile, DoesNotHandItsModeToTheObjectsThatItMakes)
{
  ORVEL_TEST_USE_CASE;
  Coll coll(true, {}, g_skeleton);
  // The new object looks for data, too.
  this->expectRefused(coll, Archive().open(1).element(11, 0, g_skeleton).file());
  this->read(coll, Archive().open(1).element(11, 12).file());
  this->expectElement(coll, 0, 11, 12);
  EXPECT_EQ(elementOf(coll.getObjects().at(0)).modesRead, Modes{0});
  EXPECT_EQ(elementOf(coll.getObjects().at(0)).getSerializationMode(), g_full);
}

TYPED_TEST(ObjectCollFile, IsAWholeInAModeThatIsNoEnumerator)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(1).element(11, 12).file();
  for (const ipUInt64 mode : {ipUInt64{3}, ipUInt64{0x100000002}})
  {
    const SkeletonElementPtr element = makeElement(11, 12);
    Coll coll(true, {element});
    coll.setSerializationMode(eSklSrzMode(mode));
    EXPECT_EQ(this->write(coll), file);
    EXPECT_EQ(element->modesWritten, Modes{mode});
    this->read(coll, file);
    ASSERT_EQ(coll.getObjects().size(), 1U);
    EXPECT_NE(coll.getObjects()[0], element); // a new one
  }
}

TYPED_TEST(ObjectCollFile, HoldsBuffersWithoutTheirElementsAsSkeletonsAndThoseAlone)
{
  ORVEL_TEST_USE_CASE;
  const auto buffer = boost::make_shared<TypedOwnBuffer>();
  buffer->init(2, eDataType::eDT_UInt8);
  std::copy_n("\x0A\x0B", 2, static_cast<char*>(buffer->getDataPtr()));
  Coll coll(true, {buffer}, g_skeleton);
  Archive skeleton;
  skeleton.open(1).openEntry();
  skeleton.access().openPointer("pObject", "orvel::TypedOwnBuffer");
  putVersion(skeleton.access(), "orvel::BaseOwnBuffer", BaseOwnBuffer::getVersion());
  skeleton.access().boolean("bInit", true);
  skeleton.access().integer("size", 2);
  skeleton.access().enumeration("dataType", 3, "eDT_UInt8");
  putVersion(skeleton.access(), "orvel::TypedOwnBuffer", TypedOwnBuffer::getVersion());
  skeleton.access().close();
  skeleton.closeEntry();
  EXPECT_EQ(this->write(coll), skeleton.file());

  coll.setSerializationMode(g_data);
  const std::string data = this->write(coll);
  std::copy_n("\x00\x00", 2, static_cast<char*>(buffer->getDataPtr()));
  this->read(coll, data); // the buffer kept the mode of the write
  EXPECT_EQ(std::string(static_cast<const char*>(buffer->getDataPtr()), 2), "\x0A\x0B");
}

TYPED_TEST(ObjectCollFile, FillsBuffersInASecondPass)
{
  ORVEL_TEST_USE_CASE;
  const auto makeBuffer = [](ipUInt8 value)
  {
    const auto buffer = boost::make_shared<TypedOwnBuffer>();
    buffer->init(3, eDataType::eDT_UInt8);
    ipUInt8* const elements = static_cast<ipUInt8*>(buffer->getDataPtr());
    for (ipUInt8 i = 0; i < 3; ++i)
      elements[i] = static_cast<ipUInt8>(value + i);
    return buffer;
  };
  const auto first = makeBuffer(0);
  const auto second = makeBuffer(0);
  first->setSerializationMode(g_data);
  second->setSerializationMode(g_data);
  Coll coll(true, {first, second}, g_data);
  this->read(coll, this->write(Coll(true, {makeBuffer(10), makeBuffer(20)}, g_data)));
  EXPECT_EQ(static_cast<const ipUInt8*>(first->getDataPtr())[2], 12);
  EXPECT_EQ(static_cast<const ipUInt8*>(second->getDataPtr())[0], 20);
}

TYPED_TEST(ObjectCollFile, BringsNullsThatAreWrittenAgain)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(3).null().element(11, 12).null().file();
  for (const bool hasSkeletons : {false, true})
  {
    Coll coll(hasSkeletons);
    this->read(coll, file);
    ASSERT_EQ(coll.getObjects().size(), 3U);
    EXPECT_EQ(coll.getObjects()[0], nullptr);
    this->expectElement(coll, 1, 11, 12);
    EXPECT_EQ(coll.getObjects()[2], nullptr);
    EXPECT_EQ(this->write(coll), file);
  }
}

TYPED_TEST(ObjectCollFile, BringsAnObjectThatIsThereTwiceAsOne)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(2).element(11, 12).reference(1).file();
  const SkeletonElementPtr element = makeElement(11, 12);
  Coll coll(true, {element, element});
  EXPECT_EQ(this->write(coll), file);
  this->read(coll, file);
  ASSERT_EQ(coll.getObjects().size(), 2U);
  EXPECT_EQ(coll.getObjects()[0], coll.getObjects()[1]);
  EXPECT_NE(coll.getObjects()[0], element);
}

TYPED_TEST(ObjectCollFile, ReleasesItsOldObjectsAndKeepsThoseReadBeforeAFailure)
{
  ORVEL_TEST_USE_CASE;
  const SkeletonElementPtr old = makeElement();
  Coll coll(false, {old, old, old, old});
  this->expectRefused(coll, Archive().open(3).element(11, 12).unknownObject().element(31, 32).file());
  EXPECT_EQ(old.use_count(), 1);
  this->expectElement(coll, 0, 11, 12);
  Objects rest = coll.getObjects();
  rest.erase(rest.begin());
  EXPECT_EQ(rest, Objects(Coll::hasPlaceBeforeRead ? 2 : 0));
}

TYPED_TEST(ObjectCollFile, ReleasesItsOldObjectsBeforeTheFirstIsRead)
{
  ORVEL_TEST_USE_CASE;
  Archive archive;
  archive.open(1);
  Coll::putKey(archive.access(), 0); // and no object
  const SkeletonElementPtr old = makeElement();
  Coll coll(false, {old, old});
  this->expectRefused(coll, archive.file());
  EXPECT_EQ(coll.getObjects(), Objects(Coll::hasPlaceBeforeRead ? 1 : 0));
  EXPECT_EQ(old.use_count(), 1);
}

TYPED_TEST(ObjectCollFile, WithMoreObjectsThanItCouldHoldIsRefused)
{
  ORVEL_TEST_USE_CASE;
  Coll coll;
  this->expectRefused(coll, Archive().open(4294967295).file());
  EXPECT_TRUE(coll.getObjects().empty());
}

TYPED_TEST(ObjectCollFile, WithObjectsThatHaveNoSkeletonIsRefusedWhenNotTrusted)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(2).plainObject().element(11, 12).file();
  Coll coll(true);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { this->readUntrusted(coll, file); });
  EXPECT_NE(message.find(": an object of class orvel::ElementsRange can't stand for class "
                         "orvel::BaseObjectWithSkeleton"),
            std::string::npos)
      << message;
  ASSERT_EQ(coll.getObjects().size(), 2U);
  EXPECT_EQ(coll.getObjects()[0], nullptr);
  this->expectElement(coll, 1, 11, 12);

  Coll plain(false); // takes any object
  this->readUntrusted(plain, file);
  EXPECT_EQ(plain.getObjects().at(0)->getClassName(), "orvel::ElementsRange");
}

TYPED_TEST(ObjectCollFile, HoldsNoObjectWithoutASkeletonWhereAnUntrustedReadFails)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = Archive().open(3).plainObject().element(11, 12).unknownObject().file();
  Coll coll(true);
  EXPECT_THROW(this->readUntrusted(coll, file), ORVELSerializationException);
  Objects objects = coll.getObjects();
  ASSERT_GE(objects.size(), 2U);
  EXPECT_EQ(objects[0], nullptr);
  this->expectElement(coll, 1, 11, 12);
  objects.erase(objects.begin(), objects.begin() + 2);
  EXPECT_EQ(std::count(objects.begin(), objects.end(), nullptr), static_cast<std::ptrdiff_t>(objects.size()));
}

TYPED_TEST(ObjectCollFile, CutAnywhereIsRefusedWithWholeObjectsOnly)
{
  ORVEL_TEST_USE_CASE;
  const std::string file = this->write(Coll(true, {makeElement(11, 12), nullptr, makeElement(21, 22)}));
  const std::size_t end = file.find_last_not_of('\n') + 1; // the end of the last line may be missing
  for (std::size_t length = 0; length < end; ++length)
  {
    Coll coll(true);
    EXPECT_THROW(readFile<Format>(file.substr(0, length), [&](BaseIArchive& archive) { coll.read(archive); }),
                 ORVELSerializationException)
        << length;
    const Objects objects = coll.getObjects();
    const ipInt32 expected[] = {12, 0, 22};
    ASSERT_LE(objects.size(), 3U);
    for (std::size_t i = 0; i < objects.size(); ++i)
      EXPECT_TRUE(!objects[i] || elementOf(objects[i]).data == expected[i]) << length;
  }
}

TYPED_TEST(ObjectCollFile, IsReadUnderItsOwnAndALowerVersion)
{
  ORVEL_TEST_USE_CASE;
  for (const ipUInt32 version : {0U, 1U})
  {
    Coll coll;
    readFile<Format>(Archive(version).open(1).element(11, 12).file(),
                     [&](BaseIArchive& input)
                     {
                       EXPECT_TRUE(coll.read(input));
                       EXPECT_EQ(input.getRegisterClassVersion(Coll::className), version);
                     });
    this->expectElement(coll, 0, 11, 12);
  }
}

TYPED_TEST(ObjectCollFile, OfANewerVersionIsRefusedAndChangesNothing)
{
  ORVEL_TEST_USE_CASE;
  const std::string name = Coll::className;
  const std::string file = Archive(2).open(0).file();
  for (const auto mode : {g_full, g_data})
  {
    const Objects objects = {makeElement()};
    Coll coll(true, objects, mode);
    readStart<Format>(
        file,
        [&](BaseIArchive& input)
        {
          expectRaised<ORVELSerializationException>(
              [&] { coll.read(input); },
              {"Version 2 of class " + name + " is not supported, the highest supported version is 1",
               "virtual orvel::BoolResult " + name + "::read(orvel::BaseIArchive&)", Coll::sourceFile});
          EXPECT_FALSE(input.isClassVersionRegistred(name));
        });
    EXPECT_EQ(coll.getObjects(), objects);
  }
}

} // namespace
