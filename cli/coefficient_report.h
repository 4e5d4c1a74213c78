// An eye's coefficients for people: the terms with their names, root mean squares, refraction.
#ifndef ORVANEL_CLI_COEFFICIENT_REPORT_H
#define ORVANEL_CLI_COEFFICIENT_REPORT_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/eye.h"
#include "eye/prescription.h"

namespace orvanel::cli {

// "Eye", "Measured" and "Changes", with which every report on an eye begins.
std::string EyeLines(const Eye& measured, const std::vector<std::string>& changes);

// "Refraction", by least squares and paraxial.
std::string RefractionLines(const Eye& eye, CylinderSign sign);

// The whole report on an eye in its own convention. Throws Error where its order has no number for a term that is not
// 0.
std::string CoefficientReport(const Eye& eye, CylinderSign sign);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COEFFICIENT_REPORT_H
