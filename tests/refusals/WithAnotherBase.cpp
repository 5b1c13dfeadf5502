// error: Exposure is not derived from BaseObjectWithSkeleton
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

#ifdef MENDED
class Exposure : public BaseObjectWithSkeleton
#else
class Exposure : public BaseSerializationObject
#endif
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Exposure)
};

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(Exposure, BaseObjectWithSkeleton, 1)

} // namespace orvel
