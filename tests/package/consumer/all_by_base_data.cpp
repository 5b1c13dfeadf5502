// Links ORVELBaseData and uses all four libraries: the other three come with it.
#include <iostream>
#include <sstream>

#include <ORVELBaseData/ORVELBaseData.h>
#include <ORVELMath/ORVELMath.h>
#include <ORVELSerialization/ORVELSerialization.h>
#include <ORVELUtil/ORVELUtil.h>

int main()
{
  std::stringstream stream;
  const orvel::ElementsRange written(static_cast<orvel::ipUInt64>(orvel::math::round<int, double>(6.5)), 5);
  orvel::XmlOArchive oArchive(stream);
  oArchive << orvel::SerializationOItem("range", written);
  oArchive.close();

  orvel::ElementsRange found;
  orvel::XmlIArchive iArchive(stream);
  iArchive >> orvel::SerializationIItem("range", found);
  iArchive.close();
  std::cout << found.getStartOffset() << ' ' << found.getNbElements() << '\n';

  const bool isKnown = orvel::DynamicObjectFactory::getInstance().isRegistered("orvel::ElementsRange");
  return isKnown && found.getStartOffset() == 7 && found.getNbElements() == 5 ? 0 : 1;
}
