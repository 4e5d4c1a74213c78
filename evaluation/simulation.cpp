// Runs the engine once for all results of an eye.
#include "evaluation/simulation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "base/error.h"
#include "eye/rms.h"
#include "models/sampling.h"
#include "orvanel/optics_engine.h"
#include "orvanel/ring.h"
#include "orvanel/sampling.h"
#include "targets/sector_star.h"

namespace orvanel::evaluation {
namespace {

constexpr std::size_t kSide = ORVANEL_GRID_SIZE;

Micrometres RmsOf(const LibraryCoefficients& coefficients) {
  const auto bare = Bare(coefficients);
  return Rms(Converted({bare.begin(), bare.end()}, kLibraryConvention, kOsaConvention), kLowestOrderThatBlurs);
}

void MeasureRange(Wavefront& wavefront) {
  double lowest = std::numeric_limits<double>::infinity(), highest = -lowest;
  for (const double w : wavefront.map) {
    if (std::isnan(w)) continue;
    lowest = std::min(lowest, w);
    highest = std::max(highest, w);
  }
  wavefront.peakToValley = ToMicrometres(Millimetres(highest - lowest));
}

bool InPupil(std::size_t sample) {
  constexpr int kCentre = ORVANEL_GRID_SIZE / 2, kRadius = ORVANEL_GRID_SIZE / 4;
  const int y = static_cast<int>(sample / kSide) - kCentre, x = static_cast<int>(sample % kSide) - kCentre;
  return x * x + y * y <= kRadius * kRadius;
}

// The wavefront that the engine holds.
Wavefront WavefrontOf(const OpticsEngine& engine, const LibraryCoefficients& coefficients) {
  Wavefront wavefront;
  wavefront.map.assign(engine.wavefrontPlane.begin(), engine.wavefrontPlane.end());
  for (std::size_t i = 0; i < wavefront.map.size(); ++i) {
    double& w = wavefront.map[i];
    if (!InPupil(i)) {
      w = std::numeric_limits<double>::quiet_NaN();
    } else if (!(std::abs(w) < kLargestInside)) {
      throw Error("key 'coefficients': the wavefront would be a metre high and more; check the unit");
    }
  }
  wavefront.rms = RmsOf(coefficients);
  MeasureRange(wavefront);
  const double* const samples = engine.wavefrontPlane.data();
  wavefront.steepestStep = ToMicrometres(Millimetres(LargestStep(samples, ORVANEL_GRID_SIZE, engine.pupilSamples)));
  wavefront.aliasedShare = UndersampledShare(samples, ORVANEL_GRID_SIZE, engine.pupilSamples, kWavelength);
  return wavefront;
}

// An object as the engine's eye sees it.
//   stretched  whether the image is stretched to span 0 to 1, and does not keep the object's light
Plane SeenBy(OpticsEngine& engine, const Plane& object, bool stretched) {
  Plane seen(ORVANEL_PLANE_SAMPLES);
  engine.normaliseOutput = stretched ? 1 : 0;
  engine.PatternRetinalImage(seen.data(), object.data(), ORVANEL_GRID_SIZE);
  return seen;
}

Ring SeeRing(OpticsEngine& engine, Millimetres pupil, const RingRequest& request) {
  Ring ring{request, RingDiameter(pupil, request.acuity), 0.0, Plane(ORVANEL_PLANE_SAMPLES), {}};
  ring.effectiveAcuity = EffectiveAcuity(pupil, ring.diameter);
  DrawRing(ring.original.data(), ORVANEL_GRID_SIZE, ring.diameter, static_cast<int>(request.gap));
  ring.seen = SeenBy(engine, ring.original, false);
  return ring;
}

void RequireFinite(const Simulation& simulation) {
  for (const double scalar :
       {simulation.strehl, simulation.psfHalfWidth.value(), simulation.frequencyRange.value(), simulation.mtf[0]}) {
    if (!std::isfinite(scalar))
      throw Error("key 'pupil_diameter_mm': so far from an eye's pupil that nothing can be computed; check the unit");
  }
}

}  // namespace

Simulation Simulate(Millimetres pupil, const LibraryCoefficients& coefficients, const std::vector<RingRequest>& rings) {
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  Simulation s;
  s.pupil = pupil;
  s.coefficients = coefficients;
  engine.synthesizeWavefront(Bare(coefficients).data(), pupil.value(), 1, 1, 1);
  s.wavefront = WavefrontOf(engine, coefficients);

  s.mtf.resize(ORVANEL_PLANE_SAMPLES);
  double step = 0.0;
  engine.ComputeMtf(kWavelength, s.mtf.data(), &step, s.rowSection.data(), s.columnSection.data(),
                    s.diffractionLimit.data(), ORVANEL_GRID_SIZE);
  s.psf.assign(engine.psfPlane.begin(), engine.psfPlane.end());
  s.strehl = engine.strehlRatio;
  s.strehlPeak = s.strehl * engine.FindPsfPeak().value;
  s.lineSpreads = LineSpreadsOf(s.psf.data());
  s.psfHalfWidth = PsfHalfWidth(pupil);
  s.frequencyRange = FrequencyRange(pupil);
  RequireFinite(s);

  s.starOriginal = SectorStar();
  s.starStretched = SeenBy(engine, s.starOriginal, true);
  s.starTotalLight = SeenBy(engine, s.starOriginal, false);
  for (const RingRequest& request : rings) s.rings.push_back(SeeRing(engine, pupil, request));
  return s;
}

}  // namespace orvanel::evaluation
