// error: Exposure is exported, so its base Setting has to be exported, too
#include <ORVELSerialization/SerializableClassDefinitions.h>

#define MYLAB_EXPORT __attribute__((visibility("default")))
#ifdef MENDED
#define SETTING_EXPORT MYLAB_EXPORT
#else
#define SETTING_EXPORT
#pragma GCC diagnostic ignored "-Wattributes" // the compiler's own warning of the same names no way out
#endif

namespace orvel
{

class SETTING_EXPORT Setting : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Setting)
};

class MYLAB_EXPORT Exposure : public Setting
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Exposure)
};

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(Exposure, Setting, 1)

} // namespace orvel
