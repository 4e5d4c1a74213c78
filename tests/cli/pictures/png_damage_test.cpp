// Cut and damaged PNG files.
#include "cli/pictures/png_damage.h"

#include <gtest/gtest.h>

#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {
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

}  // namespace
}  // namespace orvanel::cli
