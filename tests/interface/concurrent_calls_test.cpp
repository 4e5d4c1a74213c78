// Tests a host that calls from several threads at once, which the manual forbids. Its numbers may be wrong, but every
// call returns.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include "tests/support/loaded_library.h"

namespace orvanel {
namespace {

using test::LoadedLibrary;

constexpr int kTurns = 300;
constexpr int kFirstCalls = 50;
constexpr unsigned kSecondsAtMost = 240;

// Eyes whose brightest samples lie apart.
constexpr double kEyes[2][ORVANEL_COEFFICIENTS] = {{0.0, 0.0, 0.0, 0.8e-4, 1.9e-4, 0.0, -1.6e-4, -0.6e-4, 0.3e-4},
                                                   {0.0, 0.0, 0.0, 0.0, 0.3e-4, -1.1e-4, 0.7e-4, 1.4e-4, -0.9e-4}};

// Calls every function once.
void CallAll(const LoadedLibrary& library, int turn, std::vector<double>& plane, std::vector<double>& other) {
  double a = 0.0, b = 0.0;
  library.InputPupil(3.0 + turn % 3);
  library.InputZer(kEyes[turn % 2]);
  library.GetPSF(plane.data(), &a, &b);
  library.GetMTF(plane.data(), &a);
  library.GetMTFGraph(plane.data(), plane.data() + 128, plane.data() + 256, &a);
  library.GetOrvanel(0.3 + 0.1 * (turn % 5), plane.data(), &a, other.data(), turn % 6);
  library.GetPattern(plane.data());
  library.GetPatternOriginal(plane.data());
}

// Lets several threads begin at the same time.
void Together(const LoadedLibrary& library, int turns) {
  constexpr int kThreads = 4;
  std::atomic<int> waiting = kThreads;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      std::vector<double> plane(ORVANEL_PLANE_SAMPLES), other(ORVANEL_PLANE_SAMPLES);
      --waiting;
      while (waiting > 0) std::this_thread::yield();
      for (int turn = 0; turn < turns; ++turn) CallAll(library, turn + t, plane, other);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// In a process of its own that is ended where it does not end by itself. Its trace goes nowhere.
template <class Work>
void ExpectToEnd(Work work) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    alarm(kSecondsAtMost);
    if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(2);
    work();
    _exit(0);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
      << (WIFSIGNALED(status) ? "ended by signal " : "status ") << (WIFSIGNALED(status) ? WTERMSIG(status) : status);
}

TEST(ConcurrentCalls, AllEnd) {
  ExpectToEnd([] {
    const LoadedLibrary library;
    Together(library, kTurns);
    // Nothing is left behind: one thread alone gets what it always gets.
    std::vector<double> plane(ORVANEL_PLANE_SAMPLES), other(ORVANEL_PLANE_SAMPLES);
    double strehl = 0.0, halfWidth = 0.0;
    library.InputPupil(4.0);
    if (library.InputZer(kEyes[0]) != 1 || library.GetPSF(plane.data(), &strehl, &halfWidth) != 1) _exit(3);
    if (!(strehl > 0.0 && strehl < 1.0) || plane[128 * 256 + 128] < 0.99) _exit(4);
  });
}

TEST(ConcurrentCalls, AllEndAlsoTheFirstOnes) {
  ExpectToEnd([] {
    for (int load = 0; load < kFirstCalls; ++load) {
      const LoadedLibrary library;
      Together(library, 1);
    }
  });
}

}  // namespace
}  // namespace orvanel
