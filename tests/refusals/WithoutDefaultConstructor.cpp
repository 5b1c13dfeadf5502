// error: Exposure lacks a default constructor: objects are created by class name
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

class Exposure : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(Exposure)

public:
#ifdef MENDED
  Exposure() = default;
#endif
  explicit Exposure(double seconds);
};

ORVEL_DEFINE_SERIALIZABLE(Exposure, BaseSerializationObject, 1)

} // namespace orvel
