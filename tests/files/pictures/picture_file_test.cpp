// Tests every kind of picture that is read, and every one that is refused.
#include "files/pictures/picture_file.h"

#include <gtest/gtest.h>

#include <functional>

#include "base/error.h"
#include "files/pictures/png.h"
#include "tests/support/temporary_files.h"
#if ORVANEL_WITH_TIFF
#include "files/tiff_memory.h"
#endif

namespace orvanel::files {
namespace {

const std::filesystem::path kFiles = ORVANEL_PICTURES;

// The pixels of the shipped pictures, as make_files.py draws them.
int Red(int x, int y) { return 30 * x + 7 * y + 1; }
int Green(int, int y) { return 30 * y + 5; }
int Blue(int x, int) { return 200 - 20 * x; }
int Deep(int level) { return 251 * level + 17; }
int Wide(int level) { return 257 * level; }

void ExpectPixels(const std::string& name, int channels, int bits,
                  const std::function<std::vector<int>(int x, int y)>& pixel) {
  const DecodedPicture picture = ReadPictureFile((kFiles / name).string());
  ASSERT_EQ(picture.width, 7) << name;
  ASSERT_EQ(picture.height, 5) << name;
  ASSERT_EQ(picture.channels, channels) << name;
  EXPECT_EQ(picture.bits, bits) << name;
  ASSERT_EQ(picture.samples.size(), static_cast<std::size_t>(35 * channels)) << name;
  std::size_t i = 0;
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 7; ++x) {
      for (const int sample : pixel(x, y)) ASSERT_EQ(picture.samples[i++], sample) << name << " " << x << " " << y;
    }
  }
}

// Asserts that reading fails with a message "FILE: REASON".
void ExpectRefusal(const std::filesystem::path& file, const std::string& reason) {
  try {
    ReadPictureFile(file.string());
    ADD_FAILURE() << file << " was read";
  } catch (const Error& error) {
    EXPECT_EQ(error.what(), file.string() + ": " + reason);
  }
}

std::vector<int> ColourPixel(int x, int y) { return {Wide(Red(x, y)), Wide(Green(x, y)), Wide(Blue(x, y))}; }

TEST(PictureFile, ReadsPngOfEveryKind) {
  ExpectPixels("grey_8.png", 1, 8, [](int x, int y) { return std::vector<int>{Wide(Red(x, y))}; });
  ExpectPixels("grey_16.png", 1, 16, [](int x, int y) { return std::vector<int>{Deep(Red(x, y))}; });
  ExpectPixels("colour_8.png", 3, 8, ColourPixel);
  ExpectPixels("palette.png", 3, 8, ColourPixel);
  ExpectPixels("colour_16.png", 3, 16, [](int x, int y) {
    return std::vector<int>{Deep(Red(x, y)), Deep(Green(x, y)), Deep(Blue(x, y))};
  });
  ExpectPixels("opacity_8.png", 4, 8, [](int x, int y) {
    std::vector<int> pixel = ColourPixel(x, y);
    pixel.push_back(Wide(x < 2 ? 0 : x < 4 ? 128 : 255));
    return pixel;
  });
}

TEST(PictureFile, RefusesWhatIsNoPicture) {
  const TemporaryFolder folder;
  Write(folder / "empty.png", "");
  ExpectRefusal(folder / "empty.png", "is empty; save the picture again");
  ExpectRefusal(folder.path(), "is a directory; give a file");
  ExpectRefusal(folder / "absent.png", "cannot be read: No such file or directory");
  Write(folder / "text.png", "no picture\n");
  ExpectRefusal(folder / "text.png", "is not a PNG, JPEG or TIFF picture; save it as PNG");
}

#if !ORVANEL_WITH_JPEG
TEST(PictureFile, SaysThatItIsBuiltWithoutLibturbojpeg) {
  ExpectRefusal(kFiles / "held_1.jpg",
                "is a JPEG picture, and this program was built without libturbojpeg; save it as PNG");
}
#endif

#if !ORVANEL_WITH_TIFF
TEST(PictureFile, SaysThatItIsBuiltWithoutLibtiff) {
  ExpectRefusal(kFiles / "grey_16.tiff",
                "is a TIFF picture, and this program was built without libtiff; save it as PNG");
}
#endif

TEST(PictureFile, RefusesWhatIsCutShortOrDamaged) {
  const TemporaryFolder folder;
  std::string png = Read(kFiles / "colour_16.png");
  Write(folder / "cut.png", png.substr(0, png.size() / 2));
  ExpectRefusal(folder / "cut.png", "is a PNG picture that is cut short; copy it again from where it came");
  png[60] = static_cast<char>(png[60] ^ 1);
  Write(folder / "damaged.png", png);
  ExpectRefusal(folder / "damaged.png", "is a PNG picture that is damaged; copy it again from where it came");
}

// A PNG file of this size that says nothing about its pixels, with right check sums.
std::string BombHeader(const std::string& width, const std::string& height, const std::string& sum) {
  return std::string("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16) + width + height + std::string("\x08\0\0\0\0", 5) + sum +
         std::string("\0\0\0\0IEND\xae\x42\x60\x82", 12);
}

TEST(PictureFile, RefusesTooManyPixelsBeforeItDecodesThem) {
  const TemporaryFolder folder;
  const std::string tail = " pixels; at most 64 million are taken, and 32768 a side: scale it down, 256 x 256 are used";
  Write(folder / "square.png",
        BombHeader(std::string("\0\0\x27\x10", 4), std::string("\0\0\x27\x10", 4), "\x9f\x25\x3d\xfb"));
  ExpectRefusal(folder / "square.png", "has 10000 x 10000" + tail);
  Write(folder / "line.png",
        BombHeader(std::string("\0\0\x80\x01", 4), std::string("\0\0\0\x01", 4), "\x4d\x9f\xae\xca"));
  ExpectRefusal(folder / "line.png", "has 32769 x 1" + tail);
}

TEST(PictureFile, WholePicturesHaveUpTo4096PixelsASide) {
  const TemporaryFolder folder;
  const auto write = [&folder](int width, int height) {
    const GreyPicture picture{width, height,
                              std::vector<std::uint8_t>(static_cast<std::size_t>(width * height), std::uint8_t{51})};
    Write(folder / "picture.png", EncodePng(picture, Pixels::kNumbers));
    return PictureRequest{(folder / "picture.png").string(), Fit::kCrop, true};
  };
  const ObjectPicture wide = ReadWholePicture(write(4096, 2));
  ASSERT_EQ(wide.channels.size(), 1U);
  EXPECT_EQ(wide.channels[0].columns(), 4096);
  EXPECT_EQ(wide.channels[0].rows(), 2);
  EXPECT_NEAR(wide.channels[0].At(1, 4095), 0.2, 1e-12);
  for (const auto& [width, height] : {std::pair(4097, 1), std::pair(1, 4097)}) {
    const PictureRequest request = write(width, height);
    try {
      ReadWholePicture(request);
      ADD_FAILURE() << width;
    } catch (const Error& error) {
      EXPECT_EQ(error.what(), request.file + ": has " + std::to_string(width) + " x " + std::to_string(height) +
                                  " pixels; at most 4096 a side keep their size: scale it down, or leave out its "
                                  "angular size");
    }
  }
}

#if ORVANEL_WITH_JPEG
TEST(PictureFile, TurnsPhotographsUpright) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const DecodedPicture picture =
        ReadPictureFile((kFiles / ("held_" + std::to_string(orientation) + ".jpg")).string());
    ASSERT_EQ(picture.width, 48) << orientation;
    ASSERT_EQ(picture.height, 32) << orientation;
    const auto bright = [&picture](std::size_t x, std::size_t y, std::size_t channel) {
      return picture.samples[(y * 48 + x) * 3 + channel] > 32768;
    };
    EXPECT_TRUE(bright(8, 8, 0) && !bright(8, 8, 1) && !bright(8, 8, 2)) << orientation;      // red
    EXPECT_TRUE(!bright(40, 8, 0) && bright(40, 8, 1) && !bright(40, 8, 2)) << orientation;   // green
    EXPECT_TRUE(!bright(8, 24, 0) && !bright(8, 24, 1) && bright(8, 24, 2)) << orientation;   // blue
    EXPECT_TRUE(bright(40, 24, 0) && bright(40, 24, 1) && bright(40, 24, 2)) << orientation;  // white
  }
}

TEST(PictureFile, RefusesAPhotographCutShortAnywhere) {
  const TemporaryFolder folder;
  const std::string whole = Read(kFiles / "held_1.jpg");
  for (std::size_t size = 3; size < whole.size(); size += 7) {
    Write(folder / "cut.jpg", whole.substr(0, size));
    ExpectRefusal(
        folder / "cut.jpg",
        "is a JPEG picture that cannot be decoded: it is cut short, damaged or of a rare kind; save it as PNG");
  }
}
#endif

#if ORVANEL_WITH_TIFF
using Tags = std::vector<std::pair<std::uint32_t, int>>;

// A TIFF file of 2 x 1 pixels with these tags.
std::string Tiff(const Tags& tags, const std::vector<std::uint16_t>& row) {
  TiffMemory file;
  const TiffHandle tiff = OpenTiff(file, "w");
  TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, 2);
  TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, 1);
  for (const auto& [tag, value] : tags) TIFFSetField(tiff.get(), tag, value);
  std::vector<std::uint16_t> copy = row;
  TIFFWriteScanline(tiff.get(), copy.data(), 0, 0);
  TIFFFlush(tiff.get());
  return file.bytes;
}

const Tags kDeepColour = {{TIFFTAG_BITSPERSAMPLE, 16},
                          {TIFFTAG_SAMPLESPERPIXEL, 3},
                          {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB},
                          {TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG}};

TEST(PictureFile, ReadsTiffWithAllItsBits) {
  ExpectPixels("grey_16.tiff", 1, 16, [](int x, int y) { return std::vector<int>{Deep(Red(x, y))}; });
  ExpectPixels("colour_8.tiff", 3, 8, ColourPixel);
  const TemporaryFolder folder;
  const std::vector<std::uint16_t> row = {1, 20000, 65535, 777, 888, 30001};
  Write(folder / "deep.tiff", Tiff(kDeepColour, row));
  const DecodedPicture picture = ReadPictureFile((folder / "deep.tiff").string());
  EXPECT_EQ(picture.channels, 3);
  EXPECT_EQ(picture.bits, 16);
  EXPECT_EQ(picture.samples, row);
}

TEST(PictureFile, RefusesTiffThatWouldLoseSomething) {
  const TemporaryFolder folder;
  const std::string reason =
      "is a TIFF picture that cannot be decoded: it is cut short, damaged or of a rare kind; save it as PNG";
  Tags opacity = kDeepColour;
  opacity[1].second = 4;
  Write(folder / "opacity.tiff", Tiff(opacity, std::vector<std::uint16_t>(8)));
  ExpectRefusal(folder / "opacity.tiff", reason);
  Tags floats = kDeepColour;
  floats[0].second = 32;
  floats.emplace_back(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
  Write(folder / "floats.tiff", Tiff(floats, std::vector<std::uint16_t>(12)));
  ExpectRefusal(folder / "floats.tiff", reason);
  const std::string whole = Read(kFiles / "colour_8.tiff");
  Write(folder / "cut.tiff", whole.substr(0, whole.size() / 2));
  ExpectRefusal(folder / "cut.tiff", reason);
}

// Rows as the file stores them would show the picture mirrored or turned.
TEST(PictureFile, RefusesTiffOfSixteenBitsThatIsNotStoredUpright) {
  const TemporaryFolder folder;
  const std::vector<std::uint16_t> row = {1, 20000, 65535, 777, 888, 30001};
  for (int orientation = ORIENTATION_TOPLEFT; orientation <= ORIENTATION_LEFTBOT; ++orientation) {
    Tags tags = kDeepColour;
    tags.emplace_back(TIFFTAG_ORIENTATION, orientation);
    const std::filesystem::path file = folder / ("held_" + std::to_string(orientation) + ".tiff");
    Write(file, Tiff(tags, row));
    if (orientation == ORIENTATION_TOPLEFT) {
      EXPECT_EQ(ReadPictureFile(file.string()).samples, row);
    } else {
      ExpectRefusal(file,
                    "is a TIFF picture that cannot be decoded: it is cut short, damaged or of a rare kind; save "
                    "it as PNG");
    }
  }
}

// 16 x 16 grey pixels of 16 bits in one tile, which holds them in the order that rows would.
TEST(PictureFile, RefusesTiledTiffOfSixteenBits) {
  TiffMemory file;
  {
    const TiffHandle tiff = OpenTiff(file, "w");
    for (const int tag :
         {TIFFTAG_IMAGEWIDTH, TIFFTAG_IMAGELENGTH, TIFFTAG_TILEWIDTH, TIFFTAG_TILELENGTH, TIFFTAG_BITSPERSAMPLE}) {
      ASSERT_EQ(TIFFSetField(tiff.get(), static_cast<std::uint32_t>(tag), 16), 1);
    }
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    std::vector<std::uint16_t> tile(256, 4711);
    ASSERT_EQ(TIFFWriteTile(tiff.get(), tile.data(), 0, 0, 0, 0), 512);
    TIFFFlush(tiff.get());
  }
  const TemporaryFolder folder;
  Write(folder / "tiled.tiff", file.bytes);
  ExpectRefusal(folder / "tiled.tiff",
                "is a TIFF picture that cannot be decoded: it is cut short, damaged or of a rare kind; save it as PNG");
}
#endif

}  // namespace
}  // namespace orvanel::files
