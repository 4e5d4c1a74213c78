// Runs the portable stages one after the other.
#include "optics/pipeline/portable_pipeline.h"

#include <algorithm>
#include <cmath>

#include "base/elementary.h"
#include "optics/psf.h"
#include "optics/retinal_image.h"
#include "orvanel/ring.h"
#include "orvanel/transforms.h"

namespace orvanel {
namespace {

// contract: the transform of the MTF takes the lines of every grid for lines of 2^8 samples.
constexpr int kLog2OfMtf = 8;

double Modulus(double re, double im) { return std::sqrt(re * re + im * im); }

void CopyPlane(ConstPlaneView from, PlaneView to) { StoreAll(to.samples, from.samples, from.size()); }

}  // namespace

PortablePipeline::PortablePipeline(int side, double* memory, std::uint64_t pitch)
    : Pipeline(side),
      field_{{memory, side}, {memory + pitch, side}},
      spare_{memory + 2 * pitch, side},
      intensity_{memory + 3 * pitch, side} {
  std::fill(intensity_.begin(), intensity_.end(), 0.0);
}

void PortablePipeline::Synthesize(const SelectedTerms& terms, PlaneView wavefront) {
  SynthesizeWavefront(terms, wavefront);
}

void PortablePipeline::WriteIntensity(ConstPlaneView wavefront, double wavelength, PlaneView intensity) {
  PupilFunction(wavefront, wavelength, field_);
  Transform(field_, 0);
  ShiftedPowerSpectrum(intensity.samples, field_.re.samples, field_.im.samples, side());
}

double PortablePipeline::FormPsf(ConstPlaneView wavefront, double wavelength) {
  WriteIntensity(wavefront, wavelength, intensity_);
  const Peak peak = FindPeak(intensity_);
  if (peak.value > 0.0) {
    RecentrePlane(intensity_, peak.row, peak.column);
    scale_ = 1.0 / peak.value;
  } else {
    std::fill(intensity_.begin(), intensity_.end(), 0.0);  // it may hold NaN
    scale_ = 0.0;
  }
  return peak.value;
}

double PortablePipeline::PeakIntensity(ConstPlaneView wavefront, double wavelength) {
  WriteIntensity(wavefront, wavelength, spare_);
  return FindPeak(spare_).value;
}

void PortablePipeline::WritePsf(PlaneView psf) const {
  for (std::size_t i = 0; i < psf.size(); ++i) Store(psf.samples, i, scale_ * intensity_[i]);
}

PsfPeak PortablePipeline::PeakBetweenSamples() const { return {1.0, 0.0, 0.0}; }

void PortablePipeline::FormMtf() {
  WritePsf(field_.re);
  std::fill(field_.im.begin(), field_.im.end(), 0.0);
  CentredTransform(field_, 1, kLog2OfMtf);
}

void PortablePipeline::WriteMtf(PlaneView mtf) const {
  const int n = side();
  const double zeroFrequency = Modulus(field_.re(n / 2, n / 2), field_.im(n / 2, n / 2));
  for (std::size_t i = 0; i < mtf.size(); ++i) {
    Store(mtf.samples, i, Modulus(field_.re[i], field_.im[i]) / zeroFrequency);
  }
}

void PortablePipeline::WritePhase(PlaneView phase) const {
  for (std::size_t i = 0; i < phase.size(); ++i) {
    Store(phase.samples, i, ArcTangent2(field_.im[i], field_.re[i]));
  }
}

void PortablePipeline::FormOtf() {
  WritePsf(field_.re);
  FormOtf(field_.re);
}

void PortablePipeline::FormOtf(ConstPlaneView psf) {
  if (psf.samples != field_.re.samples) CopyPlane(psf, field_.re);
  std::fill(field_.im.begin(), field_.im.end(), 0.0);
  Transform(field_, 0);
}

void PortablePipeline::WriteOtfReal(PlaneView re) const { CopyPlane(field_.re, re); }

void PortablePipeline::WriteOtfImag(PlaneView im) const { CopyPlane(field_.im, im); }

void PortablePipeline::RealImage(ConstPlaneView object, const std::optional<ConstComplexView>& otf,
                                 const Brightness& brightness, PlaneView image) {
  Brightness own = brightness;
  const double total = Prepare(object, field_.re, field_.im);
  if (!own.total) own.total = total;
  ImageOfSpectrum(field_, otf.value(), own, image);
}

double PortablePipeline::Prepare(ConstPlaneView object, PlaneView first, PlaneView second) {
  CopyPlane(object, first);
  std::fill(second.begin(), second.end(), 0.0);
  const double total = Total(first);
  Transform({first, second}, 0);
  return total;
}

void PortablePipeline::PreparedImage(ConstPlaneView first, ConstPlaneView second,
                                     const std::optional<ConstComplexView>& otf, const Brightness& brightness,
                                     PlaneView image) {
  CopyPlane(first, field_.re);
  CopyPlane(second, field_.im);
  ImageOfSpectrum(field_, otf.value(), brightness, image);
}

void PortablePipeline::Transform(ComplexView planes, int direction) {
  Fft2(planes.re.samples, planes.im.samples, side(), direction);
}

void PortablePipeline::CentredTransform(ComplexView planes, int direction, int log2n) {
  CentredFft2(planes.re.samples, planes.im.samples, direction, side(), log2n);
}

void PortablePipeline::DrawRing(PlaneView plane, int diameter, int gapDirection) const {
  orvanel::DrawRing(plane.samples, plane.side, diameter, gapDirection);
}

}  // namespace orvanel
