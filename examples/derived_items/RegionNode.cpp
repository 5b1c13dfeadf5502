#include "RegionNode.h"

#include <boost/make_shared.hpp>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace mylab
{

using namespace orvel;

ORVEL_DEFINE_SERIALIZABLE_AS(RegionNode, "mylab::RegionNode", BaseDataItemNode, 1)

namespace
{

const std::string g_name = "Region";
const std::string g_libraryName = "Smoothing";
const std::string g_toolTip = "Part of an image";
const std::string g_longToolTip = "The lines of an image that are worked on; 0 lines stand for all";

const std::string g_firstLineName = "First line";
const std::string g_firstLineToolTip = "Counted from 0";
const std::string g_nbLinesName = "Number of lines";
const std::string g_nbLinesToolTip = "0 for all";

} // namespace

RegionNode::RegionNode()
{
  _firstLine.setValue(0);
  _nbLines.setValue(0);
}

const std::string& RegionNode::getNodeName() const
{
  return g_name;
}

const std::string& RegionNode::getNodeLibraryName() const
{
  return g_libraryName;
}

const std::string& RegionNode::getToolTip() const
{
  return g_toolTip;
}

const std::string& RegionNode::getLongToolTip() const
{
  return g_longToolTip;
}

const ItemNameColl& RegionNode::getItemKeys() const
{
  static const ItemNameColl g_keys = {"firstLine", "nbLines"};
  return g_keys;
}

ItemInfoConstPtr RegionNode::getItemInfo(const std::string& key) const
{
  if (key == "firstLine")
    return boost::make_shared<ItemInfo>(ItemInfo{&_firstLine, &g_firstLineName, &g_firstLineToolTip});
  if (key == "nbLines")
    return boost::make_shared<ItemInfo>(ItemInfo{&_nbLines, &g_nbLinesName, &g_nbLinesToolTip});
  return nullptr;
}

void RegionNode::copyMembers(const RegionNode& other)
{
  _firstLine = other._firstLine;
  _nbLines = other._nbLines;
}

void RegionNode::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem<BaseSerializationObject>("firstLine", _firstLine);
  archive << SerializationOItem<BaseSerializationObject>("nbLines", _nbLines);
}

void RegionNode::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem<BaseSerializationObject>("firstLine", _firstLine);
  archive >> SerializationIItem<BaseSerializationObject>("nbLines", _nbLines);
}

} // namespace mylab
