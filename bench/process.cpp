// Measures the cost of the library to a process.
#include "bench/process.h"

#include <benchmark/benchmark.h>
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numeric>
#include <stdexcept>
#include <thread>
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

double ResidentMebibytes() {
  std::ifstream file("/proc/self/statm");
  double all = 0.0, resident = 0.0;
  file >> all >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
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

// An engine that works on its own core.
struct Work {
  EyeOfEngine* eye;
  int core;
};

// The eyes per second of all engines together: the sum of each engine's rate while all engines work.
double Rate(const std::vector<Work>& works) {
  constexpr int kEyes = 4;
  std::atomic<std::size_t> ready = 0, done = 0;
  std::vector<double> rates(works.size());
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < works.size(); ++t) {
    threads.emplace_back([&, t] {
      EyeOfEngine& eye = *works[t].eye;
      StayOn(works[t].core);
      eye.Once(0);
      ++ready;
      while (ready < works.size()) {
      }
      const auto begin = std::chrono::steady_clock::now();
      for (int turn = 1; turn <= kEyes; ++turn) eye.Once(turn);
      rates[t] = kEyes / std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
      ++done;
      while (done < works.size()) eye.Once(0);
    });
  }
  for (std::thread& thread : threads) thread.join();
  return std::accumulate(rates.begin(), rates.end(), 0.0);
}

double Median(std::vector<double> values) {
  if (values.empty()) return 0.0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

Throughput ThroughputOfThreads() {
  constexpr int kRounds = 150;
  EyeOfEngine first, second;
  const std::vector<int> cores = Cores();
  std::vector<double> one, two, gain;
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t a = 0; a < cores.size(); ++a) {
      for (std::size_t b = a + 1; b < cores.size(); ++b) {
        const double alone = (Rate({{&first, cores[a]}}) + Rate({{&second, cores[b]}})) / 2.0;
        const double together = Rate({{&first, cores[a]}, {&second, cores[b]}});
        one.push_back(alone);
        two.push_back(together);
        gain.push_back(together / alone);
      }
    }
  }
  return {Median(one), Median(two), Median(gain)};
}

EngineMemory MemoryOfEngine() {
  const SilentOutput silent;
  { const EyeOfEngine forCodeAndTables; }
  GridPlane plane(ORVANEL_GRID_SIZE), optotype(ORVANEL_GRID_SIZE);
  double scalar = 0.0;
  const double before = ResidentMebibytes();
  OpticsEngine engine;
  engine.synthesizeWavefront(EyeAt(0).data(), kPupil_mm, 1, 1, 1);
  engine.ComputeMtf(kWavelength, plane.data(), &scalar, nullptr, nullptr, nullptr, ORVANEL_GRID_SIZE);
  engine.RingRetinalImage(plane.data(), optotype.data(), 1.0, &scalar, 3);
  const double afterAnEye = ResidentMebibytes();
  for (const LazyPlane* const lazy : {&engine.psfPlane, &engine.phasePlane, &engine.auxPlaneA, &engine.pupilXPlane,
                                      &engine.pupilYPlane, &engine.otfRealPlane, &engine.otfImagPlane}) {
    benchmark::DoNotOptimize(lazy->data());
  }
  return {afterAnEye - before, ResidentMebibytes() - before};
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
