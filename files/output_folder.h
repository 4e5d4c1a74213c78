// The folder of results: all of it is there, or nothing.
#ifndef ORVANEL_FILES_OUTPUT_FOLDER_H
#define ORVANEL_FILES_OUTPUT_FOLDER_H

#include <filesystem>
#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::files {

// The file that lists, under the key "files", all files of a run; it makes a folder one of this program's.
constexpr const char* kSummaryFile = "summary.json";

// Files are staged in a temporary folder and come to their place in the end. The temporary folder vanishes with this
// object, whatever has happened.
class OutputFolder {
 public:
  // Refuses, by throwing Error, a place where the files must not or cannot be written: one that is a file, one without
  // a parent, a folder that is not empty unless `replace` is true, and in any case a folder where one of the names is
  // taken by a file that no earlier run lists.
  //   names  all files that will be added
  OutputFolder(const std::filesystem::path& place, std::vector<std::string> names, bool replace);
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;
  ~OutputFolder();

  // Stages a file.
  void Add(const std::string& name, const std::string& bytes);

  // Moves the staged files to their place and removes those of an earlier run that have no successor.
  void Commit();

 private:
  std::filesystem::path place_;
  std::filesystem::path staging_;
  bool exists_ = false;
  std::vector<std::string> names_;
  std::vector<std::string> earlier_;  // files of an earlier run that are in place_
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_OUTPUT_FOLDER_H
