// Measures every call with each set of kernels and with each peer, alternately with the unit, and then the cost of the
// library to a process. Prints the tables.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "bench/calls.h"
#include "bench/eyes.h"
#include "bench/fftw_pipeline.h"
#include "bench/process.h"
#include "bench/silent_output.h"
#include "optics/kernels/dispatch.h"

namespace orvanel::bench {
namespace {

constexpr const char* kUnit = "Unit";

// Keeps the minimum time of each benchmark, since other work on the machine can only add to it.
class Least : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      // With threads, wall-clock time counts.
      const double seconds = run.threads > 1 ? run.real_accumulated_time : run.cpu_accumulated_time;
      const double microseconds = 1e6 * seconds / static_cast<double>(run.iterations);
      double& least = least_us_.try_emplace(run.run_name.function_name, microseconds).first->second;
      least = std::min(least, microseconds);
    }
  }

  // 0 if it was not run.
  double operator()(const std::string& name) const {
    const auto found = least_us_.find(name);
    return found == least_us_.end() ? 0.0 : found->second;
  }

 private:
  std::map<std::string, double> least_us_;
};

void Measure(benchmark::State& state, const Call& call) {
  int turn = 0;
  const SilentOutput silent;
  call.prepare();
  call.once(turn++);
  for ([[maybe_unused]] const auto step : state) call.once(turn++);
}

void Register(const std::string& by, const std::vector<Call>& calls) {
  for (const Call& call : calls) {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the library keeps it to the end
    benchmark::RegisterBenchmark((call.name + "/" + by).c_str(), [call](benchmark::State& s) { Measure(s, call); });
  }
}

std::string FirstLine(const char* path, const std::string& key) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(key)) return line.substr(line.find(':') == std::string::npos ? 0 : line.find(':') + 2);
  }
  return "unknown";
}

std::string Load() { return FirstLine("/proc/loadavg", "").substr(0, 4); }

// A line of a table: its title, and a cell for each column.
void Row(const std::string& title, const std::vector<std::string>& cells) {
  std::printf("| %s |", title.c_str());
  for (const std::string& cell : cells) std::printf(" %s |", cell.c_str());
  std::printf("\n");
}

std::string Number(const char* format, double value) {
  if (!(value > 0.0)) return "-";
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// The calls' times, divided by unit_us.
void PrintCalls(const Least& least, const std::vector<std::string>& columns, const char* format, double unit_us) {
  Row("call, one thread", columns);
  Row("---", std::vector<std::string>(columns.size(), "---"));
  for (const CallTitle& call : kCallTitles) {
    std::vector<std::string> cells;
    for (const std::string& by : columns) {
      cells.push_back(Number(format, least(std::string(call.name) + "/" + by) / unit_us));
    }
    Row(call.title, cells);
  }
}

// The cost of the library to a process, with each set of kernels. The gain of two threads needs idle cores.
void PrintProcess(const std::vector<std::string>& kernels, bool idle, EngineMemory memory) {
  Row("a process", kernels);
  Row("---", std::vector<std::string>(kernels.size(), "---"));
  std::vector<std::string> first, one, two, ratio;
  for (const std::string& name : kernels) {
    first.push_back(Number("%.2f ms", 1e-3 * FirstCall_us(name)));
    UseKernels(*FindKernels(name.c_str()));
    const SilentOutput silent;
    const Throughput eyes = idle ? ThroughputOfThreads() : Throughput{};
    one.push_back(Number("%.0f", eyes.one));
    two.push_back(Number("%.0f", eyes.two));
    ratio.push_back(Number("%.2f", eyes.gain));
  }
  Row("library loaded and first `OrvanelInputZer`, with its tables", first);
  Row("eyes a second on one thread", one);
  Row("eyes a second on two threads", two);
  Row("the second thread's gain", ratio);
  if (!idle) std::printf("\nEyes a second were not measured: at the start the machine was not idle.\n");
  std::printf("\nAn engine takes up %.1f MiB after an eye, and %.1f MiB after an access to all its planes.\n",
              memory.afterAnEye, memory.atMost);
}

int Main(int argc, char** argv) {
  const EngineMemory memory = MemoryOfEngine();  // first, so that it reuses no memory of other work
  // Short repetitions in random order, so that all benchmarks run under the same conditions.
  std::vector<std::string> flags = {argv[0], "--benchmark_enable_random_interleaving=true",
                                    "--benchmark_repetitions=100", "--benchmark_min_time=0.005"};
  flags.insert(flags.end(), argv + 1, argv + argc);
  std::vector<char*> arguments;
  for (std::string& flag : flags) arguments.push_back(flag.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  const std::string loadBefore = Load();

  const auto unit = std::make_shared<UnitTransform>();
  benchmark::RegisterBenchmark(kUnit, [unit](benchmark::State& state) {
    unit->Run();
    for ([[maybe_unused]] const auto step : state) unit->Run();
  });
  std::vector<std::string> kernels, columns;
  for (const Kernels* k : RunnableKernels()) kernels.insert(kernels.begin(), k->name);
  for (const std::string& name : kernels) Register(name, CallsOfLibrary(name));
  {
    const SilentOutput silent;
    Register("FFTW", CallsOfFftw());
  }
  Register("plain", CallsOfPlainCode());
  columns = kernels;
  columns.insert(columns.end(), {"FFTW", "plain"});
  Least least;
  benchmark::RunSpecifiedBenchmarks(&least);
  const double unit_us = least(kUnit);

  std::printf("%s, %u cores; load average %s before, %s after\n", FirstLine("/proc/cpuinfo", "model name").c_str(),
              std::thread::hardware_concurrency(), loadBefore.c_str(), Load().c_str());
  std::printf("Compiler %s\n\n", __VERSION__);
  if (unit_us > 0.0) {
    std::printf("In units of U = %.0f us, the complex transform of 256 x 256 by FFTW:\n\n", unit_us);
    PrintCalls(least, columns, "%.2f", unit_us);
    std::printf("\n");
  }
  std::printf("In microseconds:\n\n");
  PrintCalls(least, columns, "%.0f", 1.0);

  std::printf("\n");
  PrintProcess(kernels, std::stod(loadBefore) < 0.5, memory);
  return 0;
}

}  // namespace
}  // namespace orvanel::bench

int main(int argc, char** argv) {
  try {
    return orvanel::bench::Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvanel_bench: %s\n", error.what());
    return 1;
  }
}
