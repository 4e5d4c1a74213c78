// Images of letters through lenses whose effect is known.
#include "evaluation/correction/corrected_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "eye/adjustments.h"
#include "models/model.h"
#include "tests/eye/eyes.h"

namespace orvanel::evaluation {
namespace {

Correction With(const Refraction& best) {
  Correction correction;
  correction.best.lens.power = best;
  correction.inCase.lens.power = {Dioptres(-1.0), Dioptres(), Degrees(180.0)};
  return correction;
}

TEST(CorrectedView, OfACorrectedEyeIsThatOfAPerfectOne) {
  const Refraction refraction{Dioptres(-1.1), Dioptres(-0.4), Degrees(40.0)};
  Adjustments adjustments;
  adjustments.refraction = ToPowerVector(refraction);
  const Eye perfect = PerfectEye(Millimetres(4.0));
  const PhysicalSettings settings = ModelRequest().physical;
  const CorrectedView view = ViewOfLetters(settings, Adjusted(perfect, adjustments), With(refraction));
  const CorrectedView truth = ViewOfLetters(settings, perfect, With({Dioptres(), Dioptres(), Degrees(180.0)}));
  ASSERT_EQ(view.best.size(), truth.best.size());
  double largest = 0.0;
  for (std::size_t i = 0; i < view.best.size(); ++i) {
    largest = std::max(largest, std::fabs(view.best[i] - truth.best[i]));
  }
  EXPECT_LT(largest, 1e-4);
  const auto darkest = [](const Plane& plane) { return *std::min_element(plane.begin(), plane.end()); };
  EXPECT_LT(darkest(view.best), 0.3);
  EXPECT_GT(darkest(view.without), darkest(view.inCase));
  EXPECT_GT(darkest(view.inCase), darkest(view.best));
  EXPECT_EQ(view.logMar.size(), view.chart.lines.size());
}

}  // namespace
}  // namespace orvanel::evaluation
