// Root mean squares of a wavefront from its coefficients.
#ifndef ORVANEL_CLI_RMS_H
#define ORVANEL_CLI_RMS_H

#include "cli/conventions/convention.h"

namespace orvanel::cli {

// Of the radial orders first to last, both included: the root of the sum of squares.
//   osa  orthonormal, micrometres
Micrometres Rms(const Coefficients& osa, int first, int last = kLargestOrder);

constexpr int kLowestOrderThatBlurs = 2;  // piston and tilt only move the image
constexpr int kLowestHigherOrder = 3;     // what spectacles do not correct

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_RMS_H
