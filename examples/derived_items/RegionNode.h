#pragma once

#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/Node/BaseDataItemNode.h>

namespace mylab
{

/// \brief Node of a part of an image: its first line and the number of lines.
///
/// A class of another namespace than the kit's: its source gives the text by which archives know it, which is
/// "mylab::RegionNode".
class RegionNode : public orvel::BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(RegionNode)

public:
  RegionNode(); ///< all lines

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const orvel::ItemNameColl& getItemKeys() const override;
  orvel::ItemInfoConstPtr getItemInfo(const std::string& key) const override;

private:
  orvel::DataItemLeaf<orvel::ipUInt32> _firstLine;
  orvel::DataItemLeaf<orvel::ipUInt32> _nbLines;
};

} // namespace mylab
