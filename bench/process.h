// What the library costs a process, beside the time of its calls.
#ifndef ORVANEL_BENCH_PROCESS_H
#define ORVANEL_BENCH_PROCESS_H

#include <string>

namespace orvanel::bench {

// The first OrvanelInputZer of a process, from loading the library on, by a program that makes only that; the least of
// many processes.
double FirstCall_us(const std::string& kernels);

// Eyes per second of as many threads, each with an engine and a core of its own; the best of many short spells, in
// which all choices of cores take turns: which cores of a virtual machine share a real one, nobody tells. 0 where there
// are fewer cores.
double EyesPerSecond(int threads);

// Memory of an engine that has done everything.
double EngineMebibytes();

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_PROCESS_H
