// A plug-in that registers a class at load and takes it out at unload, by its name alone.
#include "ByName.h"

namespace
{

class WhileLoaded
{
public:
  WhileLoaded() { enter(); }
  ~WhileLoaded() { takeOut(); }
  WhileLoaded(const WhileLoaded&) = delete;
  WhileLoaded& operator=(const WhileLoaded&) = delete;
};

const WhileLoaded g_whileLoaded;

} // namespace

#define ORVEL_TEST_EXPORT extern "C" __attribute__((visibility("default")))

ORVEL_TEST_EXPORT void takeOutOfPlugin()
{
  takeOut();
}

ORVEL_TEST_EXPORT void takeOutOfPluginByPointer()
{
  takeOutByPointer();
}

ORVEL_TEST_EXPORT void enterForProgram(void (*registerClass)(orvel::DynamicObjectFactory::NewFunction,
                                                             orvel::DynamicObjectFactory::SharedFunction))
{
  registerClass(&newSample, &sharedSample);
}
