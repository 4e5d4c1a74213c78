// How far apart the library's samples are, from the pupil alone: the same bits as its results, without their cost.
#ifndef ORVANEL_CLI_BATCH_SAMPLING_H
#define ORVANEL_CLI_BATCH_SAMPLING_H

#include "cli/units.h"

namespace orvanel::cli {

// Half the side of the PSF on the retina, and between neighbouring samples of the MTF, on the library scale.
Millimetres PsfHalfWidth(Millimetres pupil);
CyclesPerDegree MtfStep(Millimetres pupil);

// Where the sections of the MTF end, on the library scale.
CyclesPerDegree FrequencyRange(Millimetres pupil);

// The outer diameter in samples of the ring that is drawn for an acuity, and the acuity of that diameter, on the
// library scale.
int RingDiameter(Millimetres pupil, double acuity);
double EffectiveAcuity(Millimetres pupil, int diameter);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_SAMPLING_H
