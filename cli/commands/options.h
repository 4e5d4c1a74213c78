// Options that several subcommands share.
#ifndef ORVANEL_CLI_COMMANDS_OPTIONS_H
#define ORVANEL_CLI_COMMANDS_OPTIONS_H

#include <CLI/App.hpp>
#include <functional>
#include <optional>
#include <string>

#include "base/layers.h"
#include "eye/adjustments.h"
#include "eye/conventions/statement.h"
#include "files/eyes/any_eye.h"
#include "files/tables/eye_table.h"

namespace orvanel::cli {

struct InputOptions {
  std::string file;
  Statement stated;
  std::optional<std::size_t> row;
  std::optional<FileKind> kind;
  TableOptions table;
};

// EYE, --row, --table-format, and the options of statements.
void AddInputOptions(CLI::App& app, InputOptions& options);

// --table-format.
void AddTableFormatOption(CLI::App& app, std::optional<FileKind>& kind);

// --prescription-columns and --decimal-comma.
void AddTableOptions(CLI::App& app, TableOptions& options);

// One option for each thing that a file may leave unsaid.
void AddStatementOptions(CLI::App& app, Statement& stated);

// --pupil, --extrapolate, --refraction and --mirror.
void AddAdjustmentOptions(CLI::App& app, Adjustments& adjustments);

// An option whose text `parse` takes; what it throws as Error becomes an error of usage.
CLI::Option* AddParsedOption(CLI::App& app, const std::string& name, const std::string& type,
                             const std::string& description, std::function<void(const std::string&)> parse);

// The eye that the options name. Of a table, tells on the error output what its columns are read as.
Eye ReadEye(const InputOptions& options);

// Tells on the error output what the columns of a table are read as.
void PrintColumns(const std::string& file, const std::string& summary);

// The names of columns, for the help of subcommands that read tables.
extern const char* const kColumnNotes;

// The eye file and conventions in a few lines, for the help of subcommands that read eyes.
extern const char* const kEyeNotes;

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_OPTIONS_H
