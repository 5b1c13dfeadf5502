// Puts the whole program under the locale that ORVEL_TEST_LOCALE names, for C and for C++ streams.

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace
{

class LocaleEnvironment : public testing::Environment
{
public:
  void SetUp() override
  {
    const char* name = std::getenv("ORVEL_TEST_LOCALE");
    if (name == nullptr)
      return;
    ASSERT_NE(std::setlocale(LC_ALL, name), nullptr) << name;
    std::locale::global(std::locale(name));
  }
};

const testing::Environment* const g_environment = testing::AddGlobalTestEnvironment(new LocaleEnvironment);

TEST(ArchiveLocaleEnvironment, HasACommaWhereItIsAskedFor)
{
  const bool isAskedFor = std::getenv("ORVEL_TEST_LOCALE") != nullptr;
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", 1.5);
  EXPECT_STREQ(text, isAskedFor ? "1,5" : "1.5");
  std::ostringstream stream;
  stream << 1234.5;
  EXPECT_EQ(stream.str(), isAskedFor ? "1.234,5" : "1234.5");
}

} // namespace
