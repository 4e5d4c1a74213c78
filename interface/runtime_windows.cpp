// Frees what the C++ runtime inside a Windows library would otherwise keep after the library is unloaded.
#include <cxxabi.h>

// Guards of static variables inside functions. The runtime's own guards use POSIX threads, whose mutexes and slot of
// thread storage stay with the host. The exports are called by one thread at a time, so a flag is enough.
namespace __cxxabiv1 {
extern "C" {
int __cxa_guard_acquire(__guard* guard) { return *reinterpret_cast<char*>(guard) == 0 ? 1 : 0; }
void __cxa_guard_release(__guard* guard) noexcept { *reinterpret_cast<char*>(guard) = 1; }
void __cxa_guard_abort(__guard*) noexcept {}
}
}  // namespace __cxxabiv1

namespace __gnu_cxx {
// Frees the memory that the runtime sets aside for exceptions, 74 kB at every load; declared in none of its headers.
void __freeres();
}  // namespace __gnu_cxx

namespace {

struct FreesExceptionMemory {
  ~FreesExceptionMemory() { __gnu_cxx::__freeres(); }
} freesExceptionMemory;

}  // namespace
