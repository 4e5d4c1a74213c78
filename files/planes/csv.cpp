// Formats planes with std::to_chars.
#include "files/planes/csv.h"

#include <cmath>

#include "base/number_text.h"

namespace orvanel::files {

std::string EncodeCsv(const PlaneSet& set) {
  std::string text;
  const Plane& samples = *set.planes.at(0).samples;
  int column = 0;
  for (const double value : samples) {
    text += std::isnan(value) ? "NaN" : ShortestText(value);
    column = (column + 1) % samples.columns();
    text += column == 0 ? '\n' : ',';
  }
  return text;
}

}  // namespace orvanel::files
