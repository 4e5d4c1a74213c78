// Reads through descriptors, since a stream of the standard library continues to wait after a signal.
#include "files/input_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <streambuf>
#include <system_error>
#include <utility>
#include <vector>

#include "base/error.h"
#include "base/fnv1a.h"
#include "files/interruption.h"
#include "files/path_of.h"
#include "files/platform.h"

namespace orvanel::files {
namespace {

int Opened(const std::string& file) {
  if (file == kStandardStream) {
    const int descriptor = StandardInput();
    if (descriptor == -1) throw Error(InputName(file) + ": cannot be read: " + std::strerror(errno));
    return descriptor;
  }
  std::error_code ignored;  // opening reports the error
  if (std::filesystem::is_directory(PathOf(file), ignored)) throw Error(file + ": is a directory; give a file");
  const int descriptor = OpenForReading(PathOf(file));
  if (descriptor == -1) throw Error(file + ": cannot be read: " + std::strerror(errno));
  return descriptor;
}

}  // namespace

std::string InputName(const std::string& file) { return file == kStandardStream ? "standard input" : file; }

class InputFile::Buffer : public std::streambuf {
 public:
  Buffer(int descriptor, std::string name) : descriptor_(descriptor), name_(std::move(name)), block_(1 << 16) {}
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  ~Buffer() override { Release(); }

  void Release() {
    if (descriptor_ != -1) files::Close(std::exchange(descriptor_, -1));
  }

  std::uint64_t bytesRead() const { return bytesRead_; }
  const Fnv1a& hash() const { return hash_; }

 protected:
  int_type underflow() override {
    const int count = Next();
    if (count == 0) return traits_type::eof();
    bytesRead_ += static_cast<std::uint64_t>(count);
    hash_.Add({block_.data(), static_cast<std::size_t>(count)});
    setg(block_.data(), block_.data(), block_.data() + count);
    return traits_type::to_int_type(block_[0]);
  }

 private:
  int Next() const {
    for (;;) {
      const bool ready = WaitForInput(descriptor_);
      const int count = ready ? ReadSome(descriptor_, block_.data(), block_.size()) : -1;
      const int reason = errno;
      StopIfInterrupted();
      if (count >= 0) return count;
      if (reason != EINTR && reason != EAGAIN) throw Error(name_ + ": cannot be read: " + std::strerror(reason));
    }
  }

  int descriptor_;
  std::string name_;
  mutable std::vector<char> block_;
  std::uint64_t bytesRead_ = 0;
  Fnv1a hash_;
};

InputFile::InputFile(const std::string& file) : InputFile(Opened(file), InputName(file)) {}

InputFile::InputFile(int descriptor, const std::string& name)
    : std::istream(nullptr), buffer_(std::make_unique<Buffer>(descriptor, name)) {
  rdbuf(buffer_.get());
  exceptions(std::ios::badbit);  // rethrows exceptions of reading
}

InputFile::~InputFile() = default;

void InputFile::Close() { buffer_->Release(); }

std::uint64_t InputFile::bytesRead() const { return buffer_->bytesRead(); }

std::string InputFile::hash() const { return buffer_->hash().Text(); }

std::string ReadBytes(const std::string& file, std::size_t most) {
  InputFile stream(file);
  std::string bytes, piece(1 << 16, '\0');
  do {
    stream.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    bytes.append(piece, 0, static_cast<std::size_t>(stream.gcount()));
  } while (stream && bytes.size() <= most);
  return bytes;
}

}  // namespace orvanel::files
