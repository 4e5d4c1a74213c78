// Writes TIFF to memory through libtiff.
#include "files/planes/tiff.h"

#include <tiffio.h>

#include <algorithm>

#include "base/error.h"
#include "base/number_text.h"
#include "files/tiff_memory.h"
#include "orvanel/orvanel.h"

namespace orvanel::files {
namespace {

void Require(bool good) {
  if (!good) throw Error("cannot make a TIFF file: libtiff refuses");
}

std::string Description(const NamedPlane& plane) {
  std::string text = plane.name + ": " + plane.description + "\nunit: " + plane.unit;
  for (const Fact& fact : plane.spacings) text += "\n" + fact.name + ": " + ShortestText(std::get<double>(fact.value));
  for (const Fact& fact : plane.view) text += "\n" + fact.name + ": " + std::get<std::string>(fact.value);
  return text;
}

void WriteTags(TIFF* tiff, const NamedPlane& plane) {
  const auto width = static_cast<std::uint32_t>(plane.samples->columns());
  const auto height = static_cast<std::uint32_t>(plane.samples->rows());
  Require(TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width) && TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height) &&
          TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, height) && TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 32) &&
          TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1) &&
          TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP) &&
          TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK) &&
          TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
          TIFFSetField(tiff, TIFFTAG_SOFTWARE, "orvanel " ORVANEL_VERSION) &&
          TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, Description(plane).c_str()));
  if (plane.samplesPerCm <= 0.0) return;
  Require(TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_CENTIMETER) &&
          TIFFSetField(tiff, TIFFTAG_XRESOLUTION, plane.samplesPerCm) &&
          TIFFSetField(tiff, TIFFTAG_YRESOLUTION, plane.samplesPerCm));
}

}  // namespace

std::string EncodeTiff(const PlaneSet& set) {
  const NamedPlane& plane = set.planes.at(0);
  TiffMemory file;
  {
    const TiffHandle tiff = OpenTiff(file, "wl");  // little-endian everywhere
    Require(tiff != nullptr);
    WriteTags(tiff.get(), plane);
    const Plane& samples = *plane.samples;
    std::vector<float> row(static_cast<std::size_t>(samples.columns()));
    for (int r = 0; r < samples.rows(); ++r) {
      const auto first = samples.begin() + static_cast<std::ptrdiff_t>(r) * samples.columns();
      std::transform(first, first + samples.columns(), row.begin(), [](double v) { return static_cast<float>(v); });
      Require(TIFFWriteScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(r), 0) == 1);
    }
    Require(TIFFFlush(tiff.get()) == 1);
  }
  return file.bytes;
}

}  // namespace orvanel::files
