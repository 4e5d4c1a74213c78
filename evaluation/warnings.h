// Warns of results that were computed but are probably not what the user wants.
#ifndef ORVANEL_EVALUATION_WARNINGS_H
#define ORVANEL_EVALUATION_WARNINGS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "models/results.h"

namespace orvanel::evaluation {

// One sentence for each problem. Of the classic model: undersampled wavefronts, rings far from the requested acuity,
// rings that fill the field. Of the physical model: a PSF window that loses light, PSF samples that miss details.
// EyeWarnings returns the warnings about the eye itself.
std::vector<std::string> Warnings(const Results& results);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_WARNINGS_H
