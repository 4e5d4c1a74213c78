// Copies scales, errors and notes of results into the facts of planes.
#include "c_interface/plane_facts.h"

#include <limits>
#include <utility>

#include "evaluation/model_notes.h"
#include "evaluation/warnings.h"

namespace orvanel::c_interface {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

std::unique_ptr<orvanel_plane> PlaneOfResults(int32_t kind, targets::Plane samples, const models::Results& results) {
  auto plane = PlaneOf(kind, std::move(samples));
  plane->notes = Lines(evaluation::ModelNotes(results));
  plane->warnings = Lines(evaluation::Warnings(results));
  plane->facts.view =
      !results.physical || results.physical->view != eye::View::kPatient ? ORVANEL_RETINA : ORVANEL_PATIENT;
  return plane;
}

}  // namespace

double StatedError(double error, Micrometres rms, const physical::Light& light) {
  return evaluation::WavesRms(rms, light) > evaluation::kLargestStatedWaves ? kNone : error;
}

std::unique_ptr<orvanel_plane> PlaneOf(int32_t kind, targets::Plane samples) {
  auto plane = std::make_unique<orvanel_plane>();
  plane->samples = std::move(samples);
  orvanel_plane_facts& facts = plane->facts;
  facts.kind = kind;
  facts.axis_unit = facts.value_unit = "1";
  for (double* const number :
       {&facts.error, &facts.origin_x, &facts.origin_y, &facts.strehl_axis, &facts.strehl_peak, &facts.peak_x,
        &facts.peak_y, &facts.light_share, &facts.cut_off, &facts.surround, &facts.strehl_sample, &facts.half_width_mm,
        &facts.frequency_range, &facts.effective_acuity}) {
    *number = kNone;
  }
  return plane;
}

void SetAxes(orvanel_plane& plane, double step, double centre, const char* unit) {
  SetAxes(plane, step, centre, centre, unit);
}

void SetAxes(orvanel_plane& plane, double step, double centreX, double centreY, const char* unit) {
  orvanel_plane_facts& facts = plane.facts;
  facts.x_first = -centreX * step;
  facts.x_step = step;
  facts.y_first = centreY * step;
  facts.y_step = -step;
  facts.axis_unit = unit;
}

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

std::unique_ptr<orvanel_plane> PsfOf(models::Results results) {
  auto plane = PlaneOfResults(ORVANEL_PSF, targets::Plane(), results);
  orvanel_plane_facts& facts = plane->facts;
  SetAxes(*plane, results.retinaAxis.step.value(), results.retinaAxis.centre, "arcmin");
  if (const auto& own = results.physical) {
    facts.error = StatedError(evaluation::kPsfError, results.wavefront.rms, own->light);
    facts.origin_x = own->originX.value();
    facts.origin_y = own->originY.value();
    facts.strehl_axis = own->strehl.axis;
    facts.strehl_peak = own->strehl.peak;
    facts.peak_x = own->strehl.peakX;
    facts.peak_y = own->strehl.peakY;
    facts.light_share = own->psfLight;
    facts.cut_off = own->cutOff.value();
  } else {
    facts.strehl_sample = results.strehl;
    facts.half_width_mm = results.scales.library.halfWidth.value();
  }
  plane->samples = std::move(results.psf);
  return plane;
}

std::unique_ptr<orvanel_plane> MtfOf(models::Results results) {
  auto plane = PlaneOfResults(ORVANEL_MTF, targets::Plane(), results);
  orvanel_plane_facts& facts = plane->facts;
  SetAxes(*plane, results.frequencyAxis.step.value(), results.frequencyAxis.centre, "c/deg");
  if (results.physical) {
    facts.error = StatedError(evaluation::kMtfError, results.wavefront.rms, results.physical->light);
    facts.cut_off = results.physical->cutOff.value();
  } else {
    facts.frequency_range = results.scales.frequencyRange.value();
  }
  plane->samples = std::move(results.mtf);
  return plane;
}

std::unique_ptr<orvanel_plane> WavefrontOf(models::Results results) {
  auto plane = PlaneOfResults(ORVANEL_WAVEFRONT, targets::Plane(), results);
  SetAxes(*plane, results.pupilAxis.step.value(), results.pupilAxis.centre, "mm");
  plane->facts.view = 0;
  plane->facts.value_unit = "mm";
  plane->samples = std::move(results.wavefront.map);
  return plane;
}

}  // namespace orvanel::c_interface
