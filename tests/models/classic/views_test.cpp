// Tests the orientation of PSF and images: rays traced through the wavefront, prism, coma, oblique cylinder, and the
// rule of 30.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numbers>
#include <utility>
#include <vector>

#include "optics/psf.h"
#include "orvanel/optics_engine.h"
#include "orvanel/transforms.h"

namespace orvanel {
namespace {

constexpr int kSide = 256;
constexpr int kCentre = kSide / 2;
constexpr double kWavelengthUm = 0.58756;
constexpr double kPupil = 4.0;  // mm

using Plane = std::vector<double>;

double& At(Plane& plane, int row, int column) { return plane[static_cast<std::size_t>(kSide * row + column)]; }

// Orthonormal OSA/ANSI coefficients in micrometres, y upwards.
struct Aberrations {
  double tiltY = 0.0, tiltX = 0.0;                      // Z(1,-1), Z(1,1): prism
  double oblique = 0.0, defocus = 0.0, straight = 0.0;  // Z(2,-2), Z(2,0), Z(2,2)
  double comaY = 0.0, comaX = 0.0;                      // Z(3,-1), Z(3,1)
};

// The wavefront at a place of the unit disc, x to the right and y upwards.
double Height(const Aberrations& a, double x, double y) {
  const double r2 = x * x + y * y;
  return 2.0 * (a.tiltY * y + a.tiltX * x) + std::sqrt(6.0) * (a.oblique * 2.0 * x * y + a.straight * (x * x - y * y)) +
         std::sqrt(3.0) * a.defocus * (2.0 * r2 - 1.0) +
         std::sqrt(8.0) * (3.0 * r2 - 2.0) * (a.comaY * y + a.comaX * x);
}

std::array<double, 28> LibraryCoefficients(const Aberrations& a) {
  std::array<double, 28> c{};
  c[1] = -2.0 * a.tiltY / 1000.0;
  c[2] = 2.0 * a.tiltX / 1000.0;
  c[3] = -std::sqrt(6.0) * a.oblique / 1000.0;
  c[4] = std::sqrt(3.0) * a.defocus / 1000.0;
  c[5] = std::sqrt(6.0) * a.straight / 1000.0;
  c[7] = -std::sqrt(8.0) * a.comaY / 1000.0;
  c[8] = std::sqrt(8.0) * a.comaX / 1000.0;
  return c;
}

// Where the ray through a place of the pupil ends, in samples to the right and upwards, by the slope of the wavefront
// there: a slope of one wavelength over the radius moves light by 4 samples, since the radius has 64 of the pupil's
// 256.
struct Ray {
  double right, up;
};

// Of light that comes from straight ahead. Rays leave the eye along (-Wx, -Wy); so such light falls where an eye
// without aberrations would image what lies in the direction (+Wx, +Wy), and that place of the retina, which is upside
// down and turned left to right, lies to the side of (-Wx, -Wy). The examiner sees it there. The person sees what falls
// there in the direction (+Wx, +Wy) of the examiner's axes, and has the examiner's right on the left: (-Wx, +Wy).
enum class From { kExaminer, kPatient };

std::vector<Ray> Rays(const Aberrations& a, From view) {
  constexpr double kStep = 1e-4, kSamples = 4.0 / kWavelengthUm;
  constexpr int kAcross = 250;
  std::vector<Ray> rays;
  for (int i = 0; i < kAcross; ++i) {
    for (int j = 0; j < kAcross; ++j) {
      const double x = (2.0 * i + 1.0) / kAcross - 1.0, y = (2.0 * j + 1.0) / kAcross - 1.0;
      if (x * x + y * y > 1.0) continue;
      const double slopeX = (Height(a, x + kStep, y) - Height(a, x - kStep, y)) / (2.0 * kStep);
      const double slopeY = (Height(a, x, y + kStep) - Height(a, x, y - kStep)) / (2.0 * kStep);
      rays.push_back({-slopeX * kSamples, (view == From::kExaminer ? -slopeY : slopeY) * kSamples});
    }
  }
  return rays;
}

struct Turn {
  bool leftToRight, topToBottom;
};

constexpr Turn kAsIs{false, false};

// How many rays fall on each sample, straight ahead in the middle of the plane.
Plane DensityOf(const std::vector<Ray>& rays, Turn turn) {
  Plane density(kSide * kSide, 0.0);
  for (const Ray& ray : rays) {
    const double right = turn.leftToRight ? -ray.right : ray.right, up = turn.topToBottom ? -ray.up : ray.up;
    At(density, kCentre - static_cast<int>(std::lround(up)), kCentre + static_cast<int>(std::lround(right))) += 1.0;
  }
  return density;
}

// The largest sum of products over displacements, since the PSF is displaced to have its peak in the middle.
double Likeness(const Plane& plane, const Plane& density) {
  constexpr int kReach = 24, kStep = 2;
  std::vector<int> lit;
  for (int i = 0; i < kSide * kSide; ++i) {
    if (density[static_cast<std::size_t>(i)] > 0.0) lit.push_back(i);
  }
  double most = 0.0;
  for (int down = -kReach; down <= kReach; down += kStep) {
    for (int right = -kReach; right <= kReach; right += kStep) {
      double sum = 0.0;
      for (const int i : lit) {
        const int row = (i / kSide + down + kSide) % kSide, column = (i % kSide + right + kSide) % kSide;
        sum += density[static_cast<std::size_t>(i)] * plane[static_cast<std::size_t>(kSide * row + column)];
      }
      most = std::max(most, sum);
    }
  }
  return most;
}

class Eye {
 public:
  explicit Eye(const Aberrations& aberrations) : engine_(kSide), psf_(kSide * kSide) {
    double pitch, strehl;
    engine_.synthesizeWavefront(LibraryCoefficients(aberrations).data(), kPupil, 1, 1, 1);
    engine_.ComputePsf(kWavelength, psf_.data(), &pitch, &strehl, kSide);
    engine_.normaliseOutput = 0;
  }

  const Plane& psf() const { return psf_; }

  Plane See(const Plane& object) {
    Plane image(kSide * kSide);
    engine_.PatternRetinalImage(image.data(), object.data(), kSide);
    return image;
  }

 private:
  OpticsEngine engine_;
  Plane psf_;
};

Plane Point() {
  Plane object(kSide * kSide, 0.0);
  At(object, kCentre, kCentre) = 0.5;
  return object;
}

// A letter F, white on black: no mirror image of it is the letter itself.
Plane LetterF() {
  Plane object(kSide * kSide, 0.0);
  for (int row = 98; row < 158; ++row) {
    for (int column = 108; column < 148; ++column) {
      const bool bar = row < 108 || (row >= 122 && row < 132 && column < 138);
      if (column < 118 || bar) At(object, row, column) = 0.5;
    }
  }
  return object;
}

// What rays alone make of an object: a copy of it at the end of each.
Plane Copies(const Plane& object, const Plane& density) {
  Plane sum(kSide * kSide, 0.0);
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      const double rays = density[static_cast<std::size_t>(kSide * row + column)];
      if (rays == 0.0) continue;
      for (int r = 98; r < 158; ++r) {
        for (int c = 108; c < 148; ++c) {
          const double light = object[static_cast<std::size_t>(kSide * r + c)];
          if (light == 0.0) continue;
          At(sum, (r + row - kCentre + kSide) % kSide, (c + column - kCentre + kSide) % kSide) += light * rays;
        }
      }
    }
  }
  return sum;
}

const std::vector<std::pair<const char*, Aberrations>>& Eyes() {
  static const std::vector<std::pair<const char*, Aberrations>> kEyes = {
      {"vertical coma", {.comaY = 0.25}},
      {"horizontal coma", {.comaX = -0.25}},
      {"oblique cylinder", {.oblique = 0.35, .defocus = 0.25}},
      {"all together", {.oblique = 0.3, .defocus = 0.2, .straight = 0.15, .comaY = -0.2, .comaX = 0.12}}};
  return kEyes;
}

// Expects a plane to be more like the rays than like each of their mirror images that is another picture.
void ExpectLike(const char* what, const Plane& plane, const std::function<Plane(Turn)>& expected) {
  const Plane right = expected(kAsIs);
  const double likeness = Likeness(plane, right);
  for (const Turn turn : {Turn{true, false}, Turn{false, true}, Turn{true, true}}) {
    const Plane turned = expected(turn);
    const double of = Likeness(plane, turned), same = Likeness(right, turned) / Likeness(right, right);
    if (same > 0.98) continue;  // a mirror image of itself
    EXPECT_GT(likeness, 1.05 * of) << what << (turn.leftToRight ? ", left to right" : "")
                                   << (turn.topToBottom ? ", top to bottom" : "");
  }
}

TEST(Views, ThePsfIsTheRetinaAsTheExaminerSeesIt) {
  for (const auto& [name, aberrations] : Eyes()) {
    const std::vector<Ray> rays = Rays(aberrations, From::kExaminer);
    ExpectLike(name, Eye(aberrations).psf(), [&rays](Turn turn) { return DensityOf(rays, turn); });
  }
}

TEST(Views, TheImageOfAPointIsWhatThePersonSees) {
  for (const auto& [name, aberrations] : Eyes()) {
    const std::vector<Ray> rays = Rays(aberrations, From::kPatient);
    Plane image = Eye(aberrations).See(Point());
    for (double& v : image) v = std::sqrt(v);  // the library's image is a square
    ExpectLike(name, image, [&rays](Turn turn) { return DensityOf(rays, turn); });
  }
}

TEST(Views, ALetterIsSmearedToTheSidesThatThePersonSees) {
  const Aberrations lopsided = Eyes().back().second;
  const std::vector<Ray> rays = Rays(lopsided, From::kPatient);
  Plane image = Eye(lopsided).See(LetterF());
  for (double& v : image) v = std::sqrt(v);
  const double total = 1e4;
  const auto distance = [&](Turn turn) {
    // The least over displacements, since the PSF is displaced: root of the summed squares of differences.
    Plane expected = Copies(LetterF(), DensityOf(rays, turn));
    const auto scale = [total](Plane& plane) {
      double sum = 0.0;
      for (const double v : plane) sum += v;
      for (double& v : plane) v *= total / sum;
    };
    scale(expected);
    scale(image);
    double least = 1e300;
    for (int down = -12; down <= 12; ++down) {
      for (int right = -12; right <= 12; ++right) {
        double squares = 0.0;
        for (int row = 16; row < kSide - 16; ++row) {
          for (int column = 16; column < kSide - 16; ++column) {
            const double d = At(image, row, column) - At(expected, row - down, column - right);
            squares += d * d;
          }
        }
        least = std::min(least, squares);
      }
    }
    return std::sqrt(least);
  };
  const double right = distance(kAsIs);
  for (const Turn turn : {Turn{true, false}, Turn{false, true}, Turn{true, true}}) {
    EXPECT_LT(1.2 * right, distance(turn)) << turn.leftToRight << turn.topToBottom;
  }
}

// The PSF before its peak is brought to the middle.
Plane IntensityOf(const Aberrations& a) {
  Plane wavefront(kSide * kSide, kWavefrontOutside), re(kSide * kSide), im(kSide * kSide), intensity(kSide * kSide);
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      const double x = (column - kCentre) / 64.0, y = (kCentre - row) / 64.0;
      if (x * x + y * y <= 1.0) At(wavefront, row, column) = Height(a, x, y) / 1000.0;
    }
  }
  PupilFunction({wavefront.data(), kSide}, kWavelength, {{re.data(), kSide}, {im.data(), kSide}});
  Fft2(re.data(), im.data(), kSide, 0);
  ShiftedPowerSpectrum(intensity.data(), re.data(), im.data(), kSide);
  return intensity;
}

// A prism that moves light by 5 samples to the left and by 3 down, for the examiner; for the person by 3 up.
TEST(Views, APrismMovesThePsfAndAnImageThroughItAsItMovesRays) {
  const Aberrations prism{.tiltY = 3.0 * kWavelengthUm / 8.0, .tiltX = 5.0 * kWavelengthUm / 8.0};
  const Ray examiner = Rays(prism, From::kExaminer)[7], patient = Rays(prism, From::kPatient)[7];
  ASSERT_NEAR(examiner.right, -5.0, 1e-6);
  ASSERT_NEAR(examiner.up, -3.0, 1e-6);
  ASSERT_NEAR(patient.right, -5.0, 1e-6);
  ASSERT_NEAR(patient.up, 3.0, 1e-6);

  const Plane intensity = IntensityOf(prism);
  const Peak peak = FindPeak({intensity.data(), kSide});
  EXPECT_EQ(peak.row, kCentre + 3);
  EXPECT_EQ(peak.column, kCentre - 5);

  // The engine never uses a prism; a PSF that the host displaces stands for one.
  OpticsEngine engine(kSide);
  Plane psf(kSide * kSide), image(kSide * kSide);
  double pitch, strehl;
  engine.synthesizeWavefront(LibraryCoefficients({}).data(), kPupil, 1, 1, 1);
  engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, kSide);
  for (std::size_t k = 0; k < intensity.size(); ++k) engine.psfPlane[k] = intensity[k] / peak.value;
  engine.PatternRetinalImage(image.data(), Point().data(), kSide);
  const Peak seen = FindPeak({image.data(), kSide});
  EXPECT_EQ(seen.row, kCentre - 3);
  EXPECT_EQ(seen.column, kCentre - 5);
}

TEST(Views, ThePrismOfAnEyeLeavesNoTrace) {
  Aberrations lopsided = Eyes().back().second;
  const Plane without = Eye(lopsided).psf();
  lopsided.tiltX = 0.7;
  lopsided.tiltY = -0.4;
  EXPECT_EQ(Eye(lopsided).psf(), without);
}

// White on black, at the angle of an hour hand as the person sees it: hour 1 runs from 1 to 7 o'clock.
Plane LineAtHour(int hour) {
  const double angle = hour * std::numbers::pi / 6.0;  // from the top, clockwise
  Plane object(kSide * kSide, 0.0);
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      const double right = column - kCentre, up = kCentre - row;
      const double along = right * std::sin(angle) + up * std::cos(angle);
      const double across = right * std::cos(angle) - up * std::sin(angle);
      if (std::abs(along) < 60.0) At(object, row, column) = 0.5 * std::clamp(2.0 - std::abs(across), 0.0, 1.0);
    }
  }
  return object;
}

// The clinic's rule of 30: the hour of the line that is clearest, times 30, is the axis of the minus cylinder.
TEST(Views, TheClearestLineObeysTheRuleOfThirty) {
  constexpr double kRadius = kPupil / 2.0, kCylinder = -1.0;  // mm, D; no sphere beside it
  for (int hour = 1; hour <= 6; ++hour) {
    const double axis = hour * std::numbers::pi / 6.0;  // counter-clockwise for the examiner
    const double m = kCylinder / 2.0, j0 = -kCylinder / 2.0 * std::cos(2.0 * axis);
    const double j45 = -kCylinder / 2.0 * std::sin(2.0 * axis);
    Eye eye({.oblique = -j45 * kRadius * kRadius / (2.0 * std::sqrt(6.0)),
             .defocus = -m * kRadius * kRadius / (4.0 * std::sqrt(3.0)),
             .straight = -j0 * kRadius * kRadius / (2.0 * std::sqrt(6.0))});
    int clearest = 0;
    double brightest = 0.0;
    for (int line = 1; line <= 6; ++line) {
      Plane image = eye.See(LineAtHour(line));
      // Along the middle of the line the light is most where it spreads least.
      double light = 0.0;
      for (int down = -3; down <= 3; ++down) {
        for (int right = -3; right <= 3; ++right) light = std::max(light, At(image, kCentre + down, kCentre + right));
      }
      if (light > brightest) {
        brightest = light;
        clearest = line;
      }
    }
    EXPECT_EQ(clearest, hour) << "axis " << 30 * hour;
  }
}

}  // namespace
}  // namespace orvanel
