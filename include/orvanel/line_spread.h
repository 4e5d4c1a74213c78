// Computes line spread functions, and the modulation transfer function between its samples.
#ifndef ORVANEL_LINE_SPREAD_H
#define ORVANEL_LINE_SPREAD_H

#include <array>

namespace orvanel {

// The image of a line: the point spread function summed along the line, 256 samples, with the centre at sample 128.
using LineSpread = std::array<double, 256>;

// The line spread functions in the directions of rows and columns.
struct LineSpreads {
  LineSpread horizontal;  // of a vertical line: the sum of each column
  LineSpread vertical;    // of a horizontal line: the sum of each row
};

// Computes both line spread functions.
//   psf  256 x 256 samples, as OrvanelGetPSF and OpticsEngine::ComputePsf give them
LineSpreads LineSpreadsOf(const double* psf);

// The modulation transfer function in the direction of a line spread function, at `sample` in samples of the library's
// sections; the cut-off is sample 128. At whole samples it is the section's value to rounding. From the cut-off on, and
// if `sample` is below 0 or not a number, it is 0.
// Between samples, the difference from the transfer function of a perfect pupil is treated as band-limited. The
// difference has no kink at zero frequency, so its line spread fades towards the ends of the field. The transfer
// function of the perfect pupil is added in closed form. The error is in docs/accuracy.md.
double MtfBetweenSamples(const LineSpread& lineSpread, double sample);

}  // namespace orvanel

#endif  // ORVANEL_LINE_SPREAD_H
