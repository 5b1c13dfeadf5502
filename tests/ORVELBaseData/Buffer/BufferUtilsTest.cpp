#include "ORVELBaseData/Buffer/BufferUtils.h"

#include <cfenv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <support/FailingAllocation.h>
#include <support/LockRecorder.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipReal64 g_infinity = std::numeric_limits<ipReal64>::infinity();
constexpr unsigned char g_guard = 0xA5;

const std::vector<ipUInt64> g_noEnumerators = {12, 13, 0x100000000, 0x100000001, 0xFFFFFFFFFFFFFFFF};

/// The number with these bits.
template <class T, class Bits>
T fromBits(Bits bits)
{
  static_assert(sizeof(T) == sizeof(Bits));
  T value;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

/// The 1, 2, 4 or 8 bytes at an address as a number.
ipUInt64 bitsAt(const void* address, ipUInt64 size)
{
  ipUInt64 bits = 0;
  std::memcpy(&bits, address, size); // the lowest byte is the first one on the machines the kit is made for
  return bits;
}

/// Fills through the run-time form, and returns the bits of the elements if they are all the same and
/// everything around them is untouched.
ipUInt64 bitsOfFill(ipReal64 value, const eDataType& dataType)
{
  constexpr ipUInt64 nbElements = 9;
  const ipUInt64 size = getBufferBaseSize(dataType);
  std::vector<unsigned char> memory(8 + nbElements * size + 8, g_guard);
  unsigned char* const begin = memory.data() + 8;
  unsigned char* const end = begin + nbElements * size;
  setBufferValues(value, dataType, nbElements, begin);
  for (ipUInt64 i = 0; i < 8; ++i)
  {
    EXPECT_EQ(memory[i], g_guard) << "before the elements";
    EXPECT_EQ(end[i], g_guard) << "behind the elements";
  }
  const ipUInt64 bits = bitsAt(begin, size);
  for (ipUInt64 i = 1; i < nbElements; ++i)
    EXPECT_EQ(bitsAt(begin + i * size, size), bits) << "element " << i;
  return bits;
}

constexpr const char* g_copy =
    "void orvel::copyBuffer(void*, const orvel::eDataType&, orvel::ipUInt64, const void*)";
constexpr const char* g_mirror =
    "void orvel::copyBufferMiror(void*, const orvel::eDataType&, orvel::ipUInt64, const void*)";
constexpr const char* g_fill =
    "void orvel::setBufferValues(orvel::ipReal64, const orvel::eDataType&, orvel::ipUInt64, void*)";

/// Runs an operation on elements of a type that it refuses, and looks at all that has to come of it.
template <class Operation>
void expectRefusal(const eDataType& dataType, ipUInt64 nbElements, const std::string& function,
                   Operation operation)
{
  SCOPED_TRACE(dataType.getValue());
  std::vector<unsigned char> dst(64, g_guard);
  const std::vector<unsigned char> src(64, 1);
  const BaseException failure = expectRaised<ORVELBaseDataException>(
      [&] { operation(dst.data() + 16, dataType, nbElements, src.data()); },
      {"Invalid buffer type eDT_None", function, "ORVELBaseData/Buffer/BufferUtils.cpp", "",
       "raiseTypeOfNone"});
  EXPECT_EQ(failure.getFunction(), function); // with every compiler
  EXPECT_EQ(dst, std::vector<unsigned char>(64, g_guard));
}

const auto g_copyAtRunTime = [](void* dst, const eDataType& dataType, ipUInt64 nbElements, const void* src)
{
  copyBuffer(dst, dataType, nbElements, src);
};
const auto g_mirrorAtRunTime = [](void* dst, const eDataType& dataType, ipUInt64 nbElements, const void* src)
{
  copyBufferMiror(dst, dataType, nbElements, src);
};
const auto g_fillAtRunTime =
    [](void* dst, const eDataType& dataType, ipUInt64 nbElements, const void* /*src*/)
{
  setBufferValues(7.0, dataType, nbElements, dst);
};

/// As the contract words it: forward in the source, backward in the destination, no temporary.
template <class T>
void mirrorInOneDirection(T* dst, ipUInt64 nbElements, const T* src)
{
  for (ipUInt64 i = 0; i < nbElements; ++i)
    dst[nbElements - 1 - i] = src[i];
}

// Sizes

TEST(GetBufferBaseSize, GivesTheBytesOfEachElementType)
{
  const std::vector<std::pair<eDataType::domain, ipUInt32>> sizes = {
      {eDataType::eDT_Bool, 1},   {eDataType::eDT_Int8, 1},   {eDataType::eDT_UInt8, 1},
      {eDataType::eDT_Int16, 2},  {eDataType::eDT_UInt16, 2}, {eDataType::eDT_Int32, 4},
      {eDataType::eDT_UInt32, 4}, {eDataType::eDT_Int64, 8},  {eDataType::eDT_UInt64, 8},
      {eDataType::eDT_Real32, 4}, {eDataType::eDT_Real64, 8}};
  for (const auto& [dataType, size] : sizes)
    EXPECT_EQ(getBufferBaseSize(dataType), size) << eDataType(dataType).getText();
}

TEST(GetBufferBaseSize, OfNoneIs0AndOfBoolIs1)
{
  EXPECT_EQ(getBufferBaseSize(eDataType::eDT_None), 0U);
  EXPECT_EQ(getBufferBaseSize(eDataType::eDT_Bool), 1U);
}

TEST(GetBufferBaseSize, Is0ForEveryValueThatIsNoEnumerator)
{
  for (const ipUInt64 value : g_noEnumerators)
    EXPECT_EQ(getBufferBaseSize(eDataType(value)), 0U) << value;
}

TEST(GetBufferBaseSize, ReturnsA32BitNumber)
{
  EXPECT_TRUE((std::is_same<decltype(getBufferBaseSize(eDataType::eDT_Bool)), ipUInt32>::value));
}

// Refusals

TEST(CopyBuffer, RefusesNone)
{
  expectRefusal(eDataType::eDT_None, 4, g_copy, g_copyAtRunTime);
  expectRefusal(eDataType::eDT_None, 0, g_copy, g_copyAtRunTime);
}

TEST(CopyBufferMiror, RefusesNone)
{
  expectRefusal(eDataType::eDT_None, 4, g_mirror, g_mirrorAtRunTime);
  expectRefusal(eDataType::eDT_None, 0, g_mirror, g_mirrorAtRunTime);
}

TEST(SetBufferValues, RefusesNone)
{
  expectRefusal(eDataType::eDT_None, 4, g_fill, g_fillAtRunTime);
  expectRefusal(eDataType::eDT_None, 0, g_fill, g_fillAtRunTime);
}

TEST(CopyBufferMiror, RefusesWhatIsNoEnumeratorAsNone)
{
  for (const ipUInt64 value : g_noEnumerators)
    expectRefusal(eDataType(value), 4, g_mirror, g_mirrorAtRunTime);
}

TEST(SetBufferValues, RefusesWhatIsNoEnumeratorAsNone)
{
  for (const ipUInt64 value : g_noEnumerators)
    expectRefusal(eDataType(value), 4, g_fill, g_fillAtRunTime);
}

TEST(CopyBuffer, CopiesNothingOfATypeThatIsNoEnumerator)
{
  for (const ipUInt64 value : g_noEnumerators)
  {
    const std::vector<unsigned char> src(64, 1);
    std::vector<unsigned char> dst(64, g_guard);
    copyBuffer(dst.data(), eDataType(value), 8, src.data());
    EXPECT_EQ(dst, std::vector<unsigned char>(64, g_guard)) << value;
  }
}

// Copies

TEST(CopyBuffer, CopiesBytes)
{
  const unsigned char src[] = {1, 2, 3, 4, 5};
  unsigned char dst[] = {9, 9, 9, 9, 9};
  copyBuffer(static_cast<void*>(dst + 1), 3, static_cast<const void*>(src));
  EXPECT_EQ(std::vector<unsigned char>(dst, dst + 5), (std::vector<unsigned char>{9, 1, 2, 3, 9}));
}

/// Copies the first bytes of one array to another through the form that counts bytes.
template <class T>
void expectCopiedAsBytes()
{
  unsigned char bytes[4 * sizeof(T)];
  for (ipUInt64 i = 0; i < sizeof(bytes); ++i)
    bytes[i] = static_cast<unsigned char>(i + 1);
  T src[4];
  std::memcpy(src, bytes, sizeof(src));
  T dst[4];
  std::memset(dst, g_guard, sizeof(dst));
  copyBuffer(dst, 3, src); // 3 bytes, whatever the size of T
  EXPECT_EQ(std::memcmp(dst, bytes, 3), 0);
  for (ipUInt64 i = 3; i < sizeof(dst); ++i)
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(dst)[i], g_guard) << i;
}

TEST(CopyBuffer, CopiesBytesBetweenPointersToAnyOtherType)
{
  struct Pixel
  {
    ipUInt8 red;
    ipUInt8 green;
    ipUInt8 blue;
  };
  expectCopiedAsBytes<char>();
  expectCopiedAsBytes<std::byte>();
  expectCopiedAsBytes<Pixel>();
  expectCopiedAsBytes<Pixel*>();
  expectCopiedAsBytes<long long>(); // as long as ipInt64, but another type
}

TEST(CopyBuffer, CountsElementsOfTheElevenTypesOnly)
{
  static_assert(isElementType<ipBool> && isElementType<ipInt8> && isElementType<ipUInt8> &&
                isElementType<ipInt16> && isElementType<ipUInt16> && isElementType<ipInt32> &&
                isElementType<ipUInt32> && isElementType<ipInt64> && isElementType<ipUInt64> &&
                isElementType<ipReal32> && isElementType<ipReal64>);
  static_assert(!isElementType<char> && !isElementType<std::byte> && !isElementType<long long> &&
                !isElementType<unsigned long long> && !isElementType<wchar_t> && !isElementType<void*>);
  const ipInt32 src[2] = {1, 2};
  ipInt32 dst[2] = {};
  copyBuffer(dst, 2, src);
  EXPECT_EQ(dst[1], 2);
  copyBuffer(static_cast<void*>(dst), 4, src + 1); // bytes, as one pointer is to no type
  EXPECT_EQ(dst[0], 2);
  EXPECT_EQ(dst[1], 2);
}

TEST(CopyBuffer, CopiesASingleByte)
{
  const char src[] = "ab";
  char dst[] = "xy";
  copyBuffer(static_cast<void*>(dst), 1, static_cast<const void*>(src));
  EXPECT_STREQ(dst, "ay");
}

TEST(CopyBuffer, CopiesElementsOfARunTimeType){
#define ORVEL_TEST_COPY(Name)                                                                                \
  {                                                                                                          \
    std::vector<unsigned char> src(8 * sizeof(ip##Name));                                                    \
    for (std::size_t i = 0; i < src.size(); ++i)                                                             \
      src[i] = static_cast<unsigned char>(i + 1);                                                            \
    std::vector<unsigned char> dst(src.size(), g_guard);                                                     \
    copyBuffer(dst.data(), eDataType(eDataType::eDT_##Name), 3, src.data());                                 \
    std::vector<unsigned char> expected(src.size(), g_guard);                                                \
    for (std::size_t i = 0; i < 3 * sizeof(ip##Name); ++i)                                                   \
      expected[i] = src[i];                                                                                  \
    EXPECT_EQ(dst, expected) << #Name;                                                                       \
  }
    ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_TEST_COPY)
#undef ORVEL_TEST_COPY
}

TEST(CopyBuffer, CountsTheBytesIn64BitsThatWrapAround)
{
  constexpr ipUInt64 nbElements = ipUInt64{1} << 61U; // of 8 bytes: 2^64
  const ipReal64 src[] = {1, 2};
  ipReal64 dst[] = {8, 9};
  copyBuffer(dst, eDataType(eDataType::eDT_Real64), nbElements, src);
  EXPECT_EQ(std::vector<ipReal64>(dst, dst + 2), (std::vector<ipReal64>{8, 9}));
  copyBuffer(dst, eDataType(eDataType::eDT_Real64), nbElements + 1, src);
  EXPECT_EQ(std::vector<ipReal64>(dst, dst + 2), (std::vector<ipReal64>{1, 9}));
}

// With no elements

TEST(RawBlockOperations, TouchNothingAndTakeNullWithNoElements)
{
  unsigned char byte = g_guard;
  const unsigned char other = 1;
  copyBuffer(static_cast<void*>(&byte), 0, static_cast<const void*>(&other));
  copyBuffer(static_cast<void*>(nullptr), 0, static_cast<const void*>(nullptr));
#define ORVEL_TEST_NO_ELEMENTS(Name)                                                                         \
  {                                                                                                          \
    const eDataType dataType(eDataType::eDT_##Name);                                                         \
    copyBuffer(&byte, dataType, 0, &other);                                                                  \
    copyBuffer(nullptr, dataType, 0, nullptr);                                                               \
    copyBufferMiror(&byte, dataType, 0, &other);                                                             \
    copyBufferMiror(nullptr, dataType, 0, nullptr);                                                          \
    setBufferValues(1.0, dataType, 0, &byte);                                                                \
    setBufferValues(1.0, dataType, 0, nullptr);                                                              \
    auto element = ip##Name(1);                                                                              \
    const auto otherElement = ip##Name(0);                                                                   \
    ip##Name* const null = nullptr;                                                                          \
    const ip##Name* const constNull = nullptr;                                                               \
    copyBuffer<ip##Name>(&element, 0, &otherElement);                                                        \
    copyBuffer<ip##Name>(null, 0, constNull);                                                                \
    copyBufferMiror<ip##Name>(&element, 0, &otherElement);                                                   \
    copyBufferMiror<ip##Name>(null, 0, constNull);                                                           \
    setBufferValues<ip##Name>(otherElement, 0, &element);                                                    \
    setBufferValues<ip##Name>(otherElement, 0, null);                                                        \
    EXPECT_EQ(element, ip##Name(1)) << #Name;                                                                \
  }
  ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_TEST_NO_ELEMENTS)
#undef ORVEL_TEST_NO_ELEMENTS
  EXPECT_EQ(byte, g_guard);
}

// The templates, for each of the eleven types

template <class T>
class TypedBlockOperations : public ::testing::Test
{
protected:
  /// Different elements, as far as T has so many.
  static std::vector<unsigned char> makeBytes(std::size_t nbElements)
  {
    std::vector<unsigned char> bytes(nbElements * sizeof(T));
    for (std::size_t i = 0; i < bytes.size(); ++i)
      bytes[i] = static_cast<unsigned char>(std::is_same<T, bool>::value ? i % 3 == 0 : i * 7 + 1);
    return bytes;
  }
};

using ElementTypes = ::testing::Types<ipBool, ipInt8, ipUInt8, ipInt16, ipUInt16, ipInt32, ipUInt32, ipInt64,
                                      ipUInt64, ipReal32, ipReal64>;
TYPED_TEST_SUITE(TypedBlockOperations, ElementTypes, );

TYPED_TEST(TypedBlockOperations, CopyMirrorAndFillEachElement)
{
  using T = TypeParam;
  constexpr std::size_t nbElements = 77;
  const std::vector<unsigned char> bytes = this->makeBytes(nbElements);
  T src[nbElements];
  std::memcpy(src, bytes.data(), bytes.size());
  T dst[nbElements + 2];

  std::memset(static_cast<void*>(dst), 0, sizeof(dst));
  copyBuffer(dst + 1, nbElements, src);
  EXPECT_EQ(std::memcmp(dst + 1, src, sizeof(src)), 0);
  EXPECT_EQ(dst[0], T());
  EXPECT_EQ(dst[nbElements + 1], T());

  for (const bool atRunTime : {false, true})
  {
    SCOPED_TRACE(atRunTime);
    const eDataType dataType(ElementType<T>::dataType);
    std::memset(static_cast<void*>(dst), 0, sizeof(dst));
    if (atRunTime)
      copyBufferMiror(static_cast<void*>(dst + 1), dataType, nbElements, static_cast<const void*>(src));
    else
      copyBufferMiror(dst + 1, nbElements, src);
    for (std::size_t i = 0; i < nbElements; ++i)
      EXPECT_EQ(std::memcmp(dst + nbElements - i, src + i, sizeof(T)), 0) << i;
    EXPECT_EQ(dst[0], T());
    EXPECT_EQ(dst[nbElements + 1], T());

    std::memset(static_cast<void*>(dst), 0, sizeof(dst));
    if (atRunTime)
      setBufferValues(1.0, dataType, nbElements, static_cast<void*>(dst + 1));
    else
      setBufferValues(T(1), nbElements, dst + 1);
    for (std::size_t i = 1; i <= nbElements; ++i)
      EXPECT_EQ(dst[i], T(1)) << i;
    EXPECT_EQ(dst[0], T());
    EXPECT_EQ(dst[nbElements + 1], T());
  }
}

TYPED_TEST(TypedBlockOperations, FillWithAnyValueOfTheType)
{
  using T = TypeParam;
  for (const T value : {std::numeric_limits<T>::lowest(), std::numeric_limits<T>::min(), T(0), T(1),
                        std::numeric_limits<T>::max()})
    for (std::size_t nbElements = 1; nbElements < 40; ++nbElements)
    {
      std::vector<unsigned char> memory((nbElements + 1) * sizeof(T), g_guard);
      T elements[40];
      setBufferValues(value, nbElements, elements);
      std::memcpy(memory.data(), elements, nbElements * sizeof(T));
      for (std::size_t i = 0; i < nbElements; ++i)
        ASSERT_EQ(std::memcmp(memory.data() + i * sizeof(T), &value, sizeof(T)), 0) << nbElements;
    }
}

TYPED_TEST(TypedBlockOperations, MirrorOverlappingRangesInOneDirection)
{
  using T = TypeParam;
  constexpr int nbElements = 50;
  constexpr int margin = 60;
  const std::vector<unsigned char> bytes = this->makeBytes(nbElements + 2 * margin);
  for (int distance = -margin; distance <= margin; ++distance)
  {
    T expected[nbElements + 2 * margin];
    T found[nbElements + 2 * margin];
    std::memcpy(expected, bytes.data(), bytes.size());
    std::memcpy(found, bytes.data(), bytes.size());
    mirrorInOneDirection(expected + margin + distance, nbElements, expected + margin);
    copyBufferMiror(found + margin + distance, nbElements, found + margin);
    ASSERT_EQ(std::memcmp(found, expected, sizeof(found)), 0) << "distance " << distance;
  }
}

TYPED_TEST(TypedBlockOperations, MirrorDisjointRangesOfAllLengthsAsTheLoopDoes)
{
  using T = TypeParam;
  const std::vector<unsigned char> bytes = this->makeBytes(300);
  T src[300];
  std::memcpy(src, bytes.data(), bytes.size());
  for (std::size_t nbElements = 0; nbElements <= 300; ++nbElements)
  {
    T expected[301] = {};
    T found[301] = {};
    mirrorInOneDirection(expected, nbElements, src);
    copyBufferMiror(found, nbElements, src);
    ASSERT_EQ(std::memcmp(found, expected, sizeof(found)), 0) << nbElements;
  }
}

TEST(CopyBufferMiror, GivesWhatTheLoopGivesAtEveryDistanceInBytes)
{
  // Overlapping, touching and disjoint ranges, also where elements of one lie across those of the other.
  for (const auto dataType :
       {eDataType::eDT_UInt8, eDataType::eDT_UInt16, eDataType::eDT_UInt32, eDataType::eDT_UInt64})
  {
    const ipUInt64 size = getBufferBaseSize(dataType);
    for (const ipUInt64 nbElements : {ipUInt64{3}, 96 / size, 264 / size})
      for (int distance = -300; distance <= 300; ++distance)
      {
        std::vector<unsigned char> expected(900);
        for (std::size_t i = 0; i < expected.size(); ++i)
          expected[i] = static_cast<unsigned char>(i * 131 + i / 256);
        std::vector<unsigned char> found = expected;
        for (ipUInt64 i = 0; i < nbElements; ++i)
        {
          const ipUInt64 element = bitsAt(expected.data() + 300 + i * size, size);
          std::memcpy(expected.data() + 300 + distance + (nbElements - 1 - i) * size, &element, size);
        }
        copyBufferMiror(found.data() + 300 + distance, eDataType(dataType), nbElements, found.data() + 300);
        ASSERT_EQ(found, expected) << nbElements << " elements of " << size << " at " << distance;
      }
  }
}

TEST(CopyBufferMiror, TurnsThreeElementsRound)
{
  const ipInt16 src[] = {1, 2, 3};
  ipInt16 dst[] = {0, 0, 0};
  copyBufferMiror(dst, 3, src);
  EXPECT_EQ(std::vector<ipInt16>(dst, dst + 3), (std::vector<ipInt16>{3, 2, 1}));
}

TEST(CopyBufferMiror, DoesNotReverseInPlace)
{
  ipInt32 elements[] = {1, 2, 3, 4};
  copyBufferMiror(elements, 4, elements);
  EXPECT_EQ(std::vector<ipInt32>(elements, elements + 4), (std::vector<ipInt32>{1, 2, 2, 1}));

  ipUInt8 bytes[] = {1, 2, 3, 4};
  copyBufferMiror(bytes, eDataType(eDataType::eDT_UInt8), 4, bytes);
  EXPECT_EQ(std::vector<ipUInt8>(bytes, bytes + 4), (std::vector<ipUInt8>{1, 2, 2, 1}));
}

TEST(CopyBufferMiror, TakesElementsAtAnyAddress)
{
  std::vector<unsigned char> src(17);
  for (std::size_t i = 0; i < src.size(); ++i)
    src[i] = static_cast<unsigned char>(i);
  std::vector<unsigned char> dst(19, g_guard);
  copyBufferMiror(dst.data() + 1, eDataType(eDataType::eDT_Int64), 2, src.data() + 1);
  EXPECT_EQ(dst, (std::vector<unsigned char>{g_guard, 9, 10, 11, 12, 13, 14, 15, 16, //
                                             1, 2, 3, 4, 5, 6, 7, 8, g_guard, g_guard}));
}

TEST(RawBlockOperations, AllocateNothingAndTakeNoLock)
{
  if (!canRecordLocks)
    GTEST_SKIP() << "the sanitizers have locks of their own";
  const std::vector<ipInt32> src(100000, 7);
  std::vector<ipInt32> dst(100000);
  const auto moveAll = [&]
  {
    copyBuffer(dst.data(), eDataType::eDT_Int32, dst.size(), src.data());
    copyBufferMiror(dst.data(), eDataType::eDT_Int32, dst.size(), src.data());
    setBufferValues(7.5, eDataType::eDT_Int32, dst.size(), dst.data());
  };
  const std::vector<LockStep> locks = locksOf(moveAll);
  EXPECT_TRUE(locks.empty());
  const std::size_t nbBytes = getAllocatedBytes();
  moveAll();
  EXPECT_EQ(getAllocatedBytes(), nbBytes);
  EXPECT_EQ(dst.back(), 7);
}

TEST(RawBlockOperations, MirrorAndFillBlocksLargerThanTheCaches)
{
  constexpr ipUInt64 nbElements = (ipUInt64{40} << 20U) / sizeof(ipUInt32) + 5;
  std::vector<ipUInt32> src(nbElements);
  for (ipUInt64 i = 0; i < nbElements; ++i)
    src[i] = static_cast<ipUInt32>(i * 2654435761U);
  std::vector<ipUInt32> dst(nbElements + 2, 0xA5A5A5A5);
  copyBufferMiror(dst.data() + 1, nbElements, src.data());
  ipUInt64 nbWrong = 0;
  for (ipUInt64 i = 0; i < nbElements; ++i)
    nbWrong += dst[nbElements - i] != src[i];
  EXPECT_EQ(nbWrong, 0U);
  EXPECT_EQ(dst.front(), 0xA5A5A5A5);
  EXPECT_EQ(dst.back(), 0xA5A5A5A5);

  for (const ipUInt32 value : {0x01020304U, 0U})
  {
    setBufferValues(value, nbElements, dst.data() + 1);
    nbWrong = 0;
    for (ipUInt64 i = 1; i <= nbElements; ++i)
      nbWrong += dst[i] != value;
    EXPECT_EQ(nbWrong, 0U);
    EXPECT_EQ(dst.front(), 0xA5A5A5A5);
    EXPECT_EQ(dst.back(), 0xA5A5A5A5);
  }
}

// Conversions. Expected values by hand: the bits of the elements.

struct Conversion
{
  ipReal64 value;
  ipUInt64 asBool;   ///< eDT_Bool
  ipUInt64 asInt8;   ///< eDT_Int8, eDT_UInt8
  ipUInt64 asInt16;  ///< eDT_Int16, eDT_UInt16
  ipUInt64 asInt32;  ///< eDT_Int32
  ipUInt64 asUInt32; ///< eDT_UInt32
  ipUInt64 asInt64;  ///< eDT_Int64
  ipUInt64 asUInt64; ///< eDT_UInt64
};

constexpr ipUInt64 g_lowest32 = 0x80000000;
constexpr ipUInt64 g_lowest64 = 0x8000000000000000;

const std::vector<Conversion> g_conversions = {
    {0.0, 0, 0, 0, 0, 0, 0, 0},
    {-0.0, 0, 0, 0, 0, 0, 0, 0},
    {0.5, 1, 0, 0, 0, 0, 0, 0},
    {-0.5, 1, 0, 0, 0, 0, 0, 0},
    {0.9999999999999999, 1, 0, 0, 0, 0, 0, 0},
    {4.9406564584124654e-324, 1, 0, 0, 0, 0, 0, 0},  // the smallest denormal number
    {-2.2250738585072009e-308, 1, 0, 0, 0, 0, 0, 0}, // the largest denormal number, negative
    {1.0, 1, 1, 1, 1, 1, 1, 1},
    {-1.0, 1, 0xFF, 0xFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF},
    {3.9, 1, 3, 3, 3, 3, 3, 3},
    {-3.9, 1, 0xFD, 0xFFFD, 0xFFFFFFFD, 0xFFFFFFFD, 0xFFFFFFFFFFFFFFFD, 0xFFFFFFFFFFFFFFFD},
    {127.0, 1, 0x7F, 127, 127, 127, 127, 127},
    {128.0, 1, 0x80, 128, 128, 128, 128, 128},
    {-128.0, 1, 0x80, 0xFF80, 0xFFFFFF80, 0xFFFFFF80, 0xFFFFFFFFFFFFFF80, 0xFFFFFFFFFFFFFF80},
    {-129.0, 1, 0x7F, 0xFF7F, 0xFFFFFF7F, 0xFFFFFF7F, 0xFFFFFFFFFFFFFF7F, 0xFFFFFFFFFFFFFF7F},
    {255.0, 1, 0xFF, 255, 255, 255, 255, 255},
    {256.0, 1, 0, 256, 256, 256, 256, 256},
    {300.0, 1, 44, 300, 300, 300, 300, 300},
    {32767.0, 1, 0xFF, 0x7FFF, 0x7FFF, 0x7FFF, 0x7FFF, 0x7FFF},
    {32768.0, 1, 0, 0x8000, 0x8000, 0x8000, 0x8000, 0x8000},
    {65535.0, 1, 0xFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF},
    {65536.0, 1, 0, 0, 0x10000, 0x10000, 0x10000, 0x10000},
    {2147483647.0, 1, 0xFF, 0xFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF},
    {2147483647.5, 1, 0xFF, 0xFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF},
    {2147483648.0, 1, 0, 0, g_lowest32, 0x80000000, 0x80000000, 0x80000000},
    {2147483649.0, 1, 0, 0, g_lowest32, 0x80000001, 0x80000001,
     0x80000001}, // the low bits of the lowest number
    {-2147483648.0, 1, 0, 0, 0x80000000, 0x80000000, 0xFFFFFFFF80000000, 0xFFFFFFFF80000000},
    {-2147483648.9, 1, 0, 0, 0x80000000, 0x80000000, 0xFFFFFFFF80000000, 0xFFFFFFFF80000000},
    {-2147483649.0, 1, 0, 0, g_lowest32, 0x7FFFFFFF, 0xFFFFFFFF7FFFFFFF, 0xFFFFFFFF7FFFFFFF},
    {4294967295.0, 1, 0, 0, g_lowest32, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
    {4294967296.0, 1, 0, 0, g_lowest32, 0, 0x100000000, 0x100000000},
    {4294967303.5, 1, 0, 0, g_lowest32, 7, 0x100000007, 0x100000007},
    {9007199254740992.0, 1, 0, 0, g_lowest32, 0, 0x20000000000000, 0x20000000000000},          // 2^53
    {9007199254740991.0, 1, 0, 0, g_lowest32, 0xFFFFFFFF, 0x1FFFFFFFFFFFFF, 0x1FFFFFFFFFFFFF}, // 2^53 - 1
    {9223372036854774784.0, 1, 0, 0, g_lowest32, 0xFFFFFC00, 0x7FFFFFFFFFFFFC00,
     0x7FFFFFFFFFFFFC00},                                                             // 2^63 - 1024
    {9223372036854775808.0, 1, 0, 0, g_lowest32, 0, g_lowest64, 0x8000000000000000},  // 2^63
    {9223372036854777856.0, 1, 0, 0, g_lowest32, 0, g_lowest64, 0x8000000000000800},  // 2^63 + 2048
    {-9223372036854775808.0, 1, 0, 0, g_lowest32, 0, g_lowest64, 0x8000000000000000}, // -2^63
    {-9223372036854777856.0, 1, 0, 0, g_lowest32, 0, g_lowest64, g_lowest64},         // -2^63 - 2048
    {18446744073709549568.0, 1, 0, 0, g_lowest32, 0, g_lowest64, 0xFFFFFFFFFFFFF800}, // 2^64 - 2048
    {18446744073709551616.0, 1, 0, 0, g_lowest32, 0, g_lowest64, 0},                  // 2^64
    {1e300, 1, 0, 0, g_lowest32, 0, g_lowest64, 0},
    {-1e300, 1, 0, 0, g_lowest32, 0, g_lowest64, g_lowest64},
    {g_infinity, 1, 0, 0, g_lowest32, 0, g_lowest64, 0},
    {-g_infinity, 1, 0, 0, g_lowest32, 0, g_lowest64, g_lowest64},
    {fromBits<ipReal64>(ipUInt64{0x7FF8000000000000}), 1, 0, 0, g_lowest32, 0, g_lowest64,
     g_lowest64}, // quiet NaN
    {fromBits<ipReal64>(ipUInt64{0xFFF8000000000000}), 1, 0, 0, g_lowest32, 0, g_lowest64, g_lowest64},
    {fromBits<ipReal64>(ipUInt64{0x7FF8000000000001}), 1, 0, 0, g_lowest32, 0, g_lowest64, g_lowest64},
    {fromBits<ipReal64>(ipUInt64{0x7FF0000000000001}), 1, 0, 0, g_lowest32, 0, g_lowest64,
     g_lowest64}, // signalling
    {fromBits<ipReal64>(ipUInt64{0xFFF4000000000000}), 1, 0, 0, g_lowest32, 0, g_lowest64, g_lowest64},
};

/// Holds one column of the table to the run-time form.
void expectConversions(eDataType::domain dataType, ipUInt64 Conversion::*column)
{
  for (const Conversion& conversion : g_conversions)
    EXPECT_EQ(bitsOfFill(conversion.value, dataType), conversion.*column)
        << conversion.value << " as " << eDataType(dataType).getText();
}

TEST(SetBufferValues, ConvertsToBoolByComparisonWith0)
{
  expectConversions(eDataType::eDT_Bool, &Conversion::asBool);
}

TEST(SetBufferValues, OfAHalfIsTrueAndOf0IsFalse)
{
  bool element = false;
  setBufferValues(0.5, eDataType(eDataType::eDT_Bool), 1, &element);
  EXPECT_TRUE(element);
  setBufferValues(0.0, eDataType(eDataType::eDT_Bool), 1, &element);
  EXPECT_FALSE(element);
}

TEST(SetBufferValues, KeepsTheLow8BitsFor1Byte)
{
  expectConversions(eDataType::eDT_Int8, &Conversion::asInt8);
  expectConversions(eDataType::eDT_UInt8, &Conversion::asInt8);
}

TEST(SetBufferValues, KeepsTheLow16BitsFor2Bytes)
{
  expectConversions(eDataType::eDT_Int16, &Conversion::asInt16);
  expectConversions(eDataType::eDT_UInt16, &Conversion::asInt16);
}

TEST(SetBufferValues, TruncatesTo32BitsSigned)
{
  expectConversions(eDataType::eDT_Int32, &Conversion::asInt32);
}

TEST(SetBufferValues, TruncatesTo64BitsForUInt32)
{
  expectConversions(eDataType::eDT_UInt32, &Conversion::asUInt32);
}

TEST(SetBufferValues, TruncatesTo64BitsSigned)
{
  expectConversions(eDataType::eDT_Int64, &Conversion::asInt64);
}

TEST(SetBufferValues, TruncatesTo64BitsUnsigned)
{
  expectConversions(eDataType::eDT_UInt64, &Conversion::asUInt64);
}

TEST(SetBufferValues, Of1e300IsTheSmallest32BitInteger)
{
  ipInt32 element = 0;
  setBufferValues(1e300, eDataType(eDataType::eDT_Int32), 1, &element);
  EXPECT_EQ(element, std::numeric_limits<ipInt32>::min());
}

TEST(SetBufferValues, KeepsTheLargestUInt64ThatIsADouble)
{
  ipUInt64 element = 0;
  setBufferValues(18446744073709549568.0, eDataType(eDataType::eDT_UInt64), 1, &element);
  EXPECT_EQ(element, 18446744073709549568U);
}

TEST(SetBufferValues, DoesNotSaturate)
{
  ipInt8 narrow = 0;
  setBufferValues(300.0, eDataType(eDataType::eDT_Int8), 1, &narrow);
  EXPECT_EQ(narrow, 44);
  setBufferValues(200.0, eDataType(eDataType::eDT_Int8), 1, &narrow);
  EXPECT_EQ(narrow, -56);
  ipUInt16 wide = 0;
  setBufferValues(-1.0, eDataType(eDataType::eDT_UInt16), 1, &wide);
  EXPECT_EQ(wide, 65535);
}

TEST(SetBufferValues, KeepsEveryBitOfADouble)
{
  for (const ipUInt64 bits :
       {ipUInt64{0}, g_lowest64, ipUInt64{1}, ipUInt64{0x3FF0000000000000}, ipUInt64{0x7FEFFFFFFFFFFFFF},
        ipUInt64{0x7FF0000000000000}, ipUInt64{0xFFF0000000000000}, ipUInt64{0x7FF8000000000123},
        ipUInt64{0xFFF8000000000000}, ipUInt64{0x7FF0000000000001}, ipUInt64{0xFFF4000000000000}})
    EXPECT_EQ(bitsOfFill(fromBits<ipReal64>(bits), eDataType::eDT_Real64), bits);
}

TEST(SetBufferValues, RoundsToTheNearestFloat)
{
  const std::vector<std::pair<ipReal64, ipUInt64>> roundings = {
      {0.0, 0},
      {-0.0, 0x80000000},
      {0.5, 0x3F000000},
      {-3.9, 0xC079999A},
      {300.0, 0x43960000},
      {16777217.0, 0x4B800000},              // 2^24 + 1 lies between two floats, the lower one is even
      {16777219.0, 0x4B800002},              // and 2^24 + 3, where the upper one is
      {1.0 + 0x1p-24 + 0x1p-50, 0x3F800001}, // beyond the middle
      {0x1.FFFFFEp127, 0x7F7FFFFF},          // the largest float
      {0x1.FFFFFEFFFFFFFp127, 0x7F7FFFFF},   // just below the middle to 2^128
      {0x1.FFFFFFp127, 0x7F800000},          // the middle
      {1e300, 0x7F800000},
      {-1e300, 0xFF800000},
      {g_infinity, 0x7F800000},
      {-g_infinity, 0xFF800000},
      {0x1p-149, 1}, // the smallest denormal float
      {0x1p-150, 0}, // half of it: to even
      {0x1.8p-150, 1},
      {4.9406564584124654e-324, 0}, // the smallest denormal double
  };
  for (const auto& [value, bits] : roundings)
    EXPECT_EQ(bitsOfFill(value, eDataType::eDT_Real32), bits) << value;
}

TEST(SetBufferValues, KeepsNanANanAsFloat)
{
  for (const ipUInt64 bits : {ipUInt64{0x7FF8000000000000}, ipUInt64{0xFFF8000000000000},
                              ipUInt64{0x7FF0000000000001}, ipUInt64{0x7FFFFFFFFFFFFFFF}})
  {
    const ipUInt64 found = bitsOfFill(fromBits<ipReal64>(bits), eDataType::eDT_Real32);
    EXPECT_EQ(found & 0x7FC00000U, 0x7FC00000U) << "no quiet NaN"; // all of the exponent, top of the fraction
    EXPECT_EQ(found >> 31U, bits >> 63U) << "the sign";
  }
}

/// Sets a rounding mode for as long as it lives.
class RoundingMode
{
public:
  explicit RoundingMode(int mode)
    : _old(std::fegetround())
  {
    EXPECT_EQ(std::fesetround(mode), 0);
  }
  RoundingMode(const RoundingMode&) = delete;
  RoundingMode& operator=(const RoundingMode&) = delete;
  ~RoundingMode() { std::fesetround(_old); }

private:
  int _old;
};

TEST(SetBufferValues, RoundsToFloatInTheCurrentRoundingMode)
{
  struct Case
  {
    ipReal64 value;
    ipUInt64 nearest;
    ipUInt64 upward;
    ipUInt64 downward;
    ipUInt64 towardZero;
  };
  const std::vector<Case> cases = {
      {16777217.0, 0x4B800000, 0x4B800001, 0x4B800000, 0x4B800000}, // 2^24 + 1 between 2^24 and 2^24 + 2
      {-16777217.0, 0xCB800000, 0xCB800000, 0xCB800001, 0xCB800000},
      {1e300, 0x7F800000, 0x7F800000, 0x7F7FFFFF, 0x7F7FFFFF}, // infinity or the largest float
      {-1e300, 0xFF800000, 0xFF7FFFFF, 0xFF800000, 0xFF7FFFFF},
      {0x1p-150, 0, 1, 0, 0},
      {-0x1p-150, 0x80000000, 0x80000000, 0x80000001, 0x80000000},
      {g_infinity, 0x7F800000, 0x7F800000, 0x7F800000, 0x7F800000},
      {1.5, 0x3FC00000, 0x3FC00000, 0x3FC00000, 0x3FC00000},
  };
  const auto round = [](ipReal64 value, int mode)
  {
    const RoundingMode rounding(mode);
    ipUInt32 bits = 0;
    setBufferValues(value, eDataType(eDataType::eDT_Real32), 1, &bits);
    return bits;
  };
  for (const Case& c : cases)
  {
    EXPECT_EQ(round(c.value, FE_TONEAREST), c.nearest) << c.value;
    EXPECT_EQ(round(c.value, FE_UPWARD), c.upward) << c.value;
    EXPECT_EQ(round(c.value, FE_DOWNWARD), c.downward) << c.value;
    EXPECT_EQ(round(c.value, FE_TOWARDZERO), c.towardZero) << c.value;
  }
}

TEST(SetBufferValues, TruncatesInEveryRoundingMode)
{
  for (const int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO})
  {
    ipInt32 narrow = 0;
    ipUInt64 wide = 0;
    ipInt64 negative = 0;
    {
      const RoundingMode rounding(mode);
      setBufferValues(2147483647.5, eDataType(eDataType::eDT_Int32), 1, &narrow);
      setBufferValues(9223372036854777856.0, eDataType(eDataType::eDT_UInt64), 1, &wide);
      setBufferValues(-3.9, eDataType(eDataType::eDT_Int64), 1, &negative);
    }
    EXPECT_EQ(narrow, 2147483647);
    EXPECT_EQ(wide, 9223372036854777856U);
    EXPECT_EQ(negative, -3);
  }
}

} // namespace
