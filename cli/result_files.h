// The files of a run: their names, known before anything is computed, and their contents.
#ifndef ORVANEL_CLI_RESULT_FILES_H
#define ORVANEL_CLI_RESULT_FILES_H

#include <functional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/planes/format.h"

namespace orvanel::cli {

// What decides on the files.
struct Request {
  Millimetres pupil;                   // as simulated
  std::vector<RingRequest> rings;      // at least one; each once, those of one acuity together
  std::vector<const Format*> formats;  // beside the PNG pictures; each once
  std::size_t pictureChannels = 0;     // of the user's picture, 0 where there is none
};

struct ResultFile {
  std::string name;
  std::function<std::string(const SimulatedEye&)> encode;
};

constexpr const char* kOverviewFile = "overview.png";
constexpr const char* kChartFile = "chart.png";
constexpr const char* kPictureFile = "picture.png";

// All files, the summary among them.
std::vector<ResultFile> ResultFiles(const Request& request);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_RESULT_FILES_H
