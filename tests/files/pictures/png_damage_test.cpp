// Tests truncated and damaged PNG files.
#include "files/pictures/png_damage.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <vector>

#include "base/error.h"
#include "files/pictures/picture_file.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

const std::filesystem::path kFiles = ORVANEL_PICTURES;

TEST(PngDamage, WholeFilesAreWell) {
  for (const auto& entry : std::filesystem::directory_iterator(kFiles)) {
    if (entry.path().extension() != ".png") continue;
    EXPECT_EQ(DamageOfPng(Read(entry.path())), "") << entry.path();
  }
}

TEST(PngDamage, APngFileCutAnywhereIsCutShort) {
  const std::string bytes = Read(kFiles / "colour_8.png");
  for (std::size_t size = 8; size < bytes.size(); ++size) {
    ASSERT_EQ(DamageOfPng(bytes.substr(0, size)), "is cut short") << size;
  }
}

TEST(PngDamage, APngFileWithAnyByteOfADataChangedIsNotWell) {
  const std::string bytes = Read(kFiles / "colour_8.png");
  for (std::size_t i = 8; i < bytes.size(); ++i) {
    std::string changed = bytes;
    changed[i] = static_cast<char>(changed[i] ^ 4);
    ASSERT_NE(DamageOfPng(changed), "") << i;
  }
}

std::string BigEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xff);
  return bytes;
}

std::string Chunk(const std::string& letters, const std::string& data) {
  const std::string summed = letters + data;
  const uLong sum = crc32_z(0, reinterpret_cast<const Bytef*>(summed.data()), summed.size());
  return BigEndian(static_cast<std::uint32_t>(data.size())) + summed + BigEndian(static_cast<std::uint32_t>(sum));
}

struct Header {
  std::uint32_t width = 1, height = 1;
  int bits = 8, colour = 0, interlace = 0;
};

// A whole file whose data inflate to so many zeros; they stand in chunks of at most `piece` bytes.
std::string PngOfZeros(const Header& header, std::size_t zeros, std::size_t piece = std::size_t{1} << 30) {
  std::string data(compressBound(static_cast<uLong>(zeros)), '\0');
  uLongf size = static_cast<uLongf>(data.size());
  const std::vector<Bytef> plain(zeros);
  compress(reinterpret_cast<Bytef*>(data.data()), &size, plain.data(), static_cast<uLong>(zeros));
  data.resize(size);
  std::string file = "\x89PNG\r\n\x1a\n";
  const std::string rest = {static_cast<char>(header.bits), static_cast<char>(header.colour), 0, 0,
                            static_cast<char>(header.interlace)};
  file += Chunk("IHDR", BigEndian(header.width) + BigEndian(header.height) + rest);
  for (std::size_t at = 0; at < data.size(); at += piece) file += Chunk("IDAT", data.substr(at, piece));
  return file + Chunk("IEND", "");
}

TEST(PngDamage, DataMayHaveTheBytesThatTheHeaderAllowsAndNoMore) {
  struct Case {
    Header header;
    std::size_t bytes;
  };
  // Rows begin with the byte of their filter. The passes of Adam7 over 5 x 3 pixels have 1 x 1, 1 x 1, none, 1 x 1,
  // 3 x 1, 2 x 2 and 5 x 1 pixels.
  const Case cases[] = {{{1, 1, 8, 0, 0}, 2},          {{7, 5, 8, 2, 0}, 5 * 22}, {{7, 5, 16, 6, 0}, 5 * 57},
                        {{7, 5, 16, 4, 0}, 5 * 29},    {{9, 4, 1, 0, 0}, 4 * 3},  {{9, 4, 2, 3, 0}, 4 * 4},
                        {{300, 200, 8, 2, 0}, 180200}, {{5, 3, 8, 0, 1}, 7 + 15}};
  for (const auto& [header, bytes] : cases) {
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{1} << 20}) {
      EXPECT_FALSE(PngHoldsTooMuch(PngOfZeros(header, bytes, piece))) << bytes << " " << piece;
      EXPECT_TRUE(PngHoldsTooMuch(PngOfZeros(header, bytes + 1, piece))) << bytes << " " << piece;
    }
  }
}

TEST(PngDamage, WholeFilesHoldNoMoreThanTheySay) {
  for (const auto& entry : std::filesystem::directory_iterator(kFiles)) {
    if (entry.path().extension() != ".png") continue;
    EXPECT_FALSE(PngHoldsTooMuch(Read(entry.path()))) << entry.path();
  }
}

TEST(PngDamage, APixelWithAHundredMegabytesIsNoPicture) {
  const std::string file = PngOfZeros({}, std::size_t{100} << 20);
  EXPECT_EQ(DamageOfPng(file), "");
  EXPECT_TRUE(PngHoldsTooMuch(file));
  const TemporaryFolder folder;
  Write(folder / "large.png", file);
  try {
    ReadPictureFile((folder / "large.png").string());
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.what(), (folder / "large.png").string() +
                                ": is a PNG picture whose data are more than its size in pixels allows; save it again");
  }
}

}  // namespace
}  // namespace orvanel::files
