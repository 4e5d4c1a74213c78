// Declares measurements of the library's cost to a process, apart from the time of its calls.
#ifndef ORVANEL_BENCH_PROCESS_H
#define ORVANEL_BENCH_PROCESS_H

#include <string>

namespace orvanel::bench {

// The time of the first OrvanelInputZer of a process, from the load of the library on. A program with only this call
// measures it; the result is the minimum of many processes.
double FirstCall_us(const std::string& kernels);

// Eyes per second of one thread and of two threads, each with its own engine and core, and the ratio of the two. The
// results are medians over all pairs of cores, taken in turn. Two cores are measured alone and together in direct
// succession, so that other work on the machine affects both. 0 if there is only one core.
struct Throughput {
  double one, two, gain;
};
Throughput ThroughputOfThreads();

// The memory of an engine in mebibytes after an eye, and after an access to all its planes.
struct EngineMemory {
  double afterAnEye, atMost;
};
EngineMemory MemoryOfEngine();

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_PROCESS_H
