// Gives each error of the layers below its status, code and fields.
#include "c_interface/call.h"

#include <new>
#include <stdexcept>

#include "base/number_text.h"
#include "base/utf8.h"
#include "evaluation/errors.h"
#include "eye/conventions/errors.h"
#include "eye/errors.h"
#include "files/errors.h"
#include "metrics/errors.h"
#include "models/adapters/physical_refusal.h"
#include "models/errors.h"

namespace orvanel::c_interface {
namespace {

const char* CodeOf(physical::Problem problem) {
  using Problem = physical::Problem;
  switch (problem) {
    case Problem::kPupilDiameter:
      return "pupil_out_of_range";
    case Problem::kMode:
      return "coefficient_not_finite";
    case Problem::kOutline:
      return "outline_invalid";
    case Problem::kStilesCrawford:
      return "stiles_crawford_out_of_range";
    case Problem::kAchromaticAxis:
      return "achromatic_axis_out_of_range";
    case Problem::kReferenceWavelength:
      return "reference_wavelength_out_of_range";
    case Problem::kNoReferenceWavelength:
      return "reference_wavelength_missing";
    case Problem::kNoLight:
      return "light_missing";
    case Problem::kWavelength:
      return "wavelength_out_of_range";
    case Problem::kWeight:
      return "weight_invalid";
    case Problem::kGridSpacing:
      return "spacing_out_of_range";
    case Problem::kGridSize:
      return "samples_out_of_range";
    case Problem::kGridCentre:
      return "centre_out_of_range";
    case Problem::kFrequency:
      return "frequency_out_of_range";
    case Problem::kPixelSize:
      return "pixel_out_of_range";
    case Problem::kObjectSize:
      return "object_out_of_range";
    case Problem::kMargin:
      return "margin_out_of_range";
    case Problem::kLuminance:
      return "luminance_invalid";
    case Problem::kFieldTooLarge:
      return "field_too_large";
    case Problem::kTooSteep:
      return "wavefront_too_steep";
    case Problem::kTooManyNodes:
      return "wavefront_or_field_too_large";
    case Problem::kPlace:
      return "place_out_of_range";
    case Problem::kRadius:
      return "radius_out_of_range";
    case Problem::kDirection:
      return "direction_not_finite";
  }
  return "refused";
}

// Each returns the reason of an error whose class it knows; else the status is ORVANEL_OK.
Reason ReasonOfEye(const Error& error) {
  const std::string text = error.what();
  if (const auto* const e = dynamic_cast<const PupilLargerThanMeasured*>(&error)) {
    return {ORVANEL_REFUSED,
            "pupil_larger_than_measured",
            text,
            {{"wanted_mm", e->wanted.value()}, {"measured_mm", e->measured.value()}}};
  }
  if (const auto* const e = dynamic_cast<const OrderAboveHighest*>(&error)) {
    return {ORVANEL_REFUSED,
            "order_above_highest",
            text,
            {{"n", static_cast<double>(e->term.n)},
             {"m", static_cast<double>(e->term.m)},
             {"number", e->number},
             {"highest", static_cast<double>(e->highest)}}};
  }
  if (const auto* const e = dynamic_cast<const LateralityUnknown*>(&error)) {
    return {ORVANEL_INVALID_EYE, "laterality_unknown", text, {{"wanted", std::string(Word(e->wanted))}}};
  }
  if (const auto* const e = dynamic_cast<const ImplausiblePupil*>(&error)) {
    return {ORVANEL_INVALID_EYE, "pupil_implausible", text, {{"pupil_mm", e->pupil.value()}}};
  }
  if (const auto* const e = dynamic_cast<const ImplausibleWavefront*>(&error)) {
    return {ORVANEL_INVALID_EYE, "wavefront_implausible", text, {{"rms_um", e->rms.value()}}};
  }
  if (const auto* const e = dynamic_cast<const ListTooLong*>(&error)) {
    return {ORVANEL_INVALID_EYE,
            "too_many_coefficients",
            text,
            {{"length", static_cast<double>(e->length)}, {"longest", static_cast<double>(e->longest)}}};
  }
  if (const auto* const e = dynamic_cast<const TermNotInScheme*>(&error)) {
    return {ORVANEL_REFUSED,
            "term_not_in_scheme",
            text,
            {{"n", static_cast<double>(e->term.n)}, {"m", static_cast<double>(e->term.m)}, {"number", e->number}}};
  }
  if (const auto* const e = dynamic_cast<const IncompleteConvention*>(&error)) {
    Reason reason{ORVANEL_INVALID_EYE, "convention_incomplete", text, {}};
    for (const MissingPart& part : e->missing) reason.fields.emplace_back(part.key, part.values);
    return reason;
  }
  return {};
}

Reason ReasonOfRequest(const Error& error) {
  const std::string text = error.what();
  if (const auto* const e = dynamic_cast<const UnknownMetric*>(&error)) {
    return {ORVANEL_INVALID_ARGUMENT,
            "unknown_metric",
            text,
            {{"wanted", e->wanted}, {"known", e->known}, {"near", e->near}}};
  }
  if (const auto* const e = dynamic_cast<const GaussianSdOutOfRange*>(&error)) {
    return {ORVANEL_INVALID_ARGUMENT,
            "gaussian_sd_out_of_range",
            text,
            {{"sd", e->sd}, {"lowest", e->lowest}, {"highest", e->highest}}};
  }
  if (const auto* const e = dynamic_cast<const AxisOutOfRange*>(&error)) {
    return {ORVANEL_INVALID_ARGUMENT, "axis_out_of_range", text, {{"axis", e->axis.value()}}};
  }
  if (const auto* const e = dynamic_cast<const VertexOutOfRange*>(&error)) {
    return {ORVANEL_INVALID_ARGUMENT, "vertex_out_of_range", text, {{"vertex_mm", e->vertex.value()}}};
  }
  if (const auto* const e = dynamic_cast<const FocusInFrontOfCornea*>(&error)) {
    return {ORVANEL_REFUSED,
            "focus_in_front_of_cornea",
            text,
            {{"power", e->power.value()}, {"vertex_mm", e->vertex.value()}}};
  }
  if (const auto* const e = dynamic_cast<const RingTooSmall*>(&error)) {
    return {ORVANEL_REFUSED, "ring_too_small", text, {{"acuity", e->acuity}}};
  }
  if (const auto* const e = dynamic_cast<const WavefrontTooHigh*>(&error)) {
    return {ORVANEL_REFUSED, "wavefront_too_high", text, {{"bound_mm", e->bound.value()}}};
  }
  if (const auto* const e = dynamic_cast<const PupilOutOfRange*>(&error)) {
    return {ORVANEL_REFUSED, "pupil_out_of_range", text, {{"pupil_mm", e->pupil.value()}}};
  }
  if (const auto* const e = dynamic_cast<const TooFewThreads*>(&error)) {
    return {ORVANEL_REFUSED, "too_few_threads", text, {{"started", static_cast<double>(e->started)}}};
  }
  if (const auto* const e = dynamic_cast<const ErrorAt*>(&error)) {
    return {ORVANEL_INVALID_EYE,
            "file_invalid",
            text,
            {{"line", static_cast<double>(e->place.line)}, {"column", static_cast<double>(e->place.column)}}};
  }
  return {};
}

// Without a status and a code for other errors.
Reason ReasonOf(const Error& error) {
  const std::string text = error.what();
  if (const auto* const e = dynamic_cast<const Refused*>(&error)) return e->reason;
  if (const auto* const e = dynamic_cast<const ArgumentError*>(&error)) {
    return {ORVANEL_INVALID_ARGUMENT, e->code, text, e->fields};
  }
  if (const auto* const e = dynamic_cast<const PhysicalRefusal*>(&error)) {
    const physical::Refusal& r = e->refusal;
    return {ORVANEL_REFUSED,
            CodeOf(r.problem),
            text,
            {{"value", r.value}, {"low", r.low}, {"high", r.high}, {"index", static_cast<double>(r.index)}}};
  }
  if (Reason reason = ReasonOfEye(error); reason.status != ORVANEL_OK) return reason;
  if (Reason reason = ReasonOfRequest(error); reason.status != ORVANEL_OK) return reason;
  return {ORVANEL_OK, "", text, {}};
}

const char* CodeOf(orvanel_status status) {
  switch (status) {
    case ORVANEL_INVALID_ARGUMENT:
      return "invalid_argument";
    case ORVANEL_INVALID_EYE:
      return "invalid_eye";
    case ORVANEL_FILE:
      return "file";
    default:
      return "refused";
  }
}

}  // namespace

Field::Field(std::string itsName, double itsNumber) : Field(std::move(itsName), ShortestText(itsNumber), itsNumber) {}

void KeptReason::Keep(Reason reason) {
  noMemory_ = false;
  fields_.clear();
  reason_ = std::move(reason);
  // Words of a file may have another encoding.
  reason_.text = Utf8Of(reason_.text);
  for (Field& field : reason_.fields) field.text = Utf8Of(field.text);
  status_ = reason_.status;
  for (const Field& field : reason_.fields) {
    fields_.push_back({field.name.c_str(), field.text.c_str(), field.number});
  }
}

void KeptReason::KeepNoMemory() noexcept {
  status_ = ORVANEL_NO_MEMORY;
  noMemory_ = true;
}

void KeptReason::Fill(orvanel_error& error) const {
  error.status = status_;
  error.reserved = 0;
  error.code = noMemory_ ? "no_memory" : reason_.code.c_str();
  error.text = noMemory_ ? "memory ran out; compute fewer or smaller planes at once" : reason_.text.c_str();
  error.fields = noMemory_ ? nullptr : fields_.data();
  error.field_count = noMemory_ ? 0 : fields_.size();
}

KeptReason& LastReason() {
  thread_local KeptReason last;
  return last;
}

Reason ReasonOfException(orvanel_status status) {
  try {
    throw;
  } catch (const Error& error) {
    Reason reason = ReasonOf(error);
    if (reason.status == ORVANEL_OK) reason.status = status;
    if (reason.code.empty()) reason.code = CodeOf(reason.status);
    return reason;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::length_error&) {  // a size that no memory has
    throw std::bad_alloc();
  } catch (const std::exception& error) {
    return {ORVANEL_INTERNAL, "internal", std::string("a fault of the library: ") + error.what(), {}};
  } catch (...) {
    return {ORVANEL_INTERNAL, "internal", "a fault of the library", {}};
  }
}

orvanel_status KeepException(orvanel_status status) noexcept {
  KeptReason& last = LastReason();
  try {
    last.Keep(ReasonOfException(status));
  } catch (...) {
    last.KeepNoMemory();
  }
  return last.status();
}

void Report(orvanel_progress progress, void* data, uint64_t done, uint64_t total) {
  if (progress != nullptr && progress(data, done, total) != 0) {
    throw Refused({ORVANEL_CANCELLED, "cancelled", "the progress function ended the call", {}});
  }
}

}  // namespace orvanel::c_interface

using orvanel::c_interface::LastReason;

orvanel_status orvanel_last_error(orvanel_error* error) noexcept {
  // The last error stays as it is.
  if (error == nullptr || error->size != sizeof *error) return ORVANEL_INVALID_ARGUMENT;
  LastReason().Fill(*error);
  return ORVANEL_OK;
}
