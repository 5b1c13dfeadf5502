#include "ORVELBaseData/Identifier/DataIdentifier.h"

#include <memory>
#include <string>
#include <type_traits>

#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <gtest/gtest.h>

#include <ORVELBaseData/Identifier/BaseIdentifier.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

DataIdentifier named(const std::string& name)
{
  DataIdentifier identifier;
  identifier.setName(name);
  return identifier;
}

TEST(DataIdentifier, HasNoNameAtFirst)
{
  EXPECT_EQ(DataIdentifier().getName(), "");
}

TEST(DataIdentifier, HasAnIdentifierOfItsOwnAtFirst)
{
  const DataIdentifier first;
  const DataIdentifier second;
  EXPECT_FALSE(first.getGuid().is_nil());
  EXPECT_NE(first.getGuid(), second.getGuid());
}

TEST(DataIdentifier, KeepsItsIdentifierWhenItIsNamed)
{
  DataIdentifier identifier;
  const boost::uuids::uuid guid = identifier.getGuid();
  identifier.setName("left eye");
  EXPECT_EQ(identifier.getName(), "left eye");
  EXPECT_EQ(identifier.getGuid(), guid);
}

TEST(DataIdentifier, IsNoBaseIdentifier)
{
  EXPECT_TRUE((std::is_base_of<SerializationObjectWithGuid, DataIdentifier>::value));
  EXPECT_FALSE((std::is_base_of<BaseIdentifier, DataIdentifier>::value));
  const DataIdentifier identifier;
  const BaseDynamicObject& object = identifier;
  EXPECT_EQ(dynamic_cast<const BaseIdentifier*>(&object), nullptr);
}

TEST(DataIdentifier, CopiesItsIdentifierAndItsName)
{
  const DataIdentifier identifier = named("left eye");
  const auto expectSame = [&](const BaseDynamicObject& object)
  {
    const auto& copy = dynamic_cast<const DataIdentifier&>(object);
    EXPECT_EQ(copy.getGuid(), identifier.getGuid());
    EXPECT_EQ(copy.getName(), "left eye");
  };
  EXPECT_TRUE(identifier.hasCopySupport());
  DataIdentifier assigned = named("right eye");
  EXPECT_EQ(&(assigned = identifier), &assigned);
  expectSame(assigned);
  const DataIdentifier constructed(identifier);
  expectSame(constructed);
  const std::unique_ptr<BaseDynamicObject> duplicate(identifier.duplicate());
  expectSame(*duplicate);
  expectSame(*identifier.duplicateShared());
}

TEST(DataIdentifier, KeepsAllWhenItIsAssignedToItself)
{
  DataIdentifier identifier = named("left eye");
  const boost::uuids::uuid guid = identifier.getGuid();
  const DataIdentifier& same = identifier;
  identifier = same;
  EXPECT_EQ(identifier.getGuid(), guid);
  EXPECT_EQ(identifier.getName(), "left eye");
}

TEST(DataIdentifier, HasTheNewIdentifierAndTheOldNameWhenMemoryEndsInACopy)
{
  const DataIdentifier identifier = named("A name that is too long to be held without memory of its own");
  DataIdentifier target = named("old");
  const std::size_t nbFailures = failAtEachAllocation([&] { target = identifier; },
                                                      [&]
                                                      {
                                                        EXPECT_EQ(target.getGuid(), identifier.getGuid());
                                                        EXPECT_EQ(target.getName(), "old");
                                                      });
  EXPECT_EQ(nbFailures, 1U); // the name
  EXPECT_EQ(target.getName(), identifier.getName());
}

TEST(DataIdentifier, LeaksNothingWhenMemoryEndsInADuplicate)
{
  const DataIdentifier identifier = named("A name that is too long to be held without memory of its own");
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbFailures = failAtEachAllocation([&] { delete identifier.duplicate(); },
                                                      [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
  EXPECT_GE(nbFailures, 2U); // the copy and its name
}

constexpr const char* g_guid = "01234567-89ab-cdef-0123-456789abcdef";

template <class HandWritten>
class ArchivedDataIdentifier : public ::testing::Test
{
};

TYPED_TEST_SUITE(ArchivedDataIdentifier, Formats, );

TYPED_TEST(ArchivedDataIdentifier, StoresItsIdentifierItsVersionOnceAndItsName)
{
  const DataIdentifier first = named("left eye");
  const DataIdentifier second;
  TypeParam expected;
  expected.text("_guid", to_string(first.getGuid()));
  putVersion(expected, "orvel::DataIdentifier", 1); // no record of a BaseIdentifier
  expected.text("_name", "left eye");
  expected.text("_guid", to_string(second.getGuid()));
  expected.text("_name", "");
  EXPECT_EQ(fileOf<TypeParam>(
                [&](BaseOArchive& archive)
                {
                  const BoolResult written = first.write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                  EXPECT_TRUE(second.write(archive));
                }),
            expected.file());
}

TYPED_TEST(ArchivedDataIdentifier, IsReadAsItIsStored)
{
  TypeParam file;
  file.text("_guid", g_guid);
  putVersion(file, "orvel::DataIdentifier", 1);
  file.text("_name", "left eye");
  DataIdentifier identifier = named("old");
  readFile<TypeParam>(file.file(),
                      [&](BaseIArchive& archive)
                      {
                        const BoolResult read = identifier.read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                      });
  EXPECT_EQ(to_string(identifier.getGuid()), g_guid);
  EXPECT_EQ(identifier.getName(), "left eye");
}

TYPED_TEST(ArchivedDataIdentifier, HasTheNewIdentifierAndTheOldNameWhenWhatFollowsCannotBeRead)
{
  TypeParam tooNew;
  tooNew.text("_guid", g_guid);
  putVersion(tooNew, "orvel::DataIdentifier", 2);
  TypeParam cut;
  cut.text("_guid", g_guid);
  putVersion(cut, "orvel::DataIdentifier", 1);
  for (const std::string& file : {tooNew.file(), cut.file()})
  {
    DataIdentifier identifier = named("old");
    EXPECT_THROW(readStart<TypeParam>(file, [&](BaseIArchive& archive) { identifier.read(archive); }),
                 ORVELSerializationException);
    EXPECT_EQ(to_string(identifier.getGuid()), g_guid);
    EXPECT_EQ(identifier.getName(), "old");
  }
}

TYPED_TEST(ArchivedDataIdentifier, KeepsAllWhenTheIdentifierIsNone)
{
  TypeParam file;
  file.text("_guid", "01234567-89ab-cdef-0123-456789abcdeg");
  putVersion(file, "orvel::DataIdentifier", 1);
  file.text("_name", "left eye");
  DataIdentifier identifier = named("old");
  const boost::uuids::uuid guid = identifier.getGuid();
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { identifier.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(identifier.getGuid(), guid);
  EXPECT_EQ(identifier.getName(), "old");
}

} // namespace
