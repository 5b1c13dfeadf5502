#include "ORVELBaseData/DataItem/LeafColl/BaseDataItemLeafColl.h"

#include <cstddef>
#include <dlfcn.h>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseDataItemLeafColl, IsTheAbstractRootOfLeafCollections)
{
  EXPECT_TRUE(std::is_abstract<BaseDataItemLeafColl>::value);
  EXPECT_TRUE((std::is_base_of<BaseDataItem, BaseDataItemLeafColl>::value));
  EXPECT_TRUE(std::has_virtual_destructor<BaseDataItemLeafColl>::value);
}

/// Implements all pure operations.
struct Whole : BaseDataItemLeafColl
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  eDataItemValueType getDataItemValueType() const override { return eDataItemValueType::eDIVT_Path; }
};

TEST(BaseDataItemLeafColl, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<Whole>::value);
  Whole item;
  item.copy(Whole()); // what a derived copy calls first
  EXPECT_EQ(item.getClassName(), "orvel::BaseDataItemLeafColl");
}

TEST(BaseDataItemLeafColl, AnswersItsKind)
{
  EXPECT_EQ(Whole().getDataItemType(), eDataItemType::eDIT_LeafColl);
}

TEST(BaseDataItemLeafColl, LeavesTheTypeOfItsValuePure)
{
  const auto table = static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel20BaseDataItemLeafCollE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  for (const std::size_t index :
       {std::size_t{0}, std::size_t{1}, // the destructor
        vtableIndexOf(&BaseDataItemLeafColl::createNew), vtableIndexOf(&BaseDataItemLeafColl::createShared),
        vtableIndexOf(&BaseDataItemLeafColl::hasCopySupport), vtableIndexOf(&BaseDataItemLeafColl::duplicate),
        vtableIndexOf(&BaseDataItemLeafColl::duplicateShared),
        vtableIndexOf(&BaseDataItemLeafColl::getDataItemValueType)})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&BaseDataItemLeafColl::getClassName), vtableIndexOf(&BaseDataItemLeafColl::copy),
        vtableIndexOf(&BaseDataItemLeafColl::write), vtableIndexOf(&BaseDataItemLeafColl::read),
        vtableIndexOf(&BaseDataItemLeafColl::getDataItemType)})
    EXPECT_FALSE(isPure(index)) << index;
}

TEST(BaseDataItemLeafColl, HasItsNameAndVersion)
{
  EXPECT_EQ(BaseDataItemLeafColl::getTypeName(), "orvel::BaseDataItemLeafColl");
  EXPECT_EQ(BaseDataItemLeafColl::getVersion(), 1U);
}

TEST(BaseDataItemLeafColl, IsNotKnownToTheFactory)
{
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered("orvel::BaseDataItemLeafColl"));
}

TEST(BaseDataItemLeafColl, HasNoFieldOfItsOwn)
{
  EXPECT_EQ(sizeof(BaseDataItemLeafColl), sizeof(void*)); // the pointer to the virtual operations
}

TEST(BaseDataItemLeafColl, AddsOneVirtualOperationBehindThoseOfItems)
{
  EXPECT_EQ(vtableIndexOf(&BaseDataItemLeafColl::read), 11U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItemLeafColl::getDataItemType), 12U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItemLeafColl::getDataItemValueType), 13U);
}

template <class HandWritten>
class ArchivedBaseDataItemLeafColl : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseDataItemLeafColl, Formats, );

template <class HandWritten>
std::string twoVersions()
{
  HandWritten file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::BaseDataItemLeafColl", 1);
  return file.file();
}

TYPED_TEST(ArchivedBaseDataItemLeafColl, FilesTwoVersionsAndNothingElse)
{
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = DataItemLeafColl<ipInt32>().BaseDataItemLeafColl::write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            twoVersions<TypeParam>());
}

TYPED_TEST(ArchivedBaseDataItemLeafColl, ReadsTwoVersionsAndNothingElse)
{
  readFile<TypeParam>(twoVersions<TypeParam>(),
                      [](BaseIArchive& archive)
                      {
                        DataItemLeafColl<ipInt32> item;
                        const BoolResult read = item.BaseDataItemLeafColl::read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseDataItem"), 1U);
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseDataItemLeafColl"), 1U);
                      });
}

} // namespace
