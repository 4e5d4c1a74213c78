// Tests random sequences of calls, each after a new load, against a small model of the state of the library. Every
// result is compared, sample by sample, with that of a new engine for the eye in the model. ORVANEL_SEQUENCES is the
// number of sequences; the first that fails is printed.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "interface/pattern_asset.h"
#include "optics/mtf.h"
#include "orvanel/optics_engine.h"
#include "tests/support/loaded_library.h"
#include "tests/support/redirected_stdout.h"

namespace orvanel {
namespace {

using test::LoadedLibrary;
using Plane = std::vector<double>;
using Coefficients = std::array<double, ORVANEL_COEFFICIENTS>;

constexpr int kSequencesInShort = 300;
constexpr int kMaxCalls = 12;
constexpr double kUntouched = -123.25;

constexpr std::array kPupils = {0.0, std::numeric_limits<double>::quiet_NaN(), 3.0, 4.1, -6.0};
constexpr std::array kAcuities = {0.4, 1.3};
constexpr std::array<Coefficients, 3> kEyes = {{{},
                                                {0.0, 0.0, 0.0, 1.1e-4, 2.3e-4, 0.0, 0.0, -1.7e-4, 0.0, 0.6e-4},
                                                {9.0, -2.0, 4.0, 0.0, 0.0, -0.9e-4, 0.0, 0.0, 1.3e-4}}};

// ---- What must come out: by an engine of its own for each eye

struct EyeKey {
  double pupil;
  std::size_t eye;
  auto operator<=>(const EyeKey&) const = default;
};

struct Truth {
  Plane psf, mtf, row, column, limit, stretchedStar, keptStar;
  double strehl = 0.0, halfWidth = 0.0, range = 0.0;
  std::map<std::pair<std::size_t, int>, std::tuple<Plane, Plane, double>> rings;  // image, optotype, effective acuity
};

const Plane& StarItself() {
  static const Plane star = [] {
    Plane plane(ORVANEL_PLANE_SAMPLES);
    LoadPatternAsset(plane.data());
    return plane;
  }();
  return star;
}

OpticsEngine EngineOf(const EyeKey& key) { return {kEyes[key.eye].data(), key.pupil, 256, 1, 1, 1}; }

const Truth& TruthOf(const EyeKey& key) {
  static std::map<EyeKey, Truth> known;
  if (const auto found = known.find(key); found != known.end()) return found->second;
  Truth& truth = known[key];
  OpticsEngine engine = EngineOf(key);
  truth.mtf.resize(ORVANEL_PLANE_SAMPLES);
  truth.row.resize(128);
  truth.column.resize(128);
  truth.limit.resize(128);
  double step = 0.0;
  engine.ComputeMtf(kWavelength, truth.mtf.data(), &step, truth.row.data(), truth.column.data(), truth.limit.data(),
                    256);
  truth.range = step * 127.5;
  truth.psf.assign(engine.psfPlane.begin(), engine.psfPlane.end());
  truth.strehl = engine.strehlRatio;
  truth.halfWidth = engine.psfHalfWidth;
  truth.stretchedStar.resize(ORVANEL_PLANE_SAMPLES);
  truth.keptStar.resize(ORVANEL_PLANE_SAMPLES);
  engine.PatternRetinalImage(truth.stretchedStar.data(), StarItself().data(), 256);
  engine.normaliseOutput = 0;
  engine.PatternRetinalImage(truth.keptStar.data(), StarItself().data(), 256);
  for (std::size_t a = 0; a < kAcuities.size(); ++a) {
    for (int gap = 1; gap <= 4; ++gap) {
      Plane image(ORVANEL_PLANE_SAMPLES), optotype(ORVANEL_PLANE_SAMPLES);
      double effective = 0.0;
      engine.RingRetinalImage(image.data(), optotype.data(), kAcuities[a], &effective, gap);
      truth.rings[{a, gap}] = {image, optotype, effective};
    }
  }
  return truth;
}

// ---- What the library remembers

struct Model {
  double pupil = 0.0;         // the last one given
  std::optional<EyeKey> eye;  // of the results
  bool stretches = false;     // the star's image
  bool hasStar = false;       // the star itself may be asked for
};

class Sequence {
 public:
  Sequence(std::uint32_t seed, const LoadedLibrary& library) : random_(seed), library_(library) {}

  void Run() {
    for (std::size_t i = 0, count = 1 + Below(kMaxCalls); i < count; ++i) Call();
  }

  bool good() const { return good_; }
  std::string calls() const { return calls_.str(); }

 private:
  std::size_t Below(std::size_t count) { return random_() % count; }

  void Expect(bool good) { good_ = good_ && good; }
  static bool Same(const Plane& a, const Plane& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
  }
  static bool Same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
  static bool IsUntouched(const Plane& plane) { return plane.front() == kUntouched && Same(plane, Untouched()); }
  static const Plane& Untouched() {
    static const Plane plane(ORVANEL_PLANE_SAMPLES, kUntouched);
    return plane;
  }
  // A buffer whose samples are untouched, where a refusal is to leave them so.
  Plane& Fresh(Plane& plane, bool refusal) {
    if (refusal) plane = Untouched();
    return plane;
  }

  void Call() {
    switch (Below(10)) {
      case 0:
      case 1:
        return InputPupil();
      case 2:
        return InputZer();
      case 3:
        return Psf();
      case 4:
        return Mtf();
      case 5:
        return Graph();
      case 6:
        return Ring();
      case 7:
        return NullRing();
      case 8:
        return Star();
      default:
        return Original();
    }
  }

  void InputPupil() {
    model_.pupil = kPupils[Below(kPupils.size())];
    calls_ << "InputPupil(" << model_.pupil << ")\n";
    library_.InputPupil(model_.pupil);
  }

  void InputZer() {
    const std::size_t eye = Below(kEyes.size());
    calls_ << "InputZer(eye " << eye << ")\n";
    const bool accepted = !std::isnan(model_.pupil) && model_.pupil != 0.0;
    Expect(library_.InputZer(kEyes[eye].data()) == (accepted ? 1 : 0));
    if (!accepted) return;
    model_.eye = EyeKey{model_.pupil, eye};
    model_.stretches = true;
  }

  void Psf() {
    calls_ << "GetPSF\n";
    double strehl = kUntouched, halfWidth = kUntouched;
    Expect(library_.GetPSF(plane_.data(), &strehl, &halfWidth) == 1);
    if (model_.eye) {
      const Truth& truth = TruthOf(*model_.eye);
      Expect(Same(plane_, truth.psf) && Same(strehl, truth.strehl) && Same(halfWidth, truth.halfWidth));
    } else {
      Expect(Same(plane_, Plane(ORVANEL_PLANE_SAMPLES)) && Same(strehl, 0.0) && Same(halfWidth, 0.0));
    }
  }

  void Mtf() {
    calls_ << "GetMTF\n";
    double range = kUntouched;
    const bool done = library_.GetMTF(Fresh(plane_, !model_.eye).data(), &range) == 1;
    Expect(done == model_.eye.has_value());
    if (model_.eye) {
      Expect(Same(plane_, TruthOf(*model_.eye).mtf) && Same(range, TruthOf(*model_.eye).range));
    } else {
      Expect(IsUntouched(plane_) && range == kUntouched);
    }
  }

  void Graph() {
    const bool wantsLimit = Below(2) == 0;
    calls_ << "GetMTFGraph(" << (wantsLimit ? "limit" : "null") << ")\n";
    Plane row(128, kUntouched), column(128, kUntouched), limit(128, kUntouched);
    const Plane untouched = limit;
    double range = kUntouched;
    const bool done = library_.GetMTFGraph(row.data(), column.data(), wantsLimit ? limit.data() : nullptr, &range) == 1;
    Expect(done == model_.eye.has_value());
    if (model_.eye) {
      const Truth& truth = TruthOf(*model_.eye);
      Expect(Same(row, truth.row) && Same(column, truth.column) && Same(range, truth.range));
      Expect(Same(limit, wantsLimit ? truth.limit : untouched));
    } else {
      Expect(Same(row, untouched) && Same(column, untouched) && Same(limit, untouched) && range == kUntouched);
    }
  }

  void Ring() {
    const std::size_t acuity = Below(kAcuities.size());
    const int direction = static_cast<int>(Below(7)) - 1;
    const bool wantsOptotype = Below(2) == 0;
    calls_ << "GetOrvanel(" << kAcuities[acuity] << ", " << direction << (wantsOptotype ? ", optotype" : ", null")
           << ")\n";
    double effective = kUntouched;
    Fresh(plane_, !model_.eye);
    Fresh(other_, !model_.eye || !wantsOptotype);
    const bool done = library_.GetOrvanel(kAcuities[acuity], plane_.data(), &effective,
                                          wantsOptotype ? other_.data() : nullptr, direction) == 1;
    Expect(done == model_.eye.has_value());
    if (!model_.eye) {
      Expect(IsUntouched(plane_) && IsUntouched(other_) && effective == kUntouched);
      return;
    }
    const int gap = direction == 1 || direction == 2 || direction == 4 ? direction : 3;
    const auto& [image, optotype, expected] = TruthOf(*model_.eye).rings.at({acuity, gap});
    Expect(Same(plane_, image) && Same(effective, expected));
    Expect(Same(other_, wantsOptotype ? optotype : Untouched()));
    model_.stretches = false;
  }

  void NullRing() {
    calls_ << "GetOrvanel(null image)\n";
    double effective = kUntouched;
    Expect(library_.GetOrvanel(0.4, nullptr, &effective, Fresh(other_, true).data(), 1) == 0);
    Expect(IsUntouched(other_) && effective == kUntouched);
  }

  void Star() {
    calls_ << "GetPattern\n";
    const bool done = library_.GetPattern(Fresh(plane_, !model_.eye).data()) == 1;
    Expect(done == model_.eye.has_value());
    if (!model_.eye) return Expect(IsUntouched(plane_));
    const Truth& truth = TruthOf(*model_.eye);
    Expect(Same(plane_, model_.stretches ? truth.stretchedStar : truth.keptStar));
    model_.hasStar = true;
  }

  void Original() {
    calls_ << "GetPatternOriginal\n";
    const bool done = library_.GetPatternOriginal(Fresh(plane_, !model_.hasStar).data()) == 1;
    Expect(done == model_.hasStar);
    Expect(model_.hasStar ? Same(plane_, StarItself()) : IsUntouched(plane_));
  }

  std::mt19937 random_;
  const LoadedLibrary& library_;
  Model model_;
  std::ostringstream calls_;
  bool good_ = true;
  Plane plane_ = Untouched(), other_ = Untouched();
};

TEST(CallOrder, GivesWhatTheModelSaysInEverySequence) {
  const char* const wanted = std::getenv("ORVANEL_SEQUENCES");
  const int sequences = wanted == nullptr ? kSequencesInShort : std::atoi(wanted);
  ASSERT_GT(sequences, 0);
  const test::RedirectedStdout silent;  // a line for every ring
  for (int i = 0; i < sequences; ++i) {
    const LoadedLibrary library;
    Sequence sequence(static_cast<std::uint32_t>(i), library);
    sequence.Run();
    ASSERT_TRUE(sequence.good()) << "sequence " << i << ":\n" << sequence.calls();
  }
}

}  // namespace
}  // namespace orvanel
