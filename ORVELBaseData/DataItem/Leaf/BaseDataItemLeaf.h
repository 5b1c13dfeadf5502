#pragma once

/// \file
/// \brief Root of the leaves.

#include <ORVELBaseData/DataItem/BaseDataItem.h>
#include <ORVELBaseData/DataItem/DataItemValueType.h>

namespace orvel
{

/// \brief Root of the leaves, the items of one value.
///
/// Archive version 1, without items. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseDataItemLeaf : public BaseDataItem
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseDataItemLeaf)

public:
  ~BaseDataItemLeaf() override = 0;

  eDataItemType getDataItemType() const override; ///< eDIT_Leaf

  virtual eDataItemValueType getDataItemValueType() const = 0; ///< the type of the value

protected:
  BaseDataItemLeaf() = default;
};

} // namespace orvel
