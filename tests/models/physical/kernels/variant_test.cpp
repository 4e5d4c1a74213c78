// Every table of the physical model's kernels gives the numbers of their definition, and the bits of the plainest.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <vector>

#include "models/physical/kernels/dispatch.h"
#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel::physical {
namespace {

using reference::Noise;
using Samples = std::vector<double>;

constexpr int kNodes = 3 * kChordBlock;

class ChordKernelVariants : public test::EveryKernel {
 protected:
  // compute(kernels) gives any number of samples.
  template <class Compute>
  static void ExpectTheSameBits(Compute compute) {
    EXPECT_TRUE(
        test::SameBits(compute(ChordKernelsOf(*GetParam())), compute(ChordKernelsOf(*RunnableKernels().front()))));
  }
};

// What one chord needs, without symmetry.
struct Chord {
  Samples nodes = Noise(kNodes, 1), weights = Noise(kNodes, 2), phase = Noise(11, 3);
  std::array<double, 3> attenuation = {-0.3, 0.7, -1.9};
  Chord() {
    for (double& u : nodes) u = std::fabs(u);
    for (double& c : phase) c *= 40.0;
  }
  ChordField Of(bool attenuated) const {
    return {nodes.data(), weights.data(), kNodes, 0.83, 0.37, phase.data(), attenuated ? attenuation.data() : nullptr};
  }
};

Samples FieldOf(const ChordKernels& kernels, const ChordField& chord) {
  Samples field(4 * kNodes);
  kernels.fieldOnChord(chord, field.data());
  return field;
}

TEST_P(ChordKernelVariants, GiveTheFieldOnBothSidesOfAChord) {
  const Chord chord;
  for (const bool attenuated : {false, true}) {
    const Samples field = FieldOf(ChordKernelsOf(*GetParam()), chord.Of(attenuated));
    for (std::size_t i = 0; i < kNodes; ++i) {
      const auto at = [&](long double u) {
        long double phase = 0.0L, exponent = 0.0L;
        for (std::size_t k = 11; k-- > 0;) phase = phase * u + chord.phase[k];
        for (std::size_t k = 3; k-- > 0;) exponent = exponent * u + chord.attenuation[k];
        return 0.37L * chord.weights[i] * (attenuated ? std::exp(exponent) : 1.0L) * std::polar(1.0L, phase);
      };
      const std::complex<long double> right = at(0.83L * chord.nodes[i]), left = at(-0.83L * chord.nodes[i]);
      const std::complex<long double> even = right + left, odd = right - left;
      // Phases of up to 440 rad round by some 11 steps of 2^-45.
      constexpr double kBound = 1e-12;
      EXPECT_NEAR(field[i], static_cast<double>(even.real()), kBound) << i;
      EXPECT_NEAR(field[kNodes + i], static_cast<double>(even.imag()), kBound) << i;
      EXPECT_NEAR(field[2 * kNodes + i], static_cast<double>(odd.real()), kBound) << i;
      EXPECT_NEAR(field[3 * kNodes + i], static_cast<double>(odd.imag()), kBound) << i;
    }
  }
}

TEST_P(ChordKernelVariants, GiveTheSameFields) {
  for (const bool attenuated : {false, true}) {
    ExpectTheSameBits([&](const ChordKernels& kernels) { return FieldOf(kernels, Chord().Of(attenuated)); });
  }
}

// Real parts, then imaginary ones.
Samples RowOf(const ChordKernels& kernels, bool attenuated) {
  const Chord chord;
  const Samples places = Noise(kNodes, 12);
  Samples field(2 * kNodes);
  kernels.fieldOnRow({places.data(), chord.weights.data(), kNodes, chord.phase.data(),
                      attenuated ? chord.attenuation.data() : nullptr},
                     field.data(), field.data() + kNodes);
  return field;
}

TEST_P(ChordKernelVariants, GiveTheFieldOnARow) {
  const Chord chord;
  const Samples places = Noise(kNodes, 12);
  for (const bool attenuated : {false, true}) {
    const Samples field = RowOf(ChordKernelsOf(*GetParam()), attenuated);
    for (std::size_t i = 0; i < kNodes; ++i) {
      long double phase = 0.0L, exponent = 0.0L;
      for (std::size_t k = 11; k-- > 0;) phase = phase * places[i] + chord.phase[k];
      for (std::size_t k = 3; k-- > 0;) exponent = exponent * places[i] + chord.attenuation[k];
      const std::complex<long double> expected =
          chord.weights[i] * (attenuated ? std::exp(exponent) : 1.0L) * std::polar(1.0L, phase);
      constexpr double kBound = 1e-12;  // as on chords
      EXPECT_NEAR(field[i], static_cast<double>(expected.real()), kBound) << i;
      EXPECT_NEAR(field[kNodes + i], static_cast<double>(expected.imag()), kBound) << i;
    }
  }
}

TEST_P(ChordKernelVariants, GiveTheSameFieldOnARow) {
  for (const bool attenuated : {false, true}) {
    ExpectTheSameBits([&](const ChordKernels& kernels) { return RowOf(kernels, attenuated); });
  }
}

Samples MomentsOf(const ChordKernels& kernels) {
  const Chord chord;
  const Samples field = Noise(4 * kNodes, 11);
  Samples moments(6 * kChordBlock);
  kernels.chordMoments(chord.Of(false), field.data(), moments.data());
  return moments;
}

TEST_P(ChordKernelVariants, GiveTheMomentsOfAField) {
  const Samples moments = MomentsOf(ChordKernelsOf(*GetParam())), field = Noise(4 * kNodes, 11), nodes = Chord().nodes;
  for (std::size_t k = 0; k < 6; ++k) {
    for (std::size_t lane = 0; lane < kChordBlock; ++lane) {
      long double sum = 0.0L;
      for (std::size_t i = lane; i < kNodes; i += kChordBlock) {
        const std::size_t part[] = {0, 1, 2, 3, 0, 1};
        sum += std::pow(0.83L * nodes[i], static_cast<int>(k / 2)) * field[part[k] * kNodes + i];
      }
      EXPECT_NEAR(moments[k * kChordBlock + lane], static_cast<double>(sum), 1e-15) << k << ' ' << lane;
    }
  }
}

TEST_P(ChordKernelVariants, GiveTheSameMoments) { ExpectTheSameBits(MomentsOf); }

// More blocks than are turned from one whose angles are computed.
Samples WavesOf(const ChordKernels& kernels, double first) {
  constexpr int kBlocks = 35;
  Samples waves(2 * kChordBlock * kBlocks * kNodes);
  kernels.columnWaves(Chord().nodes.data(), kNodes, {0.91, first, kBlocks}, waves.data());
  return waves;
}

TEST_P(ChordKernelVariants, GiveCosineAndSineOfNodesTimesPlaces) {
  for (const double first : {0.0, 0.5}) {
    const Samples waves = WavesOf(ChordKernelsOf(*GetParam()), first), nodes = Chord().nodes;
    for (std::size_t i = 0; i < waves.size(); ++i) {
      const std::size_t lane = i % kChordBlock, isSine = i / kChordBlock % 2, node = i / (2 * kChordBlock) % kNodes;
      const std::size_t block = i / (2 * kChordBlock * kNodes);
      const long double angle = 0.91L * nodes[node] * (first + static_cast<double>(block * kChordBlock + lane));
      ASSERT_NEAR(waves[i], static_cast<double>(isSine == 1 ? std::sin(angle) : std::cos(angle)), 1e-13) << i;
    }
  }
}

TEST_P(ChordKernelVariants, GiveTheSameWaves) {
  for (const double first : {0.0, 0.5}) {
    ExpectTheSameBits([&](const ChordKernels& kernels) { return WavesOf(kernels, first); });
  }
}

Samples SumsOf(const ChordKernels& kernels) {
  const Samples waves = Noise(2 * kChordBlock * kNodes, 5), upper = Noise(4 * kNodes, 6), lower = Noise(4 * kNodes, 7);
  Samples sums(8 * kChordBlock);
  kernels.columnSums(waves.data(), kNodes, upper.data(), lower.data(), sums.data());
  return sums;
}

TEST_P(ChordKernelVariants, SumTheNodesOfTwoChordsByColumns) {
  const Samples waves = Noise(2 * kChordBlock * kNodes, 5), upper = Noise(4 * kNodes, 6), lower = Noise(4 * kNodes, 7);
  const Samples sums = SumsOf(ChordKernelsOf(*GetParam()));
  for (std::size_t k = 0; k < 8; ++k) {
    for (std::size_t c = 0; c < kChordBlock; ++c) {
      const Samples& field = k < 4 ? upper : lower;
      long double sum = 0.0L;
      for (std::size_t i = 0; i < kNodes; ++i) {
        const std::size_t sine = k % 4 < 2 ? 0 : kChordBlock;
        sum += static_cast<long double>(field[k % 4 * kNodes + i]) * waves[i * 2 * kChordBlock + sine + c];
      }
      EXPECT_NEAR(sums[k * kChordBlock + c], static_cast<double>(sum), 1e-14) << k << ' ' << c;
    }
  }
}

TEST_P(ChordKernelVariants, GiveTheSameSums) { ExpectTheSameBits(SumsOf); }

constexpr int kPairs = 5, kRowPairs = 7;

// Rows of positive coordinates, then those of negative ones.
Samples RowsOf(const ChordKernels& kernels, bool add, bool middle) {
  const Samples sums = Noise(4 * kChordBlock * kPairs, 8), waves = Noise((2 * kRowPairs + 3) * kPairs, 9);
  Samples rows = Noise(2 * kChordBlock * kRowPairs, 10);
  RowSums job{};
  job.sums = sums.data();
  job.waves = waves.data();
  job.wavesPitch = 2 * kRowPairs + 3;
  job.pairs = kPairs;
  job.rowPairs = kRowPairs;
  job.plus = rows.data();
  job.minus = middle ? rows.data() : rows.data() + kChordBlock * kRowPairs;
  job.plusPitch = kChordBlock;
  job.minusPitch = middle ? 0 : kChordBlock;
  if (middle) job.rowPairs = 1;
  job.factor = 0.6;
  job.add = add;
  kernels.rowsFromSums(job);
  return rows;
}

TEST_P(ChordKernelVariants, SumTheChordsByRows) {
  const Samples sums = Noise(4 * kChordBlock * kPairs, 8), waves = Noise((2 * kRowPairs + 3) * kPairs, 9);
  const Samples before = Noise(2 * kChordBlock * kRowPairs, 10);
  for (const bool add : {false, true}) {
    const Samples rows = RowsOf(ChordKernelsOf(*GetParam()), add, false);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::size_t c = i % kChordBlock, row = i / kChordBlock % kRowPairs;
      const long double sign = i < kChordBlock * kRowPairs ? 1.0L : -1.0L;
      std::complex<long double> u = 0.0L;
      for (std::size_t j = 0; j < kPairs; ++j) {
        const double* const s = sums.data() + j * 4 * kChordBlock + c;
        const double* const wave = waves.data() + j * (2 * kRowPairs + 3) + 2 * row;
        const std::complex<long double> even(s[0], s[kChordBlock]), odd(s[2 * kChordBlock], s[3 * kChordBlock]);
        u += even * static_cast<long double>(wave[0]) -
             sign * std::complex<long double>(0.0L, 1.0L) * odd * static_cast<long double>(wave[1]);
      }
      EXPECT_NEAR(rows[i], static_cast<double>((add ? before[i] : 0.0L) + 0.6L * std::norm(u)), 1e-14) << i;
    }
  }
}

TEST_P(ChordKernelVariants, AddToTheRowInTheMiddleOnce) {
  const Samples before = Noise(2 * kChordBlock * kRowPairs, 10);
  const Samples replaced = RowsOf(ChordKernelsOf(*GetParam()), false, true);
  const Samples added = RowsOf(ChordKernelsOf(*GetParam()), true, true);
  for (std::size_t c = 0; c < kChordBlock; ++c) EXPECT_NEAR(added[c] - before[c], replaced[c], 1e-15);
}

TEST_P(ChordKernelVariants, GiveTheSameRows) {
  for (const bool add : {false, true}) {
    for (const bool middle : {false, true}) {
      ExpectTheSameBits([&](const ChordKernels& kernels) { return RowsOf(kernels, add, middle); });
    }
  }
}

ORVANEL_ON_EVERY_KERNEL(ChordKernelVariants);

}  // namespace
}  // namespace orvanel::physical
