// Declares the peak of a PSF between its samples, on a plane of any origin.
#ifndef ORVANEL_OPTICS_PSF_PEAK_H
#define ORVANEL_OPTICS_PSF_PEAK_H

#include "orvanel/psf_peak.h"

namespace orvanel {

// A periodic plane: 256 rows of 256 samples, `pitch` apart.
struct PeriodicPlane {
  const double* samples;
  int pitch;
  int row, column;  // of the brightest sample
};

// PeakBetweenSamples, of a PSF whose brightest sample may be anywhere, in any unit.
PsfPeak PeakOf(const PeriodicPlane& plane);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_PSF_PEAK_H
