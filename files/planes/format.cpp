// Looks up formats in the table.
#include "files/planes/format.h"

#include "base/error.h"
#include "files/planes/csv.h"
#include "files/planes/hdf5.h"
#include "files/planes/mat.h"
#include "files/planes/npy.h"
#include "files/planes/png16.h"
#include "files/planes/tiff.h"

namespace orvanel::files {
namespace {

#if !ORVANEL_WITH_TIFF
constexpr auto EncodeTiff = nullptr;
#endif
#if !ORVANEL_WITH_MAT
constexpr auto EncodeMat = nullptr;
#endif
#if !ORVANEL_WITH_HDF5
constexpr auto EncodeHdf5 = nullptr;
#endif

constexpr bool kTogether = true, kGreyOnly = true;

constexpr Format kFormats[] = {
    {"npy", ".npy", !kTogether, !kGreyOnly, "", EncodeNpy},
    {"csv", ".csv", !kTogether, !kGreyOnly, "", EncodeCsv},
    {"png16", "_16bit.png", !kTogether, kGreyOnly, "", EncodePng16},
    {"tiff", ".tiff", !kTogether, !kGreyOnly, "libtiff", EncodeTiff},
    {"mat", "planes.mat", kTogether, !kGreyOnly, "libmatio", EncodeMat},
    {"hdf5", "planes.h5", kTogether, !kGreyOnly, "libhdf5", EncodeHdf5},
};

std::string NamesOfThoseBuilt() {
  std::string names = std::string(kPictures) + ", " + kVectors;
  for (const Format& format : kFormats) {
    if (format.encode != nullptr) names += ", " + std::string(format.name);
  }
  return names;
}

}  // namespace

std::span<const Format> Formats() { return kFormats; }

const Format& FormatNamed(std::string_view name) {
  for (const Format& format : kFormats) {
    if (format.name != name) continue;
    if (format.encode != nullptr) return format;
    throw Error("this program was built without " + std::string(format.library) + " and cannot write '" +
                std::string(name) + "'; choose among " + NamesOfThoseBuilt() + ", or build it again with that library");
  }
  throw Error("'" + std::string(name) + "' is not one of " + NamesOfThoseBuilt());
}

}  // namespace orvanel::files
