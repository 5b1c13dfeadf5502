#include "SmoothingNode.h"

#include <boost/make_shared.hpp>

#include <ORVELBaseData/DataItem/Node/DataItemNodeFactory.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

// Archives create the node by its class name: this registers it for as long as the library is loaded.
ORVEL_DEFINE_SERIALIZABLE(SmoothingNode, BaseDataItemNode, 1)

namespace
{

const std::string g_name = "Smoothing";
const std::string g_libraryName = "Smoothing";
const std::string g_toolTip = "Smooth an image";
const std::string g_longToolTip = "Replace each pixel by a mean of its neighbourhood";

/// An item of the node but for its place: where it is in a node, and what there is to tell of it.
struct ItemDescription
{
  std::string name;
  std::string toolTip;
};

const ItemDescription g_method = {"Method", "How to smooth"};
const ItemDescription g_sigma = {"Sigma", "Standard deviation, in pixels"};
const ItemDescription g_mask = {"Mask", "Image of the pixels to be smoothed; none for all"};
const ItemDescription g_weights = {"Weights", "From the centre outwards"};
const ItemDescription g_region = {"Region", "Lines to be smoothed"};

ItemInfoConstPtr describe(const BaseDataItem& item, const ItemDescription& description)
{
  return boost::make_shared<ItemInfo>(ItemInfo{&item, &description.name, &description.toolTip});
}

/// The node can be chosen from the catalogue, too, for as long as the library is loaded.
class CatalogueEntry
{
public:
  CatalogueEntry()
  {
    DataItemNodeFactory::getInstance().registerNode(
        "smoothing", {g_name, g_toolTip, g_libraryName, "SmoothingNode.h", &createNode});
  }
  ~CatalogueEntry() { DataItemNodeFactory::getInstance().unRegisterNode("smoothing"); }
  CatalogueEntry(const CatalogueEntry&) = delete;
  CatalogueEntry& operator=(const CatalogueEntry&) = delete;

private:
  static DataItemNodePtr createNode() { return SmoothingNode::createSharedObject(); }
};

const CatalogueEntry g_catalogueEntry;

} // namespace

SmoothingNode::SmoothingNode()
{
  _sigma.setValue(1.0);
  _weights.getColl() = {1.0F, 1.0F};
}

const std::string& SmoothingNode::getNodeName() const
{
  return g_name;
}

const std::string& SmoothingNode::getNodeLibraryName() const
{
  return g_libraryName;
}

const std::string& SmoothingNode::getToolTip() const
{
  return g_toolTip;
}

const std::string& SmoothingNode::getLongToolTip() const
{
  return g_longToolTip;
}

const ItemNameColl& SmoothingNode::getItemKeys() const
{
  static const ItemNameColl g_keys = {"mask", "method", "region", "sigma", "weights"};
  return g_keys;
}

ItemInfoConstPtr SmoothingNode::getItemInfo(const std::string& key) const
{
  if (key == "mask")
    return describe(_mask, g_mask);
  if (key == "method")
    return describe(_method, g_method);
  if (key == "region")
    return describe(_region, g_region);
  if (key == "sigma")
    return describe(_sigma, g_sigma);
  if (key == "weights")
    return describe(_weights, g_weights);
  return nullptr;
}

void SmoothingNode::copyMembers(const SmoothingNode& other)
{
  _method = other._method;
  _sigma = other._sigma;
  _mask = other._mask;
  _weights = other._weights;
  _region = other._region;
}

void SmoothingNode::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem<BaseSerializationObject>("method", _method);
  archive << SerializationOItem<BaseSerializationObject>("sigma", _sigma);
  archive << SerializationOItem<BaseSerializationObject>("mask", _mask);
  archive << SerializationOItem<BaseSerializationObject>("weights", _weights);
  archive << SerializationOItem<BaseSerializationObject>("region", _region);
}

void SmoothingNode::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem<BaseSerializationObject>("method", _method);
  archive >> SerializationIItem<BaseSerializationObject>("sigma", _sigma);
  archive >> SerializationIItem<BaseSerializationObject>("mask", _mask);
  archive >> SerializationIItem<BaseSerializationObject>("weights", _weights);
  archive >> SerializationIItem<BaseSerializationObject>("region", _region);
}

} // namespace orvel
