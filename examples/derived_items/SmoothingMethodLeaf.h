#pragma once

#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>

namespace orvel
{

/// \brief Ways to smooth an image. The numbers may change, the texts in SmoothingMethodLeaf may not.
enum class SmoothingMethod : ipUInt32
{
  mean,
  gaussian,
  median
};

/// \brief Item of a way to smooth an image.
class SmoothingMethodLeaf : public BaseDataItemEnumLeaf
{
  ORVEL_DECLARE_SERIALIZABLE(SmoothingMethodLeaf)

public:
  SmoothingMethodLeaf(); ///< the mean

  SmoothingMethod getMethod() const { return static_cast<SmoothingMethod>(getEnumValue()); }
  void setMethod(SmoothingMethod method) { setEnumValue(static_cast<ipUInt32>(method)); }

  std::string getEnumNameStr() const override;
  bool fromString(const std::string& text, ipUInt32& value) const override;
  bool toString(const ipUInt32& value, std::string& text) const override;
};

} // namespace orvel
