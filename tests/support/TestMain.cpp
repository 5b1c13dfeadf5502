// The application's part: it owns log4cplus.

#include <gtest/gtest.h>
#include <log4cplus/initializer.h>

int main(int argc, char** argv)
{
  const log4cplus::Initializer initializer;
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
