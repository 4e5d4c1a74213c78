// The calling thread reads and writes; worker threads compute.
#include "cli/batch/run.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <list>
#include <memory>
#include <set>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/batch/eye_source.h"
#include "cli/batch/output/results_file.h"
#include "cli/batch/place_lock.h"
#include "cli/batch/rate.h"
#include "cli/batch/row_conditions.h"
#include "cli/batch/whole_files.h"
#include "cli/batch/whole_rows.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "evaluation/columns/focus_columns.h"
#include "evaluation/columns/lens_columns.h"
#include "evaluation/columns/quality_columns.h"
#include "evaluation/in_order.h"
#include "files/input_file.h"
#include "files/interruption.h"
#include "files/new_file.h"
#include "files/path_of.h"
#include "files/platform.h"
#include "files/tables/csv.h"
#include "targets/sector_star.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// An eye in flight: first the eye, or its error, then its results.
struct BatchRow {
  std::size_t row = 0;  // of the table or the list of files, from 0
  TableEye eye;
  RowLight light;
  std::string error;
  std::string undersampled;  // a warning about undersampling, which is not an error
  bool noted = false;        // the line has a note
  std::string line;          // of the results
  bool again = false;        // the results have this row already; only planes or pictures are written again
  std::optional<Dropped> dropped;
  std::vector<std::string> planes;
  RowScale scale;
};

using Rows = std::vector<BatchRow>;

std::string ErrorText(const TableEye& eye, const Error& error) {
  return (eye.line > 0 ? "line " + std::to_string(eye.line) + ": " : "") + TextOf(error);
}

std::string ErrorText(const ErrorAt& error) {
  return "line " + std::to_string(error.place.line) + ", column " + std::to_string(error.place.column) + ": " +
         ReasonOf(error);
}

// A lens is searched by one metric.
QualityRequest LensRequest(const BatchRequest& request) {
  QualityRequest quality = request.quality;
  quality.metrics = {*request.lensBy};
  return quality;
}

// Curves through focus are of all metrics, and of the MTF at the frequencies that have columns.
QualityRequest FocusRequestOf(const BatchRequest& request) {
  QualityRequest quality = request.quality;
  for (const CyclesPerDegree frequency : request.choice.mtfAt) quality.mtfAtCpd.push_back(frequency.value());
  return quality;
}

// The columns of numbers that a run computes.
std::vector<std::string> ResultColumns(const BatchRequest& request) {
  std::vector<std::string> columns = Columns(request.choice);
  const auto add = [&columns](const std::vector<std::string>& more) {
    columns.insert(columns.end(), more.begin(), more.end());
  };
  add(QualityColumnNames(request.quality));
  if (request.lensBy) add(LensColumnNames(LensRequest(request)));
  if (!request.lenses.empty()) add(FocusColumnNames(FocusRequestOf(request)));
  if (request.adjustments.highestOrder) columns.emplace_back("dropped_rms_um");
  return columns;
}

// What computes eyes in one light.
struct Evaluators {
  Evaluators(const BatchRequest& request, const ModelRequest& model, const std::optional<PictureFolder>& pictures,
             const Plane& star)
      : results(model),
        quality(request.quality.metrics.empty() ? nullptr
                                                : std::make_unique<QualityEvaluator>(model.physical, request.quality)),
        lens(request.lensBy ? std::make_unique<QualityEvaluator>(model.physical, LensRequest(request)) : nullptr),
        focus(request.lenses.empty() ? nullptr
                                     : std::make_unique<QualityEvaluator>(model.physical, FocusRequestOf(request))) {
    if (pictures) painter.emplace(*pictures, results, star);
  }

  Evaluator results;
  std::unique_ptr<QualityEvaluator> quality, lens, focus;
  std::optional<PictureWriter> painter;
};

// Computes eyes; one object for each thread.
class Worker {
 public:
  Worker(const BatchRequest& request, const std::optional<PictureFolder>& pictures, const Plane& star)
      : request_(request),
        pictures_(pictures),
        star_(star),
        columns_(ResultColumns(request).size()),
        needs_((request.planes.empty() ? Needs() : NeedsOf(request.planeKinds)) |
               (pictures ? NeedsOf(request.pictureKinds) : Needs())) {
    EvaluatorsFor({});
  }

  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  Rows operator()(Rows& rows) {
    for (BatchRow& row : rows) Compute(row, EvaluatorsFor(row.light));
    return std::move(rows);
  }

 private:
  // Those of the last lights are kept, since tables often have each eye in a few lights.
  Evaluators& EvaluatorsFor(const RowLight& light) {
    constexpr std::size_t kMost = 4;
    const auto found =
        std::find_if(kept_.begin(), kept_.end(), [&](const auto& its) { return its.first == light.name; });
    if (found != kept_.end()) {
      kept_.splice(kept_.begin(), kept_, found);
      return *kept_.front().second;
    }
    if (kept_.size() == kMost) kept_.pop_back();
    ModelRequest model = request_.model;
    if (light.settings) model.physical = *light.settings;
    kept_.emplace_front(light.name, std::make_unique<Evaluators>(request_, model, pictures_, star_));
    return *kept_.front().second;
  }

  void Compute(BatchRow& row, Evaluators& evaluators) {
    Evaluator& evaluator = evaluators.results;
    ColumnValues columns;
    if (row.error.empty()) {
      try {
        const Eye eye = Adjusted(std::move(row.eye.eye), request_.adjustments, &row.dropped);
        for (const double value : evaluator.Measure(eye, request_.choice, needs_)) columns.Add(value);
        if (evaluators.quality) AddQualityColumns(*evaluators.quality, eye, columns);
        if (evaluators.lens) AddLensColumns(*evaluators.lens, eye, request_.lens, columns);
        if (evaluators.focus) AddFocusColumns(*evaluators.focus, eye, request_.lenses, columns);
        if (row.dropped) columns.Add(row.dropped->rms.value());
        row.scale = ScaleOf(evaluator.results());
        const double undersampled = evaluator.results().undersampled;
        if (undersampled > request_.maxUndersampled) row.undersampled = UndersampledText(row.eye, undersampled);
      } catch (const Error& error) {
        row.error = ErrorText(row.eye, error);
        row.dropped.reset();
      }
    }
    // From here on, a failure is not an error of the eye and ends the run.
    if (row.error.empty()) {
      if (!request_.planes.empty()) row.planes = CompressedPlanes(request_.planeKinds, evaluator.results());
      if (evaluators.painter) evaluators.painter->Paint(row.row);
    }
    for (const std::string& identifier : row.eye.identifiers) row.line += CsvField(identifier) + ",";
    for (std::size_t i = 0; i < columns_; ++i) {
      const bool missing = !row.error.empty() || std::isnan(columns.values()[i]);
      row.line += (missing ? "" : ShortestText(columns.values()[i])) + ",";
    }
    if (HasNotes(request_)) {
      const std::string notes = row.error.empty() ? columns.Notes() : "";
      row.noted = !notes.empty();
      row.line += CsvField(notes) + ",";
    }
    row.line += CsvField(row.error) + "\n";
  }

  std::string UndersampledText(const TableEye& eye, double share) const {
    return ErrorText(eye,
                     Error("the wavefront is too steep for the samples in " + NumberText(100.0 * share, 2) +
                           " % of the pupil, more than " + NumberText(100.0 * request_.maxUndersampled, 2) + " %"));
  }

  const BatchRequest& request_;
  const std::optional<PictureFolder>& pictures_;
  const Plane& star_;
  std::size_t columns_;
  Needs needs_;  // beside those of the metrics
  std::list<std::pair<std::string, std::unique_ptr<Evaluators>>>
      kept_;  // by the name of the light, the last used first
};

class Batch {
 public:
  explicit Batch(const BatchRequest& request)
      : request_(request),
        record_(request.record),
        source_(request.eyeFiles.empty() ? EyeSource(request.table, request.kind, request.stated, request.tableOptions)
                                         : EyeSource(request.eyeFiles, request.stated)),
        conditions_(source_.identifierNames(), request.table, request.model, request.light) {
    if (conditions_.haveLight()) {
      record_.settings.emplace_back("--light by name", request.light);  // rows without a light state it
      ComputeConstantsOfEachRow();
    }
    result_.columns = ResultColumns(request_);
    result_.constants = record_.constants;
    record_.columns = result_.columns;
    if (HasNotes(request)) record_.columns.emplace_back(kNoteColumn);
    record_.eyeFiles = source_.files();
    if (request.eyeFiles.empty()) {
      tableState_ = StateOf(PathOf(request.table));
      record_.tableHash = HashOfFile(request.table);
    }
    header_ = Header();
    std::error_code ignored;
    if (fs::equivalent(PathOf(request.table), PathOf(request.results), ignored)) {
      throw Error(request.results + ": is the table of eyes itself; give another name");
    }
    for (const std::string& file : request.eyeFiles) {
      if (fs::equivalent(PathOf(file), PathOf(request.results), ignored)) {
        throw Error(request.results + ": is one of the eye files; give another name");
      }
    }
  }

  BatchResult Run(const std::function<void(const std::string& columns)>& tell) {
    Begin();
    if (tell) {
      const std::string conditions = conditions_.Summary();
      tell(source_.Summary() + (conditions.empty() ? "" : "; " + conditions));
    }
    Plane star;
    if (pictures_) star = SectorStar();
    std::vector<std::function<Rows(Rows&)>> workers;
    for (std::size_t i = 0; i < request_.jobs; ++i) {
      workers.emplace_back(
          [worker = std::make_shared<Worker>(request_, pictures_, star)](Rows& rows) { return (*worker)(rows); });
    }
    try {
      constexpr std::size_t kMaxInFlight = 4;  // for each worker
      InOrder<Rows, Rows>(std::move(workers), kMaxInFlight * request_.jobs)
          .Run([this](Rows& rows) { return Read(rows); }, [this](Rows& rows) { Take(rows); });
      RequireSameTable();
      if (record_.tableHash.empty()) record_.tableHash = source_.tableHash();  // a pipe
      if (record_.tableHash != source_.tableHash()) RefuseChangedTable();
      if (read_ < result_.earlier) {
        throw Error(request_.results + ": has more rows than the table of eyes gives; start over with --force");
      }
      if (planes_) planes_->Finish();
      sure_ = all_;
      Write();
    } catch (const Interrupted&) {
      KeepWhatIsComputed();
      throw Error("interrupted; all rows are complete" + std::string(IsPipe() || request_.results == kStandardStream
                                                                         ? ""
                                                                         : ", and --resume continues from there"));
    } catch (...) {
      KeepWhatIsComputed();
      throw;
    }
    record_.end = RunRecord::End{row_, result_.errors};
    Vouch();
    result_.rows = result_.earlier + taken_;
    return result_;
  }

 private:
  // Rows share values of their pupil only if they share the light too.
  void ComputeConstantsOfEachRow() {
    if (record_.constants.empty()) return;
    record_.constants.clear();
    request_.choice.metrics = UsualMetrics(false, request_.choice.model);
  }

  std::string Header() const {
    std::string header;
    for (const std::string& name : source_.identifierNames()) {
      const auto& columns = record_.columns;
      if (name == kErrorColumn || std::find(columns.begin(), columns.end(), name) != columns.end()) {
        throw Error(InputName(request_.table) + ": the column " + Quoted(name) +
                    " has the name of a column of the results; give it another name");
      }
      header += CsvField(name) + ",";
    }
    for (const std::string& column : record_.columns) header += CsvField(column) + ",";
    return header + kErrorColumn + "\n";
  }

  // ---- Existing results

  void Begin() {
    std::error_code ignored;
    const bool found =
        request_.results != kStandardStream && fs::exists(fs::symlink_status(PathOf(request_.results), ignored));
    if (found && !request_.resume && !request_.force) {
      throw Error(request_.results +
                  ": exists already; --resume continues it, --force replaces it; or give another name");
    }
    file_.emplace(request_.results, !found);
    try {
      if (!request_.planes.empty()) {
        planes_.emplace(request_.planes, request_.planeKinds, record_.chunkRows, request_.model);
        planesLock_.emplace(PathOf(request_.planes + ".lock"), record_.shard, request_.planes);
      }
      if (!request_.pictures.empty()) {
        pictures_.emplace(request_.pictures, request_.pictureKinds);
        picturesLock_.emplace(PathOf(request_.pictures) / "orvanel.lock", record_.shard, request_.pictures);
      }
      if (!request_.resume || !GoesOn()) BeginAnew();
    } catch (...) {
      file_->RemoveIfEmpty();
      throw;
    }
  }

  void BeginAnew() {
    ClearAwayFiles();
    // In this order, so that files belong together at any moment: rows are never beside the record of another run.
    file_->Keep(0);
    WriteRecord(request_.results, record_);
    file_->Append(header_);
    all_.Add(header_);
    onDisk_ = sure_ = all_;
  }

  void ClearAwayFiles() const {
    const bool replace = request_.force || request_.resume;
    if (planes_) {
      ClearAway(planes_->files().Existing([this](std::size_t number) { return Owns(record_.shard, number - 1); }),
                replace);
    }
    if (!pictures_) return;
    const auto owned = [this](std::size_t number) { return Owns(record_.shard, (number - 1) / record_.chunkRows); };
    for (const PictureKind kind : pictures_->kinds()) ClearAway(pictures_->FilesOf(kind).Existing(owned), replace);
  }

  // Whether there are rows to continue from.
  bool GoesOn() {
    if (file_->size() == 0) return false;
    const std::optional<RunRecord> before = ReadRecord(request_.results);
    const std::string refusal = request_.results + ": cannot be continued: ";
    if (!before) {
      throw Error(refusal + RecordFileOf(request_.results) + " is missing, which describes its rows");
    }
    if (IsPipe()) throw Error(refusal + "the table of eyes is a pipe; give a file");
    conditions_.Read(before->lightFiles);
    record_.lightFiles = conditions_.files();
    const std::string difference = Difference(*before, record_, false);
    if (!difference.empty()) throw Error(refusal + difference + "; give another name, or start over with --force");
    const std::uintmax_t sure = before->resultsBytes;
    // The results were truncated, by a user or a file system. There is nothing to compare, so all rows are computed.
    if (file_->size() < sure || sure < header_.size()) return false;
    if (before->end && file_->size() > sure) {
      throw Error(request_.results +
                  ": has more rows than its run has written; remove them, or start over with --force");
    }
    const WholeRows whole = ReadResults(sure);
    if (whole.bytes != sure || whole.hash.Text() != before->resultsHash) {
      throw Error(request_.results +
                  ": was changed after its run had written it; give another name, or start over with --force");
    }
    file_->Keep(sure);  // the rest was written after the record
    onDisk_ = sure_ = all_ = {whole.bytes, whole.hash};
    result_.earlier = whole.rows;
    result_.errors = whole.errors;
    return true;
  }

  // Reads the rows of earlier runs. Notes which of their planes and pictures are missing or incomplete.
  WholeRows ReadResults(std::uintmax_t bytes) {
    InputFile stream(request_.results);
    try {
      return ReadWholeRows(stream, header_, bytes,
                           [this](std::size_t own, const std::string& row) { CheckFiles(own, HasError(row)); });
    } catch (const Interrupted&) {
      throw;
    } catch (const Error& error) {
      throw Error(request_.results + ": " + error.what());
    }
  }

  void CheckFiles(std::size_t own, bool hasError) {
    const std::size_t row = RowOf(record_.shard, record_.chunkRows, own), chunk = row / record_.chunkRows;
    if (damaged_.contains(chunk)) return;
    bool whole = !planes_ || row % record_.chunkRows != 0 || IsWholeHdf5(planes_->files().Path(chunk + 1));
    if (pictures_ && !hasError) {
      for (const PictureKind kind : pictures_->kinds()) {
        whole = whole && IsWholePng(pictures_->FilesOf(kind).Path(row + 1));
      }
    }
    if (!whole) damaged_.insert(chunk);
  }

  // ---- The table, which must not change during the run

  bool IsPipe() const { return request_.eyeFiles.empty() && record_.tableHash.empty(); }

  void RequireSameTable() {
    if (record_.tableHash.empty()) return;
    const std::optional<FileState> state = StateOf(PathOf(request_.table));
    if (state == tableState_) return;
    if (HashOfFile(request_.table) != record_.tableHash) RefuseChangedTable();
    tableState_ = state;  // touched, or replaced by an equal file
  }

  [[noreturn]] void RefuseChangedTable() {
    record_.tableHash.clear();  // so that no run continues these results
    pending_.clear();
    sure_ = onDisk_;
    throw Error(request_.table + ": was changed while it was read, so that " + request_.results +
                " may have rows of both; start over with --force");
  }

  // ---- Reading

  bool Read(Rows& rows) {
    constexpr std::size_t kTogether = 16;  // so that passing tasks to threads costs little per row
    const bool costly = HasNotes(request_) || !request_.planes.empty() || !request_.pictures.empty();
    const std::size_t together = costly ? 1 : kTogether;
    rows.clear();
    for (BatchRow row; rows.size() < together && ReadRow(row); row = {}) rows.push_back(std::move(row));
    return !rows.empty();
  }

  // The next row that belongs to the shard and is not done by an earlier run; false at the end.
  bool ReadRow(BatchRow& row) {
    for (;; ++row_) {
      StopIfInterrupted();
      ShowProgress();
      const std::size_t chunk = row_ / record_.chunkRows;
      const bool ours = Owns(record_.shard, chunk);
      if (ours && (read_ == result_.earlier || damaged_.contains(chunk))) break;
      if (!Skip()) return false;
      if (ours) ++read_;
    }
    row.row = row_;
    row.again = read_ < result_.earlier;
    try {
      if (!source_.Next(row.eye)) return false;
      row.light = conditions_.Complete(row.eye.identifiers);
    } catch (const ErrorAt& error) {
      row.error = ErrorText(error);
    } catch (const ConditionRefused& error) {
      row.error = ErrorText(row.eye, error);
    } catch (const UnreadableEye& error) {
      row.error = error.what();
    }
    ++row_;
    if (row.again) ++read_;
    return true;
  }

  bool Skip() {
    try {
      return source_.Skip();
    } catch (const ErrorAt&) {
      return true;
    }
  }

  // ---- Writing

  std::string OriginOf(const BatchRow& row) const {
    return request_.eyeFiles.empty() ? InputName(request_.table) : request_.eyeFiles[row.row];
  }

  void Take(const Rows& rows) {
    for (const BatchRow& row : rows) {
      const bool endsChunk = row.row % record_.chunkRows == record_.chunkRows - 1;
      if (!row.error.empty() && !row.again) {
        if (request_.strict) throw Error(OriginOf(row) + ": " + row.error + "; --strict stops here");
        ++result_.errors;
      }
      if (!row.undersampled.empty() && !row.again) {
        if (request_.strict) throw Error(OriginOf(row) + ": " + row.undersampled + "; --strict stops here");
        ++result_.undersampled;
      }
      if (planes_) {
        planes_->Add(row.row, row.planes, row.scale);
        if (endsChunk) planes_->Finish();
      }
      if (row.again) {
        ++result_.again;
        continue;
      }
      if (row.dropped) result_.dropped.Add(*row.dropped);
      if (row.noted) ++result_.noted;
      pending_ += row.line;
      all_.Add(row.line);
      if (!planes_ || endsChunk) sure_ = all_;
      ++taken_;
    }
    constexpr std::size_t kBlock = 1 << 15;
    constexpr std::chrono::milliseconds kLongest(500);
    if (pending_.size() >= kBlock || Clock::now() - written_ >= kLongest) Write();
    ShowProgress();
  }

  void Write() {
    if (!pending_.empty()) {
      RequireSameTable();
      file_->Append(pending_);
      pending_.clear();
      written_ = Clock::now();
    }
    onDisk_ = sure_;
    constexpr std::chrono::milliseconds kSeldom(500);
    if (Clock::now() - vouched_ >= kSeldom) Vouch();
  }

  // Writes the progress to the record. The results are flushed to the disk first.
  void Vouch() {
    file_->Synchronise();
    record_.eyeFiles = source_.files();
    record_.lightFiles = conditions_.files();
    record_.resultsBytes = onDisk_.bytes;
    record_.resultsHash = onDisk_.hash.Text();
    WriteRecord(request_.results, record_);
    vouched_ = Clock::now();
  }

  // If the failure was a write, it fails once more.
  void KeepWhatIsComputed() {
    for (void (Batch::*const step)() : {&Batch::Write, &Batch::Vouch}) {
      try {
        (this->*step)();
      } catch (const Error&) {
      }
    }
  }

  void ShowProgress() {
    constexpr std::chrono::milliseconds kSeldom(200);
    if (!line_.isShown() || Clock::now() - shown_ < kSeldom) return;
    shown_ = Clock::now();
    const std::optional<double> share = source_.Share();
    if (taken_ == 0) {  // still skipping finished rows
      begun_ = shown_;
      before_ = share.value_or(0.0);
    }
    line_.Show(RateText(share, before_, taken_, shown_ - begun_));
  }

  BatchRequest request_;
  RunRecord record_;
  EyeSource source_;
  RowConditions conditions_;
  std::string header_;

  std::optional<ResultsFile> file_;
  std::optional<PlaneChunks> planes_;
  std::optional<PictureFolder> pictures_;
  std::optional<PlaceLock> planesLock_, picturesLock_;
  std::set<std::size_t> damaged_;  // chunks of earlier runs with missing or incomplete files
  std::optional<FileState> tableState_;

  std::size_t row_ = 0;   // of the table: the next row to read
  std::size_t read_ = 0;  // rows of the shard, done by earlier runs, that are skipped
  std::size_t taken_ = 0;
  BatchResult result_;
  std::string pending_;  // whole rows that are not yet in the file
  // Prefixes of the results.
  struct Beginning {
    std::uintmax_t bytes = 0;
    Fnv1a hash;
    void Add(const std::string& rows) {
      bytes += rows.size();
      hash.Add(rows);
    }
  };
  Beginning all_;     // including pending_
  Beginning sure_;    // the part of all_ whose planes are all in place
  Beginning onDisk_;  // the part of all_ that is in the file
  Clock::time_point written_ = Clock::now(), vouched_ = written_, shown_ = written_, begun_ = written_;
  double before_ = 0.0;  // share of the table that earlier runs have done
  StatusLine line_;
};

}  // namespace

bool HasNotes(const BatchRequest& request) {
  return !request.quality.metrics.empty() || request.lensBy || !request.lenses.empty();
}

BatchResult RunBatch(const BatchRequest& request, const std::function<void(const std::string& columns)>& tell) {
  return Batch(request).Run(tell);
}

}  // namespace orvanel::cli
