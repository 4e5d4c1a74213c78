// Resampling of planes by cubic convolution.
#ifndef ORVANEL_OPTICS_POLYCHROMATIC_H
#define ORVANEL_OPTICS_POLYCHROMATIC_H

namespace orvanel {

// Weight of a sample at distance x: 1 at 0, 0 at 1 and from 2 on, even. Source: Keys (1981), with a = -1.
double CubicKernel(double x);

// Magnifies an n x n plane by `factor` about its centre sample into `out`, another plane. A sample takes from the 4 x 4
// nearest of the source, or is 0 where these are not well inside; a negative sum becomes 0.
void Rescale(const double* plane, int n, double factor, double* out);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_POLYCHROMATIC_H
