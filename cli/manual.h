// Generates manual pages and bash completion from the definition of the command line.
#ifndef ORVANEL_CLI_MANUAL_H
#define ORVANEL_CLI_MANUAL_H

#include <CLI/App.hpp>
#include <map>
#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// The manual page of the program, or of one of its subcommands, in roff.
//   parent  the program, or null if `app` is the program
std::string ManualPage(const CLI::App& app, const CLI::App* parent);

// "orvanel-simulate".
std::string ManualName(const CLI::App& app, const CLI::App* parent);

// The bash completion of subcommands, their options, and the words that options accept, also in lists with commas.
//   words  of options whose description does not list them, by "--option", or "subcommand:--option" for one subcommand
std::string BashCompletion(const CLI::App& program, const std::map<std::string, std::string>& words);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_MANUAL_H
