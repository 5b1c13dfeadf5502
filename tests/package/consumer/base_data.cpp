// Uses ORVELBaseData's own classes only.
#include <iostream>

#include <ORVELBaseData/Range/ElementsRange.h>

int main()
{
  const orvel::ElementsRange range(3, 5);
  std::cout << range.getClassName() << " from " << range.getStartOffset() << '\n';
  return range.getNbElements() == 5 ? 0 : 1;
}
