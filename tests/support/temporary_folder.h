// Makes a folder that is removed after the test.
#ifndef ORVANEL_TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define ORVANEL_TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace orvanel::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("orvanel-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// A temporary folder as the current one.
class ScratchFolder : public TemporaryFolder {
 public:
  ScratchFolder() { std::filesystem::current_path(path()); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() { std::filesystem::current_path(before_); }

 private:
  const std::filesystem::path before_ = std::filesystem::current_path();
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_TEMPORARY_FOLDER_H
