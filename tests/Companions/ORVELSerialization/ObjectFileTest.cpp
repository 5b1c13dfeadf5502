#include "ORVELSerialization/ObjectFile.h"

#include <cerrno>
#include <sys/stat.h>
#include <thread>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "ArchiveTesting.h"
#include "SampleClasses.h"
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

class ObjectFile : public testing::Test
{
protected:
  TemporaryFolder _folder;
};

bool isXml(const boost::filesystem::path& path)
{
  return readBytes(path).substr(0, 5) == "<?xml";
}

bool isBinary(const boost::filesystem::path& path)
{
  return readBytes(path).substr(0, 3) == "\xD9\xD9\xF7";
}

TEST_F(ObjectFile, IsXmlByItsExtensionAndElseBinary)
{
  for (const std::string name : {"a.xml", "a.XML", "a.Xml", "a.b.xml"})
  {
    saveObject(_folder / name, TestPoint(1, 2));
    EXPECT_TRUE(isXml(_folder / name)) << name;
  }
  for (const std::string name : {"a", "a.bin", "a.xml.bin", "xml", "a.xmlx", "a.xml "})
  {
    saveObject(_folder / name, TestPoint(1, 2));
    EXPECT_TRUE(isBinary(_folder / name)) << name;
  }
}

TEST_F(ObjectFile, HoldsTheObjectUnderTheKeyObject)
{
  saveObject(_folder / "a.xml", TestPoint(1, 2));
  EXPECT_EQ(readBytes(_folder / "a.xml"),
            XmlFormat::wrap("  <pointer key=\"object\" id=\"1\" class=\"orvel::TestPoint\">\n"
                            "    <section name=\"orvel::TestPoint\">\n"
                            "      <item key=\"version\">3</item>\n"
                            "    </section>\n"
                            "    <item key=\"_x\">1</item>\n"
                            "    <item key=\"_y\">2</item>\n"
                            "  </pointer>\n"));
}

TEST_F(ObjectFile, IsLoadedByItsContent)
{
  saveObject(_folder / "a.xml", TestPoint(1, 2));
  saveObject(_folder / "b.bin", TestPoint(3, 4));
  boost::filesystem::rename(_folder / "a.xml", _folder / "c.bin");
  boost::filesystem::rename(_folder / "b.bin", _folder / "d.xml");
  EXPECT_TRUE(dynamic_cast<TestPoint&>(*loadObject(_folder / "c.bin")) == TestPoint(1, 2));
  EXPECT_TRUE(dynamic_cast<TestPoint&>(*loadObject(_folder / "d.xml")) == TestPoint(3, 4));
}

TEST_F(ObjectFile, TakesSharedObjectsAndNull)
{
  for (const std::string name : {"a.xml", "a.bin"})
  {
    saveObject(_folder / name, boost::make_shared<const TestPoint>(5, 6));
    EXPECT_TRUE(*loadObject<TestPoint>(_folder / name) == TestPoint(5, 6));
    EXPECT_TRUE(*loadObject<const TestPoint>(_folder / name, ArchiveTrust::untrusted) == TestPoint(5, 6));
    saveObject(_folder / name, SerializationObjectConstPtr());
    EXPECT_EQ(loadObject(_folder / name), nullptr);
    EXPECT_EQ(loadObject<TestPoint>(_folder / name), nullptr);
  }
}

TEST_F(ObjectFile, KeepsAGraphThatHoldsTheSavedObject)
{
  const auto node = boost::make_shared<TestNode>();
  node->_next = node;
  for (const std::string name : {"a.xml", "a.bin"})
  {
    saveObject(_folder / name, *node); // by reference: the pointer within is still to the same object
    const TestNodePtr copy = loadObject<TestNode>(_folder / name);
    EXPECT_EQ(copy->_next, copy);
    copy->_next.reset();
  }
  node->_next.reset();
}

TEST_F(ObjectFile, RefusesAnObjectOfAnotherClass)
{
  for (const std::string name : {"a.xml", "a.bin"})
  {
    const boost::filesystem::path path = _folder / name;
    saveObject(path, TestPoint());
    for (const ArchiveTrust trust : {ArchiveTrust::trusted, ArchiveTrust::untrusted})
      EXPECT_EQ(
          messageOf<ORVELSerializationException>([&] { loadObject<TestNode>(path, trust); }),
          "Archive " + path.string() +
              ", the object: an object of class orvel::TestPoint can't stand for class orvel::TestNode");
    EXPECT_NE(loadObject<BaseSerializationObject>(path), nullptr);
  }
}

TEST_F(ObjectFile, LeaksNothingIfACycleIsOfAnotherClass)
{
  const int nbBefore = TestNode::g_nbAlive;
  const auto node = boost::make_shared<TestNode>();
  node->_next = node;
  for (const std::string name : {"a.xml", "a.bin"})
  {
    saveObject(_folder / name, node);
    EXPECT_THROW(loadObject<TestPoint>(_folder / name), ORVELSerializationException);
    EXPECT_EQ(TestNode::g_nbAlive, nbBefore + 1);
  }
  node->_next.reset();
}

TEST_F(ObjectFile, ChecksTheClassesWithinWhenUntrusted)
{
  const boost::filesystem::path path = _folder / "a.xml";
  saveObject(path, boost::make_shared<TestNode>());
  std::string file = readBytes(path);
  const std::string null = "<pointer key=\"pObject\" null=\"true\"/>"; // of the member that points to a node
  file.replace(file.find(null), null.size(),
               "<pointer key=\"pObject\" id=\"2\" class=\"orvel::TestWithMode\">"
               "<section name=\"orvel::TestWithMode\"><item key=\"version\">1</item></section></pointer>");
  writeBytes(path, file);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { loadObject(path, ArchiveTrust::untrusted); });
  EXPECT_NE(message.find(": an object of class orvel::TestWithMode can't stand for class orvel::TestNode"),
            std::string::npos)
      << message;
  if (!isSanitized) // who look for conversions to a wrong class
  {
    EXPECT_EQ(loadObject<TestNode>(path)->_next->getClassName(), "orvel::TestWithMode"); // on trust
  }
}

TEST_F(ObjectFile, IsCheckedToItsEndBeforeTheObjectIsHandedOut)
{
  saveObject(_folder / "a.bin", TestPoint(1, 2));
  std::string file = readBytes(_folder / "a.bin");
  file.back() = static_cast<char>(file.back() ^ 1);
  writeBytes(_folder / "a.bin", file);
  EXPECT_NE(messageOf<ORVELSerializationException>([&] { loadObject(_folder / "a.bin"); })
                .find(": the content doesn't match its hash"),
            std::string::npos);
  saveObject(_folder / "a.xml", TestPoint(1, 2));
  file = readBytes(_folder / "a.xml");
  writeBytes(_folder / "a.xml", file.insert(file.find("</orvelArchive>"), "<item key=\"K\">1</item>"));
  EXPECT_NE(messageOf<ORVELSerializationException>([&] { loadObject(_folder / "a.xml"); })
                .find(": items are left unread, found item \"K\""),
            std::string::npos);
}

// The object was read whole, but nobody is given it: the file is refused at its end.
TEST_F(ObjectFile, LeaksNothingIfACycleIsRefusedAtTheEnd)
{
  const int nbBefore = TestNode::g_nbAlive;
  const auto node = boost::make_shared<TestNode>();
  node->_next = node;
  saveObject(_folder / "a.bin", node);
  node->_next.reset();
  std::string file = readBytes(_folder / "a.bin");
  file.back() = static_cast<char>(file.back() ^ 1);
  writeBytes(_folder / "a.bin", file);
  EXPECT_THROW(loadObject(_folder / "a.bin", ArchiveTrust::untrusted), ORVELSerializationException);
  EXPECT_EQ(TestNode::g_nbAlive, nbBefore + 1);
}

TEST_F(ObjectFile, MustExistAndBeAnArchive)
{
  const boost::filesystem::path path = _folder / "a";
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { loadObject(path); }),
            "Archive " + path.string() + " can't be opened: " + reasonOf(ENOENT));
  EXPECT_THROW(loadObject(_folder.get()), ORVELSerializationException);
  for (const std::string content : {"", "\xD9", "\xD9\xD9", "<", "text"})
  {
    writeBytes(path, content);
    const std::string message = messageOf<ORVELSerializationException>([&] { loadObject(path); });
    EXPECT_NE(message.find(": this is not an archive: "), std::string::npos) << message;
  }
}

TEST_F(ObjectFile, LeavesTheOldFileAloneIfTheObjectCanNotBeWritten)
{
  for (const std::string name : {"a.xml", "a.bin"})
  {
    writeBytes(_folder / name, "old");
    EXPECT_THROW(saveObject(_folder / name, TestBrittle()), std::runtime_error);
    EXPECT_EQ(readBytes(_folder / name), "old");
  }
  EXPECT_EQ(_folder.countFiles(), 2U);
}

TEST_F(ObjectFile, MayBeAPipe)
{
  for (const std::string name : {"pipe.xml", "pipe.bin"})
  {
    const boost::filesystem::path path = _folder / name;
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    std::thread writer([&] { saveObject(path, TestPoint(7, 8)); });
    const boost::shared_ptr<TestPoint> copy = loadObject<TestPoint>(path);
    writer.join();
    EXPECT_TRUE(*copy == TestPoint(7, 8));
  }
}

TEST_F(ObjectFile, HasTheSameBytesEachTime)
{
  for (const std::string extension : {".xml", ".bin"})
  {
    saveObject(_folder / ("a" + extension), TestMix::makeFull());
    saveObject(_folder / ("b" + extension), TestMix::makeFull());
    EXPECT_EQ(readBytes(_folder / ("a" + extension)), readBytes(_folder / ("b" + extension)));
  }
}

} // namespace
