// Finds the peak of a point spread function, which is seldom on a sample.
#ifndef ORVANEL_PSF_PEAK_H
#define ORVANEL_PSF_PEAK_H

namespace orvanel {

// The peak of a point spread function between its samples.
struct PsfPeak {
  double value;   // PSF at the peak, relative to its brightest sample; at least 1
  double row;     // position in samples from the brightest one; rows increase downwards
  double column;  // the same; columns increase to the right
};

// The maximum of the band-limited function through the samples. The search covers all lobes whose brightest sample is
// at least 0.7 of the plane's. `value` times the Strehl ratio is the Strehl ratio of the peak between samples. The
// error is in docs/accuracy.md.
//   psf  256 x 256 samples, as OrvanelGetPSF and OpticsEngine::ComputePsf give them: the brightest at (128, 128)
PsfPeak PeakBetweenSamples(const double* psf);

}  // namespace orvanel

#endif  // ORVANEL_PSF_PEAK_H
