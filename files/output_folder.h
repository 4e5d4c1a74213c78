// Writes the folder of results as a whole: all files of a run, or none.
#ifndef ORVANEL_FILES_OUTPUT_FOLDER_H
#define ORVANEL_FILES_OUTPUT_FOLDER_H

#include <filesystem>
#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::files {

// The file that lists all files of a run under the key "files". It marks a folder as written by this program.
constexpr const char* kSummaryFile = "summary.json";

// Files are staged in a temporary folder and moved to their place at the end. The destructor removes the temporary
// folder.
class OutputFolder {
 public:
  // Throws Error if the files must not or cannot be written there. A file is refused, and a folder without a parent. A
  // folder that is not empty is refused unless `replace`. A file of one of the names that no earlier run lists is never
  // replaced.
  //   names  all files that will be added
  OutputFolder(const std::filesystem::path& place, std::vector<std::string> names, bool replace);
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;
  ~OutputFolder();

  // Stages a file.
  void Add(const std::string& name, const std::string& bytes);

  // Moves the staged files to their place and removes files of an earlier run that this run does not replace.
  void Commit();

 private:
  std::filesystem::path place_;
  std::filesystem::path staging_;
  bool exists_ = false;
  std::vector<std::string> names_;
  std::vector<std::string> earlier_;  // files of an earlier run in place_
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_OUTPUT_FOLDER_H
