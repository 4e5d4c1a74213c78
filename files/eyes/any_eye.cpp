// Chooses the reader by the ending of the name, and reads one row of a table.
#include "files/eyes/any_eye.h"

#include <algorithm>
#include <string_view>

#include "base/error.h"
#include "files/errors.h"
#include "files/eyes/eye_file.h"
#include "files/input_file.h"

namespace orvanel::files {
namespace {

Eye ReadRow(const std::string& place, FileKind kind, const PartialConvention& stated, std::optional<std::size_t> row,
            TableOptions options, std::string* columns) {
  InputFile stream(place);
  const std::string file = InputName(place);
  EyeTable table(stream, file, TableKindOf(kind), stated, options);
  if (columns != nullptr) *columns = table.Summary();
  TableEye eye;
  const std::size_t wanted = row.value_or(1);
  for (std::size_t at = 1; at <= wanted; ++at) {
    try {
      if (table.Next(eye)) continue;
    } catch (const ErrorAt&) {
      if (at < wanted) continue;  // only the wanted row must be valid
      throw;
    }
    throw Error(file + ": holds " + std::to_string(at - 1) + " eyes; there is no row " + std::to_string(wanted));
  }
  if (!row) {
    TableEye another;
    bool more = true;
    try {
      more = table.Next(another);
    } catch (const ErrorAt&) {
    }
    if (more) throw FileError(FileFix::kChooseRow, file + ": holds more than one eye; ", "choose a row");
  }
  if (eye.eye.name.empty()) eye.eye.name = file + ", row " + std::to_string(wanted);
  return eye.eye;
}

}  // namespace

FileKind KindOf(const std::string& file, std::optional<FileKind> stated) {
  if (stated) return *stated;
  if (file == kStandardStream) return FileKind::kCsv;
  std::string lower = file;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  for (const char* ending : {".csv", ".tsv", ".txt"}) {
    if (lower.ends_with(ending)) return FileKind::kCsv;
  }
  for (const char* ending : {".ndjson", ".jsonl"}) {
    if (lower.ends_with(ending)) return FileKind::kNdjson;
  }
  return FileKind::kEyeFile;
}

TableKind TableKindOf(FileKind kind) { return kind == FileKind::kNdjson ? TableKind::kNdjson : TableKind::kCsv; }

Eye ReadEye(const std::string& file, const PartialConvention& stated, std::optional<std::size_t> row,
            std::optional<FileKind> kind, TableOptions options, std::string* columns) {
  if (KindOf(file, kind) != FileKind::kEyeFile) {
    return ReadRow(file, KindOf(file, kind), stated, row, options, columns);
  }
  if (row) throw FileError(FileFix::kAskForNoRow, file + ": is an eye file with one eye; ", "request no row");
  if (options.prescription || options.decimalComma) {
    throw FileError(FileFix::kReadAsEyeFile, file + ": is an eye file, not a table; ",
                    "request no prescription columns and no decimal commas");
  }
  return ReadEyeFile(file, stated);
}

}  // namespace orvanel::files
