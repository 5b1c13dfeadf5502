// error: Exposure is not in the namespace orvel: name it with ORVEL_DEFINE_SERIALIZABLE_AS
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace mylab
{

class Exposure : public orvel::BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(Exposure)

public:
  Exposure() = default;
};

#ifdef MENDED
ORVEL_DEFINE_SERIALIZABLE_AS(Exposure, "mylab::Exposure", orvel::BaseSerializationObject, 1)
#else
ORVEL_DEFINE_SERIALIZABLE(Exposure, orvel::BaseSerializationObject, 1)
#endif

} // namespace mylab
