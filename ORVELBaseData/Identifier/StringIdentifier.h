#pragma once

/// \file
/// \brief Identifier of a string.

#include <string>

#include <ORVELBaseData/Identifier/BaseIdentifier.h>

namespace orvel
{

/// \brief Identifier of a string, of any bytes. Archive version 1: the item "_value".
class ORVELBASEDATA_EXPORT StringIdentifier : public BaseIdentifier
{
  ORVEL_DECLARE_SERIALIZABLE(StringIdentifier)

public:
  StringIdentifier();                         ///< the empty string
  StringIdentifier(const std::string& value); ///< not explicit: a string converts to an identifier

  void setValue(const std::string& value) { _value = value; }
  const std::string& getValue() const { return _value; } ///< valid until the identifier changes

private:
  std::string _value;
};

} // namespace orvel
