// Reads only the ends of files, which is enough to detect a truncated file.
#include "cli/batch/whole_files.h"

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

// So many bytes at a position of a plain file; fewer or none if they do not exist.
std::string BytesAt(const fs::path& file, std::uintmax_t place, std::size_t count) {
  std::string bytes(count, '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(place));
  stream.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return bytes;
}

// 0 if it is not a plain file.
std::uintmax_t SizeOf(const fs::path& file) {
  std::error_code failure;
  if (!fs::is_regular_file(file, failure)) return 0;
  const std::uintmax_t size = fs::file_size(file, failure);
  return failure ? 0 : size;
}

}  // namespace

bool IsWholePng(const fs::path& file) {
  using std::string_view_literals::operator""sv;
  constexpr std::string_view kEnd = "\0\0\0\0IEND\xAE\x42\x60\x82"sv;
  const std::uintmax_t size = SizeOf(file);
  return size > kEnd.size() && BytesAt(file, size - kEnd.size(), kEnd.size()) == kEnd;
}

bool IsWholeHdf5(const fs::path& file) {
  using std::string_view_literals::operator""sv;
  constexpr std::string_view kBeginning = "\x89HDF\r\n\x1A\n\0"sv;  // including the version
  constexpr std::size_t kPlaceOfEnd = 40, kHead = 48;
  const std::string head = BytesAt(file, 0, kHead);
  if (head.size() < kHead || !head.starts_with(kBeginning)) return false;
  std::uint64_t end = 0;  // little-endian
  for (std::size_t i = kHead; i > kPlaceOfEnd; --i) end = end << 8U | static_cast<unsigned char>(head[i - 1]);
  return SizeOf(file) == end;
}

}  // namespace orvanel::cli
