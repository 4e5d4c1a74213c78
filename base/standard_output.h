// Declares how the library writes to standard output.
#ifndef ORVANEL_BASE_STANDARD_OUTPUT_H
#define ORVANEL_BASE_STANDARD_OUTPUT_H

#include <string_view>

namespace orvanel {

// Writes the bytes to stdout unchanged, after all that the host has written to it. On Windows too a line ends in a
// newline alone, for any mode of the stream. The host's mode does not change, and text with a newline is flushed.
void WriteOutput(std::string_view bytes);

}  // namespace orvanel

#endif  // ORVANEL_BASE_STANDARD_OUTPUT_H
