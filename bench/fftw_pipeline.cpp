// Implements the peer on FFTW. It has the library's conventions, so that the results can be compared.
#include "bench/fftw_pipeline.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstring>
#include <numbers>

namespace orvanel::bench {
namespace {

constexpr int kSide = 256;
constexpr int kSamples = kSide * kSide;
constexpr int kHalfSide = kSide / 2 + 1;  // columns of half a spectrum
constexpr int kHalfSamples = kSide * kHalfSide;
constexpr double kWavelength_mm = 0.00058756;
constexpr double kFocalLength_mm = 17.0;
constexpr int kTerms = 28;
constexpr int kFirstTerm = 3;  // piston and tilts only move the image
constexpr int kSamplesOfDisc = 12853;
constexpr int kBlock = 512;  // samples whose sums stay in the first cache

// Unnormalised Zernike polynomial of index j = n (n + 1) / 2 + k, m = -n + 2 k, at a point of the unit disc.
double Zernike(int n, int m, double x, double y) {
  const int size = std::abs(m);
  double factorial[7] = {1.0};
  for (int k = 1; k <= 6; ++k) factorial[k] = factorial[k - 1] * k;
  const double rho = std::sqrt(x * x + y * y);
  double radial = 0.0;
  for (int s = 0; s <= (n - size) / 2; ++s) {
    const double term =
        factorial[n - s] / (factorial[s] * factorial[(n + size) / 2 - s] * factorial[(n - size) / 2 - s]);
    radial += (s % 2 == 0 ? term : -term) * std::pow(rho, n - 2 * s);
  }
  const double theta = std::atan2(y, x);
  return radial * (m >= 0 ? std::cos(m * theta) : std::sin(size * theta));
}

void DrawRing(int diameter, int gapDirection, double* plane) {
  const bool even = diameter % 2 == 0;
  const double centre = even ? kSide / 2 + 0.5 : kSide / 2;
  const double outer = 0.5 * diameter;
  const double inner = outer - 0.2 * diameter;
  for (int y = 0; y < kSide; ++y) {
    const double dy = y - centre;
    for (int x = 0; x < kSide; ++x) {
      const double dx = x - centre;
      const double d2 = dx * dx + dy * dy;
      plane[y * kSide + x] = d2 <= outer * outer && d2 >= inner * inner ? 0.0 : 1.0;
    }
  }
  const int half = diameter / 10;
  const int first = std::max(kSide / 2 - half + (even ? 1 : 0), 0);
  const int last = std::min(kSide / 2 + half, kSide - 1);
  const int onward = even ? kSide / 2 + 1 : kSide / 2;
  const bool later = gapDirection == 1 || gapDirection == 3;
  const int from = later ? onward : 0;
  const int to = later ? kSide - 1 : kSide / 2;
  const bool vertical = gapDirection <= 2;
  for (int a = first; a <= last; ++a) {
    for (int b = from; b <= to; ++b) plane[vertical ? b * kSide + a : a * kSide + b] = 1.0;
  }
}

// A plan that does not change its input.
fftw_plan PlanOfReal(double* in, fftw_complex* out) {
  return fftw_plan_dft_r2c_2d(kSide, kSide, in, out, FFTW_PATIENT | FFTW_PRESERVE_INPUT);
}
fftw_plan PlanOfComplex(fftw_complex* in, fftw_complex* out) {
  return fftw_plan_dft_2d(kSide, kSide, in, out, FFTW_FORWARD, FFTW_PATIENT | FFTW_PRESERVE_INPUT);
}

}  // namespace

UnitTransform::UnitTransform()
    : in_(fftw_alloc_complex(kSamples)), out_(fftw_alloc_complex(kSamples)), plan_(PlanOfComplex(in_, out_)) {
  for (int i = 0; i < kSamples; ++i) {
    in_[i][0] = i % 7 - 3;
    in_[i][1] = i % 5 - 2;
  }
}

UnitTransform::~UnitTransform() {
  fftw_destroy_plan(plan_);
  fftw_free(in_);
  fftw_free(out_);
}

FftwPipeline::FftwPipeline(const double* star)
    : pupil_(AllocateComplex(kSamples)),
      field_(AllocateComplex(kSamples)),
      intensity_(fftw_alloc_real(kSamples)),
      centred_(fftw_alloc_real(kSamples)),
      otf_(AllocateComplex(kHalfSamples)),
      object_(fftw_alloc_real(kSamples)),
      spectrum_(AllocateComplex(kHalfSamples)),
      star_(AllocateComplex(kHalfSamples)),
      product_(AllocateComplex(kSamples)),
      filtered_(AllocateComplex(kSamples)),
      fieldOfPupil_(PlanOfComplex(pupil_.get(), field_.get())),
      otfOfPsf_(PlanOfReal(centred_.get(), otf_.get())),
      spectrumOfObject_(PlanOfReal(object_.get(), spectrum_.get())),
      filteredOfProduct_(PlanOfComplex(product_.get(), filtered_.get())) {
  std::fill_n(&pupil_[0][0], 2 * kSamples, 0.0);
  constexpr int radius = kSide / 4;
  for (int dy = -radius; dy <= radius; ++dy) {
    for (int dx = -radius; dx <= radius; ++dx) {
      if (dx * dx + dy * dy <= radius * radius) inside_.push_back((kSide / 2 + dy) * kSide + kSide / 2 + dx);
    }
  }
  int j = 0;
  for (int n = 0; n <= 6; ++n) {
    for (int m = -n; m <= n; m += 2, ++j) {
      if (j < kFirstTerm) continue;
      for (const int sample : inside_) {
        const double x = static_cast<double>(sample % kSide - kSide / 2) / radius;
        const double y = static_cast<double>(sample / kSide - kSide / 2) / radius;
        terms_.push_back(Zernike(n, m, x, y));
      }
    }
  }
  std::copy_n(star, kSamples, object_.get());
  for (int i = 0; i < kSamples; ++i) starTotal_ += star[i];
  fftw_execute(spectrumOfObject_);
  std::swap(star_, spectrum_);
  fftw_destroy_plan(spectrumOfObject_);
  spectrumOfObject_ = PlanOfReal(object_.get(), spectrum_.get());
}

FftwPipeline::~FftwPipeline() {
  for (fftw_plan plan : {fieldOfPupil_, otfOfPsf_, spectrumOfObject_, filteredOfProduct_}) fftw_destroy_plan(plan);
}

// Pupil function, field on the retina, and its intensity with zero at (0, 0), without a scale. The direction of the
// transform only rotates the image by half a turn. The move of the samples corrects this without cost.
void FftwPipeline::FormIntensity(const double* coefficients) {
  constexpr double waves = 2.0 * std::numbers::pi / kWavelength_mm;
  const int count = static_cast<int>(inside_.size());
  double w[kBlock];
  for (int first = 0; first < count; first += kBlock) {
    const int size = std::min(kBlock, count - first);
    std::fill_n(w, size, 0.0);
    for (int j = kFirstTerm; j < kTerms; ++j) {
      const double c = coefficients[j] * waves;
      if (c == 0.0) continue;
      const double* const term = terms_.data() + static_cast<std::ptrdiff_t>(j - kFirstTerm) * count + first;
      for (int i = 0; i < size; ++i) w[i] += c * term[i];
    }
    for (int i = 0; i < size; ++i) {
      fftw_complex& sample = pupil_[static_cast<std::size_t>(inside_[static_cast<std::size_t>(first + i)])];
      sample[0] = std::cos(w[i]);
      sample[1] = -std::sin(w[i]);  // the conjugate: its forward transform is the conjugate of the backward one
    }
  }
  fftw_execute(fieldOfPupil_);
  const double* const field = &field_[0][0];
  double* const intensity = intensity_.get();
  for (int i = 0; i < kSamples; ++i) intensity[i] = field[2 * i] * field[2 * i] + field[2 * i + 1] * field[2 * i + 1];
}

double FftwPipeline::Strehl(const double* coefficients) {
  FormIntensity(coefficients);
  // Four maxima, since each comparison depends on the previous one of the same maximum.
  double largest[4] = {};
  for (int i = 0; i < kSamples; i += 4) {
    for (int l = 0; l < 4; ++l) largest[l] = std::max(largest[l], intensity_[static_cast<std::size_t>(i + l)]);
  }
  return *std::max_element(largest, largest + 4) / (static_cast<double>(kSamplesOfDisc) * kSamplesOfDisc);
}

void FftwPipeline::Input(const double* coefficients, double pupil_mm, double* psf, double* mtf, double* phase) {
  halfWidth_mm_ = 32.0 * kFocalLength_mm * kWavelength_mm / pupil_mm;
  FormIntensity(coefficients);

  const int peak = static_cast<int>(std::max_element(intensity_.get(), intensity_.get() + kSamples) - intensity_.get());
  const int peakRow = peak / kSide;
  const int peakColumn = peak % kSide;
  const double scale = 1.0 / intensity_[static_cast<std::size_t>(peak)];
  double* const centred = centred_.get();
  for (int r = 0; r < kSide; ++r) {
    const double* const from = intensity_.get() + (r + peakRow + kSide / 2) % kSide * kSide;
    const int shift = (peakColumn + kSide / 2) % kSide;
    for (int c = 0; c < kSide - shift; ++c) centred[r * kSide + c] = scale * from[c + shift];
    for (int c = kSide - shift; c < kSide; ++c) centred[r * kSide + c] = scale * from[c + shift - kSide];
  }
  std::memcpy(psf, centred, sizeof(double) * kSamples);

  // The origin in the middle of the PSF changes signs of its transform in a checkerboard pattern. The other half of the
  // transform is the conjugate.
  fftw_execute(otfOfPsf_);
  const fftw_complex* const otf = otf_.get();
  const double perZero = 1.0 / otf[0][0];
  for (int p = 0; p < kSide; ++p) {
    const int row = (p + kSide / 2) % kSide;
    const int mirrored = (kSide - p + kSide / 2) % kSide;
    const fftw_complex* const from = otf + p * kHalfSide;
    double* const right = mtf + row * kSide + kSide / 2;
    double* const left = mtf + mirrored * kSide + kSide / 2;
    double moduli[kHalfSide];
    for (int q = 0; q < kHalfSide; ++q) {
      moduli[q] = std::sqrt(from[q][0] * from[q][0] + from[q][1] * from[q][1]) * perZero;
    }
    for (int q = 0; q < kSide / 2; ++q) right[q] = moduli[q];
    for (int q = 1; q < kHalfSide; ++q) left[-q] = moduli[q];
    if (phase == nullptr) continue;
    double* const phaseRight = phase + row * kSide + kSide / 2;
    double* const phaseLeft = phase + mirrored * kSide + kSide / 2;
    for (int q = 0; q < kHalfSide; ++q) {
      const double sign = (p + q) % 2 == 0 ? 1.0 : -1.0;
      const double angle = std::atan2(sign * from[q][1], sign * from[q][0]);
      if (q < kSide / 2) phaseRight[q] = angle;
      if (q > 0) phaseLeft[-q] = -angle;
    }
  }
}

// |F(object x transfer function, its rows mirrored)|^2, quadrants swapped. Both factors are halves of transforms of
// real planes; the mirrored rows make the product that of a complex plane.
void FftwPipeline::ImageOf(const fftw_complex* object, double objectTotal, bool stretched, double* image) {
  // Row p of the object is multiplied by row 255 - p of the transfer function. Both are conjugates of backward
  // transforms.
  for (int p = 0; p < kSide; ++p) {
    fftw_complex* const to = product_.get() + p * kSide;
    const fftw_complex* const o = object + p * kHalfSide;
    const fftw_complex* const h = otf_.get() + (kSide - 1 - p) * kHalfSide;
    for (int q = 0; q < kHalfSide; ++q) {
      to[q][0] = o[q][0] * h[q][0] - o[q][1] * h[q][1];
      to[q][1] = -(o[q][0] * h[q][1] + o[q][1] * h[q][0]);
    }
    const fftw_complex* const other = object + (kSide - p) % kSide * kHalfSide;
    const fftw_complex* const otherH = otf_.get() + (p + 1) % kSide * kHalfSide;
    for (int q = kHalfSide; q < kSide; ++q) {
      const fftw_complex& a = other[kSide - q];
      const fftw_complex& b = otherH[kSide - q];
      to[q][0] = a[0] * b[0] - a[1] * b[1];
      to[q][1] = a[0] * b[1] + a[1] * b[0];
    }
  }
  fftw_execute(filteredOfProduct_);
  const double* const filtered = &filtered_[0][0];
  double* const intensity = intensity_.get();
  double sums[4] = {};
  double least[4], most[4];
  std::fill_n(least, 4, INFINITY);
  std::fill_n(most, 4, -INFINITY);
  for (int i = 0; i < kSamples; i += 4) {
    for (int l = 0; l < 4; ++l) {
      const int k = 2 * (i + l);
      const double v = filtered[k] * filtered[k] + filtered[k + 1] * filtered[k + 1];
      intensity[i + l] = v;
      if (stretched) {
        least[l] = std::min(least[l], v);
        most[l] = std::max(most[l], v);
      } else {
        sums[l] += v;
      }
    }
  }
  const double smallest = stretched ? *std::min_element(least, least + 4) : 0.0;
  const double range = *std::max_element(most, most + 4) - smallest;
  const double factor = stretched ? 1.0 / range : objectTotal / ((sums[0] + sums[1]) + (sums[2] + sums[3]));
  for (int r = 0; r < kSide; ++r) {
    const double* const from = intensity + (r + kSide / 2) % kSide * kSide;
    double* const to = image + r * kSide;
    for (int half = 0; half < 2; ++half) {
      const double* const source = from + (1 - half) * (kSide / 2);
      double* const target = to + half * (kSide / 2);
      for (int c = 0; c < kSide / 2; ++c) target[c] = std::min((source[c] - smallest) * factor, 1.0);
    }
  }
}

void FftwPipeline::Ring(double acuity, int gapDirection, double* optotype, double* image) {
  constexpr double kHalfMinute = 0.000145444;
  int diameter = static_cast<int>(5.0 / acuity * kSide / halfWidth_mm_ * kFocalLength_mm * kHalfMinute) - 2;
  while (diameter % 5 != 0) ++diameter;
  std::printf("%g\t%d\n", acuity, diameter);
  std::fflush(stdout);
  DrawRing(diameter, gapDirection, optotype);
  std::memcpy(object_.get(), optotype, sizeof(double) * kSamples);
  fftw_execute(spectrumOfObject_);
  ImageOf(spectrum_.get(), spectrum_[0][0], false, image);
}

void FftwPipeline::Pattern(bool stretched, double* image) { ImageOf(star_.get(), starTotal_, stretched, image); }

}  // namespace orvanel::bench
