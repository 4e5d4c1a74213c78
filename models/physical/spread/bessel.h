// The Bessel function of order 1.
#ifndef ORVANEL_MODELS_PHYSICAL_SPREAD_BESSEL_H
#define ORVANEL_MODELS_PHYSICAL_SPREAD_BESSEL_H

namespace orvanel::physical {

// J1(x) for 0 <= x. Error: kBesselError.
// Source: its power series, and from x = 14 Hankel's asymptotic series; Abramowitz and Stegun (1964), 9.1.10 and 9.2.5.
constexpr double kBesselError = 1e-10;
double BesselJ1(double x);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_SPREAD_BESSEL_H
