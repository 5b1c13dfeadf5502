#pragma once

/// \file
/// \brief The catalogue of node classes.

#include <map>
#include <string>

#include <boost/filesystem/path.hpp>

#include <ORVELBaseData/DataItem/Node/BaseDataItemNode.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>

namespace orvel
{

struct SourceLocation;

/// \brief The catalogue of the node classes of the process: what tells of them to users, and what creates
/// them.
///
/// Libraries that define nodes enter them when they are loaded and take them out when they are unloaded: an
/// entry left behind is stale. Archives do not look here: they create by the class name, through
/// DynamicObjectFactory.
///
/// There is no lock but for the making of the catalogue: entering and removing must not overlap with any
/// other use.
class ORVELBASEDATA_EXPORT DataItemNodeFactory
{
public:
  using NodeCreatorFcn = DataItemNodePtr (*)(); ///< returns a new node

  /// \brief What is known of a node class.
  struct NodeInfo
  {
    std::string name;                    ///< for users
    std::string toolTip;                 ///< what it is, for users
    std::string libraryName;             ///< the library in which the class stands
    boost::filesystem::path headerPath;  ///< the header of the class
    NodeCreatorFcn creatorFcn = nullptr; ///< makes a node; to create one without it is the caller's to avoid
  };

  static DataItemNodeFactory& getInstance(); ///< the one catalogue, until the process ends

  DataItemNodeFactory(const DataItemNodeFactory&) = delete;
  DataItemNodeFactory& operator=(const DataItemNodeFactory&) = delete;

  /// \brief Enter a node class under a key, which need not be its name.
  /// \throw ORVELBaseDataException (eNodeAlreadyRegistred) if the key is taken; the entry there stays
  void registerNode(const std::string& key, const NodeInfo& info);

  /// \brief Remove an entry.
  /// \throw ORVELBaseDataException (eNodeNotRegistredForRemoval) if there is none
  void unRegisterNode(const std::string& key);

  bool isRegistredNode(const std::string& key) const; ///< whether the key is entered
  ItemNameColl getRegistredNodes() const;             ///< all keys

  /// \brief Return what is known of a node class; valid until the key is removed.
  /// \throw ORVELBaseDataException (eNodeNotRegistred) if the key is not entered
  const std::string& getNodeName(const std::string& key) const;
  const std::string& getNodeToolTip(const std::string& key) const;                ///< \copydoc getNodeName
  const std::string& getNodeLibraryName(const std::string& key) const;            ///< \copydoc getNodeName
  const boost::filesystem::path& getNodeHeaderPath(const std::string& key) const; ///< \copydoc getNodeName

  /// \brief Return what the creator of a node class makes, a null pointer, too; what it throws passes.
  /// \throw ORVELBaseDataException (eNodeNotRegistred) if the key is not entered
  DataItemNodePtr createNode(const std::string& key) const;

private:
  DataItemNodeFactory() = default;
  ~DataItemNodeFactory() = default;

  const NodeInfo& get(const std::string& key, const SourceLocation& here) const;

  std::map<std::string, NodeInfo> _nodeInfoMap;
};

} // namespace orvel
