// Writes a table in pieces, atomically to a file or to standard output.
#ifndef ORVANEL_CLI_CONSOLE_TABLE_OUTPUT_H
#define ORVANEL_CLI_CONSOLE_TABLE_OUTPUT_H

#include <optional>
#include <string>

#include "base/layers.h"
#include "files/new_file.h"

namespace orvanel::cli {

class TableOutput {
 public:
  // Throws Error as NewFile does.
  //   name  of the file; standard output if it is empty or "-"
  TableOutput(const std::string& name, bool replace);

  bool isFile() const { return file_.has_value(); }

  // Throws Error if the text cannot be written.
  void Write(const std::string& text);

  // Renames the file to its place, after the last piece.
  void Finish();

 private:
  void Flush();

  std::optional<NewFile> file_;
  std::string pending_;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CONSOLE_TABLE_OUTPUT_H
