// The files of a run: their names, known before anything is computed, and their contents.
#ifndef ORVANEL_CLI_RESULTS_H
#define ORVANEL_CLI_RESULTS_H

#include <functional>
#include <string>
#include <vector>

#include "cli/eye_file.h"
#include "cli/scales.h"
#include "cli/simulation.h"

namespace orvanel::cli {

struct Results {
  Eye eye;
  Simulation simulation;
  Scales scales;
  std::vector<std::string> warnings;
};

struct ResultFile {
  std::string name;
  std::function<std::string(const Results&)> encode;
};

constexpr const char* kOverviewFile = "overview.png";

// "ring_acuity-0.5_gap-right", the beginning of the names of a ring's files.
std::string RingStem(const RingRequest& request);

// All files, the summary among them.
//   npy  whether the planes are wanted as NPY files too
std::vector<ResultFile> ResultFiles(const std::vector<RingRequest>& rings, bool npy);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_RESULTS_H
