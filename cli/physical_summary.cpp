// Names each number of the physical model with its unit.
#include "cli/physical_summary.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/number_text.h"
#include "cli/console/report.h"
#include "cli/ring_files.h"
#include "evaluation/model_notes.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

// A place on the retina; below the stated error it is 0.
std::string PlaceText(double arcmin) {
  constexpr double kError = 1e-6;
  return NumberText(std::fabs(arcmin) < kError ? 0.0 : arcmin, 3);
}

std::string Minutes(ArcMinutes angle, int digits) { return NumberText(angle.value(), digits); }

}  // namespace

Json ModelJson(const Results& results) {
  Json json = {{"name", Word(results.model)}};
  if (results.physical) {
    const PhysicalResults& own = *results.physical;
    json["light"] = Json::array();
    for (const physical::SpectralLine& line : own.light) {
      json["light"].push_back({{"wavelength_nm", line.wavelengthNm}, {"weight", line.weight}});
    }
    json["reference_wavelength_nm"] = own.reference.value();
    json["reference_wavelength_assumed"] = own.referenceAssumed;
    json["view"] = Word(own.view);
    json["stiles_crawford"] = {{"rho_per_mm2", own.stilesCrawford.rho},
                               {"centre_x_mm", own.stilesCrawford.centreXmm},
                               {"centre_y_mm", own.stilesCrawford.centreYmm}};
  }
  json["notes"] = ModelNotes(results);
  return json;
}

Json PhysicalScalarsJson(const Results& results) {
  const PhysicalResults& own = *results.physical;
  const ArcMinutes pitch = results.retinaAxis.step;
  return {{"strehl_ratio_axis", own.strehl.axis},
          {"strehl_ratio_peak", own.strehl.peak},
          {"psf_peak_x_arcmin", own.strehl.peakX},
          {"psf_peak_y_arcmin", own.strehl.peakY},
          {"wavefront_rms_um", results.wavefront.rms.value()},
          {"wavefront_peak_to_valley_um", results.wavefront.peakToValley.value()},
          {"psf_window_arcmin", (pitch * results.psf.columns()).value()},
          {"psf_sample_arcmin", pitch.value()},
          {"psf_origin", Word(own.origin)},
          {"psf_origin_x_arcmin", own.originX.value()},
          {"psf_origin_y_arcmin", own.originY.value()},
          {"psf_light_in_window", own.psfLight},
          {"mtf_sample_cpd", results.frequencyAxis.step.value()},
          {"cutoff_cpd", own.cutOff.value()}};
}

Json PhysicalMtfJson(const Results& results) {
  Json json = Json::array();
  for (const MtfAtFrequency& at : results.physical->mtfAt) {
    json.push_back({{"frequency_cpd", at.frequency.value()},
                    {"horizontal", at.horizontal},
                    {"vertical", at.vertical},
                    {"mean_over_angle", at.mean}});
  }
  return json;
}

Json PhysicalRingsJson(const Results& results) {
  Request request;
  request.model = ModelKind::kPhysical;
  Json rings = Json::array();
  for (const Ring& ring : results.rings) {
    const std::string stem = RingStem(request, ring.request);
    rings.push_back({{"acuity", ring.request.acuity},
                     {"gap", Word(ring.request.gap)},
                     {"diameter_arcmin", (ring.diameter * ring.pixel).value()},
                     {"sample_arcmin", ring.pixel.value()},
                     {"original_file", stem + "_original.png"},
                     {"seen_file", stem + "_seen.png"}});
  }
  return rings;
}

std::string PhysicalLines(const SimulatedEye& simulated) {
  const Results& r = simulated.results;
  const PhysicalResults& own = *r.physical;
  std::string text = ReportLine("Wavefront", "RMS " + NumberText(r.wavefront.rms.value(), 3) + " um, peak to valley " +
                                                 NumberText(r.wavefront.peakToValley.value(), 3) + " um");
  text +=
      ReportLine("Strehl ratio", NumberText(own.strehl.axis, 4) + " on the axis, " + NumberText(own.strehl.peak, 4) +
                                     " at the peak, which is at x " + PlaceText(own.strehl.peakX) + ", y " +
                                     PlaceText(own.strehl.peakY) + " arc minutes");
  text += ReportLine("PSF window", Minutes(r.retinaAxis.step * r.psf.columns(), 4) + " arc minutes, a sample " +
                                       Minutes(r.retinaAxis.step, 4) + ", " + NumberText(100.0 * own.psfLight, 3) +
                                       " % of the light");
  text += ReportLine("Cut-off", NumberText(own.cutOff.value(), 5) + " cycles/degree");
  for (const MtfAtFrequency& at : own.mtfAt) {
    text += ReportLine(&at == &own.mtfAt.front() ? "MTF" : "",
                       NumberText(at.horizontal, 4) + " horizontal, " + NumberText(at.vertical, 4) + " vertical, " +
                           NumberText(at.mean, 4) + " mean of all directions at " +
                           NumberText(at.frequency.value(), 6) + " cycles/degree");
  }
  return text;
}

}  // namespace orvanel::cli
