#pragma once

/// \file
/// \brief Catalogue of node classes.

#include <map>
#include <string>

#include <boost/filesystem/path.hpp>

#include <ORVELBaseData/DataItem/Node/BaseDataItemNode.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>

namespace orvel
{

struct SourceLocation;

/// \brief Catalogue of the node classes of the process: their descriptions for users, and their creators.
///
/// A library that defines nodes registers them when it is loaded and unregisters them when it is unloaded;
/// otherwise their entries become stale. Archives do not use the catalogue: they create objects by class
/// name, through DynamicObjectFactory.
///
/// Only the creation of the catalogue is locked: registering and unregistering must not overlap with any
/// other use.
class ORVELBASEDATA_EXPORT DataItemNodeFactory
{
public:
  using NodeCreatorFcn = DataItemNodePtr (*)(); ///< returns a new node

  /// \brief Description and creator of a node class.
  struct NodeInfo
  {
    std::string name;                    ///< name, for users
    std::string toolTip;                 ///< explanation, for users
    std::string libraryName;             ///< library that contains the class
    boost::filesystem::path headerPath;  ///< header of the class
    NodeCreatorFcn creatorFcn = nullptr; ///< creates a node; must not be null when createNode() is called
  };

  static DataItemNodeFactory& getInstance(); ///< the only catalogue, which exists until the process ends

  DataItemNodeFactory(const DataItemNodeFactory&) = delete;
  DataItemNodeFactory& operator=(const DataItemNodeFactory&) = delete;

  /// \brief Register a node class under a key, which need not be its name.
  /// \throw ORVELBaseDataException (eNodeAlreadyRegistred) if the key is taken; its entry is unchanged
  void registerNode(const std::string& key, const NodeInfo& info);

  /// \brief Remove the entry of a key.
  /// \throw ORVELBaseDataException (eNodeNotRegistredForRemoval) if the key is unknown
  void unRegisterNode(const std::string& key);

  bool isRegistredNode(const std::string& key) const; ///< whether the key is known; never raises
  ItemNameColl getRegistredNodes() const;             ///< all keys, sorted by their bytes

  /// \brief Return a field of the entry of a key, valid until the entry is removed.
  /// \throw ORVELBaseDataException (eNodeNotRegistred) if the key is unknown
  const std::string& getNodeName(const std::string& key) const;
  const std::string& getNodeToolTip(const std::string& key) const;                ///< \copydoc getNodeName
  const std::string& getNodeLibraryName(const std::string& key) const;            ///< \copydoc getNodeName
  const boost::filesystem::path& getNodeHeaderPath(const std::string& key) const; ///< \copydoc getNodeName

  /// \brief Call the creator of a node class and return its result, which may be null. Its exceptions
  /// propagate.
  /// \throw ORVELBaseDataException (eNodeNotRegistred) if the key is unknown
  DataItemNodePtr createNode(const std::string& key) const;

private:
  DataItemNodeFactory() = default;
  ~DataItemNodeFactory() = default;

  const NodeInfo& get(const std::string& key, const SourceLocation& here) const;

  std::map<std::string, NodeInfo> _nodeInfoMap;
};

} // namespace orvel
