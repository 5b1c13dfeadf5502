#pragma once

/// \file
/// \brief Identifier of one number.

#include <ORVELBaseData/Identifier/BaseIdentifier.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Identifier of one number. Archive version 1: the item "_value".
class ORVELBASEDATA_EXPORT SingleIdentifier : public BaseIdentifier
{
  ORVEL_DECLARE_SERIALIZABLE(SingleIdentifier)

public:
  SingleIdentifier();               ///< the value is not set: set, copy or read it before use
  SingleIdentifier(ipUInt32 value); ///< not explicit: a number converts to an identifier

  void setValue(ipUInt32 value) { _value = value; }
  ipUInt32 getValue() const { return _value; }

private:
  ipUInt32 _value;
};

} // namespace orvel
