// Formats with the escape sequences of ECMA-48.
#include "cli/console/terminal.h"

#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

#include "base/visible_text.h"
#include "cli/console/process.h"

namespace orvanel::cli {
namespace {

// Private-use characters of Unicode that stand for escape sequences, until control characters of all other text have
// been replaced.
constexpr std::string_view kBold = "\xEF\xB7\x90", kPlain = "\xEF\xB7\x91";

bool GoesToTerminal(Stream stream) { return IsTerminal(stream == Stream::kOutput ? 1 : 2); }

std::string Styled(const std::string& text, const char* style, Stream stream) {
  return HasColour(stream) ? std::string("\x1b[") + style + "m" + text + "\x1b[0m" : text;
}

bool IsDumb() {
  const char* const terminal = std::getenv("TERM");
  return terminal != nullptr && std::string_view(terminal) == "dumb";
}

}  // namespace

bool HasColour(Stream stream) {
  const char* const refused = std::getenv("NO_COLOR");  // https://no-color.org: any value except the empty one
  return GoesToTerminal(stream) && !IsDumb() && (refused == nullptr || *refused == '\0');
}

std::string Bold(const std::string& text) {
  return HasColour(Stream::kOutput) ? std::string(kBold) + text + std::string(kPlain) : text;
}

std::string ForTerminal(const std::string& lines) {
  std::string text = VisibleLines(lines);
  for (const auto& [mark, sequence] : {std::pair(kBold, "\x1b[1m"), std::pair(kPlain, "\x1b[0m")}) {
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos;) text.replace(at, mark.size(), sequence);
  }
  return text;
}

void PrintError(const std::string& message) {
  std::cerr << Styled("orvanel:", "1;31", Stream::kErrors) << ' ' << VisibleText(message) << '\n';
}

void PrintWarning(const std::string& message) {
  std::cerr << Styled("orvanel: warning:", "1;33", Stream::kErrors) << ' ' << VisibleText(message) << '\n';
}

void PrintNote(const std::string& message) {
  std::cerr << Styled("orvanel: note:", "1", Stream::kErrors) << ' ' << VisibleText(message) << '\n';
}

StatusLine::StatusLine() : shown_(GoesToTerminal(Stream::kErrors) && !IsDumb()) {}

StatusLine::~StatusLine() { Show(""); }

void StatusLine::Show(const std::string& text) const {
  if (shown_) std::cerr << '\r' << VisibleText(text) << "\x1b[K" << std::flush;
}

Progress::Progress(std::string label, std::size_t total) : label_(std::move(label)), total_(total) { Draw(); }

void Progress::Advance() {
  ++done_;
  Draw();
}

void Progress::Draw() const {
  constexpr std::size_t kWidth = 30;
  const std::size_t full = total_ == 0 ? kWidth : kWidth * done_ / total_;
  line_.Show(label_ + " [" + std::string(full, '#') + std::string(kWidth - full, '.') + "] " + std::to_string(done_) +
             " of " + std::to_string(total_));
}

}  // namespace orvanel::cli
