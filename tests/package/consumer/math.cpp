// Uses ORVELMath alone.
#include <iostream>

#include <ORVELMath/ORVELMath.h>

int main()
{
  const int rounded = orvel::math::round<int, double>(2.5);
  std::cout << "2.5 rounds to " << rounded << '\n';
  return rounded == 3 ? 0 : 1;
}
