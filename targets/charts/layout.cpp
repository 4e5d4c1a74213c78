// Computes the places of optotypes and crowding bars.
#include "targets/charts/layout.h"

#include <algorithm>

#include "targets/charts/optotype.h"

namespace orvanel::targets::charts {

Layout LayOut(const std::vector<LineOfOptotypes>& lines) {
  Layout layout;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto letters = static_cast<double>(lines[i].optotypes.size());
    layout.width = std::max(layout.width, (2.0 * letters - 1.0) * lines[i].height);
    layout.height += lines[i].height * (i == 0 ? 1.0 : 2.0);
  }
  double top = -0.5 * layout.height;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double height = lines[i].height;
    if (i > 0) top += height;
    double x = (1.0 - static_cast<double>(lines[i].optotypes.size())) * height;
    for (const int optotype : lines[i].optotypes) {
      layout.optotypes.push_back({optotype, {x, top + 0.5 * height}, height});
      x += 2.0 * height;
    }
    top += height;
  }
  return layout;
}

Layout LayOutCrowded(int optotype, double height, double gap) {
  const double stroke = height / kStrokesPerOptotype;
  const double inner = (0.5 + gap) * height;
  Layout layout;
  layout.width = layout.height = 2.0 * (inner + stroke);
  layout.optotypes.push_back({optotype, {}, height});
  const Shape bar = Polygon(
      {{inner, -0.5 * height}, {inner + stroke, -0.5 * height}, {inner + stroke, 0.5 * height}, {inner, 0.5 * height}});
  for (const double degrees : {0.0, 90.0, 180.0, 270.0}) layout.bars.Add(bar.Placed({{}, 1.0, degrees}));
  return layout;
}

}  // namespace orvanel::targets::charts
