// Sets a locale with a decimal comma, as a host may.
#ifndef ORVANEL_TESTS_SUPPORT_COMMA_LOCALE_H
#define ORVANEL_TESTS_SUPPORT_COMMA_LOCALE_H

#include <clocale>
#include <cstdlib>
#include <stdexcept>

namespace orvanel::test {

// It is chosen as long as this object lives. ORVANEL_TEST_LOCALES is a folder, given by the build.
class CommaLocale {
 public:
  CommaLocale() {
#ifdef _WIN32
    const char* const name = "German_Germany.1252";
#else
    const char* const name = "de_DE.UTF-8";
    setenv("LOCPATH", ORVANEL_TEST_LOCALES, 1);
#endif
    if (std::setlocale(LC_ALL, name) == nullptr) throw std::runtime_error(name);
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  ~CommaLocale() { std::setlocale(LC_ALL, "C"); }
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_COMMA_LOCALE_H
