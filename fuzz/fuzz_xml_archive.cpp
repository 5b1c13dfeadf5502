// Feeds arbitrary bytes to the XML reader.

#include "ArchiveFuzzing.h"
#include <ORVELSerialization/XmlArchive.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  orvel::fuzz::readEveryWay<orvel::XmlIArchive>(data, size);
  return 0;
}
