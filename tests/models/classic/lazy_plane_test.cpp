// Tests lazily computed planes: a host always reads the last results of the engine, whatever was read before.
#include "orvanel/lazy_plane.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "orvanel/optics_engine.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using Plane = std::vector<double>;
using test::SameBits;

Coefficients Eye(double coma) {
  Coefficients c{};
  c[4] = 2e-4;
  c[7] = coma;
  return c;
}

class PhasePlane : public test::EveryKernel {
 protected:
  static void ComputeMtf(OpticsEngine& engine, double coma, int s = 256) {
    Plane mtf(65536);
    double step = 0.0;
    engine.synthesizeWavefront(Eye(coma).data(), 4.1, 1, 1, 1);
    engine.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, s);
  }

  static void ComputePsf(OpticsEngine& engine, double coma) {
    Plane psf(65536);
    double pitch = 0.0, strehl = 0.0;
    engine.synthesizeWavefront(Eye(coma).data(), 4.1, 1, 1, 1);
    engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, 256);
  }

  // Of an engine that has done nothing else, read at once.
  static Plane Fresh(double coma) {
    OpticsEngine engine;
    engine.phasePlane.data();
    ComputeMtf(engine, coma);
    return {engine.phasePlane.begin(), engine.phasePlane.end()};
  }

  OpticsEngine engine_;
};

TEST_P(PhasePlane, IsZeroBeforeTheFirstMtf) {
  EXPECT_TRUE(SameBits(engine_.phasePlane, Plane(65536)));
  EXPECT_EQ(engine_.phasePlane.side(), 256);
  EXPECT_EQ(engine_.phasePlane.size(), 65536U);
}

TEST_P(PhasePlane, ReadTwiceIsTheSame) {
  ComputeMtf(engine_, 3e-4);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(3e-4)));
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(3e-4)));
}

TEST_P(PhasePlane, IsThatOfTheLastMtfNotOfTheFirst) {
  ComputeMtf(engine_, 3e-4);
  ComputeMtf(engine_, -1e-4);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(-1e-4)));
  ComputeMtf(engine_, 5e-4);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(5e-4)));
}

TEST_P(PhasePlane, ReadAfterALaterPsfIsThatOfTheMtf) {
  ComputeMtf(engine_, 3e-4);
  ComputePsf(engine_, -1e-4);
  ComputePsf(engine_, 2e-4);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(3e-4)));
}

TEST_P(PhasePlane, IsWrittenByANewMtfAfterAPsfHadItWritten) {
  ComputeMtf(engine_, 3e-4);
  ComputePsf(engine_, -1e-4);
  ComputeMtf(engine_, 5e-4);
  ComputePsf(engine_, 2e-4);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(5e-4)));
}

TEST_P(PhasePlane, ReadAfterWhiteLightIsThatOfTheMtf) {
  ComputeMtf(engine_, 3e-4);
  Plane white(65536);
  double spacing = 0.0;
  engine_.PolychromaticPsf(white.data(), &spacing, 0);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(3e-4)));
}

TEST_P(PhasePlane, ReadAfterASearchAndAnImageIsThatOfTheMtf) {
  ComputeMtf(engine_, 3e-4);
  Plane image(65536);
  engine_.PatternRetinalImage(image.data(), Plane(65536, 0.5).data(), 256);
  engine_.ComputeStrehl(0.0006);
  FocusSearch search;
  search.maximumTrials = 5;
  engine_.OptimiseFocus(Eye(1e-4).data(), 4.1, search);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(3e-4)));
}

TEST_P(PhasePlane, BelongsToTheWavefrontOfTheMtfNotToTheOneHeld) {
  ComputeMtf(engine_, 3e-4);
  engine_.synthesizeWavefront(Eye(-1e-4).data(), 2.2, 1, 1, 1);
  std::fill(engine_.psfPlane.begin(), engine_.psfPlane.end(), 0.5);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(3e-4)));
}

TEST_P(PhasePlane, IsWholeWhenTheMtfIsCropped) {
  ComputeMtf(engine_, 3e-4, 90);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(3e-4)));
}

TEST_P(PhasePlane, SeenThroughAPointerTakenBeforeIsTheNewOne) {
  ComputeMtf(engine_, 3e-4);
  const double* const phase = engine_.phasePlane.data();
  ComputeMtf(engine_, -1e-4);
  EXPECT_TRUE(SameBits(phase, Fresh(-1e-4).data(), 65536));
  ComputePsf(engine_, 2e-4);
  EXPECT_TRUE(SameBits(phase, Fresh(-1e-4).data(), 65536));
  ComputeMtf(engine_, 5e-4, 90);
  EXPECT_TRUE(SameBits(phase, Fresh(5e-4).data(), 65536));
}

TEST_P(PhasePlane, KeepsWhatAHostWroteUntilTheNextMtf) {
  ComputeMtf(engine_, 3e-4);
  engine_.phasePlane(100, 90) = 7.5;
  ComputePsf(engine_, 2e-4);
  EXPECT_EQ(engine_.phasePlane(100, 90), 7.5);
  ComputeMtf(engine_, 5e-4);
  EXPECT_TRUE(SameBits(engine_.phasePlane, Fresh(5e-4)));
}

TEST_P(PhasePlane, IsWrittenAfterItsEngineHasMoved) {
  ComputeMtf(engine_, 3e-4);
  OpticsEngine moved = std::move(engine_);
  OpticsEngine assigned;
  ComputeMtf(assigned, -2e-4);
  assigned = std::move(moved);
  EXPECT_TRUE(SameBits(assigned.phasePlane, Fresh(3e-4)));
  ComputeMtf(assigned, 5e-4);
  EXPECT_TRUE(SameBits(assigned.phasePlane, Fresh(5e-4)));
}

TEST_P(PhasePlane, OfAnEngineThatOutlivesItsSourceIsItsOwn) {
  OpticsEngine kept;
  {
    OpticsEngine other;
    ComputeMtf(other, 3e-4);
    std::swap(kept, other);
    ComputeMtf(other, -2e-4);
  }
  EXPECT_TRUE(SameBits(kept.phasePlane, Fresh(3e-4)));
}

TEST_P(PhasePlane, ReadsAlikeThroughEachOfItsDoors) {
  const Plane expected = Fresh(3e-4);
  const auto fresh = [] {
    OpticsEngine engine;
    ComputeMtf(engine, 3e-4);
    return engine;
  };
  OpticsEngine a = fresh();
  EXPECT_EQ(a.phasePlane[30'000], expected[30'000]);
  OpticsEngine b = fresh();
  EXPECT_EQ(b.phasePlane(117, 48), expected[117 * 256 + 48]);
  const OpticsEngine c = fresh();
  EXPECT_EQ(c.phasePlane[30'000], expected[30'000]);
  const OpticsEngine d = fresh();
  EXPECT_EQ(d.phasePlane(117, 48), expected[117 * 256 + 48]);
  const OpticsEngine e = fresh();
  EXPECT_TRUE(std::equal(e.phasePlane.begin(), e.phasePlane.end(), expected.begin()));
  const OpticsEngine f = fresh();
  const GridPlane& plane = f.phasePlane;
  EXPECT_TRUE(SameBits(plane, expected));
}

ORVANEL_ON_EVERY_KERNEL(PhasePlane);

// ---- All planes together

// Whatever is called in whatever order: planes that nobody has looked at are in the end those of an engine whose planes
// were looked at from the start, which writes each at once.
class LazyPlanes : public test::EveryKernel {
 protected:
  static constexpr int kActions = 8;

  static void Act(OpticsEngine& engine, int action, double coma) {
    Plane plane(65536);
    double a = 0.0, b = 0.0;
    const Plane bars = Bars();
    switch (action) {
      case 0:
        engine.synthesizeWavefront(Eye(coma).data(), 4.1, 1, 1, 1);
        break;
      case 1:
        engine.ComputePsf(kWavelength, plane.data(), &a, &b, 256);
        break;
      case 2:
      case 3:
        engine.ComputeMtf(kWavelength, plane.data(), &a, nullptr, nullptr, nullptr, 256);
        break;
      case 4:
        engine.EnsureOtf();
        break;
      case 5:
        engine.PatternRetinalImage(plane.data(), bars.data(), 256);
        break;
      case 6:
        engine.otfValid = 0;
        break;
      default:
        engine.RescalePlane(plane.data(), 1.5);
        engine.ComputeStrehl(kWavelength);
        break;
    }
  }

  // Any of them, and which.
  static std::string ActOnBoth(OpticsEngine& lazy, OpticsEngine& eager, std::mt19937& random) {
    const int action = static_cast<int>(random() % kActions);
    const double coma = 1e-5 * static_cast<double>(random() % 100);
    Act(lazy, action, coma);
    Act(eager, action, coma);
    return std::to_string(action);
  }

  static Plane Bars() {
    Plane bars;
    for (int i = 0; i < 65536; ++i) bars.push_back(i / 5 % 2 == 0 ? 0.25 : 0.5);
    return bars;
  }

  static Plane ImageOf(OpticsEngine& engine) {
    Plane image(65536, -1.0);
    engine.PatternRetinalImage(image.data(), Bars().data(), 256);
    return image;
  }

  static void LookAtAll(OpticsEngine& engine) {
    for (LazyPlane* plane : {&engine.psfPlane, &engine.phasePlane, &engine.otfRealPlane, &engine.otfImagPlane}) {
      plane->data();
    }
  }

  static Plane CopyOf(const LazyPlane& plane) {
    Plane copy(plane.size());
    plane.CopyTo(copy.data());
    return copy;
  }

  static void ExpectTheSame(OpticsEngine& lazy, const OpticsEngine& eager, const std::string& sequence) {
    // Copies first: they must leave the planes as they are.
    EXPECT_TRUE(SameBits(CopyOf(lazy.psfPlane), eager.psfPlane)) << sequence;
    EXPECT_TRUE(SameBits(CopyOf(lazy.phasePlane), eager.phasePlane)) << sequence;
    EXPECT_TRUE(SameBits(CopyOf(lazy.otfRealPlane), eager.otfRealPlane)) << sequence;
    EXPECT_TRUE(SameBits(CopyOf(lazy.otfImagPlane), eager.otfImagPlane)) << sequence;
    EXPECT_EQ(lazy.otfValid, eager.otfValid) << sequence;
  }
};

TEST_P(LazyPlanes, AreThoseOfAnEngineThatWritesThemAtOnce) {
  std::mt19937 random(4);
  for (int trial = 0; trial < 30; ++trial) {
    OpticsEngine lazy, eager;
    LookAtAll(eager);
    std::string sequence;
    for (int step = 0; step < 12; ++step) {
      sequence += ActOnBoth(lazy, eager, random);
      if (random() % 4 == 0) ExpectTheSame(lazy, eager, sequence);
    }
    ExpectTheSame(lazy, eager, sequence);
    LookAtAll(lazy);
    ExpectTheSame(lazy, eager, sequence);
    EXPECT_TRUE(SameBits(ImageOf(lazy), ImageOf(eager))) << sequence;
  }
}

TEST_P(LazyPlanes, LookedAtHalfwayAreTheSameToo) {
  std::mt19937 random(5);
  for (int trial = 0; trial < 30; ++trial) {
    OpticsEngine lazy, eager;
    LookAtAll(eager);
    std::string sequence;
    for (int step = 0; step < 12; ++step) {
      sequence += ActOnBoth(lazy, eager, random);
      if (random() % 3 == 0) {
        // A look at one plane, and a sample changed there, as a host may.
        const auto change = [&](OpticsEngine& engine) {
          const std::array<LazyPlane*, 4> planes = {&engine.psfPlane, &engine.phasePlane, &engine.otfRealPlane,
                                                    &engine.otfImagPlane};
          (*planes[static_cast<std::size_t>(trial % 4)])(100, 90) += 0.25;
        };
        change(lazy);
        change(eager);
        sequence += 'w';
      }
    }
    ExpectTheSame(lazy, eager, sequence);
    EXPECT_TRUE(SameBits(ImageOf(lazy), ImageOf(eager))) << sequence;
  }
}

TEST_P(LazyPlanes, AreZeroInANewEngine) {
  for (const bool copied : {false, true}) {
    OpticsEngine engine;
    for (const LazyPlane* plane : {&engine.psfPlane, &engine.phasePlane, &engine.otfRealPlane, &engine.otfImagPlane}) {
      const Plane seen = copied ? CopyOf(*plane) : Plane(plane->begin(), plane->end());
      EXPECT_TRUE(SameBits(seen, Plane(65536)));
    }
  }
}

TEST_P(LazyPlanes, ThatNobodyHasLookedAtAreZeroToImagesOfANewEngineToo) {
  for (const std::uint8_t valid : {std::uint8_t{0}, std::uint8_t{1}}) {
    OpticsEngine lazy, eager;
    LookAtAll(eager);
    lazy.otfValid = eager.otfValid = valid;
    lazy.normaliseOutput = eager.normaliseOutput = 0;
    EXPECT_TRUE(SameBits(ImageOf(lazy), ImageOf(eager)));
    EXPECT_TRUE(SameBits(CopyOf(lazy.otfRealPlane), eager.otfRealPlane));
  }
}

TEST_P(LazyPlanes, ThePsfKeepsWhatAHostWroteUntilTheNextOne) {
  OpticsEngine engine;
  Act(engine, 2, 0.0);
  engine.psfPlane(100, 90) = 7.5;
  Act(engine, 4, 0.0);
  EXPECT_EQ(engine.psfPlane(100, 90), 7.5);
  EXPECT_EQ(CopyOf(engine.psfPlane)[100 * 256 + 90], 7.5);
  Act(engine, 1, 0.0);
  EXPECT_NE(engine.psfPlane(100, 90), 7.5);
}

TEST_P(LazyPlanes, ThePsfSeenThroughAPointerTakenBeforeIsTheNewOne) {
  OpticsEngine engine, fresh;
  const double* const psf = engine.psfPlane.data();
  for (const double coma : {1e-4, 4e-4}) {
    Act(engine, 0, coma);
    Act(engine, 2, 0.0);
    Act(fresh, 0, coma);
    Act(fresh, 2, 0.0);
    EXPECT_TRUE(SameBits(psf, CopyOf(fresh.psfPlane).data(), 65536));
  }
}

ORVANEL_ON_EVERY_KERNEL(LazyPlanes);

// ---- Planes that leave their engine

constexpr std::array<LazyPlane OpticsEngine::*, 7> kLazyPlanes = {
    &OpticsEngine::psfPlane,    &OpticsEngine::phasePlane,  &OpticsEngine::otfRealPlane, &OpticsEngine::otfImagPlane,
    &OpticsEngine::pupilXPlane, &OpticsEngine::pupilYPlane, &OpticsEngine::auxPlaneA};

class MovedPlanes : public testing::TestWithParam<int> {
 protected:
  // Everything that writes planes, for one eye.
  static void Compute(OpticsEngine& engine, double coma) {
    Plane mtf(engine.psfPlane.size());
    double step = 0.0;
    engine.synthesizeWavefront(Eye(coma).data(), 4.1 + coma, 1, 1, 1);
    engine.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, engine.gridSize);
    engine.EnsureOtf();
  }

  static std::vector<Plane> SamplesOf(const OpticsEngine& engine) {
    std::vector<Plane> planes;
    for (const auto plane : kLazyPlanes) {
      planes.emplace_back((engine.*plane).size());
      (engine.*plane).CopyTo(planes.back().data());
    }
    return planes;
  }

  static void ExpectSamples(const std::vector<LazyPlane>& planes, const std::vector<Plane>& samples) {
    for (std::size_t i = 0; i < planes.size(); ++i) EXPECT_TRUE(SameBits(planes[i], samples[i])) << i;
  }
};

TEST_P(MovedPlanes, OutliveTheirEngine) {
  for (const bool exposed : {false, true}) {
    std::vector<LazyPlane> planes;
    std::vector<Plane> samples;
    GridPlane wavefront;
    Plane wavefrontSamples;
    {
      OpticsEngine engine(GetParam());
      if (exposed) {
        for (const auto plane : kLazyPlanes) (engine.*plane).data();
      }
      Compute(engine, 3e-4);
      samples = SamplesOf(engine);
      wavefrontSamples.assign(engine.wavefrontPlane.begin(), engine.wavefrontPlane.end());
      for (const auto plane : kLazyPlanes) planes.push_back(std::move(engine.*plane));
      wavefront = std::move(engine.wavefrontPlane);
    }
    ExpectSamples(planes, samples);
    EXPECT_TRUE(SameBits(wavefront, wavefrontSamples));
    EXPECT_NE(samples[0], Plane(samples[0].size()));
  }
}

TEST_P(MovedPlanes, StayAsTheyAreWhileTheirEngineComputesTheNextEye) {
  OpticsEngine engine(GetParam()), fresh(GetParam());
  Compute(engine, 3e-4);
  const std::vector<Plane> samples = SamplesOf(engine);
  std::vector<LazyPlane> planes;
  for (const auto plane : kLazyPlanes) planes.push_back(std::move(engine.*plane));
  Compute(engine, -1e-4);
  ExpectSamples(planes, samples);

  // The engine's own planes are those of the next eye, in memory of their own.
  Compute(fresh, -1e-4);
  const std::vector<Plane> next = SamplesOf(fresh);
  EXPECT_EQ(SamplesOf(engine), next);
  for (std::size_t i = 0; i < planes.size(); ++i) {
    EXPECT_TRUE(SameBits(engine.*kLazyPlanes[i], next[i])) << i;
    EXPECT_NE((engine.*kLazyPlanes[i]).data(), planes[i].data());
  }
}

TEST_P(MovedPlanes, LeaveZerosBehind) {
  OpticsEngine engine(GetParam());
  Compute(engine, 3e-4);
  const LazyPlane psf = std::move(engine.psfPlane);
  EXPECT_EQ(engine.psfPlane.side(), GetParam());
  EXPECT_TRUE(SameBits(engine.psfPlane, Plane(psf.size())));
}

TEST(MovedPlanesOfTheFullGrid, LeaveTheImagesOfTheirEngineAsTheyWere) {
  OpticsEngine engine;
  const Plane object(65536, 0.25);
  Plane before(65536), after(65536), mtf(65536);
  double step = 0.0;
  engine.synthesizeWavefront(Eye(3e-4).data(), 4.1, 1, 1, 1);
  engine.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, 256);
  engine.PatternRetinalImage(before.data(), object.data(), 256);
  for (const auto plane : kLazyPlanes) const LazyPlane moved = std::move(engine.*plane);
  engine.PatternRetinalImage(after.data(), object.data(), 256);
  EXPECT_TRUE(SameBits(after, before));
  engine.otfValid = 0;
  engine.PatternRetinalImage(after.data(), object.data(), 256);
  EXPECT_TRUE(SameBits(after, before));
}

TEST_P(MovedPlanes, MayBePutIntoAnotherEngine) {
  OpticsEngine engine(GetParam()), other(GetParam());
  Compute(engine, 3e-4);
  Compute(other, -1e-4);
  other.psfPlane = std::move(engine.psfPlane);
  other.otfValid = 0;
  Compute(engine, 3e-4);
  Plane image(engine.psfPlane.size()), expected = image;
  const Plane object(image.size(), 0.25);
  other.PatternRetinalImage(image.data(), object.data(), GetParam());
  engine.PatternRetinalImage(expected.data(), object.data(), GetParam());
  EXPECT_TRUE(SameBits(other.otfRealPlane, engine.otfRealPlane));
  EXPECT_TRUE(SameBits(other.otfImagPlane, engine.otfImagPlane));
}

INSTANTIATE_TEST_SUITE_P(, MovedPlanes, testing::Values(256, 64), testing::PrintToStringParamName());

}  // namespace
}  // namespace orvanel
