// The calling thread reads and writes; others compute between.
#include "cli/batch/run.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "cli/batch/in_order.h"
#include "cli/batch/rate.h"
#include "cli/batch/results_file.h"
#include "cli/batch/whole_rows.h"
#include "cli/error.h"
#include "cli/files.h"
#include "cli/input_file.h"
#include "cli/interruption.h"
#include "cli/number_text.h"
#include "cli/path_of.h"
#include "cli/sector_star.h"
#include "cli/tables/csv.h"
#include "cli/terminal.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// A row of the table on its way: first the eye, or what is wrong with it, then its results.
struct BatchRow {
  std::size_t row = 0;  // of the table, from 0
  TableEye eye;
  std::string error;
  std::string undersampled;  // what is wrong with the samples, which is no error
  std::string line;          // of the results
  std::optional<Dropped> dropped;
  std::vector<std::string> planes;
  double pupil = std::numeric_limits<double>::quiet_NaN();
};

using Rows = std::vector<BatchRow>;

std::string ErrorText(const TableEye& eye, const Error& error) {
  return (eye.line > 0 ? "line " + std::to_string(eye.line) + ": " : "") + error.what();
}

std::string ErrorText(const ErrorAt& error) {
  return "line " + std::to_string(error.place.line) + ", column " + std::to_string(error.place.column) + ": " +
         error.reason;
}

// Computes; one for each thread.
class Worker {
 public:
  Worker(const BatchRequest& request, const std::optional<PictureFolder>& pictures, const Plane& star)
      : request_(request),
        columns_(ResultColumns(request).size()),
        meter_(request.choice, !request.planes.empty() || !request.pictures.empty()) {
    if (pictures) painter_.emplace(*pictures, star);
  }

  Rows operator()(Rows& rows) {
    for (BatchRow& row : rows) Compute(row);
    return std::move(rows);
  }

 private:
  void Compute(BatchRow& row) {
    std::vector<double> values;
    if (row.error.empty()) {
      try {
        const Eye eye = Prepared(std::move(row.eye.eye), request_.preparation, &row.dropped);
        values = meter_.Measure(eye);
        if (row.dropped) values.push_back(row.dropped->rms.value());
        row.pupil = eye.pupil.value();
        if (meter_.undersampled() > request_.maxUndersampled) row.undersampled = UndersampledText(row.eye);
      } catch (const Error& error) {
        row.error = ErrorText(row.eye, error);
        row.dropped.reset();
      }
    }
    // What fails from here on is no fault of the eye and ends the run.
    if (row.error.empty()) {
      if (!request_.planes.empty()) row.planes = CompressedPlanes(request_.planeKinds, meter_);
      if (painter_) painter_->Paint(row.row, meter_);
    }
    for (const std::string& identifier : row.eye.identifiers) row.line += CsvField(identifier) + ",";
    for (std::size_t i = 0; i < columns_; ++i) row.line += (row.error.empty() ? ShortestText(values[i]) : "") + ",";
    row.line += CsvField(row.error) + "\n";
  }

  std::string UndersampledText(const TableEye& eye) const {
    return ErrorText(eye,
                     Error("the wavefront is too steep for the samples in " + Text(100.0 * meter_.undersampled(), 2) +
                           " % of the pupil, more than " + Text(100.0 * request_.maxUndersampled, 2) + " %"));
  }

  const BatchRequest& request_;
  std::size_t columns_;
  EyeMeter meter_;
  std::optional<Painter> painter_;
};

class Batch {
 public:
  explicit Batch(const BatchRequest& request)
      : request_(request),
        record_(request.record),
        stream_(request.table),
        table_(stream_, InputName(request.table), request.kind, request.stated, request.tableOptions) {
    record_.columns = ResultColumns(request);
    record_.tableHash = HashOfFile(request.table);
    header_ = Header();
    std::error_code ignored;
    if (fs::equivalent(PathOf(request.table), PathOf(request.results), ignored)) {
      throw Error(request.results + ": is the table of eyes itself; give another name");
    }
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(PathOf(request.table), failure);
    if (!failure && !record_.tableHash.empty() && size > 0) tableSize_ = static_cast<double>(size);
  }

  BatchResult Run(const std::function<void(const std::string& columns)>& tell) {
    Begin();
    if (tell) tell(table_.Summary());
    Plane star;
    if (pictures_) star = SectorStar();
    std::vector<std::function<Rows(Rows&)>> workers;
    for (std::size_t i = 0; i < request_.jobs; ++i) {
      workers.emplace_back(
          [worker = std::make_shared<Worker>(request_, pictures_, star)](Rows& rows) { return (*worker)(rows); });
    }
    try {
      constexpr std::size_t kMostOnTheirWay = 4;  // for each worker
      InOrder<Rows, Rows>(std::move(workers), kMostOnTheirWay * request_.jobs)
          .Run([this](Rows& rows) { return Read(rows); }, [this](Rows& rows) { Take(rows); });
      if (read_ < result_.earlier) {
        throw Error(request_.results + ": has more rows than the table of eyes gives; --force begins anew");
      }
      if (planes_) planes_->Finish();
      Write();
    } catch (const Interrupted&) {
      KeepWhatIsComputed();
      throw Error("interrupted; all rows are whole" +
                  std::string(record_.tableHash.empty() || request_.results == kStandardStream
                                  ? ""
                                  : ", and --resume goes on from there"));
    } catch (...) {
      KeepWhatIsComputed();
      throw;
    }
    record_.end = RunRecord::End{row_, result_.errors};
    WriteRecord(request_.results, record_);
    result_.rows = result_.earlier + taken_;
    return result_;
  }

 private:
  std::string Header() const {
    std::string header;
    for (const std::string& name : table_.identifierNames()) {
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

  // ---- What is there already

  void Begin() {
    std::error_code ignored;
    const bool found =
        request_.results != kStandardStream && fs::exists(fs::symlink_status(PathOf(request_.results), ignored));
    if (found && !request_.resume && !request_.force) {
      throw Error(request_.results +
                  ": is there already; --resume goes on with it, --force replaces it; or give another name");
    }
    file_.emplace(request_.results, !found);
    try {
      if (!request_.planes.empty()) planes_.emplace(request_.planes, request_.planeKinds, record_.chunkRows);
      if (!request_.pictures.empty()) pictures_.emplace(request_.pictures, request_.pictureKinds);
      if (!request_.resume || !GoesOn()) BeginAnew();
    } catch (...) {
      file_->RemoveIfEmpty();
      throw;
    }
  }

  void BeginAnew() {
    ClearAwayFiles();
    // In this order, so that whatever is there at any moment belongs together: rows never stand beside the record of
    // another run.
    file_->Keep(0);
    WriteRecord(request_.results, record_);
    file_->Append(header_);
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

  // Whether there are rows to go on from.
  bool GoesOn() {
    if (file_->size() == 0) return false;
    const std::optional<RunRecord> before = ReadRecord(request_.results);
    const std::string refusal = request_.results + ": cannot be gone on with: ";
    if (!before) {
      throw Error(refusal + RecordFileOf(request_.results) + " is missing, which tells what its rows are");
    }
    if (record_.tableHash.empty()) throw Error(refusal + "the table of eyes is a pipe; give a file");
    const std::string difference = Difference(*before, record_, false);
    if (!difference.empty()) throw Error(refusal + difference + "; give another name, or let --force begin anew");
    WholeRows whole = Count(std::numeric_limits<std::size_t>::max());
    if (!whole.headerIsWhole) return false;
    // A file of planes is in place before the last row of its chunk is.
    if (planes_) whole = Count(whole.rows / record_.chunkRows * record_.chunkRows);
    file_->Keep(whole.bytes);
    result_.earlier = whole.rows;
    result_.errors = whole.errors;
    return true;
  }

  WholeRows Count(std::size_t most) const {
    InputFile stream(request_.results);
    try {
      return CountWholeRows(stream, header_, most);
    } catch (const Error& error) {
      throw Error(request_.results + ": " + error.what());
    }
  }

  // ---- Reading

  bool Read(Rows& rows) {
    constexpr std::size_t kTogether = 16;  // so that small work is not lost in handing it over
    const std::size_t together = request_.planes.empty() && request_.pictures.empty() ? kTogether : 1;
    rows.clear();
    for (BatchRow row; rows.size() < together && ReadRow(row); row = {}) rows.push_back(std::move(row));
    return !rows.empty();
  }

  // The next row that is the shard's and that no earlier run has done; false at the end.
  bool ReadRow(BatchRow& row) {
    for (;; ++row_) {
      StopIfInterrupted();
      ShowProgress();
      const bool ours = Owns(record_.shard, row_ / record_.chunkRows);
      if (ours && read_ == result_.earlier) break;
      if (!Skip()) return false;
      if (ours) ++read_;
    }
    row.row = row_;
    try {
      if (!table_.Next(row.eye)) return false;
    } catch (const ErrorAt& error) {
      row.error = ErrorText(error);
    }
    ++row_;
    return true;
  }

  bool Skip() {
    try {
      return table_.Skip();
    } catch (const ErrorAt&) {
      return true;
    }
  }

  // ---- Writing

  void Take(const Rows& rows) {
    for (const BatchRow& row : rows) {
      if (!row.error.empty()) {
        if (request_.strict) throw Error(InputName(request_.table) + ": " + row.error + "; --strict stops here");
        ++result_.errors;
      }
      if (!row.undersampled.empty()) {
        if (request_.strict) throw Error(InputName(request_.table) + ": " + row.undersampled + "; --strict stops here");
        ++result_.undersampled;
      }
      if (planes_) {
        planes_->Add(row.row, row.planes, row.pupil);
        if (row.row % record_.chunkRows == record_.chunkRows - 1) planes_->Finish();
      }
      if (row.dropped) result_.dropped.Add(*row.dropped);
      pending_ += row.line;
      ++taken_;
    }
    constexpr std::size_t kBlock = 1 << 15;
    constexpr std::chrono::milliseconds kLongest(500);
    if (pending_.size() >= kBlock || Clock::now() - written_ >= kLongest) Write();
    ShowProgress();
  }

  void Write() {
    if (pending_.empty()) return;
    file_->Append(pending_);
    pending_.clear();
    written_ = Clock::now();
  }

  // Where writing was what failed, it fails once more.
  void KeepWhatIsComputed() {
    try {
      Write();
    } catch (const Error&) {
    }
  }

  void ShowProgress() {
    constexpr std::chrono::milliseconds kSeldom(200);
    if (!line_.isShown() || Clock::now() - shown_ < kSeldom) return;
    shown_ = Clock::now();
    std::optional<double> share;
    if (tableSize_) share = static_cast<double>(stream_.bytesRead()) / *tableSize_;
    if (taken_ == 0) {  // still passing over what is done
      begun_ = shown_;
      before_ = share.value_or(0.0);
    }
    line_.Show(RateText(share, before_, taken_, shown_ - begun_));
  }

  const BatchRequest& request_;
  RunRecord record_;
  InputFile stream_;
  EyeTable table_;
  std::string header_;
  std::optional<double> tableSize_;  // bytes

  std::optional<ResultsFile> file_;
  std::optional<PlaneChunks> planes_;
  std::optional<PictureFolder> pictures_;

  std::size_t row_ = 0;   // of the table, to be read next
  std::size_t read_ = 0;  // the shard's rows of earlier runs that are passed over
  std::size_t taken_ = 0;
  BatchResult result_;
  std::string pending_;  // whole rows on their way to the file
  Clock::time_point written_ = Clock::now(), shown_ = written_, begun_ = written_;
  double before_ = 0.0;  // share of the table that earlier runs had done
  StatusLine line_;
};

}  // namespace

std::vector<std::string> ResultColumns(const BatchRequest& request) {
  std::vector<std::string> columns = Columns(request.choice);
  if (request.preparation.highestOrder) columns.emplace_back("dropped_rms_um");
  return columns;
}

BatchResult RunBatch(const BatchRequest& request, const std::function<void(const std::string& columns)>& tell) {
  return Batch(request).Run(tell);
}

}  // namespace orvanel::cli
