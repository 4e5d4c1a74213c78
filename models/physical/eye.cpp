// Checks an eye and its light, and adds the chromatic aberration.
#include "models/physical/eye.h"

#include <cmath>
#include <numbers>
#include <optional>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

constexpr double kArcminPerMilliradian = 10.8 / std::numbers::pi;

bool IsWithin(double x, double low, double high) { return x >= low && x <= high; }

// The largest distance of an outline from the pupil's centre, in radii; not a number if the outline is none.
double ReachOf(const Ellipse& e) {
  constexpr int kPlaces = 1024;
  const SineCosine turn = SineAndCosine(e.angle);
  double reach = 0.0;
  for (int i = 0; i < kPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kPlaces);
    const double a = e.semiAxisA * t.cosine, b = e.semiAxisB * t.sine;
    const double x = e.centreX + a * turn.cosine - b * turn.sine, y = e.centreY + a * turn.sine + b * turn.cosine;
    const double distance = std::sqrt(x * x + y * y);
    if (!(distance <= reach)) reach = distance;
  }
  return reach;
}

std::optional<Refusal> CheckEye(const Eye& eye) {
  if (!IsWithin(eye.diameterMm, kSmallestPupilMm, kLargestPupilMm)) {
    return Refusal{Problem::kPupilDiameter, eye.diameterMm, kSmallestPupilMm, kLargestPupilMm};
  }
  for (std::size_t j = 0; j < kModes; ++j) {
    if (!std::isfinite(eye.modesUm[j])) return Refusal{Problem::kMode, eye.modesUm[j], 0.0, 0.0, static_cast<int>(j)};
  }
  constexpr double kRounding = 1e-9;
  const double reach = ReachOf(eye.outline);
  if (!(eye.outline.semiAxisA > 0.0 && eye.outline.semiAxisB > 0.0 && reach <= 1.0 + kRounding)) {
    return Refusal{Problem::kOutline, reach, 0.0, 1.0};
  }
  const StilesCrawford& effect = eye.stilesCrawford;
  if (!IsWithin(effect.rho, 0.0, kLargestRho)) {
    return Refusal{Problem::kStilesCrawford, effect.rho, 0.0, kLargestRho};
  }
  for (const double place : {effect.centreXmm, effect.centreYmm}) {
    if (!(std::fabs(place) <= kLargestDecentrationMm)) {
      return Refusal{Problem::kStilesCrawford, place, -kLargestDecentrationMm, kLargestDecentrationMm};
    }
  }
  for (const double place : {eye.achromaticAxisXmm, eye.achromaticAxisYmm}) {
    if (!(std::fabs(place) <= kLargestDecentrationMm)) {
      return Refusal{Problem::kAchromaticAxis, place, -kLargestDecentrationMm, kLargestDecentrationMm};
    }
  }
  if (eye.referenceNm != 0.0 && !IsWithin(eye.referenceNm, kShortestNm, kLongestNm)) {
    return Refusal{Problem::kReferenceWavelength, eye.referenceNm, kShortestNm, kLongestNm};
  }
  return std::nullopt;
}

std::optional<Refusal> CheckLight(const Light& light, bool knowsReference) {
  double total = 0.0;
  int lines = 0;
  for (std::size_t i = 0; i < light.size(); ++i) {
    const auto [wavelengthNm, weight] = light[i];
    const int index = static_cast<int>(i);
    if (!IsWithin(wavelengthNm, kShortestNm, kLongestNm)) {
      return Refusal{Problem::kWavelength, wavelengthNm, kShortestNm, kLongestNm, index};
    }
    constexpr double kLargestWeight = 1e100;
    if (!IsWithin(weight, 0.0, kLargestWeight)) return Refusal{Problem::kWeight, weight, 0.0, kLargestWeight, index};
    total += weight;
    lines += weight > 0.0 ? 1 : 0;
  }
  if (!(total > 0.0)) return Refusal{Problem::kNoLight};
  if (lines > 1 && !knowsReference) return Refusal{Problem::kNoReferenceWavelength};
  return std::nullopt;
}

}  // namespace

Pupil PupilInLight(const Eye& eye, double wavelengthNm) {
  const double radius = eye.diameterMm / 2.0;
  Pupil pupil;
  pupil.radiusMm = radius;
  pupil.wavelengthUm = wavelengthNm * 1e-3;
  pupil.modesUm = eye.modesUm;
  pupil.modesUm[0] = 0.0;
  if (eye.referenceNm != 0.0) {
    // The wavefront -difference / 2 |place - axis|^2, in um of mm^2 times dioptres.
    const double difference = ChromaticDifference(wavelengthNm, eye.referenceNm);
    pupil.modesUm[4] -= difference * radius * radius / (4.0 * std::numbers::sqrt3);
    pupil.modesUm[2] += difference * eye.achromaticAxisXmm * radius / 2.0;
    pupil.modesUm[1] += difference * eye.achromaticAxisYmm * radius / 2.0;
  }
  pupil.wavefrontUm = WavefrontPolynomial(pupil.modesUm);
  pupil.outline = eye.outline;
  pupil.stilesCrawford = eye.stilesCrawford;
  return pupil;
}

Outcome<std::vector<Beam>> BeamsOf(const Eye& eye, const Light& light) {
  if (const std::optional<Refusal> refusal = CheckEye(eye)) return *refusal;
  if (const std::optional<Refusal> refusal = CheckLight(light, eye.referenceNm != 0.0)) return *refusal;
  double total = 0.0;
  for (const SpectralLine& line : light) total += line.weight;
  std::vector<Beam> beams;
  for (std::size_t i = 0; i < light.size(); ++i) {
    const auto [wavelengthNm, weight] = light[i];
    if (weight == 0.0) continue;
    beams.push_back({PupilInLight(eye, wavelengthNm), static_cast<int>(i), weight / total,
                     wavelengthNm * 1e-3 / eye.diameterMm * kArcminPerMilliradian});
  }
  return beams;
}

}  // namespace orvanel::physical
