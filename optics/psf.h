// Declares the stages from a wavefront to its point spread function.
#ifndef ORVANEL_OPTICS_PSF_H
#define ORVANEL_OPTICS_PSF_H

#include "optics/view.h"

namespace orvanel {

// The complex pupil function of a wavefront: cos and sin of 2 pi w / wavelength where w <= 999 (inside the pupil), 0
// elsewhere.
void PupilFunction(ConstPlaneView wavefront, double wavelength, ComplexView field);

struct Peak {
  double value;
  int row;
  int column;
};

// The largest sample above 0, the first in row-major order among equals; the centre, with value 0, if there is none.
Peak FindPeak(ConstPlaneView intensity);

// Circular shift of a line of n samples that brings the element at `index` (0 to n - 1) to n/2: afterwards element j
// holds the former (j + index + n/2) mod n.
void RecentreLine(double* line, int index, int n);

// The same along both axes of a plane: the sample at (row, column) comes to (n/2, n/2).
void RecentrePlane(PlaneView plane, int row, int column);

// Peak of the PSF of a perfect pupil: m samples across, on the grid of n samples a side, in the scale of that grid's
// transform. 0 on other grids than 256 and 128.
// contract: the two transforms have different scales.
double StrehlReference(int n, int m);

// Strehl ratio of a PSF with this peak; -1 on a grid without reference.
double StrehlRatio(double peak, int n, int m);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_PSF_H
