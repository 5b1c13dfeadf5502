#include "ORVELBaseData/Pattern/OffsetXY.h"

#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <set>
#include <string>
#include <type_traits>
#include <utility>

#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

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

ORVEL_TEST_EXPOSE(XOffset, &OffsetXY::_xOffset)
ORVEL_TEST_EXPOSE(YOffset, &OffsetXY::_yOffset)

constexpr ipInt32 g_lowest = std::numeric_limits<ipInt32>::min();
constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();

TEST(OffsetXY, StoresTheArgumentsInFieldOrder)
{
  const OffsetXY offset(3, -2);
  EXPECT_EQ(offset.getXOffset(), 3);
  EXPECT_EQ(offset.getYOffset(), -2);
}

TEST(OffsetXY, ReturnsItsCoordinatesByValue)
{
  EXPECT_TRUE((std::is_same<decltype(&OffsetXY::getXOffset), ipInt32 (OffsetXY::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&OffsetXY::getYOffset), ipInt32 (OffsetXY::*)() const>::value));
}

TEST(OffsetXY, TakesAnyNumbers)
{
  const OffsetXY offset(g_lowest, g_highest);
  EXPECT_EQ(offset.getXOffset(), g_lowest);
  EXPECT_EQ(offset.getYOffset(), g_highest);
  EXPECT_EQ(OffsetXY(0, 0).getXOffset(), 0);
}

TEST(OffsetXY, IsNotZeroedByItsDefaultConstructor)
{
  alignas(OffsetXY) unsigned char memory[sizeof(OffsetXY)];
  std::memset(memory, 0x5A, sizeof memory);
  asm volatile("" : : "r"(memory) : "memory"); // the compiler may not know what the memory holds
  OffsetXY* const offset = new (memory) OffsetXY();
  asm volatile("" : : "r"(memory) : "memory");
  EXPECT_EQ(offset->getXOffset(), 0x5A5A5A5A);
  EXPECT_EQ(offset->getYOffset(), 0x5A5A5A5A);
  offset->~OffsetXY();
}

TEST(OffsetXY, IsNotZeroedWhenItIsCreatedByItsClass)
{
  fillBlocksWith(0x5A);
  const boost::scoped_ptr<OffsetXY> byClass(OffsetXY::createNewObject());
  const boost::shared_ptr<OffsetXY> sharedByClass = OffsetXY::createSharedObject();
  const boost::scoped_ptr<BaseDynamicObject> byObject(byClass->createNew());
  const DynamicObjectPtr sharedByObject = byClass->createShared();
  fillNoBlocks();
  for (const BaseDynamicObject* object : {static_cast<const BaseDynamicObject*>(byClass.get()),
                                          static_cast<const BaseDynamicObject*>(sharedByClass.get()),
                                          static_cast<const BaseDynamicObject*>(byObject.get()),
                                          static_cast<const BaseDynamicObject*>(sharedByObject.get())})
  {
    const auto* const offset = dynamic_cast<const OffsetXY*>(object);
    ASSERT_NE(offset, nullptr);
    EXPECT_EQ(offset->getXOffset(), 0x5A5A5A5A);
    EXPECT_EQ(offset->getYOffset(), 0x5A5A5A5A);
  }
}

TEST(OffsetXY, OrdersByYBeforeX)
{
  EXPECT_TRUE(OffsetXY(1, 0) < OffsetXY(0, 1));
  EXPECT_FALSE(OffsetXY(0, 1) < OffsetXY(1, 0));
  EXPECT_TRUE(OffsetXY(0, 1) < OffsetXY(1, 1));
  EXPECT_FALSE(OffsetXY(1, 1) < OffsetXY(0, 1));
}

TEST(OffsetXY, OrdersSignedValues)
{
  EXPECT_TRUE(OffsetXY(-1, 0) < OffsetXY(0, 0));
  EXPECT_TRUE(OffsetXY(1, -1) < OffsetXY(-1, 0));
  EXPECT_TRUE(OffsetXY(1, -1) < OffsetXY(0, 0));
  EXPECT_TRUE(OffsetXY(g_highest, g_lowest) < OffsetXY(g_lowest, g_highest));
}

TEST(OffsetXY, IsNeitherLessNorGreaterThanAnEqualOne)
{
  EXPECT_FALSE(OffsetXY(4, -7) < OffsetXY(4, -7));
  EXPECT_TRUE(OffsetXY(4, -7) == OffsetXY(4, -7));
}

TEST(OffsetXY, IsWalkedInRasterOrder)
{
  const std::set<OffsetXY> offsets = {{1, 1}, {-1, 1}, {0, 0}, {1, -1}, {-1, -1}};
  const std::pair<int, int> expected[] = {{-1, -1}, {1, -1}, {0, 0}, {-1, 1}, {1, 1}};
  std::size_t index = 0;
  for (const OffsetXY& offset : offsets)
  {
    ASSERT_LT(index, std::size(expected));
    EXPECT_EQ(std::make_pair(offset.getXOffset(), offset.getYOffset()), expected[index++]);
  }
  EXPECT_EQ(index, std::size(expected));
}

TEST(OffsetXY, EqualsOnlyIfEveryCoordinateDoes)
{
  EXPECT_TRUE(OffsetXY(1, 2) == OffsetXY(1, 2));
  EXPECT_FALSE(OffsetXY(1, 2) == OffsetXY(0, 2));
  EXPECT_FALSE(OffsetXY(1, 2) == OffsetXY(1, 0));
  EXPECT_FALSE(OffsetXY(1, 2) == OffsetXY(2, 1));
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

TEST(OffsetXY, HasNoOperatorNotEqual)
{
  EXPECT_FALSE(HasNotEqual<OffsetXY>::value);
}
#endif

TEST(OffsetXY, HasNoHash)
{
  EXPECT_FALSE(std::is_default_constructible<std::hash<OffsetXY>>::value);
}

TEST(OffsetXY, HasItsFrameIdentity)
{
  EXPECT_EQ(OffsetXY::getTypeName(), "orvel::OffsetXY");
  EXPECT_EQ(OffsetXY(1, 2).getClassName(), "orvel::OffsetXY");
  EXPECT_EQ(OffsetXY::getVersion(), 1U);
  EXPECT_TRUE(OffsetXY(1, 2).hasCopySupport());
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, OffsetXY>::value));
}

TEST(OffsetXY, IsCreatedByItsName)
{
  const boost::scoped_ptr<BaseDynamicObject> made(
      DynamicObjectFactory::getInstance().createNew("orvel::OffsetXY"));
  EXPECT_NE(dynamic_cast<OffsetXY*>(made.get()), nullptr);
  const DynamicObjectPtr shared = DynamicObjectFactory::getInstance().createShared("orvel::OffsetXY");
  EXPECT_NE(dynamic_cast<OffsetXY*>(shared.get()), nullptr);
}

TEST(OffsetXY, IsCopied)
{
  const OffsetXY source(5, -6);
  const OffsetXY constructed(source);
  OffsetXY assigned(0, 0);
  assigned = source;
  OffsetXY copied(0, 0);
  copied.copy(source);
  EXPECT_TRUE(constructed == source);
  EXPECT_TRUE(assigned == source);
  EXPECT_TRUE(copied == source);
}

struct CountingOffset : OffsetXY
{
  using OffsetXY::OffsetXY;

  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    OffsetXY::copy(other);
  }

  int nbCopies = 0;
};

TEST(OffsetXY, IsAssignedByItsVirtualCopy)
{
  CountingOffset derived(0, 0);
  OffsetXY& offset = derived;
  EXPECT_EQ(&(offset = OffsetXY(5, -6)), &offset);
  EXPECT_EQ(derived.nbCopies, 1);
  EXPECT_TRUE(offset == OffsetXY(5, -6));
}

TEST(OffsetXY, StandsACopyOfItself)
{
  OffsetXY offset(5, -6);
  const OffsetXY& itself = offset;
  offset = itself;
  offset.copy(itself);
  EXPECT_TRUE(offset == OffsetXY(5, -6));
}

TEST(OffsetXY, IsDuplicated)
{
  const OffsetXY source(5, -6);
  const boost::scoped_ptr<BaseDynamicObject> owned(source.duplicate());
  const DynamicObjectPtr shared = source.duplicateShared();
  ASSERT_NE(dynamic_cast<OffsetXY*>(owned.get()), nullptr);
  ASSERT_NE(dynamic_cast<OffsetXY*>(shared.get()), nullptr);
  EXPECT_TRUE(dynamic_cast<OffsetXY&>(*owned) == source);
  EXPECT_TRUE(dynamic_cast<OffsetXY&>(*shared) == source);
}

TEST(OffsetXY, HasItsVirtualOperationsInOrder)
{
  // Two entries for the destructor come first.
  EXPECT_EQ(vtableIndexOf(&OffsetXY::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::write), 10U);
  EXPECT_EQ(vtableIndexOf(&OffsetXY::read), 11U);
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(OffsetXY(0, 0)), 12U);
  }
}

TEST(OffsetXY, HasItsMembersInOrder)
{
  EXPECT_EQ(offsetOf(memberOf(XOffset())), 8); // behind the pointer to the virtual operations
  EXPECT_EQ(offsetOf(memberOf(YOffset())), 12);
  EXPECT_EQ(sizeof(OffsetXY), 16U);
  EXPECT_TRUE((std::is_same<decltype(memberOf(XOffset())), ipInt32 OffsetXY::*>::value));
  EXPECT_TRUE((std::is_same<decltype(memberOf(YOffset())), ipInt32 OffsetXY::*>::value));
}

template <class HandWritten>
class ArchivedOffsetXY : public ::testing::Test
{
protected:
  static void putCoordinates(HandWritten& archive, ipInt32 x, ipInt32 y)
  {
    archive.integer("_xOffset", x);
    archive.integer("_yOffset", y);
  }

  static std::string fileOfVersion(ipUInt32 version)
  {
    HandWritten archive;
    putVersion(archive, "orvel::OffsetXY", version);
    putCoordinates(archive, -3, 70000);
    return archive.file();
  }
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedOffsetXY, Formats, );

TYPED_TEST(ArchivedOffsetXY, HoldsItsVersionAndTheCoordinatesInOrder)
{
  EXPECT_EQ(fileOf<TypeParam>([](BaseOArchive& archive) { OffsetXY(-3, 70000).write(archive); }),
            this->fileOfVersion(1));
}

TYPED_TEST(ArchivedOffsetXY, HoldsTheVersionOnceForManyOffsets)
{
  TypeParam expected;
  putVersion(expected, "orvel::OffsetXY", 1);
  for (ipInt32 i = 0; i < 5; ++i)
    this->putCoordinates(expected, i, -i);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  for (ipInt32 i = 0; i < 5; ++i)
                    OffsetXY(i, -i).write(archive);
                }),
            expected.file());
}

TYPED_TEST(ArchivedOffsetXY, IsReportedAsMovedWithoutAMessage)
{
  fileOf<TypeParam>(
      [](BaseOArchive& archive)
      {
        const BoolResult written = OffsetXY(1, 2).write(archive);
        EXPECT_TRUE(written);
        EXPECT_EQ(written.getMessage(), "");
      });
  readFile<TypeParam>(this->fileOfVersion(1),
                      [](BaseIArchive& archive)
                      {
                        OffsetXY offset;
                        const BoolResult read = offset.read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                      });
}

TYPED_TEST(ArchivedOffsetXY, ComesBackWithExtremeCoordinates)
{
  const std::string file = fileOf<TypeParam>(
      [](BaseOArchive& archive)
      {
        OffsetXY(g_lowest, g_highest).write(archive);
        OffsetXY(-1, 0).write(archive);
      });
  readFile<TypeParam>(file,
                      [](BaseIArchive& archive)
                      {
                        OffsetXY first;
                        OffsetXY second;
                        first.read(archive);
                        second.read(archive);
                        EXPECT_TRUE(first == OffsetXY(g_lowest, g_highest));
                        EXPECT_TRUE(second == OffsetXY(-1, 0));
                      });
}

TYPED_TEST(ArchivedOffsetXY, IsReadUnderItsOwnAndALowerVersion)
{
  for (const ipUInt32 version : {0U, 1U})
    readFile<TypeParam>(this->fileOfVersion(version),
                        [version](BaseIArchive& archive)
                        {
                          OffsetXY offset;
                          offset.read(archive);
                          EXPECT_TRUE(offset == OffsetXY(-3, 70000)) << version;
                          EXPECT_EQ(archive.getRegisterClassVersion("orvel::OffsetXY"), version);
                        });
}

TYPED_TEST(ArchivedOffsetXY, TakesTheVersionThatTheArchiveKnows)
{
  TypeParam file;
  this->putCoordinates(file, 8, 9); // no version record
  readFile<TypeParam>(file.file(),
                      [](BaseIArchive& archive)
                      {
                        archive.registerClassVersion("orvel::OffsetXY", 1);
                        OffsetXY offset;
                        offset.read(archive);
                        EXPECT_TRUE(offset == OffsetXY(8, 9));
                      });
}

TYPED_TEST(ArchivedOffsetXY, OfAHigherVersionIsRefusedAndChangesNothing)
{
  readStart<TypeParam>(this->fileOfVersion(2),
                       [](BaseIArchive& archive)
                       {
                         OffsetXY offset(5, 6);
                         EXPECT_THROW(offset.read(archive), ORVELSerializationException);
                         EXPECT_TRUE(offset == OffsetXY(5, 6));
                         EXPECT_FALSE(archive.isClassVersionRegistred("orvel::OffsetXY"));
                       });
}

TYPED_TEST(ArchivedOffsetXY, KeepsWhatWasReadBeforeAFailure)
{
  TypeParam file;
  putVersion(file, "orvel::OffsetXY", 1);
  file.integer("_xOffset", 77);
  readStart<TypeParam>(file.file(),
                       [](BaseIArchive& archive)
                       {
                         OffsetXY offset(5, 6);
                         EXPECT_THROW(offset.read(archive), ORVELSerializationException);
                         EXPECT_TRUE(offset == OffsetXY(77, 6));
                       });
}

TYPED_TEST(ArchivedOffsetXY, RefusesACoordinateBeyond32Bits)
{
  TypeParam file;
  putVersion(file, "orvel::OffsetXY", 1);
  file.integer("_xOffset", 2147483648);
  file.integer("_yOffset", 0);
  readStart<TypeParam>(file.file(),
                       [](BaseIArchive& archive)
                       {
                         OffsetXY offset(5, 6);
                         EXPECT_THROW(offset.read(archive), ORVELSerializationException);
                         EXPECT_TRUE(offset == OffsetXY(5, 6));
                       });
}

TEST(OffsetXYFile, IsThisXmlText)
{
  EXPECT_EQ(fileOf<HandWrittenXml>([](BaseOArchive& archive) { OffsetXY(-3, 70000).write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::OffsetXY">
    <item key="version">1</item>
  </section>
  <item key="_xOffset">-3</item>
  <item key="_yOffset">70000</item>
</orvelArchive>
)");
}

TEST(OffsetXYFile, IsTheseBytes)
{
  const std::string file =
      fileOf<HandWrittenBinary>([](BaseOArchive& archive) { OffsetXY(-3, 70000).write(archive); });
  const char bytes[] = "\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little" // format, its version, byte order
                       "\x9F\x01\xFF"                            // section with the class version
                       "\x22\x1A\x00\x01\x11\x70"                // -3, 70000
                       "\x83\x63"
                       "end\x18\x1B\x1B"; // 27 bytes stand before this; the 8 bytes of the hash follow
  const std::string start(bytes, sizeof bytes - 1);
  EXPECT_EQ(file.substr(0, start.size()), start);
  EXPECT_EQ(file.size(), start.size() + 8);
}

} // namespace
