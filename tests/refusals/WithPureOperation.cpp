// error: Exposure has pure virtual operations: a concrete class overrides them all
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

class Exposure : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(Exposure)

public:
  Exposure() = default;
#ifdef MENDED
  virtual double getSeconds() const;
#else
  virtual double getSeconds() const = 0;
#endif
};

ORVEL_DEFINE_SERIALIZABLE(Exposure, BaseSerializationObject, 1)

} // namespace orvel
