// How an output archive replaces a file, and what it leaves behind where it can't.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ArchiveTesting.h"
#include "SampleClasses.h"
#include <support/RaisedFailure.h>

namespace
{

/// What the libraries asked the system for, as long as it lives; one call may be refused, once.
class SystemCalls
{
public:
  /// \param refused text of the first call that fails, as getCalls() has it; empty for none
  explicit SystemCalls(std::string refused = "", int error = 0)
    : _refused(std::move(refused))
    , _error(error)
  {
    g_present = this;
  }
  ~SystemCalls() { g_present = nullptr; }
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  const std::vector<std::string>& getCalls() const { return _calls; }

  /// Notes a call. \return false, with errno set, if it is to fail
  static bool note(const std::string& call)
  {
    if (g_present == nullptr)
      return true;
    g_present->_calls.push_back(call);
    if (call != g_present->_refused)
      return true;
    g_present->_refused.clear();
    errno = g_present->_error;
    return false;
  }

  /// Returns how many bytes a call may move: few as long as calls are watched.
  static std::size_t cut(std::size_t size)
  {
    return g_present == nullptr ? size : std::min<std::size_t>(size, 1000);
  }

private:
  static SystemCalls* g_present;

  std::string _refused;
  int _error;
  std::vector<std::string> _calls;
};

SystemCalls* SystemCalls::g_present = nullptr;

} // namespace

// The program's own, ahead of those of the C library.
extern "C" __attribute__((visibility("default"))) int fsync(int descriptor)
{
  static const auto g_function = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fsync"));
  struct stat status = {};
  const bool isFolder = ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
  return SystemCalls::note(isFolder ? "fsync the folder" : "fsync the file") ? g_function(descriptor) : -1;
}

extern "C" __attribute__((visibility("default"))) ssize_t write(int descriptor, const void* data,
                                                                std::size_t size)
{
  static const auto g_function =
      reinterpret_cast<ssize_t (*)(int, const void*, std::size_t)>(dlsym(RTLD_NEXT, "write"));
  return SystemCalls::note("write") ? g_function(descriptor, data, SystemCalls::cut(size)) : -1;
}

extern "C" __attribute__((visibility("default"))) ssize_t read(int descriptor, void* data, std::size_t size)
{
  static const auto g_function =
      reinterpret_cast<ssize_t (*)(int, void*, std::size_t)>(dlsym(RTLD_NEXT, "read"));
  return SystemCalls::note("read") ? g_function(descriptor, data, SystemCalls::cut(size)) : -1;
}

extern "C" __attribute__((visibility("default"))) int rename(const char* from, const char* to) noexcept
{
  static const auto g_function =
      reinterpret_cast<int (*)(const char*, const char*)>(dlsym(RTLD_NEXT, "rename"));
  return SystemCalls::note("rename") ? g_function(from, to) : -1;
}

namespace
{

using namespace orvel;
using namespace orvel::test;

template <class Format>
class OutputFile : public testing::Test
{
protected:
  TemporaryFolder _folder;
};

TYPED_TEST_SUITE(OutputFile, Formats, );

template <class Format>
std::string oneItemFile()
{
  return fileBy<Format>([](BaseOArchive& archive) { archive << SerializationOItem("K", 5); });
}

TYPED_TEST(OutputFile, AppearsOnCloseWithTheBytesOfAStream)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  {
    typename TypeParam::OArchive archive(path);
    EXPECT_EQ(archive.getName(), path.string());
    archive << SerializationOItem("K", 5);
    EXPECT_FALSE(boost::filesystem::exists(path));
    archive.close();
    EXPECT_EQ(readBytes(path), oneItemFile<TypeParam>());
    EXPECT_EQ(this->_folder.countFiles(), 1U);
  }
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, ReplacesAnOldFileOnClose)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, "old");
  typename TypeParam::OArchive archive(path);
  archive << SerializationOItem("K", 5);
  EXPECT_EQ(readBytes(path), "old");
  archive.close();
  EXPECT_EQ(readBytes(path), oneItemFile<TypeParam>());
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, LeavesTheOldFileAloneWithoutClose)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, "old");
  {
    typename TypeParam::OArchive archive(path);
    const std::string block(1000000, 'x'); // more than any buffer keeps back
    archive.writeBlock(block.data(), block.size());
    EXPECT_EQ(this->_folder.countFiles(), 2U);
  }
  EXPECT_EQ(readBytes(path), "old");
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, LeavesTheOldFileAloneAfterAnException)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, "old");
  EXPECT_THROW(
      {
        typename TypeParam::OArchive archive(path);
        archive << SerializationOItem("K", 5);
        archive << SerializationOItem("K", TestBrittle());
        archive.close();
      },
      std::runtime_error);
  EXPECT_EQ(readBytes(path), "old");
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, LeavesNothingWhereThereWasNoFile)
{
  {
    typename TypeParam::OArchive archive(this->_folder / "a.file");
    archive << SerializationOItem("K", 5);
  }
  EXPECT_EQ(this->_folder.countFiles(), 0U);
}

TYPED_TEST(OutputFile, LeavesTheOldFileAloneIfItIsClosedTooEarly)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, "old");
  {
    typename TypeParam::OArchive archive(path);
    const ArchiveSectionManager section(archive, "s");
    EXPECT_THROW(archive.close(), ORVELSerializationException);
  }
  EXPECT_EQ(readBytes(path), "old");
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, StaysBehindASymbolicLink)
{
  const boost::filesystem::path target = this->_folder / "target";
  const boost::filesystem::path link = this->_folder / "link";
  writeBytes(target, "old");
  boost::filesystem::create_symlink("target", link); // relative to the link's folder
  typename TypeParam::OArchive archive(link);
  archive << SerializationOItem("K", 5);
  archive.close();
  EXPECT_TRUE(boost::filesystem::is_symlink(link));
  EXPECT_EQ(readBytes(target), oneItemFile<TypeParam>());
  EXPECT_EQ(this->_folder.countFiles(), 2U);
}

TYPED_TEST(OutputFile, StaysBehindALinkToALink)
{
  const boost::filesystem::path target = this->_folder / "target";
  writeBytes(target, "old");
  boost::filesystem::create_symlink(target, this->_folder / "first");
  boost::filesystem::create_symlink("first", this->_folder / "second");
  typename TypeParam::OArchive archive(this->_folder / "second");
  archive.close();
  EXPECT_TRUE(boost::filesystem::is_symlink(this->_folder / "first"));
  EXPECT_TRUE(boost::filesystem::is_symlink(this->_folder / "second"));
  EXPECT_EQ(readBytes(target), TypeParam::wrap(""));
  EXPECT_EQ(this->_folder.countFiles(), 3U);
}

TYPED_TEST(OutputFile, IsMadeBehindALinkThatLeadsNowhereYet)
{
  const boost::filesystem::path link = this->_folder / "link";
  boost::filesystem::create_symlink(this->_folder / "target", link);
  typename TypeParam::OArchive archive(link);
  archive.close();
  EXPECT_TRUE(boost::filesystem::is_symlink(link));
  EXPECT_EQ(readBytes(this->_folder / "target"), TypeParam::wrap(""));
}

TYPED_TEST(OutputFile, LeavesTheOldFileUnderItsOtherNames)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  const boost::filesystem::path other = this->_folder / "other name";
  writeBytes(path, "old");
  boost::filesystem::create_hard_link(path, other);
  typename TypeParam::OArchive archive(path);
  archive.close();
  EXPECT_EQ(readBytes(path), TypeParam::wrap(""));
  EXPECT_EQ(readBytes(other), "old");
}

mode_t modeOf(const boost::filesystem::path& path)
{
  struct stat status = {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0);
  return status.st_mode & 07777U;
}

TYPED_TEST(OutputFile, KeepsTheModeOfTheOldFile)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  for (const mode_t mode : {0600U, 0640U, 0666U, 0444U})
  {
    writeBytes(path, "old");
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    typename TypeParam::OArchive archive(path);
    archive.close();
    EXPECT_EQ(modeOf(path), mode);
  }
}

TYPED_TEST(OutputFile, HasTheModeOfANewFileOtherwise)
{
  const mode_t old = ::umask(027);
  typename TypeParam::OArchive archive(this->_folder / "a.file");
  archive.close();
  ::umask(old);
  EXPECT_EQ(modeOf(this->_folder / "a.file"), 0640U);
}

TYPED_TEST(OutputFile, TakesTheLongestNameThatAFileMayHave)
{
  const boost::filesystem::path path = this->_folder / std::string(255, 'n');
  typename TypeParam::OArchive archive(path);
  archive.close();
  EXPECT_EQ(readBytes(path), TypeParam::wrap(""));
}

TYPED_TEST(OutputFile, TakesANameWithoutAFolder)
{
  const boost::filesystem::path before = boost::filesystem::current_path();
  boost::filesystem::current_path(this->_folder.get());
  {
    typename TypeParam::OArchive archive(boost::filesystem::path("a.file"));
    archive.close();
  }
  boost::filesystem::current_path(before);
  EXPECT_EQ(readBytes(this->_folder / "a.file"), TypeParam::wrap(""));
}

// Refusals

template <class Format>
std::string failureToOpen(const boost::filesystem::path& path)
{
  return messageOf<ORVELSerializationException>([&] { typename Format::OArchive archive(path); });
}

TYPED_TEST(OutputFile, RefusesLinksThatLeadInACircle)
{
  const boost::filesystem::path link = this->_folder / "link";
  boost::filesystem::create_symlink("link", link);
  EXPECT_EQ(failureToOpen<TypeParam>(link),
            "Archive " + link.string() + " can't be opened: " + reasonOf(ELOOP));
  EXPECT_TRUE(boost::filesystem::is_symlink(link));
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, NeedsItsFolder)
{
  const boost::filesystem::path path = this->_folder / "missing" / "a.file";
  EXPECT_EQ(failureToOpen<TypeParam>(path),
            "Archive " + path.string() + " can't be opened: " + reasonOf(ENOENT));
}

TYPED_TEST(OutputFile, CanNotBeAFolder)
{
  EXPECT_EQ(failureToOpen<TypeParam>(this->_folder.get()),
            "Archive " + this->_folder.get().string() + " can't be opened: " + reasonOf(EISDIR));
}

TYPED_TEST(OutputFile, CanNotBeMadeInAFolderThatMayNotBeWritten)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, "old");
  ASSERT_EQ(::chmod(this->_folder.get().c_str(), 0555), 0);
  const bool isRoot = ::geteuid() == 0; // who may write everywhere
  if (isRoot)
  {
    ASSERT_EQ(::seteuid(65534), 0);
  }
  const std::string message = failureToOpen<TypeParam>(path);
  if (isRoot)
  {
    ASSERT_EQ(::seteuid(0), 0);
  }
  ::chmod(this->_folder.get().c_str(), 0755);
  EXPECT_EQ(message, "Archive " + path.string() + " can't be opened: " + reasonOf(EACCES));
  EXPECT_EQ(readBytes(path), "old");
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, ReportsAFullDevice)
{
  const std::string start = "Archive /dev/full, byte ";
  const std::string end = ": write failed: " + reasonOf(ENOSPC);
  {
    typename TypeParam::OArchive archive(boost::filesystem::path("/dev/full"));
    archive << SerializationOItem("K", 5);
    const std::string message = messageOf<ORVELSerializationException>([&] { archive.close(); });
    EXPECT_EQ(message.substr(0, start.size()), start);
    EXPECT_EQ(message.substr(message.size() - end.size()), end);
    EXPECT_TRUE(archive.isFailed());
    EXPECT_FALSE(archive.isClosed());
  }
  typename TypeParam::OArchive archive(boost::filesystem::path("/dev/full"));
  const std::string block(1000000, 'x');
  const std::string message =
      messageOf<ORVELSerializationException>([&] { archive.writeBlock(block.data(), block.size()); });
  EXPECT_EQ(message.substr(message.size() - end.size()), end);
}

TYPED_TEST(OutputFile, LeavesTheOldFileAloneWhereItMayNotGrow)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, "old");
  rlimit before = {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small = {300000, before.rlim_max};
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  std::string message;
  {
    typename TypeParam::OArchive archive(path);
    const std::string block(1000000, 'x');
    message = messageOf<ORVELSerializationException>([&] { archive.writeBlock(block.data(), block.size()); });
    EXPECT_THROW(archive.close(), ORVELSerializationException);
  }
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_NE(message.find(": write failed: " + reasonOf(EFBIG)), std::string::npos) << message;
  EXPECT_EQ(readBytes(path), "old");
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

// The disk

TYPED_TEST(OutputFile, IsOnTheDiskBeforeItTakesItsPlace)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  typename TypeParam::OArchive archive(path);
  archive << SerializationOItem("K", 5);
  const SystemCalls calls;
  archive.close();
  std::vector<std::string> steps = calls.getCalls();
  steps.erase(std::unique(steps.begin(), steps.end()), steps.end()); // it may be written in pieces
  EXPECT_EQ(steps, (std::vector<std::string>{"write", "fsync the file", "rename", "fsync the folder"}));
}

/// Closes an archive over an old file while the system refuses a call. \return the message
template <class Format>
std::string failureToClose(const boost::filesystem::path& path, const std::string& refused)
{
  writeBytes(path, "old");
  typename Format::OArchive archive(path);
  archive << SerializationOItem("K", 5);
  const SystemCalls calls(refused, EIO);
  const std::string message = messageOf<ORVELSerializationException>([&] { archive.close(); });
  EXPECT_EQ(calls.getCalls().back(), refused); // nothing is tried after it
  EXPECT_TRUE(archive.isFailed());
  EXPECT_FALSE(archive.isClosed());
  return message;
}

TYPED_TEST(OutputFile, LeavesTheOldFileAloneIfItsFolderMayNotBeRead)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, "old");
  const bool isRoot = ::geteuid() == 0; // who may read everywhere
  ASSERT_EQ(::chmod(this->_folder.get().c_str(), 0333), 0);
  if (isRoot)
  {
    ASSERT_EQ(::seteuid(65534), 0);
  }
  std::string message;
  {
    typename TypeParam::OArchive archive(path);
    message = messageOf<ORVELSerializationException>([&] { archive.close(); });
  }
  if (isRoot)
  {
    ASSERT_EQ(::seteuid(0), 0);
  }
  ::chmod(this->_folder.get().c_str(), 0755);
  EXPECT_NE(message.find(": write failed: " + reasonOf(EACCES)), std::string::npos) << message;
  EXPECT_EQ(readBytes(path), "old");
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, IsWholeIfTheSystemMovesItInPiecesAndInterrupts)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  const std::string block(500000, 'x');
  const auto write = [&](BaseOArchive& archive)
  {
    archive.writeBlock(block.data(), block.size());
  };
  {
    typename TypeParam::OArchive archive(path);
    const SystemCalls calls("write", EINTR);
    write(archive);
    archive.close();
    EXPECT_GT(calls.getCalls().size(), 500U);
  }
  EXPECT_TRUE(readBytes(path) == fileBy<TypeParam>(write));

  std::string copy(block.size(), ' ');
  const SystemCalls calls("read", EINTR);
  typename TypeParam::IArchive archive(path);
  archive.readBlock(copy.data(), copy.size());
  archive.close();
  EXPECT_GT(calls.getCalls().size(), 500U);
  EXPECT_TRUE(copy == block);
}

TYPED_TEST(OutputFile, IsNotReadWhereTheSystemRefuses)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, oneItemFile<TypeParam>());
  const SystemCalls calls("read", EIO);
  const std::string place = std::is_same_v<TypeParam, XmlFormat> ? "line 1, column 1" : "byte 0";
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { typename TypeParam::IArchive archive(path); }),
            "Archive " + path.string() + ", " + place + ": read failed: " + reasonOf(EIO));
}

TYPED_TEST(OutputFile, LeavesTheOldFileAloneIfTheDiskOrTheFolderRefuses)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  const std::string size = std::to_string(oneItemFile<TypeParam>().size());
  for (const std::string refused : {"fsync the file", "rename"})
  {
    EXPECT_EQ(failureToClose<TypeParam>(path, refused),
              "Archive " + path.string() + ", byte " + size + ": write failed: " + reasonOf(EIO));
    EXPECT_EQ(readBytes(path), "old");
    EXPECT_EQ(this->_folder.countFiles(), 1U);
  }
}

TYPED_TEST(OutputFile, HasItsPlaceAlsoIfTheFolderCanNotBeBroughtToTheDisk)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  const std::string message = failureToClose<TypeParam>(path, "fsync the folder");
  EXPECT_NE(message.find(": write failed: " + reasonOf(EIO)), std::string::npos) << message;
  EXPECT_EQ(readBytes(path), oneItemFile<TypeParam>()); // whole, though the system may still lose its name
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

TYPED_TEST(OutputFile, DoesWithoutTheFolderWhereTheSystemCanNotBringOneToTheDisk)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  typename TypeParam::OArchive archive(path);
  const SystemCalls calls("fsync the folder", EINVAL);
  archive.close();
  EXPECT_TRUE(archive.isClosed());
  EXPECT_EQ(readBytes(path), TypeParam::wrap(""));
}

// Pipes

TYPED_TEST(OutputFile, MayBeAPipeAtBothEnds)
{
  const boost::filesystem::path path = this->_folder / "pipe";
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const boost::shared_ptr<TestMix> mix = TestMix::makeFull();
  mix->_reals.assign(100000, 0.5F);
  std::thread writer(
      [&]
      {
        typename TypeParam::OArchive archive(path);
        archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("object", mix));
        archive.close();
      });
  SerializationObjectPtr copy;
  {
    typename TypeParam::IArchive archive(path);
    archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", copy));
    archive.close();
  }
  writer.join();
  EXPECT_TRUE(dynamic_cast<const TestMix&>(*copy) == *mix);
  EXPECT_EQ(this->_folder.countFiles(), 1U);
}

// Reading files

TYPED_TEST(OutputFile, IsReadBackFromItsPath)
{
  const boost::filesystem::path path = this->_folder / "a.file";
  writeBytes(path, oneItemFile<TypeParam>());
  typename TypeParam::IArchive archive(path);
  EXPECT_EQ(archive.getName(), path.string());
  EXPECT_EQ(archive.readInteger("K", 0, 9), 5);
  archive.close();
}

TYPED_TEST(OutputFile, MustExistAndBeAFileToBeRead)
{
  const boost::filesystem::path path = this->_folder / "missing";
  const auto failure = [](const boost::filesystem::path& name)
  {
    return messageOf<ORVELSerializationException>([&] { typename TypeParam::IArchive archive(name); });
  };
  EXPECT_EQ(failure(path), "Archive " + path.string() + " can't be opened: " + reasonOf(ENOENT));
  EXPECT_EQ(failure(this->_folder.get()),
            "Archive " + this->_folder.get().string() + " can't be opened: " + reasonOf(EISDIR));
}

TYPED_TEST(OutputFile, IsNamedInFailures)
{
  const boost::filesystem::path path = this->_folder / "100%s.file"; // no placeholder of a message
  writeBytes(path, oneItemFile<TypeParam>());
  typename TypeParam::IArchive archive(path);
  const std::string message = messageOf<ORVELSerializationException>([&] { archive.readInteger("K", 0, 4); });
  EXPECT_EQ(message.substr(0, path.string().size() + 10), "Archive " + path.string() + ", ");
}

} // namespace
