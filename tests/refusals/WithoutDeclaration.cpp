// error: Derived lacks its ORVEL_DECLARE_... line in the header
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

class Base : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Base)
};

class Derived : public Base
{
#ifdef MENDED
  ORVEL_DECLARE_SERIALIZABLE(Derived)

public:
  Derived() = default;
#endif
};

ORVEL_DEFINE_SERIALIZABLE(Derived, Base, 1)

} // namespace orvel
