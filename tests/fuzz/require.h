// Checks properties that hold for every input. A fuzzer keeps an input that ends the program.
#ifndef ORVANEL_TESTS_FUZZ_REQUIRE_H
#define ORVANEL_TESTS_FUZZ_REQUIRE_H

#include <cstdio>
#include <cstdlib>

#define ORVANEL_REQUIRE(condition)                                                        \
  do {                                                                                    \
    if (!(condition)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (false)

#endif  // ORVANEL_TESTS_FUZZ_REQUIRE_H
