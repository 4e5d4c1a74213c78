// Computes metrics of many eyes on threads; each row has its status.
#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "c_interface/arguments.h"
#include "c_interface/handles.h"
#include "evaluation/in_order.h"
#include "evaluation/quality_evaluator.h"
#include "eye/conventions/errors.h"
#include "metrics/quality/catalogue.h"
#include "metrics/quality_names.h"
#include "models/physical/pupil/wavefront_polynomial.h"

struct orvanel_reasons {
  std::map<uint64_t, orvanel::c_interface::KeptReason> rows;
  uint64_t count = 0;
};

namespace orvanel::c_interface {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr uint32_t kMostThreads = 1024;

// A derivative by an input coefficient: the share of that by a mode of the model. Empty for modes that it lacks.
struct ByMode {
  std::size_t mode;
  double factor;
};

// The derivatives by coefficients of a convention, from the first index of its scheme on.
std::vector<std::optional<ByMode>> DerivativesOf(const eye::Convention& convention, std::size_t count) {
  std::vector<std::optional<ByMode>> derivatives;
  for (std::size_t i = 0; i < count; ++i) {
    std::vector<double> list(i + 1, 0.0);
    list[i] = 1.0;
    const eye::Coefficients one = Converted(FromList(convention.scheme, list), convention, eye::kOsaConvention);
    const auto found = std::find_if(one.begin(), one.end(), [](double c) { return c != 0.0; });
    const auto mode = static_cast<std::size_t>(found - one.begin());
    derivatives.push_back(mode < physical::kModes ? std::optional(ByMode{mode, *found}) : std::nullopt);
  }
  return derivatives;
}

// Eyes by their row, and what their gradients are by.
struct Source {
  std::size_t count = 0;
  std::function<eye::Eye(std::size_t)> eye;
  eye::Convention convention = eye::kOsaConvention;
  std::optional<std::size_t> coefficients;  // as many derivatives; any number if it is empty
};

struct Row {
  std::size_t index = 0;
};

struct RowResult {
  metrics::Quality quality;
  std::optional<Reason> reason;
};

class Output {
 public:
  Output(const orvanel_metrics_output& output, std::size_t metrics, const Source& source)
      : given_(output),
        values_(output.values, 2, "values"),
        errors_(output.errors, 2, "errors"),
        gradients_(output.gradients, 3, "gradients"),
        origins_(output.origins, 2, "origins"),
        metrics_(metrics) {
    const std::size_t eyes = source.count;
    values_.RequireShape({eyes, metrics});
    errors_.RequireShape({eyes, metrics});
    origins_.RequireShape({eyes, 2});
    if (!WantsGradients()) return;
    gradients_.RequireShape({eyes, metrics, source.coefficients.value_or(gradients_.Size(2))});
    derivatives_ = DerivativesOf(source.convention, std::min(gradients_.Size(2), eye::kMaxTerms + 1));
  }

  bool WantsGradients() const { return gradients_.HasData(); }

  void Take(std::size_t row, const RowResult& result) const {
    const auto& values = result.quality.values;
    for (std::size_t m = 0; m < metrics_; ++m) {
      const metrics::QualityValue* const value = result.reason ? nullptr : &values[m];
      values_.Set(value != nullptr ? value->value : kNone, row, m);
      errors_.Set(value != nullptr ? value->error : kNone, row, m);
      if (given_.notes != nullptr) given_.notes[row * metrics_ + m] = value != nullptr ? NoteOf(value->note) : 0;
      for (std::size_t k = 0; k < derivatives_.size(); ++k) {
        double slope = kNone;
        if (value != nullptr && derivatives_[k] && !value->gradient.empty()) {
          slope = value->gradient[derivatives_[k]->mode] * derivatives_[k]->factor;
        }
        gradients_.Set(slope, row, m, k);
      }
    }
    origins_.Set(result.reason ? kNone : result.quality.originX, row, 0);
    origins_.Set(result.reason ? kNone : result.quality.originY, row, 1);
    if (given_.statuses != nullptr) given_.statuses[row] = result.reason ? result.reason->status : ORVANEL_OK;
  }

 private:
  const orvanel_metrics_output& given_;
  ArrayView values_, errors_, gradients_, origins_;
  std::size_t metrics_;
  std::vector<std::optional<ByMode>> derivatives_;
};

// One for each thread.
class Worker {
 public:
  Worker(const models::PhysicalSettings& settings, const metrics::QualityRequest& request, const Source& source)
      : evaluator_(std::make_shared<evaluation::QualityEvaluator>(settings, request)), source_(&source) {}

  RowResult operator()(const Row& row) const {
    RowResult result;
    try {
      result.quality = evaluator_->Evaluate(source_->eye(row.index));
    } catch (const Error&) {
      result.reason = ReasonOfException(ORVANEL_REFUSED);
    }
    return result;
  }

 private:
  std::shared_ptr<evaluation::QualityEvaluator> evaluator_;
  const Source* source_;
};

// All arguments, checked.
struct Batch {
  const orvanel_metrics_request* request;
  uint32_t threads;
  orvanel_progress progress;
  void* data;
  const orvanel_metrics_output* output;
  orvanel_reasons** reasons;
};

void Run(const Batch& batch, const Source& source) {
  RequireStruct(batch.request, "orvanel_metrics_request");
  RequireStruct(batch.output, "orvanel_metrics_output");
  RequireWithin(batch.threads, 1, kMostThreads, "threads");
  metrics::QualityRequest request = QualityRequestOf(*batch.request);
  const models::PhysicalSettings settings = SettingsOf(batch.request->settings);
  const Output output(*batch.output, request.metrics.size(), source);
  request.gradient = output.WantsGradients();
  auto reasons = std::make_unique<orvanel_reasons>();
  reasons->count = source.count;
  std::size_t taken = 0;
  const auto take = [&](RowResult& result) {
    output.Take(taken, result);
    if (result.reason) reasons->rows[taken].Keep(std::move(*result.reason));
    ++taken;
    Report(batch.progress, batch.data, taken, source.count);
  };
  const std::size_t threads = std::min<std::size_t>(batch.threads, source.count);
  if (threads <= 1) {
    if (source.count > 0) {
      const Worker worker(settings, request, source);
      for (std::size_t i = 0; i < source.count; ++i) {
        RowResult result = worker({i});
        take(result);
      }
    }
  } else {
    std::vector<std::function<RowResult(Row&)>> work;
    for (std::size_t i = 0; i < threads; ++i) work.emplace_back(Worker(settings, request, source));
    constexpr std::size_t kInFlight = 4;  // for each thread, so that one slow eye stops none of the others
    evaluation::InOrder<Row, RowResult> ring(std::move(work), kInFlight * threads);
    std::size_t next = 0;
    ring.Run(
        [&](Row& row) {
          if (next == source.count) return false;
          row.index = next++;
          return true;
        },
        take);
  }
  std::optional<Reason> first;
  if (!reasons->rows.empty()) {
    orvanel_error error{};
    error.size = sizeof error;
    const auto& [row, reason] = *reasons->rows.begin();
    reason.Fill(error);
    const std::size_t refused = reasons->rows.size();
    first = Reason{ORVANEL_ROWS_REFUSED,
                   "rows_refused",
                   std::to_string(refused) + (refused == 1 ? " eye is" : " eyes are") + " refused; the first in row " +
                       std::to_string(row) + " (from 0): " + error.text,
                   {{"row", static_cast<double>(row)},
                    {"refused", static_cast<double>(refused)},
                    {"code", std::string(error.code)}}};
  }
  if (batch.reasons != nullptr) *batch.reasons = reasons.release();
  if (first) throw Refused(*std::move(first));
}

}  // namespace
}  // namespace orvanel::c_interface

using namespace orvanel::c_interface;  // NOLINT(google-build-using-namespace): the functions of C have no namespace

uint64_t orvanel_metric_count() noexcept { return orvanel::metrics::QualityCatalogue().size(); }

orvanel_status orvanel_metric_at(uint64_t index, orvanel_metric* metric) noexcept {
  return Call([&] {
    RequireStruct(metric, "orvanel_metric");
    const auto catalogue = orvanel::metrics::QualityCatalogue();
    RequireWithin(static_cast<double>(index), 0.0, static_cast<double>(catalogue.size() - 1), "index");
    const orvanel::metrics::QualityRow& row = catalogue[index];
    *metric = {sizeof *metric,     row.name,       row.unit,         row.definition, row.source,
               row.higherIsBetter, row.usesOrigin, row.usesContrast, row.hasGradient};
  });
}

orvanel_status orvanel_metrics_default(orvanel_metrics_request* request) noexcept {
  return Call([&] {
    RequireStruct(request, "orvanel_metrics_request");
    *request = {};
    request->size = sizeof *request;
    request->settings.size = sizeof request->settings;
    orvanel_settings_default(&request->settings);
    request->origin = ORVANEL_BEST;
    request->reference = ORVANEL_SAME_LIGHT;
    request->gaussian_sd_arcmin = orvanel::metrics::kUsualGaussianSdArcmin;
  });
}

orvanel_status orvanel_metrics_count(const char* metrics, uint64_t* count) noexcept {
  return Call(
      [&] {
        RequireText(metrics, "metrics");
        RequirePointer(count, "count");
        *count = orvanel::metrics::QualityMetricsNamed(metrics).size();
      },
      ORVANEL_INVALID_ARGUMENT);
}

orvanel_status orvanel_metrics_of_rows(const orvanel_metrics_request* request, const orvanel_eyes* eyes,
                                       uint32_t threads, orvanel_progress progress, void* data,
                                       const orvanel_metrics_output* output, orvanel_reasons** reasons) noexcept {
  return Call([&] {
    RequireStruct(eyes, "orvanel_eyes");
    const ArrayView coefficients(eyes->coefficients, 2, "coefficients");
    const ArrayView pupils(eyes->pupil_mm, 1, "pupil_mm");
    const orvanel::eye::Convention convention = ConventionOf(eyes->convention);
    const auto side = SideOf(eyes->laterality);
    const auto reference = ReferenceOf(eyes->reference_nm);
    const std::size_t count = coefficients.Size(0), width = coefficients.Size(1);
    if (width > orvanel::eye::kMaxTerms) {
      throw orvanel::eye::ListTooLong(width, convention.scheme, orvanel::eye::kMaxTerms);
    }
    FromList(convention.scheme, std::vector<double>(width));  // throws for a list that is too long
    if (count > 0) pupils.RequireShape({count});
    Source source;
    source.count = count;
    source.convention = convention;
    source.coefficients = width;
    source.eye = [&](std::size_t row) {
      std::vector<double> numbers(width);
      for (std::size_t i = 0; i < width; ++i) numbers[i] = coefficients.At(row, i);
      return EyeOf(numbers, convention, orvanel::Millimetres(pupils.At(row)), side, reference);
    };
    if (count > 0 && !pupils.HasData()) RequirePointer(nullptr, "pupil_mm.data");
    Run({request, threads, progress, data, output, reasons}, source);
  });
}

orvanel_status orvanel_metrics_of_eyes(const orvanel_metrics_request* request, const orvanel_eye* const* eyes,
                                       uint64_t count, uint32_t threads, orvanel_progress progress, void* data,
                                       const orvanel_metrics_output* output, orvanel_reasons** reasons) noexcept {
  return Call([&] {
    if (count > 0) RequirePointer(eyes, "eyes");
    RequireWithin(static_cast<double>(count), 0.0, 1e9, "count");
    for (uint64_t i = 0; i < count; ++i) RequirePointer(eyes[i], "an eye");
    Source source;
    source.count = count;
    source.eye = [&](std::size_t row) { return eyes[row]->eye; };
    Run({request, threads, progress, data, output, reasons}, source);
  });
}

orvanel_status orvanel_reason_of_row(const orvanel_reasons* reasons, uint64_t row, orvanel_error* error) noexcept {
  return Call([&] {
    RequirePointer(reasons, "reasons");
    RequireStruct(error, "orvanel_error");
    if (row >= reasons->count) {
      throw ArgumentError("invalid_argument",
                          "row " + std::to_string(row) + " is not below " + std::to_string(reasons->count),
                          {{"argument", std::string("row")}});
    }
    const auto found = reasons->rows.find(row);
    if (found != reasons->rows.end()) {
      found->second.Fill(*error);
      return;
    }
    *error = {sizeof *error, ORVANEL_OK, 0, "", "", nullptr, 0};
  });
}

void orvanel_reasons_release(orvanel_reasons* reasons) noexcept { delete reasons; }
