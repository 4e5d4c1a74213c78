// Defines exact plane shapes: outlines of straight lines and circular arcs.
#ifndef ORVANEL_TARGETS_CHARTS_SHAPE_H
#define ORVANEL_TARGETS_CHARTS_SHAPE_H

#include <initializer_list>
#include <vector>

#include "base/layers.h"

namespace orvanel::targets::charts {

// x grows to the right, y downwards, as columns and rows do.
struct Point {
  double x = 0.0, y = 0.0;

  friend Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
  friend Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
  friend Point operator*(double factor, Point a) { return {factor * a.x, factor * a.y}; }
  friend bool operator==(Point, Point) = default;
};

// The point after a turn around the origin, anticlockwise as seen. Multiples of 90 degrees are exact.
Point Turned(Point point, double degrees);

// The direction of an arc as seen, with y downwards.
enum class Turn { kStraight, kClockwise, kAnticlockwise };

// A part of an outline. An arc is less than a full circle.
struct Edge {
  Point from, to;
  Turn turn = Turn::kStraight;
  Point centre;         // of an arc
  double radius = 0.0;  // of an arc
};

// The same part as lines and arcs of at most a quarter circle; x and y are monotone along each.
std::vector<Edge> MonotoneParts(const Edge& edge);

// The area between an arc of at most a half circle and its chord.
double SegmentArea(double chord, double radius);

// A closed outline, drawn from point to point. Outlines of material run clockwise as seen, those of holes
// anticlockwise.
class Outline {
 public:
  explicit Outline(Point start) : start_(start), last_(start) {}

  Outline& LineTo(Point to);
  Outline& ArcTo(Point to, Point centre, Turn turn);

  // The edges, with a line to the start if the last one ends elsewhere.
  std::vector<Edge> Closed() const;

 private:
  Point start_, last_;
  std::vector<Edge> edges_;
};

// Where a shape is drawn. Its origin moves to `at`, after a turn and a scale.
struct Placement {
  Point at;
  double scale = 1.0;
  double degrees = 0.0;  // as in Turned
};

// Outlines that do not overlap. A point of the plane is inside if one outline more runs clockwise around it than
// anticlockwise.
class Shape {
 public:
  Shape() = default;

  void Add(const Outline& outline);
  void Add(const Shape& shape);

  const std::vector<Edge>& edges() const { return edges_; }

  // Exact up to rounding.
  double Area() const;

  Shape Placed(const Placement& placement) const;

 private:
  std::vector<Edge> edges_;
};

// Points in clockwise order as seen.
Shape Polygon(std::initializer_list<Point> points);

Shape Disc(Point centre, double radius);

// The area between two circles.
Shape Ring(Point centre, double outer, double inner);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_SHAPE_H
