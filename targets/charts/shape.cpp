// Builds outlines, splits arcs into quarters, and computes areas by Green's theorem.
#include "targets/charts/shape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/elementary.h"

namespace orvanel::targets::charts {
namespace {

constexpr double kTurnRadians = 0x1.921fb54442d18p+2;
constexpr double kRadiansPerDegree = 0x1.1df46a2529d39p-6;

double Cross(Point a, Point b) { return a.x * b.y - a.y * b.x; }
double Dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }

// From a to b in the direction of the turn, 0 to a full turn.
double AngleBetween(Point a, Point b, Turn turn) {
  const double sine = turn == Turn::kClockwise ? Cross(a, b) : -Cross(a, b);
  const double angle = ArcTangent2(sine, Dot(a, b));
  return angle < 0.0 ? angle + kTurnRadians : angle;
}

// The sine and cosine of an angle in degrees. At multiples of 90 both are exact.
SineCosine OfDegrees(double degrees) {
  constexpr double kQuarter = 90.0;
  const double quarters = std::floor(degrees / kQuarter + 0.5);
  const SineCosine t = SineAndCosine((degrees - quarters * kQuarter) * kRadiansPerDegree);
  switch (static_cast<int>(quarters - 4.0 * std::floor(quarters / 4.0))) {
    case 0:
      return t;
    case 1:
      return {t.cosine, -t.sine};
    case 2:
      return {-t.sine, -t.cosine};
    default:
      return {-t.cosine, t.sine};
  }
}

// The integral of x dy.
double AreaBeside(const Edge& part) {
  const double chord = 0.5 * (part.from.x + part.to.x) * (part.to.y - part.from.y);
  if (part.turn == Turn::kStraight) return chord;
  const Point along = part.to - part.from;
  const double segment = SegmentArea(std::sqrt(Dot(along, along)), part.radius);
  return part.turn == Turn::kClockwise ? chord + segment : chord - segment;
}

}  // namespace

Point Turned(Point point, double degrees) {
  const SineCosine t = OfDegrees(degrees);
  return {t.cosine * point.x + t.sine * point.y, t.cosine * point.y - t.sine * point.x};
}

std::vector<Edge> MonotoneParts(const Edge& edge) {
  if (edge.turn == Turn::kStraight) return {edge};
  constexpr double kNone = 1e-9;  // radians; nearer extreme points and ends are one point
  const Point from = edge.from - edge.centre;
  const double whole = AngleBetween(from, edge.to - edge.centre, edge.turn);
  const double r = edge.radius;
  std::vector<std::pair<double, Point>> passed;  // the extreme points on the arc, with their angles
  for (const Point extreme : {Point{r, 0.0}, Point{0.0, r}, Point{-r, 0.0}, Point{0.0, -r}}) {
    const double angle = AngleBetween(from, extreme, edge.turn);
    if (angle > kNone && angle < whole - kNone) passed.emplace_back(angle, extreme);
  }
  std::sort(passed.begin(), passed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Edge> parts;
  Edge part = edge;
  for (const auto& [angle, extreme] : passed) {
    part.to = edge.centre + extreme;
    parts.push_back(part);
    part.from = part.to;
  }
  part.to = edge.to;
  parts.push_back(part);
  return parts;
}

double SegmentArea(double chord, double radius) {
  const double h = std::min(chord / (2.0 * radius), 1.0);  // the sine of half the angle
  const double z = h * h;
  constexpr double kSmall = 0.125;
  if (h > kSmall) {
    const double cosine = std::sqrt((1.0 - h) * (1.0 + h));
    return radius * radius * (ArcTangent2(h, cosine) - h * cosine);
  }
  // The difference by its series, the sum of 2 binomial(2k, k) / 4^k h^(2k + 3) / (2k + 3). The first term left out is
  // below 1e-17 of the sum.
  constexpr std::array<double, 9> kSeries = {2.0 / 3.0,      1.0 / 5.0,       3.0 / 28.0,
                                             5.0 / 72.0,     35.0 / 704.0,    63.0 / 1664.0,
                                             231.0 / 7680.0, 429.0 / 17408.0, 6435.0 / 311296.0};
  double sum = 0.0;
  for (std::size_t k = kSeries.size(); k-- > 0;) sum = kSeries[k] + z * sum;
  return radius * radius * (h * z * sum);
}

Outline& Outline::LineTo(Point to) {
  edges_.push_back({last_, to, Turn::kStraight, {}, 0.0});
  last_ = to;
  return *this;
}

Outline& Outline::ArcTo(Point to, Point centre, Turn turn) {
  const Point from = last_ - centre;
  edges_.push_back({last_, to, turn, centre, std::sqrt(Dot(from, from))});
  last_ = to;
  return *this;
}

std::vector<Edge> Outline::Closed() const {
  std::vector<Edge> edges = edges_;
  if (last_ != start_) edges.push_back({last_, start_, Turn::kStraight, {}, 0.0});
  return edges;
}

void Shape::Add(const Outline& outline) {
  const std::vector<Edge> edges = outline.Closed();
  edges_.insert(edges_.end(), edges.begin(), edges.end());
}

void Shape::Add(const Shape& shape) { edges_.insert(edges_.end(), shape.edges_.begin(), shape.edges_.end()); }

double Shape::Area() const {
  double area = 0.0;
  for (const Edge& edge : edges_) {
    for (const Edge& part : MonotoneParts(edge)) area += AreaBeside(part);
  }
  return area;
}

Shape Shape::Placed(const Placement& placement) const {
  const auto placed = [&](Point p) { return placement.at + placement.scale * Turned(p, placement.degrees); };
  Shape shape = *this;
  for (Edge& edge : shape.edges_) {
    edge.from = placed(edge.from);
    edge.to = placed(edge.to);
    edge.centre = placed(edge.centre);
    edge.radius *= placement.scale;
  }
  return shape;
}

Shape Polygon(std::initializer_list<Point> points) {
  Outline outline(*points.begin());
  for (const Point* point = points.begin() + 1; point != points.end(); ++point) outline.LineTo(*point);
  Shape shape;
  shape.Add(outline);
  return shape;
}

Shape Disc(Point centre, double radius) {
  const Point right = centre + Point{radius, 0.0}, left = centre - Point{radius, 0.0};
  Shape shape;
  shape.Add(Outline(right).ArcTo(left, centre, Turn::kClockwise).ArcTo(right, centre, Turn::kClockwise));
  return shape;
}

Shape Ring(Point centre, double outer, double inner) {
  const Point right = centre + Point{inner, 0.0}, left = centre - Point{inner, 0.0};
  Shape shape = Disc(centre, outer);
  shape.Add(Outline(right).ArcTo(left, centre, Turn::kAnticlockwise).ArcTo(right, centre, Turn::kAnticlockwise));
  return shape;
}

}  // namespace orvanel::targets::charts
