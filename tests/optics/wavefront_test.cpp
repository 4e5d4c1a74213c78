// Tests wavefront synthesis without kernels, the selection of terms, and the coordinates of the pupil.
#include "optics/wavefront.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <vector>

#include "tests/support/every_kernel.h"
#include "tests/support/plain.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using Plane = std::vector<double>;

// A different value for every term.
Coefficients AllDifferent() {
  Coefficients c{};
  for (std::size_t j = 0; j < c.size(); ++j) c[j] = 1e-4 / static_cast<double>(j + 3);
  return c;
}

TEST(WavefrontStages, HaveThePlainBitsOnEveryGrid) {
  for (const int n : {8, 64, 128, 256}) {
    for (const int firstOrder : {2, 3}) {
      const auto count = static_cast<std::size_t>(n * n);
      Plane expected(count), expectedX(count, 7.5), expectedY(count, 7.5);
      plain::SynthesizeWavefront(AllDifferent().data(), 3.7, firstOrder, n, expected, expectedX, expectedY);
      Plane w(count), x(count, 7.5), y(count, 7.5);
      SynthesizeWavefront({AllDifferent(), firstOrder}, {w.data(), n});
      WriteCoordinate(Coordinate::kColumn, 3.7, {x.data(), n});
      WriteCoordinate(Coordinate::kRow, 3.7, {y.data(), n});
      EXPECT_TRUE(test::SameBits(w, expected)) << n << ' ' << firstOrder;
      EXPECT_TRUE(test::SameBits(x, expectedX)) << n;
      EXPECT_TRUE(test::SameBits(y, expectedY)) << n;
    }
  }
}

// What the three flags leave of the second order: which of c3, c4, c5 count.
struct Selection {
  int astigmatism;
  int allSecondOrder;
  int defocus;
  bool c3;
  bool c4;
  bool c5;
};

void PrintTo(const Selection& s, std::ostream* out) {
  *out << "astigmatism " << s.astigmatism << ", all " << s.allSecondOrder << ", defocus " << s.defocus;
}

class WavefrontFlags : public testing::TestWithParam<Selection> {};

TEST_P(WavefrontFlags, SelectSecondOrderTerms) {
  const Selection s = GetParam();
  Coefficients expected = AllDifferent();
  if (!s.c3) expected[3] = 0.0;
  if (!s.c4) expected[4] = 0.0;
  if (!s.c5) expected[5] = 0.0;
  const SelectedTerms terms = SelectTerms(AllDifferent().data(), s.astigmatism, s.allSecondOrder, s.defocus);
  const bool none = !s.c3 && !s.c4 && !s.c5;
  EXPECT_EQ(terms.firstOrder, none ? 3 : 2);
  EXPECT_EQ(terms.coefficients, none ? AllDifferent() : expected);
}

INSTANTIATE_TEST_SUITE_P(AllCombinations, WavefrontFlags,
                         testing::Values(Selection{1, 1, 1, true, true, true},     //
                                         Selection{0, 1, 0, true, true, true},     // the first rule wins
                                         Selection{7, 1, -2, true, true, true},    //
                                         Selection{1, 0, 1, true, true, true},     //
                                         Selection{0, 0, 1, false, true, false},   //
                                         Selection{2, 0, 1, false, false, false},  // neither 0 nor 1
                                         Selection{1, 0, 0, true, false, true},    //
                                         Selection{0, 0, 0, false, false, false},  //
                                         Selection{2, 0, 0, false, false, false},  //
                                         Selection{1, 0, 2, false, false, false},  //
                                         Selection{1, 2, 1, true, true, true},     // 2 is not 1
                                         Selection{0, -1, 1, false, true, false}));

}  // namespace
}  // namespace orvanel
