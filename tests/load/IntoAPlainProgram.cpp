// A program that knows nothing of the kit loads, uses and unloads a plug-in, with all of the kit below it.
#include "Check.h"

int main(int argc, char** argv)
{
  using namespace orvel::test;
  require(argc == 2, "usage: LoadIntoAPlainProgram PLUGIN");
  const char* const libraries[] = {"libORVELBaseData.so.1", "libORVELSerialization.so.1", "libORVELMath.so.1",
                                   "libORVELUtil.so.1"};

  repeatAThousandTimes(
      [argv, &libraries]
      {
        {
          const Plugin plugin(argv[1]);
          require(plugin.getFunction("useTheKit")() == 0, "the plug-in can use the kit");
          for (const char* library : libraries)
            require(isLoaded(library), library);
        }
        require(!isLoaded(argv[1]), "the plug-in is gone");
        for (const char* library : libraries)
          require(!isLoaded(library), library);
      });
  return 0;
}
