// Splits bytes at line feeds outside quotes.
#include "cli/batch/whole_rows.h"

#include "base/error.h"

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

WholeRows ReadWholeRows(std::istream& stream, const std::string& header, std::uintmax_t bytes,
                        const std::function<void(std::size_t, const std::string&)>& visit) {
  WholeRows whole;
  RowReader reader(stream);
  bool isHeader = true;
  for (std::string row; whole.bytes < bytes && reader.Next(row) && row.size() <= bytes - whole.bytes;) {
    if (isHeader && row != header) throw Error("its first row differs from the one that this run writes");
    whole.bytes += row.size();
    whole.hash.Add(row);
    if (!isHeader) {
      visit(whole.rows, row);
      ++whole.rows;
      if (HasError(row)) ++whole.errors;
    }
    isHeader = false;
  }
  return whole;
}

}  // namespace orvanel::cli
