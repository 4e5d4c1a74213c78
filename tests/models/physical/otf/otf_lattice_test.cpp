// The fast optical transfer function against the overlap integral.
#include "models/physical/otf/otf_lattice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "models/physical/otf/otf_overlap.h"
#include "tests/models/physical/examples.h"
#include "tests/support/every_kernel.h"

namespace orvanel::physical {
namespace {

constexpr double kBound = 1e-4;

struct Plane {
  FrequencyLattice lattice;
  std::vector<double> re, im;
  std::complex<double> At(int r, int c) const {
    const auto i = static_cast<std::size_t>(r * lattice.side + c);
    return {re[i], im[i]};
  }
};

Plane PlaneOf(const FrequencyLattice& lattice) {
  const auto samples = static_cast<std::size_t>(lattice.side * lattice.side);
  return {lattice, std::vector<double>(samples), std::vector<double>(samples)};
}

Plane Computed(OtfLattice& otf, const Pupil& pupil, const FrequencyLattice& lattice = {}) {
  Plane plane = PlaneOf(lattice);
  EXPECT_TRUE(otf.Compute(pupil, lattice, plane.re.data(), plane.im.data()));
  return plane;
}

void ExpectTheOverlap(const Plane& plane, const Pupil& pupil, int every) {
  const OtfOverlap overlap(pupil, ActiveChords());
  const auto [side, step] = plane.lattice;
  for (int r = 1; r < side; r += every) {
    for (int c = 2; c < side; c += every) {
      const std::complex<double> exact = overlap.At((c - side / 2) * step, (side / 2 - r) * step);
      EXPECT_NEAR(std::abs(plane.At(r, c) - exact), 0.0, kBound) << r << ' ' << c;
    }
  }
  // Where rims nearly coincide the correction is largest.
  for (const int d : {0, 1, 2, 3, 5}) {
    const std::complex<double> exact = overlap.At(d * step, -d * step);
    EXPECT_NEAR(std::abs(plane.At(side / 2 + d, side / 2 + d) - exact), 0.0, kBound) << d;
  }
}

const std::vector<double> kAsymmetric = {0,   0.2,   -0.1, 0.13, 0.24,  -0.09, 0.05,
                                         0.1, -0.07, 0.03, 0.02, -0.02, 0.08,  0.01};

class OtfLattices : public test::EveryKernel {};

TEST_P(OtfLattices, HaveTheBitsOfTheBaseline) {
  OtfLattice here(*ActiveKernels());
  const Plane plane = Computed(here, PupilOf(kAsymmetric));
  UseKernels(*RunnableKernels().front());
  OtfLattice baseline(*ActiveKernels());
  const Plane expected = Computed(baseline, PupilOf(kAsymmetric));
  EXPECT_TRUE(test::SameBits(plane.re, expected.re));
  EXPECT_TRUE(test::SameBits(plane.im, expected.im));
}

TEST(OtfLattice, IsTheOverlapIntegralOfAnAsymmetricEye) {
  OtfLattice lattice(*ActiveKernels());
  ExpectTheOverlap(Computed(lattice, PupilOf(kAsymmetric)), PupilOf(kAsymmetric), 23);
}

TEST(OtfLattice, IsTheOverlapIntegralWithStilesCrawfordOffTheCentre) {
  Pupil pupil = PupilOf(kAsymmetric);
  pupil.stilesCrawford = {0.05, 0.5, -0.3};
  OtfLattice lattice(*ActiveKernels());
  ExpectTheOverlap(Computed(lattice, pupil), pupil, 31);
}

TEST(OtfLattice, IsTheOverlapIntegralOfATurnedAndShiftedEllipse) {
  Pupil pupil = PupilOf(kAsymmetric);
  pupil.outline = {0.9, 0.6, 0.7, 0.04, -0.06};
  OtfLattice lattice(*ActiveKernels());
  ExpectTheOverlap(Computed(lattice, pupil), pupil, 31);
}

// Four waves of defocus and more, 50 waves a radius at the rim: a denser lattice.
TEST(OtfLattice, IsTheOverlapIntegralOfASteepWavefront) {
  std::vector<double> modes = kAsymmetric;
  modes[4] = 3.9;
  OtfLattice lattice(*ActiveKernels());
  ExpectTheOverlap(Computed(lattice, PupilOf(modes)), PupilOf(modes), 47);
}

// One to seven samples for each step, odd numbers among them; frequencies that are no power of two.
TEST(OtfLattice, HasAnyStepOfFrequencies) {
  OtfLattice lattice(*ActiveKernels());
  Pupil pupil = PupilOf(kAsymmetric);
  pupil.outline = {0.95, 0.8, 0.7, 0.02, -0.03};
  for (const FrequencyLattice& frequencies : {FrequencyLattice{1024, 1 / 300.3}, FrequencyLattice{256, 1 / 103.0},
                                              FrequencyLattice{128, 0.02}, FrequencyLattice{128, 0.027}}) {
    ExpectTheOverlap(Computed(lattice, pupil, frequencies), pupil, frequencies.side / 7);
  }
}

TEST(OtfLattice, RefusesFrequenciesThatEndBelowTheCutOff) {
  OtfLattice lattice(*ActiveKernels());
  Plane plane = PlaneOf({128, 0.01});
  EXPECT_FALSE(lattice.Compute(PupilOf({}), {128, 0.0156}, plane.re.data(), plane.im.data()));
  EXPECT_FALSE(lattice.Compute(PupilOf({}), {128, 0.0}, plane.re.data(), plane.im.data()));
  EXPECT_FALSE(lattice.Compute(PupilOf({}), {128, std::nan("")}, plane.re.data(), plane.im.data()));
}

TEST(OtfLattice, DoesNotRememberTheLastEye) {
  OtfLattice lattice(*ActiveKernels()), fresh(*ActiveKernels());
  Pupil other = PupilOf({0, 0, 0, 0.1});
  other.outline.semiAxisB = 0.7;
  other.stilesCrawford.rho = 0.05;
  Computed(lattice, other);
  Computed(lattice, PupilOf(kAsymmetric), {128, 0.02});
  const Plane plane = Computed(lattice, PupilOf(kAsymmetric)), expected = Computed(fresh, PupilOf(kAsymmetric));
  EXPECT_TRUE(test::SameBits(plane.re, expected.re));
  EXPECT_TRUE(test::SameBits(plane.im, expected.im));
}

TEST(OtfLattice, RefusesWhatIsTooSteepAndWritesNothing) {
  OtfLattice lattice(*ActiveKernels());
  Plane plane = PlaneOf({});
  plane.re[5] = 42.0;
  EXPECT_FALSE(lattice.Compute(PupilOf({0, 0, 0, 0, 60.0}), {}, plane.re.data(), plane.im.data()));
  EXPECT_FALSE(lattice.Compute(PupilOf({0, 0, 0, 0, std::nan("")}), {}, plane.re.data(), plane.im.data()));
  EXPECT_EQ(plane.re[5], 42.0);
}

ORVANEL_ON_EVERY_KERNEL(OtfLattices);

}  // namespace
}  // namespace orvanel::physical
