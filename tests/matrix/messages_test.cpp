// Tests every message byte for byte, with its sizes and in its order.
#include "matrix/messages.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/support/captured_stdout.h"
#include "tests/support/cp932.h"

namespace orvanel {
namespace {

using test::Cp932;
using test::Equal;
using test::OutputOf;
using test::VectorOf;

TEST(Messages, EveryReadableTextEncodesIntoTheBytesBesideIt) {
  for (const Wording& wording : Wordings()) {
    EXPECT_EQ(Cp932(wording.readable), wording.bytes) << "text " << static_cast<int>(wording.text);
  }
}

TEST(Messages, AreBytesOfCodePage932) {
  EXPECT_EQ(OutputOf([] { static_cast<void>(Matrix(2, 3).tr()); }),
            "\x8a\xd6\x90\x94 Matrix::tr() \x82\xc5\x81\x43\x8d\x73\x97\xf1\x82\xcc\x83\x54\x83\x43\x83\x59\x82\xaa\x90"
            "\xb3\x82\xb5\x82\xad\x82\xa0\x82\xe8\x82\xdc\x82\xb9\x82\xf1\x81\x44:\n"
            "  \x83\x49\x83\x79\x83\x89\x83\x93\x83\x68\x82\xcc\x8d\x73\x97\xf1 (2 x 3) \x82\xcd\x81\x43\x90\xb3\x95"
            "\xfb\x8d\x73\x97\xf1\x82\xc5\x82\xcd\x82\xa0\x82\xe8\x82\xdc\x82\xb9\x82\xf1\x81\x44\n");
}

TEST(Messages, KeepTheirOrderWithWhatTheHostPrints) {
  const std::string output = OutputOf([] {
    std::printf("before");
    static_cast<void>(Vector(2) + Vector(5));
    VectorOf({2.5}).print();
    std::printf("after");
  });
  EXPECT_EQ(output, Cp932(u8"before\n2項演算子 + で，各ベクトルのサイズが一致しません．:\n"
                          u8"  オペランド 1 : dim = 2,   オペランド 2 : dim = 5\n"
                          u8"    2.5000after"));
}

TEST(Messages, FillInNumbersOfAnyLengthAndSign) {
  EXPECT_EQ(OutputOf([] {
              Say(Text::kFormNotSquare, {-2147483647 - 1, 2147483647});
            }),
            Cp932(u8"  オペランド -2147483648 x 2147483647 行列は正方行列ではありません．\n"));
}

TEST(Messages, InnerProductOfDifferentDims) {
  double product = -7.0;
  EXPECT_EQ(OutputOf([&] {
              product = VectorOf({2.0, 3.0}) * VectorOf({5.0, 7.0, 11.0});
            }),
            Cp932(u8"\n2項演算子 * で，各ベクトルのサイズが正しくありません．:\n"
                  u8"  オペランド 1 : dim = 2,   オペランド 2 : dim = 3\n"));
  EXPECT_EQ(product, 0.0);
}

TEST(Messages, CrossProductOfOtherThanTwoTriples) {
  for (const auto& [left, right] : {std::pair{4, 4}, std::pair{3, 2}, std::pair{2, 3}, std::pair{0, 0}}) {
    Vector product(9);
    EXPECT_EQ(OutputOf([&, l = left, r = right] { product = Vector(l) % Vector(r); }),
              Cp932(u8"\n2項演算子 * で，各ベクトルのサイズが正しくありません．:\n  オペランド 1 : dim = ") +
                  std::to_string(left) + Cp932(u8",   オペランド 2 : dim = ") + std::to_string(right) + "\n");
    EXPECT_EQ(product.dim(), 0);
  }
}

TEST(Messages, VectorSumAndDifferenceShareTheHeadlineOfTheSum) {
  Vector sum(9);
  Vector difference(9);
  const std::string expected = Cp932(
      u8"\n2項演算子 + で，各ベクトルのサイズが一致しません．:\n"
      u8"  オペランド 1 : dim = 4,   オペランド 2 : dim = 6\n");
  EXPECT_EQ(OutputOf([&] { sum = Vector(4) + Vector(6); }), expected);
  EXPECT_EQ(OutputOf([&] { difference = Vector(4) - Vector(6); }), expected);
  EXPECT_EQ(sum.dim(), 0);
  EXPECT_EQ(difference.dim(), 0);
}

TEST(Messages, VectorCompoundOperatorsShareTheHeadlineOfTheSum) {
  Vector left = VectorOf({2.0, -3.0});
  const Vector right(3);
  const std::string expected = Cp932(
      u8"\n演算子 += で，各ベクトルのサイズが一致しません．:\n"
      u8"  this オブジェクト: dim = 2,   オペランド       : dim = 3\n");
  EXPECT_EQ(OutputOf([&] { left += right; }), expected);
  EXPECT_EQ(OutputOf([&] { left -= right; }), expected);
  EXPECT_TRUE(Equal(left, VectorOf({2.0, -3.0})));
}

TEST(Messages, MatrixProductOfInnerSizesThatDiffer) {
  Matrix product(9, 9);
  EXPECT_EQ(OutputOf([&] { product = Matrix(2, 3) * Matrix(4, 5); }),
            Cp932(u8"\n2項演算子 * で，各行列のサイズが正しくありません．:\n"
                  u8"  オペランド 1 = 2 x 3 行列,   オペランド 2 = 4 x 5 行列\n"));
  EXPECT_TRUE(test::IsEmpty(product));
}

TEST(Messages, MatrixSumOfDifferentShapes) {
  Matrix sum(9, 9);
  EXPECT_EQ(OutputOf([&] { sum = Matrix(2, 3) + Matrix(2, 5); }),
            Cp932(u8"\n2項演算子 + で，各行列のサイズが一致しません．:\n"
                  u8"  オペランド 1 = 2 x 3 行列,   オペランド 2 = 2 x 5 行列\n"));
  EXPECT_TRUE(test::IsEmpty(sum));
}

TEST(Messages, MatrixDifferenceOfDifferentShapes) {
  Matrix difference(9, 9);
  EXPECT_EQ(OutputOf([&] { difference = Matrix(2, 3) - Matrix(4, 3); }),
            Cp932(u8"\n2項演算子 - で，各行列のサイズが一致しません．:\n"
                  u8"  オペランド 1 = 2 x 3 行列,   オペランド 2 = 4 x 3 行列\n"));
  EXPECT_TRUE(test::IsEmpty(difference));
}

TEST(Messages, MatrixCompoundSumOfDifferentShapes) {
  Matrix left(2, 3);
  left.fill(2.5);
  const Matrix before = left;
  EXPECT_EQ(OutputOf([&] { left += Matrix(3, 2); }),
            Cp932(u8"\n演算子 += で，各行列のサイズが一致しません．:\n"
                  u8"  this オブジェクト = 2 x 3 行列,   オペランド        = 3 x 2 行列\n"));
  EXPECT_TRUE(Equal(left, before));
}

TEST(Messages, MatrixCompoundDifferenceOfDifferentShapes) {
  Matrix left(2, 3);
  left.fill(2.5);
  const Matrix before = left;
  EXPECT_EQ(OutputOf([&] { left -= Matrix(2, 4); }),
            Cp932(u8"\n演算子 -= で，各行列のサイズが一致しません．:\n"
                  u8"  this オブジェクト = 2 x 3 行列,   オペランド        = 2 x 4 行列\n"));
  EXPECT_TRUE(Equal(left, before));
}

TEST(Messages, MatrixDividedByAMatrix) {
  for (const Matrix& divisor : {Matrix(2, 2), Matrix(1, 2), Matrix(2, 1), Matrix()}) {
    Matrix quotient(9, 9);
    EXPECT_EQ(OutputOf([&] { quotient = Matrix(2, 2) / divisor; }),
              Cp932(u8"オペレータ / で，行列を行列で除算することはできません．\n"));
    EXPECT_TRUE(test::IsEmpty(quotient));
  }
}

TEST(Messages, MatrixAsADouble) {
  double element = -7.0;
  Matrix column(2, 1);
  column.fill(3.0);
  EXPECT_EQ(OutputOf([&] { element = static_cast<double>(column); }),
            Cp932(u8"サイズが 1 x 1 以外の行列は，double 型にキャストすることはできません．:\n"
                  u8"  キャストされようとしたオペランド = 2 x 1 行列\n"));
  EXPECT_EQ(element, 0.0);
}

TEST(Messages, InverseOfAMatrixThatIsNotSquare) {
  Matrix inverse(9, 9);
  EXPECT_EQ(OutputOf([&] { inverse = Matrix(2, 3).inv(); }),
            Cp932(u8"関数 Matrix::inv() で，行列のサイズが正しくありません．逆行列は計算できません．:\n"
                  u8"  オペランドの行列 (2 x 3) は，正方行列ではありません．\n"));
  EXPECT_TRUE(test::IsEmpty(inverse));
}

TEST(Messages, InverseByCofactorsOfASingularMatrix) {
  Matrix inverse(9, 9);
  EXPECT_EQ(OutputOf([&] { inverse = Matrix(3, 3).invc(); }),
            Cp932(u8"関数 Matrix::invc() で逆行列が計算できません．:\n"
                  u8"  オペランドの行列 (3 x 3) は，正則行列ではありません．\n"));
  EXPECT_TRUE(test::IsEmpty(inverse));
}

TEST(Messages, DeterminantOfAMatrixThatIsNotSquare) {
  double determinant = -7.0;
  Matrix a(2, 3);
  a.fill(5.0);
  EXPECT_EQ(OutputOf([&] { determinant = a.det(); }),
            Cp932(u8"関数 Matrix::det() で，行列のサイズが正しくありません．:\n"
                  u8"  オペランドの行列 (2 x 3) は，正方行列ではありません．\n"));
  EXPECT_EQ(determinant, 0.0);
}

TEST(Messages, TraceOfAMatrixThatIsNotSquare) {
  double trace = -7.0;
  Matrix a(3, 2);
  a.fill(5.0);
  EXPECT_EQ(OutputOf([&] { trace = a.tr(); }), Cp932(u8"関数 Matrix::tr() で，行列のサイズが正しくありません．:\n"
                                                     u8"  オペランドの行列 (3 x 2) は，正方行列ではありません．\n"));
  EXPECT_EQ(trace, 0.0);
}

TEST(Messages, ReflectionOfOtherThanOneRow) {
  Matrix reflection(9, 9);
  EXPECT_EQ(OutputOf([&] { reflection = householder(Matrix(3, 2)); }),
            Cp932(u8"関数 householder() で，行列のサイズは 1 x n でなければなりません．:\n"
                  u8"  オペランドの行列 = 3 x 2\n"));
  EXPECT_TRUE(test::IsEmpty(reflection));
}

TEST(Messages, TridiagonalFormOfAMatrixThatIsNotSquare) {
  Matrix form(9, 9);
  EXPECT_EQ(OutputOf([&] { form = tridiag(Matrix(4, 3)); }),
            Cp932(u8"関数 tridiag() で，行列のサイズが正しくありません．3重対角化できません．:\n"
                  u8"  オペランド 4 x 3 行列は正方行列ではありません．\n"));
  EXPECT_TRUE(test::IsEmpty(form));
}

TEST(Messages, QrIterationOfAMatrixThatIsNotSquare) {
  Matrix last(9, 9);
  EXPECT_EQ(
      OutputOf([&] { last = Matrix(3, 5).qr_iteration(); }),
      Cp932(u8"関数 Matrix::eigen() で，行列のサイズが正しくありません．固有値および固有ベクトルが計算できません．"
            u8":\n  オペランド 3 x 5 行列は正方行列ではありません．\n"));
  EXPECT_TRUE(test::IsEmpty(last));
}

}  // namespace
}  // namespace orvanel
