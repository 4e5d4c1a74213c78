// The optical transfer function in cycles per degree, in light of any spectrum.
#ifndef ORVANEL_MODELS_PHYSICAL_TRANSFER_FUNCTION_H
#define ORVANEL_MODELS_PHYSICAL_TRANSFER_FUNCTION_H

#include <cmath>
#include <complex>
#include <span>
#include <vector>

#include "models/physical/eye.h"
#include "models/physical/light.h"
#include "models/physical/outcome.h"
#include "models/physical/point_spread.h"
#include "models/physical/workspace.h"

namespace orvanel::physical {

// OTF(f) = int PSF(x) exp(-2 pi i f . x) dx over the whole plane, of a PSF in a view, about the axis; OTF(0) = 1. Its
// modulus is the MTF. The phase is that of the complex numbers.

// Column c is the frequency (c - side/2) step along x, row r that of (side/2 - r) step along y; cycles per degree.
struct FrequencyGrid {
  double step = 0.0;
  int side = 0;
  View view = View::kPatient;
};

struct TransferFunction {
  FrequencyGrid grid;
  std::vector<double> re, im;  // row-major, row 0 at the top
};

// Error: 1e-4. Refuses steps so fine that all frequencies of the OTF take more than kMaxFrequencies a side.
constexpr int kMaxFrequencies = 8192;
Outcome<TransferFunction> TransferFunctionOf(const Eye& eye, const Light& light, const FrequencyGrid& grid,
                                             Workspace& workspace);

// The MTF where the OTF is `otf`. std::abs has last digits that differ between platforms.
inline double Modulus(const std::complex<double>& otf) { return std::sqrt(std::norm(otf)); }

struct Frequency {
  double x = 0.0;
  double y = 0.0;
};

// The reference: each frequency by itself, as an overlap integral. Error: 1e-7.
Outcome<std::vector<std::complex<double>>> TransferFunctionAt(const Eye& eye, const Light& light,
                                                              std::span<const Frequency> frequencies, View view,
                                                              const Workspace& workspace);

// Means over all directions of one frequency.
struct AngularMeans {
  double mtf = 0.0;  // of the modulus
  double otf = 0.0;  // of the complex OTF, which is real
};

// By overlap integrals, at twice as many directions until both means stay within 2e-6. Error: 1e-5.
Outcome<std::vector<AngularMeans>> MeansOverAngle(const Eye& eye, const Light& light,
                                                  std::span<const double> frequencies, const Workspace& workspace);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_TRANSFER_FUNCTION_H
