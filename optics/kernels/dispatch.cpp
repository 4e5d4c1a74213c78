// Asks the CPU which kernels it runs.
#include "optics/kernels/dispatch.h"

#include <atomic>
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

// Allocates nothing: a host may have no memory left.
struct KernelList {
  std::array<const Kernels*, 3> kernels{&baseline::kKernels};
  std::size_t count = 1;

  void Add(const Kernels& more) { kernels[count++] = &more; }
};

KernelList AskTheCpu() {
  KernelList list;
#if defined(ORVANEL_X86_KERNELS)
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) list.Add(avx2::kKernels);
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl")) {
    list.Add(avx512::kKernels);
  }
#endif
  return list;
}

struct Choice {
  explicit Choice(const char* name) : kernels(FindKernels(name)) {
    if (name != nullptr && kernels == nullptr) refusal = NoSuchKernels(name);
  }

  std::atomic<const Kernels*> kernels;
  KernelMessage refusal{};
};

Choice& TheChoice() {
  static Choice choice(std::getenv("ORVANEL_KERNELS"));
  return choice;
}

// Appends as much as fits.
void Append(KernelMessage& message, std::size_t& length, const char* text) {
  for (; *text != '\0' && length + 1 < message.size(); ++text) {
    message[length++] = *text >= ' ' && *text <= '~' ? *text : '?';
  }
}

}  // namespace

std::span<const Kernels* const> RunnableKernels() noexcept {
  static const KernelList list = AskTheCpu();
  return {list.kernels.data(), list.count};
}

const Kernels* FindKernels(const char* name) noexcept {
  if (name == nullptr || *name == '\0') return RunnableKernels().back();
  for (const Kernels* kernels : RunnableKernels()) {
    if (std::strcmp(kernels->name, name) == 0) return kernels;
  }
  return nullptr;
}

KernelMessage NoSuchKernels(const char* name) noexcept {
  constexpr std::size_t kLongestName = 80;
  char shown[kLongestName + 1] = {};
  std::strncpy(shown, name, kLongestName);
  KernelMessage message{};
  std::size_t length = 0;
  Append(message, length, "ORVANEL_KERNELS is '");
  Append(message, length, shown);
  Append(message, length, "'; this CPU runs");
  for (const Kernels* kernels : RunnableKernels()) {
    Append(message, length, " ");
    Append(message, length, kernels->name);
  }
  Append(message, length, ". Unset it to use the last of them.");
  return message;
}

const Kernels* ActiveKernels() noexcept { return TheChoice().kernels; }

const char* WhyNoKernels() noexcept { return TheChoice().refusal.data(); }

void UseKernels(const Kernels& kernels) noexcept { TheChoice().kernels = &kernels; }

}  // namespace orvanel
