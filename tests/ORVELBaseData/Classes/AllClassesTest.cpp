// What holds for every class that the factory knows, whichever it is.

#include "Samples.h"

#include <gtest/gtest.h>

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ObjectFile.h>
#include <ORVELSerialization/XmlArchive.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/RaisedFailure.h>

#include "VersionChanger.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct Xml
{
  using OArchive = XmlOArchive;
  using IArchive = XmlIArchive;
  static constexpr const char* extension = ".xml";
};

struct Binary
{
  using OArchive = BinaryOArchive;
  using IArchive = BinaryIArchive;
  static constexpr const char* extension = ".bin";
};

template <class Format>
std::string fileOf(const SerializationObjectPtr& object)
{
  std::ostringstream stream;
  typename Format::OArchive archive(stream);
  archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("object", object));
  archive.close();
  return stream.str();
}

template <class Format>
SerializationObjectPtr objectOf(const std::string& file)
{
  std::istringstream stream(file);
  typename Format::IArchive archive(stream);
  archive.setUntrusted(true);
  SerializationObjectPtr object;
  archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", object));
  archive.close(); // nothing may be left
  return object;
}

class AllClasses : public testing::TestWithParam<std::string>
{
protected:
  void SetUp() override
  {
    _samples = samplesOf(GetParam());
    ASSERT_FALSE(_samples.empty()) << "class " << GetParam() << " needs a sample in Samples.cpp";
  }

  SerializationObjectPtr makeNew() const
  {
    return boost::dynamic_pointer_cast<BaseSerializationObject>(
        DynamicObjectFactory::getInstance().createShared(GetParam()));
  }

  std::vector<Sample> _samples;
};

std::string testNameOf(const testing::TestParamInfo<std::string>& info)
{
  std::string name;
  for (const char character : info.param)
    name += std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Factory, AllClasses,
                         testing::ValuesIn(DynamicObjectFactory::getInstance().getRegisteredClassNames()),
                         testNameOf);

TEST(AllClassesAreKnown, ByTheirNames)
{
  const std::set<std::string> names = DynamicObjectFactory::getInstance().getRegisteredClassNames();
  for (const char* name :
       {"orvel::ElementsRange", "orvel::KernelXY", "orvel::KernelXYZ", "orvel::OffsetXY", "orvel::OffsetXYZ"})
    EXPECT_EQ(names.count(name), 1U) << name;
}

// Creation

TEST_P(AllClasses, AreCreatedByNameBothWays)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  ASSERT_TRUE(factory.isRegistered(GetParam()));
  const std::unique_ptr<BaseDynamicObject> owned(factory.createNew(GetParam()));
  const DynamicObjectPtr shared = factory.createShared(GetParam());
  ASSERT_NE(owned, nullptr);
  ASSERT_NE(shared, nullptr);
  EXPECT_EQ(owned->getClassName(), GetParam());
  EXPECT_EQ(shared->getClassName(), GetParam());
  EXPECT_EQ(shared.use_count(), 1);
  const BaseDynamicObject& first = *owned;
  const BaseDynamicObject& second = *_samples.front().object;
  EXPECT_EQ(typeid(first), typeid(second)) << "the sample is of another class";
  EXPECT_EQ(&first.getClassName(), &second.getClassName()); // one text, made once
}

TEST_P(AllClasses, CreateOthersOfTheirKind)
{
  const std::unique_ptr<BaseDynamicObject> owned(_samples.front().object->createNew());
  const DynamicObjectPtr shared = _samples.front().object->createShared();
  ASSERT_NE(owned, nullptr);
  ASSERT_NE(shared, nullptr);
  EXPECT_EQ(owned->getClassName(), GetParam());
  EXPECT_EQ(shared->getClassName(), GetParam());
}

// Copies

TEST_P(AllClasses, HaveSamplesThatTellValuesApart)
{
  for (std::size_t i = 0; i < _samples.size(); ++i)
    for (std::size_t j = 0; j < _samples.size(); ++j)
      EXPECT_EQ(_samples[i].equals(*_samples[j].object), i == j) << i << " " << j;
}

TEST_P(AllClasses, AreCopied)
{
  for (const Sample& sample : _samples)
  {
    ASSERT_TRUE(sample.object->hasCopySupport());
    const std::string before = fileOf<Binary>(sample.object);
    const SerializationObjectPtr target = makeNew();
    target->copy(*sample.object);
    EXPECT_TRUE(sample.equals(*target));
    EXPECT_EQ(fileOf<Binary>(target), before);
    for (const Sample& old : _samples) // over a value that is there
    {
      const SerializationObjectPtr used = makeNew();
      used->copy(*old.object);
      used->copy(*sample.object);
      EXPECT_TRUE(sample.equals(*used));
      EXPECT_EQ(fileOf<Binary>(used), before);
    }
    EXPECT_EQ(fileOf<Binary>(sample.object), before);
  }
}

TEST_P(AllClasses, AreDuplicated)
{
  for (const Sample& sample : _samples)
  {
    const std::unique_ptr<BaseDynamicObject> owned(sample.object->duplicate());
    EXPECT_NE(owned.get(), sample.object.get());
    EXPECT_TRUE(sample.equals(dynamic_cast<const BaseSerializationObject&>(*owned)));
    const DynamicObjectPtr shared = sample.object->duplicateShared();
    EXPECT_NE(shared, sample.object);
    EXPECT_TRUE(sample.equals(dynamic_cast<const BaseSerializationObject&>(*shared)));
    EXPECT_EQ(fileOf<Binary>(boost::dynamic_pointer_cast<BaseSerializationObject>(shared)),
              fileOf<Binary>(sample.object));
  }
}

TEST_P(AllClasses, SurviveACopyOfThemselves)
{
  for (const Sample& sample : _samples)
  {
    const SerializationObjectPtr object =
        boost::dynamic_pointer_cast<BaseSerializationObject>(sample.object->duplicateShared());
    object->copy(*object);
    EXPECT_TRUE(sample.equals(*object));
    EXPECT_EQ(fileOf<Binary>(object), fileOf<Binary>(sample.object));
  }
}

TEST_P(AllClasses, AreCopiedByConstructionAndAssignment)
{
  for (const Sample& sample : _samples)
  {
    EXPECT_TRUE(sample.equals(*sample.copyConstruct()));
    const SerializationObjectPtr target = makeNew();
    sample.assignTo(*target);
    EXPECT_TRUE(sample.equals(*target));
  }
}

// Archives

template <class Format>
void expectThroughArchive(const Sample& sample, const SerializationObjectPtr& fresh)
{
  const std::string file = fileOf<Format>(sample.object);
  const SerializationObjectPtr copy = objectOf<Format>(file);
  ASSERT_NE(copy, nullptr);
  EXPECT_TRUE(sample.equals(*copy));
  EXPECT_EQ(fileOf<Format>(copy), file);

  // In place, twice: only the first one files versions.
  std::ostringstream output;
  typename Format::OArchive written(output);
  const BaseSerializationObject& object = *sample.object;
  written.writeObject("first", object);
  written.writeObject("second", object);
  written.close();
  std::istringstream input(output.str());
  typename Format::IArchive read(input);
  read.readObject("first", *fresh);
  EXPECT_TRUE(sample.equals(*fresh));
  read.readObject("second", *fresh); // over a value that is there
  EXPECT_TRUE(sample.equals(*fresh));
  read.close();
}

TEST_P(AllClasses, GoThroughXml)
{
  for (const Sample& sample : _samples)
    expectThroughArchive<Xml>(sample, makeNew());
}

TEST_P(AllClasses, GoThroughBinary)
{
  for (const Sample& sample : _samples)
    expectThroughArchive<Binary>(sample, makeNew());
}

/// The same object with a version of one of its classes raised by one.
template <class Format>
std::string fileFromTheFuture(const SerializationObjectPtr& object, const std::string& className,
                              std::map<std::string, ipUInt64>& versions)
{
  std::ostringstream stream;
  typename Format::OArchive archive(stream);
  VersionChanger changer(archive, className);
  changer.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("object", object));
  archive.close();
  versions = changer.getVersions();
  return stream.str();
}

template <class Format>
void expectFutureRefused(const SerializationObjectPtr& object, const std::string& ownClassName)
{
  std::map<std::string, ipUInt64> versions;
  EXPECT_EQ(fileFromTheFuture<Format>(object, "", versions), fileOf<Format>(object));
  EXPECT_EQ(versions.count(ownClassName), 1U);
  for (const auto& [className, version] : versions) // of its bases and parts, too
  {
    std::map<std::string, ipUInt64> sameVersions;
    const std::string file = fileFromTheFuture<Format>(object, className, sameVersions);
    const auto failure = failureOf<ORVELSerializationException>([&] { objectOf<Format>(file); });
    EXPECT_EQ(failure.getMessage(), "Version " + std::to_string(version + 1) + " of class " + className +
                                        " is not supported, the highest supported version is " +
                                        std::to_string(version));
    EXPECT_NE(failure.getFunction().find(className + "::read("), std::string::npos) << failure.getFunction();
  }
}

TEST_P(AllClasses, RefuseATooNewVersionInXml)
{
  expectFutureRefused<Xml>(_samples.front().object, GetParam());
}

TEST_P(AllClasses, RefuseATooNewVersionInBinary)
{
  expectFutureRefused<Binary>(_samples.front().object, GetParam());
}

// Reference files

boost::filesystem::path referenceFile(const std::string& className, ipUInt64 version, const char* extension)
{
  std::string folder;
  for (const char character : className.substr(className.find("::") + 2))
    folder += std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_';
  return boost::filesystem::path(ORVEL_TEST_SOURCE_DIR) / "tests" / "data" / folder /
         (std::to_string(version) + extension);
}

std::string readBytes(const boost::filesystem::path& path)
{
  std::ifstream stream(path.string(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

/// With ORVEL_WRITE_REFERENCE_FILES set, a file that is missing is made, and the test still fails: what was
/// made is to be looked at, and committed. Files that exist are never touched.
void expectFile(const boost::filesystem::path& path, const SerializationObjectPtr& object)
{
  if (boost::filesystem::exists(path))
    return;
  if (std::getenv("ORVEL_WRITE_REFERENCE_FILES") != nullptr)
  {
    boost::filesystem::create_directories(path.parent_path());
    saveObject(path, object);
    ADD_FAILURE() << path.string() << " was missing and is made now";
    return;
  }
  ADD_FAILURE() << path.string() << " is missing: ORVEL_WRITE_REFERENCE_FILES=1 makes it";
}

template <class Format>
void expectReferenceFiles(const std::string& className, const Sample& sample)
{
  std::map<std::string, ipUInt64> versions;
  fileFromTheFuture<Format>(sample.object, "", versions);
  const ipUInt64 newest = versions.at(className);
  const boost::filesystem::path path = referenceFile(className, newest, Format::extension);
  expectFile(path, sample.object);
  EXPECT_TRUE(readBytes(path) == fileOf<Format>(sample.object))
      << path.string() << " is not what is written today";
  const SerializationObjectPtr copy = loadObject(path, ArchiveTrust::untrusted);
  ASSERT_NE(copy, nullptr);
  EXPECT_TRUE(sample.equals(*copy));

  ipUInt64 expectedVersion = 1;
  for (const OldSample& old : oldSamplesOf(className))
  {
    EXPECT_EQ(old.version, expectedVersion++);
    const boost::filesystem::path oldPath = referenceFile(className, old.version, Format::extension);
    expectFile(oldPath, old.filed);
    const SerializationObjectPtr read = loadObject(oldPath, ArchiveTrust::untrusted);
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(old.expected.equals(*read)) << oldPath.string();
  }
  EXPECT_EQ(expectedVersion, newest) << "a sample of each older version";
}

TEST_P(AllClasses, ReadTheXmlOfEachVersionForEver)
{
  expectReferenceFiles<Xml>(GetParam(), _samples.front());
}

TEST_P(AllClasses, ReadTheBinaryOfEachVersionForEver)
{
  expectReferenceFiles<Binary>(GetParam(), _samples.front());
}

} // namespace
