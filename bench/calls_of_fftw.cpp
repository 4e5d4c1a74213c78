// Defines the calls of the pipeline on FFTW. Its results are compared with the library's before any measurement.
#include <cmath>
#include <memory>
#include <stdexcept>

#include "bench/calls.h"
#include "bench/eyes.h"
#include "bench/fftw_pipeline.h"
#include "orvanel/optics_engine.h"
#include "tests/support/loaded_library.h"

namespace orvanel::bench {
namespace {

using Plane = std::vector<double>;

// The results that must agree to rounding.
constexpr double kLargestDifference = 1e-9;

void Compare(const char* what, const Plane& a, const Plane& b) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::fabs(a[i] - b[i]) <= kLargestDifference) continue;
    throw std::runtime_error("The FFTW pipeline computes another " + std::string(what) +
                             " than the library: " + std::to_string(a[i]) + " instead of " + std::to_string(b[i]) +
                             " at sample " + std::to_string(i));
  }
}

Plane Star() {
  Plane star(ORVANEL_PLANE_SAMPLES);
  const test::LoadedLibrary library;
  library.InputPupil(kPupil_mm);
  library.InputZer(EyeAt(0).data());
  library.GetPattern(star.data());
  library.GetPatternOriginal(star.data());
  return star;
}

struct Subject {
  Subject() : pipeline(Star().data()) {}

  void Enter(int turn) { pipeline.Input(EyeAt(turn).data(), kPupil_mm, heldPsf.data(), heldMtf.data(), nullptr); }
  void MakeRingImage(int turn) {
    const orvanel::bench::Ring ring = RingAt(turn);
    pipeline.Ring(ring.acuity, ring.gapDirection, optotype.data(), image.data());
  }

  FftwPipeline pipeline;
  Plane heldPsf = Plane(ORVANEL_PLANE_SAMPLES);
  Plane heldMtf = Plane(ORVANEL_PLANE_SAMPLES);
  Plane phase = Plane(ORVANEL_PLANE_SAMPLES);
  Plane image = Plane(ORVANEL_PLANE_SAMPLES);
  Plane optotype = Plane(ORVANEL_PLANE_SAMPLES);
  double strehl = 0.0;
};

void CheckResults(Subject& s) {
  constexpr int kTurn = 3;
  const test::LoadedLibrary library;
  Plane expected(ORVANEL_PLANE_SAMPLES), drawn(ORVANEL_PLANE_SAMPLES);
  double strehl = 0.0, scalar = 0.0;
  library.InputPupil(kPupil_mm);
  library.InputZer(EyeAt(kTurn).data());
  s.pipeline.Input(EyeAt(kTurn).data(), kPupil_mm, s.heldPsf.data(), s.heldMtf.data(), s.phase.data());
  library.GetPSF(expected.data(), &strehl, &scalar);
  Compare("PSF", s.heldPsf, expected);
  Compare("Strehl ratio", {s.pipeline.Strehl(EyeAt(kTurn).data())}, {strehl});
  library.GetMTF(expected.data(), &scalar);
  Compare("MTF", s.heldMtf, expected);

  // Angles have no meaning where the modulus is 0.
  OpticsEngine engine;
  engine.synthesizeWavefront(EyeAt(kTurn).data(), kPupil_mm, 1, 1, 1);
  engine.ComputeMtf(kWavelength, expected.data(), &scalar, nullptr, nullptr, nullptr, ORVANEL_GRID_SIZE);
  Plane phase(engine.phasePlane.begin(), engine.phasePlane.end());
  for (std::size_t i = 0; i < phase.size(); ++i) {
    if (expected[i] < 1e-5 || std::fabs(phase[i]) > 3.14) phase[i] = s.phase[i];
  }
  Compare("phase", s.phase, phase);

  library.GetPattern(expected.data());
  s.pipeline.Pattern(true, s.image.data());
  Compare("stretched image", s.image, expected);
  const orvanel::bench::Ring ring = RingAt(kTurn);
  library.GetOrvanel(ring.acuity, expected.data(), &scalar, drawn.data(), ring.gapDirection);
  s.MakeRingImage(kTurn);
  Compare("ring", s.optotype, drawn);
  Compare("image of the ring", s.image, expected);
}

}  // namespace

std::vector<Call> CallsOfFftw() {
  const auto s = std::make_shared<Subject>();
  CheckResults(*s);
  const auto nothing = [] {};
  return {
      {"InputZerWithPhase", nothing,
       [s](int turn) {
         s->pipeline.Input(EyeAt(turn).data(), kPupil_mm, s->heldPsf.data(), s->heldMtf.data(), s->phase.data());
       }},
      {"InputZer", nothing, [s](int turn) { s->Enter(turn); }},
      {"Strehl", nothing, [s](int turn) { s->strehl = s->pipeline.Strehl(EyeAt(turn).data()); }},
      {"GetOrvanel", [s] { s->Enter(0); }, [s](int turn) { s->MakeRingImage(turn); }},
      {"GetPattern", [s] { s->Enter(0); }, [s](int) { s->pipeline.Pattern(true, s->image.data()); }},
      // PSF and MTF are written to the user's buffers at once; no getter is needed.
      {"OneEye", nothing,
       [s](int turn) {
         s->Enter(turn);
         s->MakeRingImage(turn);
         s->pipeline.Pattern(false, s->image.data());
       }},
  };
}

}  // namespace orvanel::bench
