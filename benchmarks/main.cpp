// Measures the library beside its peers. report.py runs this program and compares.
//
//   ORVELBenchmarks [Google Benchmark's options]
//
// The environment variable ORVEL_BENCHMARK_DISK names the folder for files on a disk.

#include <cstdlib>
#include <malloc.h>

#include "BenchmarkSupport.h"

int main(int argc, char** argv)
{
  // What a case gives back stays with the process: else the page faults of one case depend on the one before.
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);

  if (const char* folder = std::getenv("ORVEL_BENCHMARK_DISK"))
  {
    orvel::benchmarks::setDiskFolder(folder);
  }
  orvel::benchmarks::addBlockCases();
  orvel::benchmarks::addArchiveCases();
  orvel::benchmarks::addBufferCases();
  orvel::benchmarks::addFrameCases();
  orvel::benchmarks::addDataItemCases();
  orvel::benchmarks::addNeighbourhoodCases();
  orvel::benchmarks::addPlanCases();

  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
  {
    return 2;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
