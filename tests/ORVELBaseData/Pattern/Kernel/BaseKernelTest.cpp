#include "ORVELBaseData/Pattern/Kernel/BaseKernel.h"

#include <cstddef>
#include <dlfcn.h>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseKernel, IsTheAbstractRootOfKernels)
{
  EXPECT_TRUE(std::is_abstract<BaseKernel>::value);
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, BaseKernel>::value));
  EXPECT_TRUE(std::has_virtual_destructor<BaseKernel>::value);
}

/// Implements all pure operations.
struct WholeKernel : BaseKernel
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  eKernelType getKernelType() const override { return eKernelType::eKT_XY; }
  ipUInt32 getNbData() const override { return 0; }
  void clear() override {}
};

TEST(BaseKernel, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<WholeKernel>::value);
  WholeKernel kernel;
  kernel.copy(WholeKernel()); // what a derived copy calls first
  EXPECT_EQ(kernel.getClassName(), "orvel::BaseKernel");
}

TEST(BaseKernel, LeavesTheseOperationsPure)
{
  const auto table = static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel10BaseKernelE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  for (const std::size_t index :
       {vtableIndexOf(&BaseKernel::createNew), vtableIndexOf(&BaseKernel::createShared),
        vtableIndexOf(&BaseKernel::hasCopySupport), vtableIndexOf(&BaseKernel::duplicate),
        vtableIndexOf(&BaseKernel::duplicateShared), vtableIndexOf(&BaseKernel::getKernelType),
        vtableIndexOf(&BaseKernel::getNbData), vtableIndexOf(&BaseKernel::clear)})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index : {vtableIndexOf(&BaseKernel::getClassName),
                                  vtableIndexOf(&BaseKernel::initCtorCopy), vtableIndexOf(&BaseKernel::copy),
                                  vtableIndexOf(&BaseKernel::write), vtableIndexOf(&BaseKernel::read)})
    EXPECT_FALSE(isPure(index)) << index;
}

TEST(BaseKernel, HasNoFieldOfItsOwn)
{
  EXPECT_EQ(sizeof(BaseKernel), sizeof(void*)); // the pointer to the virtual operations
}

template <class HandWritten>
class ArchivedBaseKernel : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseKernel, Formats, );

TYPED_TEST(ArchivedBaseKernel, FilesItsVersionAndNothingElse)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseKernel", 1);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = KernelXY().BaseKernel::write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            expected.file());
}

TYPED_TEST(ArchivedBaseKernel, ReadsItsVersionAndNothingElse)
{
  TypeParam file;
  putVersion(file, "orvel::BaseKernel", 1);
  readFile<TypeParam>(file.file(),
                      [](BaseIArchive& archive)
                      {
                        KernelXY kernel;
                        const BoolResult read = kernel.BaseKernel::read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseKernel"), 1U);
                      });
}

} // namespace
