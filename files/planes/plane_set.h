// The planes of one eye with their descriptions, as the input of file writers.
#ifndef ORVANEL_FILES_PLANES_PLANE_SET_H
#define ORVANEL_FILES_PLANES_PLANE_SET_H

#include <string>
#include <variant>
#include <vector>

#include "base/layers.h"
#include "targets/plane.h"

namespace orvanel::files {

// A property that a file states about its planes. The name is an identifier with the unit in it, such as
// "pupil_diameter_mm"; text is UTF-8 in one line.
struct Fact {
  std::string name;
  std::variant<double, std::string, std::vector<double>> value;
};

struct NamedPlane {
  std::string name;         // the beginning of a file's name
  std::string description;  // one line
  std::string unit;         // of the samples; "1" if they have none
  const Plane* samples;
  double samplesPerCm;         // the resolution in a picture file, on retina or pupil; 0 if there is none
  std::vector<Fact> spacings;  // between neighbouring samples, on each scale
  std::vector<Fact> view;      // texts: the view and, if known, the nasal side
};

struct PlaneSet {
  std::vector<NamedPlane> planes;
  std::vector<Fact> facts;  // about the eye
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_PLANE_SET_H
