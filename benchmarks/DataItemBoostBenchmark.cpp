// Boost.Serialization on the trees of parameters.

#include <cstddef>
#include <string>
#include <utility>

#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>
#include <boost/serialization/export.hpp>
#include <boost/serialization/map.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/shared_ptr.hpp>
#include <boost/serialization/split_free.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>
#include <boost/serialization/version.hpp>
#include <boost/shared_ptr.hpp>

#include "DataItemTiming.h"
#include "PeerTree.h"

namespace orvel::benchmarks
{

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

// Tells the library how to cast, as base_object() would, which also stores the empty base.
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

// Names without commas, for the macros of the library.
#define ORVEL_NAME_PEERS(Type, Name, text)                                                                   \
  using BoostLeaf##Name = PeerLeaf<ItemsForBoost, Type>;                                                     \
  using BoostLeafColl##Name = PeerLeafColl<ItemsForBoost, Type>;
ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_NAME_PEERS)
#undef ORVEL_NAME_PEERS
using BoostItem = PeerItem<ItemsForBoost>;
using BoostBorderLeaf = PeerBorderLeaf<ItemsForBoost>;
using BoostNode = PeerNode<ItemsForBoost>;
using BoostFilterNode = PeerFilterNode<ItemsForBoost>;
using BoostNodeColl = PeerNodeColl<ItemsForBoost>;
using BoostMap = PeerMap<ItemsForBoost>;

} // namespace orvel::benchmarks

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

namespace orvel::benchmarks
{

namespace
{

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

} // namespace

void addBoostDataItemCases()
{
  addSide<BoostItems<boost::archive::binary_oarchive, boost::archive::binary_iarchive>,
          BoostItems<boost::archive::xml_oarchive, boost::archive::xml_iarchive>>("boost");
}

} // namespace orvel::benchmarks
