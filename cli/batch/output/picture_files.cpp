// Draws grey PNG pictures of 256 x 256 pixels.
#include "cli/batch/output/picture_files.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "base/split.h"
#include "files/new_file.h"
#include "files/path_of.h"
#include "files/pictures/png.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::pair<PictureKind, std::string_view> kKinds[] = {
    {PictureKind::kPsf, "psf"}, {PictureKind::kMtf, "mtf"}, {PictureKind::kStar, "star"}};

}  // namespace

std::vector<PictureKind> PictureKindsNamed(std::string_view list) {
  std::vector<PictureKind> chosen;
  for (const std::string_view word : Split(list)) {
    const auto* const found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [word](const auto& kind) { return kind.second == word; });
    if (found == std::end(kKinds)) throw Error(Quoted(word) + " is not one of psf, mtf, star");
    if (std::find(chosen.begin(), chosen.end(), found->first) == chosen.end()) chosen.push_back(found->first);
  }
  return chosen;
}

PictureFolder::PictureFolder(const std::string& folder, std::vector<PictureKind> kinds)
    : folder_(PathOf(folder)), kinds_(std::move(kinds)) {
  std::error_code failure;
  if (fs::is_directory(folder_, failure)) return;
  fs::create_directory(folder_, failure);
  if (!fs::is_directory(folder_, failure)) {
    throw Error(folder + ": cannot be created as a folder" + (failure ? ": " + failure.message() : ""));
  }
}

NumberedFiles PictureFolder::FilesOf(PictureKind kind) const {
  constexpr std::size_t kDigits = 7;
  std::string ending(1, '_');
  ending.append(kKinds[static_cast<std::size_t>(kind)].second).append(".png");
  return {folder_, "", ending, kDigits};
}

Needs NeedsOf(const std::vector<PictureKind>& kinds) {
  constexpr Need kNeeds[] = {Need::kPsf, Need::kMtf, Need::kImages};
  Needs needs;
  for (const PictureKind kind : kinds) needs = needs | Needs{kNeeds[static_cast<std::size_t>(kind)]};
  return needs;
}

PictureWriter::PictureWriter(PictureFolder folder, Evaluator& evaluator, const Plane& star)
    : folder_(std::move(folder)), evaluator_(evaluator) {
  if (NeedsOf(folder_.kinds()).Has(Need::kImages)) star_ = evaluator.Precompute(star);
}

const Plane& PictureWriter::PlaneOf(PictureKind kind) {
  switch (kind) {
    case PictureKind::kPsf:
      return evaluator_.results().psf;
    case PictureKind::kMtf:
      return evaluator_.results().mtf;
    case PictureKind::kStar:
      break;
  }
  evaluator_.ImageOf(star_.value(), ImageKind::kStretched, seen_);
  return seen_;
}

void PictureWriter::Paint(std::size_t row) {
  for (const PictureKind kind : folder_.kinds()) {
    ReplaceFile(folder_.FilesOf(kind).Path(row + 1), EncodePng(GreyPictureOf(PlaneOf(kind)), Pixels::kNumbers));
  }
}

}  // namespace orvanel::cli
