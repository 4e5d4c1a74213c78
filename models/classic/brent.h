// Finds a maximum of a function of one variable on an interval, without derivatives.
#ifndef ORVANEL_MODELS_CLASSIC_BRENT_H
#define ORVANEL_MODELS_CLASSIC_BRENT_H

#include <functional>

namespace orvanel {

struct Maximum {
  double x;
  double value;
};

// A local maximum of f on [low, high], to about 3 * tolerance (> 0), by golden sections and parabolas; the global one
// if there is only one. Never calls f at the ends themselves, nor at two points closer than the tolerance.
// Source: Brent, Algorithms for Minimization without Derivatives (1973), chapter 5, localmin.
Maximum MaximiseOnInterval(const std::function<double(double)>& f, double low, double high, double tolerance);

}  // namespace orvanel

#endif  // ORVANEL_MODELS_CLASSIC_BRENT_H
