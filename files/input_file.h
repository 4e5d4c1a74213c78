// Reads files, pipes and devices; a request to stop ends every wait for bytes.
#ifndef ORVANEL_FILES_INPUT_FILE_H
#define ORVANEL_FILES_INPUT_FILE_H

#include <cstdint>
#include <istream>
#include <memory>
#include <string>

#include "base/layers.h"

namespace orvanel::files {

// The name for standard input and standard output.
constexpr const char* kStandardStream = "-";

// A file's name in messages: "standard input" for "-".
std::string InputName(const std::string& file);

// A stream of bytes. Reading throws Interrupted after a request to stop, and Error with the reason if the bytes cannot
// be read. So a stream that ends without an exception is at its end.
class InputFile : public std::istream {
 public:
  // "-" is standard input. Throws Error with the reason. A pipe without a writer opens at once; the first read waits
  // for the writer.
  explicit InputFile(const std::string& file);
  // Takes ownership of an open descriptor.
  //   name  for messages
  InputFile(int descriptor, const std::string& name);
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() override;

  void Close();

  // Of all bytes read from the file so far, which may be more than were taken from the stream.
  std::uint64_t bytesRead() const;
  std::string hash() const;  // FNV-1a, in hexadecimal digits

 private:
  class Buffer;
  std::unique_ptr<Buffer> buffer_;
};

// All bytes of a file of at most `most` bytes; of a larger file a few more than `most`. Throws as InputFile does.
std::string ReadBytes(const std::string& file, std::size_t most);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_INPUT_FILE_H
