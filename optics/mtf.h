// Declares the sections of a modulation transfer function, and the one of a perfect pupil.
#ifndef ORVANEL_OPTICS_MTF_H
#define ORVANEL_OPTICS_MTF_H

#include "optics/view.h"

namespace orvanel {

// The centre row to the right and the centre column downwards of an MTF, `count` samples each from zero frequency on.
void CutSections(ConstPlaneView mtf, int count, double* rowSection, double* columnSection);

// MTF of a perfect circular pupil at a share of the cut-off from 0 to 1.
double DiffractionLimitAt(double share);

// The same at `count` frequencies i / (pupilSamples - 1) of the cut-off.
// contract: the frequencies are computed by way of the PSF's half width, which rounds them.
// Source: Goodman, Introduction to Fourier Optics, 6.3.
void DiffractionLimit(double psfHalfWidth, int pupilSamples, int count, double* limit);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_MTF_H
