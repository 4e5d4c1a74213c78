// Defines the calls in plain scalar code, one sample after the other: the cost of the library without optimisation. The
// tests compare the kernels with the same code. It computes MTF and phase together, so no call leaves out the phase.
#include <cstdio>
#include <memory>

#include "bench/calls.h"
#include "bench/eyes.h"
#include "orvanel/optics_engine.h"
#include "tests/support/plain.h"

namespace orvanel::bench {
namespace {

using plain::Plane;

constexpr int kSide = ORVANEL_GRID_SIZE;
constexpr double kFocalLength_mm = 17.0;
constexpr double kHalfWidth_mm = 32.0 * kFocalLength_mm * kWavelength / kPupil_mm;

struct Subject {
  void Synthesize(int turn) {
    plain::SynthesizeWavefront(EyeAt(turn).data(), kPupil_mm, 2, kSide, wavefront, pupilX, pupilY);
  }
  void Enter(int turn) {
    Synthesize(turn);
    psf = plain::ComputePsf(wavefront, kWavelength, kSide);
    transfer = plain::Mtf(psf.plane, kSide);
  }
  void MakeOtf() { otf = plain::EyeOtf(psf.plane, kSide); }
  void MakeImage(const Plane& object) {
    double total = 0.0;
    for (const double sample : object) total += sample;
    image = plain::FilteredIntensity({object, Plane(object.size())}, otf, kSide);
    plain::KeepTotal(image, total);
  }
  void MakeRingImage(int turn) {
    const bench::Ring ring = RingAt(turn);
    const plain::RingSize size = plain::SizeOfRing(ring.acuity, kSide, kSide, kHalfWidth_mm, kFocalLength_mm);
    std::printf("%g\t%d\n", ring.acuity, size.diameter);
    std::fflush(stdout);
    optotype = plain::DrawRing(size.diameter, kSide, ring.gapDirection);
    MakeImage(optotype);
  }

  Plane wavefront = Plane(ORVANEL_PLANE_SAMPLES);
  Plane pupilX = Plane(ORVANEL_PLANE_SAMPLES);
  Plane pupilY = Plane(ORVANEL_PLANE_SAMPLES);
  plain::Psf psf{};
  plain::TransferFunction transfer;
  plain::ComplexPlane otf;
  Plane optotype;
  Plane image;
  Plane star = plain::DrawRing(120, kSide, 1);  // any picture costs the same
  double strehl = 0.0;
};

}  // namespace

std::vector<Call> CallsOfPlainCode() {
  const auto s = std::make_shared<Subject>();
  const auto nothing = [] {};
  const auto anEye = [s] {
    s->Enter(0);
    s->MakeOtf();
  };
  return {
      {"InputZerWithPhase", nothing, [s](int turn) { s->Enter(turn); }},
      {"Strehl", nothing,
       [s](int turn) {
         s->Synthesize(turn);
         s->strehl = plain::ComputePsf(s->wavefront, kWavelength, kSide).strehl;
       }},
      {"GetOrvanel", anEye, [s](int turn) { s->MakeRingImage(turn); }},
      {"GetPattern", anEye,
       [s](int) {
         s->image = plain::FilteredIntensity({s->star, Plane(s->star.size())}, s->otf, kSide);
         plain::Stretch(s->image);
       }},
      {"OneEye", nothing,
       [s](int turn) {
         s->Enter(turn);
         s->MakeOtf();
         s->MakeRingImage(turn);
         s->MakeImage(s->star);
       }},
  };
}

}  // namespace orvanel::bench
