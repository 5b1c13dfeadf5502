#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ORVELBaseData/Pattern/OffsetXY.h"
#include "ORVELBaseData/Pattern/OffsetXYZ.h"
#include "OffsetTesting.h"
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>

// Both classes under the same tests. Coordinates are given for x, y and z; an offset of the plane has no z.
namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipInt32 g_lowest = std::numeric_limits<ipInt32>::min();
constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();
constexpr ipInt32 g_filled = 0x5A5A5A5A; // the bytes of memory that nobody has set

template <class OffsetType>
class Offset : public ::testing::Test
{
protected:
  static OffsetType at(ipInt32 x, ipInt32 y, ipInt32 z) { return OffsetTraits<OffsetType>::at({x, y, z}); }

  static void expectAt(const OffsetType& offset, Coordinates place)
  {
    if (OffsetTraits<OffsetType>::nbAxes == 2)
      place[2] = 0;
    EXPECT_EQ(OffsetTraits<OffsetType>::placeOf(offset), place);
  }
};

using Offsets = ::testing::Types<OffsetXY, OffsetXYZ>;

struct OffsetNames
{
  template <class OffsetType>
  static std::string GetName(int)
  {
    return OffsetTraits<OffsetType>::name;
  }
};

TYPED_TEST_SUITE(Offset, Offsets, OffsetNames);

TYPED_TEST(Offset, StoresTheArgumentsInFieldOrder)
{
  this->expectAt(this->at(3, -2, 7), {3, -2, 7});
}

TYPED_TEST(Offset, ReturnsItsCoordinatesByValue)
{
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getXOffset), ipInt32 (TypeParam::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getYOffset), ipInt32 (TypeParam::*)() const>::value));
}

TEST(OffsetXYZ, ReturnsItsThirdCoordinateByValue)
{
  EXPECT_TRUE((std::is_same<decltype(&OffsetXYZ::getZOffset), ipInt32 (OffsetXYZ::*)() const>::value));
}

TYPED_TEST(Offset, TakesAnyNumbers)
{
  this->expectAt(this->at(g_lowest, g_highest, 0), {g_lowest, g_highest, 0});
  this->expectAt(this->at(0, g_lowest, g_highest), {0, g_lowest, g_highest});
  this->expectAt(this->at(0, 0, 0), {0, 0, 0});
}

TYPED_TEST(Offset, IsNotZeroedByItsDefaultConstructor)
{
  alignas(TypeParam) unsigned char memory[sizeof(TypeParam)];
  std::memset(memory, 0x5A, sizeof memory);
  asm volatile("" : : "r"(memory) : "memory"); // the compiler may not know what the memory holds
  TypeParam* const offset = new (memory) TypeParam();
  asm volatile("" : : "r"(memory) : "memory");
  this->expectAt(*offset, {g_filled, g_filled, g_filled});
  offset->~TypeParam();
}

TYPED_TEST(Offset, IsNotZeroedWhenItIsCreatedByItsClass)
{
  fillBlocksWith(0x5A);
  const std::unique_ptr<TypeParam> byClass(TypeParam::createNewObject());
  const boost::shared_ptr<TypeParam> sharedByClass = TypeParam::createSharedObject();
  const std::unique_ptr<BaseDynamicObject> byObject(byClass->createNew());
  const DynamicObjectPtr sharedByObject = byClass->createShared();
  fillNoBlocks();
  for (const BaseDynamicObject* object : {static_cast<const BaseDynamicObject*>(byClass.get()),
                                          static_cast<const BaseDynamicObject*>(sharedByClass.get()),
                                          static_cast<const BaseDynamicObject*>(byObject.get()),
                                          static_cast<const BaseDynamicObject*>(sharedByObject.get())})
  {
    const auto* const offset = dynamic_cast<const TypeParam*>(object);
    ASSERT_NE(offset, nullptr);
    this->expectAt(*offset, {g_filled, g_filled, g_filled});
  }
}

/// Expects the places in ascending order.
template <class OffsetType>
void expectAscending(const std::vector<Coordinates>& places)
{
  for (std::size_t i = 0; i < places.size(); ++i)
    for (std::size_t j = 0; j < places.size(); ++j)
    {
      const OffsetType left = OffsetTraits<OffsetType>::at(places[i]);
      const OffsetType right = OffsetTraits<OffsetType>::at(places[j]);
      EXPECT_EQ(left < right, i < j) << i << " " << j;
      EXPECT_EQ(left == right, i == j) << i << " " << j;
    }
}

TYPED_TEST(Offset, OrdersByYBeforeX)
{
  expectAscending<TypeParam>({{0, 0, 3}, {1, 0, 3}, {0, 1, 3}, {1, 1, 3}});
}

TEST(OffsetXYZ, OrdersByZBeforeYBeforeX)
{
  expectAscending<OffsetXYZ>({{5, 5, 0}, {0, 0, 1}, {1, 0, 1}, {0, 2, 1}, {0, 2, 3}});
}

TYPED_TEST(Offset, OrdersSignedValues)
{
  expectAscending<TypeParam>(
      {{g_highest, g_lowest, 0}, {1, -1, 0}, {-1, 0, 0}, {0, 0, 0}, {g_lowest, g_highest, 0}});
}

TEST(OffsetXYZ, OrdersSignedValuesOfZ)
{
  expectAscending<OffsetXYZ>(
      {{g_highest, g_highest, g_lowest}, {1, 1, -1}, {1, -1, 0}, {g_lowest, g_lowest, g_highest}});
}

TYPED_TEST(Offset, IsNeitherLessNorGreaterThanAnEqualOne)
{
  EXPECT_FALSE(this->at(4, -7, 1) < this->at(4, -7, 1));
  EXPECT_TRUE(this->at(4, -7, 1) == this->at(4, -7, 1));
}

template <class OffsetType>
void expectWalk(const std::vector<Coordinates>& shuffled, const std::vector<Coordinates>& expected)
{
  std::set<OffsetType> offsets;
  for (const Coordinates& place : shuffled)
    offsets.insert(OffsetTraits<OffsetType>::at(place));
  std::vector<Coordinates> walked;
  for (const OffsetType& offset : offsets)
    walked.push_back(OffsetTraits<OffsetType>::placeOf(offset));
  EXPECT_EQ(walked, expected);
}

TYPED_TEST(Offset, IsWalkedInRasterOrder)
{
  expectWalk<TypeParam>({{1, 1, 0}, {-1, 1, 0}, {0, 0, 0}, {1, -1, 0}, {-1, -1, 0}},
                        {{-1, -1, 0}, {1, -1, 0}, {0, 0, 0}, {-1, 1, 0}, {1, 1, 0}});
}

TEST(OffsetXYZ, IsWalkedPlaneByPlane)
{
  expectWalk<OffsetXYZ>({{0, 0, 1}, {1, 1, -1}, {-1, 1, -1}, {5, -5, 0}, {1, -1, -1}},
                        {{1, -1, -1}, {-1, 1, -1}, {1, 1, -1}, {5, -5, 0}, {0, 0, 1}});
}

TYPED_TEST(Offset, EqualsOnlyIfEveryCoordinateDoes)
{
  EXPECT_TRUE(this->at(1, 2, 3) == this->at(1, 2, 3));
  EXPECT_FALSE(this->at(1, 2, 3) == this->at(0, 2, 3));
  EXPECT_FALSE(this->at(1, 2, 3) == this->at(1, 0, 3));
  EXPECT_FALSE(this->at(1, 2, 3) == this->at(2, 1, 3));
  EXPECT_EQ(this->at(1, 2, 3) == this->at(1, 2, 0), OffsetTraits<TypeParam>::nbAxes == 2);
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

TYPED_TEST(Offset, HasNoOperatorNotEqual)
{
  EXPECT_FALSE(HasNotEqual<TypeParam>::value);
}
#endif

TYPED_TEST(Offset, HasNoHash)
{
  EXPECT_FALSE(std::is_default_constructible<std::hash<TypeParam>>::value);
}

TYPED_TEST(Offset, HasItsFrameIdentity)
{
  EXPECT_EQ(TypeParam::getTypeName(), std::string("orvel::") + OffsetTraits<TypeParam>::name);
  EXPECT_EQ(TypeParam::getVersion(), 1U);
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, TypeParam>::value));
}

TEST(OffsetXYZ, DoesNotDeriveFromOffsetXY)
{
  EXPECT_FALSE((std::is_base_of<OffsetXY, OffsetXYZ>::value));
}

template <class OffsetType>
struct CountingOffset : OffsetType
{
  using OffsetType::OffsetType;

  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    OffsetType::copy(other);
  }

  int nbCopies = 0;
};

TYPED_TEST(Offset, IsAssignedByItsVirtualCopy)
{
  CountingOffset<TypeParam> derived;
  TypeParam& offset = derived;
  EXPECT_EQ(&(offset = this->at(5, -6, 7)), &offset);
  EXPECT_EQ(derived.nbCopies, 1);
  EXPECT_TRUE(offset == this->at(5, -6, 7));
}

template <class OffsetAndFormat>
class ArchivedOffset : public ::testing::Test
{
protected:
  using OffsetType = typename OffsetAndFormat::first_type;
  using HandWritten = typename OffsetAndFormat::second_type;
  using Traits = OffsetTraits<OffsetType>;

  static std::string className() { return std::string("orvel::") + Traits::name; }
  static OffsetType at(ipInt32 x, ipInt32 y, ipInt32 z) { return Traits::at({x, y, z}); }

  /// \param nbAxes how many of the coordinates, at most those that there are
  static void putCoordinates(HandWritten& archive, const std::array<std::int64_t, 3>& place,
                             std::size_t nbAxes = 3)
  {
    const char* const keys[] = {"_xOffset", "_yOffset", "_zOffset"};
    for (std::size_t axis = 0; axis < nbAxes && axis < Traits::nbAxes; ++axis)
      archive.integer(keys[axis], place[axis]);
  }

  static HandWritten makeFile(ipUInt32 version, const std::array<std::int64_t, 3>& place,
                              std::size_t nbAxes = 3)
  {
    HandWritten archive;
    putVersion(archive, className(), version);
    putCoordinates(archive, place, nbAxes);
    return archive;
  }

  static std::string fileOf(const std::vector<OffsetType>& offsets)
  {
    return test::fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          for (const OffsetType& offset : offsets)
          {
            const BoolResult written = offset.write(archive);
            EXPECT_TRUE(written);
            EXPECT_EQ(written.getMessage(), "");
          }
        });
  }

  /// Expects that these offsets, and nothing else, are in a file.
  static void expectRead(const std::string& file, const std::vector<OffsetType>& expected)
  {
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            for (const OffsetType& each : expected)
                            {
                              OffsetType offset;
                              const BoolResult read = offset.read(archive);
                              EXPECT_TRUE(read);
                              EXPECT_EQ(read.getMessage(), "");
                              EXPECT_TRUE(offset == each);
                            }
                          });
  }

  /// Expects that a file is refused, and that an offset of (5, 6, 7) is this one afterwards.
  static void expectRefused(const HandWritten& file, const OffsetType& left, bool isVersionKnown = true)
  {
    readStart<HandWritten>(file.file(),
                           [&](BaseIArchive& archive)
                           {
                             OffsetType offset = at(5, 6, 7);
                             EXPECT_THROW(offset.read(archive), ORVELSerializationException);
                             EXPECT_TRUE(offset == left);
                             EXPECT_EQ(archive.isClassVersionRegistred(className()), isVersionKnown);
                           });
  }
};

using OffsetsAndFormats =
    ::testing::Types<std::pair<OffsetXY, HandWrittenXml>, std::pair<OffsetXY, HandWrittenBinary>,
                     std::pair<OffsetXYZ, HandWrittenXml>, std::pair<OffsetXYZ, HandWrittenBinary>>;
TYPED_TEST_SUITE(ArchivedOffset, OffsetsAndFormats, );

TYPED_TEST(ArchivedOffset, HoldsItsVersionAndTheCoordinatesInOrder)
{
  EXPECT_EQ(this->fileOf({this->at(-3, 70000, -300)}), this->makeFile(1, {-3, 70000, -300}).file());
}

TYPED_TEST(ArchivedOffset, ComesBackWithExtremeCoordinates)
{
  const auto offsets = {this->at(g_lowest, g_highest, 0), this->at(0, g_lowest, g_highest),
                        this->at(-1, 0, 1)};
  this->expectRead(this->fileOf(offsets), offsets);
}

TYPED_TEST(ArchivedOffset, IsReadUnderItsOwnAndALowerVersion)
{
  for (const ipUInt32 version : {0U, 1U})
  {
    const auto file = this->makeFile(version, {-3, 70000, -300});
    this->expectRead(file.file(), {this->at(-3, 70000, -300)});
    readStart<typename TypeParam::second_type>(file.file(),
                                               [&](BaseIArchive& archive)
                                               {
                                                 typename TypeParam::first_type().read(archive);
                                                 EXPECT_EQ(archive.getRegisterClassVersion(this->className()),
                                                           version);
                                               });
  }
}

TYPED_TEST(ArchivedOffset, TakesTheVersionThatTheArchiveKnows)
{
  typename TypeParam::second_type file;
  this->putCoordinates(file, {8, 9, 10}); // no version record
  readFile<typename TypeParam::second_type>(file.file(),
                                            [this](BaseIArchive& archive)
                                            {
                                              archive.registerClassVersion(this->className(), 1);
                                              typename TypeParam::first_type offset;
                                              offset.read(archive);
                                              EXPECT_TRUE(offset == this->at(8, 9, 10));
                                            });
}

TYPED_TEST(ArchivedOffset, KeepsWhatWasReadBeforeAFailure)
{
  this->expectRefused(this->makeFile(1, {}, 0), this->at(5, 6, 7));
  this->expectRefused(this->makeFile(1, {77}, 1), this->at(77, 6, 7));
  if (TestFixture::Traits::nbAxes == 3)
    this->expectRefused(this->makeFile(1, {77, 88}, 2), this->at(77, 88, 7));
}

TYPED_TEST(ArchivedOffset, RefusesACoordinateBeyond32Bits)
{
  this->expectRefused(this->makeFile(1, {2147483648, 0, 0}), this->at(5, 6, 7));
  this->expectRefused(this->makeFile(1, {0, -2147483649, 0}), this->at(0, 6, 7));
}

} // namespace
