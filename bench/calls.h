// Declares the measured calls: the same list for the library with each set of kernels, and for each peer.
#ifndef ORVANEL_BENCH_CALLS_H
#define ORVANEL_BENCH_CALLS_H

#include <functional>
#include <string>
#include <vector>

namespace orvanel::bench {

struct Call {
  std::string name;                    // as in kCallTitles
  std::function<void()> prepare;       // prepares the state before the call
  std::function<void(int turn)> once;  // the call, with other inputs in each turn
};

// Names of the calls in the order of the table, and their titles.
struct CallTitle {
  const char* name;
  const char* title;
};
constexpr CallTitle kCallTitles[] = {
    {"InputZerWithPhase", "`OrvanelInputZer`, everything incl. phase plane"},
    {"InputZer", "`OrvanelInputZer`, PSF and phase plane left until they are read"},
    {"Strehl", "Strehl ratio only, per eye of a batch (engine)"},
    {"GetOrvanel", "`OrvanelGetOrvanel`, new ring"},
    {"GetPattern", "`OrvanelGetPattern`"},
    {"OneEye", "one eye: input, then all getters"},
};

// The calls of the shared library and of an engine, with the kernels of this name.
std::vector<Call> CallsOfLibrary(const std::string& kernels);

// The calls of the peers.
std::vector<Call> CallsOfFftw();
std::vector<Call> CallsOfPlainCode();

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_CALLS_H
