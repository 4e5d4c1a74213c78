// Writes a table piece by piece, to a file that comes to its place whole or to standard output.
#ifndef ORVANEL_CLI_TABLE_OUTPUT_H
#define ORVANEL_CLI_TABLE_OUTPUT_H

#include <optional>
#include <string>

#include "base/layers.h"
#include "files/new_file.h"

namespace orvanel::cli {

class TableOutput {
 public:
  // Throws Error as NewFile does.
  //   name  of the file; standard output where it is empty or "-"
  TableOutput(const std::string& name, bool replace);

  bool isFile() const { return file_.has_value(); }

  // Throws Error where the text cannot be written.
  void Write(const std::string& text);

  // After the last piece: puts the file in its place.
  void Finish();

 private:
  void Flush();

  std::optional<NewFile> file_;
  std::string pending_;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_TABLE_OUTPUT_H
