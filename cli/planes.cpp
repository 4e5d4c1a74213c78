// Lists the planes of a run from the pupil to the retina, with their descriptions and spacings.
#include "cli/planes.h"

#include <set>

#include "base/number_text.h"
#include "cli/ring_files.h"

namespace orvanel::cli {
namespace {

using Domain = PlaneSource::Domain;

constexpr double kMmPerCm = 10.0;

// Spacings on both scales; the names end with the unit.
std::vector<Fact> Spacings(const std::string& unit, double library, double optical) {
  return {{"sample_spacing_" + unit + "_library_scale", library},
          {"sample_spacing_" + unit + "_optical_scale", optical}};
}

bool IsPhysical(const Request& request) { return request.model == ModelKind::kPhysical; }

// What every image of the model is.
std::string ImageText(const Request& request) {
  return IsPhysical(request) ? ", linear in light" : ", total light kept, clipped at 1";
}

View ImageView(const Request& request) { return IsPhysical(request) ? request.view : View::kPatient; }

// Requests that draw the same ring share its planes.
void AddRings(std::vector<PlaneSource>& sources, const Request& request) {
  const std::vector<RingRequest>& rings = request.rings;
  std::set<std::string> stems;
  for (std::size_t i = 0; i < rings.size(); ++i) {
    const std::string stem = RingStem(request, rings[i]);
    if (!stems.insert(stem).second) continue;
    const std::string ring = "ring drawn for acuity " + ShortestText(rings[i].acuity) +
                             (IsPhysical(request) ? "" : " (library scale)") + ", gap " + Word(rings[i].gap);
    const auto pitch = [i](const SimulatedEye& r) { return r.results.rings[i].pixel; };
    sources.push_back({stem + "_original", ring + ", as drawn: 0 black, 1 white", "1", Domain::kRetina, View::kPatient,
                       true, [i](const SimulatedEye& r) -> const Plane& { return r.results.rings[i].original; },
                       pitch});
    sources.push_back({stem + "_seen", "retinal image of the " + ring + ImageText(request), "1", Domain::kRetina,
                       ImageView(request), true,
                       [i](const SimulatedEye& r) -> const Plane& { return r.results.rings[i].seen; }, pitch});
  }
}

void AddPicture(std::vector<PlaneSource>& sources, const Request& request) {
  const auto pitch = [](const SimulatedEye& r) { return r.results.picture->pixel; };
  for (std::size_t c = 0; c < request.pictureChannels; ++c) {
    const std::string word(ChannelWord(c, request.pictureChannels));
    const std::string ending = word.empty() ? "" : "_" + word;
    const std::string light = "the user's picture, " + (word.empty() ? std::string("light") : word + " light");
    sources.push_back(
        {"picture_original" + ending, light + " on the 256 x 256 samples", "1", Domain::kRetina, View::kPatient, false,
         [c](const SimulatedEye& r) -> const Plane& { return r.results.picture->object.channels[c]; }, pitch});
    sources.push_back({"picture_seen" + ending, "retinal image of " + light + ImageText(request), "1", Domain::kRetina,
                       ImageView(request), false,
                       [c](const SimulatedEye& r) -> const Plane& { return r.results.picture->seen[c]; }, pitch});
    if (IsPhysical(request)) continue;
    sources.push_back(
        {"picture_contrast_kept" + ending,
         "retinal image of " + light + ", without the library's square: close to incoherent addition of light", "1",
         Domain::kRetina, View::kPatient, false,
         [c](const SimulatedEye& r) -> const Plane& { return r.results.picture->contrastKept[c]; }, pitch});
  }
}

void AddSized(std::vector<PlaneSource>& sources, const Request& request) {
  if (request.sized == nullptr) return;
  const std::string name = request.sized, what = "the " + name + " of true size";
  const auto pitch = [](const SimulatedEye& r) { return r.sized->image.object.pixel; };
  for (std::size_t c = 0; c < request.sizedChannels; ++c) {
    const std::string word(ChannelWord(c, request.sizedChannels));
    const std::string ending = word.empty() ? "" : "_" + word;
    const std::string light = what + ", " + (word.empty() ? "luminance" : word + " light");
    sources.push_back({name + "_shown" + ending, light, "1", Domain::kRetina, View::kPatient, false,
                       [c](const SimulatedEye& r) -> const Plane& { return r.sized->image.object.channels[c]; },
                       pitch});
    sources.push_back({name + "_seen" + ending, "retinal image of " + light + ImageText(request), "1", Domain::kRetina,
                       ImageView(request), false,
                       [c](const SimulatedEye& r) -> const Plane& { return r.sized->image.seen[c]; }, pitch});
  }
}

void AddStar(std::vector<PlaneSource>& sources, const Request& request) {
  const auto pitch = [](const SimulatedEye& r) { return r.results.objectSide / r.results.star.original.columns(); };
  sources.push_back({"star_original", "Siemens star (sector star) of 40 sectors: 0 black, 1 white", "1",
                     Domain::kRetina, View::kPatient, true,
                     [](const SimulatedEye& r) -> const Plane& { return r.results.star.original; }, pitch});
  if (!IsPhysical(request)) {
    sources.push_back({"star_seen_stretched", "retinal image of the Siemens star, stretched to span 0 to 1", "1",
                       Domain::kRetina, View::kPatient, true,
                       [](const SimulatedEye& r) -> const Plane& { return r.results.star.stretched; }, pitch});
  }
  sources.push_back({IsPhysical(request) ? "star_seen" : "star_seen_total_light",
                     "retinal image of the Siemens star" + ImageText(request), "1", Domain::kRetina, ImageView(request),
                     true, [](const SimulatedEye& r) -> const Plane& { return r.results.star.totalLight; }, pitch});
}

}  // namespace

std::vector<PlaneSource> PlaneSources(const Request& request) {
  std::vector<PlaneSource> sources = {
      {"wavefront", "wavefront aberration without piston and tilt, not a number outside the pupil", "mm",
       Domain::kPupil, View::kPupil, false,
       [](const SimulatedEye& r) -> const Plane& { return r.results.wavefront.map; }},
      {"psf",
       IsPhysical(request) ? "point spread function, 1 at the peak of the eye without aberration"
                           : "point spread function, 1 at its peak",
       "1", Domain::kRetina, request.view, true, [](const SimulatedEye& r) -> const Plane& { return r.results.psf; },
       [](const SimulatedEye& r) { return r.results.retinaAxis.step; }},
      {"mtf", "modulation transfer function, 1 at zero frequency", "1", Domain::kFrequency, request.view, true,
       [](const SimulatedEye& r) -> const Plane& { return r.results.mtf; }}};
  AddStar(sources, request);
  AddRings(sources, request);
  AddPicture(sources, request);
  AddSized(sources, request);
  return sources;
}

NamedPlane PlaneOf(const PlaneSource& source, const SimulatedEye& simulated) {
  const Results& results = simulated.results;
  const Scale &library = results.scales.library, &optical = results.scales.optical;
  NamedPlane plane{source.name, source.description, source.unit, &source.samples(simulated), 0.0, {}, {}};
  plane.view = {{"view", std::string(Description(source.view))}};
  const std::string_view nasal = NasalSide(source.view, simulated.eye.side);
  if (!nasal.empty() && source.domain != Domain::kFrequency) {
    plane.view.push_back({source.view == View::kPatient ? "nasal_field_side" : "nasal_side", std::string(nasal)});
  }
  switch (source.domain) {
    case Domain::kPupil: {
      const double spacing = results.pupilAxis.step.value();
      plane.spacings = {{"sample_spacing_mm", spacing}};
      plane.samplesPerCm = kMmPerCm / spacing;
      break;
    }
    case Domain::kRetina: {
      if (results.physical) {
        plane.spacings = {{"sample_spacing_arcmin", source.pitch(simulated).value()}};
        break;
      }
      plane.spacings = Spacings("arcmin", library.pitch.value(), optical.pitch.value());
      const double spacing = library.halfWidth.value() / (ORVANEL_GRID_SIZE / 2.0);
      plane.spacings.push_back({"sample_spacing_on_retina_mm_library_scale", spacing});
      plane.samplesPerCm = kMmPerCm / spacing;
      break;
    }
    case Domain::kFrequency:
      if (results.physical) {
        plane.spacings = {{"sample_spacing_cpd", results.frequencyAxis.step.value()}};
      } else {
        plane.spacings = Spacings("cpd", library.step.value(), optical.step.value());
      }
      break;
  }
  return plane;
}

}  // namespace orvanel::cli
