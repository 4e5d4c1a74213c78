// Joins subjects of one reason.
#include "evaluation/columns/column_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvanel::evaluation {

void ColumnValues::Add(double value) {
  values_.push_back(std::isfinite(value) ? value + 0.0 : std::numeric_limits<double>::quiet_NaN());
}

void ColumnValues::Note(const std::string& subject, const std::string& reason) {
  const auto same = std::find_if(notes_.begin(), notes_.end(), [&](const auto& note) { return note.second == reason; });
  if (same == notes_.end()) {
    notes_.emplace_back(subject, reason);
  } else {
    same->first += ", " + subject;
  }
}

std::string ColumnValues::Notes() const {
  std::string text;
  for (const auto& [subjects, reason] : notes_) text += (text.empty() ? "" : "; ") + subjects + ": " + reason;
  return text;
}

}  // namespace orvanel::evaluation
