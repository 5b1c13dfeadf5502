// error: Exposure is not in the namespace orvel: name it with ORVEL_DEFINE_ABSTRACT_SERIALIZABLE_AS
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel::mylab
{

class Exposure : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Exposure)
};

#ifdef MENDED
ORVEL_DEFINE_ABSTRACT_SERIALIZABLE_AS(Exposure, "orvel::mylab::Exposure", BaseSerializationObject, 1)
#else
ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(Exposure, BaseSerializationObject, 1)
#endif

} // namespace orvel::mylab
