// Formats the numbers of a run as JSON, as text and as facts for files of planes.
#ifndef ORVANEL_CLI_SUMMARY_H
#define ORVANEL_CLI_SUMMARY_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/planes/plane_set.h"

namespace orvanel::cli {

// Contents of summary.json.
//   files  the names of all files of the run; if empty, the summary does not mention files
std::string SummaryJson(const SimulatedEye& simulated, const std::vector<std::string>& files);

// Formats about a dozen lines of text. The last line names the folder of the files.
//   hasOverview  the overview is among the files
std::string SummaryText(const SimulatedEye& simulated, const std::string& folder, std::size_t fileCount,
                        bool hasOverview = true);

// Lists the same facts about the eye and the results, without the rings, for files of planes.
std::vector<Fact> FactsOf(const SimulatedEye& simulated);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_SUMMARY_H
