// The highest place of a point spread function, which seldom lies on a sample.
#ifndef ORVANEL_PSF_PEAK_H
#define ORVANEL_PSF_PEAK_H

namespace orvanel {

// The peak of a point spread function between its samples.
struct PsfPeak {
  double value;   // of the PSF there, relative to its brightest sample; at least 1
  double row;     // where it is, in samples from the brightest one; rows grow downwards
  double column;  // columns grow to the right
};

// The highest place of the band-limited function through the samples, found among all lobes whose brightest sample is
// at least 0.7 of the plane's. Times the Strehl ratio, `value` is the Strehl ratio of the peak between samples.
// docs/accuracy.md has the error.
//   psf  256 x 256 samples, as OrvanelGetPSF and OpticsEngine::ComputePsf give them: the brightest at (128, 128)
PsfPeak PeakBetweenSamples(const double* psf);

}  // namespace orvanel

#endif  // ORVANEL_PSF_PEAK_H
