// Redirects standard output to nowhere: the ring's trace line is part of the measurement, but not of the report.
#ifndef ORVANEL_BENCH_SILENT_OUTPUT_H
#define ORVANEL_BENCH_SILENT_OUTPUT_H

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace orvanel::bench {

class SilentOutput {
 public:
  SilentOutput() : saved_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
  }
  ~SilentOutput() {
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
  }
  SilentOutput(const SilentOutput&) = delete;
  SilentOutput& operator=(const SilentOutput&) = delete;

 private:
  int saved_;
};

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_SILENT_OUTPUT_H
