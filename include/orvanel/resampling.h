// Resampling of planes by cubic convolution, for C++ hosts.
#ifndef ORVANEL_RESAMPLING_H
#define ORVANEL_RESAMPLING_H

namespace orvanel {

// Weight of a sample at distance x, in samples: 1 at 0, 0 at 1 and from 2 on, negative between 1 and 2; even. The
// weights of the four samples about any point add up to 1. 0 where x is not a number. Source: Keys (1981), Cubic
// convolution interpolation, with a = -1.
double CubicKernel(double x);

// Magnifies a plane about its centre sample (n/2, n/2).
//   plane   n x n doubles, row-major
//   factor  above 1 enlarges; 1 / factor samples of the source lie between two of the result
//   out     n x n, another plane
// A sample takes from the 4 x 4 nearest of the source, or is 0 where these are not well inside; a negative sum becomes
// 0. Source: as above, along rows and columns.
void Rescale(const double* plane, int n, double factor, double* out);

}  // namespace orvanel

#endif  // ORVANEL_RESAMPLING_H
