// What the library costs a process, beside the time of its calls.
#ifndef ORVANEL_BENCH_PROCESS_H
#define ORVANEL_BENCH_PROCESS_H

#include <string>

namespace orvanel::bench {

// The first OrvanelInputZer of a process, from loading the library on, by a program that makes only that; the least of
// many processes.
double FirstCall_us(const std::string& kernels);

// Eyes per second of one thread and of two, each with an engine and a core of its own, and how many times the eyes of
// one two make: medians over all pairs of cores, taken in turn. The two cores are measured alone and together one right
// after the other, so that who else uses the machine is in both. 0 where there is one core.
struct Throughput {
  double one, two, gain;
};
Throughput ThroughputOfThreads();

// Mebibytes that an engine takes up after an eye, and when all its planes have been looked at.
struct EngineMemory {
  double afterAnEye, atMost;
};
EngineMemory MemoryOfEngine();

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_PROCESS_H
