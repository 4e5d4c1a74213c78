// Runs every call once under callgrind, which writes one file for each call, with the call's name inside.
// Usage: orvanel_instructions KERNELS
#include <valgrind/callgrind.h>

#include <cstdio>
#include <exception>

#include "bench/calls.h"
#include "bench/silent_output.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Usage: orvanel_instructions KERNELS\n");
    return 2;
  }
  try {
    const orvanel::bench::SilentOutput silent;
    for (const orvanel::bench::Call& call : orvanel::bench::CallsOfLibrary(argv[1])) {
      constexpr int kTurn = 3;
      call.prepare();
      call.once(kTurn - 1);
      CALLGRIND_START_INSTRUMENTATION;
      CALLGRIND_ZERO_STATS;
      call.once(kTurn);
      CALLGRIND_DUMP_STATS_AT(call.name.c_str());
      CALLGRIND_STOP_INSTRUMENTATION;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvanel_instructions: %s\n", error.what());
    return 1;
  }
  return 0;
}
