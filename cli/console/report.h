// Formats and prints the report of a subcommand on standard output.
#ifndef ORVANEL_CLI_CONSOLE_REPORT_H
#define ORVANEL_CLI_CONSOLE_REPORT_H

#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// One aligned line, "label           text". On a terminal the label is bold and control characters in the text are
// visible.
std::string ReportLine(const std::string& label, const std::string& text);

// Writes lines of a report, or rows of a table. Their bytes are unchanged unless standard output is a terminal. Throws
// Error if standard output cannot be written.
//   done  what is complete nevertheless: "the results are in place"; may be empty
void PrintOutput(const std::string& text, const std::string& done);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CONSOLE_REPORT_H
