// Cuts outlines at the borders of pixels and integrates each piece by Green's theorem.
#include "targets/charts/coverage.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace orvanel::targets::charts {
namespace {

// Where a monotone part crosses the line x = at or y = at; the result is the other coordinate. `along` and `across`
// select the coordinates.
double Crossing(const Edge& part, double at, double Point::*along, double Point::*across) {
  const Point &from = part.from, &to = part.to;
  if (part.turn == Turn::kStraight) {
    return from.*across + (to.*across - from.*across) * ((at - from.*along) / (to.*along - from.*along));
  }
  const double d = at - part.centre.*along;
  const double distance = std::sqrt(std::max(0.0, (part.radius - d) * (part.radius + d)));
  const bool below = 0.5 * (from.*across + to.*across) < part.centre.*across;
  const double place = part.centre.*across + (below ? -distance : distance);
  return std::clamp(place, std::min(from.*across, to.*across), std::max(from.*across, to.*across));
}

// The whole numbers from 0 to `most` strictly between two numbers.
std::pair<int, int> Between(double a, double b, int most) {
  const double first = std::floor(std::min(a, b)) + 1.0, last = std::ceil(std::max(a, b)) - 1.0;
  return {static_cast<int>(std::clamp(first, 0.0, most + 1.0)), static_cast<int>(std::clamp(last, -1.0, 1.0 * most))};
}

}  // namespace

Coverage::Coverage(int columns, int rows) : steps_(columns, rows) {}

void Coverage::Add(const Shape& shape) {
  for (const Edge& edge : shape.edges()) {
    for (const Edge& part : MonotoneParts(edge)) AddPart(part);
  }
}

void Coverage::AddPart(const Edge& part) {
  atRows_.clear();
  const auto [firstRow, lastRow] = Between(part.from.y, part.to.y, steps_.rows());
  for (int k = firstRow; k <= lastRow; ++k) atRows_.push_back({Crossing(part, k, &Point::y, &Point::x), 1.0 * k});
  if (part.to.y < part.from.y) std::reverse(atRows_.begin(), atRows_.end());
  atColumns_.clear();
  const auto [firstColumn, lastColumn] = Between(part.from.x, part.to.x, steps_.columns());
  for (int k = firstColumn; k <= lastColumn; ++k) {
    atColumns_.push_back({1.0 * k, Crossing(part, k, &Point::x, &Point::y)});
  }
  if (part.to.x < part.from.x) std::reverse(atColumns_.begin(), atColumns_.end());
  // Both coordinates are monotone, so that their sum orders the points along the part.
  const auto way = [&](Point p) { return std::fabs(p.x - part.from.x) + std::fabs(p.y - part.from.y); };
  Point last = part.from;
  std::size_t row = 0, column = 0;
  while (row < atRows_.size() || column < atColumns_.size()) {
    const bool takesRow =
        column == atColumns_.size() || (row < atRows_.size() && way(atRows_[row]) <= way(atColumns_[column]));
    const Point next = takesRow ? atRows_[row++] : atColumns_[column++];
    AddPiece(part, last, next);
    last = next;
  }
  AddPiece(part, last, part.to);
}

void Coverage::AddPiece(const Edge& part, Point from, Point to) {
  const double row = std::floor(0.5 * (from.y + to.y)), column = std::floor(0.5 * (from.x + to.x));
  if (row < 0.0 || row >= steps_.rows() || column >= steps_.columns()) return;
  const double down = to.y - from.y;
  double* const steps = steps_.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(steps_.columns());
  if (column < 0.0) {
    steps[0] -= down;
    return;
  }
  // The area between the piece and the left border of the pixel, positive if the piece runs downwards.
  double left = 0.5 * ((from.x - column) + (to.x - column)) * down;
  if (part.turn != Turn::kStraight) {
    const Point along = to - from;
    const double segment = SegmentArea(std::sqrt(along.x * along.x + along.y * along.y), part.radius);
    left += part.turn == Turn::kClockwise ? segment : -segment;
  }
  const auto at = static_cast<std::size_t>(column);
  steps[at] += left - down;
  if (at + 1 < static_cast<std::size_t>(steps_.columns())) steps[at + 1] -= left;
}

Plane Coverage::Take() {
  const auto columns = static_cast<std::size_t>(steps_.columns()), rows = static_cast<std::size_t>(steps_.rows());
  for (std::size_t r = 0; r < rows; ++r) {
    double sum = 0.0;
    for (std::size_t c = 0; c < columns; ++c) {
      double& sample = steps_[r * columns + c];
      sum += sample;
      sample = std::fabs(sum) < kCoverageError ? 0.0 : std::fabs(sum - 1.0) < kCoverageError ? 1.0 : sum;
    }
  }
  return std::move(steps_);
}

}  // namespace orvanel::targets::charts
