// A library that depends on nothing: the loader initialises it before the kit and cleans it up after it.
namespace
{
void (*g_cleanUp)() = nullptr;
}

extern "C" __attribute__((visibility("default"))) void cleanUpLast(void (*cleanUp)())
{
  g_cleanUp = cleanUp;
}

__attribute__((destructor)) static void cleanUp()
{
  if (g_cleanUp != nullptr)
    g_cleanUp();
}
