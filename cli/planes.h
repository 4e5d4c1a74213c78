// Declares the planes of a run: name, description, unit and spacing of the samples.
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

// The description of a plane, known before the computation.
struct PlaneSource {
  std::string name;
  std::string description;
  std::string unit;
  enum class Domain { kPupil, kRetina, kFrequency } domain;
  View view;
  bool grey;  // has values from 0 to 1 and is written as a grey picture; not so the channels of the user's picture
  std::function<const Plane&(const SimulatedEye&)> samples;
  std::function<ArcMinutes(const SimulatedEye&)> pitch = {};  // of a plane on the retina, by the physical model
};

std::vector<PlaneSource> PlaneSources(const Request& request);

// Returns the plane with its scales.
NamedPlane PlaneOf(const PlaneSource& source, const SimulatedEye& simulated);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PLANES_H
