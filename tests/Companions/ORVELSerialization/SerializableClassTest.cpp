#include "ORVELSerialization/SerializableClass.h"

#include <memory>
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include "SampleClasses.h"
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ORVELSerializationLog.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/RaisedFailure.h>

namespace orvel
{

/// \brief A class of the kit's namespace that shares its name with one of another namespace.
class Exposure : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(Exposure)

public:
  Exposure() = default;
};

ORVEL_DEFINE_SERIALIZABLE(Exposure, BaseSerializationObject, 1)

void Exposure::copyMembers(const Exposure& /*other*/)
{
}
void Exposure::writeMembers(BaseOArchive& /*archive*/) const
{
}
void Exposure::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

} // namespace orvel

namespace mylab
{

/// \brief A class that knows nothing of the kit's namespace.
class Exposure : public orvel::BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(Exposure)

public:
  Exposure() = default;
  double _seconds = 0;
};

ORVEL_DEFINE_SERIALIZABLE_AS(Exposure, "mylab::Exposure", orvel::BaseSerializationObject, 4)

void Exposure::copyMembers(const Exposure& other)
{
  _seconds = other._seconds;
}

void Exposure::writeMembers(orvel::BaseOArchive& archive) const
{
  archive << orvel::SerializationOItem("_seconds", _seconds);
}

void Exposure::readMembers(orvel::BaseIArchive& archive, orvel::ipUInt32 /*version*/)
{
  archive >> orvel::SerializationIItem("_seconds", _seconds);
}

} // namespace mylab

namespace
{

using namespace orvel;
using namespace orvel::test;

const std::string g_pointName = "orvel::TestPoint";

class SerializableClass : public testing::Test
{
protected:
  void TearDown() override { TestReluctant::g_refuses = false; }
};

// The frame's members

TEST_F(SerializableClass, HasItsNameAndVersion)
{
  EXPECT_EQ(TestPoint::getTypeName(), g_pointName);
  EXPECT_EQ(&TestPoint::getTypeName(), &TestPoint::getTypeName());
  EXPECT_EQ(&TestPoint().getClassName(), &TestPoint::getTypeName());
  EXPECT_EQ(TestPoint::getVersion(), 3U);
}

TEST_F(SerializableClass, HasTheNameThatItsDefinitionGivesInAnotherNamespace)
{
  EXPECT_EQ(mylab::Exposure::getTypeName(), "mylab::Exposure");
  EXPECT_EQ(mylab::Exposure::getVersion(), 4U);
  EXPECT_EQ(orvel::Exposure::getTypeName(), "orvel::Exposure");
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  EXPECT_NE(dynamic_cast<mylab::Exposure*>(factory.createShared("mylab::Exposure").get()), nullptr);
  EXPECT_NE(dynamic_cast<orvel::Exposure*>(factory.createShared("orvel::Exposure").get()), nullptr);

  RecordingOArchive archive;
  mylab::Exposure exposure;
  exposure._seconds = 0.5;
  EXPECT_TRUE(exposure.write(archive));
  EXPECT_EQ(archive.calls, (Calls{"section mylab::Exposure {", "unsigned version 4", "}",
                                  "real64 _seconds " + std::to_string(0.5)}));
}

TEST_F(SerializableClass, CreatesObjectsOfItsOwn)
{
  const std::unique_ptr<TestPoint> made(TestPoint::createNewObject());
  EXPECT_TRUE(*made == TestPoint());
  EXPECT_TRUE(*TestPoint::createSharedObject() == TestPoint());
  const TestPoint point(3, 4);
  const std::unique_ptr<BaseDynamicObject> created(point.createNew());
  EXPECT_TRUE(dynamic_cast<TestPoint&>(*created) == TestPoint());
  EXPECT_TRUE(dynamic_cast<TestPoint&>(*point.createShared()) == TestPoint());
}

TEST_F(SerializableClass, IsKnownToTheFactory)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  EXPECT_TRUE(factory.isRegistered(g_pointName));
  const std::unique_ptr<BaseDynamicObject> made(factory.createNew(g_pointName));
  EXPECT_NE(dynamic_cast<TestPoint*>(made.get()), nullptr);
  EXPECT_NE(dynamic_cast<TestPoint*>(factory.createShared(g_pointName).get()), nullptr);
}

TEST_F(SerializableClass, CopiesItsMembers)
{
  const TestPoint point(3, 4);
  EXPECT_TRUE(point.hasCopySupport());
  EXPECT_TRUE(TestPoint(point) == point);
  TestPoint assigned;
  EXPECT_EQ(&(assigned = point), &assigned);
  EXPECT_TRUE(assigned == point);
  const std::unique_ptr<BaseDynamicObject> duplicate(point.duplicate());
  EXPECT_TRUE(dynamic_cast<TestPoint&>(*duplicate) == point);
  EXPECT_TRUE(dynamic_cast<TestPoint&>(*point.duplicateShared()) == point);
}

TEST_F(SerializableClass, AssignsByTheVirtualCopyAlsoItself)
{
  struct Counting : TestPoint
  {
    int nbCopies = 0;
    void copy(const BaseDynamicObject& other) override
    {
      ++nbCopies;
      TestPoint::copy(other);
    }
  } counting;
  TestPoint& target = counting;
  target = TestPoint(3, 4);
  EXPECT_EQ(counting.nbCopies, 1);
  EXPECT_TRUE(counting == TestPoint(3, 4));
  const TestPoint& same = counting;
  target = same; // there is no test for it
  EXPECT_EQ(counting.nbCopies, 2);
  EXPECT_TRUE(counting == TestPoint(3, 4));
  EXPECT_TRUE(TestPoint(target) == TestPoint(3, 4)); // the copy constructor takes its own class's copy
  EXPECT_EQ(counting.nbCopies, 2);
}

TEST_F(SerializableClass, IsNotCopiedWhereItIsConstructedFromItself)
{
  alignas(TestBrittle) unsigned char memory[sizeof(TestBrittle)] = {};
  auto* const itself = reinterpret_cast<TestBrittle*>(memory);
  EXPECT_NO_THROW(new (memory) TestBrittle(*itself)); // a copy of it would throw
  EXPECT_EQ(itself->getClassName(), "orvel::TestBrittle");
  ++TestBrittle::g_nbAlive; // which its copy constructor leaves to the copy
  itself->~TestBrittle();
}

TEST_F(SerializableClass, LeaksNothingWhenItsCopyThrows)
{
  const int nbBefore = TestBrittle::g_nbAlive;
  {
    TestBrittle brittle;
    ASSERT_EQ(TestBrittle::g_nbAlive, nbBefore + 1);
    EXPECT_THROW(static_cast<void>(brittle.duplicate()), std::runtime_error);
    EXPECT_THROW(static_cast<void>(brittle.duplicateShared()), std::runtime_error);
    EXPECT_EQ(TestBrittle::g_nbAlive, nbBefore + 1);
  }
  EXPECT_EQ(TestBrittle::g_nbAlive, nbBefore);
}

// Writing

TEST_F(SerializableClass, FilesItsVersionAheadOfItsMembers)
{
  RecordingOArchive archive;
  const BoolResult result = TestPoint(5, 6).write(archive);
  EXPECT_TRUE(result);
  EXPECT_EQ(result.getMessage(), "");
  EXPECT_EQ(archive.calls,
            (Calls{"section orvel::TestPoint {", "unsigned version 3", "}", "integer _x 5", "integer _y 6"}));
  EXPECT_TRUE(archive.isClassVersionRegistred(g_pointName));
  EXPECT_EQ(archive.getRegisterClassVersion(g_pointName), 3U);
}

TEST_F(SerializableClass, RecordsItsVersionBeforeItClosesTheSection)
{
  RecordingOArchive archive;
  archive.sectionThatFails = 1;
  EXPECT_THROW(TestPoint(5, 6).write(archive), std::runtime_error);
  EXPECT_EQ(archive.calls, (Calls{"section orvel::TestPoint {", "unsigned version 3", "}"}));
  EXPECT_TRUE(archive.isClassVersionRegistred(g_pointName));
}

TEST_F(SerializableClass, FilesNoVersionForASecondObject)
{
  RecordingOArchive archive;
  EXPECT_TRUE(TestPoint(1, 2).write(archive));
  archive.calls.clear();
  EXPECT_TRUE(TestPoint(3, 4).write(archive));
  EXPECT_EQ(archive.calls, (Calls{"integer _x 3", "integer _y 4"}));
}

TEST_F(SerializableClass, FilesNoVersionThatTheArchiveHasOtherwise)
{
  RecordingOArchive archive;
  archive.registerClassVersion(g_pointName, 1); // also a lower one: writing asks only whether there is one
  EXPECT_TRUE(TestPoint(3, 4).write(archive));
  EXPECT_EQ(archive.calls, (Calls{"integer _x 3", "integer _y 4"}));
  EXPECT_EQ(archive.getRegisterClassVersion(g_pointName), 1U);
}

TEST_F(SerializableClass, PassesOnThatItsBaseDidNotWrite)
{
  TestReluctant::g_refuses = true;
  RecordingOArchive archive;
  const BoolResult result = TestHeir().write(archive);
  EXPECT_FALSE(result);
  EXPECT_EQ(result.getMessage(), "the base can't write");
  EXPECT_TRUE(archive.calls.empty());
  EXPECT_FALSE(archive.isClassVersionRegistred("orvel::TestHeir"));
}

// Reading

TEST_F(SerializableClass, ReadsItsVersionAheadOfItsMembers)
{
  RecordingIArchive archive(Kind::blocks, {ipUInt64{3}, ipInt64{5}, ipInt64{6}});
  TestPoint point;
  const BoolResult result = point.read(archive);
  EXPECT_TRUE(result);
  EXPECT_EQ(result.getMessage(), "");
  EXPECT_EQ(archive.calls,
            (Calls{"section orvel::TestPoint {", "unsigned version [0, 4294967295]", "}",
                   "integer _x [-2147483648, 2147483647]", "integer _y [-2147483648, 2147483647]"}));
  EXPECT_TRUE(point == TestPoint(5, 6));
  EXPECT_EQ(archive.getRegisterClassVersion(g_pointName), 3U);
}

TEST_F(SerializableClass, ReadsASecondObjectUnderTheVersionOfTheFirst)
{
  RecordingIArchive archive(Kind::blocks, {ipUInt64{1}, ipInt64{5}, ipInt64{6}});
  TestPoint point;
  EXPECT_TRUE(point.read(archive));
  EXPECT_TRUE(point == TestPoint(5, 5));
  EXPECT_EQ(archive.getRegisterClassVersion(g_pointName), 1U);
  archive.calls.clear();
  TestPoint second;
  EXPECT_TRUE(second.read(archive));
  EXPECT_TRUE(second == TestPoint(6, 6));
  EXPECT_EQ(archive.calls, Calls{"integer _x [-2147483648, 2147483647]"});
}

TEST_F(SerializableClass, TakesTheNewestLayoutForVersionsThatHaveNoneOfTheirOwn)
{
  for (const ipUInt64 version : {ipUInt64{0}, ipUInt64{2}})
  {
    RecordingIArchive archive(Kind::blocks, {version, ipInt64{5}, ipInt64{6}});
    TestPoint point;
    EXPECT_TRUE(point.read(archive));
    EXPECT_TRUE(point == TestPoint(5, 6));
    EXPECT_EQ(archive.getRegisterClassVersion(g_pointName), version);
  }
}

TEST_F(SerializableClass, RefusesAHigherVersionBeforeAnyMember)
{
  for (const ipUInt64 version : {ipUInt64{4}, ipUInt64{4294967295}})
  {
    RecordingIArchive archive(Kind::blocks, {version, ipInt64{5}, ipInt64{6}});
    TestPoint point(1, 2);
    const LogCapture log(getORVELSerializationLogger());
    const auto failure = failureOf<ORVELSerializationException>([&] { point.read(archive); });
    EXPECT_EQ(failure.getMessage(), "Version " + std::to_string(version) +
                                        " of class orvel::TestPoint is not supported, the highest supported "
                                        "version is 3");
    EXPECT_NE(failure.getFunction().find("TestPoint::read("), std::string::npos);
    EXPECT_NE(failure.getFile().find("SampleClasses.cpp"), std::string::npos);
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords()[0].message, failure.getMessage());
    EXPECT_EQ(archive.calls, (Calls{"section orvel::TestPoint {", "unsigned version [0, 4294967295]", "}"}));
    EXPECT_TRUE(point == TestPoint(1, 2));
    EXPECT_FALSE(archive.isClassVersionRegistred(g_pointName));
    EXPECT_TRUE(archive.isFailed());
  }
}

#if !defined(__clang__)
TEST_F(SerializableClass, NamesTheReadOfTheClassItselfInAFailure)
{
  RecordingIArchive archive(Kind::blocks, {ipUInt64{4}});
  TestPoint point;
  EXPECT_EQ(failureOf<ORVELSerializationException>([&] { point.read(archive); }).getFunction(),
            "virtual orvel::BoolResult orvel::test::TestPoint::read(orvel::BaseIArchive&)");
}
#endif

TEST_F(SerializableClass, PassesOnThatItsBaseDidNotRead)
{
  TestReluctant::g_refuses = true;
  RecordingIArchive archive;
  TestHeir heir;
  const BoolResult result = heir.read(archive);
  EXPECT_FALSE(result);
  EXPECT_EQ(result.getMessage(), "the base can't read");
  EXPECT_TRUE(archive.calls.empty());
  EXPECT_EQ(heir._value, 7);
}

TEST_F(SerializableClass, ClosesItsSectionWhenTheVersionCanNotBeRead)
{
  RecordingIArchive archive;
  TestPoint point(1, 2);
  EXPECT_THROW(point.read(archive), std::logic_error);
  EXPECT_EQ(archive.calls, (Calls{"section orvel::TestPoint {", "unsigned version [0, 4294967295]", "}"}));
  EXPECT_FALSE(archive.isClassVersionRegistred(g_pointName));
}

} // namespace
