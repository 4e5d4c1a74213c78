// Moments of pupils against closed forms.
#include "models/physical/pupil/pupil_moments.h"

#include <gtest/gtest.h>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

TEST(PupilMoments, OfADiscAndOfAnEllipse) {
  Pupil pupil = PupilOf({});
  for (const bool isEllipse : {false, true}) {
    if (isEllipse) pupil.outline = {0.8, 0.5, 0.0, 0.1, -0.2};
    const Ellipse& e = pupil.outline;
    double light = 0.0;
    Polynomial moments;
    for (const PupilNode& node : NodesOf(pupil)) {
      light += node.weight;
      AddMoments(node.weight, node.x, node.y, moments);
    }
    const auto mean = [&](int a, int b) { return moments.coefficients[Monomial(a, b)] / light; };
    EXPECT_NEAR(mean(1, 0), e.centreX, 1e-14);
    EXPECT_NEAR(mean(0, 1), e.centreY, 1e-14);
    EXPECT_NEAR(mean(2, 0), e.centreX * e.centreX + e.semiAxisA * e.semiAxisA / 4.0, 1e-14);
    EXPECT_NEAR(mean(1, 1), e.centreX * e.centreY, 1e-14);
    if (!isEllipse) {
      EXPECT_NEAR(mean(10, 0), 21.0 / 512.0, 1e-14);
    }
  }
}

TEST(PupilMoments, BySlopesAreThoseOfTheWavefront) {
  // The sum of value times slope is linear in the coefficients of the polynomial.
  const Pupil pupil = PupilOf({0, 0.1, -0.2, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0.01, 0.02, 0.05});
  Polynomial ofX, ofY;
  double sum = 0.0;
  for (const PupilNode& node : NodesOf(pupil)) {
    const double u = node.weight * (1.0 + node.x), v = node.weight * (node.y - 0.5 * node.x * node.x);
    AddMoments(u, node.x, node.y, ofX);
    AddMoments(v, node.x, node.y, ofY);
    sum += u * node.wavefront.dx + v * node.wavefront.dy;
  }
  const std::array<double, kModes> byModes = ByModes(BySlopes(ofX, ofY));
  double expected = 0.0;
  for (std::size_t j = 0; j < kModes; ++j) expected += byModes[j] * pupil.modesUm[j];
  EXPECT_NEAR(expected, sum, 1e-13);
}

}  // namespace
}  // namespace orvanel::physical
