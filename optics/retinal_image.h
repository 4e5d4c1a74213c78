// Declares the stages from an object to its retinal image.
#ifndef ORVANEL_OPTICS_RETINAL_IMAGE_H
#define ORVANEL_OPTICS_RETINAL_IMAGE_H

#include "optics/view.h"

namespace orvanel {

// Multiplies an object's spectrum by a transfer function in place. The rows of the latter are read in reverse: row
// n - 1 - r for row r. With the squared magnitude that follows, this filters with the PSF upside down, so that the
// image is upright. contract: a mirror about the centre would read row n - r.
void MultiplyByMirroredOtf(ComplexView spectrum, ConstComplexView otf);

// image = intensity scaled to the sum objectTotal, then clipped to 0.0 .. 1.0; NaN becomes 0.0.
void KeepTotal(ConstPlaneView intensity, double objectTotal, PlaneView image);

// image = intensity stretched so that it spans exactly 0.0 to 1.0; NaN where it is constant.
void Stretch(ConstPlaneView intensity, PlaneView image);

// Sum of the samples in row-major order.
double Total(ConstPlaneView plane);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_RETINAL_IMAGE_H
