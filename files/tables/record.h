// Holds one row of a table: its texts and their places.
#ifndef ORVANEL_FILES_TABLES_RECORD_H
#define ORVANEL_FILES_TABLES_RECORD_H

#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

// Reused for all rows to avoid allocations.
class Record {
 public:
  std::size_t size() const { return fields_.size(); }
  std::string_view operator[](std::size_t field) const {
    return std::string_view(text_).substr(fields_[field].first, End(field) - fields_[field].first);
  }
  Place place(std::size_t field) const { return fields_[field].place; }
  std::size_t line() const { return fields_.empty() ? 0 : fields_.front().place.line; }

  void Clear() {
    text_.clear();
    fields_.clear();
  }
  void Begin(Place place) { fields_.push_back({text_.size(), place}); }
  void Add(char c) { text_ += c; }
  void Add(std::string_view text) { text_ += text; }
  std::size_t bytes() const { return text_.size(); }

  // True if every field is empty.
  bool IsBlank() const { return text_.empty(); }

 private:
  struct Field {
    std::size_t first;  // in text_
    Place place;
  };

  std::size_t End(std::size_t field) const {
    return field + 1 < fields_.size() ? fields_[field + 1].first : text_.size();
  }

  std::string text_;  // all fields, one after the other
  std::vector<Field> fields_;
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_RECORD_H
