// Splits the image of a point. The near part is a filter on a periodic lattice with a guard band. The smooth part that
// goes far is a filter on a coarse grid.
#include "models/physical/retinal_image.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <optional>

#include "base/elementary.h"
#include "models/physical/image/far_light.h"
#include "models/physical/image/spline_grid.h"
#include "models/physical/plane_index.h"
#include "models/physical/pupil/perfect_pupil.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

bool IsLuminance(double x) { return std::fabs(x) <= kLargestLuminance; }

std::optional<Refusal> CheckSize(const ObjectSize& size) {
  constexpr double kLargestPixel = 60.0;
  if (!(size.pixelArcmin > 0.0 && size.pixelArcmin <= kLargestPixel)) {
    return Refusal{Problem::kPixelSize, size.pixelArcmin, 0.0, kLargestPixel};
  }
  for (const int side : {size.columns, size.rows}) {
    if (side < 1 || side > kLargestSide) {
      return Refusal{Problem::kObjectSize, static_cast<double>(side), 1.0, static_cast<double>(kLargestSide)};
    }
  }
  const int room = (kLargestSide - std::max(size.columns, size.rows)) / 2;
  if (size.margin < 0 || size.margin > room) {
    return Refusal{Problem::kMargin, static_cast<double>(size.margin), 0.0, static_cast<double>(room)};
  }
  return std::nullopt;
}

// ---- How far the next period has to be

// The light of each beam that goes far, and the lattice that has room for the rest.
struct Layout {
  int side = 0;  // of the lattice
  int step = 0;  // of the coarse grid, in pixels
  std::vector<FarLight> far;
};

// What an object of luminance 1 on a dark surround sends from the next periods to the worst place of the image, in the
// corner of two sides.
double WrappedLight(const std::vector<Beam>& beams, const ObjectSize& size, const Layout& layout, int guard) {
  double sum = 0.0;
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double pixel = size.pixelArcmin / beams[i].unitArcmin;
    const FarLight::Difference difference = layout.far[i].Beyond(guard * pixel, pixel);
    const double area = size.columns * pixel * size.rows * pixel;
    sum += beams[i].share * std::min(difference.ofHalfPlanes, 2.0 * difference.ofUnitArea * area);
  }
  return sum;
}

// The smallest lattice; its side is above kLargestLattice where that is too small.
Layout LayoutFor(const std::vector<Beam>& beams, const ObjectSize& size, ChordQuadrature& quadrature) {
  constexpr double kMaxWrapped = 7e-5;
  constexpr int kSmoothness = 12;  // pixels
  std::vector<double> lights;
  for (const Beam& beam : beams) lights.push_back(PerfectPupilOf(beam.pupil, quadrature).light);
  const int larger = std::max(size.columns, size.rows);
  Layout layout;
  for (int least = larger + 2 * size.margin;; least = layout.side + 1) {
    layout.side = PlaneTransform::SideFor(least);
    if (layout.side > ImageFilter::kLargestLattice) return layout;
    const int guard = layout.side - larger - size.margin;
    layout.far.clear();
    double narrowest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < beams.size(); ++i) {
      const double pixel = size.pixelArcmin / beams[i].unitArcmin;
      layout.far.emplace_back(beams[i].pupil, lights[i], guard * pixel, kSmoothness * pixel);
      narrowest = std::min(narrowest, layout.far.back().narrowest() / pixel);
    }
    if (!(WrappedLight(beams, size, layout, guard) <= kMaxWrapped)) continue;
    constexpr double kNodes = 3.0, kMaxStep = 1024.0;  // in the width of the density
    layout.step = static_cast<int>(std::min(kMaxStep, narrowest / kNodes));
    return layout;
  }
}

FrequencyLattice FrequenciesOf(const Beam& beam, double periodArcmin) {
  const double step = beam.unitArcmin / periodArcmin;
  const double side = 2.0 * std::ceil(1.0 / step);
  return {side <= ImageFilter::kLargestLattice ? static_cast<int>(side) : ImageFilter::kLargestLattice + 1, step};
}

// sin(pi f) / (pi f): the transform of a pixel's length at f cycles a pixel.
double PixelSpectrum(double f) { return f == 0.0 ? 1.0 : SineAndCosine(kPi * f).sine / (kPi * f); }

// Those at k / side, k = -frequencies/2 and so on.
std::vector<double> PixelSpectra(int frequencies, int side) {
  std::vector<double> spectra;
  for (int i = 0; i < frequencies; ++i) spectra.push_back(PixelSpectrum((i - frequencies / 2) * 1.0 / side));
  return spectra;
}

}  // namespace

struct ImageFilter::Tables {
  Tables(const ChordKernels& kernels, const ObjectSize& objectSize, int side, int step)
      : size(objectSize),
        width(static_cast<std::size_t>(kernels.width)),
        grid(kernels, size.columns + 2 * size.margin, size.rows + 2 * size.margin, step),
        near(kernels, side),
        far(kernels, PlaneTransform::SideFor(2 * std::max(grid.columns(), grid.rows()) + kSpare)),
        nearFilter(near.SpectrumSize()),
        farFilter(far.SpectrumSize()) {
    std::fill_n(nearFilter.data(), nearFilter.size(), 0.0);
  }
  static constexpr int kSpare = 16;  // nodes, for the ends of the filter

  void AddNear(const Beam& beam, const FrequencyLattice& frequencies, const std::vector<double>& re,
               const std::vector<double>& im);
  void SubtractFar(const Beam& beam, const FarLight& light);
  void SetFar(const std::vector<Beam>& beams, const Layout& layout);

  ObjectSize size;
  std::size_t width;
  SplineGrid grid;
  PlaneTransform near, far;
  AlignedMemory nearFilter, farFilter;  // half spectra, of the images' coordinates, over the number of samples
  double farShare = 0.0;                // of the light
};

// The pixels have the directions of the slopes, both the other way round. Frequencies that differ by a whole number of
// cycles a pixel have the same samples at the pixels' distance; all of them fold onto one.
void ImageFilter::Tables::AddNear(const Beam& beam, const FrequencyLattice& frequencies, const std::vector<double>& re,
                                  const std::vector<double>& im) {
  const int side = near.side(), half = frequencies.side / 2;
  const std::vector<double> pixel = PixelSpectra(frequencies.side + 1, side);
  const auto folded = [side](int k) { return (k % side + side) % side; };
  const double scale = beam.share / side / side;
  for (int r = 0; r < frequencies.side; ++r) {
    const double weight = scale * pixel[static_cast<std::size_t>(r)];
    const int row = folded(r - half);
    for (int c = 0; c < frequencies.side; ++c) {
      const int q = folded(half - c);
      if (q > side / 2) continue;
      const std::size_t from = At(r, c, frequencies.side), to = near.At(row, q);
      const double area = weight * pixel[static_cast<std::size_t>(c)];
      nearFilter.data()[to] += area * re[from];
      nearFilter.data()[to + width] -= area * im[from];
    }
  }
}

void ImageFilter::Tables::SubtractFar(const Beam& beam, const FarLight& light) {
  const int side = near.side(), half = side / 2;
  const std::vector<double> pixel = PixelSpectra(side + 1, side);
  const double scale = beam.share / side / side;
  const double step = beam.unitArcmin / (side * size.pixelArcmin);
  for (int r = -half; r < half; ++r) {
    for (int q = 0; q <= half; ++q) {
      const double weight =
          scale * pixel[static_cast<std::size_t>(r + half)] * pixel[static_cast<std::size_t>(q + half)];
      const std::complex<double> spectrum = light.Spectrum(-q * step, -r * step);
      const std::size_t to = near.At(r < 0 ? r + side : r, q);
      nearFilter.data()[to] -= weight * spectrum.real();
      nearFilter.data()[to + width] += weight * spectrum.imag();
    }
  }
  farShare += beam.share * light.total();
}

void ImageFilter::Tables::SetFar(const std::vector<Beam>& beams, const Layout& layout) {
  const int side = far.side(), half = side / 2;
  std::vector<double> density(At(side, 0, side));
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double pixel = size.pixelArcmin / beams[i].unitArcmin, step = layout.step * pixel;
    for (int r = -half; r < half; ++r) {
      for (int c = -half; c < half; ++c) {
        density[At(r < 0 ? r + side : r, c < 0 ? c + side : c, side)] +=
            beams[i].share * pixel * pixel * layout.far[i].Density(-c * step, -r * step);
      }
    }
  }
  PlaneTransform::Memory memory;
  far.HalfSpectrum(density.data(), side, side, side, farFilter.data(), memory);
  for (int r = 0; r < side; ++r) {
    for (int q = 0; q <= half; ++q) {
      const double spline = SplineGrid::Spectrum(r, side) * SplineGrid::Spectrum(q, side);
      const double cycles = 1.0 / (1.0 * side * layout.step);  // a pixel, of one step of frequencies
      const double pixel = PixelSpectrum((r < half ? r : r - side) * cycles) * PixelSpectrum(q * cycles);
      const double factor = pixel / (spline * spline) / side / side;
      farFilter.data()[far.At(r, q)] *= factor;
      farFilter.data()[far.At(r, q) + width] *= factor;
    }
  }
}

Outcome<ImageFilter> ImageFilter::Of(const Eye& eye, const Light& light, const ObjectSize& size, Workspace& workspace,
                                     const std::function<void()>& afterLine) {
  if (const std::optional<Refusal> refusal = CheckSize(size)) return *refusal;
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  const Layout layout = LayoutFor(*beams, size, workspace.quadrature);
  int largest = layout.side;
  for (const Beam& beam : *beams) largest = std::max(largest, FrequenciesOf(beam, layout.side * size.pixelArcmin).side);
  if (largest > kLargestLattice) {
    return Refusal{Problem::kFieldTooLarge, static_cast<double>(largest), 0.0, static_cast<double>(kLargestLattice)};
  }
  const auto tables = std::make_shared<Tables>(workspace.chords, size, layout.side, layout.step);
  for (std::size_t i = 0; i < beams->size(); ++i) {
    const Beam& beam = (*beams)[i];
    const FrequencyLattice frequencies = FrequenciesOf(beam, layout.side * size.pixelArcmin);
    const std::size_t samples = At(frequencies.side, 0, frequencies.side);
    std::vector<double> re(samples), im(samples);
    if (!workspace.otf.Compute(beam.pupil, frequencies, re.data(), im.data())) {
      return Refusal{Problem::kTooSteep, 0.0, 0.0, 0.0, beam.line};
    }
    tables->AddNear(beam, frequencies, re, im);
    tables->SubtractFar(beam, layout.far[i]);
    if (afterLine) afterLine();
  }
  tables->SetFar(*beams, layout);
  return ImageFilter(tables);
}

int ImageFilter::side() const { return tables_->near.side(); }

namespace {

Refusal RefusalOf(double luminance, int index) {
  return {Problem::kLuminance, luminance, -kLargestLuminance, kLargestLuminance, index};
}

// Rows that are processed together, while they are in the cache.
constexpr int kBand = kSideUnit;

void TurnUpsideDown(RetinalImage& image) {
  double* const plane = image.luminance.data();
  for (int r = 0; r < image.rows / 2; ++r) {
    double* const row = plane + At(r, 0, image.columns);
    std::swap_ranges(row, row + image.columns, plane + At(image.rows - 1 - r, 0, image.columns));
  }
}

}  // namespace

Outcome<RetinalImage> ImageFilter::ImageOf(const double* luminance, double surround, View view,
                                           Workspace& workspace) const {
  if (!IsLuminance(surround)) return RefusalOf(surround, -1);
  const Tables& t = *tables_;
  const ObjectSize& size = t.size;
  const ChordKernels& kernels = workspace.chords;
  RetinalImage image;
  image.columns = size.columns + 2 * size.margin;
  image.rows = size.rows + 2 * size.margin;
  image.view = view;
  const int pitch = WholeBlocks(size.columns), imagePitch = WholeBlocks(image.columns);
  workspace.re.Reserve(At(kBand, 0, imagePitch));
  workspace.spectrum.Reserve(t.near.SpectrumSize());
  double *const band = workspace.re.data(), *const spectrum = workspace.spectrum.data();
  PlaneTransform::Memory& memory = workspace.transforms.memory;

  std::vector<double> lines(t.grid.LinesFor(size.columns));
  double light = 0.0;
  for (int first = 0; first < size.rows; first += kBand) {
    const int count = std::min(kBand, size.rows - first);
    for (int r = 0; r < count; ++r) {
      const double* const from = luminance + At(first + r, 0, size.columns);
      const double sum =
          kernels.rowWithoutSurround(from, size.columns, surround, kLargestLuminance, band + At(r, 0, pitch));
      if (std::isnan(sum)) {
        const double* const bad = std::find_if_not(from, from + size.columns, IsLuminance);
        return RefusalOf(*bad, static_cast<int>(bad - luminance));
      }
      light += sum;
    }
    t.near.FilterRows(band, pitch, first, count, pitch, spectrum, memory);
    t.grid.GatherRows(band, size.columns, first, count, pitch, size.margin, lines.data());
  }
  const double nearLight = t.near.FilterColumns(spectrum, size.rows, t.nearFilter.data());

  const int nodePitch = WholeBlocks(t.grid.columns());
  workspace.im.Reserve(At(t.grid.rows(), 0, nodePitch));
  double* const nodes = workspace.im.data();
  t.grid.GatherColumns(lines.data(), size.columns, size.margin, nodes, nodePitch);
  t.far.Filter(nodes, nodePitch, t.grid.rows(), nodePitch, t.farFilter.data(),
               {nodes, nodePitch, 0, 0, t.grid.rows(), nodePitch}, memory);
  const std::vector<double> far = t.grid.Rows(nodes, nodePitch);

  image.outside = nearLight + t.farShare * light;
  image.luminance.reserve(At(image.rows, 0, image.columns));
  const int side = t.near.side(), corner = (side - size.margin) % side;
  for (int first = 0; first < image.rows; first += kBand) {
    const int count = std::min(kBand, image.rows - first);
    t.near.FilteredRows(spectrum, {band, imagePitch, (corner + first) % side, corner, count, imagePitch}, memory);
    image.outside -= t.grid.AddTo(far, first, count, band, imagePitch, surround);
    for (int r = 0; r < count; ++r) {
      const double* const row = band + At(r, 0, imagePitch);
      image.luminance.insert(image.luminance.end(), row, row + image.columns);
    }
  }
  if (view == View::kRetina) TurnUpsideDown(image);
  return image;
}

}  // namespace orvanel::physical
