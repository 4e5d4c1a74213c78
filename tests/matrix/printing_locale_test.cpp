// Tests that the locale of the host does not change the output of the library.
#include <gtest/gtest.h>

#include <cstdio>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/support/captured_stdout.h"
#include "tests/support/comma_locale.h"
#include "tests/support/cp932.h"

namespace orvanel {
namespace {

using test::OutputOf;

TEST(PrintingUnderADecimalComma, KeepsThePointAndTheBytes) {
  const test::CommaLocale comma;
  ASSERT_EQ(OutputOf([] { std::printf("%10.4f", 2.5); }), "    2,5000");
  EXPECT_EQ(OutputOf([] { test::MatrixOf({{2.5, -12345.678}}).print(); }), "    2.5000-12345.6780\n");
  EXPECT_EQ(OutputOf([] { static_cast<void>(Matrix(1234, 0).det()); }),
            test::Cp932(u8"関数 Matrix::det() で，行列のサイズが正しくありません．:\n"
                        u8"  オペランドの行列 (1234 x 0) は，正方行列ではありません．\n"));
}

}  // namespace
}  // namespace orvanel
