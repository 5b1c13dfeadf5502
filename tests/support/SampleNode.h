#pragma once

/// \file
/// \brief A node class as another library would write it.
///
/// A program that uses it lists SampleNode.cpp among its sources.

#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/Node/BaseDataItemNode.h>

namespace orvel
{

/// \brief Node of two leaves: "count", a number, and "label", a string. Class name "orvel::SampleNode".
class SampleNode : public BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(SampleNode)

public:
  SampleNode(); ///< count 0, no label

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const ItemNameColl& getItemKeys() const override;
  ItemInfoConstPtr getItemInfo(const std::string& key) const override;

  DataItemLeaf<ipInt32>& accessCount() { return _count; }
  DataItemLeaf<std::string>& accessLabel() { return _label; }

private:
  DataItemLeaf<ipInt32> _count;
  DataItemLeaf<std::string> _label;
};

/// \brief Return a new node with these values.
boost::shared_ptr<SampleNode> makeSampleNode(ipInt32 count, const std::string& label);

} // namespace orvel
