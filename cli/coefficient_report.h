// Reports an eye's coefficients as text: modes with their names, root mean squares, refraction.
#ifndef ORVANEL_CLI_COEFFICIENT_REPORT_H
#define ORVANEL_CLI_COEFFICIENT_REPORT_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/eye.h"
#include "eye/prescription.h"

namespace orvanel::cli {

// The lines "Eye", "Measured" and "Changes", which begin every report on an eye.
std::string EyeLines(const Eye& measured, const std::vector<std::string>& changes);

// The lines "Refraction", least squares and paraxial.
std::string RefractionLines(const Eye& eye, CylinderSign sign);

// The whole report on an eye in its own convention. Throws Error if its index scheme has no number for a mode that is
// not 0.
std::string CoefficientReport(const Eye& eye, CylinderSign sign);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COEFFICIENT_REPORT_H
