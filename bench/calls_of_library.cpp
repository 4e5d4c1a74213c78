// Defines the library's calls. Calls of the C interface use the shared library as it ships, loaded once for each set of
// kernels. Functions that it does not export are called on an engine.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "bench/calls.h"
#include "bench/eyes.h"
#include "optics/kernels/dispatch.h"
#include "orvanel/optics_engine.h"
#include "tests/support/loaded_library.h"

namespace orvanel::bench {
namespace {

using Plane = std::vector<double>;

// A copy of the shared library with another name, so that the loader treats it as another library.
class Copy {
 public:
  explicit Copy(const std::string& kernels)
      : path_(std::filesystem::temp_directory_path() /
              ("orvanel_bench_" + std::to_string(getpid()) + "_" + kernels + ".so")) {
    std::filesystem::copy_file(ORVANEL_LIBRARY, path_, std::filesystem::copy_options::overwrite_existing);
  }
  ~Copy() { std::filesystem::remove(path_); }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  const char* path() const { return path_.c_str(); }

 private:
  std::filesystem::path path_;
};

// Loads the library while the environment names the kernels, since it reads the name at load.
std::unique_ptr<test::LoadedLibrary> Load(const std::string& kernels) {
  const Copy copy(kernels);
  const char* const named = std::getenv("ORVANEL_KERNELS");
  const std::string before = named == nullptr ? "" : named;
  setenv("ORVANEL_KERNELS", kernels.c_str(), 1);
  auto library = std::make_unique<test::LoadedLibrary>(dlopen(copy.path(), RTLD_NOW | RTLD_LOCAL));
  if (named == nullptr) {
    unsetenv("ORVANEL_KERNELS");
  } else {
    setenv("ORVANEL_KERNELS", before.c_str(), 1);
  }
  return library;
}

OpticsEngine EngineWith(const std::string& kernels) {
  const Kernels* const found = FindKernels(kernels.c_str());
  if (found == nullptr) throw std::runtime_error(NoSuchKernels(kernels.c_str()).data());
  const Kernels& before = *ActiveKernels();
  UseKernels(*found);
  OpticsEngine engine;
  UseKernels(before);
  return engine;
}

struct Subject {
  explicit Subject(const std::string& kernels)
      : library(Load(kernels)), engine(EngineWith(kernels)), exposed(EngineWith(kernels)) {}

  void Enter(int turn) const {
    library->InputPupil(kPupil_mm);
    library->InputZer(EyeAt(turn).data());
  }
  void MakeRingImage(int turn) {
    const Ring ring = RingAt(turn);
    library->GetOrvanel(ring.acuity, image.data(), &scalar, optotype.data(), ring.gapDirection);
  }

  std::unique_ptr<test::LoadedLibrary> library;
  OpticsEngine engine;   // writes only requested planes
  OpticsEngine exposed;  // its planes have been accessed, so that it writes all
  Plane image = Plane(ORVANEL_PLANE_SAMPLES);
  Plane optotype = Plane(ORVANEL_PLANE_SAMPLES);
  Plane star = Plane(ORVANEL_PLANE_SAMPLES);
  Plane psf = Plane(ORVANEL_PLANE_SAMPLES);
  Plane mtf = Plane(ORVANEL_PLANE_SAMPLES);
  double row[ORVANEL_SECTION_SAMPLES] = {};
  double column[ORVANEL_SECTION_SAMPLES] = {};
  double limit[ORVANEL_SECTION_SAMPLES] = {};
  double scalar = 0.0;
  double strehl = 0.0;
};

}  // namespace

std::vector<Call> CallsOfLibrary(const std::string& kernels) {
  const auto s = std::make_shared<Subject>(kernels);
  const auto nothing = [] {};
  return {
      {"InputZerWithPhase",
       [s] {  // after an access, all later results are written at once
         s->exposed.psfPlane.data();
         s->exposed.phasePlane.data();
         s->exposed.pupilXPlane.data();
         s->exposed.pupilYPlane.data();
       },
       [s](int turn) {
         s->exposed.synthesizeWavefront(EyeAt(turn).data(), kPupil_mm, 1, 1, 1);
         s->exposed.ComputeMtf(kWavelength, s->mtf.data(), &s->scalar, nullptr, nullptr, nullptr, ORVANEL_GRID_SIZE);
       }},
      {"InputZer", nothing, [s](int turn) { s->Enter(turn); }},
      {"Strehl", nothing,
       [s](int turn) {
         s->engine.synthesizeWavefront(EyeAt(turn).data(), kPupil_mm, 1, 1, 1);
         s->strehl = s->engine.ComputeStrehl(kWavelength);
       }},
      {"GetOrvanel", [s] { s->Enter(0); }, [s](int turn) { s->MakeRingImage(turn); }},
      {"GetPattern", [s] { s->Enter(0); }, [s](int) { s->library->GetPattern(s->image.data()); }},
      {"OneEye", nothing,
       [s](int turn) {
         s->Enter(turn);
         s->library->GetPSF(s->psf.data(), &s->strehl, &s->scalar);
         s->library->GetMTF(s->mtf.data(), &s->scalar);
         s->library->GetMTFGraph(s->row, s->column, s->limit, &s->scalar);
         s->MakeRingImage(turn);
         s->library->GetPattern(s->image.data());
         s->library->GetPatternOriginal(s->star.data());
       }},
  };
}

}  // namespace orvanel::bench
