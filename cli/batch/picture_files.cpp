// Draws grey PNG pictures of 256 x 256 pixels.
#include "cli/batch/picture_files.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
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
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    const std::string_view word = list.substr(start, comma - start);
    const auto* const found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [word](const auto& kind) { return kind.second == word; });
    if (found == std::end(kKinds)) throw Error(Quoted(word) + " is not one of psf, mtf, star");
    if (std::find(chosen.begin(), chosen.end(), found->first) == chosen.end()) chosen.push_back(found->first);
    start = comma + 1;
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

Painter::Painter(PictureFolder folder, const Plane& star) : folder_(std::move(folder)), star_(star) {}

Plane Painter::Draw(PictureKind kind, EyeMeter& meter) {
  OpticsEngine& engine = meter.engine();
  switch (kind) {
    case PictureKind::kPsf:
      return {engine.psfPlane.begin(), engine.psfPlane.end()};
    case PictureKind::kMtf:
      return meter.mtf();
    case PictureKind::kStar:
      break;
  }
  if (!prepared_) prepared_.emplace(engine.Prepare(star_.data()));
  Plane seen(ORVANEL_PLANE_SAMPLES);
  engine.PreparedRetinalImage(seen.data(), *prepared_);
  return seen;
}

void Painter::Paint(std::size_t row, EyeMeter& meter) {
  for (const PictureKind kind : folder_.kinds()) {
    ReplaceFile(folder_.FilesOf(kind).Path(row + 1), EncodePng(GreyPictureOf(Draw(kind, meter)), Pixels::kNumbers));
  }
}

}  // namespace orvanel::cli
