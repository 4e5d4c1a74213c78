// Installs signal handlers.
#include "cli/console/signals.h"

#include <csignal>

#include "cli/console/process.h"
#include "files/interruption.h"
#include "files/platform.h"

namespace orvanel::cli {

void NoteInterruptions() {
  PrepareEndWaiting();
  HandleSignals([](int which) {
    RequestStop();
    std::signal(which, SIG_DFL);  // a second signal ends the process at once
  });
}

StopAtOnce::StopAtOnce() {
  HandleSignals(SIG_DFL);
  StopIfInterrupted();
}

StopAtOnce::~StopAtOnce() { NoteInterruptions(); }

}  // namespace orvanel::cli
