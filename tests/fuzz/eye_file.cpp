// Fuzzes eye files: the result is an eye or a message, and a written eye is read back as the same eye.
#include "files/eyes/eye_file.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/error.h"
#include "tests/fuzz/memory_file.h"

using namespace orvanel;
using namespace orvanel::files;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const orvanel::fuzz::MemoryFile file, again;
  file.Hold(data, size);
  try {
    const Eye eye = ReadEyeFile(file.name());
    ORVANEL_REQUIRE(std::isfinite(eye.pupil.value()) && eye.pupil.value() > 0.0);
    const Coefficients stated = eye.coefficients.AsStated();
    for (const double c : stated) ORVANEL_REQUIRE(std::isfinite(c));
    const std::string text = EyeFileText(eye);
    again.Hold(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    const Eye other = ReadEyeFile(again.name());
    ORVANEL_REQUIRE(other.pupil.value() == eye.pupil.value());
    ORVANEL_REQUIRE(other.coefficients.convention() == eye.coefficients.convention());
    ORVANEL_REQUIRE(other.side == eye.side && other.name == eye.name);
    const Coefficients read = other.coefficients.AsStated();
    const std::size_t terms = std::max(stated.size(), read.size());
    for (std::size_t j = 0; j < terms; ++j) {
      const double before = j < stated.size() ? stated[j] : 0.0;
      const double after = j < read.size() ? read[j] : 0.0;
      ORVANEL_REQUIRE(before == after);
    }
  } catch (const Error& error) {
    ORVANEL_REQUIRE(*error.what() != '\0');
  }
  return 0;
}
