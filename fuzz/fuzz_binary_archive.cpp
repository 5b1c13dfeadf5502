// Feeds arbitrary bytes to the binary reader.

#include "ArchiveFuzzing.h"
#include <ORVELSerialization/BinaryArchive.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  orvel::fuzz::readEveryWay<orvel::BinaryIArchive>(data, size);
  return 0;
}
