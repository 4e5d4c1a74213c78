// Eyes from whatever kind of file the user names.
#ifndef ORVANEL_FILES_EYES_ANY_EYE_H
#define ORVANEL_FILES_EYES_ANY_EYE_H

#include <cstddef>
#include <optional>
#include <string>

#include "base/layers.h"
#include "eye/conventions/statement.h"
#include "eye/eye.h"
#include "files/tables/eye_table.h"

namespace orvanel::files {

enum class FileKind { kEyeFile, kCsv, kNdjson };

// By the ending of the name: .csv, .tsv and .txt are tables, .ndjson and .jsonl tables of JSON, all others eye files;
// "-" is a table.
//   stated  what the command line states, which goes before the name
FileKind KindOf(const std::string& file, std::optional<FileKind> stated = std::nullopt);

// Of a table.
TableKind TableKindOf(FileKind kind);

// One eye: that of an eye file, or of a table's row. Throws Error where a table holds several and no row is given.
//   row      of the table, the first eye being 1
//   options  how a table is read; an eye file takes none
//   columns  where it is not null and the file a table, gets what its columns are read as
Eye ReadEye(const std::string& file, const Statement& stated, std::optional<std::size_t> row,
            std::optional<FileKind> kind = std::nullopt, TableOptions options = {}, std::string* columns = nullptr);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_EYES_ANY_EYE_H
