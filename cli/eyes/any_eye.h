// Eyes from whatever kind of file the user names.
#ifndef ORVANEL_CLI_EYES_ANY_EYE_H
#define ORVANEL_CLI_EYES_ANY_EYE_H

#include <cstddef>
#include <optional>
#include <string>

#include "cli/conventions/statement.h"
#include "cli/eyes/eye.h"

namespace orvanel::cli {

enum class FileKind { kEyeFile, kCsv, kNdjson };

// By the ending of the name: .csv, .tsv and .txt are tables, .ndjson and .jsonl tables of JSON, all others eye files.
FileKind KindOf(const std::string& file);

// One eye: that of an eye file, or of a table's row. Throws Error where a table holds several and no row is given.
//   row  of the table, the first eye being 1
Eye ReadEye(const std::string& file, const Statement& stated, std::optional<std::size_t> row);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_EYES_ANY_EYE_H
