// Writes files atomically: a file is complete or does not exist.
#ifndef ORVANEL_FILES_NEW_FILE_H
#define ORVANEL_FILES_NEW_FILE_H

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "base/layers.h"

namespace orvanel::files {

// An unused name that begins with the name of the path.
std::filesystem::path UniqueName(const std::filesystem::path& beginning);

// The ending of a file's name while ReplaceFile writes it.
constexpr const char* kPart = ".part";

// Writes a new file. The result is an error if the name exists already or if any byte cannot be written. Then no
// partial file is left.
std::error_code WriteNewFile(const std::filesystem::path& file, const std::string& bytes);

// Replaces a file atomically. For places where one run at a time writes: a partial file of a killed run is removed
// first. Throws Error, also if the temporary name belongs to a link or to anything else that is not a plain file.
void ReplaceFile(const std::filesystem::path& file, const std::string& bytes);

// A file that is written beside its place and renamed by Commit, so that it is complete or does not exist.
class NewFile {
 public:
  // Throws Error if the name exists, unless `replace`, or if the file cannot be written.
  NewFile(std::string file, bool replace);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  void Write(const std::string& text);
  void Commit();

 private:
  [[noreturn]] void Refuse(const std::string& reason) const;

  std::string file_;
  std::filesystem::path staged_;
  std::unique_ptr<std::FILE, decltype(&std::fclose)> stream_{nullptr, &std::fclose};
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_NEW_FILE_H
