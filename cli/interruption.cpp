// Handlers that set a flag.
#include "cli/interruption.h"

#include <csignal>

#include "cli/platform.h"

namespace orvanel::cli {
namespace {

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

void NoteInterruptions() {
  HandleSignals([](int which) {
    interrupted = 1;
    EndWaiting();
    std::signal(which, SIG_DFL);  // whoever asks twice is obeyed at once
  });
}

bool IsInterrupted() { return interrupted != 0; }

void StopIfInterrupted() {
  if (IsInterrupted()) throw Interrupted();
}

StopAtOnce::StopAtOnce() {
  HandleSignals(SIG_DFL);
  StopIfInterrupted();
}

StopAtOnce::~StopAtOnce() { NoteInterruptions(); }

}  // namespace orvanel::cli
