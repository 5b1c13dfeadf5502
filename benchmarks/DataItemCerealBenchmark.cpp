// cereal on the trees of parameters.

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <boost/filesystem/path.hpp>
#include <cereal/archives/binary.hpp>
#include <cereal/archives/xml.hpp>
#include <cereal/types/map.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>

#include "DataItemTiming.h"
#include "PeerTree.h"

namespace orvel::benchmarks
{

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

// Names without commas, for the macros of the library.
#define ORVEL_NAME_PEERS(Type, Name, text)                                                                   \
  using CerealLeaf##Name = PeerLeaf<ItemsForCereal, Type>;                                                   \
  using CerealLeafColl##Name = PeerLeafColl<ItemsForCereal, Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_NAME_PEERS)
#undef ORVEL_NAME_PEERS
using CerealItem = PeerItem<ItemsForCereal>;
using CerealBorderLeaf = PeerBorderLeaf<ItemsForCereal>;
using CerealNode = PeerNode<ItemsForCereal>;
using CerealFilterNode = PeerFilterNode<ItemsForCereal>;
using CerealNodeColl = PeerNodeColl<ItemsForCereal>;
using CerealMap = PeerMap<ItemsForCereal>;

} // namespace orvel::benchmarks

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

namespace orvel::benchmarks
{

namespace
{

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

} // namespace

void addCerealDataItemCases()
{
  addSide<CerealItems<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>,
          CerealItems<cereal::XMLOutputArchive, cereal::XMLInputArchive>>("cereal");
}

} // namespace orvel::benchmarks
