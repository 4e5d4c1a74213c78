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

// Requests that draw the same ring share its planes.
void AddRings(std::vector<PlaneSource>& sources, Millimetres pupil, const std::vector<RingRequest>& rings) {
  std::set<std::string> stems;
  for (std::size_t i = 0; i < rings.size(); ++i) {
    const std::string stem = RingStem(pupil, rings[i]);
    if (!stems.insert(stem).second) continue;
    const std::string ring =
        "ring drawn for acuity " + ShortestText(rings[i].acuity) + " (library scale), gap " + Word(rings[i].gap);
    sources.push_back({stem + "_original", ring + ", as drawn: 0 black, 1 white", "1", Domain::kRetina, View::kPatient,
                       true, [i](const SimulatedEye& r) -> const Plane& { return r.results.rings[i].original; }});
    sources.push_back({stem + "_seen", "retinal image of the " + ring + ", total light kept, clipped at 1", "1",
                       Domain::kRetina, View::kPatient, true,
                       [i](const SimulatedEye& r) -> const Plane& { return r.results.rings[i].seen; }});
  }
}

void AddPicture(std::vector<PlaneSource>& sources, std::size_t channels) {
  for (std::size_t c = 0; c < channels; ++c) {
    const std::string word(ChannelWord(c, channels));
    const std::string ending = word.empty() ? "" : "_" + word;
    const std::string light = "the user's picture, " + (word.empty() ? std::string("light") : word + " light");
    sources.push_back({"picture_original" + ending, light + " on the 256 x 256 samples", "1", Domain::kRetina,
                       View::kPatient, false,
                       [c](const SimulatedEye& r) -> const Plane& { return r.results.picture->object.channels[c]; }});
    sources.push_back({"picture_seen" + ending, "retinal image of " + light + ", total light kept, clipped at 1", "1",
                       Domain::kRetina, View::kPatient, false,
                       [c](const SimulatedEye& r) -> const Plane& { return r.results.picture->seen[c]; }});
    sources.push_back(
        {"picture_contrast_kept" + ending,
         "retinal image of " + light + ", without the library's square: close to incoherent addition of light", "1",
         Domain::kRetina, View::kPatient, false,
         [c](const SimulatedEye& r) -> const Plane& { return r.results.picture->contrastKept[c]; }});
  }
}

}  // namespace

std::vector<PlaneSource> PlaneSources(const Request& request) {
  std::vector<PlaneSource> sources = {
      {"wavefront", "wavefront aberration, not a number outside the pupil", "mm", Domain::kPupil, View::kPupil, false,
       [](const SimulatedEye& r) -> const Plane& { return r.results.wavefront.map; }},
      {"psf", "point spread function, 1 at its peak", "1", Domain::kRetina, View::kRetina, true,
       [](const SimulatedEye& r) -> const Plane& { return r.results.psf; }},
      {"mtf", "modulation transfer function, 1 at zero frequency", "1", Domain::kFrequency, View::kRetina, true,
       [](const SimulatedEye& r) -> const Plane& { return r.results.mtf; }},
      {"star_original", "Siemens star (sector star) of 40 sectors: 0 black, 1 white", "1", Domain::kRetina,
       View::kPatient, true, [](const SimulatedEye& r) -> const Plane& { return r.results.star.original; }},
      {"star_seen_stretched", "retinal image of the Siemens star, stretched to span 0 to 1", "1", Domain::kRetina,
       View::kPatient, true, [](const SimulatedEye& r) -> const Plane& { return r.results.star.stretched; }},
      {"star_seen_total_light", "retinal image of the Siemens star, total light kept, clipped at 1", "1",
       Domain::kRetina, View::kPatient, true,
       [](const SimulatedEye& r) -> const Plane& { return r.results.star.totalLight; }}};
  AddRings(sources, request.pupil, request.rings);
  AddPicture(sources, request.pictureChannels);
  return sources;
}

NamedPlane PlaneOf(const PlaneSource& source, const SimulatedEye& simulated) {
  const Scale &library = simulated.results.scales.library, &optical = simulated.results.scales.optical;
  NamedPlane plane{source.name, source.description, source.unit, &source.samples(simulated), 0.0, {}, {}};
  plane.view = {{"view", std::string(Description(source.view))}};
  const std::string_view nasal = NasalSide(source.view, simulated.eye.side);
  if (!nasal.empty() && source.domain != Domain::kFrequency) {
    plane.view.push_back({source.view == View::kPatient ? "nasal_field_side" : "nasal_side", std::string(nasal)});
  }
  switch (source.domain) {
    case Domain::kPupil: {
      const double spacing = simulated.results.pupil.value() / (ORVANEL_GRID_SIZE / 2.0);
      plane.spacings = {{"sample_spacing_mm", spacing}};
      plane.samplesPerCm = kMmPerCm / spacing;
      break;
    }
    case Domain::kRetina: {
      plane.spacings = Spacings("arcmin", library.pitch.value(), optical.pitch.value());
      const double spacing = library.halfWidth.value() / (ORVANEL_GRID_SIZE / 2.0);
      plane.spacings.push_back({"sample_spacing_on_retina_mm_library_scale", spacing});
      plane.samplesPerCm = kMmPerCm / spacing;
      break;
    }
    case Domain::kFrequency:
      plane.spacings = Spacings("cpd", library.step.value(), optical.step.value());
      break;
  }
  return plane;
}

}  // namespace orvanel::cli
