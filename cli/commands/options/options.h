// Declares the options that several subcommands share.
#ifndef ORVANEL_CLI_COMMANDS_OPTIONS_OPTIONS_H
#define ORVANEL_CLI_COMMANDS_OPTIONS_OPTIONS_H

#include <CLI/App.hpp>
#include <functional>
#include <optional>
#include <string>

#include "base/layers.h"
#include "eye/adjustments.h"
#include "eye/conventions/partial_convention.h"
#include "files/eyes/any_eye.h"
#include "files/tables/eye_table.h"

namespace orvanel::cli {

struct InputOptions {
  std::string file;
  PartialConvention stated;
  std::optional<std::size_t> row;
  std::optional<FileKind> kind;
  TableOptions table;
};

// Adds EYE, --row, --table-format, and the options of the convention.
void AddInputOptions(CLI::App& app, InputOptions& options);

// Adds --table-format.
void AddTableFormatOption(CLI::App& app, std::optional<FileKind>& kind);

// Adds --prescription-columns and --decimal-comma.
void AddTableOptions(CLI::App& app, TableOptions& options);

// Adds one option for each part of the convention that a file may leave open.
void AddStatementOptions(CLI::App& app, PartialConvention& stated);

// Adds the options that adjust an eye: its pupil, refraction, lens, laterality and radial orders.
void AddAdjustmentOptions(CLI::App& app, Adjustments& adjustments);

// The number of an eye in a table. Throws Error.
std::size_t ParseRow(const std::string& text);

// Adds an option whose text `parse` reads. An Error that it throws becomes an error of usage.
CLI::Option* AddParsedOption(CLI::App& app, const std::string& name, const std::string& type,
                             const std::string& description, std::function<void(const std::string&)> parse);

// Reads the eye that the options name. For a table, prints on the error output how its columns are read.
Eye ReadEye(const InputOptions& options);

// Prints on the error output how the columns of a table are read.
void PrintColumns(const std::string& file, const std::string& summary);

// Describes the names of columns, for the help of subcommands that read tables.
extern const char* const kColumnNotes;

// Describes eye files and conventions, for the help of subcommands that read eyes.
extern const char* const kEyeNotes;

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_OPTIONS_OPTIONS_H
