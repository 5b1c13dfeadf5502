// A plug-in on all four libraries. It has a class of its own and one that the kit has, too.
#include <memory>
#include <sstream>
#include <string>

#include "NamedObject.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/DynamicRegistrator.h>
#include <ORVELUtil/ORVELUtilException.h>

namespace
{

struct Name
{
  static constexpr const char* g_text = "KitPlugin::PluginObject";
};
using PluginObject = orvel::test::NamedObject<Name>;

const orvel::DynamicRegistrator<PluginObject> g_own("KitPlugin::PluginObject");
const orvel::DynamicRegistrator<PluginObject> g_second("orvel::ElementsRange");

template <class Exception, class Operation>
bool raises(Operation operation, const std::string& message)
{
  try
  {
    operation();
  }
  catch (const Exception& failure)
  {
    return failure.getMessage() == message;
  }
  return false;
}

} // namespace

/// Uses all four libraries. Returns 0, or the number of the step that went wrong.
extern "C" __attribute__((visibility("default"))) int useTheKit()
{
  using namespace orvel;
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();

  // Creation by name, both ways.
  const DynamicObjectPtr kernel = factory.createShared("orvel::KernelXY");
  if (kernel->getClassName() != "orvel::KernelXY" || dynamic_cast<KernelXY*>(kernel.get()) == nullptr)
    return 1;
  const std::unique_ptr<BaseDynamicObject> own(factory.createNew("KitPlugin::PluginObject"));
  if (own->getClassName() != "KitPlugin::PluginObject")
    return 2;

  // An archive, a numeric result, an object with a long name.
  static_cast<KernelXY&>(*kernel).insert(OffsetXY(1, -2), 0.5F);
  std::ostringstream output;
  BinaryOArchive oArchive(output);
  oArchive << SerializationOItem(
      "kernel", static_cast<const BaseSerializationObject&>(static_cast<const KernelXY&>(*kernel)));
  oArchive.close();
  std::istringstream input(output.str());
  BinaryIArchive iArchive(input);
  KernelXY copy;
  iArchive >> SerializationIItem("kernel", static_cast<BaseSerializationObject&>(copy));
  iArchive.close();
  if (copy.getValue(OffsetXY(1, -2)) != 0.5F)
    return 3;
  KernelXYPtr xKernel;
  KernelXYPtr yKernel;
  separableGaussianSmoothing(1.0F, 1.0F, 0.9F, 0, xKernel, yKernel);
  if (!xKernel || xKernel->getNbData() == 0)
    return 4;
  if (ElementsRange::getTypeName() != "orvel::ElementsRange")
    return 5;

  // Failures of two of the libraries, each looked up, logged and thrown.
  if (!raises<ORVELUtilException>([&factory] { factory.createNew("KitPlugin::Unknown"); },
                                  "Unknown class name KitPlugin::Unknown"))
    return 6;
  if (!raises<ORVELBaseDataException>([&copy] { copy.insert(OffsetXY(1, -2), 1.0F); },
                                      "Can't insert element into kernel, it already exists"))
    return 7;
  return 0;
}
