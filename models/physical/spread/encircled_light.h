// The share of the light of a point within a circle.
#ifndef ORVANEL_MODELS_PHYSICAL_SPREAD_ENCIRCLED_LIGHT_H
#define ORVANEL_MODELS_PHYSICAL_SPREAD_ENCIRCLED_LIGHT_H

#include <vector>

#include "models/physical/point_spread.h"

namespace orvanel::physical {

// The encircled energy about one place: EE(R) = 2 pi R int OTF J1(2 pi f R) df, of the OTF's mean over angle about that
// place. All light of the infinite plane is 1; no window cuts it.
class EncircledLight {
 public:
  // Error: 2e-4. Refuses radii whose frequencies take more than 8192 a side.
  //   x, y            the middle of the circles, arcmin of the view
  //   largestRadius   arcmin
  static Outcome<EncircledLight> About(const Eye& eye, const Light& light, double x, double y, View view,
                                       double largestRadius, Workspace& workspace);

  // The share within a radius in arcmin, from 0 to the largest.
  double Within(double radius) const;

  // The diameter of the circle with a share of the light, as by bisection; not a number where the largest has less.
  double DiameterOf(double share) const;

 private:
  // Samples of the OTF that have the same distance from frequency 0.
  struct Ring {
    double frequency;  // cycles per arcmin
    double weight;     // of J1: the sum of their real parts, times area over frequency
  };
  // What the sum over frequencies has beyond the integral: light of the periods around.
  struct Rest {
    double area = 0.0;    // the OTF at frequency 0, times the area of its sample
    double around = 0.0;  // per squared arcmin
  };

  double largestRadius_ = 0.0;
  std::vector<Ring> rings_;
  Rest rest_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_SPREAD_ENCIRCLED_LIGHT_H
