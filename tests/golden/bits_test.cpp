// Tests that no result has changed: one hash for each result of each eye, equal for every compiler, optimisation level
// and instruction set. Other tests check whether the results are right.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "orvanel/optics_engine.h"
#include "targets/bitmap.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

using Plane = std::vector<double>;

struct Eye {
  const char* name;
  double pupil;
  std::array<double, kCoefficients> coefficients;
};

// Asymmetric, so that the brightest point is no matter of rounding: small, ordinary, and with many waves. Then those of
// assets/eyes, as the program hands them to the library.
constexpr std::array<Eye, 6> kEyes = {
    {{"mild", 3.1, {0, 0, 0, 2e-5, -4e-5, 1e-5, 3e-5, -2e-5, 4e-5, 1e-5, 0, 1e-5, 3e-5, 0, 1e-5}},
     {"ordinary", 6.0, {0,     0,    0,     3e-4, 4e-4, -2e-4, 2e-4, -3e-4, 5e-4, 1e-4, 2e-5, -4e-5, 8e-5, 3e-5,
                        -6e-5, 2e-5, -1e-5, 3e-5, 4e-5, 1e-5,  0,    2e-5,  1e-5, 3e-5, 5e-5, -2e-5, 1e-5, 2e-5}},
     {"strong", 7.3, {0, 0, 0, -2e-3, 5e-3, 1e-3, 7e-4, -9e-4, 6e-4, 3e-4, 1e-4, 2e-4, -4e-4}},
     {"standard-observer",
      6.0,
      {0.00032429999999999997, 0.0011592, 0.0014166, 0.0002731181063203244, 0.0014961454875779961,
       3.6252448193191034e-05, 0.0003156524671216748, 0.0004649934193082737, 0.000863518801185012,
       -0.0001903531454954186, 8.633018012259676e-05, 3.6366193091936365e-05, 0.0005353146738134496,
       7.209993065183907e-05, 0.0002479225685572009}},
     {"watson",
      6.0,
      {0, 0, 0, 0.00023172172966728864, 0.0001678357232534242, 0.0007470943715488693, -0.00012982480502585014,
       0.000342239682094289, 7.467047609329943e-05, -0.0003196122650963195, -9.23385076769167e-05,
       -9.486832980505139e-05, 6.574039853849382e-05, 5.1545125860744585e-05, 0.0002023857702507763}},
     {"perfect", 3.0, {}}}};

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

// The built-in star.
Plane Star() {
  std::ifstream file(ORVANEL_SECTOR_STAR, std::ios::binary);
  const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(bytes.size(), 66600U) << ORVANEL_SECTOR_STAR;
  Plane plane(65536);
  targets::DecodeBitmap(reinterpret_cast<const unsigned char*>(bytes.data()), plane.data());
  return plane;
}

// One line a result: eye, result, hash.
std::string AllBits() {
  std::ostringstream lines;
  const Plane star = Star();
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
    engine.PatternRetinalImage(image.data(), star.data(), 256);
    line("star-stretched", Hash(image));
    engine.normaliseOutput = 0;
    engine.PatternRetinalImage(image.data(), star.data(), 256);
    line("star-with-its-light", Hash(image));
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
    const FocusResult best = engine.OptimiseFocus(eye.coefficients.data(), eye.pupil);
    const std::array<double, 3> focus = {best.coefficients[4], best.strehl, static_cast<double>(best.trials)};
    line("best-focus", Hash(focus.data(), focus.size()));
  }
  return lines.str();
}

using GoldenBits = test::EveryKernel;

TEST_P(GoldenBits, HaveNotChanged) {
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

ORVANEL_ON_EVERY_KERNEL(GoldenBits);

}  // namespace
}  // namespace orvanel
