#pragma once

/// \file
/// \brief The tree of parameters as a program would build it that uses another archive library.
///
/// Derived classes behind shared pointers to their base, registered under their names, a version per class.
/// The base holds nothing, so it is not stored. `Library` says which library stores the classes, with the
/// shared pointers that it knows: `Shared<T>` and `make<T>(arguments)`.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ParameterTree.h"

namespace orvel::benchmarks
{

using boost::static_pointer_cast;
using std::static_pointer_cast;

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

template <class Library>
std::uint64_t checksumOf(const PeerMap<Library>& tree)
{
  Checksum checksum;
  tree.addTo(checksum);
  return checksum.get();
}

template <class Library>
typename Library::template Shared<PeerMap<Library>> copyOf(const PeerMap<Library>& tree)
{
  return static_pointer_cast<PeerMap<Library>>(tree.clone());
}

} // namespace orvel::benchmarks
