#include "ORVELBaseData/Pattern/OffsetXYZ.h"

#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

ORVEL_TEST_EXPOSE(XOffset, &OffsetXYZ::_xOffset)
ORVEL_TEST_EXPOSE(YOffset, &OffsetXYZ::_yOffset)
ORVEL_TEST_EXPOSE(ZOffset, &OffsetXYZ::_zOffset)

constexpr ipInt32 g_lowest = std::numeric_limits<ipInt32>::min();
constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();

TEST(OffsetXYZ, StoresTheArgumentsInFieldOrder)
{
  const OffsetXYZ offset(3, -2, 7);
  EXPECT_EQ(offset.getXOffset(), 3);
  EXPECT_EQ(offset.getYOffset(), -2);
  EXPECT_EQ(offset.getZOffset(), 7);
}

TEST(OffsetXYZ, ReturnsItsCoordinatesByValue)
{
  EXPECT_TRUE((std::is_same<decltype(&OffsetXYZ::getXOffset), ipInt32 (OffsetXYZ::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&OffsetXYZ::getYOffset), ipInt32 (OffsetXYZ::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&OffsetXYZ::getZOffset), ipInt32 (OffsetXYZ::*)() const>::value));
}

TEST(OffsetXYZ, TakesAnyNumbers)
{
  const OffsetXYZ offset(g_lowest, 0, g_highest);
  EXPECT_EQ(offset.getXOffset(), g_lowest);
  EXPECT_EQ(offset.getYOffset(), 0);
  EXPECT_EQ(offset.getZOffset(), g_highest);
}

TEST(OffsetXYZ, IsNotZeroedByItsDefaultConstructor)
{
  alignas(OffsetXYZ) unsigned char memory[sizeof(OffsetXYZ)];
  std::memset(memory, 0x5A, sizeof memory);
  asm volatile("" : : "r"(memory) : "memory"); // the compiler may not know what the memory holds
  OffsetXYZ* const offset = new (memory) OffsetXYZ();
  asm volatile("" : : "r"(memory) : "memory");
  EXPECT_EQ(offset->getXOffset(), 0x5A5A5A5A);
  EXPECT_EQ(offset->getYOffset(), 0x5A5A5A5A);
  EXPECT_EQ(offset->getZOffset(), 0x5A5A5A5A);
  offset->~OffsetXYZ();
}

TEST(OffsetXYZ, IsNotZeroedWhenItIsCreatedByItsClass)
{
  fillBlocksWith(0x5A);
  const boost::scoped_ptr<OffsetXYZ> byClass(OffsetXYZ::createNewObject());
  const boost::shared_ptr<OffsetXYZ> sharedByClass = OffsetXYZ::createSharedObject();
  const boost::scoped_ptr<BaseDynamicObject> byObject(byClass->createNew());
  const DynamicObjectPtr sharedByObject = byClass->createShared();
  fillNoBlocks();
  for (const BaseDynamicObject* object : {static_cast<const BaseDynamicObject*>(byClass.get()),
                                          static_cast<const BaseDynamicObject*>(sharedByClass.get()),
                                          static_cast<const BaseDynamicObject*>(byObject.get()),
                                          static_cast<const BaseDynamicObject*>(sharedByObject.get())})
  {
    const auto* const offset = dynamic_cast<const OffsetXYZ*>(object);
    ASSERT_NE(offset, nullptr);
    EXPECT_EQ(offset->getXOffset(), 0x5A5A5A5A);
    EXPECT_EQ(offset->getYOffset(), 0x5A5A5A5A);
    EXPECT_EQ(offset->getZOffset(), 0x5A5A5A5A);
  }
}

TEST(OffsetXYZ, OrdersByZBeforeYBeforeX)
{
  EXPECT_TRUE(OffsetXYZ(5, 5, 0) < OffsetXYZ(0, 0, 1));
  EXPECT_FALSE(OffsetXYZ(0, 0, 1) < OffsetXYZ(5, 5, 0));
  EXPECT_TRUE(OffsetXYZ(1, 0, 3) < OffsetXYZ(0, 1, 3));
  EXPECT_FALSE(OffsetXYZ(0, 1, 3) < OffsetXYZ(1, 0, 3));
  EXPECT_TRUE(OffsetXYZ(0, 2, 3) < OffsetXYZ(1, 2, 3));
  EXPECT_FALSE(OffsetXYZ(1, 2, 3) < OffsetXYZ(0, 2, 3));
}

TEST(OffsetXYZ, OrdersSignedValues)
{
  EXPECT_TRUE(OffsetXYZ(-1, 0, 0) < OffsetXYZ(0, 0, 0));
  EXPECT_TRUE(OffsetXYZ(1, -1, 0) < OffsetXYZ(-1, 0, 0));
  EXPECT_TRUE(OffsetXYZ(1, 1, -1) < OffsetXYZ(1, -1, 0));
  EXPECT_TRUE(OffsetXYZ(g_highest, g_highest, g_lowest) < OffsetXYZ(g_lowest, g_lowest, g_highest));
}

TEST(OffsetXYZ, IsNeitherLessNorGreaterThanAnEqualOne)
{
  EXPECT_FALSE(OffsetXYZ(4, -7, 1) < OffsetXYZ(4, -7, 1));
  EXPECT_TRUE(OffsetXYZ(4, -7, 1) == OffsetXYZ(4, -7, 1));
}

TEST(OffsetXYZ, IsWalkedPlaneByPlane)
{
  const std::set<OffsetXYZ> offsets = {{0, 0, 1}, {1, 1, -1}, {-1, 1, -1}, {5, -5, 0}, {1, -1, -1}};
  const std::tuple<int, int, int> expected[] = {{1, -1, -1}, {-1, 1, -1}, {1, 1, -1}, {5, -5, 0}, {0, 0, 1}};
  std::size_t index = 0;
  for (const OffsetXYZ& offset : offsets)
  {
    ASSERT_LT(index, std::size(expected));
    EXPECT_EQ(std::make_tuple(offset.getXOffset(), offset.getYOffset(), offset.getZOffset()),
              expected[index++]);
  }
  EXPECT_EQ(index, std::size(expected));
}

TEST(OffsetXYZ, EqualsOnlyIfEveryCoordinateDoes)
{
  EXPECT_TRUE(OffsetXYZ(1, 2, 3) == OffsetXYZ(1, 2, 3));
  EXPECT_FALSE(OffsetXYZ(1, 2, 3) == OffsetXYZ(0, 2, 3));
  EXPECT_FALSE(OffsetXYZ(1, 2, 3) == OffsetXYZ(1, 0, 3));
  EXPECT_FALSE(OffsetXYZ(1, 2, 3) == OffsetXYZ(1, 2, 0));
}

#if __cplusplus < 202002L // later the language makes it from ==
template <class T, class = void>
struct HasNotEqual : std::false_type
{
};
template <class T>
struct HasNotEqual<T, std::void_t<decltype(std::declval<T>() != std::declval<T>())>> : std::true_type
{
};

TEST(OffsetXYZ, HasNoOperatorNotEqual)
{
  EXPECT_FALSE(HasNotEqual<OffsetXYZ>::value);
}
#endif

TEST(OffsetXYZ, HasNoHash)
{
  EXPECT_FALSE(std::is_default_constructible<std::hash<OffsetXYZ>>::value);
}

TEST(OffsetXYZ, HasItsFrameIdentity)
{
  EXPECT_EQ(OffsetXYZ::getTypeName(), "orvel::OffsetXYZ");
  EXPECT_EQ(OffsetXYZ(1, 2, 3).getClassName(), "orvel::OffsetXYZ");
  EXPECT_EQ(OffsetXYZ::getVersion(), 1U);
  EXPECT_TRUE(OffsetXYZ(1, 2, 3).hasCopySupport());
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, OffsetXYZ>::value));
}

TEST(OffsetXYZ, DoesNotDeriveFromOffsetXY)
{
  EXPECT_FALSE((std::is_base_of<OffsetXY, OffsetXYZ>::value));
}

TEST(OffsetXYZ, IsCreatedByItsName)
{
  const boost::scoped_ptr<BaseDynamicObject> made(
      DynamicObjectFactory::getInstance().createNew("orvel::OffsetXYZ"));
  EXPECT_NE(dynamic_cast<OffsetXYZ*>(made.get()), nullptr);
  const DynamicObjectPtr shared = DynamicObjectFactory::getInstance().createShared("orvel::OffsetXYZ");
  EXPECT_NE(dynamic_cast<OffsetXYZ*>(shared.get()), nullptr);
}

TEST(OffsetXYZ, IsCopied)
{
  const OffsetXYZ source(5, -6, 7);
  const OffsetXYZ constructed(source);
  OffsetXYZ assigned(0, 0, 0);
  assigned = source;
  OffsetXYZ copied(0, 0, 0);
  copied.copy(source);
  EXPECT_TRUE(constructed == source);
  EXPECT_TRUE(assigned == source);
  EXPECT_TRUE(copied == source);
}

struct CountingOffset : OffsetXYZ
{
  using OffsetXYZ::OffsetXYZ;

  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    OffsetXYZ::copy(other);
  }

  int nbCopies = 0;
};

TEST(OffsetXYZ, IsAssignedByItsVirtualCopy)
{
  CountingOffset derived(0, 0, 0);
  OffsetXYZ& offset = derived;
  EXPECT_EQ(&(offset = OffsetXYZ(5, -6, 7)), &offset);
  EXPECT_EQ(derived.nbCopies, 1);
  EXPECT_TRUE(offset == OffsetXYZ(5, -6, 7));
}

TEST(OffsetXYZ, StandsACopyOfItself)
{
  OffsetXYZ offset(5, -6, 7);
  const OffsetXYZ& itself = offset;
  offset = itself;
  offset.copy(itself);
  EXPECT_TRUE(offset == OffsetXYZ(5, -6, 7));
}

TEST(OffsetXYZ, IsDuplicated)
{
  const OffsetXYZ source(5, -6, 7);
  const boost::scoped_ptr<BaseDynamicObject> owned(source.duplicate());
  const DynamicObjectPtr shared = source.duplicateShared();
  ASSERT_NE(dynamic_cast<OffsetXYZ*>(owned.get()), nullptr);
  ASSERT_NE(dynamic_cast<OffsetXYZ*>(shared.get()), nullptr);
  EXPECT_TRUE(dynamic_cast<OffsetXYZ&>(*owned) == source);
  EXPECT_TRUE(dynamic_cast<OffsetXYZ&>(*shared) == source);
}

TEST(OffsetXYZ, HasItsVirtualOperationsInOrder)
{
  // Two entries for the destructor come first.
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::write), 10U);
  EXPECT_EQ(vtableIndexOf(&OffsetXYZ::read), 11U);
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(OffsetXYZ(0, 0, 0)), 12U);
  }
}

TEST(OffsetXYZ, HasItsMembersInOrder)
{
  EXPECT_EQ(offsetOf(memberOf(XOffset())), 8); // behind the pointer to the virtual operations
  EXPECT_EQ(offsetOf(memberOf(YOffset())), 12);
  EXPECT_EQ(offsetOf(memberOf(ZOffset())), 16);
  EXPECT_EQ(sizeof(OffsetXYZ), 24U);
  EXPECT_TRUE((std::is_same<decltype(memberOf(XOffset())), ipInt32 OffsetXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(YOffset())), ipInt32 OffsetXYZ::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(ZOffset())), ipInt32 OffsetXYZ::*>::value));
}

template <class HandWritten>
class ArchivedOffsetXYZ : public ::testing::Test
{
protected:
  static void putCoordinates(HandWritten& archive, ipInt32 x, ipInt32 y, ipInt32 z)
  {
    archive.integer("_xOffset", x);
    archive.integer("_yOffset", y);
    archive.integer("_zOffset", z);
  }

  static std::string fileOfVersion(ipUInt32 version)
  {
    HandWritten archive;
    putVersion(archive, "orvel::OffsetXYZ", version);
    putCoordinates(archive, -3, 70000, -300);
    return archive.file();
  }
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedOffsetXYZ, Formats, );

TYPED_TEST(ArchivedOffsetXYZ, HoldsItsVersionAndTheCoordinatesInOrder)
{
  EXPECT_EQ(fileOf<TypeParam>([](BaseOArchive& archive) { OffsetXYZ(-3, 70000, -300).write(archive); }),
            this->fileOfVersion(1));
}

TYPED_TEST(ArchivedOffsetXYZ, HoldsTheVersionOnceForManyOffsets)
{
  TypeParam expected;
  putVersion(expected, "orvel::OffsetXYZ", 1);
  for (ipInt32 i = 0; i < 5; ++i)
    this->putCoordinates(expected, i, -i, 2 * i);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  for (ipInt32 i = 0; i < 5; ++i)
                    OffsetXYZ(i, -i, 2 * i).write(archive);
                }),
            expected.file());
}

TYPED_TEST(ArchivedOffsetXYZ, IsReportedAsMovedWithoutAMessage)
{
  fileOf<TypeParam>(
      [](BaseOArchive& archive)
      {
        const BoolResult written = OffsetXYZ(1, 2, 3).write(archive);
        EXPECT_TRUE(written);
        EXPECT_EQ(written.getMessage(), "");
      });
  readFile<TypeParam>(this->fileOfVersion(1),
                      [](BaseIArchive& archive)
                      {
                        OffsetXYZ offset;
                        const BoolResult read = offset.read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                      });
}

TYPED_TEST(ArchivedOffsetXYZ, ComesBackWithExtremeCoordinates)
{
  const std::string file = fileOf<TypeParam>(
      [](BaseOArchive& archive)
      {
        OffsetXYZ(g_lowest, 0, g_highest).write(archive);
        OffsetXYZ(-1, 0, 1).write(archive);
      });
  readFile<TypeParam>(file,
                      [](BaseIArchive& archive)
                      {
                        OffsetXYZ first;
                        OffsetXYZ second;
                        first.read(archive);
                        second.read(archive);
                        EXPECT_TRUE(first == OffsetXYZ(g_lowest, 0, g_highest));
                        EXPECT_TRUE(second == OffsetXYZ(-1, 0, 1));
                      });
}

TYPED_TEST(ArchivedOffsetXYZ, IsReadUnderItsOwnAndALowerVersion)
{
  for (const ipUInt32 version : {0U, 1U})
    readFile<TypeParam>(this->fileOfVersion(version),
                        [version](BaseIArchive& archive)
                        {
                          OffsetXYZ offset;
                          offset.read(archive);
                          EXPECT_TRUE(offset == OffsetXYZ(-3, 70000, -300)) << version;
                          EXPECT_EQ(archive.getRegisterClassVersion("orvel::OffsetXYZ"), version);
                        });
}

TYPED_TEST(ArchivedOffsetXYZ, TakesTheVersionThatTheArchiveKnows)
{
  TypeParam file;
  this->putCoordinates(file, 8, 9, 10); // no version record
  readFile<TypeParam>(file.file(),
                      [](BaseIArchive& archive)
                      {
                        archive.registerClassVersion("orvel::OffsetXYZ", 1);
                        OffsetXYZ offset;
                        offset.read(archive);
                        EXPECT_TRUE(offset == OffsetXYZ(8, 9, 10));
                      });
}

TYPED_TEST(ArchivedOffsetXYZ, OfAHigherVersionIsRefusedAndChangesNothing)
{
  readStart<TypeParam>(this->fileOfVersion(2),
                       [](BaseIArchive& archive)
                       {
                         OffsetXYZ offset(5, 6, 7);
                         EXPECT_THROW(offset.read(archive), ORVELSerializationException);
                         EXPECT_TRUE(offset == OffsetXYZ(5, 6, 7));
                         EXPECT_FALSE(archive.isClassVersionRegistred("orvel::OffsetXYZ"));
                       });
}

TYPED_TEST(ArchivedOffsetXYZ, KeepsWhatWasReadBeforeAFailure)
{
  TypeParam file;
  putVersion(file, "orvel::OffsetXYZ", 1);
  file.integer("_xOffset", 77);
  file.integer("_yOffset", 88);
  readStart<TypeParam>(file.file(),
                       [](BaseIArchive& archive)
                       {
                         OffsetXYZ offset(5, 6, 7);
                         EXPECT_THROW(offset.read(archive), ORVELSerializationException);
                         EXPECT_TRUE(offset == OffsetXYZ(77, 88, 7));
                       });
}

TYPED_TEST(ArchivedOffsetXYZ, RefusesACoordinateBeyond32Bits)
{
  TypeParam file;
  putVersion(file, "orvel::OffsetXYZ", 1);
  file.integer("_xOffset", 2147483648);
  file.integer("_yOffset", 0);
  file.integer("_zOffset", 0);
  readStart<TypeParam>(file.file(),
                       [](BaseIArchive& archive)
                       {
                         OffsetXYZ offset(5, 6, 7);
                         EXPECT_THROW(offset.read(archive), ORVELSerializationException);
                         EXPECT_TRUE(offset == OffsetXYZ(5, 6, 7));
                       });
}

TEST(OffsetXYZFile, IsThisXmlText)
{
  EXPECT_EQ(fileOf<HandWrittenXml>([](BaseOArchive& archive) { OffsetXYZ(-3, 70000, -300).write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::OffsetXYZ">
    <item key="version">1</item>
  </section>
  <item key="_xOffset">-3</item>
  <item key="_yOffset">70000</item>
  <item key="_zOffset">-300</item>
</orvelArchive>
)");
}

TEST(OffsetXYZFile, IsTheseBytes)
{
  const std::string file =
      fileOf<HandWrittenBinary>([](BaseOArchive& archive) { OffsetXYZ(-3, 70000, -300).write(archive); });
  const char bytes[] = "\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little" // format, its version, byte order
                       "\x9F\x01\xFF"                            // section with the class version
                       "\x22\x1A\x00\x01\x11\x70\x39\x01\x2B"    // -3, 70000, -300
                       "\x83\x63"
                       "end\x18\x1E\x1B"; // 30 bytes stand before this; the 8 bytes of the hash follow
  const std::string start(bytes, sizeof bytes - 1);
  EXPECT_EQ(file.substr(0, start.size()), start);
  EXPECT_EQ(file.size(), start.size() + 8);
}

} // namespace
