// Resamples planes by cubic convolution, for C++ hosts.
#ifndef ORVANEL_RESAMPLING_H
#define ORVANEL_RESAMPLING_H

namespace orvanel {

// The weight of a sample at distance x, in samples: 1 at 0, 0 at 1 and from 2 on, negative between 1 and 2; even. The
// weights of the four samples around any point add up to 1. It is 0 if x is not a number. Source: Keys (1981), Cubic
// convolution interpolation, with a = -1.
double CubicKernel(double x);

// Magnifies a plane about its centre sample (n/2, n/2).
//   plane   n x n doubles, row-major
//   factor  above 1 enlarges; the result's samples are 1 / factor samples of the source apart
//   out     n x n, another plane
// A sample is the weighted sum of the 4 x 4 nearest of the source, or 0 if these are not well inside the plane. A
// negative sum becomes 0. Source: as above, along rows and columns.
void Rescale(const double* plane, int n, double factor, double* out);

}  // namespace orvanel

#endif  // ORVANEL_RESAMPLING_H
