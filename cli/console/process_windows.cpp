// Implements process.h for Windows.
#include <io.h>
#include <windows.h>
// Needs the types of windows.h, so it comes after it.
#include <shellapi.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "cli/console/process.h"

namespace orvanel::cli {

std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/) {
  // The arguments of main lack characters that the system's code page does not have.
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) arguments.push_back(std::filesystem::path(wide[i]).string());
  LocalFree(wide);
  return arguments;
}

void ShowUtf8() {
  static const UINT before = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  std::atexit([] { SetConsoleOutputCP(before); });
}

// The C library gives the numbers 0 to 2 to no other file, even if they are closed.
void OpenStandardDescriptors() {}

void HandleSignals(void (*handler)(int)) {
  for (const int signal : {SIGINT, SIGTERM, SIGBREAK}) std::signal(signal, handler);
}

bool IsTerminal(int descriptor) {
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  DWORD mode = 0;
  if (GetConsoleMode(console, &mode) == 0) return false;
  return SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace orvanel::cli
