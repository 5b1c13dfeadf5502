#include "ORVELBaseData/Pattern/StructuringElement/BaseStructuringElementInfo.h"

#include <cstddef>
#include <dlfcn.h>
#include <type_traits>

#include <gtest/gtest.h>

#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using Base = BaseStructuringElementInfo;

ORVEL_TEST_EXPOSE(Init, &BaseStructuringElementInfo::_bInit)
ORVEL_TEST_EXPOSE(ClearDerived, &BaseStructuringElementInfo::clearDerived)
ORVEL_TEST_EXPOSE(InitBase, &BaseStructuringElementInfo::initBase)

TEST(BaseStructuringElementInfo, IsTheAbstractRootOfDescriptions)
{
  EXPECT_TRUE(std::is_abstract<Base>::value);
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, Base>::value));
  EXPECT_TRUE(std::has_virtual_destructor<Base>::value);
  EXPECT_FALSE(std::is_copy_assignable<Base>::value); // copy() takes the whole object over
}

/// Implements all pure operations.
struct WholeInfo : Base
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  eStructuringElementType getStructuringElementType() const override
  {
    return eStructuringElementType::eSET_XY;
  }
  void clearDerived() override
  {
    ++nbClears;
    wasInitialized = isInitialized();
  }

  int nbClears = 0;
  bool wasInitialized = true;
};

TEST(BaseStructuringElementInfo, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<WholeInfo>::value);
  EXPECT_EQ(WholeInfo().getClassName(), "orvel::BaseStructuringElementInfo");
}

TEST(BaseStructuringElementInfo, IsNotInitializedWhenNew)
{
  EXPECT_FALSE(WholeInfo().isInitialized());
}

TEST(BaseStructuringElementInfo, IsInitializedByTheLastStepOfAnInitialisation)
{
  WholeInfo info;
  (info.*memberOf(InitBase()))();
  EXPECT_TRUE(info.isInitialized());
  EXPECT_EQ(info.nbClears, 0);
}

TEST(BaseStructuringElementInfo, IsClearedBeforeWhatDerivesFromIt)
{
  WholeInfo info;
  (info.*memberOf(InitBase()))();
  info.clear();
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ(info.nbClears, 1);
  EXPECT_FALSE(info.wasInitialized);
}

TEST(BaseStructuringElementInfo, CopiesWhetherItIsInitialized)
{
  WholeInfo initialised;
  (initialised.*memberOf(InitBase()))();
  WholeInfo info;
  info.copy(initialised);
  EXPECT_TRUE(info.isInitialized());
  info.copy(WholeInfo());
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ(info.nbClears, 0); // that is the derived copy's to do
}

TEST(BaseStructuringElementInfo, LeavesTheseOperationsPure)
{
  const auto table =
      static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel26BaseStructuringElementInfoE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  for (const std::size_t index :
       {vtableIndexOf(&Base::createNew), vtableIndexOf(&Base::createShared),
        vtableIndexOf(&Base::hasCopySupport), vtableIndexOf(&Base::duplicate),
        vtableIndexOf(&Base::duplicateShared), vtableIndexOf(&Base::getStructuringElementType),
        vtableIndexOf(memberOf(ClearDerived()))})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&Base::getClassName), vtableIndexOf(&Base::initCtorCopy), vtableIndexOf(&Base::copy),
        vtableIndexOf(&Base::write), vtableIndexOf(&Base::read)})
    EXPECT_FALSE(isPure(index)) << index;
}

TEST(BaseStructuringElementInfo, HasOneField)
{
  EXPECT_TRUE((std::is_same<decltype(memberOf(Init())), bool Base::*>::value));
  EXPECT_EQ(offsetOf(memberOf(Init())), 8); // behind the pointer to the virtual operations
  EXPECT_EQ(sizeof(Base), 16U);
}

template <class HandWritten>
class ArchivedBaseStructuringElementInfo : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseStructuringElementInfo, Formats, );

TYPED_TEST(ArchivedBaseStructuringElementInfo, HoldsItsVersionAndWhetherItIsInitialized)
{
  for (const bool isInitialized : {false, true})
  {
    TypeParam file;
    putVersion(file, "orvel::BaseStructuringElementInfo", 1);
    file.boolean("_bInit", isInitialized);

    WholeInfo written;
    written.*memberOf(Init()) = isInitialized;
    EXPECT_EQ(fileOf<TypeParam>([&](BaseOArchive& archive) { EXPECT_TRUE(written.write(archive)); }),
              file.file());

    WholeInfo info;
    info.*memberOf(Init()) = !isInitialized;
    readFile<TypeParam>(file.file(), [&](BaseIArchive& archive) { EXPECT_TRUE(info.read(archive)); });
    EXPECT_EQ(info.isInitialized(), isInitialized);
  }
}

} // namespace
