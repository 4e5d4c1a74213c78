// Every number of the caller's is checked before it is used.
#include "c_interface/arguments.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "base/number_text.h"
#include "base/utf8.h"
#include "base/wavelength_range.h"
#include "eye/adjustments.h"
#include "eye/conventions/errors.h"
#include "eye/conventions/partial_convention.h"
#include "metrics/quality_names.h"

namespace orvanel::c_interface {
namespace {

using eye::Convention;

[[noreturn]] void Refuse(const char* name, const std::string& what) {
  throw ArgumentError("invalid_argument", std::string(name) + " " + what, {{"argument", std::string(name)}});
}

// More elements are no array in memory.
constexpr int64_t kMostElements = int64_t{1} << 40;

constexpr double kLargestField = 600.0;  // arc minutes
constexpr int kMostSamples = 4096;
constexpr uint64_t kMostLines = 10000;
constexpr uint64_t kMostPoints = 10000;

}  // namespace

void RequirePointer(const void* pointer, const char* name) {
  if (pointer == nullptr) Refuse(name, "is null; pass an address");
}

void RequireText(const char* text, const char* name) {
  RequirePointer(text, name);
  if (!IsUtf8(text)) Refuse(name, "is not UTF-8, as all texts of this interface are; convert it");
}

void RequireSize(uint64_t given, std::size_t wanted, const char* name) {
  if (given == wanted) return;
  throw ArgumentError("wrong_size",
                      std::string(name) + ": its member `size` is " + std::to_string(given) + ", but this library's " +
                          "struct has " + std::to_string(wanted) +
                          " bytes; set it to sizeof, and compile with the header of this library",
                      {{"argument", std::string(name)},
                       {"given", static_cast<double>(given)},
                       {"wanted", static_cast<double>(wanted)}});
}

int RequireChoice(int32_t value, int last, const char* name) {
  if (value == 0) Refuse(name, "is not stated; set it to one of the constants of the header");
  if (value < 1 || value > last) Refuse(name, "is " + std::to_string(value) + ", which is none of its constants");
  return value;
}

double RequireWithin(double value, double low, double high, const char* name) {
  if (!(value >= low && value <= high)) {
    Refuse(name, "is " + ShortestText(value) + ", outside of " + ShortestText(low) + " to " + ShortestText(high));
  }
  return value;
}

ArrayView::ArrayView(const orvanel_array& array, int dimensions, const char* name) : array_(array), name_(name) {
  RequireSize(array.size, sizeof array, name);
  if (array.data == nullptr && array.dimensions == 0) {  // no array
    for (int64_t& length : array_.shape) length = 0;
    return;
  }
  if (array.dimensions != dimensions) {
    Refuse(name, "has " + std::to_string(array.dimensions) + " dimensions; it needs " + std::to_string(dimensions));
  }
  int64_t elements = 1;
  for (int i = 0; i < dimensions; ++i) {
    const int64_t length = array.shape[i];
    if (length < 0 || length > kMostElements) Refuse(name, "has a length of " + std::to_string(length));
    if (length > 0 && elements > kMostElements / length) Refuse(name, "has more elements than memory can hold");
    elements *= length;
  }
  if (elements > 0 && array.data == nullptr) Refuse(name, "has no data; pass their address");
}

void ArrayView::RequireShape(std::initializer_list<std::size_t> shape) const {
  if (!HasData()) return;
  int i = 0;
  std::string is, wanted;
  bool same = true;
  for (const std::size_t length : shape) {
    same = same && Size(i) == length;
    is += (i > 0 ? " x " : "") + std::to_string(Size(i));
    wanted += (i > 0 ? " x " : "") + std::to_string(length);
    ++i;
  }
  if (!same) Refuse(name_, "has the shape " + is + "; it needs " + wanted);
}

char* ArrayView::Place(std::size_t i, std::size_t j, std::size_t k) const {
  const std::size_t at[3] = {i, j, k};
  int64_t offset = 0;
  for (int d = 0; d < 3; ++d) offset += static_cast<int64_t>(at[d]) * array_.strides[d];
  return reinterpret_cast<char*>(array_.data) + offset;
}

double ArrayView::At(std::size_t i, std::size_t j) const {
  double value = 0.0;
  std::memcpy(&value, Place(i, j, 0), sizeof value);
  return value;
}

void ArrayView::Set(double value, std::size_t i, std::size_t j, std::size_t k) const {
  if (HasData()) std::memcpy(Place(i, j, k), &value, sizeof value);
}

Convention ConventionOf(const orvanel_convention& given) {
  RequireSize(given.size, sizeof given, "convention");
  constexpr eye::Unit kUnits[] = {eye::Unit::kMicrometres, eye::Unit::kMillimetres, eye::Unit::kNanometres,
                                  eye::Unit::kWaves};
  Convention convention;
  convention.unit = kUnits[RequireChoice(given.unit, 4, "convention.unit") - 1];
  convention.normalisation = RequireChoice(given.normalisation, 2, "convention.normalisation") == ORVANEL_ORTHONORMAL
                                 ? eye::Normalisation::kOrthonormal
                                 : eye::Normalisation::kNone;
  constexpr eye::IndexScheme kSchemes[] = {eye::IndexScheme::kOsa, eye::IndexScheme::kNoll, eye::IndexScheme::kFringe};
  convention.scheme = kSchemes[RequireChoice(given.indexing, 3, "convention.indexing") - 1];
  convention.yAxis =
      RequireChoice(given.y_axis, 2, "convention.y_axis") == ORVANEL_Y_UP ? eye::YAxis::kUp : eye::YAxis::kDown;
  if (convention.unit == eye::Unit::kWaves) {
    convention.wavelength =
        Nanometres(RequireWithin(given.wavelength_nm, kShortestNm, kLongestNm, "convention.wavelength_nm"));
  } else if (given.wavelength_nm != 0.0) {
    throw eye::WavelengthWithoutWaves(convention.unit);
  }
  return convention;
}

orvanel_convention ConventionOf(const Convention& convention) {
  orvanel_convention given{};
  given.size = sizeof given;
  switch (convention.unit) {
    case eye::Unit::kMicrometres:
      given.unit = ORVANEL_UM;
      break;
    case eye::Unit::kMillimetres:
      given.unit = ORVANEL_MM;
      break;
    case eye::Unit::kNanometres:
      given.unit = ORVANEL_NM;
      break;
    case eye::Unit::kWaves:
      given.unit = ORVANEL_WAVES;
      given.wavelength_nm = convention.wavelength.value();
      break;
  }
  given.normalisation =
      convention.normalisation == eye::Normalisation::kOrthonormal ? ORVANEL_ORTHONORMAL : ORVANEL_NOT_NORMALISED;
  switch (convention.scheme) {
    case eye::IndexScheme::kNoll:
      given.indexing = ORVANEL_NOLL;
      break;
    case eye::IndexScheme::kFringe:
      given.indexing = ORVANEL_FRINGE;
      break;
    case eye::IndexScheme::kOsa:
    case eye::IndexScheme::kNamed:
      given.indexing = ORVANEL_OSA;
      break;
  }
  given.y_axis = convention.yAxis == eye::YAxis::kUp ? ORVANEL_Y_UP : ORVANEL_Y_DOWN;
  return given;
}

eye::Side SideOf(int32_t laterality) {
  constexpr eye::Side kSides[] = {eye::Side::kOd, eye::Side::kOs, eye::Side::kUnknown};
  return kSides[RequireChoice(laterality, 3, "laterality") - 1];
}

int32_t LateralityOf(eye::Side side) {
  switch (side) {
    case eye::Side::kOd:
      return ORVANEL_OD;
    case eye::Side::kOs:
      return ORVANEL_OS;
    case eye::Side::kUnknown:
      break;
  }
  return ORVANEL_LATERALITY_NOT_STATED;
}

std::optional<Nanometres> ReferenceOf(double nanometres) {
  if (nanometres == 0.0) return std::nullopt;
  return Nanometres(RequireWithin(nanometres, kShortestNm, kLongestNm, "reference_nm"));
}

eye::Eye EyeOf(const std::vector<double>& numbers, const Convention& convention, Millimetres pupil, eye::Side side,
               std::optional<Nanometres> reference) {
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (std::isfinite(numbers[i])) continue;
    const std::size_t index = i + (convention.scheme == eye::IndexScheme::kOsa ? 0 : 1);
    throw Refused({ORVANEL_INVALID_EYE,
                   "coefficient_not_finite",
                   "the coefficient of index " + std::to_string(index) + " is not finite; state a number, 0 for none",
                   {{"index", static_cast<double>(index)}}});
  }
  eye::Eye eye;
  eye.pupil = pupil;
  eye.side = side;
  eye.referenceWavelength = reference;
  eye.coefficients = eye::EyeCoefficients(convention, FromList(convention.scheme, numbers));
  return Adjusted(std::move(eye), {});
}

models::PhysicalSettings SettingsOf(const orvanel_settings& given) {
  RequireSize(given.size, sizeof given, "settings");
  models::PhysicalSettings settings;
  switch (RequireChoice(given.light, 3, "settings.light")) {
    case ORVANEL_WHITE:
      settings.light = physical::WhiteLight();
      break;
    case ORVANEL_SPECTRUM:
      RequirePointer(given.wavelengths_nm, "settings.wavelengths_nm");
      RequirePointer(given.weights, "settings.weights");
      if (given.lines < 1 || given.lines > kMostLines) {
        Refuse("settings.lines", "is " + std::to_string(given.lines) + ", outside of 1 to 10000");
      }
      settings.light.clear();
      for (uint64_t i = 0; i < given.lines; ++i) {
        settings.light.push_back({given.wavelengths_nm[i], given.weights[i]});
      }
      break;
    default:
      settings.light = {{RequireWithin(given.wavelength_nm, kShortestNm, kLongestNm, "settings.wavelength_nm"), 1.0}};
  }
  settings.view = RequireChoice(given.view, 2, "settings.view") == ORVANEL_PATIENT ? physical::View::kPatient
                                                                                   : physical::View::kRetina;
  settings.field = ArcMinutes(RequireWithin(given.field_arcmin, 1e-3, kLargestField, "settings.field_arcmin"));
  settings.samples = static_cast<int>(RequireWithin(given.samples, 2, kMostSamples, "settings.samples"));
  constexpr physical::Origin kOrigins[] = {physical::Origin::kAxis, physical::Origin::kPeak,
                                           physical::Origin::kCentroid};
  settings.origin = kOrigins[RequireChoice(given.origin, 3, "settings.origin") - 1];
  settings.stilesCrawford = {given.stiles_crawford_rho, given.stiles_crawford_x_mm, given.stiles_crawford_y_mm};
  settings.achromaticAxisXmm = given.achromatic_axis_x_mm;
  settings.achromaticAxisYmm = given.achromatic_axis_y_mm;
  return settings;
}

metrics::QualityRequest QualityRequestOf(const orvanel_metrics_request& given) {
  RequireSize(given.size, sizeof given, "metrics request");
  RequireText(given.metrics, "metrics");
  using metrics::QualityOrigin;
  metrics::QualityRequest request;
  request.metrics = metrics::QualityMetricsNamed(given.metrics);
  constexpr QualityOrigin kOrigins[] = {QualityOrigin::kAxis, QualityOrigin::kPeak, QualityOrigin::kCentroid,
                                        QualityOrigin::kBest};
  request.origin = kOrigins[RequireChoice(given.origin, 4, "origin") - 1];
  request.reference = RequireChoice(given.reference, 2, "reference") == ORVANEL_SAME_LIGHT
                          ? metrics::QualityReference::kSameLight
                          : metrics::QualityReference::kMonochromatic;
  request.gaussianSdArcmin = RequireWithin(given.gaussian_sd_arcmin, metrics::kSmallestGaussianSdArcmin,
                                           metrics::kLargestGaussianSdArcmin, "gaussian_sd_arcmin");
  if (given.csf_frequencies == nullptr && given.csf_sensitivities == nullptr && given.csf_points == 0) return request;
  RequirePointer(given.csf_frequencies, "csf_frequencies");
  RequirePointer(given.csf_sensitivities, "csf_sensitivities");
  if (given.csf_points < 2 || given.csf_points > kMostPoints) {
    Refuse("csf_points", "is " + std::to_string(given.csf_points) + ", outside of 2 to 10000");
  }
  std::vector<metrics::ContrastSensitivity::Point> points;
  for (uint64_t i = 0; i < given.csf_points; ++i) {
    points.push_back({given.csf_frequencies[i], given.csf_sensitivities[i]});
  }
  int wrong = 0;
  auto contrast = metrics::ContrastSensitivity::Of(std::move(points), wrong);
  if (!contrast) {
    Refuse("csf_frequencies", "or the sensitivity beside it is wrong at point " + std::to_string(wrong) +
                                  " (from 0); frequencies rise from 0 or more, and sensitivities are at least 0");
  }
  request.contrast = *std::move(contrast);
  return request;
}

int32_t NoteOf(metrics::QualityNote note) {
  using metrics::QualityNote;
  switch (note) {
    case QualityNote::kNone:
      return ORVANEL_NO_NOTE;
    case QualityNote::kPlaceNotUnique:
      return ORVANEL_PLACE_NOT_UNIQUE;
    case QualityNote::kBelowZero:
      return ORVANEL_BELOW_ZERO;
    case QualityNote::kEmptyReference:
      return ORVANEL_EMPTY_REFERENCE;
    case QualityNote::kOutsideWindow:
      return ORVANEL_OUTSIDE_WINDOW;
    case QualityNote::kEndOfContrast:
      return ORVANEL_END_OF_CONTRAST;
  }
  return ORVANEL_NO_NOTE;
}

}  // namespace orvanel::c_interface
