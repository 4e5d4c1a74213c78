// Defines the one state object behind the exports.
#ifndef ORVANEL_INTERFACE_MODULE_STATE_H
#define ORVANEL_INTERFACE_MODULE_STATE_H

#include <array>
#include <atomic>
#include <new>
#include <optional>

#include "orvanel/optics_engine.h"
#include "orvanel/orvanel.h"

namespace orvanel {

// Constructed when the library is loaded, destroyed when it is unloaded.
struct ModuleState {
  // If there is no memory for the engine at load, the first eye tries again.
  ModuleState() { hasEngine = MakeEngine(); }
  bool MakeEngine() {
    engine = OpticsEngine::Make(std::nothrow, ORVANEL_GRID_SIZE);
    return engine.has_value();
  }

  std::optional<OpticsEngine> engine;                // none while there is no memory for one, or no kernels
  std::array<double, kCoefficients> coefficients{};  // as last given to OrvanelInputZer
  double wavelength = 0.0;                           // mm; set together with the pupil
  double pupilDiameter = 0.0;                        // mm, as given by the host
  GridPlane mtfPlane;                                // allocated by the first OrvanelInputZer that is not refused;
                                                     // its existence means that there are results
  GridPlane patternPlane;                            // allocated and filled by the first OrvanelGetPattern
  PreparedObject preparedPattern;                    // the same, for the engine
  double mtfFrequencyRange = 0.0;                    // cycles per degree at the edge of the MTF plane

  // What exists. A thread that reads true finds a complete object.
  std::atomic<bool> hasEngine = false;
  std::atomic<bool> hasResults = false;
  std::atomic<bool> hasPattern = false;
  std::atomic_flag allocating;  // set while a thread makes one of the three
};

}  // namespace orvanel

#endif  // ORVANEL_INTERFACE_MODULE_STATE_H
