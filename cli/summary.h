// The numbers of a run: as JSON for programs and as text for people.
#ifndef ORVANEL_CLI_SUMMARY_H
#define ORVANEL_CLI_SUMMARY_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/planes/plane_set.h"

namespace orvanel::cli {

// Contents of summary.json.
//   files  the names of all files of the run; where there are none, nothing is said of files
std::string SummaryJson(const SimulatedEye& simulated, const std::vector<std::string>& files);

// A dozen lines; the last says where the files are.
std::string SummaryText(const SimulatedEye& simulated, const std::string& folder, std::size_t fileCount);

// The same about the eye and the results, without the rings, for files that hold planes.
std::vector<Fact> FactsOf(const SimulatedEye& simulated);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_SUMMARY_H
