// Asking the CPU.
#include "optics/kernels/dispatch.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orvanel {

namespace baseline {
extern const Kernels kKernels;
}
#if defined(ORVANEL_X86_KERNELS)
namespace avx2 {
extern const Kernels kKernels;
}
namespace avx512 {
extern const Kernels kKernels;
}
#endif

namespace {

std::vector<const Kernels*> AskTheCpu() {
  std::vector<const Kernels*> kernels = {&baseline::kKernels};
#if defined(ORVANEL_X86_KERNELS)
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) kernels.push_back(&avx2::kKernels);
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl")) {
    kernels.push_back(&avx512::kKernels);
  }
#endif
  return kernels;
}

const Kernels* FromEnvironment() {
  const char* const name = std::getenv("ORVANEL_KERNELS");
  const Kernels* const kernels = FindKernels(name);
  if (name != nullptr && kernels == nullptr) {
    std::fprintf(stderr, "orvanel: %s\n", NoSuchKernels(name).c_str());
    std::_Exit(EXIT_FAILURE);  // at once: the library may be loading, when nothing that is run at exit is ready
  }
  return kernels;
}

std::atomic<const Kernels*>& Active() {
  static std::atomic<const Kernels*> active = FromEnvironment();
  return active;
}

}  // namespace

const std::vector<const Kernels*>& RunnableKernels() {
  static const std::vector<const Kernels*> kernels = AskTheCpu();
  return kernels;
}

const Kernels* FindKernels(const char* name) {
  if (name == nullptr) return RunnableKernels().back();
  for (const Kernels* kernels : RunnableKernels()) {
    if (std::strcmp(kernels->name, name) == 0) return kernels;
  }
  return nullptr;
}

std::string NoSuchKernels(const char* name) {
  std::string text = "ORVANEL_KERNELS is '" + std::string(name) + "'; this CPU runs";
  for (const Kernels* kernels : RunnableKernels()) text += ' ' + std::string(kernels->name);
  return text + ". Unset it to use the last of them.";
}

const Kernels& ActiveKernels() { return *Active(); }

void UseKernels(const Kernels& kernels) { Active() = &kernels; }

}  // namespace orvanel
