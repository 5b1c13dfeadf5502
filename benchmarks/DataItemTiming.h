#pragma once

/// \file
/// \brief How trees of parameters are timed, for the library and its peers alike.
///
/// A `Tree` makes the tree (see makeTree()). A `Side` writes and reads it: `Side::Tree`, `Side::write(stream,
/// value)` and `Side::read(stream, value)`. Each side reads what it wrote itself; results are compared
/// outside the timed region.

#include <cstddef>
#include <cstdint>
#include <map>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "BenchmarkSupport.h"
#include "ParameterTree.h"

namespace orvel::benchmarks
{

/// \brief How many parameters, and how many maps of them within one another.
struct Shape
{
  std::size_t nbParameters;
  std::size_t depth;

  bool operator<(const Shape& other) const
  {
    return std::pair(nbParameters, depth) < std::pair(other.nbParameters, other.depth);
  }
};

constexpr Shape g_shape = {100000, 4};

/// \brief Return one sample per kind of tree and shape; the first call makes it.
template <class Tree>
const typename Tree::MapPtr& getTree(const Shape& shape)
{
  static std::map<Shape, typename Tree::MapPtr> g_trees;
  typename Tree::MapPtr& tree = g_trees[shape];
  if (!tree)
  {
    tree = makeTree<Tree>(shape.nbParameters, shape.depth);
  }
  return tree;
}

std::uint64_t checksumOf(const DataItemMap& tree); ///< \brief Return the sum that trees are compared by.
DataItemMapPtr copyOf(const DataItemMap& tree);    ///< \brief Return a deep copy.

/// \brief Return the sum that the trees of a shape must have, whichever library they are of.
std::uint64_t getExpectedChecksum(const Shape& shape);

/// \brief A stream to memory that is there already. Without memory it counts what it is given.
class MemoryTarget : private std::streambuf, public std::ostream
{
public:
  explicit MemoryTarget(std::size_t capacity = 0)
    : std::ostream(this)
    , _memory(capacity)
  {
    rewind();
  }

  void rewind() { setp(_memory.data(), _memory.data() + _memory.size()); }
  std::size_t getSize() const { return _nbCounted + static_cast<std::size_t>(pptr() - pbase()); }
  std::string getText() const { return std::string(pbase(), pptr()); }

private:
  std::streamsize xsputn(const char* text, std::streamsize size) override
  {
    if (!_memory.empty())
    {
      return std::streambuf::xsputn(text, size);
    }
    _nbCounted += static_cast<std::size_t>(size);
    return size;
  }

  std::streambuf::int_type overflow(std::streambuf::int_type letter) override
  {
    if (!_memory.empty())
    {
      return std::char_traits<char>::eof();
    }
    ++_nbCounted;
    return std::char_traits<char>::not_eof(letter);
  }

  std::vector<char> _memory;
  std::size_t _nbCounted = 0;
};

template <class Side, class T>
std::size_t getWrittenSize(const T& value)
{
  MemoryTarget target;
  Side::write(target, value);
  return target.getSize();
}

template <class Tree>
void timeBuilding(benchmark::State& state, const Shape& shape)
{
  const std::uint64_t expected = getExpectedChecksum(shape);
  typename Tree::MapPtr tree;
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    tree.reset();
    state.ResumeTiming();
    tree = makeTree<Tree>(shape.nbParameters, shape.depth);
  }
  check(state, tree && checksumOf(*tree) == expected, "what was built is not the sample");
}

template <class Tree>
void timeCopying(benchmark::State& state, const Shape& shape)
{
  const std::uint64_t expected = getExpectedChecksum(shape);
  const typename Tree::MapPtr& sample = getTree<Tree>(shape);
  typename Tree::MapPtr tree;
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    tree.reset();
    state.ResumeTiming();
    tree = copyOf(*sample);
  }
  check(state, tree && tree != sample && checksumOf(*tree) == expected, "the copy is not the sample");
}

template <class Side>
void timeWriting(benchmark::State& state, const Shape& shape)
{
  using MapPtr = typename Side::Tree::MapPtr;
  const MapPtr& sample = getTree<typename Side::Tree>(shape);
  const std::uint64_t expected = getExpectedChecksum(shape);
  const std::size_t size = getWrittenSize<Side>(sample);
  MemoryTarget target(size);
  for ([[maybe_unused]] auto _ : state)
  {
    target.rewind();
    Side::write(target, sample);
  }
  state.counters["bytes"] = static_cast<double>(size);
  std::istringstream source(target.getText(), std::ios::in | std::ios::binary);
  MapPtr tree;
  Side::read(source, tree);
  check(state, target.good() && target.getSize() == size && tree && checksumOf(*tree) == expected,
        "the archive does not hold the sample");
}

template <class Side>
void timeReading(benchmark::State& state, const Shape& shape)
{
  using MapPtr = typename Side::Tree::MapPtr;
  const std::uint64_t expected = getExpectedChecksum(shape);
  std::istringstream source(
      [&shape]
      {
        const MapPtr& sample = getTree<typename Side::Tree>(shape);
        MemoryTarget target(getWrittenSize<Side>(sample));
        Side::write(target, sample);
        return target.getText();
      }(),
      std::ios::in | std::ios::binary);
  MapPtr tree;
  for ([[maybe_unused]] auto _ : state)
  {
    state.PauseTiming();
    tree.reset();
    source.clear();
    source.seekg(0);
    state.ResumeTiming();
    Side::read(source, tree);
  }
  check(state, tree && checksumOf(*tree) == expected, "what was read is not the sample");
}

using Timed = void (*)(benchmark::State&, const Shape&);

/// \brief Enter the case "items_group/side" on the sample of the usual shape.
void add(const std::string& group, const std::string& side, Timed timed);

/// \brief Enter a tree among the samples that add() makes before it times the first case.
void addSample(void (*makeSample)(const Shape&));

/// \brief Enter the cases of a side.
template <class BinarySide, class XmlSide>
void addSide(const std::string& side)
{
  addSample([](const Shape& shape) { getTree<typename BinarySide::Tree>(shape); });
  add("build", side, &timeBuilding<typename BinarySide::Tree>);
  add("copy", side, &timeCopying<typename BinarySide::Tree>);
  add("write/memory", side, &timeWriting<BinarySide>);
  add("read/memory", side, &timeReading<BinarySide>);
  add("xml_write/memory", side, &timeWriting<XmlSide>);
  add("xml_read/memory", side, &timeReading<XmlSide>);
}

void addBoostDataItemCases();  ///< \brief Enter the cases of Boost.Serialization.
void addCerealDataItemCases(); ///< \brief Enter the cases of cereal.

} // namespace orvel::benchmarks
