// The calls of the library in the order that gives both forms of the star.
#include "cli/simulation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "cli/error.h"
#include "cli/number_text.h"
#include "cli/trace_capture.h"
#include "orvanel/optics_engine.h"

namespace orvanel::cli {
namespace {

constexpr std::size_t kSide = ORVANEL_GRID_SIZE;
constexpr double kLargestHeight = 999.0;  // mm; the library takes what is higher for a sample outside the pupil

void Require(int result, const char* call) {
  if (result != 1) throw Error(std::string("the library refuses ") + call);
}

// Root mean square about the mean, and the range.
void MeasureHeights(Wavefront& wavefront) {
  double sum = 0.0, count = 0.0;
  double lowest = std::numeric_limits<double>::infinity(), highest = -lowest;
  for (const double w : wavefront.map) {
    if (std::isnan(w)) continue;
    sum += w;
    count += 1.0;
    lowest = std::min(lowest, w);
    highest = std::max(highest, w);
  }
  double squares = 0.0;
  for (const double w : wavefront.map) {
    if (!std::isnan(w)) squares += (w - sum / count) * (w - sum / count);
  }
  wavefront.rms = ToMicrometres(Millimetres(std::sqrt(squares / count)));
  wavefront.peakToValley = ToMicrometres(Millimetres(highest - lowest));
}

// Comparisons with what is not a number are false, so that samples outside the pupil never count.
void MeasureSlope(Wavefront& wavefront) {
  const Plane& map = wavefront.map;
  double steepest = 0.0, aliased = 0.0, count = 0.0;
  for (std::size_t i = 0; i + kSide < map.size(); ++i) {
    const double right = std::abs(map[i + 1] - map[i]), down = std::abs(map[i + kSide] - map[i]);
    if (right > steepest) steepest = right;
    if (down > steepest) steepest = down;
    if (right > kWavelength / 2.0 || down > kWavelength / 2.0) aliased += 1.0;
    if (!std::isnan(map[i])) count += 1.0;
  }
  wavefront.steepestStep = ToMicrometres(Millimetres(steepest));
  wavefront.aliasedShare = aliased / count;
}

bool InPupil(std::size_t sample) {
  constexpr int kCentre = ORVANEL_GRID_SIZE / 2, kRadius = ORVANEL_GRID_SIZE / 4;
  const int y = static_cast<int>(sample / kSide) - kCentre, x = static_cast<int>(sample % kSide) - kCentre;
  return x * x + y * y <= kRadius * kRadius;
}

Wavefront SynthesizeWavefront(Millimetres pupil, const LibraryCoefficients& coefficients) {
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  engine.synthesizeWavefront(Bare(coefficients).data(), pupil.value(), 1, 1, 1);
  Wavefront wavefront;
  wavefront.map.assign(engine.wavefrontPlane.begin(), engine.wavefrontPlane.end());
  for (std::size_t i = 0; i < wavefront.map.size(); ++i) {
    double& w = wavefront.map[i];
    if (!InPupil(i)) {
      w = std::numeric_limits<double>::quiet_NaN();
    } else if (!(std::abs(w) < kLargestHeight)) {
      throw Error("key 'coefficients': the wavefront would be a metre high and more; check the unit");
    }
  }
  MeasureHeights(wavefront);
  MeasureSlope(wavefront);
  return wavefront;
}

Ring SeeRing(const RingRequest& request) {
  Ring ring{request, 0, 0.0, Plane(ORVANEL_PLANE_SAMPLES), Plane(ORVANEL_PLANE_SAMPLES)};
  TraceCapture capture;
  const int result = OrvanelGetOrvanel(request.acuity, ring.seen.data(), &ring.effectiveAcuity, ring.original.data(),
                                       static_cast<int>(request.gap));
  const std::string trace = capture.Finish();
  Require(result, "the ring");
  ring.diameter = DiameterOfTrace(trace);
  if (ring.diameter == 0) {
    throw Error("a ring of acuity " + ShortestText(request.acuity) +
                " would be too small for the samples at this pupil; ask for a lower acuity");
  }
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

const char* Word(Gap gap) {
  switch (gap) {
    case Gap::kDown:
      return "down";
    case Gap::kUp:
      return "up";
    case Gap::kRight:
      return "right";
    case Gap::kLeft:
      return "left";
  }
  return "";
}

std::array<double, ORVANEL_COEFFICIENTS> Bare(const LibraryCoefficients& coefficients) {
  std::array<double, ORVANEL_COEFFICIENTS> bare;
  std::transform(coefficients.begin(), coefficients.end(), bare.begin(), [](Millimetres c) { return c.value(); });
  return bare;
}

Millimetres Wavelength() { return Millimetres(kWavelength); }

Simulation Simulate(Millimetres pupil, const LibraryCoefficients& coefficients, const std::vector<RingRequest>& rings) {
  Simulation s;
  s.pupil = pupil;
  s.coefficients = coefficients;
  s.wavefront = SynthesizeWavefront(pupil, coefficients);
  for (Plane* plane : {&s.psf, &s.mtf, &s.starOriginal, &s.starStretched, &s.starTotalLight}) {
    plane->resize(ORVANEL_PLANE_SAMPLES);
  }

  OrvanelInputPupil(pupil.value());
  Require(OrvanelInputZer(Bare(coefficients).data()), "the coefficients");
  double halfWidth, range;
  Require(OrvanelGetPSF(s.psf.data(), &s.strehl, &halfWidth), "the point spread function");
  Require(OrvanelGetMTF(s.mtf.data(), &range), "the modulation transfer function");
  Require(OrvanelGetMTFGraph(s.rowSection.data(), s.columnSection.data(), s.diffractionLimit.data(), &range),
          "the sections");
  s.psfHalfWidth = Millimetres(halfWidth);
  s.frequencyRange = CyclesPerDegree(range);
  RequireFinite(s);

  // Before any ring the star is stretched; after one it keeps its total light.
  Require(OrvanelGetPattern(s.starStretched.data()), "the star");
  Require(OrvanelGetPatternOriginal(s.starOriginal.data()), "the original star");
  for (const RingRequest& request : rings) s.rings.push_back(SeeRing(request));
  Require(OrvanelGetPattern(s.starTotalLight.data()), "the star");
  return s;
}

}  // namespace orvanel::cli
