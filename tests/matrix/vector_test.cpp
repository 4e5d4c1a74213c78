// Tests vectors: construction, value semantics, arithmetic and the order of the virtual operations.
#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <utility>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/matrix/slots.h"
#include "tests/support/captured_stdout.h"

namespace orvanel {
namespace {

using test::Equal;
using test::OutputOf;
using test::VectorOf;

TEST(Vector, IsZeroWhenMade) { EXPECT_TRUE(Equal(Vector(3), VectorOf({0.0, 0.0, 0.0}))); }

TEST(Vector, OfADimBelowOneIsEmpty) {
  EXPECT_EQ(Vector(0).dim(), 0);
  EXPECT_EQ(Vector(-1).dim(), 0);
  EXPECT_EQ(Vector(std::numeric_limits<int>::min()).dim(), 0);
  EXPECT_EQ(Vector().dim(), 0);
}

TEST(Vector, HoldsItsElementsSideBySide) {
  Vector a = VectorOf({2.0, 3.0, 5.0});
  EXPECT_EQ(&a[2], a.data() + 2);
  EXPECT_EQ(std::as_const(a).data()[1], 3.0);
}

TEST(Vector, CopiesShareNothing) {
  Vector a = VectorOf({2.0, 3.0});
  Vector constructed = a;
  Vector assigned(7);
  assigned = a;
  a[0] = -9.0;
  EXPECT_TRUE(Equal(constructed, VectorOf({2.0, 3.0})));
  EXPECT_TRUE(Equal(assigned, VectorOf({2.0, 3.0})));
}

TEST(Vector, SurvivesAssignmentToItself) {
  Vector a = VectorOf({2.0, 3.0});
  Vector& same = a;
  a = same;
  EXPECT_TRUE(Equal(a, VectorOf({2.0, 3.0})));
  a = std::move(same);
  EXPECT_TRUE(Equal(a, VectorOf({2.0, 3.0})));
}

TEST(Vector, IsEmptyAfterAMoveAndUsableAgain) {
  Vector a = VectorOf({2.0, 3.0});
  const Vector constructed = std::move(a);
  EXPECT_EQ(a.dim(), 0);  // NOLINT(bugprone-use-after-move): that is the promise
  EXPECT_EQ(OutputOf([&] { a.print(); }), "");
  a.resize(1);
  a[0] = 7.0;
  Vector assigned(5);
  assigned = std::move(a);
  EXPECT_EQ(a.dim(), 0);  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(Equal(constructed, VectorOf({2.0, 3.0})));
  EXPECT_TRUE(Equal(assigned, VectorOf({7.0})));
  static_assert(std::is_nothrow_move_constructible_v<Vector> && std::is_nothrow_move_assignable_v<Vector>);
}

TEST(Vector, InnerProductSumsInTheOrderOfTheElements) {
  EXPECT_EQ(VectorOf({2.0, 3.0, 5.0}) * VectorOf({7.0, -11.0, 13.0}), 46.0);
  EXPECT_EQ(VectorOf({1e16, 3.0, -1e16}) * VectorOf({2.0, 0.25, 2.0}), 0.0);  // 0.75 in any other order
  EXPECT_EQ(Vector() * Vector(), 0.0);
}

TEST(Vector, CrossProductFollowsTheRightHand) {
  EXPECT_TRUE(Equal(VectorOf({2.0, 3.0, 5.0}) % VectorOf({7.0, 11.0, 13.0}), VectorOf({-16.0, 9.0, 1.0})));
}

TEST(Vector, SumsAndDifferencesGoElementByElement) {
  const Vector a = VectorOf({2.0, 3.0});
  const Vector b = VectorOf({7.0, -11.0});
  EXPECT_TRUE(Equal(a + b, VectorOf({9.0, -8.0})));
  EXPECT_TRUE(Equal(a - b, VectorOf({-5.0, 14.0})));
  Vector c = a;
  EXPECT_EQ(&(c += b), &c);
  EXPECT_TRUE(Equal(c, VectorOf({9.0, -8.0})));
  EXPECT_EQ(&(c -= a), &c);
  EXPECT_TRUE(Equal(c, b));
}

TEST(Vector, OperandsMayBeTheSameObject) {
  Vector a = VectorOf({2.0, -3.0});
  const Vector& same = a;
  a += same;
  EXPECT_TRUE(Equal(a, VectorOf({4.0, -6.0})));
  a = a + a;
  EXPECT_TRUE(Equal(a, VectorOf({8.0, -12.0})));
  EXPECT_EQ(a * a, 208.0);
  a -= same;
  EXPECT_TRUE(Equal(a, Vector(2)));
}

TEST(Vector, ScalesFromEitherSide) {
  const Vector a = VectorOf({2.0, -3.0});
  EXPECT_TRUE(Equal(a * 1.5, VectorOf({3.0, -4.5})));
  EXPECT_TRUE(Equal(1.5 * a, VectorOf({3.0, -4.5})));
  EXPECT_TRUE(Equal(a / 4.0, VectorOf({0.5, -0.75})));
}

TEST(Vector, DividesInsteadOfMultiplyingByAnInverse) {
  EXPECT_EQ((VectorOf({5.0}) / 49.0)[0], 5.0 / 49.0);
  EXPECT_NE(5.0 / 49.0, 5.0 * (1.0 / 49.0));
}

TEST(Vector, ResizeZeroesEverything) {
  Vector a = VectorOf({2.0, 3.0});
  a.resize(3);
  EXPECT_TRUE(Equal(a, Vector(3)));
  a.resize(-1);
  EXPECT_EQ(a.dim(), 0);
}

TEST(Vector, FillsCopiesAndClears) {
  Vector a(2);
  a.fill(-2.5);
  EXPECT_TRUE(Equal(a, VectorOf({-2.5, -2.5})));
  a.copy(VectorOf({2.0, 3.0, 5.0}));
  EXPECT_TRUE(Equal(a, VectorOf({2.0, 3.0, 5.0})));
  a.copy(a);
  a.refresh();
  EXPECT_TRUE(Equal(a, VectorOf({2.0, 3.0, 5.0})));
  a.clear();
  EXPECT_EQ(a.dim(), 0);
}

TEST(Vector, IsPolymorphic) {
  struct Noted : Vector {
    using Vector::Vector;
    void resize(int n) override { Vector::resize(n + 1); }
  };
  Noted noted(2);
  Vector& vector = noted;
  vector.resize(4);
  EXPECT_EQ(noted.dim(), 5);
  static_assert(std::has_virtual_destructor_v<Vector>);
}

#ifdef ORVANEL_TEST_CAN_READ_SLOTS
TEST(Vector, KeepsTheSlotsOfItsVirtualOperations) {
  EXPECT_EQ(test::SlotOf(&Vector::print), 1U);
  EXPECT_EQ(test::SlotOf(&Vector::fill), 2U);
  EXPECT_EQ(test::SlotOf(&Vector::copy), 3U);
  EXPECT_EQ(test::SlotOf(&Vector::refresh), 4U);
  EXPECT_EQ(test::SlotOf(&Vector::resize), 5U);
  EXPECT_EQ(test::SlotOf(&Vector::clear), 6U);
}
#endif

}  // namespace
}  // namespace orvanel
