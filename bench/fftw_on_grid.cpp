// Implements the peer of the physical model on FFTW.
#include "bench/fftw_on_grid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvanel::bench {
namespace {

using namespace physical;

constexpr double kPi = std::numbers::pi;

std::size_t Size(int n) { return static_cast<std::size_t>(n); }
std::size_t At(int row, int column, int side) { return Size(row) * Size(side) + Size(column); }

double Wavelength_mm(const TrueEye& truth) { return truth.light[0].wavelengthNm * 1e-6; }
double Radians(double arcmin) { return arcmin * kPi / 10800; }

// Orthonormal, by OSA/ANSI index, at a point of the unit disc or near it.
double Zernike(std::size_t j, double x, double y) {
  int n = 0;
  while (Size((n + 1) * (n + 2) / 2) <= j) ++n;
  const int m = 2 * static_cast<int>(j) - n * (n + 2), size = std::abs(m);
  const double rho = std::sqrt(x * x + y * y), theta = std::atan2(y, x);
  double radial = 0.0;
  for (int s = 0; s <= (n - size) / 2; ++s) {
    radial += (s % 2 == 0 ? 1 : -1) * std::tgamma(n - s + 1) /
              (std::tgamma(s + 1) * std::tgamma((n + size) / 2 - s + 1) * std::tgamma((n - size) / 2 - s + 1)) *
              std::pow(rho, n - 2 * s);
  }
  return std::sqrt((n + 1) * (m == 0 ? 1.0 : 2.0)) * radial * (m < 0 ? std::sin(size * theta) : std::cos(m * theta));
}

// The share of a cell in a disc about the origin: exact along x, by the midpoint rule along y.
double Share(double x, double y, double width, double radius) {
  constexpr int kLines = 64;
  const double farthest = std::hypot(std::fabs(x) + width / 2, std::fabs(y) + width / 2);
  if (farthest <= radius) return 1.0;
  double share = 0.0;
  for (int i = 0; i < kLines; ++i) {
    const double v = y + ((i + 0.5) / kLines - 0.5) * width;
    if (std::fabs(v) >= radius) continue;
    const double half = std::sqrt(radius * radius - v * v);
    share += std::max(0.0, std::min(half, x + width / 2) - std::max(-half, x - width / 2)) / width / kLines;
  }
  return share;
}

FftwPlane Plane(int rows, int columns) {
  FftwPlane plane(reinterpret_cast<std::complex<double>*>(fftw_alloc_complex(Size(rows) * Size(columns))));
  std::fill_n(plane.get(), Size(rows) * Size(columns), 0.0);
  return plane;
}

fftw_complex* Fftw(const FftwPlane& plane) { return reinterpret_cast<fftw_complex*>(plane.get()); }

// In place, of lines one after the other.
fftw_plan PlanOfLines(const FftwPlane& plane, int length, int lines) {
  return fftw_plan_many_dft(1, &length, lines, Fftw(plane), nullptr, 1, length, Fftw(plane), nullptr, 1, length,
                            FFTW_BACKWARD, FFTW_MEASURE);
}

}  // namespace

PupilSamples::PupilSamples(const TrueEye& truth, double spacing_mm)
    : kPerUm_(2 * kPi * 1e-3 / Wavelength_mm(truth)),
      side_(static_cast<int>(std::ceil(truth.eye.diameterMm / spacing_mm))) {
  const double radius = truth.eye.diameterMm / 2;
  for (std::size_t j = 1; j < kModes; ++j) {
    if (truth.eye.modesUm[j] != 0.0) modes_.push_back(j);
  }
  std::vector<double> x, y;
  for (int row = 0; row < side_; ++row) {
    for (int column = 0; column < side_; ++column) {
      x.push_back((column - (side_ - 1) / 2.0) * spacing_mm);
      y.push_back((row - (side_ - 1) / 2.0) * spacing_mm);
      const double share = Share(x.back(), y.back(), spacing_mm, radius);
      area_ += share;
      if (share > 0.0) {
        rows_.push_back(row);
        columns_.push_back(column);
        share_.push_back(share);
      } else {
        x.pop_back();
        y.pop_back();
      }
    }
  }
  for (double& share : share_) share /= area_;
  for (const std::size_t j : modes_) {
    for (std::size_t i = 0; i < x.size(); ++i) values_.push_back(Zernike(j, x[i] / radius, y[i] / radius));
  }
  phase_.resize(x.size());
}

void PupilSamples::Field(const Eye& eye, double tilt, std::complex<double>* out, int pitch) {
  const std::size_t count = share_.size();
  for (std::size_t i = 0; i < count; ++i) phase_[i] = -tilt * (rows_[i] + columns_[i]);
  for (std::size_t m = 0; m < modes_.size(); ++m) {
    const double c = kPerUm_ * eye.modesUm[modes_[m]];
    const double* values = &values_[m * count];
    for (std::size_t i = 0; i < count; ++i) phase_[i] += c * values[i];
  }
  for (std::size_t i = 0; i < count; ++i) {
    out[At(rows_[i], columns_[i], pitch)] = {share_[i] * std::cos(phase_[i]), share_[i] * std::sin(phase_[i])};
  }
}

// One step of the grid is one frequency of the transform: side * spacing = wavelength / step.
PsfByFftw::PsfByFftw(const TrueEye& truth, int side)
    : side_(side),
      grid_(truth.grid.columns),
      pupil_(truth, Wavelength_mm(truth) / Radians(truth.grid.spacing) / side),
      rows_(Plane(pupil_.side(), side)),
      columns_(Plane(grid_, side)),
      alongRows_(PlanOfLines(rows_, side, pupil_.side())),
      alongColumns_(PlanOfLines(columns_, side, grid_)) {}

PsfByFftw::~PsfByFftw() {
  fftw_destroy_plan(alongRows_);
  fftw_destroy_plan(alongColumns_);
}

void PsfByFftw::Compute(const Eye& eye, double* psf) {
  const int samples = pupil_.side();
  std::fill_n(rows_.get(), At(samples, 0, side_), 0.0);
  pupil_.Field(eye, kPi * (grid_ - 1) / side_, rows_.get(), side_);
  fftw_execute(alongRows_);
  for (int c = 0; c < grid_; ++c) {
    for (int r = 0; r < samples; ++r) columns_[At(c, r, side_)] = rows_[At(r, c, side_)];
    std::fill_n(&columns_[At(c, samples, side_)], side_ - samples, 0.0);
  }
  fftw_execute(alongColumns_);
  for (int c = 0; c < grid_; ++c) {
    for (int r = 0; r < grid_; ++r) psf[At(r, c, grid_)] = std::norm(columns_[At(c, r, side_)]);
  }
}

OtfByFftw::OtfByFftw(const TrueEye& truth, int finer)
    : finer_(finer),
      side_(truth.frequencies.side * finer),
      grid_(truth.frequencies.side),
      pupil_(truth, Wavelength_mm(truth) * truth.frequencies.step * 180 / kPi / finer),
      plane_(Plane(side_, side_)),
      half_(Plane(side_, side_ / 2 + 1)),
      power_(fftw_alloc_real(At(side_, 0, side_))),
      forward_(fftw_plan_dft_2d(side_, side_, Fftw(plane_), Fftw(plane_), FFTW_FORWARD, FFTW_MEASURE)),
      backward_(fftw_plan_dft_r2c_2d(side_, side_, power_.get(), Fftw(half_), FFTW_MEASURE)) {}

OtfByFftw::~OtfByFftw() {
  fftw_destroy_plan(forward_);
  fftw_destroy_plan(backward_);
}

void OtfByFftw::Compute(const Eye& eye, TransferFunction& otf) {
  std::fill_n(plane_.get(), At(side_, 0, side_), 0.0);
  pupil_.Field(eye, 0.0, plane_.get(), side_);
  fftw_execute(forward_);
  for (std::size_t i = 0; i < At(side_, 0, side_); ++i) power_[i] = std::norm(plane_[i]);
  fftw_execute(backward_);
  // Cells at the rim count less than their area in the sum of squares, so that zero frequency is no unit.
  const double unit = pupil_.area() / side_ / side_;
  otf.re.resize(At(grid_, 0, grid_));
  otf.im.resize(otf.re.size());
  for (int r = 0; r < grid_; ++r) {
    for (int c = 0; c < grid_; ++c) {
      const int up = ((grid_ / 2 - r) * finer_ + side_) % side_, left = ((grid_ / 2 - c) * finer_ + side_) % side_;
      const bool stored = left <= side_ / 2;
      const std::complex<double> value = stored
                                             ? half_[At(up, left, side_ / 2 + 1)]
                                             : std::conj(half_[At((side_ - up) % side_, side_ - left, side_ / 2 + 1)]);
      otf.re[At(r, c, grid_)] = value.real() * unit;
      otf.im[At(r, c, grid_)] = value.imag() * unit;
    }
  }
  otf.re[At(grid_ / 2, grid_ / 2, grid_)] = 1.0;
}

}  // namespace orvanel::bench
