#include "ORVELBaseData/DataItem/Leaf/BaseDataItemLeaf.h"

#include <cstddef>
#include <dlfcn.h>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseDataItemLeaf, IsTheAbstractRootOfLeaves)
{
  EXPECT_TRUE(std::is_abstract<BaseDataItemLeaf>::value);
  EXPECT_TRUE((std::is_base_of<BaseDataItem, BaseDataItemLeaf>::value));
  EXPECT_TRUE(std::has_virtual_destructor<BaseDataItemLeaf>::value);
}

/// Implements all pure operations.
struct Whole : BaseDataItemLeaf
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  eDataItemValueType getDataItemValueType() const override { return eDataItemValueType::eDIVT_Path; }
};

TEST(BaseDataItemLeaf, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<Whole>::value);
  Whole item;
  item.copy(Whole()); // what a derived copy calls first
  EXPECT_EQ(item.getClassName(), "orvel::BaseDataItemLeaf");
}

TEST(BaseDataItemLeaf, AnswersItsKind)
{
  EXPECT_EQ(Whole().getDataItemType(), eDataItemType::eDIT_Leaf);
}

TEST(BaseDataItemLeaf, LeavesTheTypeOfItsValuePure)
{
  const auto table = static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel16BaseDataItemLeafE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  for (const std::size_t index :
       {std::size_t{0}, std::size_t{1}, // the destructor
        vtableIndexOf(&BaseDataItemLeaf::createNew), vtableIndexOf(&BaseDataItemLeaf::createShared),
        vtableIndexOf(&BaseDataItemLeaf::hasCopySupport), vtableIndexOf(&BaseDataItemLeaf::duplicate),
        vtableIndexOf(&BaseDataItemLeaf::duplicateShared),
        vtableIndexOf(&BaseDataItemLeaf::getDataItemValueType)})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&BaseDataItemLeaf::getClassName), vtableIndexOf(&BaseDataItemLeaf::copy),
        vtableIndexOf(&BaseDataItemLeaf::write), vtableIndexOf(&BaseDataItemLeaf::read),
        vtableIndexOf(&BaseDataItemLeaf::getDataItemType)})
    EXPECT_FALSE(isPure(index)) << index;
}

TEST(BaseDataItemLeaf, HasItsNameAndVersion)
{
  EXPECT_EQ(BaseDataItemLeaf::getTypeName(), "orvel::BaseDataItemLeaf");
  EXPECT_EQ(BaseDataItemLeaf::getVersion(), 1U);
}

TEST(BaseDataItemLeaf, IsNotKnownToTheFactory)
{
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered("orvel::BaseDataItemLeaf"));
}

TEST(BaseDataItemLeaf, HasNoFieldOfItsOwn)
{
  EXPECT_EQ(sizeof(BaseDataItemLeaf), sizeof(void*)); // the pointer to the virtual operations
}

TEST(BaseDataItemLeaf, AddsOneVirtualOperationBehindThoseOfItems)
{
  EXPECT_EQ(vtableIndexOf(&BaseDataItemLeaf::read), 11U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItemLeaf::getDataItemType), 12U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItemLeaf::getDataItemValueType), 13U);
}

template <class HandWritten>
class ArchivedBaseDataItemLeaf : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseDataItemLeaf, Formats, );

template <class HandWritten>
std::string twoVersions()
{
  HandWritten file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::BaseDataItemLeaf", 1);
  return file.file();
}

TYPED_TEST(ArchivedBaseDataItemLeaf, FilesTwoVersionsAndNothingElse)
{
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = DataItemLeaf<ipInt32>().BaseDataItemLeaf::write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            twoVersions<TypeParam>());
}

TYPED_TEST(ArchivedBaseDataItemLeaf, ReadsTwoVersionsAndNothingElse)
{
  readFile<TypeParam>(twoVersions<TypeParam>(),
                      [](BaseIArchive& archive)
                      {
                        DataItemLeaf<ipInt32> item;
                        const BoolResult read = item.BaseDataItemLeaf::read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseDataItem"), 1U);
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseDataItemLeaf"), 1U);
                      });
}

} // namespace
