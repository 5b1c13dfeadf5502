#include "ORVELBaseData/Neighborhood/Neighborhood2dUtils.h"

#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "NeighborhoodTables.h"
#include <support/EnumerationItemChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood2dType, EnumerationItems, Neighborhood2dTypeTable, );

TEST(Neighborhood2dUtils, ReadTheTextExactly)
{
  EXPECT_EQ((enumerationOf<HandWrittenXml, eNeighborhood2dType>(xmlOf("eN2T_8Connexity")).getValue()), 1U);
  expectRefusal<Neighborhood2dTypeTable, HandWrittenXml>(xmlOf("eN2T_8connexity"),
                                                         "Unknown enumeration text eN2T_8connexity");
  expectRefusal<Neighborhood2dTypeTable, HandWrittenXml>(xmlOf("eN2T_8Connexity "),
                                                         "Unknown enumeration text eN2T_8Connexity ");
}

TEST(Neighborhood2dUtils, RefuseTheNumberTwo)
{
  expectRefusal<Neighborhood2dTypeTable, HandWrittenBinary>(binaryOf(2), "Unknown enumeration value 2");
}

// What a field that was never given its value may hold.
TEST(Neighborhood2dUtils, FileSevenAsZeroOrNotAtAll)
{
  const eNeighborhood2dType unset(ipUInt64{7});
  EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(unset), binaryOf(0));

  std::ostringstream stream;
  XmlOArchive archive(stream);
  failureOf<std::logic_error>([&] { archive << SerializationOItem("K", unset); });
  archive.close();
  EXPECT_EQ(stream.str(), HandWrittenXml().file());
}

} // namespace
