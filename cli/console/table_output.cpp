// Collects pieces into blocks before writing.
#include "cli/console/table_output.h"

#include "cli/console/report.h"
#include "files/input_file.h"

namespace orvanel::cli {

TableOutput::TableOutput(const std::string& name, bool replace) {
  if (!name.empty() && name != kStandardStream) file_.emplace(name, replace);
}

void TableOutput::Flush() {
  if (file_) {
    file_->Write(pending_);
  } else {
    PrintOutput(pending_, "");
  }
  pending_.clear();
}

void TableOutput::Write(const std::string& text) {
  constexpr std::size_t kBlock = 1 << 16;
  pending_ += text;
  if (pending_.size() >= kBlock) Flush();
}

void TableOutput::Finish() {
  Flush();
  if (file_) file_->Commit();
}

}  // namespace orvanel::cli
