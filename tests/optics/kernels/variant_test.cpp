// Tests that every table of kernels gives the bits of the baseline for any input.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "optics/kernels/dispatch.h"
#include "optics/kernels/tables.h"
#include "orvanel/optics_engine.h"
#include "tests/optics/kernels/scratch.h"
#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel {
namespace {

using reference::At;
using reference::Noise;
using Plane = std::vector<double>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class KernelVariants : public test::EveryKernel {
 protected:
  // compute(kernels, scratch) gives any number of samples.
  template <class Compute>
  static void ExpectTheSameBits(Compute compute) {
    const Plane actual = compute(*GetParam(), test::KernelScratch());
    const Plane expected = compute(*RunnableKernels().front(), test::KernelScratch());
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
      if (std::isnan(actual[i]) && std::isnan(expected[i])) continue;
      ASSERT_TRUE(test::SameBits(&actual[i], &expected[i], 1)) << i << ": " << actual[i] << ", " << expected[i];
    }
  }

  static Plane Joined(const Plane& a, const Plane& b) {
    Plane joined = a;
    joined.insert(joined.end(), b.begin(), b.end());
    return joined;
  }

  // Of this many waves at the most, on a disc, or everywhere.
  static Plane Wavefront(double waves, bool everywhere, unsigned seed) {
    Plane plane = Noise(65536, seed);
    for (int r = 0; r < 256; ++r) {
      for (int c = 0; c < 256; ++c) {
        double& w = plane[At(r, c, 256)];
        const bool inside = everywhere || (r - 128) * (r - 128) + (c - 128) * (c - 128) <= 4096;
        w = inside ? w * waves * kWavelength : kWavefrontOutside;
      }
    }
    return plane;
  }

  // Of ordinary numbers, tiny ones, zeros of both signs, and one that is not a number if so wished.
  static Plane Mixture(unsigned seed, bool withNan = false) {
    Plane plane = Noise(65536, seed);
    for (std::size_t i = 0; i < plane.size(); ++i) {
      if (i % 11 == 3) plane[i] = std::ldexp(plane[i], -static_cast<int>(i % 1000));
      if (i % 13 == 5) plane[i] = i % 2 == 0 ? 0.0 : -0.0;
    }
    if (withNan) plane[40'000] = kNan;
    return plane;
  }
};

TEST_P(KernelVariants, SynthesizesWithTheSameBits) {
  ExpectTheSameBits([](const Kernels& kernels, const test::KernelScratch&) {
    Plane w(65536), c = Noise(kCoefficients, 4);
    c[9] = 1e300;
    c[12] = -1e-300;
    kernels.synthesize(c.data(), 2, w.data());
    return w;
  });
}

TEST_P(KernelVariants, MakesTheSameIntensity) {
  for (const bool everywhere : {false, true}) {
    for (const double waves : {0.1, 3.0, 100.0, 1e5, 1.7e5, 1e7, 1e13}) {
      ExpectTheSameBits([&](const Kernels& kernels, const test::KernelScratch& scratch) {
        Plane intensity(256 * kIntensityPitch), rowMaxima(256);
        const Plane wavefront = Wavefront(waves, everywhere, everywhere ? 5 : 6);
        kernels.intensity(wavefront.data(), kWavelength, TransformTables(), scratch.Of(), intensity.data(),
                          rowMaxima.data());
        return Joined(intensity, rowMaxima);
      });
    }
  }
}

TEST_P(KernelVariants, MakesTheSameTransferFunction) {
  for (const bool withNan : {false, true}) {
    ExpectTheSameBits([&](const Kernels& kernels, const test::KernelScratch& scratch) {
      const Plane noise = Mixture(7, withNan);
      Plane intensity(256 * kIntensityPitch), psf(65536), mtf(65536), phase(65536);
      for (std::size_t i = 0; i < intensity.size(); ++i) {
        const std::size_t from = i / kIntensityPitch * 256 + i % kIntensityPitch % 256;
        intensity[i] = noise[from] * noise[from];
      }
      const Recentring from = {intensity.data(), 0.37, 91, 203};
      kernels.recentre(from, psf.data());
      kernels.transferFunction(from, TransformTables(), scratch.Of(), scratch.Spectrum());
      kernels.modulation(scratch.Spectrum(), mtf.data());
      kernels.phase(scratch.Spectrum(), phase.data());
      return Joined(psf, Joined(mtf, phase));
    });
  }
}

TEST_P(KernelVariants, TransformsWithTheSameBits) {
  ExpectTheSameBits([](const Kernels& kernels, const test::KernelScratch& scratch) {
    Plane re = Mixture(8), im = Mixture(9), centredRe = Mixture(10), centredIm = Mixture(11);
    kernels.transform(re.data(), im.data(), 0.37, TransformTables(), scratch.Of());
    kernels.centredTransform(centredRe.data(), centredIm.data(), -1, TransformTables(), scratch.Of());
    return Joined(Joined(re, im), Joined(centredRe, centredIm));
  });
}

TEST_P(KernelVariants, MakesTheSameSpectrumAndTotal) {
  // Constant rows whose partners end in the middle of all vectors (137, 200), and where a narrow vector of rows is
  // constant and the wider one about it is not (130, 132); none, rows without their partners, and all.
  for (const int constantRows : {0, 3, 64, 130, 132, 137, 200, 256}) {
    ExpectTheSameBits([&](const Kernels& kernels, const test::KernelScratch& scratch) {
      Plane plane = Mixture(12), re(65536), im(65536);
      for (std::size_t i = 0; i < plane.size(); ++i) {
        if (static_cast<int>(i / 256) < constantRows) plane[i] = 0.7 + static_cast<double>(i / 256);
      }
      const double total = kernels.realTransform(plane.data(), TransformTables(), scratch.Of(), scratch.Spectrum());
      kernels.unfold(scratch.Spectrum(), re.data(), im.data());
      return Joined({total}, Joined(re, im));
    });
  }
}

TEST_P(KernelVariants, MakesTheSameImages) {
  for (const bool withNan : {false, true}) {
    ExpectTheSameBits([&](const Kernels& kernels, const test::KernelScratch& scratch) {
      const test::KernelScratch otf;
      Plane object = Mixture(13);
      std::fill_n(object.begin(), 130 * 256, 0.7);  // rows that narrow vectors take as constant, and wide ones do not
      const Plane psf = Mixture(14, withNan);
      Plane kept(65536), stretched(65536), keptFromPlanes(65536), keptFromRows(65536), stretchedFromPlanes(65536);
      Plane re(65536), im(65536);
      const Tables& tables = TransformTables();
      const double total = kernels.realTransform(object.data(), tables, scratch.Of(), scratch.Spectrum());
      const ObjectSpectrum complete = {scratch.Spectrum(), nullptr}, rows = {scratch.Spectrum(), &scratch.Spectrum()};
      kernels.realTransform(psf.data(), tables, scratch.Of(), otf.Spectrum());
      kernels.unfold(otf.Spectrum(), re.data(), im.data());
      const TransferPlanes whole = {re.data(), im.data()};
      const ImageScale keep = {true, total}, stretch = {false, 0.0};
      kernels.image(complete, otf.Spectrum(), keep, tables, scratch.Of(), kept.data());
      kernels.imageThroughPlanes(complete, whole, keep, tables, scratch.Of(), keptFromPlanes.data());
      kernels.imageThroughPlanes(complete, whole, stretch, tables, scratch.Of(), stretchedFromPlanes.data());
      kernels.image(complete, otf.Spectrum(), stretch, tables, scratch.Of(), stretched.data());
      EXPECT_EQ(kernels.realRows(object.data(), tables, scratch.Of(), scratch.Spectrum()), total);
      kernels.image(rows, otf.Spectrum(), keep, tables, scratch.Of(), keptFromRows.data());
      return Joined(Joined(Joined(kept, stretched), Joined(keptFromPlanes, keptFromRows)), stretchedFromPlanes);
    });
  }
}

TEST_P(KernelVariants, DrawsTheSameRings) {
  ExpectTheSameBits([](const Kernels& kernels, const test::KernelScratch&) {
    Plane plane(65536);
    kernels.drawRing(plane.data(), 128.5, 21.0 * 21.0, 35.0 * 35.0);
    return plane;
  });
}

TEST_P(KernelVariants, MakesTheSameEngine) {
  ExpectTheSameBits([](const Kernels& kernels, const test::KernelScratch&) {
    UseKernels(kernels);
    std::array<double, kCoefficients> c{};
    c[4] = 3e-4;
    c[8] = -1e-4;
    OpticsEngine engine(c.data(), 3.9, 256, 1, 1, 1);
    Plane mtf(65536), image(65536), ring(65536);
    double step = 0.0, acuity = 0.0;
    engine.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, 256);
    engine.RingRetinalImage(image.data(), ring.data(), 0.3, &acuity, 1);
    UseKernels(*GetParam());
    return Joined(Joined(mtf, image), {step, acuity, engine.strehlRatio, engine.ComputeStrehl(0.0005)});
  });
}

ORVANEL_ON_EVERY_KERNEL(KernelVariants);

}  // namespace
}  // namespace orvanel
