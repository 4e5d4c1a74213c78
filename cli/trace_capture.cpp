// Capture at the level of file descriptors: the library writes through C's stdout, in a library of its own.
#include "cli/trace_capture.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "cli/error.h"
#include "cli/platform.h"

namespace orvanel::cli {
namespace {

constexpr int kStandardOutput = 1;

[[noreturn]] void Fail() { throw Error(std::string("cannot redirect standard output: ") + std::strerror(errno)); }

}  // namespace

TraceCapture::TraceCapture() {
  if (std::fflush(stdout) != 0) throw Error(std::string("cannot write to standard output: ") + std::strerror(errno));
  int ends[2];
  if (MakePipe(ends) != 0) Fail();
  reader_ = ends[0];
  standardOutput_ = Duplicate(kStandardOutput);
  const bool redirected = standardOutput_ != -1 && Replace(ends[1], kStandardOutput) != -1;
  const int reason = errno;
  Close(ends[1]);
  if (redirected) return;
  Close(reader_);
  if (standardOutput_ != -1) Close(standardOutput_);
  errno = reason;
  Fail();
}

TraceCapture::~TraceCapture() {
  Restore();
  Close(reader_);
}

void TraceCapture::Restore() {
  if (standardOutput_ == -1) return;
  std::fflush(stdout);
  // Either way the pipe's last writing end is closed, without which reading would never end.
  if (Replace(standardOutput_, kStandardOutput) == -1) Close(kStandardOutput);
  Close(standardOutput_);
  standardOutput_ = -1;
}

std::string TraceCapture::Finish() {
  Restore();
  std::string text;
  char block[256];
  for (int count; (count = Read(reader_, block, sizeof block)) > 0;) {
    text.append(block, static_cast<std::size_t>(count));
  }
  return text;
}

int DiameterOfTrace(std::string_view line) {
  const std::size_t tab = line.find('\t');
  int diameter = 0;
  if (tab != std::string_view::npos) {
    const char* const end = line.data() + line.size();
    const auto [rest, error] = std::from_chars(line.data() + tab + 1, end, diameter);
    if (error == std::errc() && std::string_view(rest, end) == "\n") return diameter;
  }
  throw Error("the library's trace line is not understood: '" + std::string(line) + "'");
}

}  // namespace orvanel::cli
