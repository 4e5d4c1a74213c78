// The two scales of a result. The library's formulas make frequencies, retinal lengths and ring sizes correspond to
// twice the pupil value ("library scale"); optics gives those of the pupil as stated ("optical scale"). Every number on
// one scale is that on the other times or over the same ratio; docs/conventions.md derives it.
#ifndef ORVANEL_MODELS_SCALES_H
#define ORVANEL_MODELS_SCALES_H

#include "base/layers.h"
#include "base/units.h"
#include "orvanel/line_spread.h"

namespace orvanel::models {

struct Scale {
  Millimetres halfWidth;      // half the side of a PSF or image on the retina
  ArcMinutes halfWidthAngle;  // the same as a visual angle
  ArcMinutes pitch;           // between neighbouring samples of PSF and images
  CyclesPerDegree step;       // between neighbouring samples of the MTF
};

struct Scales {
  Scale library, optical;
  CyclesPerDegree frequencyRange;  // where the sections of the MTF end, on the library scale
  CyclesPerDegree opticalCutOff;   // pupil / wavelength, where the diffraction limit of the stated pupil reaches 0
  double ratio;                    // frequencies on the library scale over those on the optical one, 2.0023
};

// Of the results for an eye with this pupil.
Scales ScalesOf(Millimetres pupil);

// The angle that the 256 samples of PSF and images span.
ArcMinutes FieldOf(const Scale& scale);

// The transfer function in the direction of a line spread function at a frequency on the library scale; 0 from the
// cut-off on.
double MtfAt(const LineSpread& lineSpread, const Scale& library, CyclesPerDegree frequency);

// The decimal acuity of a ring on the optical scale, from that on the library scale, which the library gives.
double OpticalAcuity(double effectiveAcuity, const Scales& scales);

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_SCALES_H
