#include "ORVELBaseData/ORVELBaseData.h"

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/LogMessageManager.h>
#include <support/ClassList.h>

namespace
{

using orvel::DynamicObjectFactory;
using orvel::LogMessageManager;

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
TEST(ORVELBaseData, RegistersTheClassesOfTheListAndNoOther)
{
  std::set<std::string> expected;
  for (const orvel::test::ClassRow& row : orvel::test::g_classes)
    EXPECT_TRUE(expected.insert(row.name).second) << row.name;
  EXPECT_EQ(DynamicObjectFactory::getInstance().getRegisteredClassNames(), expected);
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
