#include "ORVELBaseData/DataItem/Node/BaseToolTip.h"

namespace orvel
{

BaseToolTip::~BaseToolTip() = default;

} // namespace orvel
