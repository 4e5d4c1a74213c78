// Line feeds outside of quotes.
#include "cli/batch/whole_rows.h"

#include "cli/error.h"

namespace orvanel::cli {

bool RowReader::Next(std::string& row) {
  constexpr std::size_t kBlock = 1 << 16;
  bool quoted = false;
  for (std::size_t i = next_;; ++i) {
    if (i == buffer_.size()) {
      buffer_.erase(0, next_);
      i -= next_;
      next_ = 0;
      const std::size_t kept = buffer_.size();
      buffer_.resize(kept + kBlock);
      stream_.read(buffer_.data() + kept, kBlock);
      buffer_.resize(kept + static_cast<std::size_t>(stream_.gcount()));
      if (buffer_.size() == kept) return false;
    }
    if (buffer_[i] == '"') quoted = !quoted;
    if (buffer_[i] != '\n' || quoted) continue;
    row.assign(buffer_, next_, i + 1 - next_);
    next_ = i + 1;
    return true;
  }
}

WholeRows CountWholeRows(std::istream& stream, const std::string& header, std::size_t most) {
  WholeRows whole;
  RowReader reader(stream);
  std::string row;
  if (!reader.Next(row)) return whole;
  if (row != header) throw Error("its first row is another than this run writes");
  whole.headerIsWhole = true;
  whole.bytes = row.size();
  while (whole.rows < most && reader.Next(row) && row.find('\0') == std::string::npos) {
    whole.bytes += row.size();
    ++whole.rows;
    if (HasError(row)) ++whole.errors;
  }
  return whole;
}

}  // namespace orvanel::cli
