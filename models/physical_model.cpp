// Fills results from the functions of the physical model.
#include "models/physical_model.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <utility>

#include "base/elementary.h"
#include "eye/rms.h"
#include "models/physical/angular_means.h"
#include "models/physical/transfer_function.h"
#include "models/physical_eye.h"
#include "models/physical_refusal.h"
#include "optics/kernels/dispatch.h"
#include "orvanel/ring.h"

namespace orvanel::models {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// The wavefront's map: 240 of 256 samples span the pupil.
constexpr int kMapSide = 256;
constexpr double kMapPupil = 240.0;

// Piston and tilt, which are not part of the map; tilt shifts the PSF and images.
constexpr int kModesThatShift = 3;

// The plane of the MTF: the cut-off is at 120 of the 128 samples from its centre.
constexpr int kMtfSide = 256;
constexpr double kMtfCutOff = 120.0;

// The sections: from frequency 0 to the cut-off.
constexpr int kSectionSamples = 129;

double CentreOf(int samples) { return (samples - 1) / 2.0; }

// Of the shortest wavelength that counts.
CyclesPerDegree CutOff(const physical::Eye& eye, const physical::Light& light) {
  double shortest = std::numeric_limits<double>::infinity();
  for (const physical::SpectralLine& line : light) {
    if (line.weight > 0.0) shortest = std::min(shortest, line.wavelengthNm);
  }
  constexpr double kPerDegree = std::numbers::pi / 180.0;  // rad
  return CyclesPerDegree(eye.diameterMm / (shortest * 1e-6) * kPerDegree);
}

physical::Eye WithoutAberration(physical::Eye eye) {
  eye.modesUm = {};
  return eye;
}

Plane Stretched(Plane image) {
  const auto [low, high] = std::minmax_element(image.begin(), image.end());
  const double first = *low, range = *high - *low;
  for (double& v : image) v = range > 0.0 ? (v - first) / range : 0.0;
  return image;
}

double Mean(const Plane& plane) {
  return std::accumulate(plane.begin(), plane.end(), 0.0) / static_cast<double>(plane.size());
}

const Kernels& Chosen() {
  const Kernels* const kernels = ActiveKernels();
  if (kernels == nullptr) throw Error(WhyNoKernels());
  return *kernels;
}

}  // namespace

PhysicalModel::PhysicalModel(PhysicalSettings settings) : settings_(std::move(settings)), workspace_(Chosen()) {}

void PhysicalModel::Compute(const Eye& eye, Needs needs, Results& results) {
  filter_.reset();
  eye_ = PhysicalEyeOf(eye);
  eye_.outline = settings_.outline;
  eye_.stilesCrawford = settings_.stilesCrawford;
  eye_.achromaticAxisXmm = settings_.achromaticAxisXmm;
  eye_.achromaticAxisYmm = settings_.achromaticAxisYmm;

  results.model = ModelKind::kPhysical;
  results.pupil = eye.pupil;
  PhysicalResults& own = results.physical.emplace();
  own.light = settings_.light;
  own.view = ViewOf(settings_.view);
  own.stilesCrawford = settings_.stilesCrawford;
  own.origin = settings_.origin;
  own.referenceAssumed = eye_.referenceNm == 0.0;
  own.reference = Nanometres(own.referenceAssumed ? settings_.light.at(0).wavelengthNm : eye_.referenceNm);
  own.cutOff = CutOff(eye_, settings_.light);
  results.pupilAxis = {eye.pupil / kMapPupil, CentreOf(kMapSide)};
  results.retinaAxis = {settings_.field / settings_.samples, CentreOf(settings_.samples)};
  results.frequencyAxis = {own.cutOff / kMtfCutOff, kMtfSide / 2.0};
  results.sectionStep = own.cutOff / (kSectionSamples - 1);
  results.objectSide = settings_.objectSide;
  if (needs.empty()) return;

  ComputeWavefront(needs, results);
  if (needs.HasAnyOf({Need::kStrehl, Need::kStrehlPeak})) {
    own.strehl = Accepted(StrehlRatiosOf(eye_, settings_.light, settings_.view, workspace_));
    results.strehl = own.strehl.axis;
    results.strehlPeak = own.strehl.peak;
  }
  if (needs.Has(Need::kPsf)) {
    physical::RetinalGrid grid;
    grid.spacing = results.retinaAxis.step.value();
    grid.columns = grid.rows = settings_.samples;
    grid.view = settings_.view;
    grid.origin = settings_.origin;
    physical::PointSpread psf =
        Accepted(PointSpreadOf(eye_, settings_.light, grid, physical::PsfUnit::kStrehl, workspace_));
    own.originX = ArcMinutes(psf.originX);
    own.originY = ArcMinutes(psf.originY);
    own.psfLight = psf.perfectPerArcmin2 * grid.spacing * grid.spacing *
                   std::accumulate(psf.samples.begin(), psf.samples.end(), 0.0);
    results.psf = Plane(settings_.samples, settings_.samples, std::move(psf.samples));
  }
  ComputeMtf(needs, results);
}

void PhysicalModel::ComputeWavefront(Needs needs, Results& results) const {
  if (!needs.HasAnyOf({Need::kWavefront, Need::kWavefrontRange})) return;
  auto modes = eye_.modesUm;
  std::fill_n(modes.begin(), kModesThatShift, 0.0);
  const physical::Polynomial wavefront = physical::WavefrontPolynomial(modes);
  const physical::Ellipse& outline = eye_.outline;
  const auto [s, c] = SineAndCosine(outline.angle);
  Plane& map = results.wavefront.map;
  map = Plane(kMapSide, kMapSide, kNone);
  double lowest = std::numeric_limits<double>::infinity(), highest = -lowest;
  for (int row = 0; row < kMapSide; ++row) {
    const double y = (CentreOf(kMapSide) - row) * 2.0 / kMapPupil;
    for (int column = 0; column < kMapSide; ++column) {
      const double x = (column - CentreOf(kMapSide)) * 2.0 / kMapPupil;
      const double dx = x - outline.centreX, dy = y - outline.centreY;
      const double along = (dx * c + dy * s) / outline.semiAxisA, across = (dy * c - dx * s) / outline.semiAxisB;
      if (along * along + across * across > 1.0) continue;
      const double height = physical::At(wavefront, x, y).value;
      map[static_cast<std::size_t>(row * kMapSide + column)] = height * 1e-3;
      lowest = std::min(lowest, height);
      highest = std::max(highest, height);
    }
  }
  results.wavefront.peakToValley = Micrometres(highest - lowest);
  results.wavefront.rms = Rms(Coefficients(eye_.modesUm.begin(), eye_.modesUm.end()), kLowestOrderThatBlurs);
}

void PhysicalModel::ComputeMtf(Needs needs, Results& results) {
  PhysicalResults& own = *results.physical;
  if (needs.Has(Need::kMtf)) {
    const physical::FrequencyGrid grid{results.frequencyAxis.step.value(), kMtfSide, settings_.view};
    const physical::TransferFunction otf = Accepted(TransferFunctionOf(eye_, settings_.light, grid, workspace_));
    results.mtf = Plane(kMtfSide, kMtfSide);
    for (std::size_t i = 0; i < results.mtf.size(); ++i) {
      results.mtf[i] = std::sqrt(otf.re[i] * otf.re[i] + otf.im[i] * otf.im[i]);
    }
  }
  if (needs.Has(Need::kSections)) {
    std::vector<double> frequencies;
    for (int i = 0; i < kSectionSamples; ++i) frequencies.push_back(results.sectionStep.value() * i);
    const auto along = [&](const physical::Eye& eye, double x, double y) {
      std::vector<physical::Frequency> places;
      for (const double f : frequencies) places.push_back({f * x, f * y});
      Curve curve;
      for (const auto& otf : Accepted(TransferFunctionAt(eye, settings_.light, places, settings_.view, workspace_))) {
        curve.push_back(physical::Modulus(otf));
      }
      return curve;
    };
    const auto mean = [&](const physical::Eye& eye) {
      auto means = MeansOverAngleByLattice(eye, settings_.light, frequencies, workspace_);
      // The lattice of a strongly blurred eye is too large. The method without one takes minutes for a curve.
      if (!means && means.refusal().problem == physical::Problem::kFieldTooLarge) return Curve{};
      Curve curve;
      for (const physical::AngularMeans& at : Accepted(std::move(means))) curve.push_back(at.mtf);
      return curve;
    };
    results.rowSection = along(eye_, 1.0, 0.0);
    results.columnSection = along(eye_, 0.0, 1.0);
    own.mean = mean(eye_);
    results.diffractionLimit = mean(WithoutAberration(eye_));
  }
  if (!needs.Has(Need::kLineSpreads)) return;
  std::vector<double> frequencies;
  std::vector<physical::Frequency> places;
  for (const CyclesPerDegree frequency : settings_.mtfAt) {
    frequencies.push_back(frequency.value());
    places.insert(places.end(), {{frequency.value(), 0.0}, {0.0, frequency.value()}});
  }
  const auto otf = Accepted(TransferFunctionAt(eye_, settings_.light, places, settings_.view, workspace_));
  const auto means = Accepted(MeansOverAngle(eye_, settings_.light, frequencies, workspace_));
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    own.mtfAt.push_back(
        {settings_.mtfAt[i], physical::Modulus(otf[2 * i]), physical::Modulus(otf[2 * i + 1]), means[i].mtf});
  }
}

Plane PhysicalModel::LinearImage(const Plane& object, ArcMinutes pixel, double surround) {
  if (!filter_ || filter_->columns != object.columns() || filter_->rows != object.rows() || filter_->pixel != pixel) {
    const physical::ObjectSize size{object.columns(), object.rows(), pixel.value(), 0};
    filter_.emplace(KeptFilter{object.columns(), object.rows(), pixel,
                               Accepted(physical::ImageFilter::Of(eye_, settings_.light, size, workspace_))});
  }
  physical::RetinalImage image = Accepted(filter_->filter.ImageOf(object.data(), surround, settings_.view, workspace_));
  return {image.columns, image.rows, std::move(image.luminance)};
}

void PhysicalModel::ImageOf(const Plane& object, ImageKind kind, Plane& image) {
  image = LinearImage(object, settings_.objectSide / object.columns(), 1.0);
  if (kind == ImageKind::kStretched) image = Stretched(std::move(image));
}

void PhysicalModel::ImageOf(PrecomputedObject object, ImageKind kind, Plane& image) {
  ImageOf(objects_.at(object.index), kind, image);
}

PrecomputedObject PhysicalModel::Precompute(const Plane& object) {
  objects_.push_back(object);
  return {objects_.size() - 1};
}

Ring PhysicalModel::SeeRing(const RingRequest& request) {
  constexpr int kSide = 256, kDiameter = 80, kSmallestDiameter = 10;
  for (int diameter = kDiameter;; diameter /= 2) {
    constexpr double kArcMinutes = 5.0;  // of a ring of acuity 1
    Ring ring{
        request, ArcMinutes(kArcMinutes / request.acuity / diameter), diameter, request.acuity, Plane(kSide, kSide),
        {}};
    DrawRing(ring.original.data(), kSide, diameter, static_cast<int>(request.gap));
    try {
      ring.seen = LinearImage(ring.original, ring.pixel, 1.0);
      return ring;
    } catch (const PhysicalRefusal& refusal) {
      // A blur of many samples needs a large lattice, and not that many samples.
      if (refusal.refusal.problem != physical::Problem::kFieldTooLarge || diameter == kSmallestDiameter) throw;
    }
  }
}

RetinalPicture PhysicalModel::RetinalPictureOf(ObjectPicture object) {
  RetinalPicture picture;
  for (const Plane& channel : object.channels) {
    picture.pixel = settings_.objectSide / channel.columns();
    picture.seen.push_back(LinearImage(channel, picture.pixel, Mean(channel)));
  }
  picture.object = std::move(object);
  return picture;
}

}  // namespace orvanel::models
