// Implements Brent's method for a maximum.
#include "models/classic/brent.h"

#include <cmath>
#include <utility>

namespace orvanel {
namespace {

constexpr int kMostSteps = 200;  // golden sections alone reduce any interval to rounding in fewer
constexpr double kRootOfRounding = 0x1p-52;

}  // namespace

Maximum MaximiseOnInterval(const std::function<double(double)>& f, double low, double high, double tolerance) {
  constexpr double kGolden = 0x1.8722191a02d61p-2;  // (3 - sqrt 5) / 2
  double x = low + kGolden * (high - low);          // the best point so far
  double w = x;                                     // the second best
  double v = x;                                     // the previous w
  double fx = f(x);
  double fw = fx;
  double fv = fx;
  double step = 0.0;
  double stepBeforeLast = 0.0;
  const double wanted = tolerance;
  for (int steps = 0; steps < kMostSteps; ++steps) {
    const double middle = 0.5 * (low + high);
    tolerance = wanted + kRootOfRounding * std::fabs(x);  // closer points have the same value
    if (std::fabs(x - middle) <= 2.0 * tolerance - 0.5 * (high - low)) break;

    // The parabola through x, v and w peaks at x + p / q.
    bool parabolic = false;
    if (std::fabs(stepBeforeLast) > tolerance) {
      const double r = (x - w) * (fx - fv);
      double q = (x - v) * (fx - fw);
      double p = (x - v) * q - (x - w) * r;
      q = 2.0 * (q - r);
      if (q > 0.0) p = -p;
      q = std::fabs(q);
      const double limit = std::exchange(stepBeforeLast, step);
      if (std::fabs(p) < std::fabs(0.5 * q * limit) && p > q * (low - x) && p < q * (high - x)) {
        parabolic = true;
        step = p / q;
        const double u = x + step;
        if (u - low < 2.0 * tolerance || high - u < 2.0 * tolerance) step = x < middle ? tolerance : -tolerance;
      }
    }
    if (!parabolic) {
      stepBeforeLast = (x < middle ? high : low) - x;
      step = kGolden * stepBeforeLast;
    }

    const double u = x + (std::fabs(step) >= tolerance ? step : std::copysign(tolerance, step));
    const double fu = f(u);
    if (fu >= fx) {
      (u < x ? high : low) = x;
      v = std::exchange(w, std::exchange(x, u));
      fv = std::exchange(fw, std::exchange(fx, fu));
    } else {
      (u < x ? low : high) = u;
      if (fu >= fw || w == x) {
        v = std::exchange(w, u);
        fv = std::exchange(fw, fu);
      } else if (fu >= fv || v == x || v == w) {
        v = u;
        fv = fu;
      }
    }
  }
  return {x, fx};
}

}  // namespace orvanel
