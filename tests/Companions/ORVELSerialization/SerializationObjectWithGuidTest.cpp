#include "ORVELSerialization/SerializationObjectWithGuid.h"

#include <boost/uuid/uuid_generators.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include "SampleClasses.h"
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>

ORVEL_TEST_EXPOSE(Guid, &orvel::SerializationObjectWithGuid::_guid)

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr const char* g_text = "01234567-89ab-cdef-0123-456789abcdef";

TestWithGuid withGuid(const std::string& text)
{
  TestWithGuid object;
  RecordingIArchive archive(Kind::elementWise, {text});
  static_cast<void>(object.SerializationObjectWithGuid::read(archive));
  return object;
}

TEST(SerializationObjectWithGuid, GivesEachNewObjectANewRandomIdentifier)
{
  const TestWithGuid first;
  const TestWithGuid second;
  EXPECT_NE(first.getGuid(), second.getGuid());
  EXPECT_FALSE(first.getGuid().is_nil());
  EXPECT_EQ(first.getGuid().version(), boost::uuids::uuid::version_random_number_based);
}

TEST(SerializationObjectWithGuid, TakesTheIdentifierOverByCopy)
{
  const TestWithGuid source;
  TestWithGuid target;
  target.copy(source);
  EXPECT_EQ(target.getGuid(), source.getGuid());
  EXPECT_EQ(TestWithGuid(source).getGuid(), source.getGuid());
  TestWithGuid assigned;
  assigned = source;
  EXPECT_EQ(assigned.getGuid(), source.getGuid());
  const DynamicObjectPtr duplicate = source.duplicateShared();
  EXPECT_EQ(dynamic_cast<const TestWithGuid&>(*duplicate).getGuid(), source.getGuid());
  const boost::uuids::uuid before = target.getGuid();
  target.copy(target);
  EXPECT_EQ(target.getGuid(), before);
}

TEST(SerializationObjectWithGuid, IsFiledAsOneText)
{
  const TestWithGuid object = withGuid(g_text);
  const boost::uuids::uuid expected = {
      {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};
  EXPECT_EQ(object.getGuid(), expected);
  RecordingOArchive archive;
  EXPECT_TRUE(object.SerializationObjectWithGuid::write(archive));
  EXPECT_EQ(archive.calls, Calls{std::string("string _guid ") + g_text});
}

TEST(SerializationObjectWithGuid, StandsBeforeTheVersionOfADerivedClass)
{
  RecordingOArchive archive;
  EXPECT_TRUE(withGuid(g_text).write(archive));
  EXPECT_EQ(archive.calls, (Calls{std::string("string _guid ") + g_text, "section orvel::TestWithGuid {",
                                  "unsigned version 1", "}"}));
}

TEST(SerializationObjectWithGuid, RefusesATextThatIsNoneAndKeepsItsOwn)
{
  for (const std::string text :
       {"", "01234567-89AB-CDEF-0123-456789ABCDEF", "{01234567-89ab-cdef-0123-456789abcdef}",
        "0123456789abcdef0123456789abcdef", "01234567-89ab-cdef-0123-456789abcde",
        "01234567-89ab-cdef-0123-456789abcdeg", "01234567-89ab-cdef-0123-456789abcdef "})
  {
    TestWithGuid object;
    const boost::uuids::uuid before = object.getGuid();
    RecordingIArchive archive(Kind::blocks, {text});
    EXPECT_EQ(
        messageOf<ORVELSerializationException>([&] { object.SerializationObjectWithGuid::read(archive); }),
        "Archive recording, call 1: \"" + text + "\" is no valid value of item \"_guid\"");
    EXPECT_EQ(object.getGuid(), before);
    EXPECT_TRUE(archive.isFailed());
  }
}

TEST(SerializationObjectWithGuid, HoldsTheSixteenBytesOnlyAndAddsNoVirtualOperation)
{
  struct Derived : SerializationObjectWithGuid
  {
    virtual void next() = 0;
  };
  EXPECT_EQ(offsetOf(memberOf(Guid())), static_cast<std::ptrdiff_t>(sizeof(void*)));
  EXPECT_EQ(sizeof(SerializationObjectWithGuid), sizeof(void*) + 16);
  EXPECT_EQ(vtableIndexOf(&SerializationObjectWithGuid::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&SerializationObjectWithGuid::write), 10U);
  EXPECT_EQ(vtableIndexOf(&SerializationObjectWithGuid::read), 11U);
  EXPECT_EQ(vtableIndexOf(&Derived::next), 12U);
  EXPECT_EQ(SerializationObjectWithGuid::getTypeName(), "orvel::SerializationObjectWithGuid");
}

} // namespace
