// Measuring what the library costs a process.
#include "bench/process.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "bench/eyes.h"
#include "bench/silent_output.h"
#include "orvanel/optics_engine.h"

namespace orvanel::bench {
namespace {

// One eye on an engine: wavefront, PSF, MTF, a ring, any picture.
class EyeOfEngine {
 public:
  EyeOfEngine() {
    engine_.synthesizeWavefront(EyeAt(0).data(), kPupil_mm, 1, 1, 1);
    engine_.ComputeMtf(kWavelength, mtf_.data(), &scalar_, nullptr, nullptr, nullptr, ORVANEL_GRID_SIZE);
    engine_.DrawRingOptotype(optotype_.data(), ORVANEL_GRID_SIZE, 1.0, &scalar_, 3);
    picture_ = engine_.Prepare(optotype_.data());
  }
  void Once(int turn) {
    engine_.synthesizeWavefront(EyeAt(turn).data(), kPupil_mm, 1, 1, 1);
    engine_.ComputeMtf(kWavelength, mtf_.data(), &scalar_, nullptr, nullptr, nullptr, ORVANEL_GRID_SIZE);
    const Ring ring = RingAt(turn);
    engine_.RingRetinalImage(image_.data(), optotype_.data(), ring.acuity, &scalar_, ring.gapDirection);
    engine_.PreparedRetinalImage(image_.data(), picture_);
  }

 private:
  OpticsEngine engine_;
  PreparedObject picture_;
  GridPlane mtf_{ORVANEL_GRID_SIZE};
  GridPlane image_{ORVANEL_GRID_SIZE};
  GridPlane optotype_{ORVANEL_GRID_SIZE};
  double scalar_ = 0.0;
};

std::size_t AllocatedBytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// The cores that this process may run on.
std::vector<int> Cores() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) throw std::runtime_error("the cores cannot be asked for");
  std::vector<int> cores;
  for (int core = 0; core < CPU_SETSIZE; ++core) {
    if (CPU_ISSET(core, &allowed)) cores.push_back(core);
  }
  return cores;
}

// All ways to take so many of the cores.
std::vector<std::vector<int>> Choices(const std::vector<int>& cores, std::size_t count, std::size_t first = 0) {
  if (count == 0) return {{}};
  std::vector<std::vector<int>> choices;
  for (std::size_t i = first; i < cores.size(); ++i) {
    for (std::vector<int>& others : Choices(cores, count - 1, i + 1)) {
      others.push_back(cores[i]);
      choices.push_back(std::move(others));
    }
  }
  return choices;
}

void StayOn(int core) {
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(core, &one);
  if (pthread_setaffinity_np(pthread_self(), sizeof one, &one) != 0) std::abort();
}

// The number that a command prints.
double NumberPrintedBy(const std::string& command) {
  FILE* const output = popen(command.c_str(), "r");  // NOLINT(cert-env33-c): a program of the same build
  char line[64] = {};
  const bool printed = output != nullptr && std::fgets(line, sizeof line, output) != nullptr;
  const bool succeeded = output != nullptr && pclose(output) == 0;
  if (!printed || !succeeded) throw std::runtime_error(command + " failed");
  return std::strtod(line, nullptr);
}

}  // namespace

double EyesPerSecond(int threads) {
  constexpr std::size_t kSpells = 4000;
  constexpr int kEyes = 2;
  const std::vector<std::vector<int>> choices = Choices(Cores(), static_cast<std::size_t>(threads));
  if (choices.empty()) return 0.0;
  std::vector<std::unique_ptr<EyeOfEngine>> eyes;
  for (int t = 0; t < threads; ++t) eyes.push_back(std::make_unique<EyeOfEngine>());
  double best = 0.0;
  for (std::size_t spell = 0; spell < kSpells; ++spell) {
    const std::vector<int>& cores = choices[spell % choices.size()];
    std::atomic<int> ready = 0;
    std::vector<std::chrono::steady_clock::time_point> begin(eyes.size()), end(eyes.size());
    std::vector<std::thread> workers;
    for (std::size_t t = 0; t < eyes.size(); ++t) {
      workers.emplace_back([&, t] {
        StayOn(cores[t]);
        eyes[t]->Once(0);
        ++ready;
        while (ready < threads) {
        }
        begin[t] = std::chrono::steady_clock::now();
        for (int turn = 1; turn <= kEyes; ++turn) eyes[t]->Once(turn);
        end[t] = std::chrono::steady_clock::now();
      });
    }
    for (std::thread& worker : workers) worker.join();
    const std::chrono::duration<double> seconds =
        *std::max_element(end.begin(), end.end()) - *std::min_element(begin.begin(), begin.end());
    best = std::max(best, threads * kEyes / seconds.count());
  }
  return best;
}

double EngineMebibytes() {
  const SilentOutput silent;
  GridPlane plane(ORVANEL_GRID_SIZE), optotype(ORVANEL_GRID_SIZE);
  double scalar = 0.0;
  const std::size_t before = AllocatedBytes();
  OpticsEngine engine;
  engine.synthesizeWavefront(EyeAt(0).data(), kPupil_mm, 1, 1, 1);
  engine.ComputeMtf(kWavelength, plane.data(), &scalar, nullptr, nullptr, nullptr, ORVANEL_GRID_SIZE);
  engine.RingRetinalImage(plane.data(), optotype.data(), 1.0, &scalar, 3);
  benchmark::DoNotOptimize(engine.phasePlane.data());
  benchmark::DoNotOptimize(engine.otfRealPlane.data());
  return static_cast<double>(AllocatedBytes() - before) / (1024.0 * 1024.0);
}

double FirstCall_us(const std::string& kernels) {
  constexpr int kProcesses = 50;
  double least = 0.0;
  for (int i = 0; i < kProcesses; ++i) {
    const double microseconds = NumberPrintedBy("ORVANEL_KERNELS=" + kernels + " '" ORVANEL_FIRST_CALL "'");
    if (i == 0 || microseconds < least) least = microseconds;
  }
  return least;
}

}  // namespace orvanel::bench
