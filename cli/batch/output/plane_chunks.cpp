// Writes the file of a chunk when the next chunk begins.
#include "cli/batch/output/plane_chunks.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "base/split.h"
#include "eye/view.h"
#include "files/new_file.h"
#include "files/path_of.h"
#include "files/planes/format.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

constexpr int kSide = ORVANEL_GRID_SIZE;

struct KindWords {
  PlaneKind kind;
  Need need;
  StackedPlane plane;
};

std::string Text(View view) { return std::string(Description(view)); }

const std::vector<KindWords>& Kinds() {
  static const std::vector<KindWords> kPlaneKinds = {
      {PlaneKind::kWavefront,
       Need::kWavefront,
       {"wavefront", "wavefront aberration without piston and tilt, not a number outside the pupil", "mm",
        Text(View::kPupil), kSide, kSide}},
      {PlaneKind::kPsf,
       Need::kPsf,
       {"psf", "point spread function, 1 at its peak", "1", Text(View::kRetina), kSide, kSide}},
      {PlaneKind::kMtf,
       Need::kMtf,
       {"mtf", "modulation transfer function, 1 at zero frequency", "1", Text(View::kRetina), kSide, kSide}}};
  return kPlaneKinds;
}

// As the model computes it. The physical model's PSF has the size and view of its settings.
StackedPlane PlaneOf(PlaneKind kind, const ModelRequest& model) {
  StackedPlane plane = Kinds()[static_cast<std::size_t>(kind)].plane;
  if (model.kind == ModelKind::kClassic || kind == PlaneKind::kWavefront) return plane;
  plane.view = Text(ViewOf(model));
  if (kind == PlaneKind::kPsf) {
    plane.description = "point spread function, 1 at the peak of the eye without aberration";
    plane.rows = plane.columns = model.physical.samples;
  }
  return plane;
}

}  // namespace

RowScale ScaleOf(const Results& results) {
  return {results.pupil.value(), results.retinaAxis.step.value(), results.frequencyAxis.step.value()};
}

std::vector<PlaneKind> PlaneKindsNamed(std::string_view list) {
  std::vector<PlaneKind> chosen;
  for (const std::string_view word : Split(list)) {
    const auto found = std::find_if(Kinds().begin(), Kinds().end(),
                                    [word](const KindWords& words) { return words.plane.name == word; });
    if (found == Kinds().end()) throw Error(Quoted(word) + " is not one of wavefront, psf, mtf");
    if (std::find(chosen.begin(), chosen.end(), found->kind) == chosen.end()) chosen.push_back(found->kind);
  }
  return chosen;
}

Needs NeedsOf(const std::vector<PlaneKind>& kinds) {
  Needs needs;
  for (const PlaneKind kind : kinds) needs = needs | Needs{Kinds()[static_cast<std::size_t>(kind)].need};
  return needs;
}

std::vector<std::string> CompressedPlanes(const std::vector<PlaneKind>& kinds, const Results& results) {
  std::vector<std::string> planes;
  for (const PlaneKind kind : kinds) {
    switch (kind) {
      case PlaneKind::kWavefront:
        planes.push_back(CompressedPlane(results.wavefront.map));
        break;
      case PlaneKind::kPsf:
        planes.push_back(CompressedPlane(results.psf));
        break;
      case PlaneKind::kMtf:
        planes.push_back(CompressedPlane(results.mtf));
        break;
    }
  }
  return planes;
}

PlaneChunks::PlaneChunks(const std::string& file, std::vector<PlaneKind> kinds, std::size_t chunkRows,
                         const ModelRequest& model)
    : kinds_(std::move(kinds)), chunkRows_(chunkRows), model_(model) {
  constexpr std::size_t kDigits = 6;
  FormatNamed("hdf5");  // throws with the missing library, if any
  const fs::path path = PathOf(file);
  files_ = {path.parent_path(), path.stem().string() + "-", path.extension().string(), kDigits};
  std::error_code ignored;
  if (!files_.folder.empty() && !fs::is_directory(files_.folder, ignored)) {
    throw Error(files_.folder.string() + ": is not a folder; create it first");
  }
}

PlaneChunks::~PlaneChunks() = default;

void PlaneChunks::Add(std::size_t row, const std::vector<std::string>& compressed, const RowScale& scale) {
  if (!stack_) {
    number_ = row / chunkRows_ + 1;
    std::vector<StackedPlane> planes;
    for (const PlaneKind kind : kinds_) planes.push_back(PlaneOf(kind, model_));
    stack_ = std::make_unique<Hdf5Stack>(planes);
  }
  stack_->Add(compressed);
  rows_.push_back(static_cast<double>(row + 1));
  scales_.push_back(scale);
}

void PlaneChunks::Finish() {
  if (!stack_) return;
  stack_->AddNumbers("row", "number of the row in the table of eyes, from 1", rows_);
  const auto add = [this](const char* name, const char* text, double RowScale::*member) {
    std::vector<double> numbers;
    for (const RowScale& scale : scales_) numbers.push_back(scale.*member);
    stack_->AddNumbers(name, text, numbers);
  };
  add("pupil_diameter_mm", "as simulated; NaN where the row is invalid", &RowScale::pupilMm);
  if (model_.kind == ModelKind::kPhysical) {
    add("psf_sample_arcmin", "of the PSF; NaN where the row is invalid", &RowScale::psfSampleArcmin);
    add("mtf_sample_cpd", "of the MTF; NaN where the row is invalid", &RowScale::mtfSampleCpd);
  }
  const std::string bytes = stack_->Finish();
  stack_.reset();
  rows_.clear();
  scales_.clear();
  ReplaceFile(files_.Path(number_), bytes);
}

}  // namespace orvanel::cli
