#pragma once

#include "RegionNode.h"
#include "SmoothingMethodLeaf.h"
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>

namespace orvel
{

/// \brief Node of what it takes to smooth an image.
///
/// Five items: an enumerate, a number, a path, a collection of numbers and a node within the node. This is
/// all that a library has to write; trees of it are stored, shown and compared by programs that never saw
/// this header.
class SmoothingNode : public BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(SmoothingNode)

public:
  SmoothingNode(); ///< the mean over a pixel and its neighbours, of all lines

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const ItemNameColl& getItemKeys() const override;
  ItemInfoConstPtr getItemInfo(const std::string& key) const override;

  // The way to the items for those who know the class; by key they are constant.
  SmoothingMethodLeaf& accessMethod() { return _method; }
  DataItemLeaf<ipReal64>& accessSigma() { return _sigma; }

private:
  SmoothingMethodLeaf _method;
  DataItemLeaf<ipReal64> _sigma;
  DataItemLeaf<boost::filesystem::path> _mask;
  DataItemLeafColl<ipReal32> _weights;
  mylab::RegionNode _region;
};

} // namespace orvel
