// Uses ORVELUtil alone.
#include <iostream>

#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ORVELUtilException.h>

int main()
{
  try
  {
    orvel::DynamicObjectFactory::getInstance().createShared("orvel::NoSuchClass");
  }
  catch (const orvel::ORVELUtilException& exception)
  {
    const bool isNamed = exception.getMessage().find("orvel::NoSuchClass") != std::string::npos;
    std::cout << exception.getMessage() << '\n';
    return isNamed ? 0 : 1;
  }
  std::cout << "no exception\n";
  return 1;
}
