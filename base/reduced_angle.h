// Declares angles as a number of quarter turns and a remainder of at most an eighth of a turn, in two doubles.
#ifndef ORVANEL_BASE_REDUCED_ANGLE_H
#define ORVANEL_BASE_REDUCED_ANGLE_H

namespace orvanel {

// The angle quadrant * pi/2 + high + low, |high + low| <= pi/4 up to rounding, |low| <= ulp(high).
struct ReducedAngle {
  int quadrant;  // 0 to 3
  double high;
  double low;
};

// Any finite x, in radians. Error of high + low: 2^-87; its last bits matter only near a zero.
ReducedAngle ReduceAngle(double x);

// k/n of a full turn, 0 <= k < n, n a power of two.
ReducedAngle ReduceTurn(int k, int n);

}  // namespace orvanel

#endif  // ORVANEL_BASE_REDUCED_ANGLE_H
