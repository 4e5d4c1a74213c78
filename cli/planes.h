// The planes of a run: what each of them is, in which unit, and how its samples are spaced.
#ifndef ORVANEL_CLI_PLANES_H
#define ORVANEL_CLI_PLANES_H

#include <functional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "cli/result_files.h"
#include "eye/view.h"
#include "files/planes/plane_set.h"

namespace orvanel::cli {

// A plane before anything is computed.
struct PlaneSource {
  std::string name;
  std::string description;
  std::string unit;
  enum class Domain { kPupil, kRetina, kFrequency } domain;
  View view;
  bool grey;  // makes a grey picture: lies in 0 to 1, and is not a channel of a picture in colours of its own
  std::function<const Plane&(const SimulatedEye&)> samples;
};

std::vector<PlaneSource> PlaneSources(const Request& request);

// The plane with its scales.
NamedPlane PlaneOf(const PlaneSource& source, const SimulatedEye& simulated);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PLANES_H
