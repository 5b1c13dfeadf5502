#include "ORVELBaseData/ORVELBaseData.h"

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/LogMessageManager.h>

namespace
{

using orvel::DynamicObjectFactory;
using orvel::LogMessageManager;

const std::set<std::string> g_classNames = {"orvel::BaseDataItemEnumLeaf",
                                            "orvel::BaseDataItemNodeColl",
                                            "orvel::DataIdentifier",
                                            "orvel::DataItemLeaf<boost::filesystem::path>",
                                            "orvel::DataItemLeaf<ipBool>",
                                            "orvel::DataItemLeaf<ipInt16>",
                                            "orvel::DataItemLeaf<ipInt32>",
                                            "orvel::DataItemLeaf<ipInt64>",
                                            "orvel::DataItemLeaf<ipInt8>",
                                            "orvel::DataItemLeaf<ipReal32>",
                                            "orvel::DataItemLeaf<ipReal64>",
                                            "orvel::DataItemLeaf<ipUInt16>",
                                            "orvel::DataItemLeaf<ipUInt32>",
                                            "orvel::DataItemLeaf<ipUInt64>",
                                            "orvel::DataItemLeaf<ipUInt8>",
                                            "orvel::DataItemLeaf<std::string>",
                                            "orvel::DataItemLeafColl<boost::filesystem::path>",
                                            "orvel::DataItemLeafColl<ipBool>",
                                            "orvel::DataItemLeafColl<ipInt16>",
                                            "orvel::DataItemLeafColl<ipInt32>",
                                            "orvel::DataItemLeafColl<ipInt64>",
                                            "orvel::DataItemLeafColl<ipInt8>",
                                            "orvel::DataItemLeafColl<ipReal32>",
                                            "orvel::DataItemLeafColl<ipReal64>",
                                            "orvel::DataItemLeafColl<ipUInt16>",
                                            "orvel::DataItemLeafColl<ipUInt32>",
                                            "orvel::DataItemLeafColl<ipUInt64>",
                                            "orvel::DataItemLeafColl<ipUInt8>",
                                            "orvel::DataItemLeafColl<std::string>",
                                            "orvel::DataItemMap",
                                            "orvel::DoubleIdentifier",
                                            "orvel::ElementsRange",
                                            "orvel::ExternalBuffer",
                                            "orvel::FragHybridBuffer",
                                            "orvel::GeometricCalibration",
                                            "orvel::HybridBuffer",
                                            "orvel::KernelXY",
                                            "orvel::KernelXYZ",
                                            "orvel::OffsetXY",
                                            "orvel::OffsetXYZ",
                                            "orvel::PlanIndex",
                                            "orvel::SingleIdentifier",
                                            "orvel::StringIdentifier",
                                            "orvel::StructuringElementXY",
                                            "orvel::StructuringElementXYInfo",
                                            "orvel::StructuringElementXYZ",
                                            "orvel::StructuringElementXYZInfo",
                                            "orvel::TOwnBuffer<orvel::ipBool>",
                                            "orvel::TOwnBuffer<orvel::ipInt16>",
                                            "orvel::TOwnBuffer<orvel::ipInt32>",
                                            "orvel::TOwnBuffer<orvel::ipInt64>",
                                            "orvel::TOwnBuffer<orvel::ipInt8>",
                                            "orvel::TOwnBuffer<orvel::ipReal32>",
                                            "orvel::TOwnBuffer<orvel::ipReal64>",
                                            "orvel::TOwnBuffer<orvel::ipUInt16>",
                                            "orvel::TOwnBuffer<orvel::ipUInt32>",
                                            "orvel::TOwnBuffer<orvel::ipUInt64>",
                                            "orvel::TOwnBuffer<orvel::ipUInt8>",
                                            "orvel::TypedOwnBuffer"};

struct MessageTable
{
  std::string domainKey;
  std::vector<std::string> texts; ///< by id
};

const std::vector<MessageTable> g_messageTables = {
    {"N5orvel21eORVELBaseDataMessage6domainE",
     {"Memory allocation failed with requested size %lld", "Buffer should be initialized before used",
      "Can't set fragment data pointer on own fragment hybrid buffer", "Invalid buffer type %s",
      "Invalid fragment index %d for buffer with %d fragments", "Key %s already exists", "Unknown key %s"}},
    {"N5orvel16eDataItemMessage6domainE",
     {"Invalid data item type enumerate value %s", "Invalid data item value type enumerate value %s",
      "Invalid enumerate integer value %d for enumerate %s",
      "Invalid enumerate string value %s for enumerate %s", "Node with index %d is out of bounds [0; %d[",
      "Item with name %s already exists into item map, can't insert it",
      "Item with name %s does not exist into item map, can't remove it",
      "Data item node %s is already registred into factory, can't register more than once",
      "Item with name %s does not exists for current item node",
      "Data item node %s is not registred into factory, can't access data item node informations",
      "Data item node %s is not registred into factory, can't remove from factory",
      "Item shared pointer should not be null"}},
    {"N5orvel14eKernelMessage6domainE",
     {"Can't insert element into kernel, it already exists",
      "Can't replace element into kernel, it does not exists",
      "Can't remove element from kernel, it does not exists",
      "Can't get element value from kernel, it does not exists",
      "Gaussian ratio and minimum kernel size can't be both null",
      "Invalid value %f for input gaussian distribution ratio, should be in ]0, 1[",
      "Invalid value %f for input standard deviation along x axis, should be in ]0, inf[",
      "Invalid value %f for input standard deviation along y axis, should be in ]0, inf[",
      "Invalid value %f for input standard deviation along z axis, should be in ]0, inf[",
      "Input kernel size %d must be odd",
      "Provided half kernel size X %d and Y %d mismatch with value collection size %d",
      "Provided half kernel size X %d, Y %d and Z %d mismatch with value collection size %d",
      "Standard deviation along X and Y are close, the rotation may not be visible",
      "The specified orientation is too low, the rotation is useless and the kernel won't be rotated"}},
    {"N5orvel26eStructuringElementMessage6domainE",
     {"Can't insert element into structuring element, it already exists",
      "Can't remove element from structuring element, it does not exists",
      "Invalid radius value %f, should not be negative",
      "Structuring element informations have not been initialized",
      "Structuring element sub type do not allows to retrieve this kind of information"}},
    {"N5orvel17ePlanIndexMessage6domainE",
     {"Can't get element for plan index z=%d, c=%d, t=%d, element not found",
      "Can't insert element for plan index z=%d, c=%d, t=%d, already exists",
      "Plan offset %d is not valid given plan indexed data with %d plans",
      "Null shared pointer for plan index z=%d, c=%d, t=%d, can't insert it"}},
    {"N5orvel19eCalibrationMessage6domainE", {"Scale value %f should be strictly positive"}}};

// This program has no class of its own, so the factory holds those of the libraries.
TEST(ORVELBaseData, RegistersFiftyNineClassesAndNoOther)
{
  EXPECT_EQ(g_classNames.size(), 59U);
  EXPECT_EQ(DynamicObjectFactory::getInstance().getRegisteredClassNames(), g_classNames);
}

TEST(ORVELBaseData, GivesEveryClassItsVersion)
{
  EXPECT_EQ(orvel::ElementsRange::getVersion(), 2U);
  EXPECT_EQ(orvel::GeometricCalibration::getVersion(), 2U);
  EXPECT_EQ(orvel::KernelXY::getVersion(), 2U);
  EXPECT_EQ(orvel::KernelXYZ::getVersion(), 2U);
  EXPECT_EQ(orvel::PlanIndex::getVersion(), 2U);

  EXPECT_EQ(orvel::BaseDataItem::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseDataItemEnumLeaf::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseDataItemLeaf::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseDataItemLeafColl::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseDataItemNode::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseDataItemNodeColl::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseIdentifier::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseKernel::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseOwnBuffer::getVersion(), 1U);
  EXPECT_EQ(orvel::BasePlanIndexedColl::getVersion(), 1U);
  EXPECT_EQ(orvel::BasePtrColl::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseStructuringElement::getVersion(), 1U);
  EXPECT_EQ(orvel::BaseStructuringElementInfo::getVersion(), 1U);
  EXPECT_EQ(orvel::DataIdentifier::getVersion(), 1U);
  EXPECT_EQ(orvel::DataItemMap::getVersion(), 1U);
  EXPECT_EQ(orvel::DoubleIdentifier::getVersion(), 1U);
  EXPECT_EQ(orvel::FragHybridBuffer::getVersion(), 1U);
  EXPECT_EQ(orvel::HybridBuffer::getVersion(), 1U);
  EXPECT_EQ(orvel::OffsetXY::getVersion(), 1U);
  EXPECT_EQ(orvel::OffsetXYZ::getVersion(), 1U);
  EXPECT_EQ(orvel::SingleIdentifier::getVersion(), 1U);
  EXPECT_EQ(orvel::StringIdentifier::getVersion(), 1U);
  EXPECT_EQ(orvel::StructuringElementXY::getVersion(), 1U);
  EXPECT_EQ(orvel::StructuringElementXYInfo::getVersion(), 1U);
  EXPECT_EQ(orvel::StructuringElementXYZ::getVersion(), 1U);
  EXPECT_EQ(orvel::StructuringElementXYZInfo::getVersion(), 1U);
  EXPECT_EQ(orvel::TypedOwnBuffer::getVersion(), 1U);
#define EXPECT_VERSION_1(Type, Name, text)                                                                   \
  EXPECT_EQ(orvel::DataItemLeaf<Type>::getVersion(), 1U);                                                    \
  EXPECT_EQ(orvel::DataItemLeafColl<Type>::getVersion(), 1U);
  ORVEL_FOR_EACH_VALUE_TYPE(EXPECT_VERSION_1)
#undef EXPECT_VERSION_1
  EXPECT_EQ(orvel::TOwnBuffer<orvel::ipBool>::getVersion(), 1U);
  EXPECT_EQ(orvel::TOwnBuffer<orvel::ipReal64>::getVersion(), 1U);
}

TEST(ORVELBaseData, HoldsSixMessageTablesLetterByLetter)
{
  const LogMessageManager& manager = LogMessageManager::getInstance("ORVELBaseData");
  EXPECT_EQ(g_messageTables.size(), 6U);
  for (const MessageTable& table : g_messageTables)
  {
    const int nbTexts = static_cast<int>(table.texts.size());
    for (int id = 0; id < nbTexts; ++id)
      EXPECT_EQ(manager.getMessage(table.domainKey, id), table.texts[static_cast<std::size_t>(id)])
          << table.domainKey << " " << id;
    EXPECT_THROW(manager.getMessage(table.domainKey, nbTexts), std::out_of_range) << table.domainKey;
    EXPECT_THROW(manager.getMessage(table.domainKey, -1), std::out_of_range) << table.domainKey;
  }
}

} // namespace
