// Computes the needed results with as few calls of the engine as possible.
#include "models/adapters/classic_model.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "eye/rms.h"
#include "models/errors.h"
#include "models/sampling.h"
#include "orvanel/ring.h"
#include "orvanel/sampling.h"

namespace orvanel::models {
namespace {

constexpr Needs kOfMtf = {Need::kMtf, Need::kSections};
constexpr Needs kOfPsf = {Need::kPsf, Need::kStrehlPeak, Need::kLineSpreads, Need::kImages};

// An upper bound, since no polynomial exceeds 1.
Millimetres HeightBound(const LibraryCoefficients& coefficients) {
  double bound = 0.0;
  for (const Millimetres c : coefficients) bound += std::abs(c.value());
  return Millimetres(bound);
}

void CopyMap(const GridPlane& wavefront, Plane& map) {
  map.Resize(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  std::replace_copy(wavefront.begin(), wavefront.end(), map.begin(), kWavefrontOutside,
                    std::numeric_limits<double>::quiet_NaN());
}

void ComputeRange(const OpticsEngine& engine, Wavefront& wavefront) {
  double lowest = std::numeric_limits<double>::infinity(), highest = -lowest;
  for (const double w : engine.wavefrontPlane) {
    if (w == kWavefrontOutside) continue;
    lowest = std::min(lowest, w);
    highest = std::max(highest, w);
  }
  wavefront.peakToValley = ToMicrometres(Millimetres(highest - lowest));
  wavefront.steepestStep =
      ToMicrometres(Millimetres(LargestStep(engine.wavefrontPlane.data(), ORVANEL_GRID_SIZE, engine.pupilSamples)));
}

}  // namespace

void ClassicModel::Compute(const Eye& eye, Needs needs, Results& results) {
  pupil_ = eye.pupil;
  results.model = ModelKind::kClassic;
  results.physical.reset();
  results.pupil = eye.pupil;
  results.scales = ScalesOf(eye.pupil);
  constexpr double kCentre = ORVANEL_GRID_SIZE / 2.0;
  results.pupilAxis = {eye.pupil / kCentre, kCentre};
  results.retinaAxis = {results.scales.library.pitch, kCentre};
  results.frequencyAxis = {results.scales.library.step, kCentre};
  results.sectionStep = results.scales.library.step;
  results.objectSide = FieldOf(results.scales.library);
  if (needs.empty()) return;
  const LibraryCoefficients coefficients = ToLibrary(eye.coefficients);
  const Millimetres bound = HeightBound(coefficients);
  if (!(bound.value() < kLargestInside)) throw WavefrontTooHigh(bound);
  engine_.synthesizeWavefront(Bare(coefficients).data(), eye.pupil.value(), 1, 1, 1);
  if (needs.Has(Need::kUndersampled)) {
    results.undersampled =
        UndersampledShare(engine_.wavefrontPlane.data(), ORVANEL_GRID_SIZE, engine_.pupilSamples, kWavelength);
  }
  if (needs.Has(Need::kWavefront)) CopyMap(engine_.wavefrontPlane, results.wavefront.map);
  if (needs.Has(Need::kWavefrontRange)) {
    results.wavefront.rms = Rms(eye.coefficients.osa(), kLowestOrderThatBlurs);
    ComputeRange(engine_, results.wavefront);
  }
  if (needs.HasAnyOf(kOfMtf | kOfPsf)) {
    ComputePlanes(needs, results);
  } else if (needs.Has(Need::kStrehl)) {
    results.strehl = engine_.ComputeStrehl(kWavelength);
  }
}

void ClassicModel::ComputePlanes(Needs needs, Results& results) {
  const auto plane = [this, needs](Need need, Plane& wanted) {
    Plane& written = needs.Has(need) ? wanted : spare_;
    written.Resize(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
    return written.data();
  };
  double step = 0.0, strehl = 0.0;
  if (needs.HasAnyOf(kOfMtf)) {
    const bool sections = needs.Has(Need::kSections);
    if (sections) {
      for (Curve* const curve : {&results.rowSection, &results.columnSection, &results.diffractionLimit}) {
        curve->resize(ORVANEL_SECTION_SAMPLES);
      }
    }
    engine_.ComputeMtf(kWavelength, plane(Need::kMtf, results.mtf), &step,
                       sections ? results.rowSection.data() : nullptr,
                       sections ? results.columnSection.data() : nullptr,
                       sections ? results.diffractionLimit.data() : nullptr, ORVANEL_GRID_SIZE);
    if (needs.Has(Need::kPsf)) {
      results.psf.Resize(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
      engine_.psfPlane.CopyTo(results.psf.data());
    }
  } else {
    engine_.ComputePsf(kWavelength, plane(Need::kPsf, results.psf), &step, &strehl, ORVANEL_GRID_SIZE);
  }
  if (needs.Has(Need::kStrehl)) results.strehl = engine_.strehlRatio;
  if (needs.Has(Need::kStrehlPeak)) results.strehlPeak = engine_.strehlRatio * engine_.FindPsfPeak().value;
  if (needs.Has(Need::kLineSpreads))
    results.lineSpreads = LineSpreadsOf(needs.Has(Need::kPsf) ? results.psf.data() : engine_.psfPlane.data());
}

void ClassicModel::ImageOf(const Plane& object, ImageKind kind, Plane& image) {
  image.Resize(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  engine_.normaliseOutput = kind == ImageKind::kStretched ? 1 : 0;
  if (kind != ImageKind::kLinear) {
    engine_.PatternRetinalImage(image.data(), object.data(), ORVANEL_GRID_SIZE);
    return;
  }
  const double total = SumOf(object);
  image = object;
  if (total <= 0.0) return;
  // The image of an object with the sum 1 is not clipped. Its roots are then scaled to the light of the object.
  Plane& share = spare_;
  share = object;
  for (double& v : share) v /= total;
  engine_.PatternRetinalImage(image.data(), share.data(), ORVANEL_GRID_SIZE);
  for (double& v : image) v = std::sqrt(v);
  const double scale = total / SumOf(image);
  for (double& v : image) v = std::min(v * scale, 1.0);
}

void ClassicModel::ImageOf(PrecomputedObject object, ImageKind kind, Plane& image) {
  image.Resize(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  engine_.normaliseOutput = kind == ImageKind::kStretched ? 1 : 0;
  engine_.PreparedRetinalImage(image.data(), objects_.at(object.index));
}

Ring ClassicModel::SeeRing(const RingRequest& request) {
  Ring ring{request,
            ScalesOf(pupil_).library.pitch,
            RingDiameter(pupil_, request.acuity),
            0.0,
            Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE),
            {}};
  ring.effectiveAcuity = EffectiveAcuity(pupil_, ring.diameter);
  DrawRing(ring.original.data(), ORVANEL_GRID_SIZE, ring.diameter, static_cast<int>(request.gap));
  ImageOf(ring.original, ImageKind::kTotalLight, ring.seen);
  return ring;
}

PrecomputedObject ClassicModel::Precompute(const Plane& object) {
  objects_.push_back(engine_.Prepare(object.data()));
  return {objects_.size() - 1};
}

}  // namespace orvanel::models
