// Writes files so that no half of one is ever seen.
#ifndef ORVANEL_FILES_NEW_FILE_H
#define ORVANEL_FILES_NEW_FILE_H

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "base/layers.h"

namespace orvanel::files {

// A name that begins with a path's and that nothing has.
std::filesystem::path UniqueName(const std::filesystem::path& beginning);

// What the name of a file ends in while ReplaceFile writes it.
constexpr const char* kPart = ".part";

// Writes a new file; the result is an error where something of this name is there, or where any of the bytes cannot be
// written, and then nothing of them stays.
std::error_code WriteNewFile(const std::filesystem::path& file, const std::string& bytes);

// Puts a file in its place, whole or not at all, whatever was there. For places where one run at a time writes: what a
// killed one has left of the file is removed first. Throws Error, also where the temporary name belongs to a link or
// anything else that is no plain file.
void ReplaceFile(const std::filesystem::path& file, const std::string& bytes);

// A file that comes to its place whole, or not at all: written beside it, and renamed by Commit.
class NewFile {
 public:
  // Throws Error where the place is taken, unless `replace`, or where nothing can be written.
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
