// Lists the optotypes of acuity charts, with their names and exact shapes.
#ifndef ORVANEL_TARGETS_CHARTS_OPTOTYPE_H
#define ORVANEL_TARGETS_CHARTS_OPTOTYPE_H

#include <optional>
#include <span>
#include <string_view>

#include "base/layers.h"
#include "targets/charts/shape.h"

namespace orvanel::targets::charts {

// Height and width of an optotype, in strokes.
constexpr double kStrokesPerOptotype = 5.0;

// One optotype of a set.
struct Optotype {
  std::string_view name;  // a letter, or the direction of a gap or of the bars: "C", "up-right"
  Shape (*draw)();        // on the grid of letters.h
  double degrees;         // the turn of the drawing, anticlockwise as seen

  // Centred at the origin, in strokes.
  Shape Drawn() const;
};

struct OptotypeSet {
  std::string_view word;         // "sloan"
  std::string_view description;  // "Sloan letters"
  std::span<const Optotype> optotypes;
  bool letters;  // each name is one letter
};

// The sets: Sloan letters, the letters H O T V, Landolt rings with 4 and 8 directions, the tumbling E.
std::span<const OptotypeSet> OptotypeSets();

// Null if there is no such set.
const OptotypeSet* OptotypeSetNamed(std::string_view word);

// The place of a name in a set, in upper or lower case.
std::optional<int> FindOptotype(const OptotypeSet& set, std::string_view name);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_OPTOTYPE_H
