// Trees of parameters: built, copied, compared, written to memory and read from there, binary and XML; and
// how the cost of each grows with the number of parameters and with the depth of the tree.
//
// The peers file the same names and values as a program would that uses them: derived classes behind shared
// pointers to their base, registered under their names, a version per class. Their base holds nothing, so it
// is not filed. Each side reads what it wrote itself; the result is compared outside the timed region.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "BenchmarkSupport.h"
#include "ParameterTree.h"

#ifdef ORVEL_BENCHMARK_BOOST
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/export.hpp>
#include <boost/serialization/map.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/shared_ptr.hpp>
#include <boost/serialization/split_free.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>
#include <boost/serialization/version.hpp>
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
#include <cereal/archives/binary.hpp>
#include <cereal/archives/xml.hpp>
#include <cereal/types/map.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#endif

#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/SerializationItems.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel::benchmarks
{

using boost::static_pointer_cast;
using std::static_pointer_cast;

// --------------------------------------------------------------------------------- the peers' classes

/// The library that files a peer's classes, with the shared pointers that it knows.
struct ItemsForBoost
{
  template <class T>
  using Shared = boost::shared_ptr<T>;

  template <class T, class... Arguments>
  static Shared<T> make(Arguments&&... arguments)
  {
    return boost::make_shared<T>(std::forward<Arguments>(arguments)...);
  }
};
struct ItemsForCereal
{
  template <class T>
  using Shared = std::shared_ptr<T>;

  template <class T, class... Arguments>
  static Shared<T> make(Arguments&&... arguments)
  {
    return std::make_shared<T>(std::forward<Arguments>(arguments)...);
  }
};

template <class Library>
struct PeerItem
{
  virtual ~PeerItem() = default;
  virtual typename Library::template Shared<PeerItem> clone() const = 0;
  virtual void addTo(Checksum& checksum) const = 0;
};

template <class Library, class Derived, class Base>
struct PeerItemOf : Base
{
  typename Library::template Shared<PeerItem<Library>> clone() const override
  {
    return Library::template make<Derived>(static_cast<const Derived&>(*this));
  }
};

template <class Library, class T>
struct PeerLeaf : PeerItemOf<Library, PeerLeaf<Library, T>, PeerItem<Library>>
{
  void addTo(Checksum& checksum) const override { checksum.add(_value); }

  T _value{};
};

template <class Library>
struct PeerBorderLeaf : PeerItemOf<Library, PeerBorderLeaf<Library>, PeerItem<Library>>
{
  void addTo(Checksum& checksum) const override { checksum.add(_border); }

  ipUInt32 _border = 0;
};

template <class Library, class T>
struct PeerLeafColl : PeerItemOf<Library, PeerLeafColl<Library, T>, PeerItem<Library>>
{
  void addTo(Checksum& checksum) const override { checksum.add(_coll); }

  std::vector<T> _coll;
};

template <class Library>
struct PeerNode : PeerItem<Library>
{
};

template <class Library>
struct PeerFilterNode : PeerItemOf<Library, PeerFilterNode<Library>, PeerNode<Library>>
{
  void addTo(Checksum& checksum) const override
  {
    _border.addTo(checksum);
    _count.addTo(checksum);
    _label.addTo(checksum);
  }

  PeerBorderLeaf<Library> _border;
  PeerLeaf<Library, ipInt32> _count;
  PeerLeaf<Library, std::string> _label;
};

template <class Library>
struct PeerNodeColl : PeerItem<Library>
{
  using NodePtr = typename Library::template Shared<PeerNode<Library>>;

  typename Library::template Shared<PeerItem<Library>> clone() const override
  {
    const auto result = Library::template make<PeerNodeColl>();
    result->_coll.reserve(_coll.size());
    for (const NodePtr& node : _coll)
    {
      result->_coll.push_back(static_pointer_cast<PeerNode<Library>>(node->clone()));
    }
    return result;
  }

  void addTo(Checksum& checksum) const override
  {
    for (const NodePtr& node : _coll)
    {
      node->addTo(checksum);
    }
  }

  std::vector<NodePtr> _coll;
};

template <class Library>
struct PeerMap : PeerItem<Library>
{
  typename Library::template Shared<PeerItem<Library>> clone() const override
  {
    const auto result = Library::template make<PeerMap>();
    for (const auto& [name, item] : _items)
    {
      result->_items.emplace_hint(result->_items.end(), name, item->clone());
    }
    return result;
  }

  void addTo(Checksum& checksum) const override
  {
    for (const auto& [name, item] : _items)
    {
      checksum.add(name);
      item->addTo(checksum);
    }
  }

  std::map<std::string, typename Library::template Shared<PeerItem<Library>>> _items;
};

/// The tree as a peer's classes.
template <class Library>
struct PeerTree
{
  template <class T>
  using Shared = typename Library::template Shared<T>;
  using Map = PeerMap<Library>;
  using MapPtr = Shared<Map>;
  using Node = PeerFilterNode<Library>;
  using NodeColl = PeerNodeColl<Library>;

  static MapPtr makeMap() { return Library::template make<Map>(); }

  static void insert(Map& map, const std::string& name, const Shared<PeerItem<Library>>& item)
  {
    map._items.emplace(name, item);
  }

  template <class T>
  static Shared<PeerLeaf<Library, T>> makeLeaf(const T& value)
  {
    auto leaf = Library::template make<PeerLeaf<Library, T>>();
    leaf->_value = value;
    return leaf;
  }

  template <class T>
  static Shared<PeerLeafColl<Library, T>> makeColl(std::vector<T> values)
  {
    auto coll = Library::template make<PeerLeafColl<Library, T>>();
    coll->_coll = std::move(values);
    return coll;
  }

  static Shared<PeerBorderLeaf<Library>> makeBorder(ipUInt32 border)
  {
    auto leaf = Library::template make<PeerBorderLeaf<Library>>();
    leaf->_border = border;
    return leaf;
  }

  static Shared<Node> makeNode(ipUInt32 border, ipInt32 count, const std::string& label)
  {
    auto node = Library::template make<Node>();
    node->_border._border = border;
    node->_count._value = count;
    node->_label._value = label;
    return node;
  }

  static Shared<NodeColl> makeNodeColl() { return Library::template make<NodeColl>(); }
  static void append(NodeColl& coll, const Shared<Node>& node) { coll._coll.push_back(node); }
};

#ifdef ORVEL_BENCHMARK_BOOST
// Tells the library how to cast, as base_object() would, which also files the empty base.
template <class Derived, class Base>
void registerBoostBase()
{
  boost::serialization::void_cast_register<Derived, Base>(nullptr, nullptr);
}

template <class Archive, class T>
void serialize(Archive& archive, PeerLeaf<ItemsForBoost, T>& leaf, unsigned)
{
  registerBoostBase<PeerLeaf<ItemsForBoost, T>, PeerItem<ItemsForBoost>>();
  archive& boost::serialization::make_nvp("_value", leaf._value);
}

template <class Archive>
void serialize(Archive& archive, PeerBorderLeaf<ItemsForBoost>& leaf, unsigned)
{
  registerBoostBase<PeerBorderLeaf<ItemsForBoost>, PeerItem<ItemsForBoost>>();
  archive& boost::serialization::make_nvp("_border", leaf._border);
}

template <class Archive, class T>
void serialize(Archive& archive, PeerLeafColl<ItemsForBoost, T>& coll, unsigned)
{
  registerBoostBase<PeerLeafColl<ItemsForBoost, T>, PeerItem<ItemsForBoost>>();
  archive& boost::serialization::make_nvp("_coll", coll._coll);
}

template <class Archive>
void serialize(Archive& archive, PeerFilterNode<ItemsForBoost>& node, unsigned)
{
  registerBoostBase<PeerNode<ItemsForBoost>, PeerItem<ItemsForBoost>>();
  registerBoostBase<PeerFilterNode<ItemsForBoost>, PeerNode<ItemsForBoost>>();
  archive& boost::serialization::make_nvp("_border", node._border);
  archive& boost::serialization::make_nvp("_count", node._count);
  archive& boost::serialization::make_nvp("_label", node._label);
}

template <class Archive>
void serialize(Archive& archive, PeerNodeColl<ItemsForBoost>& coll, unsigned)
{
  registerBoostBase<PeerNodeColl<ItemsForBoost>, PeerItem<ItemsForBoost>>();
  archive& boost::serialization::make_nvp("_coll", coll._coll);
}

template <class Archive>
void serialize(Archive& archive, PeerMap<ItemsForBoost>& map, unsigned)
{
  registerBoostBase<PeerMap<ItemsForBoost>, PeerItem<ItemsForBoost>>();
  archive& boost::serialization::make_nvp("_items", map._items);
}

template <class Archive>
void serialize(Archive&, PeerItem<ItemsForBoost>&, unsigned)
{
}

template <class Archive>
void serialize(Archive&, PeerNode<ItemsForBoost>&, unsigned)
{
}
#endif

#ifdef ORVEL_BENCHMARK_CEREAL
template <class Archive, class T>
void serialize(Archive& archive, PeerLeaf<ItemsForCereal, T>& leaf, std::uint32_t)
{
  archive(cereal::make_nvp("_value", leaf._value));
}

template <class Archive>
void serialize(Archive& archive, PeerBorderLeaf<ItemsForCereal>& leaf, std::uint32_t)
{
  archive(cereal::make_nvp("_border", leaf._border));
}

template <class Archive, class T>
void serialize(Archive& archive, PeerLeafColl<ItemsForCereal, T>& coll, std::uint32_t)
{
  archive(cereal::make_nvp("_coll", coll._coll));
}

template <class Archive>
void serialize(Archive& archive, PeerFilterNode<ItemsForCereal>& node, std::uint32_t)
{
  archive(cereal::make_nvp("_border", node._border), cereal::make_nvp("_count", node._count),
          cereal::make_nvp("_label", node._label));
}

template <class Archive>
void serialize(Archive& archive, PeerNodeColl<ItemsForCereal>& coll, std::uint32_t)
{
  archive(cereal::make_nvp("_coll", coll._coll));
}

template <class Archive>
void serialize(Archive& archive, PeerMap<ItemsForCereal>& map, std::uint32_t)
{
  archive(cereal::make_nvp("_items", map._items));
}
#endif

// Names without commas, for the macros of the peers.
#define ORVEL_NAME_PEERS(Type, Name, text)                                                                   \
  using BoostLeaf##Name = PeerLeaf<ItemsForBoost, Type>;                                                     \
  using BoostLeafColl##Name = PeerLeafColl<ItemsForBoost, Type>;                                             \
  using CerealLeaf##Name = PeerLeaf<ItemsForCereal, Type>;                                                   \
  using CerealLeafColl##Name = PeerLeafColl<ItemsForCereal, Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_NAME_PEERS)
#undef ORVEL_NAME_PEERS
using BoostItem = PeerItem<ItemsForBoost>;
using BoostBorderLeaf = PeerBorderLeaf<ItemsForBoost>;
using BoostNode = PeerNode<ItemsForBoost>;
using BoostFilterNode = PeerFilterNode<ItemsForBoost>;
using BoostNodeColl = PeerNodeColl<ItemsForBoost>;
using BoostMap = PeerMap<ItemsForBoost>;
using CerealItem = PeerItem<ItemsForCereal>;
using CerealBorderLeaf = PeerBorderLeaf<ItemsForCereal>;
using CerealNode = PeerNode<ItemsForCereal>;
using CerealFilterNode = PeerFilterNode<ItemsForCereal>;
using CerealNodeColl = PeerNodeColl<ItemsForCereal>;
using CerealMap = PeerMap<ItemsForCereal>;

} // namespace orvel::benchmarks

#ifdef ORVEL_BENCHMARK_BOOST
namespace boost::serialization
{

template <class Archive>
void save(Archive& archive, const boost::filesystem::path& path, unsigned)
{
  const std::string& text = path.string();
  archive << make_nvp("text", text);
}

template <class Archive>
void load(Archive& archive, boost::filesystem::path& path, unsigned)
{
  std::string text;
  archive >> make_nvp("text", text);
  path = text;
}

} // namespace boost::serialization

BOOST_SERIALIZATION_SPLIT_FREE(boost::filesystem::path)
BOOST_CLASS_IMPLEMENTATION(boost::filesystem::path, boost::serialization::object_serializable)
BOOST_CLASS_TRACKING(boost::filesystem::path, boost::serialization::track_never)

#define ORVEL_ENTER_BOOST_CLASS(Class)                                                                       \
  BOOST_CLASS_VERSION(orvel::benchmarks::Boost##Class, 1)                                                    \
  BOOST_CLASS_EXPORT_GUID(orvel::benchmarks::Boost##Class, "orvel::" #Class)
#define ORVEL_ENTER_BOOST_LEAVES(Type, Name, text)                                                           \
  ORVEL_ENTER_BOOST_CLASS(Leaf##Name) ORVEL_ENTER_BOOST_CLASS(LeafColl##Name)
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_ENTER_BOOST_LEAVES)
ORVEL_ENTER_BOOST_CLASS(BorderLeaf)
ORVEL_ENTER_BOOST_CLASS(FilterNode)
ORVEL_ENTER_BOOST_CLASS(NodeColl)
ORVEL_ENTER_BOOST_CLASS(Map)
#undef ORVEL_ENTER_BOOST_LEAVES
#undef ORVEL_ENTER_BOOST_CLASS
BOOST_SERIALIZATION_ASSUME_ABSTRACT(orvel::benchmarks::BoostItem)
BOOST_SERIALIZATION_ASSUME_ABSTRACT(orvel::benchmarks::BoostNode)
#endif

#ifdef ORVEL_BENCHMARK_CEREAL
namespace cereal
{

// Of paths alone, not of strings, which convert to them.
template <class Archive, class Path, std::enable_if_t<std::is_same_v<Path, boost::filesystem::path>, int> = 0>
std::string save_minimal(const Archive&, const Path& path)
{
  return path.string();
}

template <class Archive, class Path, std::enable_if_t<std::is_same_v<Path, boost::filesystem::path>, int> = 0>
void load_minimal(const Archive&, Path& path, const std::string& text)
{
  path = text;
}

} // namespace cereal

#define ORVEL_ENTER_CEREAL_CLASS(Class, Base)                                                                \
  CEREAL_CLASS_VERSION(orvel::benchmarks::Cereal##Class, 1)                                                  \
  CEREAL_REGISTER_TYPE_WITH_NAME(orvel::benchmarks::Cereal##Class, "orvel::" #Class)                         \
  CEREAL_REGISTER_POLYMORPHIC_RELATION(orvel::benchmarks::Cereal##Base, orvel::benchmarks::Cereal##Class)
#define ORVEL_ENTER_CEREAL_LEAVES(Type, Name, text)                                                          \
  ORVEL_ENTER_CEREAL_CLASS(Leaf##Name, Item) ORVEL_ENTER_CEREAL_CLASS(LeafColl##Name, Item)
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_ENTER_CEREAL_LEAVES)
ORVEL_ENTER_CEREAL_CLASS(BorderLeaf, Item)
ORVEL_ENTER_CEREAL_CLASS(FilterNode, Node)
ORVEL_ENTER_CEREAL_CLASS(NodeColl, Item)
ORVEL_ENTER_CEREAL_CLASS(Map, Item)
CEREAL_REGISTER_POLYMORPHIC_RELATION(orvel::benchmarks::CerealItem, orvel::benchmarks::CerealNode)
#undef ORVEL_ENTER_CEREAL_LEAVES
#undef ORVEL_ENTER_CEREAL_CLASS
#endif

namespace orvel::benchmarks
{

namespace
{

// ----------------------------------------------------------------------------------------- the sides

template <class OArchive, class IArchive>
struct OrvelItems
{
  using Tree = OrvelTree;

  template <class T>
  static void write(std::ostream& stream, const T& value)
  {
    OArchive archive(stream);
    archive << SerializationOItem("value", value);
    archive.close();
  }

  template <class T>
  static void read(std::istream& stream, T& value)
  {
    IArchive archive(stream);
    archive >> SerializationIItem("value", value);
    archive.close();
  }
};

#ifdef ORVEL_BENCHMARK_BOOST
template <class OArchive, class IArchive>
struct BoostItems
{
  using Tree = PeerTree<ItemsForBoost>;

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
struct CerealItems
{
  using Tree = PeerTree<ItemsForCereal>;

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

std::uint64_t checksumOf(const DataItemMap& tree)
{
  return getChecksum(tree).get();
}

template <class Library>
std::uint64_t checksumOf(const PeerMap<Library>& tree)
{
  Checksum checksum;
  tree.addTo(checksum);
  return checksum.get();
}

DataItemMapPtr copyOf(const DataItemMap& tree)
{
  return DataItemMapPtr(static_cast<DataItemMap*>(tree.duplicate()));
}

template <class Library>
typename Library::template Shared<PeerMap<Library>> copyOf(const PeerMap<Library>& tree)
{
  return static_pointer_cast<PeerMap<Library>>(tree.clone());
}

// --------------------------------------------------------------------------------------- the samples

/// How many parameters, and how many maps of them within one another.
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

/// One sample per kind of tree and shape, made by the first call.
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

/// The sum that the trees of a shape must have, whichever library they are of.
std::uint64_t getExpectedChecksum(const Shape& shape)
{
  static std::map<Shape, std::uint64_t> g_checksums;
  const auto found = g_checksums.find(shape);
  return found != g_checksums.end()
             ? found->second
             : g_checksums.emplace(shape, checksumOf(*getTree<OrvelTree>(shape))).first->second;
}

/// Makes the samples of all sides before the first of them is timed: one that is made later would lie
/// scattered over what the others have left of the heap, and be slower to walk for that.
void makeSamples(const Shape& shape)
{
  getTree<OrvelTree>(shape);
  getExpectedChecksum(shape);
#ifdef ORVEL_BENCHMARK_BOOST
  getTree<PeerTree<ItemsForBoost>>(shape);
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
  getTree<PeerTree<ItemsForCereal>>(shape);
#endif
}

// ------------------------------------------------------------------------------------ the measurement

/// A stream to memory that is there already. Without memory it counts what it is given.
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

/// Another tree of the same values. It stays: comparing and walking are given the same two.
const DataItemMap& getOtherTree(const Shape& shape)
{
  static std::map<Shape, DataItemMapPtr> g_trees;
  DataItemMapPtr& tree = g_trees[shape];
  if (!tree)
  {
    tree = makeTree<OrvelTree>(shape.nbParameters, shape.depth);
  }
  return *tree;
}

/// Change the value that a walk comes to last.
void changeLastValue(DataItemMap& tree)
{
  BaseDataItem& item = tree.getItem(*tree.getItemNames().rbegin());
  if (item.getDataItemType() == eDataItemType::eDIT_Map)
  {
    changeLastValue(static_cast<DataItemMap&>(item));
  }
  else
  {
    auto& path = static_cast<DataItemLeaf<ipUInt8>&>(item);
    path.setValue(static_cast<ipUInt8>(path.getValue() ^ 1U));
  }
}

void timeComparing(benchmark::State& state, const Shape& shape)
{
  const DataItemMap& sample = *getTree<OrvelTree>(shape);
  const DataItemMap& other = getOtherTree(shape);
  bool areEqual = true;
  for ([[maybe_unused]] auto _ : state)
  {
    areEqual = orvel::equal(sample, other, 1e-6) && areEqual;
  }
  const DataItemMapPtr changed = copyOf(other);
  changeLastValue(*changed);
  check(state, areEqual && !orvel::equal(sample, *changed, 1e-6), "the comparison is wrong");
}

void timeWalking(benchmark::State& state, const Shape& shape)
{
  const DataItemMap& sample = *getTree<OrvelTree>(shape);
  const DataItemMap& other = getOtherTree(shape);
  bool areEqual = true;
  for ([[maybe_unused]] auto _ : state)
  {
    areEqual = getSum(sample).get() == getSum(other).get() && areEqual;
  }
  check(state, areEqual, "the sums differ");
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

// ----------------------------------------------------------------------------------------- the cases

using Timed = void (*)(benchmark::State&, const Shape&);

void add(const std::string& group, const std::string& side, Timed timed)
{
  addCase(
      "items_" + group, side,
      [timed](benchmark::State& state)
      {
        makeSamples(g_shape);
        timed(state, g_shape);
      },
      benchmark::kMillisecond);
}

template <class BinarySide, class XmlSide>
void addSide(const std::string& side)
{
  add("build", side, &timeBuilding<typename BinarySide::Tree>);
  add("copy", side, &timeCopying<typename BinarySide::Tree>);
  add("write/memory", side, &timeWriting<BinarySide>);
  add("read/memory", side, &timeReading<BinarySide>);
  add("xml_write/memory", side, &timeWriting<XmlSide>);
  add("xml_read/memory", side, &timeReading<XmlSide>);
}

/// Enter a case per shape, each named by the number that differs.
void addSeries(const std::string& series, const std::vector<std::pair<std::size_t, Shape>>& shapes)
{
  using Binary = OrvelItems<BinaryOArchive, BinaryIArchive>;
  using Xml = OrvelItems<XmlOArchive, XmlIArchive>;
  const std::vector<std::pair<std::string, Timed>> costs = {
      {"build", &timeBuilding<OrvelTree>}, {"copy", &timeCopying<OrvelTree>},
      {"equal", &timeComparing},           {"write", &timeWriting<Binary>},
      {"read", &timeReading<Binary>},      {"xml_write", &timeWriting<Xml>},
      {"xml_read", &timeReading<Xml>}};
  for (const auto& [cost, timed] : costs)
  {
    for (const auto& [number, shape] : shapes)
    {
      addCase(
          "items_" + cost + "/" + series, std::to_string(number),
          [timed = timed, shapes, shape = shape](benchmark::State& state)
          {
            for (const auto& other : shapes)
            {
              getExpectedChecksum(other.second); // all samples are there before the first is timed
            }
            timed(state, shape);
          },
          benchmark::kMillisecond);
    }
  }
}

} // namespace

void addDataItemCases()
{
  addSide<OrvelItems<BinaryOArchive, BinaryIArchive>, OrvelItems<XmlOArchive, XmlIArchive>>("orvel");
#ifdef ORVEL_BENCHMARK_BOOST
  addSide<BoostItems<boost::archive::binary_oarchive, boost::archive::binary_iarchive>,
          BoostItems<boost::archive::xml_oarchive, boost::archive::xml_iarchive>>("boost");
#endif
#ifdef ORVEL_BENCHMARK_CEREAL
  addSide<CerealItems<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>,
          CerealItems<cereal::XMLOutputArchive, cereal::XMLInputArchive>>("cereal");
#endif
  add("equal", "orvel", &timeComparing);
  add("equal", "walk", &timeWalking);

  std::vector<std::pair<std::size_t, Shape>> sizes;
  for (const std::size_t nbParameters : {1000U, 10000U, 100000U, 1000000U})
  {
    sizes.emplace_back(nbParameters, Shape{nbParameters, g_shape.depth});
  }
  addSeries("parameters", sizes);
  std::vector<std::pair<std::size_t, Shape>> depths;
  for (const std::size_t depth : {1U, 8U, 32U, 100U})
  {
    depths.emplace_back(depth, Shape{g_shape.nbParameters, depth});
  }
  addSeries("depth", depths);
}

} // namespace orvel::benchmarks
