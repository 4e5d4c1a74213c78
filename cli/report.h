// What a subcommand reports on standard output.
#ifndef ORVANEL_CLI_REPORT_H
#define ORVANEL_CLI_REPORT_H

#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// One aligned line, "label           text", its label in bold on a terminal, control characters in its text made
// visible.
std::string ReportLine(const std::string& label, const std::string& text);

// Writes lines of a report, or rows of a table, which keep their bytes where standard output is no terminal. Throws
// Error where standard output cannot be written.
//   done  what is in place all the same: "the results are in place"; may be empty
void PrintOutput(const std::string& text, const std::string& done);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_REPORT_H
