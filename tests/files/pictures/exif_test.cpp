// Tests the orientation of pictures in EXIF data.
#include "files/pictures/exif.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

const std::filesystem::path kFiles = ORVANEL_PICTURES;

TEST(Exif, ReadsHowTheCameraWasHeld) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    EXPECT_EQ(OrientationOfJpeg(Read(kFiles / ("held_" + std::to_string(orientation) + ".jpg"))), orientation);
  }
}

TEST(Exif, CutExifDataGivesNoOrientationAndNoOverrun) {
  const std::string bytes = Read(kFiles / "held_6.jpg");
  for (std::size_t size = 3; size < bytes.size(); ++size) {
    const int orientation = OrientationOfJpeg(bytes.substr(0, size));
    EXPECT_TRUE(orientation == 1 || orientation == 6);
  }
  std::string shortened(
      "\xff\xd8\xff\xe1\x00\x0d"
      "Exif\0\0II*\0\x08",
      17);  // its directory lies behind its end
  shortened += std::string("\xff\xda\x00\x02\xff\xd9", 6);
  EXPECT_EQ(OrientationOfJpeg(shortened), 1);
}

// A JPEG file with these Exif data, and behind them the segment of a comment.
std::string JpegWith(const std::string& exif, const std::string& comment) {
  const auto segment = [](char marker, const std::string& data) {
    const std::size_t length = data.size() + 2;
    return std::string{'\xff', marker, static_cast<char>(length >> 8), static_cast<char>(length & 0xff)} + data;
  };
  return "\xff\xd8" + segment('\xe1', std::string("Exif\0\0", 6) + exif) + segment('\xfe', comment) +
         std::string("\xff\xda\x00\x02\xff\xd9", 6);
}

const std::string kHeader("MM\0*\0\0\0\x08", 8);                     // the directory follows
const std::string kSixth("\x01\x12\0\x03\0\0\0\x01\0\x06\0\0", 12);  // an entry: orientation 6
const std::string kOther("\x01\x0f\0\x03\0\0\0\x01\0\x05\0\0", 12);  // an entry of another tag
std::string Count(char entries) { return {'\0', entries}; }

TEST(Exif, TheLastEntryMayEndWithTheData) {
  EXPECT_EQ(OrientationOfJpeg(JpegWith(kHeader + Count(1) + kSixth, "")), 6);
  EXPECT_EQ(OrientationOfJpeg(JpegWith(kHeader + Count(2) + kOther + kSixth, "")), 6);
}

// The first ten bytes of an entry have its value; an entry is there only with all its twelve.
TEST(Exif, AnEntryThatIsCutShortIsNotThere) {
  for (std::size_t missing = 1; missing <= 12; ++missing) {
    const std::string cut = kOther + kSixth.substr(0, 12 - missing);
    EXPECT_EQ(OrientationOfJpeg(JpegWith(kHeader + Count(2) + cut, kSixth)), 1) << missing;
  }
}

// What follows the data in the file is none of theirs, wherever they say that their directory lies.
TEST(Exif, ADirectoryBehindTheDataIsNotThere) {
  const std::string far = std::string(64, '\x3f');  // as a place of the directory, a gigabyte away
  for (const std::string& exif :
       {std::string(), std::string("M"), std::string("MM"), kHeader.substr(0, 7), kHeader, kHeader + '\0',
        kHeader + Count(0), kHeader.substr(0, 4) + "\x3f\x3f\x3f\x3f" + Count(1) + kSixth}) {
    EXPECT_EQ(OrientationOfJpeg(JpegWith(exif, far)), 1) << exif.size();
    EXPECT_EQ(OrientationOfJpeg(JpegWith(exif, kSixth)), 1) << exif.size();
    // Memory that ends with the data, for the address sanitizer.
    const std::string jpeg = JpegWith(exif, "");
    const std::vector<char> exact(jpeg.begin(), jpeg.end() - 10);
    EXPECT_EQ(OrientationOfJpeg({exact.data(), exact.size()}), 1) << exif.size();
  }
}

}  // namespace
}  // namespace orvanel::files
