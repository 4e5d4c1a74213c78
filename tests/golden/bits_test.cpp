// Whether any result has changed: one hash for each result of each eye, the same for every compiler, optimisation level
// and instruction set. Says nothing about whether results are right; that is what the other tests are for.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

using Plane = std::vector<double>;

struct Eye {
  const char* name;
  double pupil;
  std::array<double, kCoefficients> coefficients;
};

// Asymmetric, so that the brightest point is no matter of rounding; small, ordinary, and with many waves.
constexpr std::array<Eye, 3> kEyes = {
    {{"mild", 3.1, {0, 0, 0, 2e-5, -4e-5, 1e-5, 3e-5, -2e-5, 4e-5, 1e-5, 0, 1e-5, 3e-5, 0, 1e-5}},
     {"ordinary", 6.0, {0,     0,    0,     3e-4, 4e-4, -2e-4, 2e-4, -3e-4, 5e-4, 1e-4, 2e-5, -4e-5, 8e-5, 3e-5,
                        -6e-5, 2e-5, -1e-5, 3e-5, 4e-5, 1e-5,  0,    2e-5,  1e-5, 3e-5, 5e-5, -2e-5, 1e-5, 2e-5}},
     {"strong", 7.3, {0, 0, 0, -2e-3, 5e-3, 1e-3, 7e-4, -9e-4, 6e-4, 3e-4, 1e-4, 2e-4, -4e-4}}}};

// FNV-1a over the bytes of the samples, lowest byte first on every machine.
std::string Hash(const double* samples, std::size_t count) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (std::size_t i = 0; i < count; ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(samples[i]);
    for (unsigned shift = 0; shift < 64; shift += 8) hash = (hash ^ ((bits >> shift) & 0xff)) * 0x100000001b3;
  }
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << hash;
  return text.str();
}

std::string Hash(const GridPlane& plane) { return Hash(plane.data(), plane.size()); }
std::string Hash(const Plane& plane) { return Hash(plane.data(), plane.size()); }

Plane Stripes() {
  Plane plane;
  for (int k = 0; k < 65536; ++k) plane.push_back((k / 256 + 2 * (k % 256)) / 11 % 2);
  return plane;
}

// One line a result: eye, result, hash.
std::string AllBits() {
  std::ostringstream lines;
  for (const Eye& eye : kEyes) {
    const auto line = [&](const char* what, const std::string& hash) {
      lines << eye.name << ' ' << what << ' ' << hash << '\n';
    };
    OpticsEngine engine(eye.coefficients.data(), eye.pupil, 256, 1, 1, 1);
    Plane mtf(65536), image(65536), ring(65536);
    std::array<double, 128> row{}, column{}, limit{};
    double step = 0.0, acuity = 0.0;
    engine.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 256);
    line("wavefront", Hash(engine.wavefrontPlane));
    line("psf", Hash(engine.psfPlane));
    line("mtf", Hash(mtf));
    line("phase", Hash(engine.phasePlane));
    line("diffraction-limit", Hash(limit.data(), limit.size()));
    engine.PatternRetinalImage(image.data(), Stripes().data(), 256);
    line("stripes-stretched", Hash(image));
    engine.normaliseOutput = 0;
    testing::internal::CaptureStdout();
    engine.RingRetinalImage(image.data(), ring.data(), 0.4, &acuity, 2);
    testing::internal::GetCapturedStdout();
    line("ring", Hash(ring));
    line("ring-seen", Hash(image));
    const std::array<double, 4> scalars = {engine.strehlRatio, engine.psfHalfWidth, step, acuity};
    line("scalars", Hash(scalars.data(), scalars.size()));
    Plane white(65536);
    double spacing = 0.0;
    engine.PolychromaticPsf(white.data(), &spacing, 0);
    line("white-light-psf", Hash(white));
  }
  return lines.str();
}

TEST(GoldenBits, HaveNotChanged) {
  const std::string actual = AllBits();
  if (std::getenv("ORVANEL_RENEW_BITS") != nullptr) {
    std::ofstream(ORVANEL_GOLDEN_BITS) << actual;
    GTEST_SKIP() << "renewed " ORVANEL_GOLDEN_BITS;
  }
  std::istringstream now(actual);
  std::ifstream before(ORVANEL_GOLDEN_BITS);
  std::string nowLine, beforeLine;
  while (std::getline(now, nowLine)) {
    std::getline(before, beforeLine);
    ASSERT_EQ(nowLine, beforeLine) << "the first result that differs; if it is meant to, say so in CHANGELOG.md under\n"
                                      "'Results changed' and renew: ORVANEL_RENEW_BITS=1 "
                                      "build/release/bin/orvanel_golden_tests";
  }
  EXPECT_FALSE(std::getline(before, beforeLine)) << "no longer computed: " << beforeLine;
}

}  // namespace
}  // namespace orvanel
