#pragma once

/// \file
/// \brief Tool tips.

#include <string>

#include <ORVELBaseData/ORVELBaseDataExport.h>

namespace orvel
{

/// \brief Root of the classes with tool tips, texts that explain an object to users.
class ORVELBASEDATA_EXPORT BaseToolTip
{
public:
  virtual ~BaseToolTip();

  virtual const std::string& getToolTip() const = 0;     ///< one line
  virtual const std::string& getLongToolTip() const = 0; ///< the full explanation

protected:
  BaseToolTip() = default;
  BaseToolTip(const BaseToolTip&) = default;
  BaseToolTip& operator=(const BaseToolTip&) = default;
};

} // namespace orvel
