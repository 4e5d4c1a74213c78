// Calls of the engine, in a folder of their own where they leave files.
#include "cli/best_focus.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <vector>

#include "cli/error.h"
#include "cli/files.h"
#include "cli/trace_capture.h"
#include "orvanel/optics_engine.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

using Bare = std::array<double, ORVANEL_COEFFICIENTS>;

// While it lives, an empty temporary folder is the current one: the fit creates or empties a file there, which might be
// the user's. Where the system lets it, the folder is removed at once: then nothing can be made in it, and nothing
// stays of a search that is broken off.
class FolderForTraces {
 public:
  FolderForTraces() : before_(fs::current_path()), folder_(UniqueName(fs::temp_directory_path() / "focus")) {
    fs::create_directory(folder_);
    fs::current_path(folder_);
    std::error_code inUse;
    fs::remove(folder_, inUse);
  }
  FolderForTraces(const FolderForTraces&) = delete;
  FolderForTraces& operator=(const FolderForTraces&) = delete;
  ~FolderForTraces() {
    std::error_code ignored;
    fs::current_path(before_, ignored);
    fs::remove_all(folder_, ignored);
  }

 private:
  fs::path before_, folder_;
};

// With astigmatism or without, as the walks see the eye.
FocusQuality Judge(OpticsEngine& engine, const Bare& coefficients, double pupil, bool astigmatism) {
  FocusQuality quality{};
  std::vector<double> psf(ORVANEL_PLANE_SAMPLES);
  double pitch = 0.0;
  engine.synthesizeWavefront(coefficients.data(), pupil, astigmatism ? 1 : 0, 0, 1);
  quality.deviation = ToMicrometres(Millimetres(DeviationFromCircle(engine)));
  engine.ComputePsf(kWavelength, psf.data(), &pitch, &quality.strehl, ORVANEL_GRID_SIZE);
  return quality;
}

}  // namespace

BestFocus FindBestFocus(const LibraryCoefficients& coefficients, Millimetres pupil, const FocusRequest& request) {
  Bare bare;
  std::transform(coefficients.begin(), coefficients.end(), bare.begin(), [](Millimetres c) { return c.value(); });
  const double diameter = pupil.value();
  const FolderForTraces folder;
  TraceCapture trace;  // the fit may print messages of the matrix library
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  BestFocus best;
  const bool astigmatism = !request.withoutAstigmatism;
  best.before = Judge(engine, bare, diameter, astigmatism);
  const double step = request.step.value();
  switch (request.method) {
    case FocusMethod::kOptimise: {
      FocusSearch search;
      search.astigmatism = request.astigmatism;
      const FocusResult result = engine.OptimiseFocus(bare.data(), diameter, search);
      std::copy(result.coefficients.begin(), result.coefficients.end(), bare.begin());
      best.trials = result.trials;
      best.converged = result.converged;
      break;
    }
    case FocusMethod::kWalkToPsf:
      engine.searchBestFocusByPsf(bare.data(), diameter, step, astigmatism ? 1 : 0);
      break;
    case FocusMethod::kWalkToFit:
      engine.searchBestFocusByFit(bare.data(), diameter, step, astigmatism ? 1 : 0);
      break;
  }
  best.after = Judge(engine, bare, diameter, astigmatism);
  std::transform(bare.begin(), bare.end(), best.coefficients.begin(), [](double c) { return Millimetres(c); });
  return best;
}

}  // namespace orvanel::cli
