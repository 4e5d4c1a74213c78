// How cameras were held.
#include "cli/pictures/exif.h"

#include <gtest/gtest.h>

#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {
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

}  // namespace
}  // namespace orvanel::cli
