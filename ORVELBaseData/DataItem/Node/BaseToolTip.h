#pragma once

/// \file
/// \brief What tells a user about something.

#include <string>

#include <ORVELBaseData/ORVELBaseDataExport.h>

namespace orvel
{

/// \brief Root of what has tool tips, the texts that tell a user what it is.
class ORVELBASEDATA_EXPORT BaseToolTip
{
public:
  virtual ~BaseToolTip();

  virtual const std::string& getToolTip() const = 0;     ///< a line
  virtual const std::string& getLongToolTip() const = 0; ///< as much as there is to say

protected:
  BaseToolTip() = default;
  BaseToolTip(const BaseToolTip&) = default;
  BaseToolTip& operator=(const BaseToolTip&) = default;
};

} // namespace orvel
