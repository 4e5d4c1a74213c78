// Levenshtein's distance, one row at a time.
#include "base/spelling.h"

#include <algorithm>
#include <vector>

namespace orvanel {

std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row.back();
}

std::optional<std::string_view> Nearest(std::string_view name, std::span<const char* const> known,
                                        std::size_t (*most)(std::size_t length)) {
  std::optional<std::string_view> nearest;
  std::size_t distance = 0;
  for (const std::string_view candidate : known) {
    const std::size_t limit = most(candidate.size());
    if (name.size() > candidate.size() + limit) continue;  // names may be long, and many
    const std::size_t edits = EditDistance(name, candidate);
    if (edits > limit || (nearest && edits >= distance)) continue;
    nearest = candidate;
    distance = edits;
  }
  return nearest;
}

}  // namespace orvanel
