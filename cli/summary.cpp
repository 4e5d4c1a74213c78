// Units stand in the names of the keys; so does the scale where a number has one.
#include "cli/summary.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/number_text.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

Json EyeJson(const Results& results) {
  const Eye& eye = results.eye;
  const ConventionWords words = Words(eye.convention);
  Json library = Json::array();
  for (const Millimetres c : results.simulation.coefficients) library.push_back(c.value());
  return {
      {"file", eye.file},
      {"name", eye.name},
      {"source", eye.source},
      {"note", eye.note},
      {"pupil_diameter_mm", eye.pupil.value()},
      {"convention",
       {{"name", words.name}, {"unit", words.unit}, {"normalisation", words.normalisation}, {"y_axis", words.yAxis}}},
      {"coefficients_as_given", eye.coefficients},
      {"coefficients_library_mm", library},
      {"unused_coefficients", "0 to 2: piston and tilts only move the image"}};
}

// To the hundredths in which the wavelength is defined.
double RoundNanometres(Millimetres length) { return std::round(ToNanometres(length).value() * 100.0) / 100.0; }

Json ScalarsJson(const Results& results) {
  const Simulation& s = results.simulation;
  const Scales& scales = results.scales;
  return {{"wavelength_nm", RoundNanometres(Wavelength())},
          {"strehl_ratio", s.strehl},
          {"wavefront_rms_um", s.wavefront.rms.value()},
          {"wavefront_peak_to_valley_um", s.wavefront.peakToValley.value()},
          {"wavefront_steepest_step_um", s.wavefront.steepestStep.value()},
          {"wavefront_aliased_share", s.wavefront.aliasedShare},
          {"psf_half_width_mm_library_scale", scales.library.halfWidth.value()},
          {"psf_half_width_mm_optical_scale", scales.optical.halfWidth.value()},
          {"psf_half_width_arcmin_library_scale", scales.library.halfWidthAngle.value()},
          {"psf_half_width_arcmin_optical_scale", scales.optical.halfWidthAngle.value()},
          {"psf_sample_arcmin_library_scale", scales.library.pitch.value()},
          {"psf_sample_arcmin_optical_scale", scales.optical.pitch.value()},
          {"mtf_frequency_range_cpd_library_scale", s.frequencyRange.value()},
          {"mtf_sample_cpd_library_scale", scales.library.step.value()},
          {"mtf_sample_cpd_optical_scale", scales.optical.step.value()},
          {"cutoff_cpd_optical_scale", scales.opticalCutOff.value()}};
}

Json RingsJson(const Results& results) {
  Json rings = Json::array();
  for (const Ring& ring : results.simulation.rings) {
    rings.push_back({{"acuity_requested_library_scale", ring.request.acuity},
                     {"acuity_drawn_library_scale", ring.effectiveAcuity},
                     {"acuity_drawn_optical_scale", Acuity(ring.diameter, results.scales.optical)},
                     {"gap", Word(ring.request.gap)},
                     {"diameter_samples", ring.diameter},
                     {"original_file", RingStem(ring.request) + "_original.png"},
                     {"seen_file", RingStem(ring.request) + "_seen.png"}});
  }
  return rings;
}

// One aligned line.
std::string Line(const std::string& label, const std::string& text) {
  constexpr std::size_t kColumn = 16;
  return label + std::string(kColumn - label.size(), ' ') + text + "\n";
}

// One line for each acuity, with all its gaps; rings of one acuity follow each other.
std::string RingLines(const std::vector<Ring>& rings, const Scales& scales) {
  std::string lines, label = "Rings";
  for (std::size_t i = 0; i < rings.size();) {
    const Ring& ring = rings[i];
    std::string gaps;
    for (; i < rings.size() && rings[i].request.acuity == ring.request.acuity; ++i) {
      gaps += (gaps.empty() ? "" : ", ") + std::string(Word(rings[i].request.gap));
    }
    lines += Line(std::exchange(label, ""), "acuity " + Text(ring.request.acuity, 4) + " drawn as " +
                                                Text(ring.effectiveAcuity, 3) + ", " + std::to_string(ring.diameter) +
                                                " samples (optical scale " +
                                                Text(Acuity(ring.diameter, scales.optical), 3) + "), gap " + gaps);
  }
  return lines;
}

}  // namespace

std::string SummaryJson(const Results& results, const std::vector<std::string>& files) {
  const Json summary = {
      {"program", "orvanel"},
      {"version", ORVANEL_VERSION},
      {"eye", EyeJson(results)},
      {"scales",
       {{"library_scale",
         "the library takes the pupil value so that frequencies, retinal lengths and ring sizes are those of a pupil "
         "of "
         "twice the diameter"},
        {"optical_scale", "those of the pupil as stated; its cut-off is pupil diameter / wavelength"}}},
      {"results", ScalarsJson(results)},
      {"rings", RingsJson(results)},
      {"planes",
       "256 x 256, row 0 at the top, centre at row 128, column 128; NPY: wavefront in mm, not a number outside the "
       "pupil, all others without unit"},
      {"files", files},
      {"warnings", results.warnings}};
  // A file's name need not be UTF-8.
  return summary.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string SummaryText(const Results& results, const std::string& folder, std::size_t fileCount) {
  const Eye& eye = results.eye;
  const Simulation& s = results.simulation;
  const Scales& scales = results.scales;
  const std::string pupil = Text(eye.pupil.value(), 6) + " mm";
  std::string text = Line("Eye", eye.name.empty() ? eye.file : eye.name);
  text += Line("Pupil", pupil + ", wavelength " + Text(ToNanometres(Wavelength()).value(), 5) + " nm");
  text += Line("Coefficients", std::to_string(eye.coefficients.size()) + " given in convention " +
                                   std::string(Words(eye.convention).name) + ", " +
                                   std::string(Words(eye.convention).unit));
  text += Line("Wavefront", "RMS " + Text(s.wavefront.rms.value(), 3) + " um (" +
                                Text(s.wavefront.rms / ToMicrometres(Wavelength()), 3) + " waves), peak to valley " +
                                Text(s.wavefront.peakToValley.value(), 3) + " um");
  text += Line("Strehl ratio", Text(s.strehl, 4));
  text += Line("PSF half width", Text(scales.library.halfWidth.value(), 4) + " mm on the retina, " +
                                     Text(scales.library.halfWidthAngle.value(), 4) + " arc minutes (library scale); " +
                                     Text(scales.optical.halfWidthAngle.value(), 4) + " arc minutes (optical scale)");
  text += Line("MTF range", Text(s.frequencyRange.value(), 5) + " cycles/degree (library scale)");
  text += Line("Optical cut-off",
               Text(scales.opticalCutOff.value(), 4) + " cycles/degree for a pupil of " + pupil + " (optical scale)");
  text += RingLines(s.rings, scales);
  text += Line("Scales", "library scale = that of a pupil of twice the diameter; optical scale = the pupil as stated");
  text += Line("Pictures", std::to_string(fileCount) + " files in " + folder + "; open " +
                               (folder.ends_with('/') ? folder : folder + "/") + kOverviewFile + " first");
  return text;
}

}  // namespace orvanel::cli
