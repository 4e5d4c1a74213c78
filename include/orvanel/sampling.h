// How far apart the samples of a result stand, from pupil, wavelength and grid alone: the bits of the engine's results,
// without their cost.
//
// The engine samples a pupil of n/2 + 1 samples on planes of n x n. UNITS: millimetres, cycles per degree.
#ifndef ORVANEL_SAMPLING_H
#define ORVANEL_SAMPLING_H

#include "orvanel/constants.h"

namespace orvanel {

// The pupil's diameter in samples, on planes of n samples a side.
constexpr int PupilSamples(int n) { return n / 2 + 1; }

// Half the side of the PSF plane on the retina: what psfHalfWidth of the engine becomes.
double PsfHalfWidth(int pupilSamples, double wavelength, double pupilDiameter, double focalLength = kFocalLength);

// From one MTF sample to the next: what ComputeMtf gives as frequencyStep.
double FrequencyStep(int n, double psfHalfWidth, double focalLength = kFocalLength);

// The frequency n/2 samples from the centre, which (n - 1)/2 of these steps make: what OrvanelGetMTF gives.
double FrequencyRange(int n, double frequencyStep);

}  // namespace orvanel

#endif  // ORVANEL_SAMPLING_H
