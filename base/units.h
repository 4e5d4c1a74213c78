// Quantities with units: each unit is a separate type, and mixing two does not compile.
#ifndef ORVANEL_BASE_UNITS_H
#define ORVANEL_BASE_UNITS_H

#include <compare>

namespace orvanel {

template <class Unit>
class Quantity {
 public:
  constexpr Quantity() = default;
  constexpr explicit Quantity(double value) : value_(value) {}

  constexpr double value() const { return value_; }

  friend constexpr Quantity operator+(Quantity a, Quantity b) { return Quantity(a.value_ + b.value_); }
  friend constexpr Quantity operator-(Quantity a, Quantity b) { return Quantity(a.value_ - b.value_); }
  friend constexpr Quantity operator-(Quantity a) { return Quantity(-a.value_); }
  friend constexpr Quantity operator*(Quantity a, double factor) { return Quantity(a.value_ * factor); }
  friend constexpr Quantity operator*(double factor, Quantity a) { return Quantity(factor * a.value_); }
  friend constexpr Quantity operator/(Quantity a, double divisor) { return Quantity(a.value_ / divisor); }
  friend constexpr double operator/(Quantity a, Quantity b) { return a.value_ / b.value_; }
  friend constexpr auto operator<=>(Quantity, Quantity) = default;  // NOLINT(modernize-use-nullptr): there is no 0 here

 private:
  double value_ = 0.0;
};

using Millimetres = Quantity<struct MillimetresUnit>;
using Micrometres = Quantity<struct MicrometresUnit>;
using Nanometres = Quantity<struct NanometresUnit>;
using CyclesPerDegree = Quantity<struct CyclesPerDegreeUnit>;
using ArcMinutes = Quantity<struct ArcMinutesUnit>;

constexpr Millimetres ToMillimetres(Micrometres length) { return Millimetres(length.value() * 1e-3); }
constexpr Micrometres ToMicrometres(Millimetres length) { return Micrometres(length.value() * 1e3); }
constexpr Nanometres ToNanometres(Millimetres length) { return Nanometres(length.value() * 1e6); }

}  // namespace orvanel

#endif  // ORVANEL_BASE_UNITS_H
