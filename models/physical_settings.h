// Holds what the physical model is asked for beside the eye: light, field, view, and properties of the pupil.
#ifndef ORVANEL_MODELS_PHYSICAL_SETTINGS_H
#define ORVANEL_MODELS_PHYSICAL_SETTINGS_H

#include <optional>
#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "eye/view.h"
#include "models/physical/display.h"
#include "models/physical/eye.h"
#include "models/physical/light.h"
#include "models/physical/point_spread.h"

namespace orvanel::models {

struct PhysicalSettings {
  physical::Light light = {{555.0, 1.0}};    // nm; one wavelength unless several are listed
  std::optional<physical::Display> display;  // whose primaries show objects of true size; the light is then its white
  ArcMinutes field{20.0};                    // side of the PSF's square window
  int samples = 256;                         // a side of it
  physical::View view = physical::View::kPatient;
  physical::Origin origin = physical::Origin::kAxis;  // of the window
  physical::StilesCrawford stilesCrawford;
  physical::Ellipse outline;       // of the pupil, in units of half its diameter
  double achromaticAxisXmm = 0.0;  // the place of the pupil that chromatic aberration does not deflect
  double achromaticAxisYmm = 0.0;
  std::vector<CyclesPerDegree> mtfAt;  // frequencies of interest
  ArcMinutes objectSide{60.0};         // visual angle of a picture and of the star
};

constexpr View ViewOf(physical::View view) { return view == physical::View::kPatient ? View::kPatient : View::kRetina; }

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_PHYSICAL_SETTINGS_H
