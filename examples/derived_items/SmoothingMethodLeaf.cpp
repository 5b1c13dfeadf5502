#include "SmoothingMethodLeaf.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(SmoothingMethodLeaf, BaseDataItemEnumLeaf, 1)

namespace
{

constexpr const char* g_texts[] = {"Mean", "Gaussian", "Median"}; // in the order of SmoothingMethod

} // namespace

SmoothingMethodLeaf::SmoothingMethodLeaf()
{
  setMethod(SmoothingMethod::mean);
}

std::string SmoothingMethodLeaf::getEnumNameStr() const
{
  return "SmoothingMethod";
}

bool SmoothingMethodLeaf::fromString(const std::string& text, ipUInt32& value) const
{
  for (ipUInt32 i = 0; i < std::size(g_texts); ++i)
    if (text == g_texts[i])
    {
      value = i;
      return true;
    }
  return false;
}

bool SmoothingMethodLeaf::toString(const ipUInt32& value, std::string& text) const
{
  if (value >= std::size(g_texts))
    return false;
  text = g_texts[value];
  return true;
}

// The base moves the value: nothing is left to do.
void SmoothingMethodLeaf::copyMembers(const SmoothingMethodLeaf& /*other*/)
{
}
void SmoothingMethodLeaf::writeMembers(BaseOArchive& /*archive*/) const
{
}
void SmoothingMethodLeaf::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

} // namespace orvel
