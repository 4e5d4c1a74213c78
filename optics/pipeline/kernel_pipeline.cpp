// Runs the vector kernels of the 256 grid.
#include "optics/pipeline/kernel_pipeline.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "optics/kernels/tables.h"
#include "optics/psf.h"
#include "optics/psf_peak.h"
#include "optics/ring.h"
#include "orvanel/transforms.h"

namespace orvanel {
namespace {

static_assert(sizeof(KernelMemory) % sizeof(double) == 0);
static_assert(kPlaneBytes % 64 == 0 && kLinesBytes % 64 == 0 && kIntensityPitch % 8 == 0);  // all begin a cache line
static_assert(sizeof(HalfSpectrum) >= sizeof(double) * kKernelGrid * kKernelGrid);          // the spare plane

constexpr int kLog2OfGrid = 8;
constexpr int kSpectrumSide = 268;  // of a plane with room for a half spectrum
static_assert(sizeof(double) * kSpectrumSide * kSpectrumSide >= sizeof(HalfSpectrum));

HalfSpectrum& SpectrumIn(PlaneView plane) { return *reinterpret_cast<HalfSpectrum*>(plane.samples); }
const HalfSpectrum& SpectrumIn(ConstPlaneView plane) { return *reinterpret_cast<const HalfSpectrum*>(plane.samples); }

// The square of the scale 1/n^2 of the field, which the kernels do not apply.
constexpr double kIntensityScale = 1.0 / (1.0 * kKernelGrid * kKernelGrid * kKernelGrid * kKernelGrid);

// The brightest sample of an intensity with zero frequency at (0, 0): the first in the order of the plane that has zero
// frequency at the centre. (0, 0) with value 0 if no sample is above 0.
Peak FindPeak(const double* intensity, const double* rowMaxima) {
  constexpr int half = kKernelGrid / 2;
  Peak peak{0.0, 0, 0};
  for (int r = 0; r < kKernelGrid; ++r) {
    const int row = (r + half) % kKernelGrid;
    if (rowMaxima[row] > peak.value) peak = {rowMaxima[row], row, 0};
  }
  if (peak.value > 0.0) {
    const double* const samples = intensity + peak.row * kIntensityPitch;
    int c = 0;
    // The row has this sample, unless another thread of the host has started an eye in the meantime.
    while (c < kKernelGrid - 1 && samples[(c + half) % kKernelGrid] != peak.value) ++c;
    peak.column = (c + half) % kKernelGrid;
  }
  return peak;
}

}  // namespace

KernelPipeline::KernelPipeline(const Kernels& kernels, KernelMemory& memory)
    : Pipeline(kKernelGrid),
      kernels_(kernels),
      tables_(TransformTables()),
      memory_(memory),
      scratch_{memory.plane, memory.lines},
      psf_{memory.intensity, 0.0, 0, 0} {
  // Zero before the first PSF.
  std::fill(std::begin(memory_.intensity), std::end(memory_.intensity), 0.0);
  std::memset(&OfImages(), 0, sizeof(HalfSpectrum));
}

void KernelPipeline::Synthesize(const SelectedTerms& terms, PlaneView wavefront) {
  kernels_.synthesize(terms.coefficients.data(), terms.firstOrder, wavefront.samples);
}

double KernelPipeline::FormPsf(ConstPlaneView wavefront, double wavelength) {
  double rowMaxima[kKernelGrid];
  kernels_.intensity(wavefront.samples, wavelength, tables_, scratch_, memory_.intensity, rowMaxima);
  const Peak peak = FindPeak(memory_.intensity, rowMaxima);
  const double brightest = peak.value * kIntensityScale;
  if (brightest > 0.0) {
    psf_ = {memory_.intensity, (1.0 / brightest) * kIntensityScale, peak.row, peak.column};
  } else {
    std::fill(std::begin(memory_.intensity), std::end(memory_.intensity), 0.0);  // it may hold NaN
    psf_ = {memory_.intensity, 0.0, 0, 0};
  }
  mtfIsOfPsf_ = false;
  return brightest;
}

double KernelPipeline::PeakIntensity(ConstPlaneView wavefront, double wavelength) {
  double rowMaxima[kKernelGrid];
  kernels_.intensity(wavefront.samples, wavelength, tables_, scratch_, nullptr, rowMaxima);
  double brightest = 0.0;
  for (const double maximum : rowMaxima) brightest = maximum > brightest ? maximum : brightest;
  return brightest * kIntensityScale;
}

void KernelPipeline::WritePsf(PlaneView psf) const { kernels_.recentre(psf_, psf.samples); }

PsfPeak KernelPipeline::PeakBetweenSamples() const {
  return PeakOf({psf_.intensity, kIntensityPitch, psf_.row, psf_.column});
}

void KernelPipeline::FormMtf() {
  ofMtf_ = 1 - ofImages_;
  kernels_.transferFunction(psf_, tables_, scratch_, OfMtf());
  mtfIsOfPsf_ = true;
}

void KernelPipeline::WriteMtf(PlaneView mtf) const { kernels_.modulation(OfMtf(), mtf.samples); }

void KernelPipeline::WritePhase(PlaneView phase) const { kernels_.phase(OfMtf(), phase.samples); }

void KernelPipeline::FormOtf() {
  if (mtfIsOfPsf_) {
    ofImages_ = ofMtf_;
    return;
  }
  ofImages_ = 1 - ofMtf_;
  kernels_.transferFunction(psf_, tables_, scratch_, OfImages());
}

void KernelPipeline::FormOtf(ConstPlaneView psf) {
  ofImages_ = 1 - ofMtf_;
  kernels_.realTransform(psf.samples, tables_, scratch_, OfImages());
}

void KernelPipeline::WriteOtfReal(PlaneView re) const { kernels_.unfold(OfImages(), re.samples, nullptr); }

void KernelPipeline::WriteOtfImag(PlaneView im) const { kernels_.unfold(OfImages(), nullptr, im.samples); }

void KernelPipeline::Image(const ObjectSpectrum& object, const std::optional<ConstComplexView>& otf,
                           const Brightness& brightness, double ownTotal, PlaneView image) {
  const ImageScale scale = {!brightness.stretched, brightness.total.value_or(ownTotal)};
  if (otf) {
    kernels_.imageThroughPlanes(object, {otf->re.samples, otf->im.samples}, scale, tables_, scratch_, image.samples);
  } else {
    kernels_.image(object, OfImages(), scale, tables_, scratch_, image.samples);
  }
}

void KernelPipeline::RealImage(ConstPlaneView object, const std::optional<ConstComplexView>& otf,
                               const Brightness& brightness, PlaneView image) {
  const double total = kernels_.realRows(object.samples, tables_, scratch_, memory_.object);
  Image({memory_.object, &memory_.object}, otf, brightness, total, image);
}

Pipeline::PreparedSides KernelPipeline::SidesOfPrepared() const { return {kSpectrumSide, 0}; }

double KernelPipeline::Prepare(ConstPlaneView object, PlaneView first, PlaneView /*second*/) {
  return kernels_.realTransform(object.samples, tables_, scratch_, SpectrumIn(first));
}

void KernelPipeline::PreparedImage(ConstPlaneView first, ConstPlaneView /*second*/,
                                   const std::optional<ConstComplexView>& otf, const Brightness& brightness,
                                   PlaneView image) {
  Image({SpectrumIn(first), nullptr}, otf, brightness, 0.0, image);
}

void KernelPipeline::Transform(ComplexView planes, int direction) {
  double *const re = planes.re.samples, *const im = planes.im.samples;
  // Exchanging real and imaginary parts changes the sign of the exponent.
  if (direction == 0) kernels_.transform(re, im, 1.0 / (kKernelGrid * kKernelGrid), tables_, scratch_);
  if (direction == 1) kernels_.transform(im, re, 1.0, tables_, scratch_);
}

void KernelPipeline::CentredTransform(ComplexView planes, int direction, int log2n) {
  if (log2n == kLog2OfGrid) {
    kernels_.centredTransform(planes.re.samples, planes.im.samples, direction, tables_, scratch_);
  } else {
    CentredFft2(planes.re.samples, planes.im.samples, direction, kKernelGrid, log2n);
  }
}

void KernelPipeline::DrawRing(PlaneView plane, int diameter, int gapDirection) const {
  const RingCircles circles = CirclesOf(diameter, kKernelGrid);
  kernels_.drawRing(plane.samples, circles.centre, circles.innerSquared, circles.outerSquared);
  OpenGap(plane, diameter, gapDirection);
}

PlaneView KernelPipeline::Spare() { return {reinterpret_cast<double*>(memory_.object.bytes), kKernelGrid}; }

}  // namespace orvanel
