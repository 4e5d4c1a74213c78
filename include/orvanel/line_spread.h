// Line spread functions, and the modulation transfer function at frequencies between its samples.
#ifndef ORVANEL_LINE_SPREAD_H
#define ORVANEL_LINE_SPREAD_H

#include <array>

namespace orvanel {

// Image of a line: the point spread function summed along the line, 256 samples, the centre at sample 128.
using LineSpread = std::array<double, 256>;

// The line spread functions in the directions of rows and columns.
struct LineSpreads {
  LineSpread horizontal;  // of a vertical line: the sum of each column
  LineSpread vertical;    // of a horizontal line: the sum of each row
};

// psf  256 x 256 samples, as OrvanelGetPSF and OpticsEngine::ComputePsf give them
LineSpreads LineSpreadsOf(const double* psf);

// The modulation transfer function in the direction of a line spread function at `sample`, in samples of the
// library's sections; the cut-off is sample 128. At whole samples it is the section's value to rounding; from the
// cut-off on, and where `sample` is below 0 or not a number, it is 0.
// Between samples the transfer function less that of a perfect pupil is taken as band-limited: the difference has no
// kink at zero frequency, so that the line spread that belongs to it fades towards the ends of the field. The perfect
// pupil's own is added in closed form. docs/accuracy.md has the error.
double MtfBetweenSamples(const LineSpread& lineSpread, double sample);

}  // namespace orvanel

#endif  // ORVANEL_LINE_SPREAD_H
