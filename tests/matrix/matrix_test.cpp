// Tests matrices: construction, value semantics, arithmetic and the order of the virtual operations.
#include "orvanel/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>
#include <utility>

#include "tests/matrix/examples.h"
#include "tests/matrix/slots.h"
#include "tests/support/captured_stdout.h"

namespace orvanel {
namespace {

using test::Equal;
using test::IsEmpty;
using test::MatrixOf;
using test::OutputOf;
using test::VectorOf;

TEST(Matrix, IsZeroWhenMade) { EXPECT_TRUE(Equal(Matrix(2, 3), MatrixOf({{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}}))); }

TEST(Matrix, MayHaveRowsOrColumnsOnly) {
  EXPECT_EQ(Matrix(0, 3).rows(), 0);
  EXPECT_EQ(Matrix(0, 3).cols(), 3);
  EXPECT_EQ(Matrix(3, 0).rows(), 3);
  EXPECT_EQ(Matrix(3, 0).cols(), 0);
  EXPECT_TRUE(IsEmpty(Matrix()));
  EXPECT_TRUE(IsEmpty(Matrix(-2, -1)));
}

TEST(Matrix, OfTheUnitKindIsTheIdentity) {
  EXPECT_TRUE(Equal(Matrix(3, kUnit), MatrixOf({{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}})));
  EXPECT_TRUE(IsEmpty(Matrix(-1, kUnit)));
}

TEST(Matrix, OfAnyOtherPointerIsZeroWhateverTheLetters) {
  const char copy[] = {'u', 'n', 'i', 't', '\0'};
  ASSERT_STREQ(copy, kUnit);
  EXPECT_TRUE(Equal(Matrix(3, copy), Matrix(3, 3)));
  EXPECT_TRUE(Equal(Matrix(3, "unit"), Matrix(3, 3)));
  EXPECT_TRUE(Equal(Matrix(3, static_cast<const char*>(nullptr)), Matrix(3, 3)));
}

TEST(Matrix, ElementJOfRowIIsElementIJ) {
  Matrix a = MatrixOf({{2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}});
  EXPECT_EQ(a(1, 2), 13.0);
  EXPECT_EQ(&a(1, 2), &a.row(1)[2]);
  EXPECT_EQ(&a(1, 2), a.row(1).data() + 2);
  a(0, 1) = -3.0;
  EXPECT_TRUE(Equal(std::as_const(a).row(0), VectorOf({2.0, -3.0, 5.0})));
}

TEST(Matrix, CopiesShareNothing) {
  Matrix a = MatrixOf({{2.0, 3.0}});
  Matrix constructed = a;
  Matrix assigned(4, 5);
  assigned = a;
  a(0, 0) = -9.0;
  EXPECT_TRUE(Equal(constructed, MatrixOf({{2.0, 3.0}})));
  EXPECT_TRUE(Equal(assigned, MatrixOf({{2.0, 3.0}})));
}

TEST(Matrix, SurvivesAssignmentToItself) {
  Matrix a = MatrixOf({{2.0, 3.0}});
  Matrix& same = a;
  a = same;
  EXPECT_TRUE(Equal(a, MatrixOf({{2.0, 3.0}})));
  a = std::move(same);
  EXPECT_TRUE(Equal(a, MatrixOf({{2.0, 3.0}})));
}

TEST(Matrix, IsEmptyAfterAMoveAndUsableAgain) {
  Matrix a = MatrixOf({{2.0, 3.0}});
  const Matrix constructed = std::move(a);
  EXPECT_TRUE(IsEmpty(a));  // NOLINT(bugprone-use-after-move): that is the promise
  EXPECT_EQ(OutputOf([&] { a.print(); }), "");
  a.resize(1, 1);
  a(0, 0) = 7.0;
  Matrix assigned(5, 6);
  assigned = std::move(a);
  EXPECT_TRUE(IsEmpty(a));  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(Equal(constructed, MatrixOf({{2.0, 3.0}})));
  EXPECT_TRUE(Equal(assigned, MatrixOf({{7.0}})));
  static_assert(std::is_nothrow_move_constructible_v<Matrix> && std::is_nothrow_move_assignable_v<Matrix>);
}

TEST(Matrix, ProductIsRowsByColumns) {
  const Matrix a = MatrixOf({{2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}});
  const Matrix b = MatrixOf({{1.5, -2.0, 4.0, 0.5}, {3.0, 6.0, -1.5, 2.5}, {-4.0, 8.0, 9.0, -0.25}});
  EXPECT_TRUE(Equal(a * b, MatrixOf({{-8.0, 54.0, 48.5, 7.25}, {-8.5, 156.0, 128.5, 27.75}})));
}

TEST(Matrix, ProductSumsInTheOrderOfTheColumns) {
  const Matrix sum = MatrixOf({{1e16, 3.0, -1e16}}) * MatrixOf({{2.0}, {0.25}, {2.0}});
  EXPECT_EQ(sum(0, 0), 0.0);  // 0.75 in any other order
}

TEST(Matrix, ProductOverNoColumnsIsZero) { EXPECT_TRUE(Equal(Matrix(2, 0) * Matrix(0, 3), Matrix(2, 3))); }

TEST(Matrix, SumsAndDifferencesGoElementByElement) {
  const Matrix a = MatrixOf({{2.0, 3.0}, {5.0, 7.0}, {11.0, 13.0}});
  const Matrix b = MatrixOf({{-1.5, 4.0}, {0.5, -2.0}, {6.0, 8.0}});
  const Matrix sum = MatrixOf({{0.5, 7.0}, {5.5, 5.0}, {17.0, 21.0}});
  EXPECT_TRUE(Equal(a + b, sum));
  EXPECT_TRUE(Equal(a - b, MatrixOf({{3.5, -1.0}, {4.5, 9.0}, {5.0, 5.0}})));
  Matrix c = a;
  EXPECT_EQ(&(c += b), &c);
  EXPECT_TRUE(Equal(c, sum));
  EXPECT_EQ(&(c -= a), &c);
  EXPECT_TRUE(Equal(c, b));
}

TEST(Matrix, OperandsMayBeTheSameObject) {
  Matrix a = MatrixOf({{2.0, 3.0}, {5.0, 7.0}});
  const Matrix& same = a;
  a += same;
  EXPECT_TRUE(Equal(a, MatrixOf({{4.0, 6.0}, {10.0, 14.0}})));
  a = a * a;
  EXPECT_TRUE(Equal(a, MatrixOf({{76.0, 108.0}, {180.0, 256.0}})));
  a -= same;
  EXPECT_TRUE(Equal(a, Matrix(2, 2)));
}

TEST(Matrix, ScalesFromEitherSide) {
  const Matrix a = MatrixOf({{2.0, -3.0}, {5.0, 7.0}});
  EXPECT_TRUE(Equal(a * 1.5, MatrixOf({{3.0, -4.5}, {7.5, 10.5}})));
  EXPECT_TRUE(Equal(1.5 * a, MatrixOf({{3.0, -4.5}, {7.5, 10.5}})));
  EXPECT_TRUE(Equal(a / 4.0, MatrixOf({{0.5, -0.75}, {1.25, 1.75}})));
  EXPECT_EQ((MatrixOf({{5.0}}) / 49.0)(0, 0), 5.0 / 49.0);
}

TEST(Matrix, DividedByOneByOneDividesEveryElement) {
  const Matrix a = MatrixOf({{2.0, -3.0}, {5.0, 7.0}});
  EXPECT_TRUE(Equal(a / MatrixOf({{2.0}}), MatrixOf({{1.0, -1.5}, {2.5, 3.5}})));
}

TEST(Matrix, OfOneElementConvertsToIt) {
  EXPECT_EQ(static_cast<double>(MatrixOf({{-2.5}})), -2.5);
  EXPECT_EQ(OutputOf([] { static_cast<void>(static_cast<double>(MatrixOf({{-2.5}}))); }), "");
}

TEST(Matrix, OfOneElementIsANumberWithoutACast) {
  const Matrix row = MatrixOf({{2.0, -3.0}});
  const Matrix column = MatrixOf({{5.0}, {7.0}});
  const double product = row * column;
  EXPECT_EQ(product, -11.0);
  EXPECT_EQ(std::sqrt(MatrixOf({{2.25}})), 1.5);
  EXPECT_EQ(1.0 + row * column, -10.0);
  EXPECT_EQ(OutputOf([] {
              const double number = Matrix(2, 1);
              EXPECT_EQ(number, 0.0);
            }),
            OutputOf([] { static_cast<void>(static_cast<double>(Matrix(2, 1))); }));
}

TEST(Matrix, ScalesByNumbersOfAnyType) {
  const Matrix a = MatrixOf({{2.0, -3.0}, {5.0, 7.0}});
  EXPECT_TRUE(Equal(a * 2, MatrixOf({{4.0, -6.0}, {10.0, 14.0}})));
  EXPECT_TRUE(Equal(2 * a, a * 2.0F));
  EXPECT_TRUE(Equal(a / 2L, a * 0.5));
  // Not the product of the element and the number.
  static_assert(std::is_same_v<decltype(a * 2), Matrix> && std::is_same_v<decltype(3U * a), Matrix>);
}

// Whether left * right and left / right are something.
template <class Left, class Right, class = void>
constexpr bool kMultiplies = false;
template <class Left, class Right>
constexpr bool kMultiplies<Left, Right, std::void_t<decltype(std::declval<Left>() * std::declval<Right>())>> = true;
template <class Left, class Right, class = void>
constexpr bool kDivides = false;
template <class Left, class Right>
constexpr bool kDivides<Left, Right, std::void_t<decltype(std::declval<Left>() / std::declval<Right>())>> = true;

TEST(Matrix, IsNoNumberBesideAVector) {
  static_assert(kMultiplies<Vector, double> && kMultiplies<Matrix, Matrix> && kDivides<Matrix, Matrix>);
  EXPECT_FALSE((kMultiplies<Matrix, Vector>));
  EXPECT_FALSE((kMultiplies<Vector, Matrix>));
  EXPECT_FALSE((kDivides<Vector, Matrix>));
}

TEST(Matrix, OperationsThatFitPrintNothing) {
  EXPECT_EQ(OutputOf([] {
              Matrix a(2, 2);
              a += a * a - a / 2.0;
              const Vector v(3);
              static_cast<void>(v % v + v * (v * v));
            }),
            "");
}

TEST(Matrix, ResizeZeroesEverything) {
  Matrix a(2, 2);
  a.fill(3.5);
  a.resize(3, 1);
  EXPECT_TRUE(Equal(a, Matrix(3, 1)));
  a.resize(-1, 4);
  EXPECT_TRUE(Equal(a, Matrix(0, 4)));
}

TEST(Matrix, FillsAndClears) {
  Matrix a(2, 1);
  a.fill(3.5);
  EXPECT_TRUE(Equal(a, MatrixOf({{3.5}, {3.5}})));
  a.clear();
  EXPECT_TRUE(IsEmpty(a));
}

TEST(Matrix, BecomesTheIdentityWhereItIsSquare) {
  Matrix square(2, 2);
  square.fill(3.5);
  square.unit();
  EXPECT_TRUE(Equal(square, Matrix(2, kUnit)));
  Matrix tall(2, 1);
  tall.fill(3.5);
  tall.unit();
  EXPECT_TRUE(Equal(tall, MatrixOf({{3.5}, {3.5}})));
}

#ifdef ORVANEL_TEST_CAN_READ_SLOTS
TEST(Matrix, KeepsTheSlotsOfItsVirtualOperations) {
  EXPECT_EQ(test::SlotOf(&Matrix::print), 1U);
  EXPECT_EQ(test::SlotOf(&Matrix::clear), 2U);
  EXPECT_EQ(test::SlotOf(&Matrix::resize), 3U);
  EXPECT_EQ(test::SlotOf(&Matrix::fill), 4U);
  EXPECT_EQ(test::SlotOf(&Matrix::inv), 5U);
  EXPECT_EQ(test::SlotOf(&Matrix::invc), 6U);
  EXPECT_EQ(test::SlotOf(&Matrix::minor_matrix), 7U);
  EXPECT_EQ(test::SlotOf(&Matrix::cofactor), 8U);
  EXPECT_EQ(test::SlotOf(&Matrix::det), 9U);
  EXPECT_EQ(test::SlotOf(&Matrix::tr), 10U);
  EXPECT_EQ(test::SlotOf(&Matrix::unit), 11U);
  EXPECT_EQ(test::SlotOf(&Matrix::qr_iteration), 12U);
  EXPECT_EQ(test::SlotOf(&Matrix::eigen), 13U);
  EXPECT_EQ(test::SlotOf(&Matrix::eigenvectors), 14U);
}
#endif

}  // namespace
}  // namespace orvanel
