// The program: runs one subcommand and reports its errors.
#include <exception>
#include <new>

#include "base/error.h"
#include "cli/commands/command_line.h"
#include "cli/console/process.h"
#include "cli/console/signals.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "orvanel/optics_engine.h"

int main(int argc, char** argv) {
  using namespace orvanel;
  using namespace orvanel::cli;
  OpenStandardDescriptors();
  NoteInterruptions();
  ShowUtf8();
  ExitStatus status = kDone;
  try {
    const std::optional<Run> run = ReadCommandLine(Arguments(argc, argv), status);
    if (run) {
      orvanel::KernelVariant();  // an unknown name of kernels is an error before any work
      (*run)();
    }
  } catch (const FaultyRows& error) {
    PrintError(error.what());
    return kSomeRowsFaulty;
  } catch (const std::bad_alloc&) {
    PrintError("there is not enough memory; a batch needs less of it with fewer --jobs");
    return kFailed;
  } catch (const orvanel::Error& error) {
    PrintError(TextOf(error));
    return kFailed;
  } catch (const std::exception& error) {
    PrintError(error.what());
    return kFailed;
  }
  return status;
}
