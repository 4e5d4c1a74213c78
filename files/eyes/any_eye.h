// Reads an eye from an eye file or from a row of a table.
#ifndef ORVANEL_FILES_EYES_ANY_EYE_H
#define ORVANEL_FILES_EYES_ANY_EYE_H

#include <cstddef>
#include <optional>
#include <string>

#include "base/layers.h"
#include "eye/conventions/partial_convention.h"
#include "eye/eye.h"
#include "files/tables/eye_table.h"

namespace orvanel::files {

enum class FileKind { kEyeFile, kCsv, kNdjson };

// The kind of a file by its ending: .csv, .tsv and .txt are tables, .ndjson and .jsonl tables of JSON, all others eye
// files; "-" is a table.
//   stated  the kind on the command line, which overrides the ending
FileKind KindOf(const std::string& file, std::optional<FileKind> stated = std::nullopt);

// The kind of a table.
TableKind TableKindOf(FileKind kind);

// Reads the eye of an eye file, or of one row of a table. Throws Error if a table has several and no row is given.
//   row      in the table; the first eye is 1
//   options  how a table is read; an eye file takes none
//   columns  if not null, receives a summary of how the columns of a table are read
Eye ReadEye(const std::string& file, const PartialConvention& stated, std::optional<std::size_t> row,
            std::optional<FileKind> kind = std::nullopt, TableOptions options = {}, std::string* columns = nullptr);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_EYES_ANY_EYE_H
