// Samples of identifiers, for the checks that all classes share.

#include <sstream>

#include <boost/make_shared.hpp>

#include "../Classes/Samples.h"
#include <ORVELBaseData/Identifier/DataIdentifier.h>
#include <ORVELBaseData/Identifier/DoubleIdentifier.h>
#include <ORVELBaseData/Identifier/SingleIdentifier.h>
#include <ORVELBaseData/Identifier/StringIdentifier.h>
#include <ORVELSerialization/XmlArchive.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

// Identifiers have no comparison of their own.

template <class Identifier, class Make>
Sample makeIdentifierSample(Make make)
{
  return makeSampleBy<Identifier>([=] { return boost::make_shared<Identifier>(make()); },
                                  [](const Identifier& left, const Identifier& right)
                                  { return left.getValue() == right.getValue(); });
}

std::vector<Sample> makeDoubleIdentifierSamples()
{
  const auto identifierOf = [](ipUInt32 high, ipUInt32 low)
  {
    return makeSampleBy<DoubleIdentifier>([=] { return boost::make_shared<DoubleIdentifier>(high, low); },
                                          [](const DoubleIdentifier& left, const DoubleIdentifier& right) {
                                            return left.getHighValue() == right.getHighValue() &&
                                                   left.getLowValue() == right.getLowValue();
                                          });
  };
  return {identifierOf(1, 2), identifierOf(2, 1), identifierOf(4294967295U, 0)};
}

/// The identifier of a new object is a random one: this one is known.
DataIdentifier makeDataIdentifier(const std::string& guid, const std::string& name)
{
  std::istringstream file("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"1\">"
                          "<object key=\"object\"><item key=\"_guid\">" +
                          guid +
                          "</item><section name=\"orvel::DataIdentifier\"><item key=\"version\">1</item>"
                          "</section><item key=\"_name\">" +
                          name + "</item></object></orvelArchive>");
  XmlIArchive archive(file);
  DataIdentifier identifier;
  archive.readObject("object", identifier);
  archive.close();
  return identifier;
}

std::vector<Sample> makeDataIdentifierSamples()
{
  const auto identifierOf = [](const std::string& guid, const std::string& name)
  {
    const DataIdentifier identifier = makeDataIdentifier(guid, name);
    return makeSampleBy<DataIdentifier>([=] { return boost::make_shared<DataIdentifier>(identifier); },
                                        [](const DataIdentifier& left, const DataIdentifier& right) {
                                          return left.getGuid() == right.getGuid() &&
                                                 left.getName() == right.getName();
                                        });
  };
  return {identifierOf("01234567-89ab-cdef-0123-456789abcdef", "cells"),
          identifierOf("01234567-89ab-cdef-0123-456789abcdef", ""),
          identifierOf("00000000-0000-0000-0000-000000000001", "cells")};
}

const ClassSamples g_dataIdentifier("orvel::DataIdentifier", makeDataIdentifierSamples);
const ClassSamples g_doubleIdentifier("orvel::DoubleIdentifier", makeDoubleIdentifierSamples);
const ClassSamples g_singleIdentifier(
    "orvel::SingleIdentifier",
    []
    {
      return std::vector<Sample>{
          makeIdentifierSample<SingleIdentifier>([] { return SingleIdentifier(7); }),
          makeIdentifierSample<SingleIdentifier>([] { return SingleIdentifier(4294967295U); })};
    });
const ClassSamples g_stringIdentifier(
    "orvel::StringIdentifier",
    []
    {
      return std::vector<Sample>{
          makeIdentifierSample<StringIdentifier>([] { return StringIdentifier("left eye"); }),
          asNew(makeIdentifierSample<StringIdentifier>([] { return StringIdentifier(); }))};
    });

} // namespace
