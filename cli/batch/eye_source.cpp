// Reads tables row by row, and eye files whole.
#include "cli/batch/eye_source.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "base/fnv1a.h"
#include "files/eyes/eye_file.h"
#include "files/input_file.h"
#include "files/interruption.h"
#include "files/path_of.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

// Removes the name of the file from the beginning of a message about an eye file.
UnreadableEye Unreadable(const std::string& file, const std::string& message) {
  const std::string name = file + ": ";
  return UnreadableEye(message.starts_with(name) ? message.substr(name.size()) : message);
}

// Throws UnreadableEye.
std::string BytesOf(const std::string& file) {
  std::error_code ignored;
  const fs::file_status status = fs::status(PathOf(file), ignored);
  if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)) {
    throw UnreadableEye("is a pipe or a device, which cannot be read twice; give a file");
  }
  try {
    return ReadEyeBytes(file);
  } catch (const Interrupted&) {
    throw;
  } catch (const Error& error) {
    throw Unreadable(file, error.what());
  }
}

std::string HashOfBytes(const std::string& bytes) {
  Fnv1a hash;
  hash.Add(bytes);
  return hash.Text();
}

std::string HashIfReadable(const std::string& file) {
  try {
    return HashOfBytes(BytesOf(file));
  } catch (const UnreadableEye&) {
    return "";
  }
}

}  // namespace

struct EyeSource::Table {
  Table(const std::string& name, TableKind kind, const PartialConvention& stated, TableOptions options)
      : stream(name), rows(stream, InputName(name), kind, stated, options) {
    std::error_code failure;
    if (name == kStandardStream || !fs::is_regular_file(PathOf(name), failure)) return;
    const std::uintmax_t bytes = fs::file_size(PathOf(name), failure);
    if (!failure && bytes > 0) size = static_cast<double>(bytes);
  }

  InputFile stream;
  EyeTable rows;
  std::optional<double> size;  // bytes
};

EyeSource::EyeSource(const std::string& table, TableKind kind, const PartialConvention& stated, TableOptions options)
    : table_(std::make_unique<Table>(table, kind, stated, options)) {}

EyeSource::EyeSource(const std::vector<std::string>& files, PartialConvention stated) : stated_(std::move(stated)) {
  for (const std::string& file : files) files_.push_back({file, HashIfReadable(file)});
}

EyeSource::~EyeSource() = default;

bool EyeSource::Next(TableEye& eye) { return table_ ? table_->rows.Next(eye) : NextFile(eye); }

bool EyeSource::NextFile(TableEye& eye) {
  if (next_ == files_.size()) return false;
  auto& [name, hash] = files_[next_++];
  eye = {};
  eye.identifiers = {name};
  std::string bytes;
  try {
    bytes = BytesOf(name);
  } catch (const UnreadableEye&) {
    hash.clear();
    throw;
  }
  if (HashOfBytes(bytes) != hash) throw Error(name + ": was changed after the batch began; start over with --force");
  try {
    eye.eye = EyeOfBytes(name, std::move(bytes), stated_);
  } catch (const ErrorAt&) {
    throw;
  } catch (const Error& error) {
    throw Unreadable(name, error.what());
  }
  return true;
}

bool EyeSource::Skip() {
  if (table_) return table_->rows.Skip();
  if (next_ == files_.size()) return false;
  ++next_;
  return true;
}

const std::vector<std::string>& EyeSource::identifierNames() const {
  static const std::vector<std::string> kFile = {"file"};
  return table_ ? table_->rows.identifierNames() : kFile;
}

std::string EyeSource::Summary() const { return table_ ? table_->rows.Summary() : ""; }

std::optional<double> EyeSource::Share() const {
  if (!table_) return static_cast<double>(next_) / static_cast<double>(files_.size());
  if (!table_->size) return std::nullopt;
  return static_cast<double>(table_->rows.bytesTaken()) / *table_->size;
}

std::string EyeSource::tableHash() const { return table_ ? table_->stream.hash() : ""; }

}  // namespace orvanel::cli
