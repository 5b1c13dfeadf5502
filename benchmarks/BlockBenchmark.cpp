// A block of 256 MiB to a new file and back into memory in use.
//
// All sides move the same new[] block, which lies 16 bytes past the start of a page. The groups "tmpfs" and
// "disk_sync" write through the archive's own file with its fsync, the peers with an fsync as well; the group
// "disk" writes without on all sides, the archive through a stream.

#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>

#include <boost/filesystem/path.hpp>

#include "BenchmarkSupport.h"

#ifdef ORVEL_BENCHMARK_BOOST
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
#include <cereal/archives/binary.hpp>
#endif

#include <ORVELSerialization/BinaryArchive.h>

namespace orvel::benchmarks
{

namespace
{

constexpr std::size_t g_blockSize = std::size_t{256} << 20U;
constexpr std::size_t g_wholeBlock = g_blockSize;
constexpr std::size_t g_onePiece = std::size_t{1} << 20U;

using BlockData = std::unique_ptr<char[]>;

const char* getSource()
{
  static const BlockData g_source = []
  {
    BlockData data(new char[g_blockSize]);
    std::mt19937_64 random(20240229U);
    for (std::size_t i = 0; i < g_blockSize; i += sizeof(std::uint64_t))
    {
      const std::uint64_t word = random();
      std::memcpy(data.get() + i, &word, sizeof(word));
    }
    return data;
  }();
  return g_source.get();
}

/// The memory to read into. It is filled before each case, so that its pages are in use and what is found
/// in it afterwards was read.
char* getTarget()
{
  static const BlockData g_target(new char[g_blockSize]);
  std::memset(g_target.get(), 0x5A, g_blockSize);
  return g_target.get();
}

bool isTargetRight(const char* target)
{
  return std::memcmp(target, getSource(), g_blockSize) == 0;
}

enum class Sync
{
  eYes,
  eNo
};

template <std::size_t PIECE_SIZE>
struct Plain
{
  static void write(const std::string& path, const char* data, Sync sync)
  {
    writePlainly(path, data, g_blockSize, PIECE_SIZE);
    if (sync == Sync::eYes)
    {
      syncFile(path);
    }
  }

  static void read(const std::string& path, char* data) { readPlainly(path, data, g_blockSize, PIECE_SIZE); }
};

struct Orvel
{
  static void write(const std::string& path, const char* data, Sync sync)
  {
    if (sync == Sync::eYes)
    {
      BinaryOArchive archive{boost::filesystem::path(path)};
      archive.writeBlock(data, g_blockSize);
      archive.close();
    }
    else
    {
      std::ofstream stream(path, std::ios::binary);
      BinaryOArchive archive(stream);
      archive.writeBlock(data, g_blockSize);
      archive.close();
      stream.close();
    }
  }

  static void read(const std::string& path, char* data)
  {
    BinaryIArchive archive{boost::filesystem::path(path)};
    archive.readBlock(data, g_blockSize);
    archive.close();
  }
};

#ifdef ORVEL_BENCHMARK_BOOST
struct Boost
{
  static void write(const std::string& path, const char* data, Sync sync)
  {
    {
      std::ofstream stream(path, std::ios::binary);
      boost::archive::binary_oarchive archive(stream);
      archive.save_binary(data, g_blockSize);
    }
    if (sync == Sync::eYes)
    {
      syncFile(path);
    }
  }

  static void read(const std::string& path, char* data)
  {
    std::ifstream stream(path, std::ios::binary);
    boost::archive::binary_iarchive archive(stream);
    archive.load_binary(data, g_blockSize);
  }
};
#endif

#ifdef ORVEL_BENCHMARK_CEREAL
struct Cereal
{
  static void write(const std::string& path, const char* data, Sync sync)
  {
    {
      std::ofstream stream(path, std::ios::binary);
      cereal::BinaryOutputArchive archive(stream);
      archive(cereal::binary_data(data, g_blockSize));
    }
    if (sync == Sync::eYes)
    {
      syncFile(path);
    }
  }

  static void read(const std::string& path, char* data)
  {
    std::ifstream stream(path, std::ios::binary);
    cereal::BinaryInputArchive archive(stream);
    archive(cereal::binary_data(data, g_blockSize));
  }
};
#endif

template <class Side>
void timeWriting(benchmark::State& state, const Medium& medium, Sync sync)
{
  const char* source = getSource();
  const ScratchFile file(medium);
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    file.remove();
    state.ResumeTiming();
    Side::write(file.getPath(), source, sync);
  }
  char* target = getTarget();
  Side::read(file.getPath(), target);
  check(state, isTargetRight(target), "the file does not hold the block");
  state.SetBytesProcessed(static_cast<std::int64_t>(g_blockSize) * state.iterations());
}

template <class Side>
void timeReading(benchmark::State& state, const Medium& medium)
{
  const ScratchFile file(medium);
  Side::write(file.getPath(), getSource(), Sync::eYes);
  char* target = getTarget();
  for ([[maybe_unused]] auto _ : state)
  {
    Side::read(file.getPath(), target);
    benchmark::ClobberMemory();
  }
  check(state, isTargetRight(target), "what was read is not the block");
  state.SetBytesProcessed(static_cast<std::int64_t>(g_blockSize) * state.iterations());
}

template <class Side>
void addSide(const Medium& medium, const std::string& side)
{
  const auto write = [&](const std::string& group, Sync sync)
  {
    addCase(
        "block_write/" + group, side,
        [medium, sync](benchmark::State& state) { timeWriting<Side>(state, medium, sync); },
        benchmark::kMillisecond);
  };
  if (medium.name == "tmpfs")
  {
    write("tmpfs", Sync::eYes);
  }
  else
  {
    write("disk", Sync::eNo);
    write("disk_sync", Sync::eYes);
  }
  addCase(
      "block_read/" + medium.name, side,
      [medium](benchmark::State& state) { timeReading<Side>(state, medium); }, benchmark::kMillisecond);
}

void timeMemcpy(benchmark::State& state)
{
  const char* source = getSource();
  char* target = getTarget();
  for ([[maybe_unused]] auto _ : state)
  {
    std::memcpy(target, source, g_blockSize);
    benchmark::ClobberMemory();
  }
  check(state, isTargetRight(target), "the copy is not the block");
  state.SetBytesProcessed(static_cast<std::int64_t>(g_blockSize) * state.iterations());
}

} // namespace

void addBlockCases()
{
  for (const Medium& medium : getMedia())
  {
    addSide<Orvel>(medium, "orvel");
    addSide<Plain<g_wholeBlock>>(medium, "plain");
    addSide<Plain<g_onePiece>>(medium, "plain_pieces");
#ifdef ORVEL_BENCHMARK_BOOST
    addSide<Boost>(medium, "boost");
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
    addSide<Cereal>(medium, "cereal");
#endif
    for (const char* group : {"block_write/", "block_read/"})
    {
      addCase(group + medium.name, "memcpy", timeMemcpy, benchmark::kMillisecond);
    }
  }
}

} // namespace orvel::benchmarks
