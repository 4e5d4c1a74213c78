// The two scales of a result. The library's formulas make frequencies, retinal lengths and ring sizes correspond to
// twice the pupil value ("library scale"); optics gives those of the pupil as stated ("optical scale").
#ifndef ORVANEL_CLI_SCALES_H
#define ORVANEL_CLI_SCALES_H

#include "cli/simulation.h"
#include "cli/units.h"

namespace orvanel::cli {

struct Scale {
  Millimetres halfWidth;      // half the side of a PSF or image on the retina
  ArcMinutes halfWidthAngle;  // the same as a visual angle
  ArcMinutes pitch;           // between neighbouring samples of PSF and images
  CyclesPerDegree step;       // between neighbouring samples of the MTF
};

struct Scales {
  Scale library, optical;
  CyclesPerDegree opticalCutOff;  // pupil / wavelength, where the diffraction limit of the stated pupil reaches 0
  double ratio;                   // frequencies on the library scale over those on the optical one, 2.0023
};

Scales ScalesOf(const Simulation& simulation);

// The angle that the 256 samples of PSF and images span.
ArcMinutes FieldOf(const Scale& scale);

// The transfer function along a section at a frequency on the library scale, between samples in a straight line; 0 from
// the cut-off on.
double MtfAt(const Section& section, const Scale& library, CyclesPerDegree frequency);

// Decimal acuity of a ring of this diameter, which is 5 minutes of arc at acuity 1.
double Acuity(int diameter, const Scale& scale);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_SCALES_H
