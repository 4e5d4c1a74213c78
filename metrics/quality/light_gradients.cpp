// Derivatives at a fixed place by the adjoint of each sum, and the motion of the place.
#include "metrics/quality/light_gradients.h"

#include <limits>
#include <optional>

#include "models/physical/centroid.h"

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
      : wanted_(wanted), light_(light), lattice_(lattice), sums_(sums), origin_(origin), workspace_(workspace) {}

  SumGradients Of(const Needs& needs) {
    const Place place = origin_.place;
    SumGradients gradients;
    if (needs.neural) {
      gradients.neural = OfLow(LowWeights::kContrast, {1.0, 0.0, 0.0, 0.0, 0.0, 0.0});
      if (wanted_ != QualityOrigin::kBest) Follow(lattice_.Neural(sums_.low, place), gradients.neural);
    }
    if (needs.gaussian) {
      gradients.gaussian = OfLow(LowWeights::kGaussian, {1.0, 0.0, 0.0, 0.0, 0.0, 0.0});
      Follow(lattice_.Gaussian(sums_.low, place), gradients.gaussian);
    }
    if (needs.peak) gradients.peak = OfPeak().value;
    if (needs.atOrigin) {
      const DensityGradient density = DensityAt(place.x, place.y);
      gradients.atOrigin = density.value;
      if (wanted_ != QualityOrigin::kPeak) Follow(density.density, gradients.atOrigin);
    }
    return gradients;
  }

 private:
  Gradient OfLow(LowWeights kind, const Paraboloid& wanted) {
    const physical::LightWindow& window = light_.window;
    const Place fromCentre{origin_.place.x - window.centreX, origin_.place.y - window.centreY};
    lattice_.WeightsOfLow(kind, fromCentre, wanted, workspace_);
    return GradientOfSamples(light_.beams, light_.factors, lattice_.WindowOfLow(window), workspace_.weights.data(),
                             workspace_);
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
    const Gradient x = OfLow(LowWeights::kContrast, {0.0, 1.0, 0.0, 0.0, 0.0, 0.0});
    const Gradient y = OfLow(LowWeights::kContrast, {0.0, 0.0, 1.0, 0.0, 0.0, 0.0});
    return MotionOfPeak(lattice_.Neural(sums_.low, origin_.place), x, y);
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
  std::optional<DensityGradient> peak_;
  std::optional<Motion> motion_;
};

}  // namespace

SumGradients GradientsOf(const Needs& needs, QualityOrigin wanted, const SampledLight& light,
                         const LightLattice& lattice, const Sums& sums, const Origin& origin,
                         physical::Workspace& workspace) {
  return Gradients(wanted, light, lattice, sums, origin, workspace).Of(needs);
}

}  // namespace orvanel::metrics
