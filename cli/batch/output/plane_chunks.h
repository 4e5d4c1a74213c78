// Writes planes of many eyes to HDF5 files, one for each chunk of rows.
#ifndef ORVANEL_CLI_BATCH_OUTPUT_PLANE_CHUNKS_H
#define ORVANEL_CLI_BATCH_OUTPUT_PLANE_CHUNKS_H

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "cli/batch/output/numbered_files.h"
#include "files/planes/hdf5_stack.h"
#include "models/model.h"
#include "models/needs.h"
#include "models/results.h"

namespace orvanel::cli {

enum class PlaneKind { kWavefront, kPsf, kMtf };

// What the planes of a row need to be read; not numbers if the row is invalid.
struct RowScale {
  static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  double pupilMm = kNone, psfSampleArcmin = kNone, mtfSampleCpd = kNone;
};
RowScale ScaleOf(const Results& results);

// Parses "psf,mtf"; the result has each kind once. Throws Error.
std::vector<PlaneKind> PlaneKindsNamed(std::string_view list);

// What these planes need of a model.
Needs NeedsOf(const std::vector<PlaneKind>& kinds);

// The planes of results, compressed.
std::vector<std::string> CompressedPlanes(const std::vector<PlaneKind>& kinds, const Results& results);

// "planes.h5" becomes "planes-000001.h5" and so on. A file is written under a temporary name and renamed when it is
// complete.
class PlaneChunks {
 public:
  // Throws Error if the program is built without HDF5, or if the folder does not exist.
  PlaneChunks(const std::string& file, std::vector<PlaneKind> kinds, std::size_t chunkRows, const ModelRequest& model);
  ~PlaneChunks();

  const NumberedFiles& files() const { return files_; }

  // Adds the next row, from 0; without planes if the row is invalid. Rows of a chunk come consecutively, in order.
  void Add(std::size_t row, const std::vector<std::string>& compressed, const RowScale& scale);

  // Completes the file of the last row.
  void Finish();

 private:
  NumberedFiles files_;
  std::vector<PlaneKind> kinds_;
  std::size_t chunkRows_, number_ = 0;
  std::unique_ptr<Hdf5Stack> stack_;
  ModelRequest model_;
  std::vector<double> rows_;
  std::vector<RowScale> scales_;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_OUTPUT_PLANE_CHUNKS_H
