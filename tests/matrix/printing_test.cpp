// Tests that numbers are printed as by "%10.4f" of printf.
#include "matrix/printing.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/support/captured_stdout.h"

namespace orvanel {
namespace {

using test::OutputOf;

// The tests run in the C locale, where printf itself is the truth; but not every C library shows the sign of a
// not-a-number.
std::string AsPrintf(double number) {
  if (std::isnan(number)) return std::signbit(number) ? "      -nan" : "       nan";
  char text[400];
  std::snprintf(text, sizeof text, "%10.4f", number);
  return text;
}

TEST(Printing, OfANumberIsTenWideWithFourDecimals) {
  EXPECT_EQ(OutputOf([] { PrintNumber(-3.14159265); }), "   -3.1416");
}

TEST(Printing, OfANumberEqualsPrintfAtTheEdges) {
  using Limits = std::numeric_limits<double>;
  for (const double number : {0.0, -0.0, -0.00004, 0.00005, 0.03125, 0.09375, 99999.99994, 99999.99996, -9999.99994,
                              -9999.99996, 123456.78901, Limits::max(), Limits::lowest(), Limits::denorm_min(),
                              Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), -Limits::quiet_NaN()}) {
    EXPECT_EQ(OutputOf([=] { PrintNumber(number); }), AsPrintf(number));
  }
}

TEST(Printing, OfANumberEqualsPrintfForAnyBits) {
  std::mt19937_64 engine(20);
  std::string expected;
  const std::string output = OutputOf([&] {
    for (int i = 0; i < 20000; ++i) {
      const auto number = std::bit_cast<double>(std::uint64_t{engine()});
      PrintNumber(number);
      expected += AsPrintf(number);
    }
  });
  EXPECT_EQ(output, expected);
}

TEST(Printing, OfAVectorHasNoNewline) {
  EXPECT_EQ(OutputOf([] { test::VectorOf({2.5, -17.25}).print(); }), "    2.5000  -17.2500");
}

TEST(Printing, OfAMatrixEndsEachRow) {
  EXPECT_EQ(OutputOf([] {
              test::MatrixOf({{2.5, -17.25, 3.0}, {4.0, 5.125, 6.0}}).print();
            }),
            "    2.5000  -17.2500    3.0000\n    4.0000    5.1250    6.0000\n");
}

TEST(Printing, OfNothingIsNothingButTheNewlines) {
  EXPECT_EQ(OutputOf([] { Vector().print(); }), "");
  EXPECT_EQ(OutputOf([] { Vector(-3).print(); }), "");
  EXPECT_EQ(OutputOf([] { Matrix().print(); }), "");
  EXPECT_EQ(OutputOf([] { Matrix(0, 3).print(); }), "");
  EXPECT_EQ(OutputOf([] { Matrix(3, 0).print(); }), "\n\n\n");
}

}  // namespace
}  // namespace orvanel
