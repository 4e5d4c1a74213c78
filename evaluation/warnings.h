// Warnings about results: what was computed but is probably not what the user means.
#ifndef ORVANEL_EVALUATION_WARNINGS_H
#define ORVANEL_EVALUATION_WARNINGS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "models/results.h"

namespace orvanel::evaluation {

// One sentence for each doubt: wavefronts too steep for the samples, rings far from what was asked for, rings that fill
// the field. Those about the eye by itself are EyeWarnings.
std::vector<std::string> Warnings(const Results& results);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_WARNINGS_H
