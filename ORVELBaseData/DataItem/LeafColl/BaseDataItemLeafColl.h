#pragma once

/// \file
/// \brief Root of the leaf collections.

#include <ORVELBaseData/DataItem/BaseDataItem.h>
#include <ORVELBaseData/DataItem/DataItemValueType.h>

namespace orvel
{

/// \brief Root of the leaf collections, the items of a sequence of values of one type.
///
/// Archive version 1, without items. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseDataItemLeafColl : public BaseDataItem
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseDataItemLeafColl)

public:
  ~BaseDataItemLeafColl() override = 0;

  eDataItemType getDataItemType() const override; ///< eDIT_LeafColl

  virtual eDataItemValueType getDataItemValueType() const = 0; ///< the type of the values

protected:
  BaseDataItemLeafColl() = default;
};

} // namespace orvel
