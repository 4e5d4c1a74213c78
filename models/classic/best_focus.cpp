// Searches the best focus by a walk of the defocus coefficient.
#include "models/classic/best_focus.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <functional>
#include <vector>

#include "orvanel/matrix.h"

namespace orvanel {
namespace {

constexpr std::size_t kDefocus = 4;

struct PupilPoint {
  double r;
  double w;
};

std::vector<PupilPoint> CollectPupil(const OpticsEngine& engine) {
  const GridPlane &pupilX = engine.pupilXPlane, &pupilY = engine.pupilYPlane;
  std::vector<PupilPoint> points;
  points.reserve(static_cast<std::size_t>(engine.pupilSamples) * static_cast<std::size_t>(engine.pupilSamples));
  for (std::size_t i = 0; i < engine.wavefrontPlane.size(); ++i) {
    const double w = engine.wavefrontPlane[i];
    if (w == kWavefrontOutside) continue;
    const double px = pupilX[i];
    const double py = pupilY[i];
    points.push_back({std::sqrt(px * px + py * py), w});
  }
  return points;
}

// Least squares by the normal equations: normal * (a, b) = right.
struct NormalEquations {
  Matrix normal{2, 2};
  Matrix right{2, 1};
};

NormalEquations EquationsOf(const std::vector<PupilPoint>& points) {
  NormalEquations equations;
  auto& [normal, right] = equations;
  for (const auto [r, w] : points) {
    const double square = r * r + w * w;
    normal(0, 0) += w * w;
    normal(0, 1) += w;
    right(0, 0) -= square * w;
    right(1, 0) -= square;
  }
  normal(1, 0) = normal(0, 1);
  normal(1, 1) = static_cast<double>(points.size());
  return equations;
}

// Walks c4 of these coefficients, by the value of the wavefront that the engine holds for each trial.
template <class Value, class Gains>
WalkResult WalkDefocus(OpticsEngine& engine, const double* coefficients, double diameter, double step,
                       int includeAstigmatism, Value value, Gains gains, std::int64_t maximumTrials) {
  std::array<double, kCoefficients> c{};
  std::copy_n(coefficients, c.size(), c.begin());
  const auto valueOfTrial = [&] {
    engine.synthesizeWavefront(c.data(), diameter, includeAstigmatism, 0, 1);
    return value(engine);
  };
  return Walk(c[kDefocus], step, valueOfTrial, gains, maximumTrials);
}

double StrehlOfTrial(OpticsEngine& engine) { return engine.ComputeStrehl(kSearchWavelength); }

}  // namespace

CircleFit FitCircle(const OpticsEngine& engine) {
  const std::vector<PupilPoint> points = CollectPupil(engine);
  const auto [normal, right] = EquationsOf(points);
  CircleFit fit;
  const Matrix inverse = normal.inv();
  fit.solved = inverse.rows() == 2;  // 1 x 1 where there is no inverse
  if (fit.solved) {
    const Matrix solution = inverse * right;
    fit.a = solution(0, 0);
    fit.b = solution(1, 0);
  }
  double sum = 0.0;
  for (const auto [r, w] : points) {
    const double fitted = (-fit.a - std::sqrt(std::fabs(fit.a * fit.a - 4 * (r * r + fit.b)))) * 0.5;
    sum += (w - fitted) * (w - fitted);
  }
  fit.deviation = std::sqrt(sum / static_cast<double>(points.size()));
  return fit;
}

double DeviationFromCircle(const OpticsEngine& engine) {
  const std::ofstream sideEffect("tmp_test.txt");  // contract: created or emptied while the fit runs
  const CircleFit fit = FitCircle(engine);
  if (!fit.solved) {
    const NormalEquations unsolved;
    unsolved.normal.inv() * unsolved.right;  // contract: the matrix library's message of sizes
  }
  return fit.deviation;
}

WalkResult OpticsEngine::WalkByPsf(const double* coefficients, double diameter, const FocusWalk& walk) {
  return WalkDefocus(*this, coefficients, diameter, walk.step, walk.astigmatism ? 1 : 0, StrehlOfTrial,
                     std::greater<>(), walk.maximumTrials);
}

WalkResult OpticsEngine::WalkByFit(const double* coefficients, double diameter, const FocusWalk& walk) {
  const auto deviation = [](OpticsEngine& engine) { return FitCircle(engine).deviation; };
  return WalkDefocus(*this, coefficients, diameter, walk.step, walk.astigmatism ? 1 : 0, deviation, std::less<>(),
                     walk.maximumTrials);
}

void OpticsEngine::searchBestFocusByPsf(double* coefficients, double diameter, double step, int includeAstigmatism) {
  coefficients[kDefocus] =
      WalkDefocus(*this, coefficients, diameter, step, includeAstigmatism, StrehlOfTrial, std::greater<>(), kNoLimit)
          .defocus;
  FormPsf(kSearchWavelength);  // of the last trial
}

void OpticsEngine::searchBestFocusByFit(double* coefficients, double diameter, double step, int includeAstigmatism) {
  coefficients[kDefocus] =
      WalkDefocus(*this, coefficients, diameter, step, includeAstigmatism, DeviationFromCircle, std::less<>(), kNoLimit)
          .defocus;
}

}  // namespace orvanel
