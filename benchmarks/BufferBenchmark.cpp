// Mirrors, fills and copies of memory beside the standard library, and buffers of 256 MiB through archives.
//
// All sides work on the same two new[] blocks. The functions of the library are
// called with the element type given at run time; their peers are built with -O2.

#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <random>

#include <boost/filesystem/path.hpp>

#include "BenchmarkSupport.h"
#include "BufferPeers.h"
#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel::benchmarks
{

namespace
{

// ----------------------------------------------------------------------------------------- raw memory

struct Size
{
  const char* name;
  std::size_t inBytes;
  benchmark::TimeUnit unit;
};
const Size g_sizes[] = {{"16KiB", std::size_t{16} << 10U, benchmark::kNanosecond},
                        {"64MiB", std::size_t{64} << 20U, benchmark::kMicrosecond}};

constexpr std::uint64_t g_fillValue = 42; // a number that fits into every type, as pixels are set to

using Memory = std::unique_ptr<char[]>;

void setRandom(char* data, std::size_t size)
{
  std::mt19937_64 random(20240229U);
  for (std::size_t i = 0; i < size; i += sizeof(std::uint64_t))
  {
    const std::uint64_t word = random();
    std::memcpy(data + i, &word, sizeof(word));
  }
}

/// The memory of the cases of one size: blocks as a program of that size would have them, pages in use.
struct Blocks
{
  explicit Blocks(std::size_t size)
    : source(new char[size])
    , target(new char[size])
  {
    setRandom(source.get(), size);
    clearTarget(size);
  }

  /// After this the target holds nothing that could be taken for a result.
  void clearTarget(std::size_t size) const { std::memset(target.get(), 0x5A, size); }

  Memory source;
  Memory target;
};

const Blocks& getBlocks(std::size_t size)
{
  static std::map<std::size_t, Blocks> g_blocks;
  return g_blocks.try_emplace(size, size).first->second;
}

eDataType getUnsignedType(std::size_t elementSize)
{
  switch (elementSize)
  {
  case 1:
    return eDataType::eDT_UInt8;
  case 2:
    return eDataType::eDT_UInt16;
  case 4:
    return eDataType::eDT_UInt32;
  default:
    return eDataType::eDT_UInt64;
  }
}

bool isMirrored(const char* dst, const char* src, std::size_t elementSize, std::size_t size)
{
  for (std::size_t i = 0; i < size; i += elementSize)
  {
    if (std::memcmp(dst + size - elementSize - i, src + i, elementSize) != 0)
    {
      return false;
    }
  }
  return true;
}

bool isFilled(const char* dst, std::size_t elementSize, std::size_t size)
{
  for (std::size_t i = 0; i < size; i += elementSize)
  {
    if (std::memcmp(dst + i, &g_fillValue, elementSize) !=
        0) // the first bytes of the number are its low ones
    {
      return false;
    }
  }
  return true;
}

/// \param operate works on the target; \param isRight looks at it afterwards
template <class Operate, class IsRight>
void addMemoryCase(const std::string& group, const std::string& side, const Size& size, Operate operate,
                   IsRight isRight)
{
  addCase(
      group + "/" + size.name, side,
      [size, operate, isRight](benchmark::State& state)
      {
        const Blocks& blocks = getBlocks(size.inBytes);
        blocks.clearTarget(size.inBytes);
        const char* const src = blocks.source.get();
        char* const dst = blocks.target.get();
        for ([[maybe_unused]] auto _ : state)
        {
          operate(dst, src);
          benchmark::ClobberMemory();
        }
        check(state, isRight(dst, src), "the memory does not hold the result");
        state.SetBytesProcessed(static_cast<std::int64_t>(size.inBytes) * state.iterations());
      },
      size.unit);
}

void addMirrorCases(const Size& size, std::size_t elementSize)
{
  const std::string group = "mirror_" + std::to_string(elementSize);
  const std::size_t nbElements = size.inBytes / elementSize;
  const auto isRight = [size, elementSize](const char* dst, const char* src)
  {
    return isMirrored(dst, src, elementSize, size.inBytes);
  };
  const auto isCopy = [size](const char* dst, const char* src)
  {
    return std::memcmp(dst, src, size.inBytes) == 0;
  };
  addMemoryCase(
      group, "orvel", size,
      [nbElements, dataType = getUnsignedType(elementSize)](char* dst, const char* src)
      { copyBufferMiror(dst, dataType, nbElements, src); },
      isRight);
  addMemoryCase(
      group, "reverse_copy", size,
      [nbElements, elementSize](char* dst, const char* src)
      { reverseCopy(dst, elementSize, nbElements, src); },
      isRight);
  addMemoryCase(
      group, "memcpy", size, [size](char* dst, const char* src) { std::memcpy(dst, src, size.inBytes); },
      isCopy);
}

void addFillCases(const Size& size, std::size_t elementSize)
{
  const std::string group = "fill_" + std::to_string(elementSize);
  const std::size_t nbElements = size.inBytes / elementSize;
  const auto isRight = [size, elementSize](const char* dst, const char* /*src*/)
  {
    return isFilled(dst, elementSize, size.inBytes);
  };
  const auto isSet = [size](const char* dst, const char* /*src*/)
  {
    return isFilled(dst, 1, size.inBytes);
  };
  addMemoryCase(
      group, "orvel", size,
      [nbElements, dataType = getUnsignedType(elementSize)](char* dst, const char* /*src*/)
      { setBufferValues(static_cast<ipReal64>(g_fillValue), dataType, nbElements, dst); },
      isRight);
  addMemoryCase(
      group, "std_fill", size,
      [nbElements, elementSize](char* dst, const char* /*src*/)
      { fill(dst, elementSize, nbElements, g_fillValue); },
      isRight);
  addMemoryCase(
      group, "memset", size,
      [size](char* dst, const char* /*src*/)
      { std::memset(dst, static_cast<int>(g_fillValue), size.inBytes); },
      isSet);
}

void addCopyCases(const Size& size)
{
  const auto isRight = [size](const char* dst, const char* src)
  {
    return std::memcmp(dst, src, size.inBytes) == 0;
  };
  addMemoryCase(
      "copy", "orvel", size,
      [nbElements = size.inBytes / sizeof(ipUInt16)](char* dst, const char* src)
      { copyBuffer(dst, eDataType(eDataType::eDT_UInt16), nbElements, src); },
      isRight);
  addMemoryCase(
      "copy", "memcpy", size, [size](char* dst, const char* src) { std::memcpy(dst, src, size.inBytes); },
      isRight);
}

// ------------------------------------------------------------------------------------------ buffers

constexpr std::size_t g_bufferSize = std::size_t{256} << 20U;

void initBuffer(TypedOwnBuffer& buffer)
{
  buffer.init(g_bufferSize / sizeof(ipUInt16), eDataType::eDT_UInt16);
}

const TypedOwnBuffer& getSample()
{
  static TypedOwnBuffer g_sample;
  if (!g_sample.isInitialized())
  {
    initBuffer(g_sample);
    setRandom(static_cast<char*>(g_sample.getDataPtr()), g_bufferSize);
  }
  return g_sample;
}

/// A buffer to read into, of the right size already: the archive then uses its block.
TypedOwnBuffer& getReadBuffer()
{
  static TypedOwnBuffer g_buffer;
  initBuffer(g_buffer);
  std::memset(g_buffer.getDataPtr(), 0x5A, g_bufferSize);
  return g_buffer;
}

bool isSample(const TypedOwnBuffer& buffer)
{
  return buffer.getMemorySize() == g_bufferSize &&
         std::memcmp(buffer.getDataPtr(), getSample().getDataPtr(), g_bufferSize) == 0;
}

template <class OArchive, class IArchive>
struct Archived
{
  static void write(const std::string& path, const TypedOwnBuffer& buffer)
  {
    OArchive archive{boost::filesystem::path(path)};
    archive << SerializationOItem("buffer", buffer);
    archive.close();
  }

  static void read(const std::string& path, TypedOwnBuffer& buffer)
  {
    IArchive archive{boost::filesystem::path(path)};
    archive >> SerializationIItem("buffer", buffer);
    archive.close();
  }
};

/// The bytes alone, in one piece and to the disk, as the archives bring their files there.
struct Plain
{
  static void write(const std::string& path, const TypedOwnBuffer& buffer)
  {
    writePlainly(path, static_cast<const char*>(buffer.getDataPtr()), g_bufferSize, g_bufferSize);
    syncFile(path);
  }

  static void read(const std::string& path, TypedOwnBuffer& buffer)
  {
    readPlainly(path, static_cast<char*>(buffer.getDataPtr()), g_bufferSize, g_bufferSize);
  }
};

template <class Side>
void timeWriting(benchmark::State& state, const Medium& medium)
{
  const TypedOwnBuffer& sample = getSample();
  const ScratchFile file(medium);
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    file.remove();
    state.ResumeTiming();
    Side::write(file.getPath(), sample);
  }
  TypedOwnBuffer& buffer = getReadBuffer();
  Side::read(file.getPath(), buffer);
  check(state, isSample(buffer), "the file does not hold the buffer");
  state.SetBytesProcessed(static_cast<std::int64_t>(g_bufferSize) * state.iterations());
}

template <class Side>
void timeReading(benchmark::State& state, const Medium& medium)
{
  const ScratchFile file(medium);
  Side::write(file.getPath(), getSample());
  TypedOwnBuffer& buffer = getReadBuffer();
  for ([[maybe_unused]] auto _ : state)
  {
    Side::read(file.getPath(), buffer);
    benchmark::ClobberMemory();
  }
  check(state, isSample(buffer), "what was read is not the buffer");
  state.SetBytesProcessed(static_cast<std::int64_t>(g_bufferSize) * state.iterations());
}

template <class Side>
void addBufferSide(const std::string& prefix, const std::string& side, const Medium& medium)
{
  addCase(
      prefix + "_write/" + medium.name, side,
      [medium](benchmark::State& state) { timeWriting<Side>(state, medium); }, benchmark::kMillisecond);
  addCase(
      prefix + "_read/" + medium.name, side,
      [medium](benchmark::State& state) { timeReading<Side>(state, medium); }, benchmark::kMillisecond);
}

} // namespace

void addBufferCases()
{
  for (const Size& size : g_sizes)
  {
    for (std::size_t elementSize = 1; elementSize <= 8; elementSize *= 2)
    {
      addMirrorCases(size, elementSize);
      addFillCases(size, elementSize);
    }
    addCopyCases(size);
  }
  for (const Medium& medium : getMedia())
  {
    if (medium.name != "tmpfs")
    {
      continue; // what a disk adds is measured with the raw blocks
    }
    addBufferSide<Archived<BinaryOArchive, BinaryIArchive>>("buffer", "orvel", medium);
    addBufferSide<Plain>("buffer", "plain", medium);
    addBufferSide<Archived<XmlOArchive, XmlIArchive>>("xml_buffer", "orvel", medium);
    addBufferSide<Plain>("xml_buffer", "plain", medium);
  }
}

} // namespace orvel::benchmarks
