#include "ORVELBaseData/Identifier/BaseIdentifier.h"

#include <cstddef>
#include <dlfcn.h>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELBaseData/Identifier/SingleIdentifier.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseIdentifier, IsTheAbstractRootOfIdentifiers)
{
  EXPECT_TRUE(std::is_abstract<BaseIdentifier>::value);
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, BaseIdentifier>::value));
  EXPECT_TRUE(std::has_virtual_destructor<BaseIdentifier>::value);
}

/// Implements all pure operations.
struct WholeIdentifier : BaseIdentifier
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
};

TEST(BaseIdentifier, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<WholeIdentifier>::value);
  WholeIdentifier identifier;
  identifier.copy(WholeIdentifier()); // what a derived copy calls first
  EXPECT_EQ(identifier.getClassName(), "orvel::BaseIdentifier");
}

TEST(BaseIdentifier, LeavesTheseOperationsPure)
{
  const auto table = static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel14BaseIdentifierE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  for (const std::size_t index :
       {vtableIndexOf(&BaseIdentifier::createNew), vtableIndexOf(&BaseIdentifier::createShared),
        vtableIndexOf(&BaseIdentifier::hasCopySupport), vtableIndexOf(&BaseIdentifier::duplicate),
        vtableIndexOf(&BaseIdentifier::duplicateShared)})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&BaseIdentifier::getClassName), vtableIndexOf(&BaseIdentifier::copy),
        vtableIndexOf(&BaseIdentifier::write), vtableIndexOf(&BaseIdentifier::read)})
    EXPECT_FALSE(isPure(index)) << index;
  if (!isSanitized) // the sanitizer widens the table
  {
    const void* const operations = table + 2; // all that there is of an object without data
    EXPECT_EQ(vtableSizeOf(reinterpret_cast<const BaseIdentifier&>(operations)), 12U); // it adds none
  }
}

TEST(BaseIdentifier, HasTheVirtualOperationsOfEveryObjectInOrder)
{
  // Two entries for the destructor come first.
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::write), 10U);
  EXPECT_EQ(vtableIndexOf(&BaseIdentifier::read), 11U);
}

TEST(BaseIdentifier, HasItsNameAndVersion)
{
  EXPECT_EQ(BaseIdentifier::getTypeName(), "orvel::BaseIdentifier");
  EXPECT_EQ(BaseIdentifier::getVersion(), 1U);
}

TEST(BaseIdentifier, IsNotKnownToTheFactory)
{
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered("orvel::BaseIdentifier"));
}

TEST(BaseIdentifier, HasNoFieldOfItsOwn)
{
  EXPECT_EQ(sizeof(BaseIdentifier), sizeof(void*)); // the pointer to the virtual operations
}

template <class HandWritten>
class ArchivedBaseIdentifier : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseIdentifier, Formats, );

TYPED_TEST(ArchivedBaseIdentifier, FilesItsVersionAndNothingElse)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseIdentifier", 1);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = SingleIdentifier(3).BaseIdentifier::write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            expected.file());
}

TYPED_TEST(ArchivedBaseIdentifier, ReadsItsVersionAndNothingElse)
{
  TypeParam file;
  putVersion(file, "orvel::BaseIdentifier", 1);
  readFile<TypeParam>(file.file(),
                      [](BaseIArchive& archive)
                      {
                        SingleIdentifier identifier(3);
                        const BoolResult read = identifier.BaseIdentifier::read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(identifier.getValue(), 3U);
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseIdentifier"), 1U);
                      });
}

} // namespace
