// Formats the summary. Names of keys contain the unit, and the scale if the number depends on it.
#include "cli/summary.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "base/number_text.h"
#include "cli/coefficient_report.h"
#include "cli/console/report.h"
#include "cli/physical_summary.h"
#include "cli/planes.h"
#include "cli/quality/quality_report.h"
#include "cli/ring_files.h"
#include "evaluation/evaluator.h"
#include "evaluation/model_notes.h"
#include "evaluation/rings.h"
#include "eye/adjustments.h"
#include "eye/conventions/partial_convention.h"
#include "models/sampling.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

Json ConventionJson(const Convention& convention) {
  Json json = {{"unit", Word(convention.unit)}};
  if (convention.unit == Unit::kWaves) json["wavelength_nm"] = convention.wavelength.value();
  json["normalisation"] = Word(convention.normalisation);
  json["order"] = Word(convention.scheme);
  json["y_axis"] = Word(convention.yAxis);
  return json;
}

Json GivenJson(const Eye& eye) {
  const Coefficients given = eye.coefficients.AsStated();
  const IndexScheme scheme = eye.coefficients.convention().scheme;
  if (scheme != IndexScheme::kNamed) return ToList(scheme, given);
  Json named = Json::object();
  for (std::size_t j = 0; j < given.size(); ++j) named[Symbol(Term(j))] = given[j];
  return named;
}

Json EyeJson(const SimulatedEye& simulated) {
  const Eye& eye = simulated.measured;
  Json json = {{"file", eye.file},
               {"name", eye.name},
               {"source", eye.source},
               {"note", eye.note},
               {"eye", Word(eye.side)},
               {"pupil_diameter_mm", eye.pupil.value()},
               {"convention", ConventionJson(eye.coefficients.convention())},
               {"coefficients_as_given", GivenJson(eye)},
               {"changes", simulated.changes},
               {"simulated_eye", Word(simulated.eye.side)},
               {"simulated_pupil_diameter_mm", simulated.eye.pupil.value()}};
  if (simulated.results.physical) {
    json["simulated_coefficients_osa_um"] = simulated.eye.coefficients.osa();
  } else {
    Json library = Json::array();
    for (const Millimetres c : ToLibrary(simulated.eye.coefficients)) library.push_back(c.value());
    json["coefficients_library_mm"] = library;
    json["unused_coefficients"] = "0 to 2: piston and tilts only move the image";
  }
  if (eye.referenceWavelength) json[kReferenceKey] = eye.referenceWavelength->value();
  if (simulated.dropped) {
    json["dropped_orders_above"] = simulated.dropped->above;
    json["dropped_rms_um"] = simulated.dropped->rms.value();
    json["dropped_share_of_rms"] = Share(*simulated.dropped);
  }
  return json;
}

Json RefractionJson(const PowerVector& powers) {
  const Refraction refraction = ToRefraction(powers, CylinderSign::kMinus);
  return {{"sphere_d", refraction.sphere.value()},
          {"cylinder_d", refraction.cylinder.value()},
          {"axis_deg", refraction.axis.value()}};
}

Json RefractionsJson(const Eye& eye) {
  const Coefficients& osa = eye.coefficients.osa();
  return {{"least_squares", RefractionJson(LeastSquaresRefraction(osa, eye.pupil))},
          {"paraxial", RefractionJson(ParaxialRefraction(osa, eye.pupil))}};
}

Json MtfJson(const SimulatedEye& simulated) {
  if (simulated.results.physical) return PhysicalMtfJson(simulated.results);
  Json json = Json::array();
  const Results& s = simulated.results;
  const Scales& scales = simulated.results.scales;
  for (const CyclesPerDegree frequency : simulated.mtfAt) {
    json.push_back({{"frequency_cpd_library_scale", frequency.value()},
                    {"frequency_cpd_optical_scale", (frequency / scales.ratio).value()},
                    {"horizontal", MtfAt(s.lineSpreads.horizontal, scales.library, frequency)},
                    {"vertical", MtfAt(s.lineSpreads.vertical, scales.library, frequency)}});
  }
  return json;
}

// Rounds to hundredths, since the wavelength is defined with two decimals.
double RoundNanometres(Millimetres length) { return std::round(ToNanometres(length).value() * 100.0) / 100.0; }

// Metrics are looked up by their column names.
Json ScalarsJson(const SimulatedEye& simulated) {
  if (simulated.results.physical) return PhysicalScalarsJson(simulated.results);
  const auto metric = [&simulated](const char* column) { return ValueOf(simulated.eye, simulated.results, column); };
  const Results& s = simulated.results;
  const Scales& scales = simulated.results.scales;
  return {{"wavelength_nm", RoundNanometres(Wavelength())},
          {"strehl_ratio", metric("strehl_ratio")},
          {"strehl_ratio_peak", metric("strehl_ratio_peak")},
          {"wavefront_rms_um", metric("rms_um_orders_2_and_above")},
          {"wavefront_peak_to_valley_um", s.wavefront.peakToValley.value()},
          {"wavefront_steepest_step_um", s.wavefront.steepestStep.value()},
          {"wavefront_aliased_share", metric("undersampled")},
          {"psf_half_width_mm_library_scale", metric("psf_half_width_mm_library_scale")},
          {"psf_half_width_mm_optical_scale", metric("psf_half_width_mm_optical_scale")},
          {"psf_half_width_arcmin_library_scale", scales.library.halfWidthAngle.value()},
          {"psf_half_width_arcmin_optical_scale", scales.optical.halfWidthAngle.value()},
          {"psf_sample_arcmin_library_scale", scales.library.pitch.value()},
          {"psf_sample_arcmin_optical_scale", scales.optical.pitch.value()},
          {"mtf_frequency_range_cpd_library_scale", metric("mtf_frequency_range_cpd_library_scale")},
          {"mtf_sample_cpd_library_scale", scales.library.step.value()},
          {"mtf_sample_cpd_optical_scale", scales.optical.step.value()},
          {"cutoff_cpd_optical_scale", metric("cutoff_cpd_optical_scale")},
          {"library_scale_over_optical_scale", scales.ratio}};
}

Json RingsJson(const SimulatedEye& simulated) {
  if (simulated.results.physical) return PhysicalRingsJson(simulated.results);
  Json rings = Json::array();
  for (const Ring& ring : simulated.results.rings) {
    const std::string stem = RingStem(ring.effectiveAcuity, ring.request.gap);
    rings.push_back(
        {{"acuity_requested_library_scale", ring.request.acuity},
         {"acuity_drawn_library_scale", ring.effectiveAcuity},
         {"acuity_drawn_above_requested_percent", 100.0 * Deviation(ring)},
         {"acuity_drawn_optical_scale", OpticalAcuity(ring.effectiveAcuity, simulated.results.scales)},
         {"gap", Word(ring.request.gap)},
         {"diameter_samples", ring.diameter},
         {"diameter_arcmin_library_scale", (ring.diameter * simulated.results.scales.library.pitch).value()},
         {"diameter_arcmin_optical_scale", (ring.diameter * simulated.results.scales.optical.pitch).value()},
         {"original_file", stem + "_original.png"},
         {"seen_file", stem + "_seen.png"}});
  }
  return rings;
}

// States the view of each plane and its nasal side.
Json ViewsJson(const SimulatedEye& simulated) {
  Json json;
  for (const View view : {View::kPupil, View::kRetina, View::kPatient})
    json[std::string(Word(view))] = Description(view);
  if (simulated.eye.side != Side::kUnknown) {
    json["nasal_side"] = {{"pupil", NasalSide(View::kPupil, simulated.eye.side)},
                          {"retina", NasalSide(View::kRetina, simulated.eye.side)},
                          {"patient_field", NasalSide(View::kPatient, simulated.eye.side)}};
  }
  Request request{simulated.eye.pupil, {}, {}};
  request.model = simulated.results.model;
  if (simulated.results.physical) request.view = simulated.results.physical->view;
  for (const Ring& ring : simulated.results.rings) request.rings.push_back(ring.request);
  if (simulated.results.picture) request.pictureChannels = simulated.results.picture->object.channels.size();
  for (const PlaneSource& source : PlaneSources(request)) json["of_planes"][source.name] = Word(source.view);
  return json;
}

// Describes the user's picture in all formats of results.
Json PictureJson(const Results& results) {
  const ObjectPicture& object = results.picture->object;
  Json json = {{"file", object.request.file},
               {"width_pixels", object.width},
               {"height_pixels", object.height},
               {"channels", object.channels.size()},
               {"bits", object.bits},
               {"fit", Word(object.request.fit)},
               {"values", object.request.linear ? "light" : "sRGB"},
               {"white_under_transparent_parts", object.transparent}};
  if (results.physical) {
    json["field_arcmin"] = results.objectSide.value();
    json["surround"] = "the mean luminance of each channel";
  } else {
    json["field_arcmin_library_scale"] = FieldOf(results.scales.library).value();
    json["field_arcmin_optical_scale"] = FieldOf(results.scales.optical).value();
  }
  return json;
}

// Appends a JSON value as facts: the keys of objects are joined by underscores.
void AppendFacts(std::vector<Fact>& facts, const std::string& name, const Json& value) {
  if (value.is_object()) {
    for (const auto& [key, inner] : value.items()) AppendFacts(facts, name.empty() ? key : name + "_" + key, inner);
  } else if (value.is_string()) {
    facts.push_back({name, value.get<std::string>()});
  } else if (value.is_array()) {
    facts.push_back({name, value.get<std::vector<double>>()});
  } else {
    facts.push_back({name, value.is_boolean() ? (value.get<bool>() ? 1.0 : 0.0) : value.get<double>()});
  }
}

// What a model draws for a ring of the requested acuity.
std::string DrawnText(const Ring& ring, bool physical) {
  if (physical) return ", " + NumberText((ring.diameter * ring.pixel).value(), 4) + " arc minutes wide";
  return " drawn as " + NumberText(ring.effectiveAcuity, 3) + ", " + std::to_string(ring.diameter) + " samples";
}

// One line for each acuity, with all its gaps; rings of one acuity follow each other.
std::string RingLines(const Results& results) {
  const std::vector<Ring>& rings = results.rings;
  const bool physical = results.physical.has_value();
  std::string lines, label = "Rings";
  for (std::size_t i = 0; i < rings.size();) {
    const Ring& ring = rings[i];
    std::string gaps;
    for (; i < rings.size() && rings[i].request.acuity == ring.request.acuity; ++i) {
      gaps += (gaps.empty() ? "" : ", ") + std::string(Word(rings[i].request.gap));
    }
    lines += ReportLine(std::exchange(label, ""),
                        "acuity " + NumberText(ring.request.acuity, 4) + DrawnText(ring, physical) + ", gap " + gaps +
                            (!physical && IsFarOff(ring) ? "; " + DeviationText(ring) + " the acuity requested" : ""));
  }
  return lines;
}

std::string MtfLines(const SimulatedEye& simulated) {
  const Scales& scales = simulated.results.scales;
  std::string lines;
  for (const CyclesPerDegree frequency : simulated.mtfAt) {
    lines += ReportLine(lines.empty() ? "MTF" : "",
                        NumberText(MtfAt(simulated.results.lineSpreads.horizontal, scales.library, frequency), 4) +
                            " horizontal, " +
                            NumberText(MtfAt(simulated.results.lineSpreads.vertical, scales.library, frequency), 4) +
                            " vertical at " + NumberText(frequency.value(), 6) + " cycles/degree");
  }
  return lines;
}

std::string PictureLines(const Results& results) {
  const ObjectPicture& object = results.picture->object;
  std::string text = object.request.file + ", " + std::to_string(object.width) + " x " + std::to_string(object.height) +
                     " pixels, " + (object.channels.size() == 1 ? "grey" : "colour") + " of " +
                     std::to_string(object.bits) + " bits";
  text += object.request.linear ? ", values taken as light" : ", sRGB values turned into light";
  if (object.transparent) text += ", white under transparent parts";
  return ReportLine("Your picture", text) +
         ReportLine("", std::string(Description(object.request.fit)) + "; the 256 samples span " +
                            NumberText(results.objectSide.value(), 4) + " arc minutes");
}

// What the report says of the classic model between the refraction and the pictures, on the model's own scale.
std::string ClassicLines(const SimulatedEye& simulated) {
  const Results& s = simulated.results;
  std::string text =
      ReportLine("Wavefront", "RMS " + NumberText(s.wavefront.rms.value(), 3) + " um (" +
                                  NumberText(s.wavefront.rms / ToMicrometres(Wavelength()), 3) +
                                  " waves), peak to valley " + NumberText(s.wavefront.peakToValley.value(), 3) + " um");
  text += ReportLine("Strehl ratio", NumberText(s.strehl, 4) + " at the brightest sample, " +
                                         NumberText(s.strehlPeak, 4) + " at the peak between samples");
  text += ReportLine("PSF window", "half extent " + NumberText(s.scales.library.halfWidth.value(), 4) +
                                       " mm on the retina, " + NumberText(s.scales.library.halfWidthAngle.value(), 4) +
                                       " arc minutes");
  text += ReportLine("MTF range", NumberText(s.scales.frequencyRange.value(), 5) + " cycles/degree");
  return text + MtfLines(simulated);
}

}  // namespace

std::vector<Fact> FactsOf(const SimulatedEye& simulated) {
  Json facts = {{"program", "orvanel " ORVANEL_VERSION}};
  Json eye = EyeJson(simulated);
  // Facts are only numbers and text: named coefficients become a list from (0,0) on, changes one line.
  if (simulated.measured.coefficients.convention().scheme == IndexScheme::kNamed) {
    eye["coefficients_as_given"] = simulated.measured.coefficients.AsStated();
  }
  std::string changes;
  for (const std::string& change : simulated.changes) changes += (changes.empty() ? "" : "; ") + change;
  eye["changes"] = changes;
  facts.update(eye);
  facts["model"] = Word(simulated.results.model);
  if (const auto& physical = simulated.results.physical) {
    facts["light"] = LightText(simulated.results);
    facts["reference_wavelength_nm"] = physical->reference.value();
    facts["reference_wavelength_assumed"] = physical->referenceAssumed ? 1.0 : 0.0;
    facts["stiles_crawford_rho_per_mm2"] = physical->stilesCrawford.rho;
  }
  facts.update(ScalarsJson(simulated));
  if (simulated.quality) facts["image_quality"] = QualityFactsJson(*simulated.quality);
  facts["refraction"] = RefractionsJson(simulated.eye);
  if (simulated.results.picture) facts["picture"] = PictureJson(simulated.results);
  std::vector<Fact> list;
  // Converted through text, because the name of a file may not be UTF-8.
  AppendFacts(list, "", Json::parse(facts.dump(-1, ' ', false, Json::error_handler_t::replace)));
  return list;
}

std::string SummaryJson(const SimulatedEye& simulated, const std::vector<std::string>& files) {
  Json summary = {
      {"program", "orvanel"},
      {"version", ORVANEL_VERSION},
      {"eye", EyeJson(simulated)},
      {"model", ModelJson(simulated.results)},
      {"scales",
       {{"library_scale",
         "frequencies, retinal lengths and ring sizes are those of a pupil of twice the diameter, since the library "
         "counts the pupil value twice"},
        {"optical_scale",
         "frequencies, retinal lengths and ring sizes are those of the pupil as stated; the cut-off is pupil diameter "
         "/ "
         "wavelength"}}},
      {"results", ScalarsJson(simulated)},
      {"refraction", RefractionsJson(simulated.eye)},
      {"mtf", MtfJson(simulated)},
      {"rings", RingsJson(simulated)},
      {"planes",
       "256 x 256, row 0 at the top, centre at row 128, column 128; wavefront in mm, not a number outside the pupil, "
       "all others without unit; planes of the user's picture hold light, its PNG files are coded like the given file"},
      {"views", ViewsJson(simulated)},
      {"files", files},
      {"warnings", simulated.warnings}};
  if (simulated.quality) summary["image_quality"] = QualityJson(*simulated.quality, simulated.qualityRequest);
  if (simulated.results.picture) {
    summary["picture"] = PictureJson(simulated.results);
    summary["picture"]["original_file"] = "picture_original.png";
    summary["picture"]["seen_file"] = "picture_seen.png";
    summary["picture"]["contrast_kept_file"] = "picture_contrast_kept.png";
  }
  if (simulated.results.physical) {
    summary.erase("scales");
    summary["planes"] =
        "row 0 at the top; wavefront in mm, not a number outside the pupil, all others without unit; planes of the "
        "user's picture hold light, its PNG files are coded like the given file";
    if (simulated.results.picture) summary["picture"].erase("contrast_kept_file");
  }
  if (simulated.sized) {
    const SizedView& view = *simulated.sized;
    const SizedObject& object = view.image.object;
    const std::string name = view.name;
    summary["view_of_true_size"] = {{"object", name},
                                    {"description", view.description},
                                    {"columns", object.channels[0].columns()},
                                    {"rows", object.channels[0].rows()},
                                    {"pixel_arcmin", object.pixel.value()},
                                    {"pixels_per_degree", 60.0 / object.pixel.value()},
                                    {"channels", object.channels.size()},
                                    {"light", SeenInText(simulated.results)},
                                    {"surround", view.surround},
                                    {"surround_values", object.surround},
                                    {"white", "1 in each channel: the white of sRGB, D65"},
                                    {"values", view.linear ? "light" : "sRGB"},
                                    {"shown_file", name + "_shown.png"},
                                    {"seen_file", name + "_seen.png"}};
  }
  if (files.empty()) {  // only the numbers
    summary.erase("planes");
    summary.erase("files");
    for (Json& ring : summary["rings"]) {
      ring.erase("original_file");
      ring.erase("seen_file");
    }
  }
  // The name of a file may not be UTF-8.
  return summary.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string SummaryText(const SimulatedEye& simulated, const std::string& folder, std::size_t fileCount,
                        bool hasOverview) {
  const Eye& eye = simulated.eye;
  std::string text = EyeLines(simulated.measured, simulated.changes);
  text += ReportLine("Pupil", NumberText(eye.pupil.value(), 6) + " mm");
  text += RefractionLines(eye, CylinderSign::kMinus);
  const std::vector<std::string> notes = ModelNotes(simulated.results);
  for (std::size_t i = 0; i < notes.size(); ++i) text += ReportLine(i == 0 ? "Model" : "", notes[i]);
  text += simulated.results.physical ? PhysicalLines(simulated) : ClassicLines(simulated);
  text += RingLines(simulated.results);
  if (simulated.quality) text += QualityLines(*simulated.quality, simulated.qualityRequest);
  if (simulated.results.picture) text += PictureLines(simulated.results);
  if (simulated.sized) {
    for (const std::string& line : simulated.sized->description) text += line;
    text += ReportLine("Seen", SeenInText(simulated.results) + " Surround: " + simulated.sized->surround);
  }
  const std::string inside = folder.ends_with('/') ? folder : folder + "/";
  text += ReportLine("Pictures", std::to_string(fileCount) + " files in " + folder +
                                     (hasOverview ? "; open " + inside + kOverviewFile + " first" : ""));
  return text;
}

}  // namespace orvanel::cli
