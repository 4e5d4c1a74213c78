// Tests the arithmetic of quantities, and that mixing units does not compile.
#include "base/units.h"

#include <gtest/gtest.h>

namespace orvanel {
namespace {

template <class A, class B>
concept Addable = requires(A a, B b) {
  a + b;
};
template <class A, class B>
concept Subtractable = requires(A a, B b) {
  a - b;
};
template <class A, class B>
concept Comparable = requires(A a, B b) {
  a < b;
};
template <class A, class B>
concept Equatable = requires(A a, B b) {
  a == b;
};
template <class A, class B>
concept Assignable = requires(A a, B b) {
  a = b;
};
template <class A, class B>
concept Divisible = requires(A a, B b) {
  a / b;
};

template <class A, class B>
constexpr bool kMix = Addable<A, B> || Subtractable<A, B> || Comparable<A, B> || Equatable<A, B> || Assignable<A, B>;

static_assert(kMix<Millimetres, Millimetres> && Divisible<Millimetres, Millimetres>);
static_assert(!kMix<Millimetres, Micrometres> && !Divisible<Millimetres, Micrometres>);
static_assert(!kMix<Millimetres, Nanometres> && !Divisible<Millimetres, Nanometres>);
static_assert(!kMix<Millimetres, ArcMinutes> && !Divisible<Millimetres, ArcMinutes>);
static_assert(!kMix<ArcMinutes, CyclesPerDegree> && !Divisible<ArcMinutes, CyclesPerDegree>);
static_assert(!kMix<Millimetres, double> && !kMix<double, Millimetres>, "a bare number has no unit");
static_assert(Divisible<Millimetres, double> && !Divisible<double, Millimetres>);

TEST(Units, ArithmeticIsThatOfTheNumbers) {
  constexpr Millimetres a{2.5}, b{0.75};
  EXPECT_EQ((a + b).value(), 3.25);
  EXPECT_EQ((a - b).value(), 1.75);
  EXPECT_EQ((-a).value(), -2.5);
  EXPECT_EQ((3.0 * a).value(), 7.5);
  EXPECT_EQ((a * 3.0).value(), 7.5);
  EXPECT_EQ((a / 5.0).value(), 0.5);
  EXPECT_EQ(b / a, 0.3);
  EXPECT_LT(b, a);
}

TEST(Units, ConversionsKeepTheLength) {
  EXPECT_DOUBLE_EQ(ToMillimetres(Micrometres(137.0)).value(), 0.137);
  EXPECT_DOUBLE_EQ(ToMicrometres(Millimetres(0.137)).value(), 137.0);
  EXPECT_DOUBLE_EQ(ToNanometres(Millimetres(0.00042)).value(), 420.0);
}

}  // namespace
}  // namespace orvanel
