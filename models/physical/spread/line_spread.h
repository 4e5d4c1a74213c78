// The image of a line, and the OTF along one direction.
#ifndef ORVANEL_MODELS_PHYSICAL_SPREAD_LINE_SPREAD_H
#define ORVANEL_MODELS_PHYSICAL_SPREAD_LINE_SPREAD_H

#include <complex>
#include <span>
#include <vector>

#include "models/physical/transfer_function.h"

namespace orvanel::physical {

// Directions are angles in radians of the view, counter-clockwise from +x.

// The OTF at frequencies along a direction, cycles per degree. Error: 1e-7.
Outcome<std::vector<std::complex<double>>> SectionOfTransferFunction(const Eye& eye, const Light& light,
                                                                     double direction,
                                                                     std::span<const double> frequencies, View view,
                                                                     const Workspace& workspace);

// The line spread function across a line: the share of the light per arcmin, at these places in arcmin from the line
// without aberration. It is the integral of the PSF along the line, and the transform of a section of the OTF.
//   direction  across the line
// Error: 1e-6 of its largest value without aberration. Refuses places that need more than kMaxNodes frequencies.
Outcome<std::vector<double>> LineSpreadOf(const Eye& eye, const Light& light, double direction,
                                          std::span<const double> places, View view, const Workspace& workspace);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_SPREAD_LINE_SPREAD_H
