// Samples the OTF on the frequencies of a padded plane, with those that pixels fold onto each other.
#include "models/physical/retinal_image.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

#include "base/elementary.h"
#include "orvanel/transforms.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

std::size_t At(int row, int column, int columns) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
}
bool IsFinite(double x) { return std::fabs(x) <= std::numeric_limits<double>::max(); }

// The smallest power of two from `least`, or more than the largest lattice.
int PowerOfTwo(double least) {
  int power = 4;
  while (power < least && power <= ImageFilter::kLargestLattice) power *= 2;
  return power;
}

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

// A rectangle, or a place in it.
struct Extent {
  double x, y;
};

// Far from its middle, the mean over rings of a pupil's PSF is strength / distance^3, per squared wavelength /
// diameter: 1/pi^3 for a round pupil (Airy). Rims send light across themselves, the more the less they are curved;
// those of an ellipse up to a/b^2 times as much.
double TailStrength(const Pupil& pupil) {
  const Ellipse& outline = pupil.outline;
  const double large = std::max(outline.semiAxisA, outline.semiAxisB);
  const double small = std::min(outline.semiAxisA, outline.semiAxisB);
  return large / (small * small) / (kPi * kPi * kPi);
}

// What an object of luminance 1 on a dark surround sends from the neighbouring periods to the edge of the image. All
// lengths are in wavelength / diameter.
//   blur  the farthest that rays go
double WrappedLight(Extent object, Extent image, double period, double blur, double strength) {
  constexpr int kCells = 12, kNeighbours = 3;
  const double area = object.x * object.y / (kCells * kCells);
  double worst = 0.0;
  for (const Extent place : {Extent{image.x / 2, 0}, Extent{0, image.y / 2}, Extent{image.x / 2, image.y / 2}}) {
    double sum = 0.0;
    for (int row = -kNeighbours; row <= kNeighbours; ++row) {
      for (int column = -kNeighbours; column <= kNeighbours; ++column) {
        if (row == 0 && column == 0) continue;
        for (int i = 0; i < kCells * kCells; ++i) {
          const double x = column * period + ((i % kCells + 0.5) / kCells - 0.5) * object.x - place.x;
          const double y = row * period + ((i / kCells + 0.5) / kCells - 0.5) * object.y - place.y;
          const double distance = std::sqrt(x * x + y * y) - blur;
          if (!(distance > 2.0)) return std::numeric_limits<double>::infinity();
          sum += area * strength / (distance * distance * distance);
        }
      }
    }
    worst = std::max(worst, sum);
  }
  // The periods beyond, whose inverse cubes add up to less than 2.2.
  constexpr double kBeyond = 2.2;
  return worst + kBeyond * object.x * object.y * strength / (period * period * period);
}

double WrappedLight(const std::vector<Beam>& beams, const ObjectSize& size, int side) {
  double sum = 0.0;
  for (const Beam& beam : beams) {
    const double pixel = size.pixelArcmin / beam.unitArcmin;
    const SlopeRange slopes = SlopesOf(beam.pupil);
    const double blurX = std::max(-slopes.lowX, slopes.highX), blurY = std::max(-slopes.lowY, slopes.highY);
    const double blur = std::sqrt(blurX * blurX + blurY * blurY);
    const Extent object{size.columns * pixel, size.rows * pixel};
    const Extent image{(size.columns + 2 * size.margin) * pixel, (size.rows + 2 * size.margin) * pixel};
    sum += beam.share * WrappedLight(object, image, side * pixel, blur, TailStrength(beam.pupil));
  }
  return sum;
}

// The side of the lattice; above kLargestLattice where that is too small.
int SideFor(const std::vector<Beam>& beams, const ObjectSize& size) {
  constexpr double kMostWrapped = 3e-5;
  int side = PowerOfTwo(std::max(size.columns, size.rows) + 2 * size.margin);
  while (side <= ImageFilter::kLargestLattice && !(WrappedLight(beams, size, side) <= kMostWrapped)) side *= 2;
  return side;
}

FrequencyLattice FrequenciesOf(const Beam& beam, double periodArcmin) {
  const double step = beam.unitArcmin / periodArcmin;
  return {PowerOfTwo(2.0 * std::ceil(1.0 / step)), step};
}

// The transform of a pixel's area at k / side cycles a pixel, k = -frequencies/2 and so on.
std::vector<double> PixelSpectrum(int frequencies, int side) {
  std::vector<double> spectrum(static_cast<std::size_t>(frequencies));
  for (int i = 0; i < frequencies; ++i) {
    const double angle = kPi * (i - frequencies / 2) / side;
    spectrum[static_cast<std::size_t>(i)] = angle == 0.0 ? 1.0 : SineAndCosine(angle).sine / angle;
  }
  return spectrum;
}

}  // namespace

ImageFilter::ImageFilter(const ObjectSize& size, int side)
    : size_(size), side_(side), re_(At(side, 0, side)), im_(At(side, 0, side)) {}

// Adds the OTF of one beam. Frequencies that differ by a whole number of cycles a pixel have the same samples at the
// pixels' distance; all of them fold onto one.
void ImageFilter::Add(const Beam& beam, const FrequencyLattice& frequencies, const std::vector<double>& re,
                      const std::vector<double>& im) {
  const int half = frequencies.side / 2;
  const std::vector<double> pixel = PixelSpectrum(frequencies.side, side_);
  const auto folded = [this](int k) { return (k % side_ + side_) % side_; };
  for (int r = 0; r < frequencies.side; ++r) {
    const double weight = beam.share * pixel[static_cast<std::size_t>(r)];
    const int row = folded(r - half);
    for (int c = 0; c < frequencies.side; ++c) {
      // The person sees x the other way round.
      const std::size_t from = At(r, c, frequencies.side), to = At(row, folded(half - c), side_);
      const double area = weight * pixel[static_cast<std::size_t>(c)];
      re_[to] += area * re[from];
      im_[to] += area * im[from];
    }
  }
}

Outcome<ImageFilter> ImageFilter::Of(const Eye& eye, const Light& light, const ObjectSize& size, Workspace& workspace) {
  if (const std::optional<Refusal> refusal = CheckSize(size)) return *refusal;
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  const int side = SideFor(*beams, size);
  int largest = side;
  for (const Beam& beam : *beams) largest = std::max(largest, FrequenciesOf(beam, side * size.pixelArcmin).side);
  if (largest > kLargestLattice) {
    return Refusal{Problem::kFieldTooLarge, static_cast<double>(largest), 0.0, static_cast<double>(kLargestLattice)};
  }
  ImageFilter filter(size, side);
  for (const Beam& beam : *beams) {
    const FrequencyLattice frequencies = FrequenciesOf(beam, side * size.pixelArcmin);
    const std::size_t samples = At(frequencies.side, 0, frequencies.side);
    std::vector<double> re(samples), im(samples);
    if (!workspace.otf.Compute(beam.pupil, frequencies, re.data(), im.data())) {
      return Refusal{Problem::kTooSteep, 0.0, 0.0, 0.0, beam.line};
    }
    filter.Add(beam, frequencies, re, im);
  }
  return filter;
}

Outcome<RetinalImage> ImageFilter::ImageOf(const double* luminance, double surround, View view) const {
  if (!IsFinite(surround)) return Refusal{Problem::kLuminance, surround};
  const std::size_t samples = re_.size();
  std::vector<double> re(samples), im(samples);
  for (int r = 0; r < size_.rows; ++r) {
    for (int c = 0; c < size_.columns; ++c) {
      const std::size_t from = At(r, c, size_.columns);
      if (!IsFinite(luminance[from]))
        return Refusal{Problem::kLuminance, luminance[from], 0.0, 0.0, static_cast<int>(from)};
      re[At(r, c, side_)] = luminance[from] - surround;
    }
  }
  Zfft2dc(re.data(), im.data(), side_, side_, -1);
  for (std::size_t i = 0; i < samples; ++i) {
    const double a = re[i], b = im[i];
    re[i] = a * re_[i] - b * im_[i];
    im[i] = a * im_[i] + b * re_[i];
  }
  Zfft2dc(re.data(), im.data(), side_, side_, 1);

  RetinalImage image;
  image.columns = size_.columns + 2 * size_.margin;
  image.rows = size_.rows + 2 * size_.margin;
  image.view = view;
  image.luminance.resize(At(image.rows, 0, image.columns));
  for (const double sample : re) image.outside += sample;
  for (int r = 0; r < image.rows; ++r) {
    const int to = view == View::kPatient ? r : image.rows - 1 - r;
    const int from = (r - size_.margin + side_) % side_;
    for (int c = 0; c < image.columns; ++c) {
      const double sample = re[At(from, (c - size_.margin + side_) % side_, side_)];
      image.luminance[At(to, c, image.columns)] = surround + sample;
      image.outside -= sample;
    }
  }
  return image;
}

}  // namespace orvanel::physical
