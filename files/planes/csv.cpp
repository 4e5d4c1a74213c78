// Formats planes with std::to_chars.
#include "files/planes/csv.h"

#include <cmath>

#include "base/number_text.h"
#include "orvanel/orvanel.h"

namespace orvanel::files {

std::string EncodeCsv(const PlaneSet& set) {
  std::string text;
  std::size_t column = 0;
  for (const double value : *set.planes.at(0).samples) {
    text += std::isnan(value) ? "NaN" : ShortestText(value);
    column = (column + 1) % ORVANEL_GRID_SIZE;
    text += column == 0 ? '\n' : ',';
  }
  return text;
}

}  // namespace orvanel::files
