// The sector star where it is a bitmap among the resources of a Windows library.
#include <windows.h>

#include <cstddef>
#include <vector>

#include "interface/pattern_asset.h"
#include "orvanel/orvanel.h"

// The start of the library, or of the program, that this is linked into: its handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace orvanel {
namespace {

constexpr int kSide = ORVANEL_GRID_SIZE;
constexpr int kPixelBytes = 4;

HINSTANCE ThisModule() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

const char* StarName() { return MAKEINTRESOURCEA(1000); }

// A bitmap in the format of the screen.
class RenderedBitmap {
 public:
  RenderedBitmap() : handle_(LoadBitmapA(ThisModule(), StarName())) {}
  RenderedBitmap(const RenderedBitmap&) = delete;
  RenderedBitmap& operator=(const RenderedBitmap&) = delete;
  ~RenderedBitmap() {
    if (handle_ != nullptr) DeleteObject(handle_);
  }

  // Its pixels, top row first, blue first; none where they have not 32 bits.
  std::vector<unsigned char> Pixels() const {
    BITMAP bitmap{};
    if (handle_ == nullptr || GetObjectA(handle_, sizeof bitmap, &bitmap) == 0) return {};
    const bool expected = bitmap.bmWidth == kSide && bitmap.bmHeight == kSide && bitmap.bmPlanes == 1 &&
                          bitmap.bmBitsPixel == 8 * kPixelBytes && bitmap.bmWidthBytes == kSide * kPixelBytes;
    if (!expected) return {};
    std::vector<unsigned char> pixels(static_cast<std::size_t>(bitmap.bmWidthBytes) * kSide);
    const auto size = static_cast<LONG>(pixels.size());
    if (GetBitmapBits(handle_, size, pixels.data()) != size) return {};
    return pixels;
  }

 private:
  HBITMAP handle_;
};

}  // namespace

bool LoadRenderedPattern(double* pattern) {
  const std::vector<unsigned char> pixels = RenderedBitmap().Pixels();
  for (std::size_t k = 0; k < pixels.size() / kPixelBytes; ++k) pattern[k] = pixels[kPixelBytes * k] * kByteToUnit;
  return !pixels.empty();
}

void LoadPatternResource(double* pattern) {
  const HRSRC resource = FindResourceA(ThisModule(), StarName(), MAKEINTRESOURCEA(2));  // a bitmap
  DecodeBitmap(static_cast<const unsigned char*>(LockResource(LoadResource(ThisModule(), resource))), pattern);
}

void LoadPatternAsset(double* pattern) {
  if (!LoadRenderedPattern(pattern)) LoadPatternResource(pattern);
}

}  // namespace orvanel
