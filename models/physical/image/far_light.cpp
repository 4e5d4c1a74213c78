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

// Where the rays from the rim go, across the rim and along it, and how the latter changes by the angle.
struct RimSlopes {
  std::array<double, kRimPlaces> across, along;
};

RimSlopes RimSlopesOf(const Pupil& pupil) {
  const AffineMap map = MapOf(pupil.outline);
  RimSlopes slopes{};
  for (int i = 0; i < kRimPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kRimPlaces);
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
std::array<double, kRimPlaces> OddPartOf(const RimSlopes& slopes) {
  // The derivative of the trigonometric interpolant: (-1)^j / 2 cot(pi j / n) at the distance j.
  std::array<double, kRimPlaces> factors{};
  for (int j = 1; j < kRimPlaces; ++j) {
    const SineCosine t = SineAndCosine(kPi * j / kRimPlaces);
    factors[static_cast<std::size_t>(j)] = (j % 2 == 0 ? 0.5 : -0.5) * t.cosine / t.sine;
  }
  std::array<double, kRimPlaces> odd{};
  for (int i = 0; i < kRimPlaces; ++i) {
    double derivative = 0.0;
    for (int j = 1; j < kRimPlaces; ++j) {
      derivative += factors[static_cast<std::size_t>(j)] *
                    slopes.along[static_cast<std::size_t>((i - j + kRimPlaces) % kRimPlaces)];
    }
    odd[static_cast<std::size_t>(i)] = 2.0 * slopes.across[static_cast<std::size_t>(i)] - derivative;
  }
  return odd;
}

}  // namespace

FarLight::FarLight(const Pupil& pupil, double lightOfPupil, double guard, double smoothness)
    : slopes_(SlopesOf(pupil)) {
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
  for (int i = 0; i < kRimPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kRimPlaces);
    const auto at = static_cast<std::size_t>(i);
    shiftX_ += (2.0 * slopes.across[at] * t.cosine - slopes.along[at] * t.sine) * 2.0 / 3.0 / kRimPlaces;
    shiftY_ += (2.0 * slopes.across[at] * t.sine + slopes.along[at] * t.cosine) * 2.0 / 3.0 / kRimPlaces;
  }
  double square = 0.0;
  farthest_ = 0.0;
  for (int i = 0; i < kRimPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kRimPlaces);
    double &across = slopes.across[static_cast<std::size_t>(i)], &along = slopes.along[static_cast<std::size_t>(i)];
    across -= shiftX_ * t.cosine + shiftY_ * t.sine;
    along -= shiftY_ * t.cosine - shiftX_ * t.sine;
    square += (across * across + along * along / 2.0) / kRimPlaces;
    farthest_ = std::max(farthest_, std::sqrt(across * across + along * along));
    slopeX_[static_cast<std::size_t>(i)] = across * t.cosine - along * t.sine;
    slopeY_[static_cast<std::size_t>(i)] = across * t.sine + along * t.cosine;
  }
  const std::array<double, kRimPlaces> odd = OddPartOf(slopes);
  odd_ = 0.0;
  for (int i = 0; i < kRimPlaces / 2; ++i) {
    const auto at = static_cast<std::size_t>(i);
    odd_ = std::max(odd_, std::fabs(odd[at] - odd[at + kRimPlaces / 2]) / 2.0);
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

// Each place of the rim sends 1/(2 pi^3 t^2) of the light along its normal, to both sides, t from where its ray goes.
// The rays that reach the half plane behind `distance` in the direction (x, y), less the density there.
double FarLight::HalfPlaneDifference(double x, double y, double distance) const {
  const double u = toDisc_.xx * x + toDisc_.xy * y, v = toDisc_.yx * x + toDisc_.yy * y;
  const double size = std::sqrt(u * u + v * v), normalX = u / size, normalY = v / size;
  const double far = distance / size - (shiftX_ * normalX + shiftY_ * normalY);
  double rays = 0.0;
  for (int i = 0; i < kRimPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kRimPlaces);
    const auto at = static_cast<std::size_t>(i);
    const double left = far - (slopeX_[at] * normalX + slopeY_[at] * normalY);
    rays += std::fabs(t.cosine * normalX + t.sine * normalY) / left;
  }
  const double square = far * far + width_ * width_;
  const double density = ArcTangent2(width_, far) - curvature_ / (2.0 * kPi * kPi) * width_ * far / (square * square);
  return std::fabs(strength_ * rays / (kPi * kPi * kRimPlaces) - total_ / kPi * density);
}

// Of half a plane the rays count, and the rings sin(2 pi q)/q^3, which no ray has. A grating in step with them has
// 0.7 q^-1.5 of them, at half contrast; pixels average over them. Of a small place, bounds of all terms count. The next
// odd power after the two that agree is at most 4.4 width^4/q^7, and as much for the slopes. The density lacks
// odd/q^4 cos 3 angle, even/q^5 cos 2 angle, and the rings.
FarLight::Difference FarLight::Beyond(double distance, double pixel) const {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  Difference difference{infinity, infinity};
  const double farthest = std::max({slopes_.highX, -slopes_.lowX, slopes_.highY, -slopes_.lowY});
  constexpr double kClear = 8.0;
  if (!(distance > 1.2 * farthest + kClear)) return difference;
  const double factor = strength_ / (kPi * kPi * kPi);
  const double clear = (distance - farthest) * shrinking_;
  const double averaged = std::min(1.0, 1.0 / (kPi * pixel * shrinking_));
  difference.ofHalfPlanes =
      std::max(HalfPlaneDifference(1.0, 0.0, distance), HalfPlaneDifference(-1.0, 0.0, distance)) +
      std::max(HalfPlaneDifference(0.0, 1.0, distance), HalfPlaneDifference(0.0, -1.0, distance)) +
      2.0 * 0.35 * averaged * factor / (clear * std::sqrt(clear));
  const double q = distance * shrinking_ - std::sqrt(shiftX_ * shiftX_ + shiftY_ * shiftY_);
  if (!(q > 2.0 * farthest_ + 2.0)) return difference;
  const double square = q * q;
  const double next = (4.4 * width_ * width_ * width_ * width_ + 10.0 * farthest_ * farthest_ * farthest_ * farthest_) /
                      (square * square);
  difference.ofUnitArea = factor * perArea_ * (next + odd_ / q + even_ / square + 1.0) / (square * q);
  return difference;
}

}  // namespace orvanel::physical
