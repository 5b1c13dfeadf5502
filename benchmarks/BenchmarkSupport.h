#pragma once

/// \file
/// \brief What the benchmarks share: where files go, how they reach the disk, how a case is entered.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace orvel::benchmarks
{

/// \brief A folder that files are written to.
struct Medium
{
  std::string name; ///< part of the names of the cases: "tmpfs" or "disk"
  std::string path; ///< existing folder
};

/// \brief Return the folders to measure in: /dev/shm if it has room, and the folder of the program.
const std::vector<Medium>& getMedia();

/// \brief Set the folder of the disk; must be called before anything else.
void setDiskFolder(const std::string& path);

/// \brief Path of a scratch file that is removed at the end.
class ScratchFile
{
public:
  explicit ScratchFile(const Medium& medium);
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  const std::string& getPath() const { return _path; } ///< the file; it exists once something wrote it
  void remove() const;                                 ///< take the file away so that the next one is new

private:
  std::string _path;
};

/// \brief Bring a written file and its entry in its folder to the disk.
void syncFile(const std::string& path);

/// \brief Write a new file, or read a whole one, by system calls on so many bytes each; what a program
/// without an archive would do. \throw std::runtime_error if the system refuses
void writePlainly(const std::string& path, const char* data, std::size_t size, std::size_t pieceSize);
void readPlainly(const std::string& path, char* data, std::size_t size, std::size_t pieceSize);

/// \brief Stop the program's case with a message unless the condition holds.
bool check(benchmark::State& state, bool condition, const char* message);

/// \brief Enter a case; "group/side" is its name, groups are what ratios are taken within.
void addCase(const std::string& group, const std::string& side,
             const std::function<void(benchmark::State&)>& run, benchmark::TimeUnit unit);

void addBlockCases();         ///< a large raw block to a file and back
void addArchiveCases();       ///< kernels and shared objects, binary and XML
void addBufferCases();        ///< mirrors, fills and copies of memory; buffers through archives
void addFrameCases();         ///< creation by name, type name, version
void addDataItemCases();      ///< trees of parameters
void addNeighbourhoodCases(); ///< shapes and kernels beside the naive way of making them
void addPlanCases();          ///< collections of plans beside a plain map

} // namespace orvel::benchmarks
