// Takes no symbol from ORVELBaseData: it names a class of it in a text, no more.
#include <iostream>

#include <ORVELUtil/DynamicObjectFactory.h>

int main()
{
  const orvel::DynamicObjectFactory& factory = orvel::DynamicObjectFactory::getInstance();
  if (!factory.isRegistered("orvel::KernelXY"))
  {
    std::cout << "orvel::KernelXY is not registered\n";
    return 1;
  }
  const orvel::DynamicObjectPtr object = factory.createShared("orvel::KernelXY");
  std::cout << object->getClassName() << " was created by name\n";
  return object->getClassName() == "orvel::KernelXY" ? 0 : 1;
}
