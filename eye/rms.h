// Computes the root mean square (RMS) of a wavefront from its coefficients.
#ifndef ORVANEL_EYE_RMS_H
#define ORVANEL_EYE_RMS_H

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

// The RMS of the radial orders first to last, both included: the root of the sum of squares.
//   osa  orthonormal, micrometres
Micrometres Rms(const Coefficients& osa, int first, int last = kLargestOrder);

constexpr int kLowestOrderThatBlurs = 2;  // piston and tilt only move the image
constexpr int kLowestHigherOrder = 3;     // spectacles do not correct these orders

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_RMS_H
