// Declares the files of a run: their names, known before the computation, and functions that encode them.
#ifndef ORVANEL_CLI_RESULT_FILES_H
#define ORVANEL_CLI_RESULT_FILES_H

#include <functional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/planes/format.h"

namespace orvanel::cli {

// Determines which files a run has.
struct Request {
  Millimetres pupil;                   // as simulated
  std::vector<RingRequest> rings;      // at least one; each once, those of one acuity together
  std::vector<const Format*> formats;  // in addition to the PNG pictures; each once
  std::size_t pictureChannels = 0;     // of the user's picture, 0 without one
  ModelKind model = ModelKind::kClassic;
  View view = View::kRetina;  // of PSF and MTF
  bool letters = false;
  bool strip = false;                  // one letter through focus
  std::vector<std::string> only = {};  // names of the files to write beside the summary; empty: all
  bool vectors = false;                // figures as SVG too
  const char* sized = nullptr;         // the name of the view of true size, null without one
  std::size_t sizedChannels = 0;       // of its image
};

struct ResultFile {
  std::string name;
  std::function<std::string(const SimulatedEye&)> encode;
};

constexpr const char* kOverviewFile = "overview.png";
constexpr const char* kChartFile = "chart.png";
constexpr const char* kLettersFile = "letters.png";
constexpr const char* kStripFile = "strip.png";
constexpr const char* kPictureFile = "picture.png";

// Returns all files, including the summary. Throws Error if the request has a name that is not among them.
std::vector<ResultFile> ResultFiles(const Request& request);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_RESULT_FILES_H
