// The steps from object to retinal image.
#ifndef ORVANEL_OPTICS_RETINAL_IMAGE_H
#define ORVANEL_OPTICS_RETINAL_IMAGE_H

namespace orvanel {

// product = object spectrum times transfer function, the rows of the latter read in reverse: row n - 1 - r for row r.
// With the squared magnitude that follows, this filters with the PSF upside down, so that the image stands upright. The
// product may take the object's place.
void MultiplyByMirroredOtf(const double* objectReal, const double* objectImag, const double* otfReal,
                           const double* otfImag, int n, double* productReal, double* productImag);

// image = intensity scaled to the sum objectTotal, then clipped to 0.0 .. 1.0; what is not a number becomes 0.0.
void KeepTotal(const double* intensity, int n, double objectTotal, double* image);

// image = intensity stretched so that it spans exactly 0.0 to 1.0; not a number where it is constant.
void Stretch(const double* intensity, int n, double* image);

// Sum of the samples in row-major order.
double Total(const double* plane, int n);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_RETINAL_IMAGE_H
