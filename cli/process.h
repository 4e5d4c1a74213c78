// What the program asks of the operating system as a process: arguments, streams, signals, the terminal.
#ifndef ORVANEL_CLI_PROCESS_H
#define ORVANEL_CLI_PROCESS_H

#include <string>
#include <vector>

namespace orvanel::cli {

// The arguments behind the program's name; UTF-8 on Windows, the bytes as given elsewhere.
std::vector<std::string> Arguments(int argc, char** argv);

// From here to the program's end, a console shows UTF-8.
void ShowUtf8();

// Opens descriptors 0 to 2 where they are closed, so that no file or pipe of the program takes their numbers. Reading
// from what was closed fails, and so does writing to it.
void OpenStandardDescriptors();

// Has the handler called where the program is asked to stop, and turns output that nobody takes into a failed write.
void HandleSignals(void (*handler)(int));

// Whether a file descriptor is a terminal that understands escape sequences.
bool IsTerminal(int descriptor);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PROCESS_H
