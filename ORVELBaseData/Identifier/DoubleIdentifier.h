#pragma once

/// \file
/// \brief Identifier of two numbers.

#include <ORVELBaseData/Identifier/BaseIdentifier.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Identifier of two independent numbers.
///
/// Archive version 1: the items "_highValue" and "_lowValue". A failed read changes neither.
class ORVELBASEDATA_EXPORT DoubleIdentifier : public BaseIdentifier
{
  ORVEL_DECLARE_SERIALIZABLE(DoubleIdentifier)

public:
  DoubleIdentifier(); ///< the values are not set: set, copy or read them before use
  DoubleIdentifier(ipUInt32 highValue, ipUInt32 lowValue);

  void setValue(ipUInt32 highValue, ipUInt32 lowValue);
  void setHighValue(ipUInt32 highValue) { _highValue = highValue; } ///< the low value stays
  void setLowValue(ipUInt32 lowValue) { _lowValue = lowValue; }     ///< the high value stays
  ipUInt32 getHighValue() const { return _highValue; }
  ipUInt32 getLowValue() const { return _lowValue; }

private:
  ipUInt32 _highValue;
  ipUInt32 _lowValue;
};

} // namespace orvel
