// Traces rays from the rim, and matches a density to them.
#include "models/physical/image/far_light.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kPlaces = 64;  // on the rim

// Where the rays from the rim go, across the rim and along it, and how the latter changes by the angle.
struct RimSlopes {
  std::array<double, kPlaces> across, along;
};

RimSlopes RimSlopesOf(const Pupil& pupil) {
  const AffineMap map = MapOf(pupil.outline);
  RimSlopes slopes{};
  for (int i = 0; i < kPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kPlaces);
    const double x = map.xx * t.cosine + map.xy * t.sine, y = map.yx * t.cosine + map.yy * t.sine;
    const Jet w = At(pupil.wavefrontUm, x + map.x0, y + map.y0);
    const double tangentX = map.xy * t.cosine - map.xx * t.sine, tangentY = map.yy * t.cosine - map.yx * t.sine;
    const double scale = 2.0 / pupil.wavelengthUm;
    const auto at = static_cast<std::size_t>(i);
    slopes.across[at] = scale * (w.dx * x + w.dy * y);
    slopes.along[at] = scale * (w.dx * tangentX + w.dy * tangentY);
  }
  return slopes;
}

// The part of the density that falls with the inverse fourth power: 1/q^3 (1 + odd/q).
std::array<double, kPlaces> OddPartOf(const RimSlopes& slopes) {
  // The derivative of the trigonometric interpolant: (-1)^j / 2 cot(pi j / n) at the distance j.
  std::array<double, kPlaces> factors{};
  for (int j = 1; j < kPlaces; ++j) {
    const SineCosine t = SineAndCosine(kPi * j / kPlaces);
    factors[static_cast<std::size_t>(j)] = (j % 2 == 0 ? 0.5 : -0.5) * t.cosine / t.sine;
  }
  std::array<double, kPlaces> odd{};
  for (int i = 0; i < kPlaces; ++i) {
    double derivative = 0.0;
    for (int j = 1; j < kPlaces; ++j) {
      derivative +=
          factors[static_cast<std::size_t>(j)] * slopes.along[static_cast<std::size_t>((i - j + kPlaces) % kPlaces)];
    }
    odd[static_cast<std::size_t>(i)] = 2.0 * slopes.across[static_cast<std::size_t>(i)] - derivative;
  }
  return odd;
}

}  // namespace

FarLight::FarLight(const Pupil& pupil, double lightOfPupil, double guard, double smoothness) {
  const Ellipse& outline = pupil.outline;
  const SineCosine turn = SineAndCosine(outline.angle);
  toDisc_ = {turn.cosine / outline.semiAxisA, turn.sine / outline.semiAxisA,   0.0,
             -turn.sine / outline.semiAxisB,  turn.cosine / outline.semiAxisB, 0.0};
  toRound_ = {turn.cosine * outline.semiAxisA, turn.sine * outline.semiAxisA,   0.0,
              -turn.sine * outline.semiAxisB,  turn.cosine * outline.semiAxisB, 0.0};
  perArea_ = outline.semiAxisA * outline.semiAxisB;
  shrinking_ = std::min(outline.semiAxisA, outline.semiAxisB);
  width_ = std::max(guard / 3.0 * shrinking_, smoothness * std::max(outline.semiAxisA, outline.semiAxisB));
  narrowest_ = width_ / std::max(outline.semiAxisA, outline.semiAxisB);
  strength_ = RimTransmission(pupil) / lightOfPupil;

  RimSlopes slopes = RimSlopesOf(pupil);
  // The middle that leaves no part of 1/q^4 with one maximum in a turn.
  shiftX_ = shiftY_ = 0.0;
  for (int i = 0; i < kPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kPlaces);
    const auto at = static_cast<std::size_t>(i);
    shiftX_ += (2.0 * slopes.across[at] * t.cosine - slopes.along[at] * t.sine) * 2.0 / 3.0 / kPlaces;
    shiftY_ += (2.0 * slopes.across[at] * t.sine + slopes.along[at] * t.cosine) * 2.0 / 3.0 / kPlaces;
  }
  double square = 0.0;
  farthest_ = 0.0;
  for (int i = 0; i < kPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kPlaces);
    double &across = slopes.across[static_cast<std::size_t>(i)], &along = slopes.along[static_cast<std::size_t>(i)];
    across -= shiftX_ * t.cosine + shiftY_ * t.sine;
    along -= shiftY_ * t.cosine - shiftX_ * t.sine;
    square += (across * across + along * along / 2.0) / kPlaces;
    farthest_ = std::max(farthest_, std::sqrt(across * across + along * along));
  }
  const std::array<double, kPlaces> odd = OddPartOf(slopes);
  odd_ = 0.0;
  for (int i = 0; i < kPlaces / 2; ++i) {
    const auto at = static_cast<std::size_t>(i);
    odd_ = std::max(odd_, std::fabs(odd[at] - odd[at + kPlaces / 2]) / 2.0);
  }
  even_ = 3.0 * farthest_ * farthest_;

  total_ = strength_ * 2.0 / (kPi * kPi * width_);
  curvature_ = -4.0 * kPi * kPi * (square / 3.0 + width_ * width_ / 6.0);
}

std::complex<double> FarLight::Spectrum(double fx, double fy) const {
  const double x = toDisc_.xx * fx + toDisc_.xy * fy, y = toDisc_.yx * fx + toDisc_.yy * fy;
  const double square = x * x + y * y;
  const double size = total_ * Exponential(-2.0 * kPi * width_ * std::sqrt(square)) * (1.0 + curvature_ * square);
  const SineCosine turn = SineAndCosine(-2.0 * kPi * (x * shiftX_ + y * shiftY_));
  return {size * turn.cosine, size * turn.sine};
}

double FarLight::Density(double x, double y) const {
  const double u = toRound_.xx * x + toRound_.xy * y - shiftX_, v = toRound_.yx * x + toRound_.yy * y - shiftY_;
  const double square = u * u + v * v, a = width_;
  const double far = square + a * a, root = std::sqrt(far);
  const double cubic = a / (far * root);
  const double correction =
      curvature_ / (4.0 * kPi * kPi) * (6.0 * a * a * a - 9.0 * a * square) / (far * far * far * root);
  return perArea_ * total_ / (2.0 * kPi) * (cubic + correction);
}

// Each term bounds a term of the difference: its integral over half a plane, or its value. The next odd power after the
// two that agree is at most 4.4 width^4/q^7, and as much for the slopes. The mean over rings lacks odd/q^4 cos 3 angle
// and even/q^5 cos 2 angle. It also lacks the rings themselves, sin(2 pi q)/q^3. Half a plane of a grating in step with
// the rings has 0.7 q^-1.5 of them, at half contrast.
FarLight::Difference FarLight::Beyond(double distance) const {
  const double q = distance * shrinking_ - std::sqrt(shiftX_ * shiftX_ + shiftY_ * shiftY_);
  if (!(q > 2.0 * farthest_ + 2.0)) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return {infinity, infinity};
  }
  const double factor = strength_ / (kPi * kPi * kPi), square = q * q;
  const double next = (4.4 * width_ * width_ * width_ * width_ + 10.0 * farthest_ * farthest_ * farthest_ * farthest_) /
                      (square * square);
  return {factor * (0.22 * next / q + 0.14 * odd_ / square + 0.27 * even_ / (square * q) + 0.35 / (q * std::sqrt(q))),
          factor * perArea_ * (next + odd_ / q + even_ / square + 1.0) / (square * q)};
}

}  // namespace orvanel::physical
