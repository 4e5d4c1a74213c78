// Computes the two scales of results. On the library scale, frequencies, retinal lengths and ring sizes are those of a
// pupil of twice the diameter. On the optical scale they are those of the pupil as stated. All numbers on the two
// scales differ by the same ratio; docs/conventions.md derives it.
#ifndef ORVANEL_MODELS_SCALES_H
#define ORVANEL_MODELS_SCALES_H

#include "base/layers.h"
#include "base/units.h"
#include "orvanel/line_spread.h"

namespace orvanel::models {

struct Scale {
  Millimetres halfWidth;      // half extent of the window of PSF and images on the retina
  ArcMinutes halfWidthAngle;  // the same as a visual angle
  ArcMinutes pitch;           // between neighbouring samples of PSF and images
  CyclesPerDegree step;       // between neighbouring samples of the MTF
};

struct Scales {
  Scale library, optical;
  CyclesPerDegree frequencyRange;  // at which the sections of the MTF end, on the library scale
  CyclesPerDegree opticalCutOff;   // pupil / wavelength; the diffraction limit of the stated pupil is 0 there
  double ratio;                    // frequencies on the library scale over those on the optical one, 2.0023
};

// The scales of results for an eye with this pupil.
Scales ScalesOf(Millimetres pupil);

// The angle that the 256 samples of PSF and images span.
ArcMinutes FieldOf(const Scale& scale);

// The MTF in the direction of a line spread function at a frequency on the library scale; 0 from the cut-off on.
double MtfAt(const LineSpread& lineSpread, const Scale& library, CyclesPerDegree frequency);

// The decimal acuity of a ring on the optical scale, from that on the library scale.
double OpticalAcuity(double effectiveAcuity, const Scales& scales);

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_SCALES_H
