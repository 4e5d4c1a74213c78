// Makes eyes from numbers, texts and files, and returns what is known of them.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "c_interface/arguments.h"
#include "c_interface/handles.h"
#include "eye/adjustments.h"
#include "eye/conventions/errors.h"
#include "eye/errors.h"
#include "eye/plausibility.h"
#include "eye/prescription.h"
#include "eye/rms.h"
#include "files/eyes/any_eye.h"
#include "files/eyes/eye_file.h"
#include "orvanel/orvanel.h"

namespace orvanel::c_interface {
namespace {

orvanel_eye* Handle(eye::Eye eye) {
  std::string warnings;
  for (const std::string& warning : EyeWarnings(eye)) warnings += (warnings.empty() ? "" : "\n") + warning;
  return std::make_unique<orvanel_eye>(orvanel_eye{std::move(eye), std::move(warnings)}).release();
}

// What is written needs room for `count` elements; a null buffer asks for the number alone.
template <class Element>
void Write(const Element* from, std::size_t count, Element* buffer, uint64_t capacity) {
  if (buffer == nullptr) return;
  if (capacity < count) {
    throw Refused(
        {ORVANEL_TRUNCATED,
         "truncated",
         "the buffer has room for " + std::to_string(capacity) + " elements; it needs " + std::to_string(count),
         {{"capacity", static_cast<double>(capacity)}, {"needed", static_cast<double>(count)}}});
  }
  if (count > 0) std::memcpy(buffer, from, count * sizeof *from);
}

void RequireFinite(std::initializer_list<double> numbers, const char* name) {
  for (const double number : numbers) {
    if (!std::isfinite(number)) {
      throw ArgumentError("invalid_argument", std::string(name) + " is not finite", {{"argument", std::string(name)}});
    }
  }
}

// Empty if sphere and cylinder are 0.
std::optional<eye::Refraction> RefractionOf(double sphere, double cylinder, double axis, const char* name) {
  RequireFinite({sphere, cylinder, axis}, name);
  if (sphere == 0.0 && cylinder == 0.0) return std::nullopt;
  if (axis < 0.0 || axis > 180.0) throw eye::AxisOutOfRange(eye::Degrees(axis));
  return eye::Refraction{eye::Dioptres(sphere), eye::Dioptres(cylinder), eye::Degrees(axis)};
}

eye::Adjustments AdjustmentsOf(const orvanel_adjustments& given) {
  eye::Adjustments adjustments;
  if (const auto refraction = RefractionOf(given.sphere, given.cylinder, given.axis, "the refraction")) {
    adjustments.refraction = ToPowerVector(*refraction);
  }
  if (const auto lens = RefractionOf(given.lens_sphere, given.lens_cylinder, given.lens_axis, "the lens")) {
    adjustments.lens = eye::Lens{*lens, eye::VertexDistance(given.lens_vertex_mm)};
  }
  if (given.pupil_mm != 0.0) adjustments.pupil = Millimetres(given.pupil_mm);
  adjustments.extrapolate = given.extrapolate != 0;
  if (given.laterality != 0) {
    adjustments.mirror = SideOf(RequireChoice(given.laterality, ORVANEL_OS, "adjustments.laterality"));
  }
  if (given.highest_order != 0) {
    adjustments.highestOrder =
        static_cast<int>(RequireWithin(given.highest_order, 1, eye::kLargestOrder, "adjustments.highest_order"));
  }
  return adjustments;
}

}  // namespace
}  // namespace orvanel::c_interface

using namespace orvanel::c_interface;  // NOLINT(google-build-using-namespace): the functions of C have no namespace

uint32_t orvanel_interface_version() noexcept { return ORVANEL_INTERFACE; }
const char* orvanel_version() noexcept { return ORVANEL_VERSION; }

orvanel_array orvanel_vector(double* data, int64_t count) noexcept {
  return {sizeof(orvanel_array), data, 1, 0, {count, 0, 0}, {sizeof(double), 0, 0}, nullptr};
}

orvanel_array orvanel_matrix(double* data, int64_t rows, int64_t columns) noexcept {
  const auto row = static_cast<int64_t>(static_cast<uint64_t>(columns) * sizeof(double));
  return {sizeof(orvanel_array), data, 2, 0, {rows, columns, 0}, {row, sizeof(double), 0}, nullptr};
}

orvanel_convention orvanel_osa_convention() noexcept { return ConventionOf(orvanel::eye::kOsaConvention); }

orvanel_status orvanel_eye_create(const orvanel_eye_input* input, orvanel_eye** eye) noexcept {
  return Call([&] {
    RequireStruct(input, "orvanel_eye_input");
    RequirePointer(eye, "eye");
    if (input->name != nullptr) RequireText(input->name, "name");
    const ArrayView coefficients(input->coefficients, 1, "coefficients");
    const orvanel::eye::Convention convention = ConventionOf(input->convention);
    if (coefficients.Size(0) > orvanel::eye::kMaxTerms) {
      throw orvanel::eye::ListTooLong(coefficients.Size(0), convention.scheme, orvanel::eye::kMaxTerms);
    }
    std::vector<double> numbers(coefficients.Size(0));
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = coefficients.At(i);
    orvanel::eye::Eye made = EyeOf(numbers, convention, orvanel::Millimetres(input->pupil_mm),
                                   SideOf(input->laterality), ReferenceOf(input->reference_nm));
    if (input->name != nullptr) made.name = input->name;
    *eye = Handle(std::move(made));
  });
}

orvanel_status orvanel_eye_parse(const char* text, uint64_t length, orvanel_eye** eye) noexcept {
  return Call([&] {
    RequirePointer(text, "text");
    RequirePointer(eye, "eye");
    constexpr uint64_t kLongest = 1U << 20U;
    RequireWithin(static_cast<double>(length), 0.0, static_cast<double>(kLongest), "length");
    *eye = Handle(Adjusted(orvanel::files::EyeOfBytes("text", std::string(text, length)), {}));
  });
}

orvanel_status orvanel_eye_read(const char* path, uint64_t row, orvanel_eye** eye) noexcept {
  return Call(
      [&] {
        RequireText(path, "path");
        RequirePointer(eye, "eye");
        *eye = Handle(
            Adjusted(orvanel::files::ReadEye(path, {}, row == 0 ? std::nullopt : std::optional<std::size_t>(row)), {}));
      },
      ORVANEL_FILE);
}

void orvanel_eye_release(orvanel_eye* eye) noexcept { delete eye; }

orvanel_status orvanel_eye_get_facts(const orvanel_eye* eye, orvanel_eye_facts* facts) noexcept {
  return Call([&] {
    RequirePointer(eye, "eye");
    RequireStruct(facts, "orvanel_eye_facts");
    const orvanel::eye::Eye& its = eye->eye;
    facts->pupil_mm = its.pupil.value();
    facts->reference_nm = its.referenceWavelength ? its.referenceWavelength->value() : 0.0;
    facts->laterality = LateralityOf(its.side);
    facts->reserved = 0;
    facts->terms = its.coefficients.osa().size();
    facts->convention = ConventionOf(its.coefficients.convention());
    facts->name = its.name.c_str();
    facts->warnings = eye->warnings.c_str();
  });
}

orvanel_status orvanel_eye_text(const orvanel_eye* eye, char* buffer, uint64_t capacity, uint64_t* length) noexcept {
  return Call([&] {
    RequirePointer(eye, "eye");
    RequirePointer(length, "length");
    const std::string text = orvanel::files::EyeFileText(eye->eye);
    *length = text.size();
    Write(text.c_str(), text.size() + 1, buffer, capacity);
  });
}

orvanel_status orvanel_eye_coefficients(const orvanel_eye* eye, const orvanel_convention* convention, double* buffer,
                                        uint64_t capacity, uint64_t* count) noexcept {
  return Call([&] {
    RequirePointer(eye, "eye");
    RequireStruct(convention, "orvanel_convention");
    RequirePointer(count, "count");
    const orvanel::eye::Convention wanted = ConventionOf(*convention);
    const std::vector<double> list = ToList(wanted.scheme, eye->eye.coefficients.In(wanted));
    *count = list.size();
    Write(list.data(), list.size(), buffer, capacity);
  });
}

orvanel_status orvanel_eye_rms(const orvanel_eye* eye, int32_t first, int32_t last, double* rms_um) noexcept {
  return Call([&] {
    RequirePointer(eye, "eye");
    RequirePointer(rms_um, "rms_um");
    RequireWithin(first, 0, orvanel::eye::kLargestOrder, "first");
    RequireWithin(last, first, orvanel::eye::kLargestOrder, "last");
    *rms_um = Rms(eye->eye.coefficients.osa(), first, last).value();
  });
}

orvanel_status orvanel_eye_refraction(const orvanel_eye* eye, int32_t method, orvanel_refraction* refraction) noexcept {
  return Call([&] {
    RequirePointer(eye, "eye");
    RequireStruct(refraction, "orvanel_refraction");
    const auto& osa = eye->eye.coefficients.osa();
    const orvanel::eye::PowerVector powers = RequireChoice(method, 2, "method") == ORVANEL_LEAST_SQUARES
                                                 ? LeastSquaresRefraction(osa, eye->eye.pupil)
                                                 : ParaxialRefraction(osa, eye->eye.pupil);
    const orvanel::eye::Refraction clinical = ToRefraction(powers, orvanel::eye::CylinderSign::kMinus);
    *refraction = {sizeof *refraction, clinical.sphere.value(), clinical.cylinder.value(), clinical.axis.value(),
                   powers.m.value(),   powers.j0.value(),       powers.j45.value()};
  });
}

orvanel_status orvanel_eye_adjusted(const orvanel_eye* eye, const orvanel_adjustments* adjustments,
                                    orvanel_eye** adjusted) noexcept {
  return Call([&] {
    RequirePointer(eye, "eye");
    RequireStruct(adjustments, "orvanel_adjustments");
    RequirePointer(adjusted, "adjusted");
    *adjusted = Handle(Adjusted(eye->eye, AdjustmentsOf(*adjustments)));
  });
}
