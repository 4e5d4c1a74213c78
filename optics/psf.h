// The steps from wavefront to point spread function.
#ifndef ORVANEL_OPTICS_PSF_H
#define ORVANEL_OPTICS_PSF_H

namespace orvanel {

// The complex pupil function of an n x n wavefront: cos and sin of 2 pi w / wavelength where w <= 999 (inside the
// pupil), 0 elsewhere.
void PupilFunction(const double* wavefront, double wavelength, int n, double* re, double* im);

struct Peak {
  double value;
  int row;
  int column;
};

// The largest sample above 0, the first in row-major order among equals; the centre, with value 0, if there is none.
Peak FindPeak(const double* intensity, int n);

// Circular shift of a line of n samples that brings the element at `index` (0 to n - 1) to n/2: afterwards element j
// holds the former (j + index + n/2) mod n.
void RecentreLine(double* line, int index, int n);

// The same along both axes of an n x n plane: the sample at (row, column) comes to (n/2, n/2).
void RecentrePlane(double* plane, int row, int column, int n);

// Peak of the PSF of a perfect pupil, or what stands for it, on the grid with n samples a side and a pupil of m; 0 if
// there is none.
double StrehlReference(int n, int m);

// Strehl ratio of a PSF with this peak; -1 on a grid without reference.
double StrehlRatio(double peak, int n, int m);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_PSF_H
