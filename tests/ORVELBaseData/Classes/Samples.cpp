#include "Samples.h"

#include <map>
#include <utility>

namespace orvel::test
{

namespace
{

struct Makers
{
  ClassSamples::Make make;
  ClassSamples::MakeOld makeOld;
};

std::map<std::string, Makers>& getMakers()
{
  static std::map<std::string, Makers> g_makers;
  return g_makers;
}

} // namespace

ClassSamples::ClassSamples(const std::string& className, Make make, MakeOld makeOld)
{
  getMakers()[className] = {std::move(make), std::move(makeOld)};
}

std::vector<Sample> samplesOf(const std::string& className)
{
  const auto found = getMakers().find(className);
  return found == getMakers().end() ? std::vector<Sample>() : found->second.make();
}

std::vector<OldSample> oldSamplesOf(const std::string& className)
{
  const auto found = getMakers().find(className);
  return found == getMakers().end() ? std::vector<OldSample>() : found->second.makeOld();
}

Sample asNew(Sample sample)
{
  sample.isNew = true;
  return sample;
}

} // namespace orvel::test
