// Loads the shared library as a host does: by name, at run time, repeatedly.
#ifndef ORVANEL_TESTS_SUPPORT_LOADED_LIBRARY_H
#define ORVANEL_TESTS_SUPPORT_LOADED_LIBRARY_H

#ifdef _WIN32
#include <windows.h>

#include <filesystem>
#else
#include <dlfcn.h>
#endif

#include <stdexcept>
#include <string>

#include "orvanel/orvanel.h"

namespace orvanel::test {

#ifdef _WIN32
using LibraryHandle = HMODULE;
inline std::wstring LibraryPath() { return std::filesystem::path(ORVANEL_LIBRARY).make_preferred().wstring(); }
inline LibraryHandle Load() { return LoadLibraryW(LibraryPath().c_str()); }
inline bool Unload(LibraryHandle library) { return FreeLibrary(library) != 0; }
inline void* Symbol(LibraryHandle library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(library, name));
}
inline bool InMemory() { return GetModuleHandleW(LibraryPath().c_str()) != nullptr; }
inline std::string LoadError() { return "Windows error " + std::to_string(GetLastError()); }
#else
using LibraryHandle = void*;
inline LibraryHandle Load() { return dlopen(ORVANEL_LIBRARY, RTLD_NOW | RTLD_LOCAL); }
inline bool Unload(LibraryHandle library) { return dlclose(library) == 0; }
inline void* Symbol(LibraryHandle library, const char* name) { return dlsym(library, name); }
inline bool InMemory() {
  void* const handle = dlopen(ORVANEL_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
  return handle != nullptr && Unload(handle);
}
inline std::string LoadError() { return dlerror(); }
#endif

// A fresh load for the lifetime of this object. ORVANEL_LIBRARY is the path, given by the build.
class LoadedLibrary {
 public:
  explicit LoadedLibrary(LibraryHandle handle = Load()) : handle_(handle) {
    if (handle_ == nullptr) throw std::runtime_error(LoadError());
    Find(InputPupil, "OrvanelInputPupil");
    Find(InputZer, "OrvanelInputZer");
    Find(GetPSF, "OrvanelGetPSF");
    Find(GetMTF, "OrvanelGetMTF");
    Find(GetMTFGraph, "OrvanelGetMTFGraph");
    Find(GetOrvanel, "OrvanelGetOrvanel");
    Find(GetPattern, "OrvanelGetPattern");
    Find(GetPatternOriginal, "OrvanelGetPatternOriginal");
  }
  ~LoadedLibrary() { Unload(handle_); }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  // Whether the library is in this process's memory.
  static bool IsLoaded() { return InMemory(); }

  decltype(&OrvanelInputPupil) InputPupil;
  decltype(&OrvanelInputZer) InputZer;
  decltype(&OrvanelGetPSF) GetPSF;
  decltype(&OrvanelGetMTF) GetMTF;
  decltype(&OrvanelGetMTFGraph) GetMTFGraph;
  decltype(&OrvanelGetOrvanel) GetOrvanel;
  decltype(&OrvanelGetPattern) GetPattern;
  decltype(&OrvanelGetPatternOriginal) GetPatternOriginal;

 private:
  template <class Function>
  void Find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(Symbol(handle_, name));
    if (function == nullptr) throw std::runtime_error(name);
  }

  LibraryHandle handle_;
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_LOADED_LIBRARY_H
