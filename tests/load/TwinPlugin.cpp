// One of two plug-ins that register a class under one name, each its own.
#include "NamedObject.h"
#include <ORVELUtil/DynamicRegistrator.h>

namespace
{

struct Name
{
  static constexpr const char* g_text = "the twin of plug-in " ORVEL_TEST_TWIN;
};
using Twin = orvel::test::NamedObject<Name>;

const orvel::DynamicRegistrator<Twin> g_twin("TwinPlugin::Twin");
const orvel::DynamicRegistrator<Twin> g_kernel("orvel::KernelXY"); // where the kit itself has it, the second

} // namespace
