// Runs a batch: from a table of eyes, or from eye files, to a table of results.
#ifndef ORVANEL_CLI_BATCH_RUN_H
#define ORVANEL_CLI_BATCH_RUN_H

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/layers.h"
#include "cli/batch/output/picture_files.h"
#include "cli/batch/output/plane_chunks.h"
#include "cli/batch/run_record.h"
#include "evaluation/correction/best_correction.h"
#include "eye/adjustments.h"
#include "eye/conventions/partial_convention.h"
#include "files/tables/eye_table.h"
#include "metrics/metrics.h"
#include "metrics/quality/quality.h"
#include "orvanel/sampling.h"

namespace orvanel::cli {

struct BatchRequest {
  std::string table, results;
  std::vector<std::string> eyeFiles;  // if there are any, they replace the table
  TableKind kind = TableKind::kCsv;
  PartialConvention stated;
  TableOptions tableOptions;
  Adjustments adjustments;
  ModelRequest model;
  std::string light = "555";  // the name of the model's light, for rows of a table that states lights and not theirs
  MetricChoice choice;
  QualityRequest quality;               // metrics of image quality; none unless it names some
  std::optional<QualityMetric> lensBy;  // the metric that a lens is searched by, under the conditions of `quality`
  CorrectionRequest lens;
  std::vector<double> lenses;  // through focus, rising; the metrics of `quality` and the MTF are computed behind each
  std::size_t jobs = 1;
  bool strict = false, resume = false, force = false;
  double maxUndersampled = kLargestUndersampledShare;  // rows above it are counted, and stop a strict run
  std::string planes, pictures;                        // a file and a folder; empty if none are wanted
  std::vector<PlaneKind> planeKinds;
  std::vector<PictureKind> pictureKinds;
  RunRecord record;  // settings, shard and chunk
};

struct BatchResult {
  std::size_t rows = 0;              // of the results
  std::size_t earlier = 0;           // rows of earlier runs
  std::size_t errors = 0;            // rows with an error
  std::size_t again = 0;             // rows of earlier runs whose planes and pictures are written again
  std::size_t undersampled = 0;      // rows of this run above maxUndersampled
  std::size_t noted = 0;             // rows of this run with a note
  DroppedOfMany dropped;             // by this run
  std::vector<std::string> columns;  // of numbers
  std::vector<std::pair<std::string, double>> constants{};  // columns left out: all rows have the same value
};

// Whether the results have the column of notes, with the reasons of missing and doubtful values in valid rows.
bool HasNotes(const BatchRequest& request);

// Computes one row of results for each row of the table in the shard, in the same order. A row has the user's columns,
// the chosen columns, the note if there is such a column, and the error, empty if there is none. An eye file becomes a
// row with its name in the column "file". The user's columns "light" and "model" are conditions of their row; metrics
// that all rows share are then computed for each. Throws Error; the results then contain whole rows only.
//   tell  is called before the first row with the summary of the table's columns; empty for eye files
BatchResult RunBatch(const BatchRequest& request, const std::function<void(const std::string& columns)>& tell = {});

constexpr const char* kNoteColumn = "quality_note";
constexpr const char* kErrorColumn = "error";

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_RUN_H
