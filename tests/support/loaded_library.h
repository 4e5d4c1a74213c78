// The shared library as a host loads it: by name, at run time, again and again.
#ifndef ORVANEL_TESTS_SUPPORT_LOADED_LIBRARY_H
#define ORVANEL_TESTS_SUPPORT_LOADED_LIBRARY_H

#include <dlfcn.h>

#include <stdexcept>

#include "orvanel/orvanel.h"

namespace orvanel::test {

// A fresh load for the lifetime of this object. ORVANEL_LIBRARY is the path, given by the build.
class LoadedLibrary {
 public:
  LoadedLibrary() : handle_(dlopen(ORVANEL_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(dlerror());
    Find(InputPupil, "OrvanelInputPupil");
    Find(InputZer, "OrvanelInputZer");
    Find(GetPSF, "OrvanelGetPSF");
    Find(GetMTF, "OrvanelGetMTF");
    Find(GetMTFGraph, "OrvanelGetMTFGraph");
    Find(GetOrvanel, "OrvanelGetOrvanel");
    Find(GetPattern, "OrvanelGetPattern");
    Find(GetPatternOriginal, "OrvanelGetPatternOriginal");
  }
  ~LoadedLibrary() { dlclose(handle_); }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  // Whether the library is in this process's memory.
  static bool IsLoaded() {
    void* const handle = dlopen(ORVANEL_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr) return false;
    dlclose(handle);
    return true;
  }

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
    function = reinterpret_cast<Function>(dlsym(handle_, name));
    if (function == nullptr) throw std::runtime_error(name);
  }

  void* handle_;
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_LOADED_LIBRARY_H
