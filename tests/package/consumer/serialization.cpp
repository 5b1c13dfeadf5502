// Uses ORVELSerialization, and ORVELUtil through it.
#include <iostream>
#include <sstream>
#include <string>

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ItemOperators.h>

int main()
{
  std::stringstream stream;
  const std::string written = "from one archive to another";
  orvel::BinaryOArchive oArchive(stream);
  oArchive << orvel::SerializationOItem("text", written);
  oArchive.close();

  std::string found;
  orvel::BinaryIArchive iArchive(stream);
  iArchive >> orvel::SerializationIItem("text", found);
  iArchive.close();
  std::cout << found << '\n';
  return found == written ? 0 : 1;
}
