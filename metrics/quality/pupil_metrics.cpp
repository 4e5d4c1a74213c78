// Integrates the wavefront and its derivatives over discs, and finds the areas below a limit.
#include "metrics/quality/pupil_metrics.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "base/elementary.h"
#include "metrics/quality/catalogue.h"
#include "models/physical/pupil/pupil_moments.h"
#include "models/physical/quadrature/gauss_rules.h"

namespace orvanel::metrics {
namespace {

using physical::kHighestOrder;
using physical::LinePolynomial;
using physical::Monomial;
using physical::Polynomial;

constexpr double kPi = std::numbers::pi;
constexpr double kArcminPerMilliradian = 10.8 / kPi;
constexpr double kNearLimit = 1e-9;  // relative

Polynomial Scaled(Polynomial p, double factor) {
  for (double& c : p.coefficients) c *= factor;
  return p;
}

Polynomial ByX(const Polynomial& p) {
  Polynomial d;
  for (int a = 1; a <= kHighestOrder; ++a) {
    for (int b = 0; a + b <= kHighestOrder; ++b) {
      d.coefficients[Monomial(a - 1, b)] = a * p.coefficients[Monomial(a, b)];
    }
  }
  return d;
}

Polynomial ByY(const Polynomial& p) {
  Polynomial d;
  for (int a = 0; a <= kHighestOrder; ++a) {
    for (int b = 1; a + b <= kHighestOrder; ++b) {
      d.coefficients[Monomial(a, b - 1)] = b * p.coefficients[Monomial(a, b)];
    }
  }
  return d;
}

// ---- Means over concentric discs, as polynomials of the squared radius t

constexpr int kPowers = kHighestOrder + 1;
using RadialPolynomial = LinePolynomial;

// The mean of x^a y^b over the unit disc, a and b even: (a - 1)!! (b - 1)!! / (a + b)!! * 2 / (a + b + 2).
double DiscMoment(int a, int b) {
  double moment = 2.0 / (a + b + 2);
  for (int k = 1; k < a; k += 2) moment *= static_cast<double>(k) / (k + 1);
  for (int k = 1; k < b; k += 2) moment *= static_cast<double>(k) / (a + k + 1);
  return moment;
}

const std::array<std::array<double, kPowers>, kPowers>& DiscMoments() {
  static const auto moments = [] {
    std::array<std::array<double, kPowers>, kPowers> all{};
    for (int a = 0; a < kPowers; ++a) {
      for (int b = 0; b < kPowers; ++b) {
        all[static_cast<std::size_t>(a)][static_cast<std::size_t>(b)] = DiscMoment(2 * a, 2 * b);
      }
    }
    return all;
  }();
  return moments;
}

RadialPolynomial MeanOfProduct(const Polynomial& p, const Polynomial& q) {
  RadialPolynomial mean{};
  for (int a = 0; a <= kHighestOrder; ++a) {
    for (int b = 0; a + b <= kHighestOrder; ++b) {
      const double factor = p.coefficients[Monomial(a, b)];
      if (factor == 0.0) continue;
      for (int c = a % 2; c <= kHighestOrder; c += 2) {
        for (int d = b % 2; c + d <= kHighestOrder; d += 2) {
          const auto halfX = static_cast<std::size_t>((a + c) / 2), halfY = static_cast<std::size_t>((b + d) / 2);
          mean[halfX + halfY] += factor * q.coefficients[Monomial(c, d)] * DiscMoments()[halfX][halfY];
        }
      }
    }
  }
  return mean;
}

Polynomial Unit(std::size_t monomial) {
  Polynomial p;
  p.coefficients[monomial] = 1.0;
  return p;
}

RadialPolynomial MeanOf(const Polynomial& p) { return MeanOfProduct(p, Unit(Monomial(0, 0))); }

// Takes factor * square of m / t^power from a polynomial.
void SubtractSquare(const RadialPolynomial& m, double factor, std::size_t power, RadialPolynomial& from) {
  for (std::size_t i = 0; i < m.size(); ++i) {
    for (std::size_t j = 0; j < m.size(); ++j) {
      if (m[i] == 0.0 || m[j] == 0.0) continue;
      from[i + j - power] -= factor * m[i] * m[j];
    }
  }
}

// Less piston and tilt: x and y have the mean square t / 4.
RadialPolynomial VarianceOfWavefront(const Polynomial& wavefront) {
  RadialPolynomial variance = MeanOfProduct(wavefront, wavefront);
  SubtractSquare(MeanOf(wavefront), 1.0, 0, variance);
  SubtractSquare(MeanOfProduct(wavefront, Unit(Monomial(1, 0))), 4.0, 1, variance);
  SubtractSquare(MeanOfProduct(wavefront, Unit(Monomial(0, 1))), 4.0, 1, variance);
  return variance;
}

RadialPolynomial VarianceOfSlopes(const Polynomial& x, const Polynomial& y) {
  RadialPolynomial variance = MeanOfProduct(x, x);
  const RadialPolynomial ofY = MeanOfProduct(y, y);
  for (std::size_t k = 0; k < variance.size(); ++k) variance[k] += ofY[k];
  SubtractSquare(MeanOf(x), 1.0, 0, variance);
  SubtractSquare(MeanOf(y), 1.0, 0, variance);
  return variance;
}

double Horner(const LinePolynomial& p, double t) {
  double value = 0.0;
  for (std::size_t k = p.size(); k-- > 0;) value = value * t + p[k];
  return value;
}

// The first place from 0 to 1 where `reaches` is true, to rounding.
template <class Predicate>
double FirstWhere(const Predicate& reaches, int steps) {
  double low = 0.0;
  for (int i = 1; i <= steps; ++i) {
    double high = static_cast<double>(i) / steps;
    if (!reaches(high)) {
      low = high;
      continue;
    }
    constexpr int kHalvings = 50;
    for (int k = 0; k < kHalvings; ++k) {
      const double middle = (low + high) / 2.0;
      (reaches(middle) ? high : low) = middle;
    }
    return low;
  }
  return 1.0;
}

double LargestBelow(const RadialPolynomial& variance, double limit) {
  const double square = limit * limit * (1.0 - 2.0 * kNearLimit);
  constexpr int kSteps = 512;
  return FirstWhere([&](double t) { return !(Horner(variance, t) < square); }, kSteps);
}

// ---- Along diameters

// A polynomial along the line through the centre in a direction: its powers of the distance.
LinePolynomial AlongDiameter(const Polynomial& p, SineCosine direction) {
  std::array<double, kPowers> cosines{1.0}, sines{1.0};
  for (std::size_t k = 1; k < kPowers; ++k) {
    cosines[k] = cosines[k - 1] * direction.cosine;
    sines[k] = sines[k - 1] * direction.sine;
  }
  LinePolynomial line{};
  for (int a = 0; a <= kHighestOrder; ++a) {
    for (int b = 0; a + b <= kHighestOrder; ++b) {
      line[static_cast<std::size_t>(a + b)] +=
          p.coefficients[Monomial(a, b)] * cosines[static_cast<std::size_t>(a)] * sines[static_cast<std::size_t>(b)];
    }
  }
  return line;
}

// The blur along a diameter.
struct BlurLine {
  LinePolynomial xx, xy, yy;
  double At(double r) const {
    const double a = Horner(xx, r), b = Horner(xy, r), c = Horner(yy, r);
    return std::sqrt((a * a + c * c) / 2.0 + b * b);
  }
};

struct BlurMoments {
  Polynomial xx, xy, yy;
};

// The mean over angle of the blur by the squared radius.
class BlurByRadius {
 public:
  BlurByRadius(const Polynomial& xx, const Polynomial& xy, const Polynomial& yy) {
    for (int i = 0; i < kDiameters; ++i) {
      const SineCosine direction = SineAndCosine(kPi * (i + 0.5) / kDiameters);
      lines_.push_back({AlongDiameter(xx, direction), AlongDiameter(xy, direction), AlongDiameter(yy, direction)});
    }
  }

  // Over the ring between two squared radii: its integral by the squared radius.
  double Integral(double from, double to) const {
    static const physical::GaussRule rule = physical::GaussLegendre(kNodes);
    double sum = 0.0;
    for (std::size_t i = 0; i < rule.nodes.size(); ++i) {
      for (const double side : {-1.0, 1.0}) {
        const double t = (from + to) / 2.0 + side * rule.nodes[i] * (to - from) / 2.0, r = std::sqrt(t);
        double blur = 0.0;
        for (const BlurLine& line : lines_) blur += line.At(r) + line.At(-r);
        sum += rule.weights[i] * blur;
      }
    }
    return sum * (to - from) / (4.0 * kDiameters);
  }

  static constexpr int kRings = 24;

  // Of the derivatives of the mean blur by xx, xy and yy, by powers of the places that the map gives.
  BlurMoments Moments(const physical::AffineMap& map) const {
    static const physical::GaussRule rule = physical::GaussLegendre(kNodes);
    BlurMoments moments;
    for (int line = 0; line < kDiameters; ++line) {
      const BlurLine& blur = lines_[static_cast<std::size_t>(line)];
      std::array<LinePolynomial, 3> sums{};  // by powers of the distance
      for (int ring = 0; ring < kRings; ++ring) {
        for (std::size_t i = 0; i < rule.nodes.size(); ++i) {
          for (const double side : {-1.0, 1.0}) {
            const double radius = std::sqrt((ring + 0.5 + side * rule.nodes[i] / 2.0) / kRings);
            const double weight = rule.weights[i] / (4.0 * kDiameters * kRings);
            for (const double r : {radius, -radius}) {
              const double xx = Horner(blur.xx, r), xy = Horner(blur.xy, r), yy = Horner(blur.yy, r);
              const double size = std::sqrt((xx * xx + yy * yy) / 2.0 + xy * xy);
              if (size == 0.0) continue;
              double power = weight / size;
              for (std::size_t n = 0; n + 2 < kPowers; ++n, power *= r) {
                sums[0][n] += power * xx / 2.0;
                sums[1][n] += power * xy;
                sums[2][n] += power * yy / 2.0;
              }
            }
          }
        }
      }
      const SineCosine t = SineAndCosine(kPi * (line + 0.5) / kDiameters);
      const double alongX = map.xx * t.cosine + map.xy * t.sine, alongY = map.yx * t.cosine + map.yy * t.sine;
      AddLine(sums[0], {map.x0, alongX}, {map.y0, alongY}, moments.xx);
      AddLine(sums[1], {map.x0, alongX}, {map.y0, alongY}, moments.xy);
      AddLine(sums[2], {map.x0, alongX}, {map.y0, alongY}, moments.yy);
    }
    return moments;
  }

 private:
  // From sums by powers of the distance to those by powers of the places p0 + p1 r.
  static void AddLine(LinePolynomial sums, std::array<double, 2> x, std::array<double, 2> y, Polynomial& moments) {
    const auto times = [](LinePolynomial& s, std::array<double, 2> place) {
      for (std::size_t n = 0; n + 1 < s.size(); ++n) s[n] = place[0] * s[n] + place[1] * s[n + 1];
    };
    for (int b = 0; b + 2 <= kHighestOrder; ++b, times(sums, y)) {
      LinePolynomial row = sums;
      for (int a = 0; a + b + 2 <= kHighestOrder; ++a, times(row, x)) moments.coefficients[Monomial(a, b)] += row[0];
    }
  }

  static constexpr int kDiameters = 32, kNodes = 4;
  std::vector<BlurLine> lines_;
};

constexpr int kStepsOfRadius = 40;
constexpr int kSamples = 2 * kStepsOfRadius + 1;
using Samples = std::array<double, kSamples>;

Samples SamplesOf(const LinePolynomial& p) {
  Samples values;
  values.fill(p.back());
  for (std::size_t k = p.size() - 1; k-- > 0;) {
    for (int i = 0; i < kSamples; ++i) {
      double& value = values[static_cast<std::size_t>(i)];
      value = value * (static_cast<double>(i - kStepsOfRadius) / kStepsOfRadius) + p[k];
    }
  }
  return values;
}

// The share of the disc's area where an excess is below 0. `linesOf` a direction has two functions: excesses at all
// samples of the diameter, and at one place of it. Between samples a border is found by the secant.
template <class LinesOf>
double ShareBelow(const LinesOf& linesOf) {
  constexpr int kDiameters = 256;
  double share = 0.0;
  for (int i = 0; i < kDiameters; ++i) {
    const auto lines = linesOf(SineAndCosine(kPi * (i + 0.5) / kDiameters));
    const Samples values = lines.All();
    double before = -1.0, valueBefore = values[0];
    for (int k = 1; k < kSamples; ++k) {
      // The centre is a sample: a step is on one side of it.
      const double here = static_cast<double>(k - kStepsOfRadius) / kStepsOfRadius;
      const double value = values[static_cast<std::size_t>(k)];
      double from = before, to = here;
      if ((valueBefore < 0.0) != (value < 0.0)) {
        double low = before, high = here, valueLow = valueBefore, valueHigh = value;
        constexpr int kSecants = 2;
        for (int n = 0; n < kSecants; ++n) {
          const double middle = low + (high - low) * valueLow / (valueLow - valueHigh);
          const double valueMiddle = lines.At(middle);
          const bool isLow = (valueMiddle < 0.0) == (valueLow < 0.0);
          (isLow ? low : high) = middle;
          (isLow ? valueLow : valueHigh) = valueMiddle;
        }
        const double border = low + (high - low) * valueLow / (valueLow - valueHigh);
        (valueBefore < 0.0 ? to : from) = border;
      } else if (!(value < 0.0)) {
        to = from;
      }
      share += std::fabs(to * to - from * from);
      before = here;
      valueBefore = value;
    }
  }
  return share / (2.0 * kDiameters);
}

struct SlopeLines {
  LinePolynomial x, y;
  static constexpr double kLimit = PupilMetrics::kSlopeLimitArcmin * (1.0 - kNearLimit);
  double At(double r) const { return std::max(std::fabs(Horner(x, r)), std::fabs(Horner(y, r))) - kLimit; }
  Samples All() const {
    Samples values = SamplesOf(x);
    const Samples ofY = SamplesOf(y);
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = std::max(std::fabs(values[i]), std::fabs(ofY[i])) - kLimit;
    }
    return values;
  }
};

struct BlurLines {
  BlurLine blur;
  static constexpr double kLimit = PupilMetrics::kBlurLimitD * (1.0 - kNearLimit);
  double At(double r) const { return blur.At(r) - kLimit; }
  Samples All() const {
    Samples values = SamplesOf(blur.xx);
    const Samples xy = SamplesOf(blur.xy), yy = SamplesOf(blur.yy);
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = std::sqrt((values[i] * values[i] + yy[i] * yy[i]) / 2.0 + xy[i] * xy[i]) - kLimit;
    }
    return values;
  }
};

// ---- Highest and lowest place

// The largest value of a polynomial on the unit disc: the best places of a polar grid, each moved by ever smaller steps
// along and across the radius.
double LargestOnDisc(const Polynomial& p) {
  constexpr int kDirections = 64, kRadii = 24;
  struct Start {
    double value, angle, r;
  };
  std::vector<Start> starts;
  for (int i = 0; i < kDirections; ++i) {
    const LinePolynomial line = AlongDiameter(p, SineAndCosineOfTurn(i, kDirections));
    for (int k = i == 0 ? 0 : 1; k <= kRadii; ++k) {
      const double r = static_cast<double>(k) / kRadii;
      starts.push_back({Horner(line, r), 2.0 * kPi * i / kDirections, r});
    }
  }
  constexpr int kStarts = 6;
  std::partial_sort(starts.begin(), starts.begin() + kStarts, starts.end(),
                    [](const Start& a, const Start& b) { return a.value > b.value; });
  double largest = starts[0].value;
  for (int n = 0; n < kStarts; ++n) {
    Start best = starts[static_cast<std::size_t>(n)];
    double turn = kPi / kDirections, step = 0.5 / kRadii;
    constexpr int kShrinks = 26, kMoves = 120;
    for (int shrinks = 0, moves = 0; shrinks < kShrinks && moves < kMoves; ++moves) {
      const double before = best.value;
      for (const auto& [da, dr] : {std::array{turn, 0.0}, {-turn, 0.0}, {0.0, step}, {0.0, -step}}) {
        const double angle = best.angle + da, r = std::clamp(best.r + dr, 0.0, 1.0);
        const SineCosine t = SineAndCosine(angle);
        const double there = physical::At(p, r * t.cosine, r * t.sine).value;
        if (there > best.value) best = {there, angle, r};
      }
      if (best.value > before) continue;
      turn /= 2.0;
      step /= 2.0;
      ++shrinks;
    }
    largest = std::max(largest, best.value);
  }
  return largest;
}

// From um per radius and per its square to arcmin and to dioptres.
double SlopeScaleOf(const physical::Pupil& pupil) { return kArcminPerMilliradian / pupil.radiusMm; }
double PowerScaleOf(const physical::Pupil& pupil) { return 1.0 / (pupil.radiusMm * pupil.radiusMm); }

}  // namespace

PupilMetrics::PupilMetrics(const physical::Pupil& pupil)
    : wholePupil_(pupil.outline == physical::Ellipse{}), pupil_(pupil) {
  pupil_.stilesCrawford = {};
  // Composition with the map of the whole pupil changes nothing.
  const auto onDisc = [this, map = physical::MapOf(pupil.outline)](const Polynomial& p) {
    return wholePupil_ ? p : Composed(p, map);
  };
  const Polynomial x = ByX(pupil.wavefrontUm), y = ByY(pupil.wavefrontUm);
  const double slope = SlopeScaleOf(pupil), power = PowerScaleOf(pupil);
  wavefront_ = onDisc(pupil.wavefrontUm);
  slopeX_ = onDisc(Scaled(x, slope));
  slopeY_ = onDisc(Scaled(y, slope));
  xx_ = onDisc(Scaled(ByX(x), power));
  xy_ = onDisc(Scaled(ByY(x), power));
  yy_ = onDisc(Scaled(ByY(y), power));
}

double PupilMetrics::RmsW() const {
  double square = 0.0;
  if (wholePupil_) {
    for (std::size_t j = 3; j < pupil_.modesUm.size(); ++j) square += pupil_.modesUm[j] * pupil_.modesUm[j];
  } else {
    square = Horner(VarianceOfWavefront(wavefront_), 1.0);
  }
  return std::sqrt(std::max(0.0, square));
}

double PupilMetrics::Pv() const { return LargestOnDisc(wavefront_) + LargestOnDisc(Scaled(wavefront_, -1.0)); }

double PupilMetrics::RmsS() const { return std::sqrt(std::max(0.0, Horner(VarianceOfSlopes(slopeX_, slopeY_), 1.0))); }

double PupilMetrics::Bave() const {
  const BlurByRadius blur(xx_, xy_, yy_);
  double sum = 0.0;
  for (int i = 0; i < BlurByRadius::kRings; ++i) {
    sum += blur.Integral(static_cast<double>(i) / BlurByRadius::kRings, (i + 1.0) / BlurByRadius::kRings);
  }
  return sum;
}

// The mean of the wavefront less its tilted plane, times each mode.
PupilMetrics::Gradient PupilMetrics::GradientOfRmsW() const {
  const double rms = RmsW();
  Gradient gradient{};
  if (wholePupil_) {
    for (std::size_t j = 3; j < gradient.size(); ++j) gradient[j] = pupil_.modesUm[j] / rms;
    return gradient;
  }
  const std::vector<physical::PupilNode> nodes = physical::NodesOf(pupil_);
  double all = 0.0, x = 0.0, y = 0.0, w = 0.0;
  for (const physical::PupilNode& node : nodes) {
    all += node.weight;
    x += node.weight * node.x;
    y += node.weight * node.y;
    w += node.weight * node.wavefront.value;
  }
  x /= all;
  y /= all;
  w /= all;
  double xx = 0.0, xy = 0.0, yy = 0.0, xw = 0.0, yw = 0.0;
  for (const physical::PupilNode& node : nodes) {
    const double dx = node.x - x, dy = node.y - y, dw = node.wavefront.value - w;
    xx += node.weight * dx * dx;
    xy += node.weight * dx * dy;
    yy += node.weight * dy * dy;
    xw += node.weight * dx * dw;
    yw += node.weight * dy * dw;
  }
  const double determinant = xx * yy - xy * xy;
  const double tiltX = (yy * xw - xy * yw) / determinant, tiltY = (xx * yw - xy * xw) / determinant;
  Polynomial moments;
  for (const physical::PupilNode& node : nodes) {
    const double rest = node.wavefront.value - w - tiltX * (node.x - x) - tiltY * (node.y - y);
    AddMoments(node.weight * rest / (all * rms), node.x, node.y, moments);
  }
  return ByModes(moments);
}

PupilMetrics::Gradient PupilMetrics::GradientOfRmsS() const {
  const std::vector<physical::PupilNode> nodes = physical::NodesOf(pupil_);
  double all = 0.0, meanX = 0.0, meanY = 0.0;
  for (const physical::PupilNode& node : nodes) {
    all += node.weight;
    meanX += node.weight * node.wavefront.dx;
    meanY += node.weight * node.wavefront.dy;
  }
  const double scale = SlopeScaleOf(pupil_), rms = RmsS();
  Polynomial ofX, ofY;
  for (const physical::PupilNode& node : nodes) {
    const double factor = node.weight * scale * scale / (all * rms);
    AddMoments(factor * (node.wavefront.dx - meanX / all), node.x, node.y, ofX);
    AddMoments(factor * (node.wavefront.dy - meanY / all), node.x, node.y, ofY);
  }
  return ByModes(BySlopes(ofX, ofY));
}

PupilMetrics::Gradient PupilMetrics::GradientOfBave() const {
  const BlurByRadius blur(xx_, xy_, yy_);
  const BlurMoments moments = blur.Moments(physical::MapOf(pupil_.outline));
  Polynomial derivatives;
  for (int a = 0; a <= kHighestOrder; ++a) {
    for (int b = 0; a + b <= kHighestOrder; ++b) {
      double& to = derivatives.coefficients[Monomial(a, b)];
      if (a > 1) to += a * (a - 1) * moments.xx.coefficients[Monomial(a - 2, b)];
      if (a > 0 && b > 0) to += a * b * moments.xy.coefficients[Monomial(a - 1, b - 1)];
      if (b > 1) to += b * (b - 1) * moments.yy.coefficients[Monomial(a, b - 2)];
      to *= PowerScaleOf(pupil_);
    }
  }
  return ByModes(derivatives);
}

double PupilMetrics::LargestByRmsW() const {
  return LargestBelow(VarianceOfWavefront(wavefront_), pupil_.wavelengthUm / 4.0);
}

double PupilMetrics::LargestByRmsS() const {
  return LargestBelow(VarianceOfSlopes(slopeX_, slopeY_), kSlopeLimitArcmin);
}

double PupilMetrics::LargestByBave() const {
  const BlurByRadius blur(xx_, xy_, yy_);
  constexpr double kLimit = kBlurLimitD * (1.0 - kNearLimit);
  double before = 0.0, inside = 0.0;
  for (int i = 1; i <= BlurByRadius::kRings; ++i) {
    const double here = static_cast<double>(i) / BlurByRadius::kRings, sum = inside + blur.Integral(before, here);
    if (sum < kLimit * here) {
      before = here;
      inside = sum;
      continue;
    }
    const double width = here - before;
    constexpr int kSteps = 4;
    const double share = FirstWhere(
        [&](double s) {
          const double t = before + s * width;
          return !(inside + blur.Integral(before, t) < kLimit * t);
        },
        kSteps);
    return before + share * width;
  }
  return 1.0;
}

// By lines across the outline: of a tile's part inside, the lines give the area and the places where the wavefront is
// compared.
double PupilMetrics::TilesBelow() const {
  const physical::Chords chords = physical::ChordsOf(pupil_.outline);
  constexpr int kTiles = static_cast<int>(kTilesAcross), kLines = 8;
  constexpr double kSide = 2.0 / kTilesAcross;
  double below = 0.0, all = 0.0;
  for (int row = 0; row < kTiles; ++row) {
    std::array<double, kTiles> low, high, area{};
    low.fill(1e300);
    high.fill(-1e300);
    // The rows' borders count for the comparison only.
    for (int line = -1; line <= kLines; ++line) {
      const bool isBorder = line < 0 || line == kLines;
      const double place = isBorder ? (line < 0 ? 0.0 : 1.0) : (line + 0.5) / kLines;
      const double y = -1.0 + (row + place) * kSide, v = (y - chords.centreY) / chords.halfHeight;
      if (!(v * v < 1.0)) continue;
      const double half = chords.halfWidth * std::sqrt(1.0 - v * v), middle = chords.MiddleAt(v);
      const LinePolynomial wavefront = AlongLine(pupil_.wavefrontUm, y);
      const bool isCompared = isBorder || line == kLines / 2;
      for (int tile = 0; tile < kTiles; ++tile) {
        const double left = std::max(-1.0 + tile * kSide, middle - half);
        const double right = std::min(-1.0 + (tile + 1) * kSide, middle + half);
        if (!(left < right)) continue;
        const auto at = static_cast<std::size_t>(tile);
        if (!isBorder) area[at] += right - left;
        // Of a tile that is inside, three lines are enough.
        if (!isCompared && right - left == kSide) continue;
        for (const double x : {left, (left + right) / 2.0, right}) {
          const double value = Horner(wavefront, x);
          low[at] = std::min(low[at], value);
          high[at] = std::max(high[at], value);
        }
      }
    }
    for (std::size_t tile = 0; tile < kTiles; ++tile) {
      all += area[tile];
      if (high[tile] - low[tile] < pupil_.wavelengthUm / 4.0 * (1.0 - kNearLimit)) below += area[tile];
    }
  }
  return below / all;
}

double PupilMetrics::SlopesBelow() const {
  return ShareBelow([this](SineCosine direction) {
    return SlopeLines{AlongDiameter(slopeX_, direction), AlongDiameter(slopeY_, direction)};
  });
}

double PupilMetrics::BlurBelow() const {
  return ShareBelow([this](SineCosine direction) {
    return BlurLines{{AlongDiameter(xx_, direction), AlongDiameter(xy_, direction), AlongDiameter(yy_, direction)}};
  });
}

}  // namespace orvanel::metrics
