// error: Exposure lacks copyMembers(const Exposure&)
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

// Composed of the building blocks, without ORVEL_DECLARE_MEMBER_OPERATIONS.
class Exposure : public BaseSerializationObject
{
  ORVEL_DECLARE_NAME(Exposure)
  ORVEL_DECLARE_COPY_AND_ARCHIVING(Exposure)
  ORVEL_DECLARE_CREATION(Exposure)
  ORVEL_DECLARE_REGISTRATOR(Exposure)
#ifdef MENDED
  ORVEL_DECLARE_MEMBER_OPERATIONS(Exposure)
#endif

public:
  Exposure() = default;
};

ORVEL_DEFINE_SERIALIZABLE(Exposure, BaseSerializationObject, 1)

} // namespace orvel
