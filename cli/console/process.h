// Operating system functions for a process: arguments, streams, signals, the terminal.
#ifndef ORVANEL_CLI_CONSOLE_PROCESS_H
#define ORVANEL_CLI_CONSOLE_PROCESS_H

#include <string>
#include <vector>

namespace orvanel::cli {

// The arguments after the program's name; UTF-8 on Windows, the bytes as given elsewhere.
std::vector<std::string> Arguments(int argc, char** argv);

// Makes a console display UTF-8 until the program ends.
void ShowUtf8();

// Opens descriptors 0 to 2 if they are closed, so that no file or pipe of the program gets their numbers. Reading from
// a descriptor that was closed still fails, and so does writing to it.
void OpenStandardDescriptors();

// Calls the handler on a request to stop the program, and makes writing to a closed pipe fail instead of ending it.
void HandleSignals(void (*handler)(int));

// Whether a file descriptor is a terminal that supports escape sequences.
bool IsTerminal(int descriptor);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CONSOLE_PROCESS_H
