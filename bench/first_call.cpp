// Measures a process's first OrvanelInputZer, from the load of the library on. Prints microseconds.
#include <chrono>
#include <cstdio>
#include <exception>

#include "bench/eyes.h"
#include "tests/support/loaded_library.h"

int main() {
  try {
    const auto& coefficients = orvanel::bench::EyeAt(0);
    const auto begin = std::chrono::steady_clock::now();
    const orvanel::test::LoadedLibrary library;
    library.InputPupil(orvanel::bench::kPupil_mm);
    library.InputZer(coefficients.data());
    const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
    std::printf("%.1f\n", time.count());
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvanel_first_call: %s\n", error.what());
    return 1;
  }
}
