#include "ORVELBaseData/Buffer/Private/BlockPaths.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace orvel;
using namespace orvel::details;

using Bytes = std::vector<unsigned char>;
using Numbers = std::initializer_list<ipUInt64>;

constexpr unsigned char g_guard = 0xA5;
constexpr ipUInt64 g_never = ~ipUInt64{0};
constexpr ipUInt64 g_always = 0;
constexpr ipUInt64 g_pattern = 0xF1E2D3C4B5A69788; // no two bytes are the same

/// A copy that begins so many bytes behind a multiple of 64, with 64 bytes before and behind it to be
/// guarded.
class Placed
{
public:
  Placed(ipUInt64 size, ipUInt64 offset)
    : _memory(size + 256, g_guard)
    , _size(size)
  {
    const auto address = reinterpret_cast<std::uintptr_t>(_memory.data());
    _start = 64 + (64 - address % 64) % 64 + offset;
  }

  unsigned char* begin() { return _memory.data() + _start; }

  /// Whether it holds the bytes and nothing around it has changed.
  bool holds(const unsigned char* bytes) const
  {
    const auto isGuard = [](unsigned char byte)
    {
      return byte == g_guard;
    };
    const auto begin = _memory.begin() + static_cast<std::ptrdiff_t>(_start);
    const auto end = begin + static_cast<std::ptrdiff_t>(_size);
    return std::all_of(_memory.begin(), begin, isGuard) && std::equal(begin, end, bytes) &&
           std::all_of(end, _memory.end(), isGuard);
  }

private:
  Bytes _memory;
  ipUInt64 _size;
  ipUInt64 _start;
};

const Bytes& getSource()
{
  static const Bytes g_source = []
  {
    Bytes bytes(16384);
    for (std::size_t i = 0; i < bytes.size(); ++i)
      bytes[i] = static_cast<unsigned char>(i * 131 + i / 256 * 17);
    return bytes;
  }();
  return g_source;
}

/// What a mirror has to give, by definition.
Bytes mirrored(const unsigned char* src, ipUInt64 nbElements, ipUInt64 elementSize)
{
  Bytes result(nbElements * elementSize);
  for (ipUInt64 i = 0; i < nbElements; ++i)
    for (ipUInt64 byte = 0; byte < elementSize; ++byte)
      result[(nbElements - 1 - i) * elementSize + byte] = src[i * elementSize + byte];
  return result;
}

/// What a fill has to give, by definition.
Bytes repeated(ipUInt64 size)
{
  unsigned char bytes[sizeof(g_pattern)];
  std::memcpy(bytes, &g_pattern, sizeof(g_pattern));
  Bytes result(size);
  for (ipUInt64 i = 0; i < size; ++i)
    result[i] = bytes[i % sizeof(g_pattern)];
  return result;
}

MirrorFunction getMirror(const BlockPath& path, ipUInt64 elementSize)
{
  return elementSize == 1   ? path.mirror1
         : elementSize == 2 ? path.mirror2
         : elementSize == 4 ? path.mirror4
                            : path.mirror8;
}

class BlockPaths : public ::testing::TestWithParam<const BlockPath*>
{
protected:
  static void expectMirror(ipUInt64 elementSize, ipUInt64 nbElements, ipUInt64 dstOffset, ipUInt64 srcOffset,
                           ipUInt64 streamFrom)
  {
    const ipUInt64 size = elementSize * nbElements;
    Placed src(size, srcOffset);
    std::copy_n(getSource().begin(), size, src.begin());
    Placed dst(size, dstOffset);
    getMirror(*GetParam(), elementSize)(dst.begin(), nbElements, src.begin(), streamFrom);
    ASSERT_TRUE(dst.holds(mirrored(getSource().data(), nbElements, elementSize).data()))
        << nbElements << " elements of " << elementSize << " from " << srcOffset << " to " << dstOffset;
    ASSERT_TRUE(src.holds(getSource().data())) << "the source has changed";
  }

  static void expectFill(ipUInt64 size, ipUInt64 offset, ipUInt64 streamFrom)
  {
    Placed dst(size, offset);
    GetParam()->fill(dst.begin(), size, g_pattern, streamFrom);
    ASSERT_TRUE(dst.holds(repeated(size).data())) << size << " bytes at " << offset;
  }
};

constexpr ipUInt64 g_elementSizes[] = {1, 2, 4, 8};

TEST_P(BlockPaths, MirrorEveryLength)
{
  for (const ipUInt64 elementSize : g_elementSizes)
    for (ipUInt64 nbElements = 0; nbElements <= 300; ++nbElements)
      for (const ipUInt64 streamFrom : {g_never, g_always})
      {
        expectMirror(elementSize, nbElements, 0, 0, streamFrom);
        expectMirror(elementSize, nbElements, 24, 8, streamFrom);
        expectMirror(elementSize, nbElements, 3, 5, streamFrom);
      }
}

TEST_P(BlockPaths, MirrorEveryAlignmentOfTheDestination)
{
  for (const ipUInt64 elementSize : g_elementSizes)
    for (ipUInt64 offset = 0; offset < 64; ++offset)
      for (const ipUInt64 nbElements :
           Numbers{1, 2, 3, 7, 8, 15, 16, 17, 31, 32, 33, 64, 65, 127, 128, 129, 160, 255})
        for (const ipUInt64 streamFrom : {g_never, g_always})
          expectMirror(elementSize, nbElements, offset, 0, streamFrom);
}

TEST_P(BlockPaths, MirrorEveryAlignmentOfBothSides)
{
  for (const ipUInt64 elementSize : g_elementSizes)
    for (ipUInt64 dstOffset = 0; dstOffset < 64; ++dstOffset)
      for (ipUInt64 srcOffset = 0; srcOffset < 64; ++srcOffset)
        expectMirror(elementSize, 173 / elementSize, dstOffset, srcOffset,
                     srcOffset % 2 == 0 ? g_never : g_always);
}

TEST_P(BlockPaths, MirrorPastTheCachesAtSeveralPlacesInTurn)
{
  for (const ipUInt64 elementSize : g_elementSizes)
    for (const ipUInt64 nbBytes :
         Numbers{2040, 2048, 2056, 2080, 2088, 4080, 4096, 4136, 6144, 8184, 8192, 10000, 16384})
      for (const ipUInt64 offset : Numbers{0, 1, 8, 16, 24, 40, 63})
        expectMirror(elementSize, nbBytes / elementSize, offset, 8, g_always);
}

TEST_P(BlockPaths, MirrorRangesThatTouch)
{
  for (const ipUInt64 elementSize : g_elementSizes)
    for (ipUInt64 nbElements = 1; nbElements <= 100; ++nbElements)
    {
      const ipUInt64 size = nbElements * elementSize;
      const Bytes expected = mirrored(getSource().data(), nbElements, elementSize);
      Placed behind(2 * size, 1);
      std::copy_n(getSource().begin(), size, behind.begin());
      getMirror(*GetParam(), elementSize)(behind.begin() + size, nbElements, behind.begin(), g_never);
      Bytes both(getSource().begin(), getSource().begin() + static_cast<std::ptrdiff_t>(size));
      both.insert(both.end(), expected.begin(), expected.end());
      ASSERT_TRUE(behind.holds(both.data())) << nbElements;

      Placed before(2 * size, 1);
      std::copy_n(getSource().begin(), size, before.begin() + size);
      getMirror(*GetParam(), elementSize)(before.begin(), nbElements, before.begin() + size, g_never);
      std::rotate(both.begin(), both.begin() + static_cast<std::ptrdiff_t>(size), both.end());
      ASSERT_TRUE(before.holds(both.data())) << nbElements;
    }
}

TEST_P(BlockPaths, FillEveryLengthAtEveryAlignment)
{
  for (ipUInt64 size = 0; size <= 300; ++size)
    for (ipUInt64 offset = 0; offset < 64; ++offset)
      expectFill(size, offset, (size + offset) % 2 == 0 ? g_never : g_always);
}

TEST_P(BlockPaths, StreamFromTheGivenSizeOn)
{
  // Which way the bytes go cannot be seen in them; here both sides of the limit run.
  for (const ipUInt64 size : Numbers{1023, 1024, 1025})
  {
    expectFill(size, 8, 1024);
    expectMirror(1, size, 8, 0, 1024);
  }
}

TEST_P(BlockPaths, MirrorAndFillMoreThanTheCaches)
{
  constexpr ipUInt64 size = (ipUInt64{33} << 20U) + 40;
  Bytes src(size);
  for (ipUInt64 i = 0; i < size; ++i)
    src[i] = static_cast<unsigned char>(i ^ i >> 8U ^ i >> 16U);
  for (const ipUInt64 elementSize : Numbers{1, 8})
  {
    Placed dst(size, 8);
    getMirror(*GetParam(), elementSize)(dst.begin(), size / elementSize, src.data(), getUsableCacheSize());
    EXPECT_TRUE(dst.holds(mirrored(src.data(), size / elementSize, elementSize).data()));
  }
  expectFill(size, 24, getUsableCacheSize());
}

INSTANTIATE_TEST_SUITE_P(Available, BlockPaths, ::testing::ValuesIn(getAvailableBlockPaths()),
                         [](const auto& path) { return std::string(path.param->name); });

/// Mirrors within one block, by element and through a temporary of one, as the contract words it.
void mirrorByDefinition(unsigned char* dst, ipUInt64 elementSize, ipUInt64 nbElements,
                        const unsigned char* src)
{
  for (ipUInt64 i = 0; i < nbElements; ++i)
  {
    const Bytes element(src + i * elementSize, src + (i + 1) * elementSize);
    std::copy(element.begin(), element.end(), dst + (nbElements - 1 - i) * elementSize);
  }
}

TEST(MirrorInOrder, GivesWhatTheOneDirectionalLoopGivesAtEveryDistance)
{
  for (const ipUInt64 elementSize : g_elementSizes)
    for (const ipUInt64 nbElements : Numbers{1, 2, 3, 4, 31, 37})
      for (int distance = -300; distance <= 300; ++distance) // in bytes: also within elements
      {
        Bytes expected(getSource().begin(), getSource().begin() + 1000);
        Bytes found = expected;
        mirrorByDefinition(expected.data() + 350 + distance, elementSize, nbElements, expected.data() + 350);
        mirrorInOrder(found.data() + 350 + distance, elementSize, nbElements, found.data() + 350);
        ASSERT_EQ(found, expected) << nbElements << " elements of " << elementSize << " at " << distance;
      }
}

TEST(GetAvailableBlockPaths, BeginsWithThePlainOneAndEndsWithTheOneInUse)
{
  const std::vector<const BlockPath*> paths = getAvailableBlockPaths();
  ASSERT_FALSE(paths.empty());
  EXPECT_EQ(paths.front(), &g_plainPath);
  EXPECT_EQ(paths.back(), &getFastestBlockPath());
  EXPECT_EQ(&getFastestBlockPath(), &getFastestBlockPath());
}

#if defined(__x86_64__)
TEST(GetAvailableBlockPaths, HoldsSse2Always)
{
  const std::vector<const BlockPath*> paths = getAvailableBlockPaths();
  EXPECT_NE(std::find(paths.begin(), paths.end(), &g_sse2Path), paths.end());
}
#endif

TEST(GetUsableCacheSize, IsAPositiveNumberUpToItsLimit)
{
  EXPECT_GT(getUsableCacheSize(), 0U);
  EXPECT_LE(getUsableCacheSize(), ipUInt64{32} << 20U);
  EXPECT_EQ(getUsableCacheSize(), getUsableCacheSize());
}

} // namespace
