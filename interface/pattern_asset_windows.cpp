// Reads the sector star from a bitmap among the resources of a Windows library.
#include <windows.h>

#include <cstddef>
#include <memory>

#include "interface/pattern_asset.h"
#include "optics/samples_memory.h"
#include "orvanel/orvanel.h"
#include "targets/bitmap.h"

// The start of the library, or of the program, that this is linked into: its handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace orvanel {
namespace {

constexpr int kSide = ORVANEL_GRID_SIZE;
constexpr int kPixelBytes = 4;
constexpr LONG kBytes = kSide * kSide * kPixelBytes;

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

  // Writes its pixels, top row first, blue first, to kBytes bytes; false if they do not have 32 bits.
  bool CopyTo(unsigned char* pixels) const {
    BITMAP bitmap{};
    if (handle_ == nullptr || GetObjectA(handle_, sizeof bitmap, &bitmap) == 0) return false;
    const bool expected = bitmap.bmWidth == kSide && bitmap.bmHeight == kSide && bitmap.bmPlanes == 1 &&
                          bitmap.bmBitsPixel == 8 * kPixelBytes && bitmap.bmWidthBytes == kSide * kPixelBytes;
    return expected && GetBitmapBits(handle_, kBytes, pixels) == kBytes;
  }

 private:
  HBITMAP handle_;
};

}  // namespace

bool LoadRenderedPattern(double* pattern) {
  const std::unique_ptr<void, decltype(&GiveBack)> memory(TakeMemory(kBytes, kCacheLine), GiveBack);
  auto* const pixels = static_cast<unsigned char*>(memory.get());
  if (pixels == nullptr || !RenderedBitmap().CopyTo(pixels)) return false;
  for (std::size_t k = 0; k < kBytes / kPixelBytes; ++k) pattern[k] = pixels[kPixelBytes * k] * targets::kByteToUnit;
  return true;
}

void LoadPatternResource(double* pattern) {
  const HRSRC resource = FindResourceA(ThisModule(), StarName(), MAKEINTRESOURCEA(2));  // a bitmap
  targets::DecodeBitmap(static_cast<const unsigned char*>(LockResource(LoadResource(ThisModule(), resource))), pattern);
}

void LoadPatternAsset(double* pattern) {
  if (!LoadRenderedPattern(pattern)) LoadPatternResource(pattern);
}

}  // namespace orvanel
