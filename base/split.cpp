// Splits lists at their commas.
#include "base/split.h"

#include <algorithm>
#include <cstddef>

namespace orvanel {

std::vector<std::string_view> Split(std::string_view list) {
  std::vector<std::string_view> parts;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    parts.push_back(list.substr(start, comma - start));
    start = comma + 1;
  }
  return parts;
}

}  // namespace orvanel
