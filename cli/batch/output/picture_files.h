// Writes pictures of each eye of a batch to a folder.
#ifndef ORVANEL_CLI_BATCH_OUTPUT_PICTURE_FILES_H
#define ORVANEL_CLI_BATCH_OUTPUT_PICTURE_FILES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "cli/batch/output/numbered_files.h"
#include "evaluation/evaluator.h"

namespace orvanel::cli {

enum class PictureKind { kPsf, kMtf, kStar };

// Parses "psf,star"; the result has each kind once. Throws Error.
std::vector<PictureKind> PictureKindsNamed(std::string_view list);

// The files of a row's pictures: "0000001_psf.png".
class PictureFolder {
 public:
  // Creates the folder if it does not exist. Throws Error if that fails.
  PictureFolder(const std::string& folder, std::vector<PictureKind> kinds);

  const std::vector<PictureKind>& kinds() const { return kinds_; }
  NumberedFiles FilesOf(PictureKind kind) const;

 private:
  std::filesystem::path folder_;
  std::vector<PictureKind> kinds_;
};

// What these pictures need of a model.
Needs NeedsOf(const std::vector<PictureKind>& kinds);

// Draws pictures; one object for each thread.
class PictureWriter {
 public:
  //   evaluator  outlives the painter
  //   star       the Siemens star, 256 x 256
  PictureWriter(PictureFolder folder, Evaluator& evaluator, const Plane& star);

  // Writes the pictures of the eye evaluated last, each atomically. Throws Error.
  //   row  from 0
  void Paint(std::size_t row);

 private:
  const Plane& PlaneOf(PictureKind kind);

  PictureFolder folder_;
  Evaluator& evaluator_;
  std::optional<PrecomputedObject> star_;
  Plane seen_;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_OUTPUT_PICTURE_FILES_H
