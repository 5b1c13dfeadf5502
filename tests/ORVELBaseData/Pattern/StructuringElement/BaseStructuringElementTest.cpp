#include "ORVELBaseData/Pattern/StructuringElement/BaseStructuringElement.h"

#include <cstddef>
#include <dlfcn.h>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseStructuringElement, IsTheAbstractRootOfStructuringElements)
{
  EXPECT_TRUE(std::is_abstract<BaseStructuringElement>::value);
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, BaseStructuringElement>::value));
  EXPECT_TRUE(std::has_virtual_destructor<BaseStructuringElement>::value);
  EXPECT_FALSE(std::is_copy_assignable<BaseStructuringElement>::value); // copy() takes the whole object over
}

/// Implements all pure operations.
struct WholeElement : BaseStructuringElement
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
};

TEST(BaseStructuringElement, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<WholeElement>::value);
  WholeElement element;
  element.copy(WholeElement()); // what a derived copy calls first
  EXPECT_EQ(element.getClassName(), "orvel::BaseStructuringElement");
}

TEST(BaseStructuringElement, LeavesTheseOperationsPure)
{
  const auto table = static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel22BaseStructuringElementE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  using Base = BaseStructuringElement;
  for (const std::size_t index :
       {vtableIndexOf(&Base::createNew), vtableIndexOf(&Base::createShared),
        vtableIndexOf(&Base::hasCopySupport), vtableIndexOf(&Base::duplicate),
        vtableIndexOf(&Base::duplicateShared), vtableIndexOf(&Base::getStructuringElementType)})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&Base::getClassName), vtableIndexOf(&Base::initCtorCopy), vtableIndexOf(&Base::copy),
        vtableIndexOf(&Base::write), vtableIndexOf(&Base::read)})
    EXPECT_FALSE(isPure(index)) << index;
}

TEST(BaseStructuringElement, HasNoFieldOfItsOwn)
{
  EXPECT_EQ(sizeof(BaseStructuringElement), sizeof(void*)); // the pointer to the virtual operations
}

template <class HandWritten>
class ArchivedBaseStructuringElement : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseStructuringElement, Formats, );

TYPED_TEST(ArchivedBaseStructuringElement, FilesItsVersionAndNothingElse)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseStructuringElement", 1);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = StructuringElementXY().BaseStructuringElement::write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            expected.file());
}

TYPED_TEST(ArchivedBaseStructuringElement, ReadsItsVersionAndNothingElse)
{
  TypeParam file;
  putVersion(file, "orvel::BaseStructuringElement", 1);
  readFile<TypeParam>(file.file(),
                      [](BaseIArchive& archive)
                      {
                        StructuringElementXY element;
                        const BoolResult read = element.BaseStructuringElement::read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseStructuringElement"), 1U);
                      });
}

} // namespace
