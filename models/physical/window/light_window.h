// Samples the light of some beams on one grid of directions that holds all their slopes.
#ifndef ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_WINDOW_H
#define ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_WINDOW_H

#include <cstddef>
#include <span>
#include <vector>

#include "models/physical/eye.h"
#include "models/physical/workspace.h"

namespace orvanel::physical {

// The sum of factor |U|^2 over the beams. Sample (row, column) is in the direction `row` spacings up and `column`
// spacings to the left of the centre, in the sense of DirectionGrid. Indices wrap: the upper half is negative.
struct LightWindow {
  double centreX = 0.0;  // arcmin
  double centreY = 0.0;
  double spacing = 0.0;  // arcmin
  int side = 0;
  const double* samples = nullptr;  // side x side, row-major; of the workspace, until it is used again

  int Folded(int k) const {
    const int wrapped = k < 0 ? k + side : k < side ? k : k - side;
    return wrapped < side / 2 ? wrapped : wrapped - side;
  }
  double At(int row, int column) const {
    const auto wrapped = [this](int k) { return static_cast<std::size_t>(k < 0 ? k + side : k < side ? k : k - side); };
    return samples[wrapped(row) * static_cast<std::size_t>(side) + wrapped(column)];
  }
};

// Where the rays of the beams go that have a fifth of the brightest one's factor.
struct SlopeWindow {
  double centreX = 0.0;  // arcmin
  double centreY = 0.0;
  double width = 0.0;  // of the square that holds them, with a margin for the pattern of a perfect pupil
  double unit = 0.0;   // the smallest wavelength / diameter of all beams
};
SlopeWindow SlopesOf(std::span<const Beam> beams, std::span<const double> factors);

// Samples are so far apart, in the smallest wavelength / diameter; more where that saves a larger transform.
constexpr double kWindowSpacing = 0.35, kWidestWindowSpacing = 0.42;
constexpr int kLargestWindow = 4096;  // in samples

// The smallest window that holds the slopes. Light of the other beams may fold into it.
// Refuses wavefronts whose slopes differ by more than 1700 of the smallest wavelength / diameter.
//   minSide  samples in a row
Outcome<LightWindow> WindowOf(std::span<const Beam> beams, std::span<const double> factors, int minSide);

// The field of one beam on the lattice of its pupil. The samples of the pupils are as
// far apart as makes the same grid of directions of all.
struct LatticeField {
  FieldPlane plane;
  std::size_t samples;            // of the plane
  double cells;                   // area of the pupil
  const SampledOutline* outline;  // of the workspace, until it makes another
};
LatticeField FieldInWindow(const Beam& beam, const LightWindow& window, Workspace& workspace, AlignedMemory& re,
                           AlignedMemory& im);

// Fills in the samples, by a Fourier transform of the pupils' samples: side * spacing across each pupil, in its
// wavelength / diameter.
//   factors    one for each beam
//   window     its side is one that PlaneTransform has
//   workspace  keeps the samples
void SampleLight(std::span<const Beam> beams, std::span<const double> factors, LightWindow& window,
                 Workspace& workspace);

// A sample that is as high as all its neighbours, moved to the peak of the parabola through them.
struct Hill {
  double value = 0.0;
  double x = 0.0;  // arcmin
  double y = 0.0;
};
// The highest first. Leaves out samples below a share of the highest.
std::vector<Hill> HillsIn(const LightWindow& window, double share);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_WINDOW_H
