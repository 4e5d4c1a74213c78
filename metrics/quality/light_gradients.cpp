// Derivatives at a fixed place by the adjoint of each sum, and the motion of the place.
#include "metrics/quality/light_gradients.h"

#include <limits>
#include <optional>

#include "models/physical/window/centroid.h"

namespace orvanel::metrics {
namespace {

using physical::DensityGradient;
using physical::Gradient;
using physical::Paraboloid;
using LowWeights = LightLattice::LowWeights;

// Of the origin's place.
struct Motion {
  Gradient x{}, y{};
};

// The highest place of a function moves so that its slopes stay 0.
Motion MotionOfPeak(const Paraboloid& at, const Gradient& slopeX, const Gradient& slopeY) {
  const double determinant = at.xx * at.yy - at.xy * at.xy;
  Motion motion;
  for (std::size_t j = 0; j < slopeX.size(); ++j) {
    motion.x[j] = (at.xy * slopeY[j] - at.yy * slopeX[j]) / determinant;
    motion.y[j] = (at.xy * slopeX[j] - at.xx * slopeY[j]) / determinant;
  }
  return motion;
}

class Gradients {
 public:
  Gradients(QualityOrigin wanted, const SampledLight& light, const LightLattice& lattice, const Sums& sums,
            const Origin& origin, physical::Workspace& workspace)
      : wanted_(wanted),
        light_(light),
        lattice_(lattice),
        sums_(sums),
        origin_(origin),
        workspace_(workspace),
        samples_(light.beams, light.factors, workspace) {}

  void Add(const Needs& needs, SumGradients& gradients) {
    const Place place = origin_.place;
    if (needs.neural) {
      gradients.neural = OfLow({1.0, 0.0, 0.0}, {});
      if (wanted_ != QualityOrigin::kBest) Follow(lattice_.Neural(sums_.low, place), gradients.neural);
    }
    if (needs.gaussian) {
      const Paraboloid at = lattice_.Gaussian(sums_.low, place);
      if (wanted_ == QualityOrigin::kBest && origin_.isUnique) {
        gradients.gaussian = OfLow(SlopesThatFollow(at), {1.0, 0.0, 0.0});
      } else {
        gradients.gaussian = OfLow({}, {1.0, 0.0, 0.0});
        Follow(at, gradients.gaussian);
      }
    }
    if (needs.peak) gradients.peak = OfPeak().value;
    if (needs.atOrigin) {
      const DensityGradient density = DensityAt(place.x, place.y);
      gradients.atOrigin = density.value;
      if (wanted_ != QualityOrigin::kPeak) Follow(density.density, gradients.atOrigin);
    }
    if (needs.contrastModulus) {
      gradients.contrastModulus =
          OfMeans(WeightsOfContrasts(sums_.means, lattice_.weighting().contrast, 1.0, 0.0, 0.0));
    }
    if (needs.areaMtf) {
      gradients.areaMtf = OfMeans(WeightsOfContrasts(sums_.means, lattice_.weighting().contrast, 0.0, 1.0, 0.0));
    }
    if (needs.areaOtf) {
      gradients.areaOtf = OfMeans(WeightsOfContrasts(sums_.means, lattice_.weighting().contrast, 0.0, 0.0, 1.0));
    }
    if (needs.light) gradients.within = OfCircle(light_.circle);
    if (needs.diameter) {
      // The radius changes so that the light within stays the same.
      gradients.radius50 = OfCircle(sums_.radius50);
      for (double& d : gradients.radius50) d /= -sums_.circles.SlopeAt(sums_.radius50);
    }
    if (needs.entropy) {
      const LightLattice::Slope slope = WeightsOfEntropy(light_.window, place, workspace_);
      gradients.entropy = OfSamples(light_.window, slope);
    }
  }

 private:
  Gradient OfLow(const LowWeights& neural, const LowWeights& gaussian) {
    const physical::LightWindow& window = light_.window;
    const Place fromCentre{origin_.place.x - window.centreX, origin_.place.y - window.centreY};
    lattice_.WeightsOfLow(fromCentre, neural, gaussian, workspace_);
    return samples_.Of(lattice_.WindowOfLow(window), workspace_.weights.data());
  }

  // From weights of samples that are made, and slopes by the place.
  Gradient OfSamples(const physical::LightWindow& window, LightLattice::Slope slope) {
    Gradient gradient = samples_.Of(window, workspace_.weights.data());
    if (slope.x != 0.0 || slope.y != 0.0) Follow({0.0, slope.x, slope.y, 0.0, 0.0, 0.0}, gradient);
    return gradient;
  }

  Gradient OfMeans(const LightLattice::MeanWeights& wanted) {
    const LightLattice::Slope slope =
        lattice_.WeightsOfMeans(light_.window, sums_.means, origin_.place, wanted, workspace_);
    return OfSamples(lattice_.WindowOfLow(light_.window), slope);
  }

  Gradient OfCircle(double radius) {
    const LightLattice::Slope slope = lattice_.WeightsOfCircle(light_.window, origin_.place, radius, workspace_);
    return OfSamples(light_.window, slope);
  }

  DensityGradient DensityAt(double x, double y) {
    return GradientOfDensity(light_.beams, light_.factors, x, y, workspace_.quadrature);
  }

  const DensityGradient& OfPeak() {
    if (!peak_) peak_ = DensityAt(sums_.peak.x, sums_.peak.y);
    return *peak_;
  }

  Motion MakeMotion() {
    if (wanted_ == QualityOrigin::kAxis) return {};
    if (wanted_ == QualityOrigin::kCentroid) {
      const physical::CentroidGradient centroid = GradientOfCentroid(light_.beams.front());
      return {centroid.x, centroid.y};
    }
    if (!origin_.isUnique) {
      Motion none;
      none.x.fill(std::numeric_limits<double>::quiet_NaN());
      none.y = none.x;
      return none;
    }
    if (wanted_ == QualityOrigin::kPeak) {
      const DensityGradient& peak = OfPeak();
      return MotionOfPeak(peak.density, peak.x, peak.y);
    }
    const Gradient x = OfLow({0.0, 1.0, 0.0}, {});
    const Gradient y = OfLow({0.0, 0.0, 1.0}, {});
    return MotionOfPeak(lattice_.Neural(sums_.low, origin_.place), x, y);
  }

  // For a sum at the place `best`: what times the slopes of the neural image there changes as its motion changes the
  // sum.
  LowWeights SlopesThatFollow(const Paraboloid& at) const {
    const Paraboloid hill = lattice_.Neural(sums_.low, origin_.place);
    const double determinant = hill.xx * hill.yy - hill.xy * hill.xy;
    return {0.0, (hill.xy * at.y - hill.yy * at.x) / determinant, (hill.xy * at.x - hill.xx * at.y) / determinant};
  }

  // Adds what the motion of the place changes.
  void Follow(const Paraboloid& at, Gradient& gradient) {
    if (wanted_ == QualityOrigin::kAxis) return;
    if (!motion_) motion_ = MakeMotion();
    for (std::size_t j = 0; j < gradient.size(); ++j) {
      gradient[j] += at.x * motion_->x[j] + at.y * motion_->y[j];
    }
  }

  QualityOrigin wanted_;
  const SampledLight& light_;
  const LightLattice& lattice_;
  const Sums& sums_;
  const Origin& origin_;
  physical::Workspace& workspace_;
  physical::SampleGradients samples_;
  std::optional<DensityGradient> peak_;
  std::optional<Motion> motion_;
};

}  // namespace

void AddGradients(const Needs& needs, QualityOrigin wanted, const SampledLight& light, const LightLattice& lattice,
                  const Sums& sums, const Origin& origin, physical::Workspace& workspace, SumGradients& gradients) {
  Gradients(wanted, light, lattice, sums, origin, workspace).Add(needs, gradients);
}

void AddGradientsOfVolumes(const Needs& needs, const std::vector<physical::Beam>& beams,
                           const std::vector<double>& factors, const physical::LightWindow& window,
                           const LightLattice& lattice, physical::Workspace& workspace, SumGradients& gradients) {
  physical::SampleGradients samples(beams, factors, workspace);
  const auto of = [&](const LightLattice::Volumes& wanted) {
    lattice.WeightsOfVolumes(wanted, workspace);
    return samples.Of(window, workspace.weights.data());
  };
  if (needs.modulus) gradients.modulus = of({1.0, 0.0});
  if (needs.squaredModulus) gradients.squaredModulus = of({0.0, 1.0});
}

}  // namespace orvanel::metrics
