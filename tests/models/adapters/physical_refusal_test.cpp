// Tests the sentences for what the physical model refuses.
#include "models/adapters/physical_refusal.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace orvanel::models {
namespace {

using physical::Problem;

TEST(PhysicalRefusal, NamesTheNumberAndItsLimits) {
  EXPECT_EQ(TextOf({Problem::kPupilDiameter, 15.0, 0.5, 12.0}), "the pupil diameter 15 mm is outside of 0.5 to 12 mm");
  EXPECT_EQ(TextOf({Problem::kWavelength, 200.0, 300.0, 1200.0, 2}),
            "the wavelength 200 nm is outside of 300 to 1200 nm");
  EXPECT_EQ(TextOf({Problem::kMode, 0.0, 0.0, 0.0, 12}),
            "the coefficient of OSA/ANSI index 12 is no number; write a finite one");
}

TEST(PhysicalRefusal, HasADifferentSentenceForEachProblem) {
  std::set<std::string> texts;
  int count = 0;
  for (int k = 0; k <= static_cast<int>(Problem::kDirection); ++k, ++count) {
    const std::string text = TextOf({static_cast<Problem>(k), 1.0, 0.0, 2.0, 3});
    EXPECT_GT(text.size(), 20U) << k;
    texts.insert(text);
  }
  EXPECT_EQ(texts.size(), static_cast<std::size_t>(count));
}

TEST(PhysicalRefusal, IsThrownInPlaceOfAResult) {
  EXPECT_EQ(Accepted(physical::Outcome<int>(3)), 3);
  try {
    Accepted(physical::Outcome<int>(physical::Refusal{Problem::kNoLight}));
    FAIL();
  } catch (const PhysicalRefusal& error) {
    EXPECT_EQ(error.refusal.problem, Problem::kNoLight);
  }
}

}  // namespace
}  // namespace orvanel::models
