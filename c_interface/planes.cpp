// Computes planes by the physical model, and images of objects.
#include <cmath>
#include <memory>
#include <utility>

#include "c_interface/arguments.h"
#include "c_interface/handles.h"
#include "c_interface/plane_facts.h"
#include "evaluation/evaluator.h"
#include "evaluation/model_notes.h"
#include "eye/rms.h"
#include "models/adapters/sized_image.h"
#include "models/physical/retinal_image.h"

namespace orvanel::c_interface {
namespace {

models::Results Compute(const orvanel_eye* eye, const orvanel_settings* settings, models::Needs needs) {
  RequirePointer(eye, "eye");
  RequireStruct(settings, "settings");
  evaluation::Evaluator evaluator({models::ModelKind::kPhysical, SettingsOf(*settings)});
  return evaluator.Evaluate(eye->eye, needs);
}

double LargestDifference(const targets::Plane& object, double surround) {
  double largest = 0.0;
  for (const double v : object) largest = std::max(largest, std::abs(v - surround));
  return largest;
}

}  // namespace
}  // namespace orvanel::c_interface

using namespace orvanel::c_interface;  // NOLINT(google-build-using-namespace): the functions of C have no namespace
using orvanel::models::Need;

orvanel_status orvanel_settings_default(orvanel_settings* settings) noexcept {
  return Call([&] {
    RequireStruct(settings, "settings");
    const orvanel::models::PhysicalSettings usual;
    *settings = {};
    settings->size = sizeof *settings;
    settings->light = ORVANEL_ONE_WAVELENGTH;
    settings->view = ORVANEL_PATIENT;
    settings->wavelength_nm = usual.light.front().wavelengthNm;
    settings->field_arcmin = usual.field.value();
    settings->samples = usual.samples;
    settings->origin = ORVANEL_AXIS;
  });
}

orvanel_status orvanel_psf(const orvanel_eye* eye, const orvanel_settings* settings, orvanel_plane** plane) noexcept {
  return Call(
      [&] {
        RequirePointer(plane, "plane");
        *plane = PsfOf(Compute(eye, settings, {Need::kPsf, Need::kStrehlPeak, Need::kWavefrontRange})).release();
      },
      ORVANEL_REFUSED);
}

orvanel_status orvanel_mtf(const orvanel_eye* eye, const orvanel_settings* settings, orvanel_plane** plane) noexcept {
  return Call(
      [&] {
        RequirePointer(plane, "plane");
        *plane = MtfOf(Compute(eye, settings, {Need::kMtf, Need::kWavefrontRange})).release();
      },
      ORVANEL_REFUSED);
}

orvanel_status orvanel_wavefront(const orvanel_eye* eye, const orvanel_settings* settings,
                                 orvanel_plane** plane) noexcept {
  return Call(
      [&] {
        RequirePointer(plane, "plane");
        *plane = WavefrontOf(Compute(eye, settings, {Need::kWavefront})).release();
      },
      ORVANEL_REFUSED);
}

orvanel_status orvanel_object(const orvanel_array* samples, double pixel_arcmin, double surround,
                              orvanel_plane** plane) noexcept {
  return Call([&] {
    RequireStruct(samples, "samples");
    RequirePointer(plane, "plane");
    const ArrayView array(*samples, 2, "samples");
    constexpr double kLargestSide = orvanel::physical::kLargestSide;
    const auto rows = static_cast<int>(RequireWithin(static_cast<double>(array.Size(0)), 1, kLargestSide, "rows"));
    const auto columns =
        static_cast<int>(RequireWithin(static_cast<double>(array.Size(1)), 1, kLargestSide, "columns"));
    RequireWithin(pixel_arcmin, 1e-6, 1e4, "pixel_arcmin");
    constexpr double kLargest = orvanel::physical::kLargestLuminance;
    RequireWithin(surround, -kLargest, kLargest, "surround");
    orvanel::targets::Plane object(columns, rows);
    for (std::size_t i = 0; i < object.size(); ++i) {
      object[i] = RequireWithin(array.At(i / array.Size(1), i % array.Size(1)), -kLargest, kLargest, "a sample");
    }
    auto made = PlaneOf(ORVANEL_OBJECT, std::move(object));
    SetAxes(*made, pixel_arcmin, (columns - 1) / 2.0, (rows - 1) / 2.0, "arcmin");
    made->facts.surround = surround;
    *plane = made.release();
  });
}

orvanel_status orvanel_image(const orvanel_eye* eye, const orvanel_settings* settings, const orvanel_plane* object,
                             orvanel_progress progress, void* data, orvanel_plane** plane) noexcept {
  return Call(
      [&] {
        RequirePointer(eye, "eye");
        RequireStruct(settings, "settings");
        RequirePointer(object, "object");
        RequirePointer(plane, "plane");
        if (object->facts.kind != ORVANEL_OBJECT) {
          throw ArgumentError("not_an_object", "the plane is no object; make one by orvanel_object or orvanel_chart",
                              {{"kind", static_cast<double>(object->facts.kind)}});
        }
        const orvanel::models::PhysicalSettings conditions = SettingsOf(*settings);
        orvanel::models::SizedImager imager(conditions);
        uint64_t done = 0;
        orvanel::models::SizedImage image = imager.ImageOf(
            eye->eye, {{object->samples}, {object->facts.surround}, orvanel::ArcMinutes(object->facts.x_step)},
            [&] { Report(progress, data, ++done, imager.Lines()); });
        auto made = PlaneOf(ORVANEL_IMAGE, std::move(image.seen.front()));
        made->facts.x_first = object->facts.x_first;
        made->facts.x_step = object->facts.x_step;
        made->facts.y_first = object->facts.y_first;
        made->facts.y_step = object->facts.y_step;
        made->facts.axis_unit = object->facts.axis_unit;
        made->facts.surround = object->facts.surround;
        made->facts.view = settings->view;
        const auto rms = Rms(eye->eye.coefficients.osa(), orvanel::eye::kLowestOrderThatBlurs);
        made->facts.error =
            StatedError(orvanel::evaluation::kImageError * LargestDifference(object->samples, object->facts.surround),
                        rms, conditions.light);
        *plane = made.release();
      },
      ORVANEL_REFUSED);
}

orvanel_status orvanel_plane_get_facts(const orvanel_plane* plane, orvanel_plane_facts* facts) noexcept {
  return Call([&] {
    RequirePointer(plane, "plane");
    RequireStruct(facts, "orvanel_plane_facts");
    const orvanel::targets::Plane& samples = plane->samples;
    *facts = plane->facts;
    facts->size = sizeof *facts;
    facts->warnings = plane->warnings.c_str();
    facts->notes = plane->notes.c_str();
    // Callers must not write what a handle owns.
    facts->samples = orvanel_matrix(const_cast<double*>(samples.data()), samples.rows(), samples.columns());
    facts->samples.owner = plane;
  });
}

void orvanel_plane_release(orvanel_plane* plane) noexcept { delete plane; }
