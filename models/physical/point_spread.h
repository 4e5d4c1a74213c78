// The image of a point on the retina, and Strehl ratios, in light of any spectrum.
#ifndef ORVANEL_MODELS_PHYSICAL_POINT_SPREAD_H
#define ORVANEL_MODELS_PHYSICAL_POINT_SPREAD_H

#include <vector>

#include "models/physical/eye.h"
#include "models/physical/light.h"
#include "models/physical/outcome.h"
#include "models/physical/workspace.h"

namespace orvanel::physical {

// Which way round the retina is shown; y is up in both.
enum class View {
  kPatient,  // as the person sees it: x to the person's right. The density of (-dW/dx, +dW/dy).
  kRetina,   // the retina seen through the pupil: x to the examiner's right. The density of (-dW/dx, -dW/dy).
};

// What a grid's places are relative to.
enum class Origin {
  kAxis,      // the place of a point without aberration
  kPeak,      // the highest place
  kCentroid,  // the centre of gravity of the light
};

// kStrehl: 1 is the peak of the same pupil in the same light, without aberration, monochromatic and chromatic.
// kPerArcmin2: the share of the light per arcmin^2. Its integral over the whole plane is 1.
enum class PsfUnit { kStrehl, kPerArcmin2 };

// Column c and row r are at x = centreX + (c - (columns - 1)/2) spacing, y = centreY + ((rows - 1)/2 - r) spacing from
// the origin, in arcmin of the view.
struct RetinalGrid {
  double centreX = 0.0;
  double centreY = 0.0;
  double spacing = 0.0;
  int columns = 0;
  int rows = 0;
  View view = View::kPatient;
  Origin origin = Origin::kAxis;
};
constexpr int kLargestSide = 4096;  // of a grid

struct PointSpread {
  RetinalGrid grid;
  double originX = 0.0;  // from the axis, arcmin of the view
  double originY = 0.0;
  std::vector<double> samples;     // row-major, row 0 at the top
  double perfectPerArcmin2 = 0.0;  // what 1 is in Strehl units: the share of the light per arcmin^2
};

// Error: 1e-9 of the peak of the pupil without aberration, at every sample, for eyes up to 5 waves RMS.
// Memory: the samples, and less than columns * nodes + (2 columns + rows) * chords doubles.
//   workspace  keeps its tables for the next eye of the same pupil, light and grid
Outcome<PointSpread> PointSpreadOf(const Eye& eye, const Light& light, const RetinalGrid& grid, PsfUnit unit,
                                   Workspace& workspace);

// Both ratios are relative to the same pupil without aberration in the same light.
struct StrehlRatios {
  double axis = 0.0;
  double peak = 0.0;   // at the highest place
  double peakX = 0.0;  // that place, arcmin of the view
  double peakY = 0.0;
};

// Error: 1e-9.
Outcome<StrehlRatios> StrehlRatiosOf(const Eye& eye, const Light& light, View view, Workspace& workspace);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_POINT_SPREAD_H
