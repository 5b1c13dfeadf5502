#pragma once

#include "Plan.h"
#include <ORVELBaseData/PtrColl/BasePtrColl.h>

namespace orvel
{

/// \brief A small plan per channel, to be looked at before the others have come; null for a channel without.
class IMAGE_STACK_EXPORT PreviewColl : public BasePtrColl
{
  ORVEL_DECLARE_SERIALIZABLE(PreviewColl)

public:
  PreviewColl();

  const std::string& getElementTypeName() const override; ///< "orvel::Plan"
  bool hasSkeletonElements() const override;              ///< true: plans take over the serialization mode

  std::size_t getSize() const { return _coll.size(); } ///< number of channels

  /// \brief Return the preview of a channel, null if it has none.
  /// \throw std::out_of_range if there is no such channel
  PlanPtr getPreview(std::size_t channel) const;

  void push_back(const PlanPtr& preview); ///< \brief Append a channel.
};

} // namespace orvel
