// The steps from point spread function to modulation transfer function and its graph.
#ifndef ORVANEL_OPTICS_MTF_H
#define ORVANEL_OPTICS_MTF_H

namespace orvanel {

// The centre row to the right and the centre column downwards of an n x n MTF, `count` samples each from zero
// frequency on.
void CutSections(const double* mtf, int n, int count, double* rowSection, double* columnSection);

// MTF of a perfect circular pupil at a share of the cut-off from 0 to 1.
double DiffractionLimitAt(double share);

// The same at `count` frequencies i / (pupilSamples - 1) of the cut-off. The frequencies are
// rounded on a way through the PSF's half width.
// Source: Goodman, Introduction to Fourier Optics, 6.3.
void DiffractionLimit(double psfHalfWidth, int pupilSamples, int count, double* limit);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_MTF_H
