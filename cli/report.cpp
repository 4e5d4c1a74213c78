// Lines, and the stream they go to.
#include "cli/report.h"

#include <cstdio>

#include "cli/error.h"
#include "cli/terminal.h"

namespace orvanel::cli {

std::string ReportLine(const std::string& label, const std::string& text) {
  constexpr std::size_t kColumn = 16;
  return (label.empty() ? "" : Bold(label, Stream::kOutput)) + std::string(kColumn - label.size(), ' ') + text + "\n";
}

void PrintOutput(const std::string& text, const std::string& done) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!written || std::fflush(stdout) != 0) {
    throw Error((done.empty() ? "" : done + ", but ") + "standard output cannot be written");
  }
}

}  // namespace orvanel::cli
