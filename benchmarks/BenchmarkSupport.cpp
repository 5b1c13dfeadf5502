#include "BenchmarkSupport.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <sys/statvfs.h>
#include <unistd.h>

namespace orvel::benchmarks
{

namespace
{

std::string g_diskFolder = ".";

bool hasRoom(const std::string& path, std::uint64_t sizeInBytes)
{
  struct statvfs info = {};
  return access(path.c_str(), W_OK) == 0 && statvfs(path.c_str(), &info) == 0 &&
         static_cast<std::uint64_t>(info.f_bavail) * info.f_frsize >= sizeInBytes;
}

void syncPath(const std::string& path, int flags)
{
  const int file = open(path.c_str(), flags | O_CLOEXEC);
  if (file < 0 || fsync(file) != 0)
  {
    throw std::runtime_error("cannot bring " + path + " to the disk");
  }
  close(file);
}

class FileDescriptor
{
public:
  FileDescriptor(const std::string& path, int flags)
    : _file(open(path.c_str(), flags | O_CLOEXEC, 0666))
  {
    if (_file < 0)
    {
      throw std::runtime_error("cannot open " + path);
    }
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { close(_file); }

  int get() const { return _file; }

private:
  int _file;
};

} // namespace

void setDiskFolder(const std::string& path)
{
  g_diskFolder = path;
}

const std::vector<Medium>& getMedia()
{
  static const std::vector<Medium> g_media = []
  {
    std::vector<Medium> media;
    if (hasRoom("/dev/shm", std::uint64_t{2} << 30U))
    {
      media.push_back({"tmpfs", "/dev/shm"});
    }
    media.push_back({"disk", g_diskFolder});
    return media;
  }();
  return g_media;
}

ScratchFile::ScratchFile(const Medium& medium)
{
  static std::atomic<int> g_count{0};
  _path = medium.path + "/ORVELBenchmarks." + std::to_string(getpid()) + "." + std::to_string(++g_count);
}

ScratchFile::~ScratchFile()
{
  remove();
}

void ScratchFile::remove() const
{
  static_cast<void>(std::remove(_path.c_str()));
}

void syncFile(const std::string& path)
{
  syncPath(path, O_RDONLY);
  syncPath(path.substr(0, path.rfind('/')), O_RDONLY | O_DIRECTORY);
}

void writePlainly(const std::string& path, const char* data, std::size_t size, std::size_t pieceSize)
{
  const FileDescriptor file(path, O_WRONLY | O_CREAT | O_TRUNC);
  for (std::size_t done = 0; done < size;)
  {
    const ssize_t written = ::write(file.get(), data + done, std::min(pieceSize, size - done));
    if (written <= 0)
    {
      throw std::runtime_error("cannot write " + path);
    }
    done += static_cast<std::size_t>(written);
  }
}

void readPlainly(const std::string& path, char* data, std::size_t size, std::size_t pieceSize)
{
  const FileDescriptor file(path, O_RDONLY);
  for (std::size_t done = 0; done < size;)
  {
    const ssize_t found = ::read(file.get(), data + done, std::min(pieceSize, size - done));
    if (found <= 0)
    {
      throw std::runtime_error("cannot read " + path);
    }
    done += static_cast<std::size_t>(found);
  }
}

bool check(benchmark::State& state, bool condition, const char* message)
{
  if (!condition)
  {
    state.SkipWithError(message);
  }
  return condition;
}

void addCase(const std::string& group, const std::string& side,
             const std::function<void(benchmark::State&)>& run, benchmark::TimeUnit unit)
{
  const std::string name = group + "/" + side;
  benchmark::RegisterBenchmark(name.c_str(), run)->Unit(unit)->UseRealTime();
}

} // namespace orvel::benchmarks
