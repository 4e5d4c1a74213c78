// Formats lines and writes them to standard output.
#include "cli/console/report.h"

#include <cstdio>

#include "base/error.h"
#include "base/visible_text.h"
#include "cli/console/process.h"
#include "cli/console/terminal.h"

namespace orvanel::cli {
namespace {

constexpr int kStandardOutput = 1;

}  // namespace

std::string ReportLine(const std::string& label, const std::string& text) {
  constexpr std::size_t kColumn = 16;
  return (label.empty() ? "" : Bold(label)) + std::string(kColumn - label.size(), ' ') + VisibleText(text) + "\n";
}

void PrintOutput(const std::string& text, const std::string& done) {
  const std::string& shown = IsTerminal(kStandardOutput) ? ForTerminal(text) : text;
  const bool written = std::fwrite(shown.data(), 1, shown.size(), stdout) == shown.size();
  if (!written || std::fflush(stdout) != 0) {
    throw Error((done.empty() ? "" : done + ", but ") + "standard output cannot be written");
  }
}

}  // namespace orvanel::cli
