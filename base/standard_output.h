// How the library writes to standard output.
#ifndef ORVANEL_BASE_STANDARD_OUTPUT_H
#define ORVANEL_BASE_STANDARD_OUTPUT_H

#include <string_view>

namespace orvanel {

// Writes the bytes to stdout as they are, after all that the host has written to it. On Windows too a line ends in a
// newline alone, whatever the stream's mode, which is the host's and stays; there, what holds a newline is flushed.
void WriteOutput(std::string_view bytes);

}  // namespace orvanel

#endif  // ORVANEL_BASE_STANDARD_OUTPUT_H
