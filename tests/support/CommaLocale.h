#pragma once

/// \file
/// \brief A locale with a comma as its decimal mark, for the C library and for the streams of C++ at once.

#include <clocale>
#include <cstdlib>
#include <locale>
#include <stdexcept>
#include <string>

namespace orvel::test
{

/// \brief Sets the process to a locale that writes 1.234,5 as long as it lives.
class CommaLocale
{
public:
  /// \throw std::runtime_error if the locale of the test tree is missing
  CommaLocale()
    : _oldCpp(std::locale())
    , _oldC(std::setlocale(LC_ALL, nullptr))
  {
    // The C library asks for this each time; ctest sets it, a debugger does not.
    ::setenv("LOCPATH", ORVEL_TEST_BINARY_DIR "/locales", 0);
    std::locale::global(std::locale(std::locale::classic(), new Marks));
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr)
    {
      restore();
      throw std::runtime_error("the comma locale of the test tree is missing");
    }
  }

  ~CommaLocale() { restore(); }

  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

private:
  struct Marks : std::numpunct<char>
  {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  void restore()
  {
    std::locale::global(_oldCpp);
    std::setlocale(LC_ALL, _oldC.c_str());
  }

  std::locale _oldCpp;
  std::string _oldC;
};

} // namespace orvel::test
