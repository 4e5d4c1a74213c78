// Transforms of planes against their definition in long double.
#include "models/physical/transform/plane_transform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "tests/models/physical/examples.h"
#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel::physical {
namespace {

using Samples = std::vector<double>;
using Complex = std::complex<long double>;

// Every radix, alone and more than once.
constexpr int kSides[] = {16, 32, 48, 64, 80, 96, 128, 144, 240, 256, 400, 576, 1280};

// Of a unit of the root of the sum of squares.
double BoundOf(int side) { return std::ldexp(std::log2(side), -50); }

std::size_t Index(int row, int column, int columns) { return reference::At(row, column, columns); }

// The definition at one place, of the samples in a corner of the plane.
template <class At>
Complex Transformed(At at, int rows, int columns, int side, int p, int q) {
  Complex sum = 0.0L;
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < columns; ++c) {
      const long long turns = (1LL * r * p + 1LL * c * q) % side;
      sum += at(r, c) * std::polar(1.0L, 2 * std::numbers::pi_v<long double> * turns / side);
    }
  }
  return sum;
}

// A corner that ends within a block of rows; columns to a whole block are 0.
struct Corner {
  int rows, columns, pitch;
  Samples re, im;
  explicit Corner(int side, bool full = false)
      : rows(full ? side : side * 2 / 5),
        columns(full ? side : side / 3),
        pitch((columns + 7) / 8 * 8),
        re(Index(rows, 0, pitch)),
        im(re) {
    const Samples a = reference::Noise(rows * columns, 1), b = reference::Noise(rows * columns, 2);
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < columns; ++c) {
        re[Index(r, c, pitch)] = a[Index(r, c, columns)];
        im[Index(r, c, pitch)] = b[Index(r, c, columns)];
      }
    }
  }
  double Size() const {
    double sum = 0.0;
    for (std::size_t i = 0; i < re.size(); ++i) sum += re[i] * re[i] + im[i] * im[i];
    return std::sqrt(sum);
  }
};

class PlaneTransformVariants : public test::EveryKernel {};

TEST(PlaneTransforms, HaveSidesOfSmallFactors) {
  EXPECT_EQ(PlaneTransform::SideFor(1), 16);
  EXPECT_EQ(PlaneTransform::SideFor(256), 256);
  EXPECT_EQ(PlaneTransform::SideFor(257), 288);
  EXPECT_EQ(PlaneTransform::SideFor(641), 720);
  EXPECT_EQ(PlaneTransform::SideFor(8180), 8192);
}

TEST_P(PlaneTransformVariants, GiveThePowerOfAFieldInACorner) {
  for (const int side : kSides) {
    for (const bool full : {false, true}) {
      if (full && side > 100) continue;
      const PlaneTransform transform(ActiveChords(), side);
      PlaneTransform::Memory memory;
      const Corner field(side, full);
      AlignedMemory power(Index(side, 0, side));
      for (const bool add : {false, true}) {
        transform.PowerSpectrum({field.re.data(), field.im.data(), field.pitch, field.rows, field.pitch}, 0.7, add,
                                power.data(), memory);
      }
      for (const auto& [p, q] : {std::pair{0, 0}, {1, 0}, {3, 2}, {side - 1, side / 2}, {side / 2 + 1, side - 5}}) {
        const Complex x = Transformed(
            [&](int r, int c) {
              const std::size_t i = Index(r, c, field.pitch);
              return Complex(field.re[i], field.im[i]);
            },
            field.rows, field.columns, side, p, q);
        const double expected = static_cast<double>(1.4L * std::norm(x));
        const double error = BoundOf(side) * side * field.Size();
        EXPECT_NEAR(power.data()[Index(p, q, side)], expected, 4 * (std::sqrt(expected) + error) * error) << side;
      }
    }
  }
}

TEST_P(PlaneTransformVariants, GiveHalfTheSpectrumOfARealPlane) {
  for (const int side : kSides) {
    const PlaneTransform transform(ActiveChords(), side);
    PlaneTransform::Memory memory;
    const Corner plane(side);
    AlignedMemory spectrum(transform.SpectrumSize());
    transform.HalfSpectrum(plane.re.data(), plane.pitch, plane.rows, plane.pitch, spectrum.data(), memory);
    for (const auto& [p, q] : {std::pair{0, 0}, {1, 0}, {3, 2}, {side - 1, side / 2}, {side / 2 + 1, side / 2 - 5}}) {
      const Complex x = Transformed([&](int r, int c) { return Complex(plane.re[Index(r, c, plane.pitch)]); },
                                    plane.rows, plane.columns, side, p, q);
      const double* const v = spectrum.data() + transform.At(p, q);
      const double error = BoundOf(side) * side * plane.Size();
      EXPECT_NEAR(v[0], static_cast<double>(x.real()), error) << side;
      EXPECT_NEAR(v[ActiveChords().width], static_cast<double>(x.imag()), error) << side;
    }
  }
}

// Multiplying by the spectrum of a plane that is 1 at one place moves the other plane there.
TEST_P(PlaneTransformVariants, FilterAPlaneAndKeepItsSum) {
  for (const int side : kSides) {
    const PlaneTransform transform(ActiveChords(), side);
    PlaneTransform::Memory memory;
    const Corner plane(side);
    AlignedMemory filter(transform.SpectrumSize());
    constexpr int kDown = 5, kRight = 3;
    Samples point(Index(kDown + 1, 0, 8));
    point[Index(kDown, kRight, 8)] = 1.0 / side / side;
    transform.HalfSpectrum(point.data(), 8, kDown + 1, 8, filter.data(), memory);
    // From beyond the edges: the last rows and columns of the period come first.
    const int rows = plane.rows + 3, columns = plane.pitch + 8, firstRow = side - 4, firstColumn = side - 1;
    Samples image(Index(rows, 0, columns), 42.0);
    const double sum = transform.Filter(plane.re.data(), plane.pitch, plane.rows, plane.pitch, filter.data(),
                                        {image.data(), columns, firstRow, firstColumn, rows, columns}, memory);
    long double expectedSum = 0.0L;
    for (const double sample : plane.re) expectedSum += sample;
    const double error = 3 * BoundOf(side) * plane.Size();
    EXPECT_NEAR(sum, static_cast<double>(expectedSum), error * side) << side;
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < std::min(columns, side); ++c) {
        const int row = (firstRow + r - kDown + side) % side, column = (firstColumn + c - kRight + side) % side;
        const bool inside = row < plane.rows && column < plane.pitch;
        ASSERT_NEAR(image[Index(r, c, columns)], inside ? plane.re[Index(row, column, plane.pitch)] : 0.0, error)
            << side << ' ' << r << ' ' << c;
      }
    }
  }
}

// All that the kernels give, one after the other.
Samples Everything(const ChordKernels& kernels, int side) {
  const PlaneTransform transform(kernels, side);
  PlaneTransform::Memory memory;
  const Corner plane(side);
  Samples all(Index(side, 0, side));
  transform.PowerSpectrum({plane.re.data(), plane.im.data(), plane.pitch, plane.rows, plane.pitch}, 0.7, false,
                          all.data(), memory);
  AlignedMemory spectrum(transform.SpectrumSize()), filter(transform.SpectrumSize());
  transform.HalfSpectrum(plane.re.data(), plane.pitch, plane.rows, plane.pitch, spectrum.data(), memory);
  transform.HalfSpectrum(plane.im.data(), plane.pitch, plane.rows, plane.pitch, filter.data(), memory);
  for (int r = 0; r < side; ++r) {
    for (int q = 0; q <= side / 2; ++q) {
      all.push_back(spectrum.data()[transform.At(r, q)]);
      all.push_back(spectrum.data()[transform.At(r, q) + static_cast<std::size_t>(kernels.width)]);
    }
  }
  Samples image(Index(11, 0, 16));
  all.push_back(transform.Filter(plane.re.data(), plane.pitch, plane.rows, plane.pitch, filter.data(),
                                 {image.data(), 16, side - 2, 3, 11, 16}, memory));
  all.insert(all.end(), image.begin(), image.end());
  return all;
}

TEST_P(PlaneTransformVariants, GiveTheSameBits) {
  for (const int side : kSides) {
    EXPECT_TRUE(
        test::SameBits(Everything(ActiveChords(), side), Everything(ChordKernelsOf(*RunnableKernels().front()), side)))
        << side;
  }
}

TEST(PlaneTransforms, AreKept) {
  PlaneTransforms transforms(ActiveChords());
  const PlaneTransform& first = transforms.Of(48);
  EXPECT_EQ(first.side(), 48);
  EXPECT_EQ(&transforms.Of(48), &first);
  EXPECT_EQ(transforms.Of(64).side(), 64);
}

ORVANEL_ON_EVERY_KERNEL(PlaneTransformVariants);

}  // namespace
}  // namespace orvanel::physical
