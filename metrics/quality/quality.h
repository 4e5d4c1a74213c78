// Computes metrics of image quality of an eye in light of any spectrum.
#ifndef ORVANEL_METRICS_QUALITY_QUALITY_H
#define ORVANEL_METRICS_QUALITY_QUALITY_H

#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "metrics/quality/catalogue.h"
#include "metrics/quality/contrast_sensitivity.h"
#include "models/physical/eye.h"
#include "models/physical/kernels/dispatch.h"
#include "models/physical/outcome.h"

namespace orvanel::metrics {

// The place that counts as the middle of the image.
enum class QualityOrigin {
  kAxis,      // where a point without aberration is
  kPeak,      // the highest place of the PSF
  kCentroid,  // the centre of gravity of the light
  kBest,      // where the neurally weighted PSF is highest
};

// The pupil without aberration that ratios are relative to.
enum class QualityReference {
  kSameLight,      // in the light of the eye
  kMonochromatic,  // at the wavelength at which the modes hold
};

struct QualityRequest {
  std::vector<QualityMetric> metrics;  // in the order of the results
  QualityOrigin origin = QualityOrigin::kBest;
  QualityReference reference = QualityReference::kSameLight;
  ContrastSensitivity contrast = {};
  double gaussianSdArcmin = kUsualGaussianSdArcmin;  // of NS
  bool gradient = false;                             // by all modes of the eye
  std::vector<double> mtfAtCpd = {};                 // frequencies of the MTF, in cycles/degree, above 0
};
constexpr double kSmallestGaussianSdArcmin = 0.2, kLargestGaussianSdArcmin = 10.0;

// Why a number is not to be trusted.
enum class QualityNote {
  kNone,
  kPlaceNotUnique,  // the origin's place is one of a ring, a ridge or several: rounding picks it
  kBelowZero,       // VSX, VSOTF or VNOTF: the image is worse than even light; no logarithm and no acuity
  kEmptyReference,  // the reference is 0, so that there is no ratio; the value is not a number
  kOutsideWindow,   // D50: more than half of the light is out of reach of the computation; not a number
  kEndOfContrast,   // a cut-off is where the contrast sensitivity ends
};

struct QualityValue {
  QualityMetric metric{};
  double value = 0.0;
  double limit = 0.0;  // of the same metric without aberration, in its unit; not a number where it has no meaning
  double error = 0.0;  // absolute
  QualityNote note = QualityNote::kNone;
  // The derivative by each of Eye::modesUm, in the unit of the value per um; empty unless requested. Not a number where
  // the metric has none, and for metrics that follow an origin which is not unique.
  std::vector<double> gradient = {};
};

// The MTF at a frequency, mean over all directions.
struct MtfValue {
  double frequencyCpd = 0.0;
  double value = 0.0;
  double error = 0.0;  // absolute
};

struct Quality {
  std::vector<QualityValue> values;
  std::vector<MtfValue> mtf;  // at the frequencies of the request; it has no gradient
  QualityOrigin origin = QualityOrigin::kBest;
  double originX = 0.0;  // from the axis, in arcmin of the patient's view
  double originY = 0.0;
  QualityReference reference = QualityReference::kSameLight;
  double primaryNm = 0.0;  // wavelength of thresholds in waves, and of LIB's circle
};

enum class QualityProblem {
  kModel,       // the physical model refuses the eye or the light
  kGaussianSd,  // value, low and high are in `model`
};
struct QualityRefusal {
  QualityProblem problem{};
  physical::Refusal model;
};

class QualityOutcome {
 public:
  QualityOutcome(Quality quality) : value_(std::move(quality)) {}  // NOLINT(google-explicit-constructor)
  QualityOutcome(QualityRefusal refusal) : value_(refusal) {}      // NOLINT(google-explicit-constructor)
  explicit operator bool() const { return std::holds_alternative<Quality>(value_); }
  const Quality& operator*() const { return std::get<Quality>(value_); }
  const Quality* operator->() const { return &std::get<Quality>(value_); }
  const QualityRefusal& refusal() const { return std::get<QualityRefusal>(value_); }

 private:
  std::variant<Quality, QualityRefusal> value_;
};

// Tables and references that are kept for the next eye of the same pupil and light. One for each thread. Results do not
// depend on what it was used for before.
class QualityWorkspace {
 public:
  explicit QualityWorkspace(const Kernels& kernels);
  ~QualityWorkspace();

  struct Tables;
  Tables& tables() { return *tables_; }

 private:
  std::unique_ptr<Tables> tables_;
};

// Errors are those of the catalogue. Refuses what the physical model refuses, and wavefronts that are too steep for a
// window of 4096 samples.
QualityOutcome QualityOf(const physical::Eye& eye, const physical::Light& light, const QualityRequest& request,
                         QualityWorkspace& workspace);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_QUALITY_H
