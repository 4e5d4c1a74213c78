// Words the conditions of each model.
#include "evaluation/model_notes.h"

#include <algorithm>

#include "base/number_text.h"
#include "models/sampling.h"

namespace orvanel::evaluation {

std::string LightText(const Results& results) {
  if (!results.physical) return NumberText(ToNanometres(Wavelength()).value(), 5) + " nm";
  const physical::Light& light = results.physical->light;
  if (light.size() == 1) return ShortestText(light[0].wavelengthNm) + " nm";
  const std::string what = results.physical->ofDisplay ? "white of a display, " : "";
  const auto [first, last] = std::minmax_element(
      light.begin(), light.end(), [](const auto& a, const auto& b) { return a.wavelengthNm < b.wavelengthNm; });
  return what + std::to_string(light.size()) + " wavelengths from " + ShortestText(first->wavelengthNm) + " to " +
         ShortestText(last->wavelengthNm) + " nm";
}

std::string SeenInText(const Results& results) {
  return results.physical && results.physical->ofDisplay
             ? "Red, green and blue are each seen in the light of their primary."
             : "Luminance, seen in the light of " + LightText(results) + ".";
}

std::string ReferenceNote(const Results& results) {
  const PhysicalResults& own = *results.physical;
  const std::string reference = ShortestText(own.reference.value()) + " nm.";
  return LightText(results) + (own.referenceAssumed
                                   ? ". The eye does not state its reference wavelength; its coefficients are taken to "
                                     "hold at " +
                                         reference
                                   : ". The coefficients hold at " + reference);
}

const char* Word(physical::Origin origin) {
  switch (origin) {
    case physical::Origin::kAxis:
      return "axis";
    case physical::Origin::kPeak:
      return "peak";
    case physical::Origin::kCentroid:
      return "centroid";
  }
  return "axis";
}

double WavesRms(Micrometres rms, const physical::Light& light) {
  double shortestNm = light.front().wavelengthNm;
  for (const physical::SpectralLine& line : light) shortestNm = std::min(shortestNm, line.wavelengthNm);
  return rms.value() * 1e3 / shortestNm;
}

std::vector<std::string> ModelNotes(const Results& results) {
  if (!results.physical) {
    return {"Classic model: the numbers of the library's eight functions, in light of " + LightText(results) +
            ". Its angles, frequencies and acuities are those of a pupil of twice the diameter. docs/conventions.md "
            "compares them with true ones."};
  }
  const PhysicalResults& own = *results.physical;
  std::vector<std::string> notes = {
      "Physical model: Fourier optics of the stated pupil. Angles and frequencies are true; images are linear in "
      "light."};
  notes.push_back("Light: " + ReferenceNote(results));
  if (own.stilesCrawford.rho > 0.0) {
    notes.push_back("Stiles-Crawford effect: " + ShortestText(own.stilesCrawford.rho) + " per mm^2, centred at x " +
                    ShortestText(own.stilesCrawford.centreXmm) + ", y " + ShortestText(own.stilesCrawford.centreYmm) +
                    " mm of the pupil.");
  }
  notes.emplace_back(own.view == View::kPatient
                         ? "View of PSF, MTF and images: patient, x to the person's right, y up."
                         : "View of PSF, MTF and images: retina, as an examiner sees it through the pupil.");
  if (!results.rowSection.empty() && own.mean.empty()) {
    notes.emplace_back(
        "The curve of the MTF averaged over all directions is left out: the blur is too wide for its lattice of "
        "frequencies.");
  }
  notes.emplace_back(
      "Errors, up to 5 waves RMS: PSF 1e-9 of the perfect eye's peak, Strehl ratios 1e-9, MTF 1e-4 (mean of directions "
      "3e-4), images 1e-4 of white.");
  const double waves = WavesRms(results.wavefront.rms, own.light);
  if (waves > kLargestStatedWaves) {
    notes.push_back("This eye has " + NumberText(waves, 3) + " waves RMS, so these errors are not stated for it.");
  }
  return notes;
}

}  // namespace orvanel::evaluation
