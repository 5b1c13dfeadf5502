#pragma once

#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/Node/BaseDataItemNode.h>

namespace orvel
{

/// \brief Node of a part of an image: its first line and the number of lines.
class RegionNode : public BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(RegionNode)

public:
  RegionNode(); ///< all lines

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const ItemNameColl& getItemKeys() const override;
  ItemInfoConstPtr getItemInfo(const std::string& key) const override;

private:
  DataItemLeaf<ipUInt32> _firstLine;
  DataItemLeaf<ipUInt32> _nbLines;
};

} // namespace orvel
