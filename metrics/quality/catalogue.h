// Lists the metrics of image quality: one table, from which help, documents, files and columns are made.
#ifndef ORVANEL_METRICS_QUALITY_CATALOGUE_H
#define ORVANEL_METRICS_QUALITY_CATALOGUE_H

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace orvanel::metrics {

// In the order of the table.
enum class QualityMetric {
  kRmsW,
  kPv,
  kRmsS,
  kBave,
  kPfWc,
  kPfSc,
  kPfCc,
  kPfWt,
  kPfSt,
  kPfCt,
  kD50,
  kEw,
  kSm,
  kHwhh,
  kCw,
  kSrx,
  kLib,
  kStd,
  kEnt,
  kNs,
  kVsx,
  kSfcMtf,
  kSfcOtf,
  kAreaMtf,
  kAreaOtf,
  kSrMtf,
  kSrOtf,
  kVsMtf,
  kVsOtf,
  kVotf,
  kVnotf,
};
constexpr std::size_t kQualityMetrics = 31;

enum class QualityPlane {
  kPupil,      // the wavefront alone
  kImage,      // the image of a point
  kFrequency,  // the optical transfer function
};

struct QualityRow {
  QualityMetric metric;
  const char* name;        // as papers and commands write it
  const char* unit;        // "1" for pure numbers
  const char* definition;  // one sentence
  const char* source;
  bool higherIsBetter;
  QualityPlane plane;
  bool isRatio;       // to the pupil without aberration, or a share; false for a quantity in a unit
  bool usesOrigin;    // depends on the place that counts as the middle of the image
  bool usesContrast;  // depends on the contrast sensitivity
  bool hasGradient;   // by the modes; false for maxima, areas above a level, and cut-offs, which are not smooth
  double error;       // absolute for ratios, else relative; of monochromatic light, up to 2 waves RMS
};

// All rows, in the order of QualityMetric.
std::span<const QualityRow> QualityCatalogue();

const QualityRow& RowOf(QualityMetric metric);

// The metric of this name; letter case does not count.
std::optional<QualityMetric> QualityMetricNamed(std::string_view name);

// Numbers that definitions mention.
constexpr double kTilesAcross = 50.0;           // of the pupil, for PFWt
constexpr double kEntropyRadiusArcmin = 10.0;   // of ENT's window about the origin
constexpr double kUsualGaussianSdArcmin = 1.0;  // of NS
constexpr double kLongestLogVsxOfAcuity = 0.0;  // the regression of acuity holds between these values of log10 VSX
constexpr double kShortestLogVsxOfAcuity = -0.9;

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_CATALOGUE_H
