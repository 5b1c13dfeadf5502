// Kernels and shared objects through archives, binary and XML, to and from memory and files.
//
// The peers file plain structs that hold the same data. Each side reads what it wrote itself; the result is
// compared with the sample outside the timed region.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <streambuf>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "BenchmarkSupport.h"

#ifdef ORVEL_BENCHMARK_BOOST
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/map.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/shared_ptr.hpp>
#include <boost/serialization/vector.hpp>
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
#include <cereal/archives/binary.hpp>
#include <cereal/archives/xml.hpp>
#include <cereal/types/map.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/vector.hpp>
#endif

#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel::benchmarks
{

constexpr std::size_t g_nbBinaryTaps = 1000000;
constexpr std::size_t g_nbXmlTaps = 100000;
constexpr std::size_t g_nbRanges = 100000;

// --------------------------------------------------------------------------------- the peers' classes

/// The library whose functions file a peer's struct. One set of structs per library, because the
/// functions of both have the same names.
struct ForBoost
{
  template <class T>
  using Shared = boost::shared_ptr<T>;
};
struct ForCereal
{
  template <class T>
  using Shared = std::shared_ptr<T>;
};

template <class Library>
struct PeerOffset
{
  ipInt32 _xOffset;
  ipInt32 _yOffset;
};

template <class Library>
bool operator<(const PeerOffset<Library>& a, const PeerOffset<Library>& b)
{
  return a._yOffset != b._yOffset ? a._yOffset < b._yOffset : a._xOffset < b._xOffset;
}

template <class Library>
struct PeerKernel
{
  std::map<PeerOffset<Library>, ipReal32> _dataColl;
  ipInt32 _minX = 0;
  ipInt32 _minY = 0;
  ipUInt32 _sizeX = 0;
  ipUInt32 _sizeY = 0;
  ipReal32 _coefSum = 0;
  ipReal32 _absCoefSum = 0;
};

template <class Library>
struct PeerRange
{
  ipUInt64 _startOffset = 0;
  ipUInt64 _nbElements = 0;
};

#ifdef ORVEL_BENCHMARK_BOOST
template <class Archive>
void serialize(Archive& archive, PeerOffset<ForBoost>& offset, unsigned)
{
  archive& boost::serialization::make_nvp("_xOffset", offset._xOffset);
  archive& boost::serialization::make_nvp("_yOffset", offset._yOffset);
}

template <class Archive>
void serialize(Archive& archive, PeerKernel<ForBoost>& kernel, unsigned)
{
  archive& boost::serialization::make_nvp("_dataColl", kernel._dataColl);
  archive& boost::serialization::make_nvp("_minX", kernel._minX);
  archive& boost::serialization::make_nvp("_minY", kernel._minY);
  archive& boost::serialization::make_nvp("_sizeX", kernel._sizeX);
  archive& boost::serialization::make_nvp("_sizeY", kernel._sizeY);
  archive& boost::serialization::make_nvp("_coefSum", kernel._coefSum);
  archive& boost::serialization::make_nvp("_absCoefSum", kernel._absCoefSum);
}

template <class Archive>
void serialize(Archive& archive, PeerRange<ForBoost>& range, unsigned)
{
  archive& boost::serialization::make_nvp("_startOffset", range._startOffset);
  archive& boost::serialization::make_nvp("_nbElements", range._nbElements);
}
#endif

#ifdef ORVEL_BENCHMARK_CEREAL
template <class Archive>
void serialize(Archive& archive, PeerOffset<ForCereal>& offset)
{
  archive(cereal::make_nvp("_xOffset", offset._xOffset), cereal::make_nvp("_yOffset", offset._yOffset));
}

template <class Archive>
void serialize(Archive& archive, PeerKernel<ForCereal>& kernel)
{
  archive(cereal::make_nvp("_dataColl", kernel._dataColl), cereal::make_nvp("_minX", kernel._minX),
          cereal::make_nvp("_minY", kernel._minY), cereal::make_nvp("_sizeX", kernel._sizeX),
          cereal::make_nvp("_sizeY", kernel._sizeY), cereal::make_nvp("_coefSum", kernel._coefSum),
          cereal::make_nvp("_absCoefSum", kernel._absCoefSum));
}

template <class Archive>
void serialize(Archive& archive, PeerRange<ForCereal>& range)
{
  archive(cereal::make_nvp("_startOffset", range._startOffset),
          cereal::make_nvp("_nbElements", range._nbElements));
}
#endif

namespace
{

// --------------------------------------------------------------------------------------- the samples

/// Calls take(x, y, coefficient) for the taps of a square kernel in raster order.
template <class Take>
void forEachTap(std::size_t nbTaps, Take take)
{
  ipInt32 width = 1;
  while (static_cast<std::size_t>(width) * static_cast<std::size_t>(width) < nbTaps)
  {
    ++width;
  }
  std::mt19937 random(20240229U);
  std::uniform_real_distribution<ipReal32> coefficients(-1.0F, 1.0F);
  for (std::size_t i = 0; i < nbTaps; ++i)
  {
    const auto index = static_cast<ipInt32>(i);
    take(index % width - width / 2, index / width - width / 2, coefficients(random));
  }
}

/// Calls take(start, length) for ranges that are spread over the whole width of their type.
template <class Take>
void forEachRange(std::size_t nbRanges, Take take)
{
  std::mt19937_64 random(20240229U);
  for (std::size_t i = 0; i < nbRanges; ++i)
  {
    const ipUInt64 start = random() >> (random() % 64U);
    take(start, random() % 100000U);
  }
}

using Ranges = std::vector<boost::shared_ptr<ElementsRange>>;
template <class Library>
using PeerRanges = std::vector<typename Library::template Shared<PeerRange<Library>>>;

void fill(KernelXY& kernel, std::size_t nbTaps)
{
  forEachTap(nbTaps, [&](ipInt32 x, ipInt32 y, ipReal32 value) { kernel.insert(OffsetXY(x, y), value); });
}

template <class Library>
void fill(PeerKernel<Library>& kernel, std::size_t nbTaps)
{
  ipInt32 maxX = 0;
  ipInt32 maxY = 0;
  forEachTap(nbTaps,
             [&](ipInt32 x, ipInt32 y, ipReal32 value)
             {
               kernel._dataColl.emplace_hint(kernel._dataColl.end(), PeerOffset<Library>{x, y}, value);
               kernel._minX = std::min(kernel._minX, x);
               kernel._minY = std::min(kernel._minY, y);
               maxX = std::max(maxX, x);
               maxY = std::max(maxY, y);
               kernel._coefSum += value;
               kernel._absCoefSum += std::abs(value);
             });
  kernel._sizeX = static_cast<ipUInt32>(maxX - kernel._minX + 1);
  kernel._sizeY = static_cast<ipUInt32>(maxY - kernel._minY + 1);
}

void fill(Ranges& ranges, std::size_t nbRanges)
{
  forEachRange(nbRanges, [&](ipUInt64 start, ipUInt64 length)
               { ranges.push_back(boost::make_shared<ElementsRange>(start, length)); });
}

template <class Library>
void fillPeer(PeerRanges<Library>& ranges, std::size_t nbRanges)
{
  forEachRange(nbRanges,
               [&](ipUInt64 start, ipUInt64 length)
               {
                 ranges.emplace_back(new PeerRange<Library>);
                 ranges.back()->_startOffset = start;
                 ranges.back()->_nbElements = length;
               });
}

void fill(PeerRanges<ForBoost>& ranges, std::size_t nbRanges)
{
  fillPeer<ForBoost>(ranges, nbRanges);
}

void fill(PeerRanges<ForCereal>& ranges, std::size_t nbRanges)
{
  fillPeer<ForCereal>(ranges, nbRanges);
}

/// One sample per type and size, made by the first call.
template <class T>
const T& getSample(std::size_t count)
{
  static std::map<std::size_t, T> g_samples;
  auto found = g_samples.find(count);
  if (found == g_samples.end())
  {
    found = g_samples.try_emplace(count).first;
    fill(found->second, count);
  }
  return found->second;
}

/// The samples of all sides of a subject are made before the first of them is timed: one that is made later
/// would lie scattered over what the others have left of the heap, and be slower to walk for that.
class SampleMakers
{
public:
  void add(std::function<void()> maker) { _makers.push_back(std::move(maker)); }

  void run()
  {
    for (const std::function<void()>& maker : std::exchange(_makers, {}))
    {
      maker();
    }
  }

private:
  std::vector<std::function<void()>> _makers;
};

std::map<std::string, SampleMakers>& getSampleMakers()
{
  static std::map<std::string, SampleMakers> g_makers;
  return g_makers;
}

// ------------------------------------------------------------------------------------ the comparison

bool isSame(ipReal32 a, ipReal32 b)
{
  return std::memcmp(&a, &b, sizeof(a)) == 0;
}

bool isSame(const KernelXY& a, const KernelXY& b)
{
  const auto isSameTap = [](const auto& tapA, const auto& tapB)
  {
    return tapA.first == tapB.first && isSame(tapA.second, tapB.second);
  };
  return a.getNbData() == b.getNbData() &&
         std::equal(a.getDataColl().begin(), a.getDataColl().end(), b.getDataColl().begin(), isSameTap) &&
         a.getMinX() == b.getMinX() && a.getMinY() == b.getMinY() && a.getSizeX() == b.getSizeX() &&
         a.getSizeY() == b.getSizeY() && isSame(a.getCoefSum(), b.getCoefSum()) &&
         isSame(a.getAbsCoefSum(), b.getAbsCoefSum());
}

template <class Library>
bool isSame(const PeerKernel<Library>& a, const PeerKernel<Library>& b)
{
  const auto isSameTap = [](const auto& tapA, const auto& tapB)
  {
    return !(tapA.first < tapB.first) && !(tapB.first < tapA.first) && isSame(tapA.second, tapB.second);
  };
  return a._dataColl.size() == b._dataColl.size() &&
         std::equal(a._dataColl.begin(), a._dataColl.end(), b._dataColl.begin(), isSameTap) &&
         a._minX == b._minX && a._minY == b._minY && a._sizeX == b._sizeX && a._sizeY == b._sizeY &&
         isSame(a._coefSum, b._coefSum) && isSame(a._absCoefSum, b._absCoefSum);
}

bool isSame(const ElementsRange& a, const ElementsRange& b)
{
  return a == b;
}

template <class Library>
bool isSame(const PeerRange<Library>& a, const PeerRange<Library>& b)
{
  return a._startOffset == b._startOffset && a._nbElements == b._nbElements;
}

template <class Pointer>
bool isSame(const std::vector<Pointer>& a, const std::vector<Pointer>& b)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Pointer& x, const Pointer& y) { return x && y && isSame(*x, *y); });
}

// ----------------------------------------------------------------------------------------- the sides

/// The library's archives. "Target" and "Source" are a stream or a path.
template <class OArchive, class IArchive>
struct OrvelSide
{
  using Kernel = KernelXY;
  using RangeColl = Ranges;

  template <class Target, class T>
  static void write(Target& target, const T& value)
  {
    OArchive archive(target);
    archive << SerializationOItem("value", value);
    archive.close();
  }

  template <class Source, class T>
  static void read(Source& source, T& value)
  {
    IArchive archive(source);
    archive >> SerializationIItem("value", value);
    archive.close();
  }

  template <class T>
  static void writeFile(const std::string& path, const T& value)
  {
    const boost::filesystem::path target(path);
    write(target, value);
  }

  template <class T>
  static void readFile(const std::string& path, T& value)
  {
    const boost::filesystem::path source(path);
    read(source, value);
  }
};

/// A peer's archives, which know streams; a file goes through a file stream and is then synchronised as the
/// library's files are.
template <class Side>
struct StreamSide
{
  template <class T>
  static void writeFile(const std::string& path, const T& value)
  {
    {
      std::ofstream stream(path, std::ios::binary);
      Side::write(stream, value);
    }
    syncFile(path);
  }

  template <class T>
  static void readFile(const std::string& path, T& value)
  {
    std::ifstream stream(path, std::ios::binary);
    Side::read(stream, value);
  }
};

#ifdef ORVEL_BENCHMARK_BOOST
template <class OArchive, class IArchive>
struct BoostSide : StreamSide<BoostSide<OArchive, IArchive>>
{
  using Kernel = PeerKernel<ForBoost>;
  using RangeColl = PeerRanges<ForBoost>;

  template <class T>
  static void write(std::ostream& stream, const T& value)
  {
    OArchive archive(stream);
    archive << boost::serialization::make_nvp("value", value);
  }

  template <class T>
  static void read(std::istream& stream, T& value)
  {
    IArchive archive(stream);
    archive >> boost::serialization::make_nvp("value", value);
  }
};
#endif

#ifdef ORVEL_BENCHMARK_CEREAL
template <class OArchive, class IArchive>
struct CerealSide : StreamSide<CerealSide<OArchive, IArchive>>
{
  using Kernel = PeerKernel<ForCereal>;
  using RangeColl = PeerRanges<ForCereal>;

  template <class T>
  static void write(std::ostream& stream, const T& value)
  {
    OArchive archive(stream);
    archive(cereal::make_nvp("value", value));
  }

  template <class T>
  static void read(std::istream& stream, T& value)
  {
    IArchive archive(stream);
    archive(cereal::make_nvp("value", value));
  }
};
#endif

// ------------------------------------------------------------------------------------ the measurement

/// A stream to memory that is there already: a string stream mostly measures how the kernel hands out pages.
class MemoryStream : private std::streambuf, public std::ostream
{
public:
  explicit MemoryStream(std::size_t capacity)
    : std::ostream(this)
    , _memory(capacity)
  {
    rewind();
  }

  void rewind() { setp(_memory.data(), _memory.data() + _memory.size()); }
  std::string getText() const { return std::string(pbase(), pptr()); }

private:
  std::vector<char> _memory;
};

template <class Side, class T>
std::string writeToText(const T& sample)
{
  std::ostringstream stream(std::ios::out | std::ios::binary);
  Side::write(stream, sample);
  return stream.str();
}

template <class Side, class T>
void timeWritingToMemory(benchmark::State& state, std::size_t count)
{
  const T& sample = getSample<T>(count);
  const std::string expected = writeToText<Side>(sample);
  MemoryStream stream(expected.size());
  for ([[maybe_unused]] auto _ : state)
  {
    stream.rewind();
    Side::write(stream, sample);
  }
  const std::string text = stream.getText();
  state.counters["bytes"] = static_cast<double>(text.size());
  std::istringstream source(text, std::ios::in | std::ios::binary);
  T value;
  Side::read(source, value);
  check(state, stream.good() && isSame(value, sample), "the archive does not hold the sample");
}

template <class Side, class T>
void timeReadingFromMemory(benchmark::State& state, std::size_t count)
{
  const T& sample = getSample<T>(count);
  const std::string text = writeToText<Side>(sample);
  std::optional<std::istringstream> stream;
  std::optional<T> value;
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    stream.emplace(text, std::ios::in | std::ios::binary);
    value.emplace();
    state.ResumeTiming();
    Side::read(*stream, *value);
  }
  check(state, value && isSame(*value, sample), "what was read is not the sample");
}

template <class Side, class T>
void timeWritingToFile(benchmark::State& state, std::size_t count, const Medium& medium)
{
  const T& sample = getSample<T>(count);
  const ScratchFile file(medium);
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    file.remove();
    state.ResumeTiming();
    Side::writeFile(file.getPath(), sample);
  }
  T value;
  Side::readFile(file.getPath(), value);
  check(state, isSame(value, sample), "the file does not hold the sample");
}

template <class Side, class T>
void timeReadingFromFile(benchmark::State& state, std::size_t count, const Medium& medium)
{
  const T& sample = getSample<T>(count);
  const ScratchFile file(medium);
  Side::writeFile(file.getPath(), sample);
  std::optional<T> value;
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    value.emplace();
    state.ResumeTiming();
    Side::readFile(file.getPath(), *value);
  }
  check(state, value && isSame(*value, sample), "what was read is not the sample");
}

template <class Side, class T>
void addSubject(const std::string& subject, const std::string& side, std::size_t count)
{
  SampleMakers& makers = getSampleMakers()[subject];
  makers.add([count] { getSample<T>(count); });
  const auto add = [&](const std::string& group, std::function<void(benchmark::State&)> run)
  {
    addCase(
        subject + group, side,
        [&makers, run = std::move(run)](benchmark::State& state)
        {
          makers.run();
          run(state);
        },
        benchmark::kMillisecond);
  };
  add("_write/memory", [count](benchmark::State& state) { timeWritingToMemory<Side, T>(state, count); });
  add("_read/memory", [count](benchmark::State& state) { timeReadingFromMemory<Side, T>(state, count); });
  for (const Medium& medium : getMedia())
  {
    add("_write/" + medium.name,
        [count, medium](benchmark::State& state) { timeWritingToFile<Side, T>(state, count, medium); });
    add("_read/" + medium.name,
        [count, medium](benchmark::State& state) { timeReadingFromFile<Side, T>(state, count, medium); });
  }
}

template <class BinarySide, class XmlSide>
void addSide(const std::string& side)
{
  addSubject<BinarySide, typename BinarySide::Kernel>("kernel", side, g_nbBinaryTaps);
  addSubject<BinarySide, typename BinarySide::RangeColl>("ranges", side, g_nbRanges);
  addSubject<XmlSide, typename XmlSide::Kernel>("xml_kernel", side, g_nbXmlTaps);
  addSubject<XmlSide, typename XmlSide::RangeColl>("xml_ranges", side, g_nbRanges);
}

} // namespace

void addArchiveCases()
{
  addSide<OrvelSide<BinaryOArchive, BinaryIArchive>, OrvelSide<XmlOArchive, XmlIArchive>>("orvel");
#ifdef ORVEL_BENCHMARK_BOOST
  addSide<BoostSide<boost::archive::binary_oarchive, boost::archive::binary_iarchive>,
          BoostSide<boost::archive::xml_oarchive, boost::archive::xml_iarchive>>("boost");
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
  addSide<CerealSide<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>,
          CerealSide<cereal::XMLOutputArchive, cereal::XMLInputArchive>>("cereal");
#endif
}

} // namespace orvel::benchmarks
