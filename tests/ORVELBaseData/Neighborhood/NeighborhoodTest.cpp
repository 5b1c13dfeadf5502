#include <sstream>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "ORVELBaseData/Neighborhood/Neighborhood2dType.h"
#include "ORVELBaseData/Neighborhood/Neighborhood2dUtils.h"
#include "ORVELBaseData/Neighborhood/Neighborhood3dType.h"
#include "ORVELBaseData/Neighborhood/Neighborhood3dUtils.h"
#include <support/EnumerationChecks.h>
#include <support/EnumerationItemChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct Neighborhood2dTypeTable
{
  using Enumeration = eNeighborhood2dType;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eNeighborhood2dType>&)";
  static constexpr const char* source = "ORVELBaseData/Neighborhood/Neighborhood2dUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eNeighborhood2dType::eN2T_4Connexity, 0, "eN2T_4Connexity"},
            {eNeighborhood2dType::eN2T_8Connexity, 1, "eN2T_8Connexity"}};
  }
};

struct Neighborhood3dTypeTable
{
  using Enumeration = eNeighborhood3dType;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eNeighborhood3dType>&)";
  static constexpr const char* source = "ORVELBaseData/Neighborhood/Neighborhood3dUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eNeighborhood3dType::eN3T_6Connexity, 0, "eN3T_6Connexity"},
            {eNeighborhood3dType::eN3T_18Connexity, 1, "eN3T_18Connexity"},
            {eNeighborhood3dType::eN3T_26Connexity, 2, "eN3T_26Connexity"}};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood2dType, Enumeration, Neighborhood2dTypeTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood2dType, EnumerationItems, Neighborhood2dTypeTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood3dType, Enumeration, Neighborhood3dTypeTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood3dType, EnumerationItems, Neighborhood3dTypeTable, );

TEST(Neighborhood2dType, IsReadFromItsExactText)
{
  EXPECT_EQ((enumerationOf<HandWrittenXml, eNeighborhood2dType>(xmlOf("eN2T_8Connexity")).getValue()), 1U);
  expectRefusal<Neighborhood2dTypeTable, HandWrittenXml>(xmlOf("eN2T_8connexity"),
                                                         "Unknown enumeration text eN2T_8connexity");
  expectRefusal<Neighborhood2dTypeTable, HandWrittenXml>(xmlOf("eN2T_8Connexity "),
                                                         "Unknown enumeration text eN2T_8Connexity ");
}

TEST(Neighborhood2dType, IsNotReadFromTwo)
{
  expectRefusal<Neighborhood2dTypeTable, HandWrittenBinary>(binaryOf(2), "Unknown enumeration value 2");
}

// What a field that was never given its value may hold.
TEST(Neighborhood2dType, IsWrittenAsZeroOrNotAtAllIfItIsSeven)
{
  const eNeighborhood2dType unset(ipUInt64{7});
  EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(unset), binaryOf(0));

  std::ostringstream stream;
  XmlOArchive archive(stream);
  failureOf<std::logic_error>([&] { archive << SerializationOItem("K", unset); });
  archive.close();
  EXPECT_EQ(stream.str(), HandWrittenXml().file());
}

TEST(Neighborhood3dType, IsWrittenAsItsTextOrItsNumber)
{
  const eNeighborhood3dType connexity(ipUInt64{1});
  EXPECT_EQ(fileOfEnumeration<HandWrittenXml>(connexity), xmlOf("eN3T_18Connexity"));
  EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(connexity), binaryOf(1));
}

} // namespace
