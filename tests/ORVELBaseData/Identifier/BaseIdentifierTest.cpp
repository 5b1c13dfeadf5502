#include "ORVELBaseData/Identifier/BaseIdentifier.h"

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <ORVELBaseData/Identifier/DoubleIdentifier.h>
#include <ORVELBaseData/Identifier/SingleIdentifier.h>
#include <ORVELBaseData/Identifier/StringIdentifier.h>
#include <ORVELSerialization/ORVELSerializationException.h>
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
  const AbstractTable table("_ZTVN5orvel14BaseIdentifierE");
  for (const std::size_t index :
       {vtableIndexOf(&BaseIdentifier::createNew), vtableIndexOf(&BaseIdentifier::createShared),
        vtableIndexOf(&BaseIdentifier::hasCopySupport), vtableIndexOf(&BaseIdentifier::duplicate),
        vtableIndexOf(&BaseIdentifier::duplicateShared)})
    EXPECT_TRUE(table.isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&BaseIdentifier::getClassName), vtableIndexOf(&BaseIdentifier::copy),
        vtableIndexOf(&BaseIdentifier::write), vtableIndexOf(&BaseIdentifier::read)})
    EXPECT_FALSE(table.isPure(index)) << index;
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(table.getSize(), 12U); // it adds none
  }
}

TEST(BaseIdentifier, HasNoFieldOfItsOwn)
{
  EXPECT_EQ(sizeof(BaseIdentifier), sizeof(void*)); // the pointer to the virtual operations
}

template <class HandWritten>
class ArchivedBaseIdentifier : public ::testing::Test
{
};
TYPED_TEST_SUITE(ArchivedBaseIdentifier, Formats, );

TYPED_TEST(ArchivedBaseIdentifier, StoresItsVersionAndNothingElse)
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

// What the identifiers that are values have in common

/// A class, two values of it, and what its archives hold behind the versions.
struct SingleSubject
{
  using Identifier = SingleIdentifier;
  static constexpr const char* className = "orvel::SingleIdentifier";
  static Identifier first() { return SingleIdentifier(3); }
  static Identifier second() { return SingleIdentifier(4294967295U); }
  static ipUInt32 valueOf(const Identifier& identifier) { return identifier.getValue(); }

  template <class HandWritten>
  static void putFirst(HandWritten& archive)
  {
    archive.integer("_value", 3);
  }
  template <class HandWritten>
  static void putSecond(HandWritten& archive)
  {
    archive.integer("_value", 4294967295);
  }
  template <class HandWritten>
  static void putBroken(HandWritten& archive)
  {
    archive.integer("_value", 4294967296); // one too many
  }
};

struct DoubleSubject
{
  using Identifier = DoubleIdentifier;
  static constexpr const char* className = "orvel::DoubleIdentifier";
  static Identifier first() { return {1, 2}; }
  static Identifier second() { return {4294967295U, 0}; }
  static std::pair<ipUInt32, ipUInt32> valueOf(const Identifier& identifier)
  {
    return {identifier.getHighValue(), identifier.getLowValue()};
  }

  template <class HandWritten>
  static void putFirst(HandWritten& archive)
  {
    archive.integer("_highValue", 1);
    archive.integer("_lowValue", 2);
  }
  template <class HandWritten>
  static void putSecond(HandWritten& archive)
  {
    archive.integer("_highValue", 4294967295);
    archive.integer("_lowValue", 0);
  }
  template <class HandWritten>
  static void putBroken(HandWritten& archive)
  {
    archive.integer("_highValue", 3);
    archive.integer("_lowValue", 4294967296); // one too many
  }
};

struct StringSubject
{
  using Identifier = StringIdentifier;
  static constexpr const char* className = "orvel::StringIdentifier";
  static Identifier first() { return StringIdentifier("left eye"); }
  static Identifier second() { return StringIdentifier(""); }
  static std::string valueOf(const Identifier& identifier) { return identifier.getValue(); }

  template <class HandWritten>
  static void putFirst(HandWritten& archive)
  {
    archive.text("_value", "left eye");
  }
  template <class HandWritten>
  static void putSecond(HandWritten& archive)
  {
    archive.text("_value", "");
  }
  template <class HandWritten>
  static void putBroken(HandWritten& /*archive*/) // nothing
  {
  }
};

template <class Subject>
class ValueIdentifier : public ::testing::Test
{
};

using Subjects = ::testing::Types<SingleSubject, DoubleSubject, StringSubject>;
TYPED_TEST_SUITE(ValueIdentifier, Subjects, );

TYPED_TEST(ValueIdentifier, CopiesItsValue)
{
  using Identifier = typename TypeParam::Identifier;
  const Identifier identifier = TypeParam::first();
  const auto expectSame = [&](const BaseDynamicObject& copy)
  {
    EXPECT_EQ(TypeParam::valueOf(dynamic_cast<const Identifier&>(copy)), TypeParam::valueOf(identifier));
  };
  EXPECT_TRUE(identifier.hasCopySupport());
  Identifier assigned = TypeParam::second();
  EXPECT_EQ(&(assigned = identifier), &assigned);
  expectSame(assigned);
  expectSame(Identifier(identifier));
  expectSame(*std::unique_ptr<BaseDynamicObject>(identifier.duplicate()));
  expectSame(*identifier.duplicateShared());
}

TYPED_TEST(ValueIdentifier, KeepsItsValueWhenItIsAssignedToItself)
{
  auto identifier = TypeParam::first();
  const auto& same = identifier;
  identifier = same;
  EXPECT_EQ(TypeParam::valueOf(identifier), TypeParam::valueOf(TypeParam::first()));
}

template <class S, class F>
struct Case
{
  using Subject = S;
  using Format = F;
};

template <class Case>
class ArchivedValueIdentifier : public ::testing::Test
{
protected:
  using SubjectType = typename Case::Subject;
  using FormatType = typename Case::Format;

  /// An archive, to the items of the class.
  static FormatType start(ipUInt32 version = 1)
  {
    FormatType archive;
    putVersion(archive, "orvel::BaseIdentifier", BaseIdentifier::getVersion());
    putVersion(archive, SubjectType::className, version);
    return archive;
  }

  static std::string fileOfBoth()
  {
    FormatType archive = start();
    SubjectType::putFirst(archive);
    SubjectType::putSecond(archive);
    return archive.file();
  }
};

using Cases = ::testing::Types<Case<SingleSubject, HandWrittenXml>, Case<SingleSubject, HandWrittenBinary>,
                               Case<DoubleSubject, HandWrittenXml>, Case<DoubleSubject, HandWrittenBinary>,
                               Case<StringSubject, HandWrittenXml>, Case<StringSubject, HandWrittenBinary>>;
TYPED_TEST_SUITE(ArchivedValueIdentifier, Cases, );

TYPED_TEST(ArchivedValueIdentifier, StoresTheVersionsOnceAndEachValue)
{
  using Subject = typename TypeParam::Subject;
  EXPECT_EQ(fileOf<typename TypeParam::Format>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = Subject::first().write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                  EXPECT_TRUE(Subject::second().write(archive));
                }),
            this->fileOfBoth());
}

TYPED_TEST(ArchivedValueIdentifier, IsReadAsItIsStored)
{
  using Subject = typename TypeParam::Subject;
  readFile<typename TypeParam::Format>(
      this->fileOfBoth(),
      [](BaseIArchive& archive)
      {
        auto identifier = Subject::second();
        const BoolResult read = identifier.read(archive);
        EXPECT_TRUE(read);
        EXPECT_EQ(read.getMessage(), "");
        EXPECT_EQ(Subject::valueOf(identifier), Subject::valueOf(Subject::first()));
        EXPECT_TRUE(identifier.read(archive));
        EXPECT_EQ(Subject::valueOf(identifier), Subject::valueOf(Subject::second()));
      });
}

TYPED_TEST(ArchivedValueIdentifier, KeepsItsValueWhenTheNewOneCannotBeRead)
{
  using Subject = typename TypeParam::Subject;
  typename TypeParam::Format file = this->start();
  Subject::putBroken(file);
  auto identifier = Subject::second();
  EXPECT_THROW(readStart<typename TypeParam::Format>(file.file(), [&](BaseIArchive& archive)
                                                     { identifier.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(Subject::valueOf(identifier), Subject::valueOf(Subject::second()));
}

} // namespace
