// One of two plug-ins that register a class under one name, each its own.
#include <string>

#include <boost/make_shared.hpp>

#include <ORVELUtil/DynamicRegistrator.h>

namespace
{

class Twin : public orvel::BaseDynamicObject
{
public:
  static Twin* createNewObject() { return new Twin; }
  static boost::shared_ptr<Twin> createSharedObject() { return boost::make_shared<Twin>(); }

  const std::string& getClassName() const override
  {
    static const std::string g_name = "the twin of plug-in " + std::to_string(ORVEL_TEST_TWIN);
    return g_name;
  }
  orvel::BaseDynamicObject* createNew() const override { return createNewObject(); }
  orvel::DynamicObjectPtr createShared() const override { return createSharedObject(); }
  bool hasCopySupport() const override { return false; }
  orvel::BaseDynamicObject* duplicate() const override { return nullptr; }
  orvel::DynamicObjectPtr duplicateShared() const override { return {}; }
  void copy(const orvel::BaseDynamicObject&) override {}
};

const orvel::DynamicRegistrator<Twin> g_twin("TwinPlugin::Twin");
const orvel::DynamicRegistrator<Twin> g_kernel("orvel::KernelXY"); // where the kit itself has it, the second

} // namespace
