// Fuzzes the eight exports in any order with any arguments. Every output has guards on both sides, a refused call
// writes nothing, and every result has its promised properties.
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

// The state of a fresh load is made again for each input, which the library does not offer.
#include "interface/exports.cpp"
#include "optics/kernels/dispatch.h"
#include "tests/fuzz/guarded_buffer.h"
#include "tests/fuzz/guarded_new.h"
#include "tests/fuzz/input.h"

using orvanel::fuzz::GuardedBuffer;
using orvanel::fuzz::Input;

namespace {

constexpr int kMaxCalls = 12;

struct Buffers {
  GuardedBuffer plane{ORVANEL_PLANE_SAMPLES}, otherPlane{ORVANEL_PLANE_SAMPLES};
  GuardedBuffer row{ORVANEL_SECTION_SAMPLES}, column{ORVANEL_SECTION_SAMPLES}, limit{ORVANEL_SECTION_SAMPLES};
  GuardedBuffer scalar{1}, otherScalar{1};
  GuardedBuffer coefficients{ORVANEL_COEFFICIENTS};

  std::array<GuardedBuffer*, 8> All() {
    return {&plane, &otherPlane, &row, &column, &limit, &scalar, &otherScalar, &coefficients};
  }
};

// What a host can know of the library without looking at any result.
struct Known {
  double pupil = 0.0;
  bool hasResults = false;
  bool hasPattern = false;
};

// One line a ring would bury the fuzzer's own.
void SilenceStandardOutput() {
  static const bool silent = std::freopen("/dev/null", "w", stdout) != nullptr;
  ORVANEL_REQUIRE(silent);
}

// Leaves nothing behind but what was there the first time.
void Unload() {
  std::destroy_at(&module);
  std::construct_at(&module);
  static const std::size_t stays = orvanel::fuzz::GuardedBlocksInUse();
  ORVANEL_REQUIRE(orvanel::fuzz::GuardedBlocksInUse() == stays);
}

void StartAnew(int kernels) {
  const auto& runnable = orvanel::RunnableKernels();
  orvanel::UseKernels(*runnable[static_cast<std::size_t>(kernels) % runnable.size()]);
  Unload();
  ORVANEL_REQUIRE(HasEngine());
}

bool IsImage(const GuardedBuffer& plane) {
  int outside = 0;
  for (std::size_t k = 0; k < ORVANEL_PLANE_SAMPLES; ++k) {
    const double v = plane[k];
    outside |= (v < 0.0) | (v > 1.0);  // what is not a number is allowed
  }
  return outside == 0;
}

bool IsBlackOrWhite(const GuardedBuffer& plane) {
  int others = 0;
  for (std::size_t k = 0; k < ORVANEL_PLANE_SAMPLES; ++k) {
    const double v = plane[k];
    others |= (v != 0.0) & (v != 1.0);
  }
  return others == 0;
}

class Host {
 public:
  Host(Buffers& buffers, Input& input) : b_(buffers), input_(input) {}

  void Call() {
    for (GuardedBuffer* buffer : b_.All()) buffer->TakeBack();
    switch (input_.Below(8)) {
      case 0:
        known_.pupil = input_.Double();
        return OrvanelInputPupil(known_.pupil);
      case 1:
        return InputZer();
      case 2:
        return Psf();
      case 3:
        return Mtf();
      case 4:
        return Graph();
      case 5:
        return Ring();
      case 6:
        return Pattern();
      default:
        return Original();
    }
  }

 private:
  double* Place(GuardedBuffer& buffer) { return buffer.Untouched(input_.Byte()); }

  // A refused call has written nothing; no call has written beside its outputs.
  void Check(bool done, bool expected) {
    ORVANEL_REQUIRE(done == expected);
    for (const GuardedBuffer* buffer : b_.All()) {
      if (!buffer->IsOut()) continue;
      ORVANEL_REQUIRE(done ? buffer->IsUntouchedBeside() : buffer->IsUntouched());
    }
  }

  void InputZer() {
    double* const c = Place(b_.coefficients);
    const int given = input_.Below(ORVANEL_COEFFICIENTS + 1);
    std::memset(static_cast<void*>(c), 0, ORVANEL_COEFFICIENTS * sizeof(double));
    for (int i = 0; i < given; ++i) {
      const double value = input_.Double();
      const auto j = static_cast<std::size_t>(input_.Below(ORVANEL_COEFFICIENTS));
      std::memcpy(reinterpret_cast<char*>(c) + j * sizeof value, &value, sizeof value);
    }
    const bool accepted = !std::isnan(known_.pupil) && known_.pupil != 0.0;
    ORVANEL_REQUIRE(OrvanelInputZer(c) == (accepted ? 1 : 0));
    known_.hasResults = known_.hasResults || accepted;
  }

  void Psf() {
    const bool done = OrvanelGetPSF(Place(b_.plane), Place(b_.scalar), Place(b_.otherScalar)) == 1;
    Check(done, true);
    ORVANEL_REQUIRE(b_.plane.IsWritten(0) && b_.plane.IsWritten(ORVANEL_PLANE_SAMPLES - 1));
    const double peak = b_.plane[128 * 256 + 128];
    ORVANEL_REQUIRE(peak == 0.0 || std::fabs(peak - 1.0) <= 0x1p-52);
    ORVANEL_REQUIRE(b_.scalar[0] >= 0.0 && b_.scalar[0] <= 1.0 + 1e-9);
  }

  void Mtf() { Check(OrvanelGetMTF(Place(b_.plane), Place(b_.scalar)) == 1, known_.hasResults); }

  void Graph() {
    double* const limit = input_.Below(2) == 0 ? nullptr : Place(b_.limit);
    Check(OrvanelGetMTFGraph(Place(b_.row), Place(b_.column), limit, Place(b_.scalar)) == 1, known_.hasResults);
    if (!known_.hasResults) return;
    ORVANEL_REQUIRE(b_.row.IsWritten(127) && b_.column.IsWritten(127));
    if (limit != nullptr) ORVANEL_REQUIRE(b_.limit.IsWritten(127));
  }

  void Ring() {
    const double acuity = input_.Double();
    double* const image = input_.Below(8) == 0 ? nullptr : Place(b_.plane);
    // Which may be the same buffer.
    const int choice = input_.Below(8);
    double* const optotype = choice == 0 ? nullptr : choice == 1 ? image : Place(b_.otherPlane);
    const bool expected = known_.hasResults && image != nullptr;
    Check(OrvanelGetOrvanel(acuity, image, Place(b_.scalar), optotype, input_.Byte() - 2) == 1, expected);
    if (!expected) return;
    ORVANEL_REQUIRE(IsImage(b_.plane));
    if (choice > 1) ORVANEL_REQUIRE(IsBlackOrWhite(b_.otherPlane));
  }

  void Pattern() {
    Check(OrvanelGetPattern(Place(b_.plane)) == 1, known_.hasResults);
    if (!known_.hasResults) return;
    ORVANEL_REQUIRE(IsImage(b_.plane));
    known_.hasPattern = true;
  }

  void Original() {
    Check(OrvanelGetPatternOriginal(Place(b_.plane)) == 1, known_.hasPattern);
    if (known_.hasPattern) ORVANEL_REQUIRE(IsBlackOrWhite(b_.plane));
  }

  Buffers& b_;
  Input& input_;
  Known known_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Buffers buffers;
  SilenceStandardOutput();
  Input input(data, size);
  StartAnew(input.Byte());
  Host host(buffers, input);
  for (int i = 0; i < kMaxCalls && !input.empty(); ++i) host.Call();
  Unload();
  return 0;
}
