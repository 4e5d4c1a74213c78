// Computes the sampling of results from the pupil, in types with units.
#ifndef ORVANEL_MODELS_SAMPLING_H
#define ORVANEL_MODELS_SAMPLING_H

#include "base/layers.h"
#include "base/units.h"

namespace orvanel::models {

// The wavelength of the library.
Millimetres Wavelength();

// The half extent of the PSF window on the retina, on the library scale.
Millimetres PsfHalfWidth(Millimetres pupil);

// The frequency at which the sections of the MTF end, on the library scale.
CyclesPerDegree FrequencyRange(Millimetres pupil);

// The outer diameter in samples of the ring that is drawn for an acuity, on the library scale. Throws RingTooSmall.
int RingDiameter(Millimetres pupil, double acuity);

// The acuity of a ring of this diameter, on the library scale.
double EffectiveAcuity(Millimetres pupil, int diameter);

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_SAMPLING_H
