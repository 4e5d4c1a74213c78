// Keeps the request to stop as a flag that signal handlers may set.
#include "files/interruption.h"

#include <csignal>

#include "files/platform.h"

namespace orvanel::files {
namespace {

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

void RequestStop() {
  interrupted = 1;
  EndWaiting();
}

bool IsInterrupted() { return interrupted != 0; }

void StopIfInterrupted() {
  if (IsInterrupted()) throw Interrupted();
}

}  // namespace orvanel::files
