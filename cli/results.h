// The files of a run: their names, known before anything is computed, and their contents.
#ifndef ORVANEL_CLI_RESULTS_H
#define ORVANEL_CLI_RESULTS_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/eyes/eye.h"
#include "cli/eyes/preparation.h"
#include "cli/formats/format.h"
#include "cli/pictures/seen_picture.h"
#include "cli/scales.h"
#include "cli/simulation.h"

namespace orvanel::cli {

// What decides on the files.
struct Request {
  Millimetres pupil;                   // as simulated
  std::vector<RingRequest> rings;      // at least one; each once, those of one acuity together
  std::vector<const Format*> formats;  // beside the PNG pictures; each once
  std::size_t pictureChannels = 0;     // of the user's picture, 0 where there is none
};

struct Results {
  Eye measured;                      // as its file gives it
  Eye eye;                           // as it is simulated
  std::vector<std::string> changes;  // what was done to the first to make the second, a sentence each
  std::optional<Dropped> dropped;    // among the changes
  Simulation simulation;
  std::vector<CyclesPerDegree> mtfAt;  // frequencies of interest, on the library scale
  Scales scales;
  std::vector<std::string> warnings;
  std::optional<SeenPicture> picture;
};

struct ResultFile {
  std::string name;
  std::function<std::string(const Results&)> encode;
};

constexpr const char* kOverviewFile = "overview.png";
constexpr const char* kChartFile = "chart.png";
constexpr const char* kPictureFile = "picture.png";

// All files, the summary among them.
std::vector<ResultFile> ResultFiles(const Request& request);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_RESULTS_H
