// What holds for every class that the factory knows, whichever it is.

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "Samples.h"
#include "VersionChanger.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ObjectFile.h>
#include <ORVELSerialization/XmlArchive.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/ClassList.h>
#include <support/RaisedFailure.h>

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

template <class Format>
std::string fileInPlaceOf(const BaseSerializationObject& object)
{
  std::ostringstream stream;
  typename Format::OArchive archive(stream);
  archive.writeObject("object", object);
  archive.close();
  return stream.str();
}

template <class Format>
void readInPlace(const std::string& file, BaseSerializationObject& object)
{
  std::istringstream stream(file);
  typename Format::IArchive archive(stream);
  archive.readObject("object", object);
  archive.close();
}

class AllClasses : public testing::TestWithParam<std::string>
{
protected:
  void SetUp() override
  {
    _samples = samplesOf(GetParam());
    ASSERT_FALSE(_samples.empty()) << "class " << GetParam() << " needs a sample";
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

std::vector<std::string> namesOfTheList()
{
  std::vector<std::string> names;
  for (const ClassRow& row : g_classes)
    names.emplace_back(row.name);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Factory, AllClasses, testing::ValuesIn(namesOfTheList()), testNameOf);

TEST(AllClassesOfTheFactory, AreThoseOfTheList)
{
  std::set<std::string> expected = {"orvel::SampleNode", "orvel::SkeletonElement"}; // this program's own
  for (const ClassRow& row : g_classes)
    expected.insert(row.name);
  EXPECT_EQ(DynamicObjectFactory::getInstance().getRegisteredClassNames(), expected);
}

// Creation

TEST_P(AllClasses, HaveTheirNameAndVersion)
{
  for (const Sample& sample : _samples)
  {
    EXPECT_EQ(sample.typeName, GetParam());
    EXPECT_EQ(sample.object->getClassName(), GetParam());
    EXPECT_EQ(sample.version, versionOf(GetParam()));
  }
}

TEST_P(AllClasses, AreCreatedByNameByAnotherAndByTheirClass)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  ASSERT_TRUE(factory.isRegistered(GetParam()));
  const Sample& sample = _samples.front();
  std::vector<DynamicObjectPtr> objects = {
      DynamicObjectPtr(factory.createNew(GetParam())), factory.createShared(GetParam()),
      DynamicObjectPtr(sample.object->createNew()), sample.object->createShared()};
  for (const auto& make : sample.makeNew)
    objects.push_back(make());
  for (const DynamicObjectPtr& object : objects)
  {
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object.use_count(), 1);
    const BaseDynamicObject& first = *object;
    const BaseDynamicObject& second = *sample.object;
    EXPECT_EQ(typeid(first), typeid(second));
    EXPECT_EQ(&first.getClassName(), &second.getClassName()); // one text, made once
    for (const Sample& each : _samples)
      EXPECT_TRUE(!each.isNew || each.equals(dynamic_cast<const BaseSerializationObject&>(first)));
  }
}

// Copies

TEST_P(AllClasses, HaveSamplesThatTellValuesApart)
{
  for (std::size_t i = 0; i < _samples.size(); ++i)
    for (std::size_t j = 0; j < _samples.size(); ++j)
    {
      EXPECT_EQ(_samples[i].equals(*_samples[j].object), i == j) << i << " " << j;
      EXPECT_EQ(_samples[i].equals(*_samples[j].makeAgain()), i == j) << i << " " << j;
    }
}

/// What an object holds, as a file; nothing of a class that refuses to be written.
std::string contentOf(const Sample& sample, const SerializationObjectPtr& object)
{
  return sample.writeFailure.empty() ? fileOf<Binary>(object) : "";
}

/// Calls copy(), which makes a copy of the sample on the target, and expects what the class says of that.
template <class Copy>
void expectCopy(const Sample& sample, const BaseSerializationObject& target, Copy copy)
{
  const std::string before = contentOf(sample, sample.object);
  const std::string failure = sample.copyFailure(target);
  if (failure.empty())
    copy();
  else
    EXPECT_EQ(messageOf<ORVELBaseDataException>(copy), failure);
  EXPECT_EQ(contentOf(sample, sample.object), before);
}

void expectSame(const Sample& sample, const SerializationObjectPtr& copy)
{
  EXPECT_TRUE(sample.equals(*copy));
  if (!sample.isCopiedInPart)
  {
    EXPECT_EQ(contentOf(sample, copy), contentOf(sample, sample.object));
  }
}

TEST_P(AllClasses, AreCopied)
{
  for (const Sample& sample : _samples)
  {
    ASSERT_TRUE(sample.object->hasCopySupport());
    std::vector<SerializationObjectPtr> targets = {makeNew()};
    for (const Sample& old : _samples) // over a value that is there
      targets.push_back(old.makeAgain());
    for (const SerializationObjectPtr& target : targets)
      expectCopy(sample, *target,
                 [&]
                 {
                   target->copy(*sample.object);
                   expectSame(sample, target);
                 });
  }
}

TEST_P(AllClasses, AreDuplicated)
{
  for (const Sample& sample : _samples)
  {
    expectCopy(sample, *makeNew(),
               [&]
               {
                 const std::unique_ptr<BaseDynamicObject> owned(sample.object->duplicate());
                 EXPECT_NE(owned.get(), sample.object.get());
                 EXPECT_TRUE(sample.equals(dynamic_cast<const BaseSerializationObject&>(*owned)));
               });
    expectCopy(sample, *makeNew(),
               [&]
               {
                 const DynamicObjectPtr shared = sample.object->duplicateShared();
                 EXPECT_NE(shared, sample.object);
                 expectSame(sample, boost::dynamic_pointer_cast<BaseSerializationObject>(shared));
               });
  }
}

TEST_P(AllClasses, SurviveACopyOfThemselves)
{
  for (const Sample& sample : _samples)
  {
    const SerializationObjectPtr object = sample.makeAgain();
    expectCopy(sample, *object, [&] { object->copy(*object); });
    if (!sample.isChangedByItself)
      expectSame(sample, object);
  }
}

TEST_P(AllClasses, AreCopiedByConstructionAndAssignment)
{
  for (const Sample& sample : _samples)
  {
    const SerializationObjectPtr target = makeNew();
    expectCopy(sample, *target, [&] { expectSame(sample, sample.copyConstruct()); });
    expectCopy(sample, *target,
               [&]
               {
                 sample.assignTo(*target);
                 expectSame(sample, target);
               });
  }
}

// Archives

template <class Format>
void expectThroughArchive(const Sample& sample, const SerializationObjectPtr& fresh)
{
  if (!sample.writeFailure.empty())
  {
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { fileOf<Format>(sample.object); }), sample.writeFailure);
    return;
  }
  const std::string file = fileOf<Format>(sample.object);
  const SerializationObjectPtr copy = objectOf<Format>(file);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(fileOf<Format>(copy), file);
  if (!sample.isStored)
  {
    EXPECT_EQ(fileOf<Format>(fresh), file);
    const SerializationObjectPtr object = sample.makeAgain();
    const std::string content = fileInPlaceOf<Format>(*fresh);
    readInPlace<Format>(content, *object);
    EXPECT_TRUE(sample.equals(*object)) << "reading must leave the object as it was";
    return;
  }
  EXPECT_TRUE(sample.equals(*copy));

  // In place, twice: only the first one stores versions.
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

/// The file of one pass: the structure or the data of an object.
template <class Format>
std::string fileOfPass(const BaseObjectWithSkeleton& object, const eSklSrzMode& mode)
{
  object.setSerializationMode(mode);
  const std::string file = fileInPlaceOf<Format>(object);
  object.setSerializationMode(eSklSrzMode::eSSM_Full);
  return file;
}

template <class Format>
void readPass(const std::string& file, BaseObjectWithSkeleton& object, const eSklSrzMode& mode)
{
  object.setSerializationMode(mode);
  readInPlace<Format>(file, object);
  object.setSerializationMode(eSklSrzMode::eSSM_Full);
}

template <class Format>
void expectInTwoPasses(const Sample& sample, const SerializationObjectPtr& fresh)
{
  const auto* const object = dynamic_cast<const BaseObjectWithSkeleton*>(sample.object.get());
  auto* const copy = dynamic_cast<BaseObjectWithSkeleton*>(fresh.get());
  if (object == nullptr || !sample.isStored)
    return;
  const std::string skeleton = fileOfPass<Format>(*object, eSklSrzMode::eSSM_Skeleton);
  const std::string data = fileOfPass<Format>(*object, eSklSrzMode::eSSM_Data);
  readPass<Format>(skeleton, *copy, eSklSrzMode::eSSM_Skeleton);
  EXPECT_EQ(fileOfPass<Format>(*copy, eSklSrzMode::eSSM_Skeleton), skeleton);
  readPass<Format>(data, *copy, eSklSrzMode::eSSM_Data);
  EXPECT_EQ(fileOfPass<Format>(*copy, eSklSrzMode::eSSM_Data), data);
  EXPECT_TRUE(sample.equals(*copy));
}

TEST_P(AllClasses, GoThroughXmlInTwoPasses)
{
  for (const Sample& sample : _samples)
    expectInTwoPasses<Xml>(sample, makeNew());
}

TEST_P(AllClasses, GoThroughBinaryInTwoPasses)
{
  for (const Sample& sample : _samples)
    expectInTwoPasses<Binary>(sample, makeNew());
}

/// Writes the same object, with another version of one of its classes.
template <class Format>
std::string fileWithVersion(const SerializationObjectPtr& object, const std::string& className,
                            ipUInt64 version)
{
  std::ostringstream stream;
  typename Format::OArchive archive(stream);
  VersionChanger changer(archive, className, version);
  changer.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("object", object));
  archive.close();
  return stream.str();
}

/// Returns the version records of an object that is written twice in a row.
template <class Format>
std::vector<VersionChanger::Record> versionsOf(const BaseSerializationObject& object)
{
  std::ostringstream stream;
  typename Format::OArchive archive(stream);
  VersionChanger changer(archive);
  changer.writeObject("first", object);
  changer.writeObject("second", object);
  return changer.getVersions();
}

bool isOfThisProgram(const std::string& className)
{
  return className == "orvel::SampleNode";
}

template <class Format>
void expectVersions(const Sample& sample, const std::string& ownClassName)
{
  if (!sample.writeFailure.empty())
    return; // there is no file of it
  std::set<std::string> names;
  for (const auto& [className, version] : versionsOf<Format>(*sample.object))
  {
    EXPECT_TRUE(names.insert(className).second) << className << " stores its version twice";
    EXPECT_EQ(version, isOfThisProgram(className) ? 1U : versionOf(className)) << className;
  }
  EXPECT_EQ(names.count(ownClassName), sample.isStored ? 1U : 0U);
}

TEST_P(AllClasses, StoreTheVersionOfEachOfTheirClassesOnce)
{
  for (const Sample& sample : _samples)
  {
    expectVersions<Xml>(sample, GetParam());
    expectVersions<Binary>(sample, GetParam());
  }
}

/// The source of a class, from the root of the repository.
std::string sourceOf(const std::string& className)
{
  if (isOfThisProgram(className))
    return "tests/support/SampleNode.cpp";
  const std::size_t begin = className.find("::") + 2;
  const std::string file = className.substr(begin, className.find('<') - begin) + ".cpp";
  const boost::filesystem::path root(ORVEL_TEST_SOURCE_DIR);
  for (const auto& entry : boost::filesystem::recursive_directory_iterator(root / "ORVELBaseData"))
    if (entry.path().filename() == file)
      return boost::filesystem::relative(entry.path(), root).string();
  return "no " + file;
}

/// Expects the failure of a version that is too new, raised by the read of the class itself.
void expectTooNew(const std::function<void()>& read, const std::string& className, ipUInt64 version)
{
  const std::string message = "Version " + std::to_string(version) + " of class " + className +
                              " is not supported, the highest supported version is " +
                              std::to_string(isOfThisProgram(className) ? 1 : versionOf(className));
  const std::size_t arguments = className.find('<');
  if (arguments == std::string::npos)
  {
    expectRaised<ORVELSerializationException>(
        read, {message, "virtual orvel::BoolResult " + className + "::read(orvel::BaseIArchive&)",
               sourceOf(className)});
    return;
  }
  // The compilers spell a template's parameter in their own ways.
  const auto failure = failureOf<ORVELSerializationException>(read);
  EXPECT_EQ(failure.getMessage(), message);
  EXPECT_EQ(failure.getFile(), sourceOf(className));
  EXPECT_NE(failure.getFunction().find(className.substr(0, arguments) + "<T>::read("), std::string::npos)
      << failure.getFunction();
}

/// Tells whether a base stores items behind its version.
bool hasItems(const std::string& className)
{
  return className == "orvel::BaseOwnBuffer" || className == "orvel::BaseStructuringElementInfo";
}

template <class Format>
void expectFutureRefused(const std::vector<Sample>& samples, const std::string& ownClassName)
{
  const Sample& sample = samples.front();
  if (!sample.writeFailure.empty())
    return; // there is no file of it
  EXPECT_EQ(fileWithVersion<Format>(sample.object, "", 0), fileOf<Format>(sample.object));
  const auto versions = versionsOf<Format>(*sample.object);
  for (const auto& record : versions) // of its bases and parts, too
    for (const ipUInt64 version : {record.second + 1, ipUInt64{4294967295}})
    {
      const std::string& className = record.first;
      SCOPED_TRACE(className);
      const std::string file = fileWithVersion<Format>(sample.object, className, version);
      expectTooNew([&] { objectOf<Format>(file); }, className, version);

      // In place, over another value.
      std::ostringstream output;
      typename Format::OArchive written(output);
      VersionChanger changer(written, className, version);
      EXPECT_TRUE(sample.object->write(changer));
      written.close();
      std::istringstream input(output.str());
      typename Format::IArchive read(input);
      const SerializationObjectPtr other = samples[1].makeAgain();
      expectTooNew([&] { other->read(read); }, className, version);
      EXPECT_FALSE(read.isClassVersionRegistred(className));
      EXPECT_TRUE(read.isFailed());
      bool isUnchanged = true;
      for (const auto& earlier : versions)
      {
        if (earlier.first == className)
          break;
        EXPECT_TRUE(read.isClassVersionRegistred(earlier.first));
        isUnchanged = isUnchanged && earlier.first != ownClassName && !hasItems(earlier.first);
      }
      EXPECT_TRUE(!isUnchanged || samples[1].equals(*other)) << "it was refused ahead of all items";
    }
}

TEST_P(AllClasses, RefuseATooNewVersionInXml)
{
  expectFutureRefused<Xml>(_samples, GetParam());
}

TEST_P(AllClasses, RefuseATooNewVersionInBinary)
{
  expectFutureRefused<Binary>(_samples, GetParam());
}

// Reference files

/// Writes an old layout under the name of a class.
class HandWritten : public BaseSerializationObject
{
public:
  HandWritten(std::string className, std::function<void(BaseOArchive&)> writeItems)
    : _className(std::move(className))
    , _writeItems(std::move(writeItems))
  {
  }

  const std::string& getClassName() const override { return _className; }
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return nullptr; }
  BoolResult write(BaseOArchive& archive) const override
  {
    _writeItems(archive);
    return BoolResult(true);
  }

private:
  std::string _className;
  std::function<void(BaseOArchive&)> _writeItems;
};

boost::filesystem::path referenceFile(const std::string& className, const std::string& name,
                                      const char* extension)
{
  std::string folder;
  for (const char character : className.substr(className.find("::") + 2))
    folder += std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_';
  return boost::filesystem::path(ORVEL_TEST_SOURCE_DIR) / "tests" / "data" / folder / (name + extension);
}

std::string readBytes(const boost::filesystem::path& path)
{
  std::ifstream stream(path.string(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

/// With ORVEL_WRITE_REFERENCE_FILES set, a file that is missing is made, and the test still fails: what was
/// made is to be looked at, and committed. Files that exist are never touched.
void expectFile(const boost::filesystem::path& path, const std::string& content)
{
  if (boost::filesystem::exists(path))
    return;
  if (std::getenv("ORVEL_WRITE_REFERENCE_FILES") != nullptr)
  {
    boost::filesystem::create_directories(path.parent_path());
    std::ofstream(path.string(), std::ios::binary) << content;
    ADD_FAILURE() << path.string() << " was missing and is made now";
    return;
  }
  ADD_FAILURE() << path.string() << " is missing: ORVEL_WRITE_REFERENCE_FILES=1 makes it";
}

void expectToday(const boost::filesystem::path& path, const std::string& content)
{
  expectFile(path, content);
  EXPECT_TRUE(readBytes(path) == content) << path.string() << " is not what is written today";
}

/// The two passes of a class that has them.
template <class Format>
void expectReferencePasses(const std::string& className, const std::string& version, const Sample& sample,
                           const SerializationObjectPtr& fresh)
{
  const auto* const object = dynamic_cast<const BaseObjectWithSkeleton*>(sample.object.get());
  auto* const copy = dynamic_cast<BaseObjectWithSkeleton*>(fresh.get());
  if (object == nullptr || !sample.isStored)
    return;
  const auto skeleton = referenceFile(className, version + ".skeleton", Format::extension);
  const auto data = referenceFile(className, version + ".data", Format::extension);
  expectToday(skeleton, fileOfPass<Format>(*object, eSklSrzMode::eSSM_Skeleton));
  expectToday(data, fileOfPass<Format>(*object, eSklSrzMode::eSSM_Data));
  readPass<Format>(readBytes(skeleton), *copy, eSklSrzMode::eSSM_Skeleton);
  readPass<Format>(readBytes(data), *copy, eSklSrzMode::eSSM_Data);
  EXPECT_TRUE(sample.equals(*copy));
}

template <class Format>
void expectReferenceFiles(const std::string& className, const Sample& sample,
                          const SerializationObjectPtr& fresh)
{
  if (!sample.writeFailure.empty())
    return; // there is no file of it
  const std::string newest = sample.isStored ? std::to_string(sample.version) : "unversioned";
  const boost::filesystem::path path = referenceFile(className, newest, Format::extension);
  expectToday(path, fileOf<Format>(sample.object));
  const SerializationObjectPtr copy = loadObject(path, ArchiveTrust::untrusted);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->getClassName(), className);
  if (!sample.isStored)
    return;
  EXPECT_TRUE(sample.equals(*copy));
  expectReferencePasses<Format>(className, newest, sample, fresh);

  ipUInt64 expectedVersion = 1;
  for (const OldSample& old : oldSamplesOf(className))
  {
    EXPECT_EQ(old.version, expectedVersion++);
    const boost::filesystem::path oldPath =
        referenceFile(className, std::to_string(old.version), Format::extension);
    expectFile(oldPath, fileOf<Format>(boost::make_shared<HandWritten>(className, old.write)));
    const SerializationObjectPtr read = loadObject(oldPath, ArchiveTrust::untrusted);
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(old.expected.equals(*read)) << oldPath.string();
  }
  EXPECT_EQ(expectedVersion, sample.version) << "a sample of each older version";
}

TEST_P(AllClasses, ReadTheXmlOfEachVersionForEver)
{
  expectReferenceFiles<Xml>(GetParam(), _samples.front(), makeNew());
}

TEST_P(AllClasses, ReadTheBinaryOfEachVersionForEver)
{
  expectReferenceFiles<Binary>(GetParam(), _samples.front(), makeNew());
}

} // namespace
